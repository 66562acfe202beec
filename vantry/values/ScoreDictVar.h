// A variable of a model: its name, type, measurement level, format, categories, missing values,
// statistics, encoder and default. ScoreDictVar is the interface that models and plug-ins see; DictVar,
// below, is its implementation. The virtual slot order is shared with plug-ins and must not change.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "vantry/Export.h"

namespace QXVantry_920 {

class ScoreValue;
class ScoreMissingValueSet;
class ScoreValueLabelSet;
class ScoreVarStats;
class ScoreValueProbabilitySet;
class ScoreEncoder;

class VANTRY_EXPORT ScoreDictVar {
  public:
    enum VariableType : int {
        kNUMERIC_VAR = 0,
        STRING_VAR = 1,
        DATETIME_VAR = 4,
    };

    enum MeasureLevel : int {
        MEASURE_CONTINUOUS = 0,
        MEASURE_ORDINAL = 1,
        MEASURE_NOMINAL = 2,
    };

    enum NumericDataType : int {
        NUMERIC_TYPE_NONE = 0,
        NUMERIC_TYPE_INTEGER = 1,
        NUMERIC_TYPE_DOUBLE = 2,
    };

    // The date and time types of PMML, with the unit and epoch of the outside number in the comment.
    enum DateTimeType : int {
        DT_NONE = 0,
        DT_DATE = 1,                          // "date": seconds since 1970
        DT_TIME = 2,                          // "time": seconds since midnight
        DT_DATETIME = 3,                      // "dateTime": seconds since 1970
        DT_DATE_DAYS_SINCE_0 = 4,             // days since year 0
        DT_DATE_DAYS_SINCE_1960 = 5,          // days since 1960
        DT_DATE_DAYS_SINCE_1970 = 6,          // days since 1970
        DT_DATE_DAYS_SINCE_1980 = 7,          // days since 1980
        DT_TIME_SECONDS = 8,                  // seconds since midnight
        DT_DATETIME_SECONDS_SINCE_0 = 9,      // seconds since year 0
        DT_DATETIME_SECONDS_SINCE_1960 = 10,  // seconds since 1960
        DT_DATETIME_SECONDS_SINCE_1970 = 11,  // seconds since 1970
        DT_DATETIME_SECONDS_SINCE_1980 = 12,  // seconds since 1980
    };

    // Stored and handed back only; the derived-field readers give the numbers their meaning.
    enum OutlierHandleMethod : int {
        OUTLIER_AS_IS = 0,
        OUTLIER_AS_MISSING_VALUES = 1,
        OUTLIER_AS_EXTREME_VALUES = 2,
    };

