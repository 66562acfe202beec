// The implementation of ScoreDictVar that translators fill. A variable owns its missing values, value
// labels, statistics, default value, value probabilities and encoder; the setters of those take the
// object over and do not delete what was there before.
#pragma once

#include <memory>
#include <string>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

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
