// The three routes by which the tree walk of a derived variable turns collected numbers into one number,
// and the byte-wise case mappings of the dictionary.
#include <cctype>
#include <cmath>
#include <cstdint>

#include "vantry/transform/TransformVar.h"
#include "vantry/values/DateTimeValue.h"

namespace QXVantry_920 {

namespace {

using TD = TransformationDictionary;

double const kSysmis = NumericValue::GetSysmisValue();

bool IsSysmis(double x) {
    return x == kSysmis;
}

// The hour of the day of a time in seconds; negative times count back from midnight, so -1 s is 23.
double HourOfDay(double seconds) {
    if (!(std::fabs(seconds) < 9.2e18)) {
        return kSysmis;  // beyond a 64-bit count of seconds
    }
    std::int64_t const secondsPerDay = 86400;
    std::int64_t inDay = static_cast<std::int64_t>(seconds) % secondsPerDay;
    if (inDay < 0) {
        inDay += secondsPerDay;
    }
    return static_cast<double>(inDay / 3600);
}

// Maps the bytes of the text one by one. Only ASCII bytes are mapped: the bytes of multibyte characters
// stay as they are, whatever the host's locale.
std::string MapBytes(StringValue const* value, int& length, int (*map)(int)) {
    if (value == nullptr) {
        length = 0;
        return std::string();
    }
    std::string text = ScoreValue::TextOf(*value);
    for (char& c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            c = static_cast<char>(map(byte));
        }
    }
    length = value->GetLength();
    return text;
}

}  // namespace

// Functions of one or two numbers; anything this route does not compute gives 0.0.
double TransformVar::ApplyTransFunction(double a, double b, TransformFunction function) {
    switch (function) {
        case TD::TF_PLUS:
            return TD::Plus(a, b);
        case TD::TF_POW:
            return IsSysmis(a) || IsSysmis(b) ? kSysmis : std::pow(a, b);
        case TD::TF_ABS:
            return TD::Abs(a);
        case TD::TF_EXP:
            return TD::Exp(a);
        case TD::TF_LOG10:
            return TD::Log10(a);
        case TD::TF_LN:
            return TD::Ln(a);
        case TD::TF_MOD:
            return TD::Mod(a, b);
        case TD::TF_ROUND:
            return TD::Rnd(a);
        case TD::TF_SQRT:
            return TD::Sqrt(a);
        case TD::TF_TRUNC:
            return TD::Trunc(a);
        case TD::TF_FLOOR:
            return TD::Floor(a);
        case TD::TF_CEIL:
            return TD::Ceil(a);
        case TD::TF_CDFNORM:
            return TD::CdfNorm(a);
        case TD::TF_THRESHOLD:
            return TD::Threshold(a, b);
        default:
            return 0.0;
    }
}

// Functions that see all their numbers at once; anything this route does not compute is system-missing.
double TransformVar::ApplyAccumulateFunction(std::vector<double> const& numbers, TransformFunction function) {
    switch (function) {
        case TD::TF_MINUS:
            return TD::Minus(numbers);
        case TD::TF_MULTIPLY:
            return TD::Multiply(numbers);
        case TD::TF_DIVIDE:
            return TD::Divided(numbers);
        case TD::TF_PRODUCT:
            return TD::ProductOperator(numbers);
        case TD::TF_MIN:
            return TD::Min(numbers);
        case TD::TF_MAX:
            return TD::Max(numbers);
        case TD::TF_MEAN:
        case TD::TF_AVG:
            return TD::Mean(numbers);
        case TD::TF_MEDIAN:
            return TD::MedianOperator(numbers);
        case TD::TF_SUM:
            return TD::Sum(numbers);
        case TD::TF_SD:
            return TD::Sd(numbers);
        case TD::TF_VARIANCE:
            return TD::Variance(numbers);
        case TD::TF_CDF_NORMAL:
        case TD::TF_NORMAL_CDF:
            return TD::CdfNormal(numbers);
        case TD::TF_IDF_NORMAL:
        case TD::TF_NORMAL_IDF:
            return TD::IdfNormal(numbers);
        case TD::TF_PDF_NORMAL:
        case TD::TF_NORMAL_PDF:
            return TD::PdfNormal(numbers);
        case TD::TF_LESS_THAN:
            return TD::lessThan(numbers);
        case TD::TF_LESS_OR_EQUAL:
            return TD::lessOrEqual(numbers);
        case TD::TF_GREATER_THAN:
            return TD::greaterThan(numbers);
        case TD::TF_GREATER_OR_EQUAL:
            return TD::greaterOrEqual(numbers);
        case TD::TF_AND:
            return TD::AndOperator(numbers);
        case TD::TF_OR:
            return TD::OrOperator(numbers);
        case TD::TF_NOT:
            return TD::NotOperator(numbers);
        case TD::TF_STD_NORMAL_CDF:
            return TD::stdNormalCDF(numbers);
        case TD::TF_STD_NORMAL_PDF:
            return TD::stdNormalPDF(numbers);
        case TD::TF_ERF:
            return TD::Erf(numbers);
        case TD::TF_STD_NORMAL_IDF:
            return TD::stdNormalIDF(numbers);
        default:
            return kSysmis;
    }
}

// Date functions of a date-time value and, for differences, a second number x. Differences are in the
// unit of the name, unrounded; months and years are the average lengths 30.4375 and 365.25 days.
double TransformVar::ApplyDateTimeFunction(ScoreValue const* value, double x, TransformFunction function) {
    if (value == nullptr || ScoreValue::TypeOf(*value) != ScoreValue::DATETIME_VALUE ||
        value->IsSystemMissingValue() || NumericValue::IsSystemMissingValue(x)) {
        return kSysmis;
    }
    auto const& date = static_cast<DateTimeValue const&>(*value);
    // The stored seconds, whatever the val type (GetDouble of a date would be in days).
    double const seconds = date.GetDoubleValue(ScoreDictVar::DT_DATETIME);
    switch (function) {
        case TD::TF_DATE_YEARS_DIFFERENCE:
            return (seconds - x) / 86400.0 / 365.25;
        case TD::TF_DATE_MONTHS_DIFFERENCE:
            return (seconds - x) / 86400.0 / 30.4375;
        case TD::TF_DATE_DAYS_DIFFERENCE:
            return (seconds - x) / 86400.0;
        case TD::TF_YEAR_FROM_DATE:
            return date.ExtractYear();
        case TD::TF_MONTH_FROM_DATE:
            return date.ExtractMonth();
        case TD::TF_DAY_FROM_DATE:
            return date.ExtractDay();
        case TD::TF_TIME_HOURS_DIFFERENCE:
            return (seconds - x) / 3600.0;
        case TD::TF_TIME_MINUTES_DIFFERENCE:
            return (seconds - x) / 60.0;
        case TD::TF_TIME_SECONDS_DIFFERENCE:
            return seconds - x;
        case TD::TF_HOUR_FROM_TIME:
            return HourOfDay(seconds);
        case TD::TF_MINUTE_FROM_TIME:
            return date.ExtractMinute();
        case TD::TF_SECOND_FROM_TIME:
            return date.ExtractSecond();
        default:
            return kSysmis;
    }
}

std::string TransformationDictionary::ToUpperCase(StringValue const* value, int& length) {
    return MapBytes(value, length, [](int c) { return std::toupper(c); });
}

std::string TransformationDictionary::ToLowerCase(StringValue const* value, int& length) {
    return MapBytes(value, length, [](int c) { return std::tolower(c); });
}

}  // namespace QXVantry_920
