#include "vantry/values/DateTimeValue.h"

#include <limits>
#include <sstream>

#include "vantry/values/NumberText.h"

namespace QXVantry_920 {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;

// Days between the epochs of the PMML types and 1970-01-01, and seconds between their epochs.
constexpr double kDaysYear0To1970 = 719528;
constexpr double kDays1960To1970 = 3653;
constexpr double kDays1970To1980 = 3652;
constexpr double kSecondsYear0To1970 = 62167219200.0;
constexpr double kSeconds1960To1970 = 315619200.0;
constexpr double kSeconds1970To1980 = 315532800.0;

constexpr std::int64_t kMonthDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr std::int64_t kDaysBeforeMonth[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

// Types 4 to 12 are written as plain numbers.
bool IsNumericForm(ScoreDictVar::DateTimeType type) {
    return type >= ScoreDictVar::DT_DATE_DAYS_SINCE_0 && type <= ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1980;
}

bool IsMonth(std::int64_t month) {
    return month >= 1 && month <= 12;
}

// Division rounding toward negative infinity.
__int128 FloorDiv(__int128 a, __int128 b) {
    __int128 const q = a / b;
    return (a % b != 0 && a < 0) ? q - 1 : q;
}

// Multiples of k in the half-open interval [from, to), from <= to.
__int128 MultiplesBetween(__int128 from, __int128 to, __int128 k) {
    return FloorDiv(to - 1, k) - FloorDiv(from - 1, k);
}

std::int64_t Saturate(__int128 value) {
    if (value > std::numeric_limits<std::int64_t>::max()) {
        return std::numeric_limits<std::int64_t>::max();
    }
    if (value < std::numeric_limits<std::int64_t>::min()) {
        return std::numeric_limits<std::int64_t>::min();
    }
    return static_cast<std::int64_t>(value);
}

bool IsDigitOrSpace(char c) {
    return c == ' ' || (c >= '0' && c <= '9');
}

// The tokens of a date or time text: a separator, or the last character (which then belongs to the
// token), closes a token; the token is trimmed of spaces and read as atoi does, and the number goes to
// the first output still negative (a fourth token is read and dropped). Characters that do not close a
// token must be digits or spaces.
bool ReadTokens(std::string const& text, char separator, std::int64_t* (&outputs)[3],
                std::string (*trim)(std::string const&, char)) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        bool const isSeparator = c == separator;
        if (isSeparator || i + 1 == text.size()) {
            std::size_t const end = isSeparator ? i : i + 1;
            int const number = numbertext::LeadingInt(trim(text.substr(start, end - start), ' '));
            for (std::int64_t* output : outputs) {
                if (*output < 0) {
                    *output = number;
                    break;
                }
            }
            start = i + 1;
        } else if (!IsDigitOrSpace(c)) {
            return false;
        }
    }
    return true;
}

// Counts of each character of interest in a numeric text, with the index of its last occurrence.
struct CharStats {
    std::size_t count = 0;
    std::size_t last = 0;
};

CharStats Scan(std::string const& text, char c) {
    CharStats stats;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == c) {
            ++stats.count;
            stats.last = i;
        }
    }
    return stats;
}

// An exponent letter, if present, is neither first nor last and occurs once.
bool ExponentLetterPlaced(CharStats const& letter, std::size_t n) {
    return letter.count == 0 || (letter.count == 1 && letter.last != 0 && letter.last != n - 1);
}

bool IsExponentLetter(char c) {
    return c == 'e' || c == 'E';
}

// A sign: without an exponent letter only one, at the start. The last one is never the last character,
// and past the start it follows an exponent letter directly.
bool SignPlaced(std::string const& text, CharStats const& sign, bool hasExponent) {
    if (sign.count == 0) {
        return true;
    }
    if (!hasExponent && (sign.count != 1 || sign.last != 0)) {
        return false;
    }
    if (sign.last == text.size() - 1) {
        return false;
    }
    return sign.last == 0 || IsExponentLetter(text[sign.last - 1]);
}

// Every calendar part of a number of seconds.
struct CalendarParts {
    std::int64_t year, month, day, hour, minute, second;

    static CalendarParts Of(double seconds) {
        CalendarParts parts;
        DateTimeValue::ExtractDate(seconds, parts.year, parts.month, parts.day);
        DateTimeValue::ExtractTime(seconds, parts.hour, parts.minute, parts.second);
        return parts;
    }
};

