// The derived variables of a document ("TransformationDictionary", or a model's "LocalTransformations")
// and the record of their current values. A model hands each input case to GetValuesForDerivedVars and
// reads the derived values from the record it returns.
//
// The static members are the built-in functions of "Apply" elements, exported for hosts as well.
// Nothing here throws on data: what cannot be computed is the system-missing number, or empty text.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreDictionary.h"

namespace QXVantry_920 {

class CaseRecord;
class ScoreCaseRecord;
class ScoreValue;
class ScoreValueLabel;
class StringValue;
class TransformVar;

class VANTRY_EXPORT TransformationDictionary : public BaseDictionary {
  public:
    // The built-in functions. The numbers are fixed: the catalogue's classifiers are range tests on them.
    enum TransformFunction : std::int32_t {
        TF_PLUS = 0,
        TF_MINUS = 1,
        TF_MULTIPLY = 2,
        TF_DIVIDE = 3,
        TF_POW = 4,
        TF_ABS = 5,
        TF_EXP = 6,
        TF_LOG10 = 7,  // "log10", "lg10"
        TF_LN = 8,
        TF_MOD = 9,
        TF_ROUND = 10,
        TF_SQRT = 11,
        TF_TRUNC = 12,
        TF_FLOOR = 13,
        TF_CEIL = 14,
        TF_PRODUCT = 15,
        TF_MIN = 16,
        TF_MAX = 17,
        TF_MEAN = 18,
        TF_AVG = 19,
        TF_MEDIAN = 20,
        TF_SUM = 21,
        TF_SD = 22,
        TF_VARIANCE = 23,
        TF_CDF_NORMAL = 24,
        TF_CDFNORM = 25,
        TF_IDF_NORMAL = 26,
        TF_PDF_NORMAL = 27,
        TF_DATE_YEARS_DIFFERENCE = 28,
        TF_DATE_MONTHS_DIFFERENCE = 29,
        TF_DATE_DAYS_DIFFERENCE = 30,
        TF_YEAR_FROM_DATE = 31,
        TF_MONTH_FROM_DATE = 32,
        TF_DAY_FROM_DATE = 33,
        TF_TIME_HOURS_DIFFERENCE = 34,
        TF_TIME_MINUTES_DIFFERENCE = 35,
        TF_TIME_SECONDS_DIFFERENCE = 36,
        TF_HOUR_FROM_TIME = 37,
        TF_MINUTE_FROM_TIME = 38,
        TF_SECOND_FROM_TIME = 39,
        TF_IS_MISSING = 40,
        TF_IS_NOT_MISSING = 41,
        TF_EQUAL = 42,
        TF_NOT_EQUAL = 43,
        TF_LESS_THAN = 44,
        TF_LESS_OR_EQUAL = 45,
        TF_GREATER_THAN = 46,
        TF_GREATER_OR_EQUAL = 47,
        TF_IS_IN = 48,
        TF_IS_NOT_IN = 49,
        TF_AND = 50,
        TF_OR = 51,
        TF_NOT = 52,
        TF_MATCHES = 53,
        TF_LOWERCASE = 54,
        TF_UPPERCASE = 55,
        TF_LOWER = 56,
        TF_CONCAT = 57,
        TF_REPLACE = 58,
        TF_LTRIM = 59,
        TF_RTRIM = 60,  // "rtrim", "trimend"
        TF_SUBSTR = 61,
        TF_SUBSTRING = 62,
        TF_LENGTH = 63,
        TF_IF = 64,
        TF_VALUE = 65,
        TF_THRESHOLD = 66,
        TF_SYSMIS = 67,
        TF_RECAST_TO_ORDINAL = 68,
        TF_RECAST_TO_SCALE = 69,
        TF_OUTLIER_HANDLE = 70,
        TF_IMPUTE_CAT_FIELD_MISSING = 71,  // "imputeCatFieldMissingAgainstConTarget"
        TF_NORMAL_CDF = 72,
        TF_NORMAL_PDF = 73,
        TF_STD_NORMAL_CDF = 74,
        TF_STD_NORMAL_PDF = 75,
        TF_ERF = 76,
        TF_NORMAL_IDF = 77,
        TF_STD_NORMAL_IDF = 78,
        TF_UNKNOWN = 79,
    };

    // What a derived variable computes.
    enum TransExpression : std::int32_t {
        TE_CONSTANT = 0,
        TE_FIELD_REF = 1,
        TE_NORM_CONTINUOUS = 2,
        TE_NORM_DISCRETE = 3,
        TE_DISCRETIZE = 4,
        TE_MAP_VALUES = 5,
        TE_APPLY = 6,
        TE_LAG = 7,
        TE_NONE = 8,
    };

    TransformationDictionary();
    // Clones both records, and copies the flags, names and set-up flag.
    TransformationDictionary(TransformationDictionary const& other);
    // Clones both records as the copy constructor does: shared record pointers would be deleted by both
    // dictionaries.
    TransformationDictionary& operator=(TransformationDictionary const& other);
    ~TransformationDictionary() override;

    // As the base dictionary's; they also drop the cached evaluation order.
    bool AddVar(ScoreDictionary const* other) override;
    bool AddVar(std::string const& name, ScoreDictVar* var) override;
    bool RemoveVar(std::string const& name) override;