    virtual ~ScoreDictVar();
    virtual ScoreDictVar* Clone() const = 0;
    // Names alone decide: two variables of the same name are equal whatever else they hold.
    virtual bool operator==(ScoreDictVar const& other) const = 0;
    virtual bool IsMissingValue(ScoreValue const* value) const = 0;
    virtual bool IsValidValue(ScoreValue const* value) const = 0;
    virtual bool SetName(std::string const& name) = 0;
    virtual void SetLabel(std::string const& label) = 0;
    virtual void SetVarType(VariableType type) = 0;
    virtual void SetMLevel(MeasureLevel level) = 0;
    virtual void SetFormat(int decimal, int width) = 0;
    virtual void SetDecimal(int decimal) = 0;
    virtual void SetWidth(int width) = 0;
    virtual std::string const& GetName() const = 0;
    virtual std::string const& GetLabel() const = 0;
    virtual VariableType GetVarType() = 0;
    virtual MeasureLevel GetMLevel() = 0;
    virtual int GetDecimal() const = 0;
    virtual int GetWidth() const = 0;
    virtual ScoreVarStats const* GetVarStats() const = 0;
    virtual void SetVarStats(ScoreVarStats* stats) = 0;
    virtual ScoreValueLabelSet const* GetValueLabels() const = 0;
    virtual std::string GetLabelOfValue(ScoreValue const* value) = 0;
    virtual ScoreMissingValueSet const* GetMissingValues() const = 0;
    virtual void SetMissingValues(ScoreMissingValueSet* missingValues) = 0;
    virtual void SetValueLabels(ScoreValueLabelSet* labels) = 0;
    virtual ScoreValue* ToMyValue(std::string const& text) const = 0;
    virtual void Display(std::ostream& out) const = 0;
    virtual int GetNumberOfCats() const = 0;
    virtual void SetValueIndex(int index) = 0;
    virtual void SetEncodedValueIndex(int index) = 0;
    virtual int GetValueIndex() const = 0;
    virtual int GetEncodedValueIndex() const = 0;
    virtual void SetNoSpaceTrim(bool noSpaceTrim) = 0;
    virtual bool GetNoSpaceTrim() const = 0;
    virtual void SetEmptyStringOK(bool emptyStringOK) = 0;
    virtual bool GetEmptyStringOK() const = 0;
    virtual std::string const& GetXMeasure() const = 0;
    virtual void SetXMeasure(std::string const& xMeasure) = 0;
    virtual bool SetFlagVariable(bool flag) = 0;
    virtual bool IsFlagVariable() const = 0;
    virtual void SetOutlierHandleMethod(OutlierHandleMethod method) = 0;
    virtual int GetOutlierHandleMethod() const = 0;
    virtual bool IsDerivedVariable() const = 0;
    virtual void SetDateTimeType(DateTimeType type) = 0;
    virtual DateTimeType GetDateTimeType() = 0;
    virtual void SetDefValue(ScoreValue* value) = 0;
    virtual ScoreValue const* GetDefValue() const = 0;
    virtual void SetValueProbabilities(ScoreValueProbabilitySet* probabilities) = 0;
    virtual ScoreValueProbabilitySet const* GetValueProbabilities() const = 0;
    virtual ScoreEncoder* GetEncoder() = 0;
    virtual ScoreEncoder const* GetEncoder() const = 0;
    virtual void SetEncoder(ScoreEncoder* encoder) = 0;
    virtual void SetEmptyCateValues(bool empty) = 0;
    virtual bool IsEmptyCateValues() const = 0;
    virtual bool AddScoreValueLabel(ScoreValue* value, std::string const& label) = 0;
    virtual void SetNumericDataType(NumericDataType type) = 0;
    virtual NumericDataType GetNumericDataType() = 0;
    virtual bool IsUsageTypeEnable() const = 0;
    virtual void SetUsageType(bool enabled) = 0;
    virtual void SetFalgTypeTrueValue(std::string const& value) = 0;
    virtual std::string GetFalgTypeTrueValue() = 0;

    // Read-only twins of the accessors whose slots take no const. They dispatch to the virtual slot, so
    // that a variable reached through a const pointer (a split, a dictionary's const GetVar) can be asked
    // without a cast at every call site. A class that overrides one of these slots brings the twin back
    // into scope with a using-declaration.
    VariableType GetVarType() const { return Mutable()->GetVarType(); }
    MeasureLevel GetMLevel() const { return Mutable()->GetMLevel(); }
    DateTimeType GetDateTimeType() const { return Mutable()->GetDateTimeType(); }
    NumericDataType GetNumericDataType() const { return Mutable()->GetNumericDataType(); }
    std::string GetLabelOfValue(ScoreValue const* value) const { return Mutable()->GetLabelOfValue(value); }
    std::string GetFalgTypeTrueValue() const { return Mutable()->GetFalgTypeTrueValue(); }

    bool IsString() const { return GetVarType() == STRING_VAR; }

  protected:
    ScoreDictVar() = default;
    ScoreDictVar(ScoreDictVar const&) = default;
    ScoreDictVar& operator=(ScoreDictVar const&) = default;

  private:
    // The slots above read state only; none of them changes the variable.
    ScoreDictVar* Mutable() const { return const_cast<ScoreDictVar*>(this); }
};

// The implementation of ScoreDictVar that translators fill. A variable owns its missing values, value
// labels, statistics, default value, value probabilities and encoder; the setters of those take the
// object over and do not delete what was there before.
class VANTRY_EXPORT DictVar : public ScoreDictVar {
  public:
    DictVar(std::string const& name, VariableType type);
    // Deep copies: each owned object through its own Clone.
    DictVar(DictVar const& other);
    DictVar& operator=(DictVar const& other);
    ~DictVar() override;