double DurationIn(double seconds, double divisor) {
    return seconds / divisor;
}

}  // namespace

DateTimeValue::DateTimeValue() : NumericValue(), fValType(DATETIME_VAL) {}

DateTimeValue::DateTimeValue(double seconds, DateTimeValType valType)
    : NumericValue(seconds), fValType(valType) {}

DateTimeValue::DateTimeValue(double value, ScoreDictVar::DateTimeType type)
    : NumericValue(), fValType(GetValType(type)) {
    FromNumeric(value, type);
}

DateTimeValue::DateTimeValue(std::string const& text, ScoreDictVar::DateTimeType type)
    : NumericValue(), fValType(GetValType(type)) {
    FromString(text, type);
}

DateTimeValue::DateTimeValue(DateTimeValue const& other) : NumericValue(other), fValType(other.fValType) {}

DateTimeValue& DateTimeValue::operator=(DateTimeValue const& other) {
    fValue = other.fValue;
    fValType = other.fValType;
    return *this;
}

DateTimeValue::~DateTimeValue() = default;

void DateTimeValue::SetValue(ScoreValue const* value) {
    ValueType const type = value != nullptr ? TypeOf(*value) : STRING_VALUE;
    if (type != NUMERIC_VALUE && type != DATETIME_VALUE) {
        fValue = gSysmisValue;
        return;
    }
    fValue = value->GetDouble();
    if (type == DATETIME_VALUE) {
        if (auto const* dateTime = dynamic_cast<DateTimeValue const*>(value)) {
            fValType = dateTime->fValType;
        }
    }
}

ScoreValue* DateTimeValue::GetValue() const {
    return new DateTimeValue(*this);
}

ScoreValue* DateTimeValue::Clone() const {
    return new DateTimeValue(*this);
}

bool DateTimeValue::operator==(ScoreValue const& other) const {
    if (TypeOf(other) != DATETIME_VALUE) {
        return false;
    }
    auto const* dateTime = dynamic_cast<DateTimeValue const*>(&other);
    return dateTime != nullptr && fValue == dateTime->fValue && fValType == dateTime->fValType;
}

int DateTimeValue::GetInt() const {
    return numbertext::TruncateToInt32(GetDouble());
}

double DateTimeValue::GetDouble() const {
    return fValType == DATE_VAL ? fValue / kSecondsPerDay : fValue;
}

std::string DateTimeValue::GetString() {
    // Only a number at or below the missing value reaches the calendar formatting.
    if (fValue > gSysmisValue) {
        return "Undefined";
    }
    CalendarParts const p = CalendarParts::Of(fValue);
    std::string const date =
        std::to_string(p.year) + "-" + std::to_string(p.month) + "-" + std::to_string(p.day);
    std::string const time =
        std::to_string(p.hour) + ":" + std::to_string(p.minute) + ":" + std::to_string(p.second);
    switch (fValType) {
        case DATE_VAL:
            return date;
        case TIME_VAL:
            return time;
        case DATETIME_VAL:
            return date + "T" + time;
    }
    return NumericValue::GetString();
}

ScoreValue::ValueType DateTimeValue::GetType() {
    return DATETIME_VALUE;
}

void DateTimeValue::SetDateTimeType(DateTimeValType valType) {
    fValType = valType;
}

DateTimeValue::DateTimeValType DateTimeValue::GetDateTimeType() {
    return fValType;
}

void DateTimeValue::SetDateTimeValue(double seconds, DateTimeValType valType) {
    fValue = seconds;
    fValType = valType;
}

void DateTimeValue::SetDateTimeValue(double value, ScoreDictVar::DateTimeType type) {
    FromNumeric(value, type);
    fValType = GetValType(type);
}

double DateTimeValue::GetDoubleValue(ScoreDictVar::DateTimeType type) const {
    if (fValue == gSysmisValue) {
        return gSysmisValue;
    }
    double const days = fValue / kSecondsPerDay;
    switch (type) {
        case ScoreDictVar::DT_DATE:
        case ScoreDictVar::DT_TIME:
        case ScoreDictVar::DT_DATETIME:
        case ScoreDictVar::DT_TIME_SECONDS:
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1970:
            return fValue;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_0:
            return days + kDaysYear0To1970;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1960:
            return days + kDays1960To1970;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1970:
            return days;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1980:
            return days - kDays1970To1980;
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_0:
            return fValue + kSecondsYear0To1970;
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1960:
            return fValue + kSeconds1960To1970;
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1980:
            return fValue - kSeconds1970To1980;
        case ScoreDictVar::DT_NONE:
            break;
    }
    return gSysmisValue;
}