    // The derived values of one case, in the dictionary's own record, overwritten by the next call.
    // A null record computes nothing and returns the record as it stands.
    ScoreCaseRecord const* GetValuesForDerivedVars(ScoreCaseRecord const* record,
                                                   ScoreDictionary const* dictionary);
    bool IsVarValueComputed(ScoreDictVar const* variable) const;
    // Null before SetUpDerivedCaseRecord.
    ScoreValue const* GetVarValue(std::string const& name) const;
    // In document order, which is the order of evaluation.
    std::vector<std::string> GetDerivedVarNames();
    void AddDerievedVarName(std::string const& name);
    // Fixes the record layout once the dictionary is complete; a second call does nothing.
    void SetUpDerivedCaseRecord();

    // Built-in functions; "sysmis" below is the system-missing number.
    static double Plus(double a, double b);
    static double Minus(std::vector<double> const& numbers);
    static double Multiply(std::vector<double> const& numbers);
    static double Divided(std::vector<double> const& numbers);
    static double Sum(std::vector<double> const& numbers);
    static double Mean(std::vector<double> const& numbers);
    static double Min(std::vector<double> const& numbers);
    static double Max(std::vector<double> const& numbers);
    static double Sd(std::vector<double> const& numbers);
    static double Variance(std::vector<double> const& numbers);
    static double MedianOperator(std::vector<double> const& numbers);
    static double ProductOperator(std::vector<double> const& numbers);
    static double AndOperator(std::vector<double> const& numbers);
    static double OrOperator(std::vector<double> const& numbers);
    static double NotOperator(std::vector<double> const& numbers);
    static double greaterOrEqual(std::vector<double> const& numbers);
    static double greaterThan(std::vector<double> const& numbers);
    static double lessOrEqual(std::vector<double> const& numbers);
    static double lessThan(std::vector<double> const& numbers);
    static double CdfNormal(std::vector<double> const& numbers);
    static double IdfNormal(std::vector<double> const& numbers);
    static double PdfNormal(std::vector<double> const& numbers);
    static double stdNormalCDF(std::vector<double> const& numbers);
    static double stdNormalIDF(std::vector<double> const& numbers);
    static double stdNormalPDF(std::vector<double> const& numbers);
    static double Erf(std::vector<double> const& numbers);
    static double Pow(double base, int exponent);
    static double Abs(double a);
    static double Ceil(double a);
    static double Floor(double a);
    static double Rnd(double a);
    static double Trunc(double a);
    static double Exp(double a);
    static double Ln(double a);
    static double Log10(double a);
    static double Sqrt(double a);
    static double CdfNorm(double a);
    static double Mod(double a, double b);
    static double Threshold(double a, double b);
    static double OutlierHandle(double value, int method, double center, double spread, double factor,
                                double count);
    // The four value tests delete the values they are given and empty the vector.
    static double equal(std::vector<ScoreValue*>& values);
    static double notEqual(std::vector<ScoreValue*>& values);
    static double isIn(std::vector<ScoreValue*>& values, ScoreValue* tested);
    static double isNotIn(std::vector<ScoreValue*>& values, ScoreValue* tested);
    // (subject, pattern) as an ICU regular expression found anywhere in the subject.
    static double Matches(std::vector<std::string> const& texts);
    // Each int reference receives the declared length of the result.
    static std::string Concat(std::vector<std::string> const& texts, std::vector<int> const& widths,
                              int& length);
    // (subject, pattern, replacement).
    static std::string Replace(std::vector<std::string> const& texts, int& length);
    static std::string Ltrim(StringValue const* value, int& length);
    static std::string Rtrim(StringValue const* value, int& length);
    static std::string Substring(StringValue const* value, int start, int& length);
    static std::string Substring(StringValue const* value, int start, int count, int& length);
    static std::string Substring_unicode(StringValue const* value, int start, int count, int& length);
    // The label value of the category whose mean is nearest to x in units of its standard deviation.
    static ScoreValue const* ImputeCatFieldMissingAgainstConTargetHandle(
        double x, std::vector<ScoreValueLabel*> const& labels, std::vector<double> const& means,
        std::vector<double> const& variances);

    std::string ToUpperCase(StringValue const* value, int& length);
    std::string ToLowerCase(StringValue const* value, int& length);

  private:
    void Reset();
    void AddVarCaseValue(ScoreDictVar const* variable, std::string const& name, ScoreValue const* value);
    void AddVarCaseValue(ScoreDictVar const* variable, std::string const& name, double number);
    void AddVarCaseValue(ScoreDictVar const* variable, std::string const& name, double number,
                         DateTimeValue::DateTimeValType type);
    void AddVarCaseValue(ScoreDictVar const* variable, std::string const& name, std::string const& text);

    // Owned; the values of the current case, one slot per derived variable.
    CaseRecord* fDerivedRecord;
    // Owned; the initial values, cloned beside the derived record; evaluation never reads it.
    CaseRecord* fInitialRecord;
    // Indexed by each variable's GetValueIndex; valid for one GetValuesForDerivedVars call.
    std::vector<bool> fComputed;
    std::vector<std::string> fDerivedNames;
    bool fSetUp;
    // The derived variables in evaluation order, with their record slots, resolved at the first case
    // after a change of the variables so that a case looks no name up.
    std::vector<std::pair<TransformVar*, int>> fOrder;
    bool fOrderValid = false;
};

}  // namespace QXVantry_920