    ScoreDictVar* Clone() const override;
    bool operator==(ScoreDictVar const& other) const override;
    bool IsMissingValue(ScoreValue const* value) const override;
    bool IsValidValue(ScoreValue const* value) const override;
    bool SetName(std::string const& name) override;
    void SetLabel(std::string const& label) override;
    void SetVarType(VariableType type) override;
    void SetMLevel(MeasureLevel level) override;
    void SetFormat(int decimal, int width) override;
    void SetDecimal(int decimal) override;
    void SetWidth(int width) override;
    std::string const& GetName() const override;
    std::string const& GetLabel() const override;
    using ScoreDictVar::GetVarType;
    VariableType GetVarType() override;
    using ScoreDictVar::GetMLevel;
    MeasureLevel GetMLevel() override;
    int GetDecimal() const override;
    int GetWidth() const override;
    ScoreVarStats const* GetVarStats() const override;
    void SetVarStats(ScoreVarStats* stats) override;
    ScoreValueLabelSet const* GetValueLabels() const override;
    using ScoreDictVar::GetLabelOfValue;
    std::string GetLabelOfValue(ScoreValue const* value) override;
    ScoreMissingValueSet const* GetMissingValues() const override;
    void SetMissingValues(ScoreMissingValueSet* missingValues) override;
    void SetValueLabels(ScoreValueLabelSet* labels) override;
    ScoreValue* ToMyValue(std::string const& text) const override;
    void Display(std::ostream& out) const override;
    int GetNumberOfCats() const override;
    void SetValueIndex(int index) override;
    void SetEncodedValueIndex(int index) override;
    int GetValueIndex() const override;
    int GetEncodedValueIndex() const override;
    // Strings only: on a variable of another type the call is ignored.
    void SetNoSpaceTrim(bool noSpaceTrim) override;
    bool GetNoSpaceTrim() const override;
    // Strings only: on a variable of another type the call is ignored.
    void SetEmptyStringOK(bool emptyStringOK) override;
    bool GetEmptyStringOK() const override;
    std::string const& GetXMeasure() const override;
    void SetXMeasure(std::string const& xMeasure) override;
    // Ordinal and nominal variables only; answers whether the flag was taken.
    bool SetFlagVariable(bool flag) override;
    bool IsFlagVariable() const override;
    void SetOutlierHandleMethod(OutlierHandleMethod method) override;
    int GetOutlierHandleMethod() const override;
    bool IsDerivedVariable() const override;
    void SetDateTimeType(DateTimeType type) override;
    using ScoreDictVar::GetDateTimeType;
    DateTimeType GetDateTimeType() override;
    void SetDefValue(ScoreValue* value) override;
    ScoreValue const* GetDefValue() const override;
    void SetValueProbabilities(ScoreValueProbabilitySet* probabilities) override;
    ScoreValueProbabilitySet const* GetValueProbabilities() const override;
    ScoreEncoder* GetEncoder() override;
    ScoreEncoder const* GetEncoder() const override;
    void SetEncoder(ScoreEncoder* encoder) override;
    void SetEmptyCateValues(bool empty) override;
    bool IsEmptyCateValues() const override;
    bool AddScoreValueLabel(ScoreValue* value, std::string const& label) override;
    void SetNumericDataType(NumericDataType type) override;
    using ScoreDictVar::GetNumericDataType;
    NumericDataType GetNumericDataType() override;
    bool IsUsageTypeEnable() const override;
    void SetUsageType(bool enabled) override;
    void SetFalgTypeTrueValue(std::string const& value) override;
    using ScoreDictVar::GetFalgTypeTrueValue;
    std::string GetFalgTypeTrueValue() override;

  protected:
    // Numeric and date-time variables test numbers; strings skip the system-missing test and let their
    // missing values win over their categories.
    bool IsNumericKind() const { return fVarType == kNUMERIC_VAR || fVarType == DATETIME_VAR; }

    std::string fName;
    std::string fLabel;
    VariableType fVarType;
    DateTimeType fDateTimeType;
    NumericDataType fNumericDataType;
    MeasureLevel fMLevel;
    int fDecimal;
    int fWidth;
    std::unique_ptr<ScoreMissingValueSet> fMissingValues;
    std::unique_ptr<ScoreValueLabelSet> fValueLabels;
    std::unique_ptr<ScoreVarStats> fVarStats;
    int fValueIndex;
    int fEncodedValueIndex;
    bool fNoSpaceTrim;
    bool fEmptyStringOK;
    std::string fXMeasure;
    bool fFlagVariable;
    bool fUsageTypeEnabled;
    int fOutlierHandleMethod;
    std::unique_ptr<ScoreValue> fDefValue;
    std::unique_ptr<ScoreValueProbabilitySet> fValueProbabilities;
    std::unique_ptr<ScoreEncoder> fEncoder;
    bool fEmptyCateValues;
    std::string fFlagTrueValue;
};

}  // namespace QXVantry_920