NumericValue* DateTimeValue::GetValue(ScoreDictVar::DateTimeType type) const {
    return new NumericValue(GetDoubleValue(type));
}

std::string DateTimeValue::GetNumericString() {
    if (fValue <= gSysmisValue) {
        return "Undefined";
    }
    // A fresh stream in the global locale, fixed notation with the default 6 decimals.
    std::ostringstream out;
    out.setf(std::ios::fixed, std::ios::floatfield);
    out << fValue;
    return out.str();
}

double DateTimeValue::ComputeDurationSeconds(DateTimeValue const& other) const {
    return DurationIn(fValue - other.fValue, 1.0);
}

double DateTimeValue::ComputeDurationMinutes(DateTimeValue const& other) const {
    return DurationIn(fValue - other.fValue, 60.0);
}

double DateTimeValue::ComputeDurationHours(DateTimeValue const& other) const {
    return DurationIn(fValue - other.fValue, 3600.0);
}

double DateTimeValue::ComputeDurationDays(DateTimeValue const& other) const {
    return DurationIn(fValue - other.fValue, kSecondsPerDay);
}

double DateTimeValue::ComputeDurationMonths(DateTimeValue const& other) const {
    return DurationIn(DurationIn(fValue - other.fValue, kSecondsPerDay), 30.4375);
}

double DateTimeValue::ComputeDurationYears(DateTimeValue const& other) const {
    return DurationIn(DurationIn(fValue - other.fValue, kSecondsPerDay), 365.25);
}

double DateTimeValue::ExtractSecond() const {
    return static_cast<double>(CalendarParts::Of(fValue).second);
}

double DateTimeValue::ExtractMinute() const {
    return static_cast<double>(CalendarParts::Of(fValue).minute);
}

double DateTimeValue::ExtractHour() const {
    return static_cast<double>(CalendarParts::Of(fValue).hour);
}

double DateTimeValue::ExtractDay() const {
    return static_cast<double>(CalendarParts::Of(fValue).day);
}

double DateTimeValue::ExtractMonth() const {
    return static_cast<double>(CalendarParts::Of(fValue).month);
}

double DateTimeValue::ExtractYear() const {
    return static_cast<double>(CalendarParts::Of(fValue).year);
}

ScoreDictVar::DateTimeType DateTimeValue::GetDateTimeType(DateTimeValType valType) {
    switch (valType) {
        case DATE_VAL:
            return ScoreDictVar::DT_DATE;
        case TIME_VAL:
            return ScoreDictVar::DT_TIME;
        case DATETIME_VAL:
            break;
    }
    return ScoreDictVar::DT_DATETIME;
}

DateTimeValue::DateTimeValType DateTimeValue::GetValType(ScoreDictVar::DateTimeType type) {
    switch (type) {
        case ScoreDictVar::DT_DATE:
        case ScoreDictVar::DT_DATE_DAYS_SINCE_0:
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1960:
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1970:
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1980:
            return DATE_VAL;
        case ScoreDictVar::DT_TIME:
        case ScoreDictVar::DT_TIME_SECONDS:
            return TIME_VAL;
        default:
            return DATETIME_VAL;
    }
}

bool DateTimeValue::IsValidDateTime(std::string const& text, ScoreDictVar::DateTimeType type) {
    std::int64_t year, month, day, hour, minute, second;
    double number;
    switch (type) {
        case ScoreDictVar::DT_DATE:
            return ParseDate(text, year, month, day);
        case ScoreDictVar::DT_TIME:
            return ParseTime(text, hour, minute, second);
        case ScoreDictVar::DT_DATETIME:
            return ParseDateTime(text, year, month, day, hour, minute, second);
        default:
            return !IsNumericForm(type) || ParseDouble(text, number);
    }
}

bool DateTimeValue::IsValidDate(std::int64_t year, std::int64_t month, std::int64_t day) {
    return IsMonth(month) && day >= 1 && day <= DaysInMonth(year, month);
}

bool DateTimeValue::IsValidTime(std::int64_t hour, std::int64_t minute, std::int64_t second) {
    // Compared as unsigned, so that negative parts fail.
    return static_cast<std::uint64_t>(hour) < 24 && static_cast<std::uint64_t>(minute) < 60 &&
           static_cast<std::uint64_t>(second) < 60;
}

std::int64_t DateTimeValue::DaysInMonth(std::int64_t year, std::int64_t month) {
    if (!IsMonth(month)) {
        return 0;
    }
    return kMonthDays[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

std::int64_t DateTimeValue::DaysInYear(std::int64_t year) {
    return IsLeapYear(year) ? 366 : 365;
}

std::int64_t DateTimeValue::DaysBeforeMonth(std::int64_t year, std::int64_t month) {
    if (!IsMonth(month)) {
        return 0;
    }
    return kDaysBeforeMonth[month - 1] + (month > 2 && IsLeapYear(year) ? 1 : 0);
}

bool DateTimeValue::IsLeapYear(std::int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int64_t DateTimeValue::DaysBetweenYear(std::int64_t from, std::int64_t to) {
    __int128 const low = from < to ? from : to;
    __int128 const high = from < to ? to : from;
    __int128 const days = 365 * (high - low) + NumberOfLeapYear(from, to);
    return Saturate(from > to ? -days : days);
}

std::int64_t DateTimeValue::NumberOfLeapYear(std::int64_t from, std::int64_t to) {
    __int128 const low = from < to ? from : to;
    __int128 const high = from < to ? to : from;
    return Saturate(MultiplesBetween(low, high, 4) - MultiplesBetween(low, high, 100) +
                    MultiplesBetween(low, high, 400));
}

void DateTimeValue::ExtractDate(double seconds, std::int64_t& year, std::int64_t& month, std::int64_t& day) {
    // Richards' conversion from the Julian day number. Every division truncates; the magnitude of the
    // day count is below 2^47, so nothing overflows.
    std::int64_t const days = numbertext::TruncateToInt64(seconds) / kSecondsPerDay;
    std::int64_t const j = days + 2440588;
    std::int64_t const f = j + 1363 + (((4 * j + 274277) / 146097) * 3) / 4;
    std::int64_t const e = 4 * f + 3;
    std::int64_t const g = (e % 1461) / 4;
    std::int64_t const h = 5 * g + 2;
    day = (h % 153) / 5 + 1;
    month = ((h / 153 + 2) % 12) + 1;
    year = e / 1461 - 4716 + (14 - month) / 12;
}

void DateTimeValue::ExtractTime(double seconds, std::int64_t& hour, std::int64_t& minute,
                                std::int64_t& second) {
    std::int64_t r = numbertext::TruncateToInt64(seconds) % kSecondsPerDay;
    if (r < 0) {
        r += kSecondsPerDay;
    }
    hour = r / 3600;
    minute = (r - 3600 * hour) / 60;
    second = r - 60 * (60 * hour + minute);
}

void DateTimeValue::FromNumeric(double value, ScoreDictVar::DateTimeType type) {
    fValue = gSysmisValue;
    if (value == gSysmisValue) {
        return;
    }
    switch (type) {
        case ScoreDictVar::DT_DATE:
        case ScoreDictVar::DT_TIME:
        case ScoreDictVar::DT_DATETIME:
        case ScoreDictVar::DT_TIME_SECONDS:
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1970:
            fValue = value;
            break;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_0:
            fValue = (value - kDaysYear0To1970) * kSecondsPerDay;
            break;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1960:
            fValue = (value - kDays1960To1970) * kSecondsPerDay;
            break;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1970:
            fValue = value * kSecondsPerDay;
            break;
        case ScoreDictVar::DT_DATE_DAYS_SINCE_1980:
            fValue = (value + kDays1970To1980) * kSecondsPerDay;
            break;
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_0:
            fValue = value - kSecondsYear0To1970;
            break;
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1960:
            fValue = value - kSeconds1960To1970;
            break;
        case ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1980:
            fValue = value + kSeconds1970To1980;
            break;
        case ScoreDictVar::DT_NONE:
            break;
    }
}

void DateTimeValue::FromString(std::string const& text, ScoreDictVar::DateTimeType type) {
    fValue = gSysmisValue;
    // An empty text parses without giving any part, so it stays missing.
    if (text.empty()) {
        return;
    }
    std::int64_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    switch (type) {
        case ScoreDictVar::DT_DATE:
            if (ParseDate(text, year, month, day)) {
                std::int64_t const days = DaysBetweenYear(1970, year) + DaysBeforeMonth(year, month) + day;
                fValue = static_cast<double>(days * kSecondsPerDay - kSecondsPerDay);
            }
            break;
        case ScoreDictVar::DT_TIME:
            if (ParseTime(text, hour, minute, second)) {
                fValue = static_cast<double>((hour * 60 + minute) * 60 + second);
            }
            break;
        case ScoreDictVar::DT_DATETIME:
            if (ParseDateTime(text, year, month, day, hour, minute, second)) {
                std::int64_t const days = DaysBetweenYear(1970, year) + DaysBeforeMonth(year, month) + day;
                fValue = static_cast<double>((((days - 1) * 24 + hour) * 60 + minute) * 60 + second);
            }
            break;
        default:
            if (IsNumericForm(type)) {
                NumericValue::FromString(text);
                FromNumeric(fValue, type);
            }
            break;
    }
}

bool DateTimeValue::ParseDate(std::string const& text, std::int64_t& year, std::int64_t& month,
                              std::int64_t& day) {
    if (text.empty()) {
        return true;
    }
    year = month = day = -1;
    std::int64_t* outputs[3] = {&year, &month, &day};
    if (!ReadTokens(text, '-', outputs, &TrimString)) {
        return false;
    }
    // The year is not checked.
    return IsValidDate(year, month, day);
}

bool DateTimeValue::ParseTime(std::string const& text, std::int64_t& hour, std::int64_t& minute,
                              std::int64_t& second) {
    if (text.empty()) {
        return true;
    }
    hour = minute = second = -1;
    std::int64_t* outputs[3] = {&hour, &minute, &second};
    // A part not given stays -1 and fails the unsigned test.
    return ReadTokens(text, ':', outputs, &TrimString) && IsValidTime(hour, minute, second);
}

bool DateTimeValue::ParseDateTime(std::string const& text, std::int64_t& year, std::int64_t& month,
                                  std::int64_t& day, std::int64_t& hour, std::int64_t& minute,
                                  std::int64_t& second) {
    if (text.empty()) {
        return true;
    }
    year = month = day = hour = minute = second = 0;
    std::size_t const t = text.find('T');
    if (t == std::string::npos) {
        return false;
    }
    return ParseDate(text.substr(0, t), year, month, day) &&
           ParseTime(text.substr(t + 1), hour, minute, second);
}

bool DateTimeValue::ParseDouble(std::string const& text, double& number) {
    std::size_t const n = text.size();
    if (n == 0) {
        return false;
    }
    CharStats const lower = Scan(text, 'e');
    CharStats const upper = Scan(text, 'E');
    if (!ExponentLetterPlaced(lower, n) || !ExponentLetterPlaced(upper, n) ||
        (lower.count > 0 && upper.count > 0)) {
        return false;
    }
    bool const hasExponent = lower.count > 0 || upper.count > 0;
    std::size_t const exponent = lower.count > 0 ? lower.last : upper.last;
    CharStats const minus = Scan(text, '-');
    CharStats const plus = Scan(text, '+');
    if (!SignPlaced(text, minus, hasExponent) || !SignPlaced(text, plus, hasExponent) ||
        (!hasExponent && minus.count > 0 && plus.count > 0)) {
        return false;
    }
    CharStats const point = Scan(text, '.');
    if (point.count > 1 || (point.count == 1 && point.last == n - 1)) {
        return false;
    }
    if (point.count == 1 && hasExponent && !(point.last + 1 < exponent)) {
        return false;
    }
    for (char const c : text) {
        if (!(c >= '0' && c <= '9') && c != '+' && c != '-' && c != '.' && !IsExponentLetter(c)) {
            return false;
        }
    }
    number = NumericValue(text).GetDouble();
    return true;
}

std::string DateTimeValue::TrimString(std::string const& text, char c) {
    std::size_t const first = text.find_first_not_of(c);
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(c) - first + 1);
}

}  // namespace QXVantry_920
