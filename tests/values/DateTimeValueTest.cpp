#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/DateTimeValue.h"

using namespace QXVantry_920;
using namespace vantry_test;
using DT = ScoreDictVar::DateTimeType;

namespace {

// The stored number of seconds, whatever the val type.
double Seconds(DateTimeValue const& value) {
    return value.GetDoubleValue(ScoreDictVar::DT_DATETIME);
}

DateTimeValue Of(char const* text, DT type) {
    return DateTimeValue(std::string(text), type);
}

}  // namespace

TEST(DateTimeValue, EpochsAndUnitsConvertBothWays) {
    struct Row {
        DT type;
        double outside;
        double seconds;
        DateTimeValue::DateTimeValType valType;
    } const rows[] = {
        {ScoreDictVar::DT_DATE, 86400, 86400, DateTimeValue::DATE_VAL},
        {ScoreDictVar::DT_TIME, 45005, 45005, DateTimeValue::TIME_VAL},
        {ScoreDictVar::DT_DATETIME, -5, -5, DateTimeValue::DATETIME_VAL},
        {ScoreDictVar::DT_DATE_DAYS_SINCE_0, 719528, 0, DateTimeValue::DATE_VAL},
        {ScoreDictVar::DT_DATE_DAYS_SINCE_1960, 0, -315619200, DateTimeValue::DATE_VAL},
        {ScoreDictVar::DT_DATE_DAYS_SINCE_1970, 10957, 946684800, DateTimeValue::DATE_VAL},
        {ScoreDictVar::DT_DATE_DAYS_SINCE_1980, 0, 315532800, DateTimeValue::DATE_VAL},
        {ScoreDictVar::DT_TIME_SECONDS, 60, 60, DateTimeValue::TIME_VAL},
        {ScoreDictVar::DT_DATETIME_SECONDS_SINCE_0, 62167219200, 0, DateTimeValue::DATETIME_VAL},
        {ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1960, 0, -315619200, DateTimeValue::DATETIME_VAL},
        {ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1970, 7, 7, DateTimeValue::DATETIME_VAL},
        {ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1980, 0, 315532800, DateTimeValue::DATETIME_VAL},
    };
    for (Row const& row : rows) {
        DateTimeValue value(row.outside, row.type);
        EXPECT_EQ(Seconds(value), row.seconds) << row.type;
        EXPECT_EQ(value.GetDoubleValue(row.type), row.outside) << row.type;
        EXPECT_EQ(value.GetDateTimeType(), row.valType) << row.type;
        EXPECT_EQ(DateTimeValue::GetValType(row.type), row.valType) << row.type;
        DateTimeValue const missing(kSysmis, row.type);
        EXPECT_TRUE(missing.IsSystemMissingValue()) << row.type;
        EXPECT_EQ(missing.GetDoubleValue(row.type), kSysmis) << row.type;
    }

    DateTimeValue const epoch1960(0.0, ScoreDictVar::DT_DATE_DAYS_SINCE_1960);
    EXPECT_EQ(epoch1960.GetDoubleValue(ScoreDictVar::DT_DATE_DAYS_SINCE_1970), -3653.0);
    EXPECT_EQ(epoch1960.GetDoubleValue(ScoreDictVar::DT_NONE), kSysmis);
    EXPECT_EQ(epoch1960.GetDoubleValue(static_cast<DT>(13)), kSysmis);
    std::unique_ptr<NumericValue> days(epoch1960.GetValue(ScoreDictVar::DT_DATE_DAYS_SINCE_1980));
    EXPECT_EQ(days->GetDouble(), -7305.0);
    EXPECT_TRUE(DateTimeValue(12.0, ScoreDictVar::DT_NONE).IsSystemMissingValue());
    EXPECT_TRUE(DateTimeValue(12.0, static_cast<DT>(-1)).IsSystemMissingValue());

    EXPECT_EQ(DateTimeValue::GetDateTimeType(DateTimeValue::DATE_VAL), ScoreDictVar::DT_DATE);
    EXPECT_EQ(DateTimeValue::GetDateTimeType(DateTimeValue::TIME_VAL), ScoreDictVar::DT_TIME);
    EXPECT_EQ(DateTimeValue::GetDateTimeType(static_cast<DateTimeValue::DateTimeValType>(9)),
              ScoreDictVar::DT_DATETIME);
}

TEST(DateTimeValue, ParsesDatesTimesAndNumbers) {
    struct Row {
        char const* text;
        DT type;
        double seconds;
        bool valid;  // what IsValidDateTime says
    } const rows[] = {
        {"1970-01-01", ScoreDictVar::DT_DATE, 0, true},
        {"2000-03-01", ScoreDictVar::DT_DATE, 951868800, true},
        {" 2000 - 03 - 01 ", ScoreDictVar::DT_DATE, 951868800, true},
        {"2000-03-01-07", ScoreDictVar::DT_DATE, 951868800, true},
        {"1969-12-31", ScoreDictVar::DT_DATE, -86400, true},
        {"1900-01-01", ScoreDictVar::DT_DATE, -2208988800, true},
        {"1600-02-29", ScoreDictVar::DT_DATE, -11670998400, true},
        {"0-01-01", ScoreDictVar::DT_DATE, -62167219200, true},
        {"9999-12-31", ScoreDictVar::DT_DATE, 253402214400, true},
        {"2001-02-29", ScoreDictVar::DT_DATE, kSysmis, false},
        {"1900-02-29", ScoreDictVar::DT_DATE, kSysmis, false},
        {"2000-13-01", ScoreDictVar::DT_DATE, kSysmis, false},
        {"2000-00-10", ScoreDictVar::DT_DATE, kSysmis, false},
        {"2000/03/01", ScoreDictVar::DT_DATE, kSysmis, false},
        {"-2000-03-01", ScoreDictVar::DT_DATE, kSysmis, false},
        {"2000-03", ScoreDictVar::DT_DATE, kSysmis, false},
        {"", ScoreDictVar::DT_DATE, kSysmis, true},
        {"12:30:05", ScoreDictVar::DT_TIME, 45005, true},
        {"23:59:59", ScoreDictVar::DT_TIME, 86399, true},
        {"24:00:00", ScoreDictVar::DT_TIME, kSysmis, false},
        {"12:60:00", ScoreDictVar::DT_TIME, kSysmis, false},
        {"12:30", ScoreDictVar::DT_TIME, kSysmis, false},
        {"12:30:05.5", ScoreDictVar::DT_TIME, kSysmis, false},
        {"2000-01-01T00:00:00", ScoreDictVar::DT_DATETIME, 946684800, true},
        {"1969-12-31T23:59:59", ScoreDictVar::DT_DATETIME, -1, true},
        {"1800-01-01T12:00:00", ScoreDictVar::DT_DATETIME, -5364619200, true},
        {"2000-01-01 00:00:00", ScoreDictVar::DT_DATETIME, kSysmis, false},
        {"2000-01-01T25:00:00", ScoreDictVar::DT_DATETIME, kSysmis, false},
        {"10957", ScoreDictVar::DT_DATE_DAYS_SINCE_1970, 946684800, true},
        {"1.5e3", ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1970, 1500, true},
        // Numeric forms are read as numbers, so a word is 0 and not missing.
        {"abc", ScoreDictVar::DT_DATE_DAYS_SINCE_1970, 0, false},
        {"", ScoreDictVar::DT_DATE_DAYS_SINCE_1970, kSysmis, false},
        {"2000-01-01", ScoreDictVar::DT_NONE, kSysmis, true},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(Seconds(Of(row.text, row.type)), row.seconds) << "'" << row.text << "' as " << row.type;
        EXPECT_EQ(DateTimeValue::IsValidDateTime(row.text, row.type), row.valid)
            << "'" << row.text << "' as " << row.type;
    }
    EXPECT_EQ(Of("2000-03-01", ScoreDictVar::DT_DATE).GetDouble(), 11017.0);
    EXPECT_EQ(Of("12:30:05", ScoreDictVar::DT_TIME).ExtractMinute(), 30.0);
}

TEST(DateTimeValue, NumericFormsMustBePlainDecimals) {
    struct Row {
        char const* text;
        bool valid;
    } const rows[] = {
        {"10957", true}, {"-5", true},     {"+5", true},     {".5", true},     {"1.5", true},
        {"1e5", true},   {"1E-5", true},   {"-1e-5", true},  {"1.5e+3", true}, {"", false},
        {"e5", false},   {"1e", false},    {"1e5e", false},  {"1e5E2", false}, {"5-", false},
        {"--5", false},  {"1-5", false},   {"1e--5", false}, {"-+5", false},   {"+-5", false},
        {"5.", false},   {"1.2.3", false}, {"1.e5", false},  {"1e5.0", false}, {" 5", false},
        {"0x10", false}, {"1,5", false},   {"1e5-", false},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(DateTimeValue::IsValidDateTime(row.text, ScoreDictVar::DT_DATE_DAYS_SINCE_1970), row.valid)
            << "'" << row.text << "'";
    }
    EXPECT_TRUE(DateTimeValue::IsValidDateTime("anything", ScoreDictVar::DT_NONE));
    EXPECT_TRUE(DateTimeValue::IsValidDateTime("anything", static_cast<DT>(40)));
    EXPECT_TRUE(DateTimeValue::IsValidDateTime("T12:00:00", ScoreDictVar::DT_DATETIME));
}

TEST(DateTimeValue, ExtractsCalendarPartsBeforeAndFarFrom1970) {
    struct Row {
        double seconds;
        std::int64_t year, month, day, hour, minute, second;
    } const rows[] = {
        {0, 1970, 1, 1, 0, 0, 0},
        {951868800 + 45005, 2000, 3, 1, 12, 30, 5},
        {-86400, 1969, 12, 31, 0, 0, 0},
        // The day count truncates toward zero: the last second of 1969 still falls on 1970-01-01.
        {-1, 1970, 1, 1, 23, 59, 59},
        {-2208988800, 1900, 1, 1, 0, 0, 0},
        {-11670998400, 1600, 2, 29, 0, 0, 0},
        {-62167219200, 0, 1, 1, 0, 0, 0},
        {253402300799, 9999, 12, 31, 23, 59, 59},
        {4107542400, 2100, 3, 1, 0, 0, 0},
        {86400.9, 1970, 1, 2, 0, 0, 0},
    };
    for (Row const& row : rows) {
        std::int64_t year, month, day, hour, minute, second;
        DateTimeValue::ExtractDate(row.seconds, year, month, day);
        DateTimeValue::ExtractTime(row.seconds, hour, minute, second);
        EXPECT_EQ(year, row.year) << row.seconds;
        EXPECT_EQ(month, row.month) << row.seconds;
        EXPECT_EQ(day, row.day) << row.seconds;
        EXPECT_EQ(hour, row.hour) << row.seconds;
        EXPECT_EQ(minute, row.minute) << row.seconds;
        EXPECT_EQ(second, row.second) << row.seconds;
    }
    DateTimeValue const value(-2208988800.0 + 3723, DateTimeValue::DATETIME_VAL);
    EXPECT_EQ(value.ExtractYear(), 1900.0);
    EXPECT_EQ(value.ExtractMonth(), 1.0);
    EXPECT_EQ(value.ExtractDay(), 2.0);  // truncated toward zero, as above
    EXPECT_EQ(value.ExtractHour(), 1.0);
    EXPECT_EQ(value.ExtractMinute(), 2.0);
    EXPECT_EQ(value.ExtractSecond(), 3.0);
}

// Month lengths and validity are covered through the parse table; these are the year arithmetic and the
// guards the parser does not reach.
TEST(DateTimeValue, CalendarHelpers) {
    struct Row {
        std::int64_t year;
        bool leap;
    } const leapRows[] = {{1900, false}, {2000, true}, {0, true}, {-4, true}, {-100, false}, {-400, true}};
    for (Row const& row : leapRows) {
        EXPECT_EQ(DateTimeValue::IsLeapYear(row.year), row.leap) << row.year;
        EXPECT_EQ(DateTimeValue::DaysInYear(row.year), row.leap ? 366 : 365) << row.year;
    }
    EXPECT_EQ(DateTimeValue::DaysInMonth(2001, 13), 0);
    EXPECT_EQ(DateTimeValue::DaysBeforeMonth(2001, 0), 0);
    EXPECT_EQ(DateTimeValue::DaysBeforeMonth(2000, 2), 31);  // the leap day counts from March on

    EXPECT_EQ(DateTimeValue::DaysBetweenYear(1970, 1960), -3653);
    EXPECT_EQ(DateTimeValue::DaysBetweenYear(1960, 1970), 3653);
    EXPECT_EQ(DateTimeValue::DaysBetweenYear(1970, 1970), 0);
    EXPECT_EQ(DateTimeValue::DaysBetweenYear(-400, 0), 146097);
    EXPECT_EQ(DateTimeValue::NumberOfLeapYear(1970, 1960), 3);
    EXPECT_EQ(DateTimeValue::NumberOfLeapYear(1900, 1901), 0);
    EXPECT_EQ(DateTimeValue::NumberOfLeapYear(-1, 1), 1);
    EXPECT_EQ(DateTimeValue::NumberOfLeapYear(-401, -399), 1);
    std::int64_t const lowest = std::numeric_limits<std::int64_t>::min();
    std::int64_t const highest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(DateTimeValue::DaysBetweenYear(lowest, highest), highest);
    EXPECT_EQ(DateTimeValue::DaysBetweenYear(highest, lowest), lowest);

    EXPECT_FALSE(DateTimeValue::IsValidTime(-1, 0, 0));
    EXPECT_FALSE(DateTimeValue::IsValidTime(0, 0, 60));
}

TEST(DateTimeValue, StringFormsAndScaledDouble) {
    DateTimeValue date = Of("10957", ScoreDictVar::DT_DATE_DAYS_SINCE_1970);
    EXPECT_EQ(date.GetString(), "Undefined");
    EXPECT_EQ(date.GetNumericString(), "946684800.000000");
    EXPECT_EQ(date.GetDouble(), 10957.0);
    EXPECT_EQ(date.GetInt(), 10957);
    DateTimeValue time(45005.5, DateTimeValue::TIME_VAL);
    EXPECT_EQ(time.GetString(), "Undefined");
    EXPECT_EQ(time.GetDouble(), 45005.5);
    EXPECT_EQ(time.GetInt(), 45005);
    EXPECT_EQ(DateTimeValue(1e300, DateTimeValue::DATETIME_VAL).GetInt(), -2147483647 - 1);

    // Only the missing number reaches the calendar formatting: its seconds cut to the most negative
    // 64-bit integer.
    DateTimeValue missing;
    EXPECT_EQ(missing.GetType(), ScoreValue::DATETIME_VALUE);
    EXPECT_EQ(missing.GetDateTimeType(), DateTimeValue::DATETIME_VAL);
    EXPECT_EQ(missing.GetNumericString(), "Undefined");
    EXPECT_EQ(missing.GetString(), "-292277022657-3--28T8:29:52");
    missing.SetDateTimeType(DateTimeValue::DATE_VAL);
    EXPECT_EQ(missing.GetString(), "-292277022657-3--28");
    missing.SetDateTimeType(DateTimeValue::TIME_VAL);
    EXPECT_EQ(missing.GetString(), "8:29:52");
    missing.SetDateTimeType(static_cast<DateTimeValue::DateTimeValType>(7));
    EXPECT_EQ(missing.GetString(), "Undefined");
}

TEST(DateTimeValue, EqualityCopiesAndSetValue) {
    DateTimeValue const asDate(86400.0, DateTimeValue::DATE_VAL);
    DateTimeValue const asDateTime(86400.0, DateTimeValue::DATETIME_VAL);
    EXPECT_FALSE(asDate == asDateTime);
    EXPECT_TRUE(asDate == DateTimeValue(86400.0, DateTimeValue::DATE_VAL));
    EXPECT_FALSE(asDate == DateTimeValue(86400.0 + 1e-9, DateTimeValue::DATE_VAL));
    EXPECT_FALSE(asDateTime == NumericValue(86400.0));
    EXPECT_FALSE(NumericValue(86400.0) == asDateTime);

    std::unique_ptr<ScoreValue> clone(asDate.Clone()), value(asDate.GetValue());
    EXPECT_TRUE(*clone == asDate);
    EXPECT_TRUE(*value == asDate);

    // SetValue takes GetDouble, which is in days for a date.
    DateTimeValue target(5.0, DateTimeValue::TIME_VAL);
    target.SetValue(&asDate);
    EXPECT_EQ(Seconds(target), 1.0);
    EXPECT_EQ(target.GetDateTimeType(), DateTimeValue::DATE_VAL);
    NumericValue const seven(7.0);
    target.SetValue(&seven);
    EXPECT_EQ(Seconds(target), 7.0);
    EXPECT_EQ(target.GetDateTimeType(), DateTimeValue::DATE_VAL);
    StringValue const text("7");
    target.SetValue(&text);
    EXPECT_TRUE(target.IsSystemMissingValue());
    target = asDateTime;
    EXPECT_TRUE(target == asDateTime);
    target.SetValue(nullptr);
    EXPECT_TRUE(target.IsSystemMissingValue());
    target.SetDateTimeValue(3.0, ScoreDictVar::DT_DATE_DAYS_SINCE_1970);
    EXPECT_EQ(Seconds(target), 3.0 * 86400);
    EXPECT_EQ(target.GetDateTimeType(), DateTimeValue::DATE_VAL);

    NumericValue number(1.0);
    number.SetValue(&asDateTime);
    EXPECT_EQ(number.GetDouble(), 1.0);
}

TEST(DateTimeValue, DurationsUseAverageMonthsAndYears) {
    DateTimeValue const start(0.0, DateTimeValue::DATE_VAL);
    DateTimeValue const end(365.25 * 86400, DateTimeValue::DATE_VAL);
    EXPECT_DOUBLE_EQ(end.ComputeDurationYears(start), 1.0);
    EXPECT_DOUBLE_EQ(end.ComputeDurationMonths(start), 12.0);
    EXPECT_DOUBLE_EQ(end.ComputeDurationDays(start), 365.25);
    EXPECT_DOUBLE_EQ(end.ComputeDurationHours(start), 8766.0);
    EXPECT_DOUBLE_EQ(end.ComputeDurationMinutes(start), 525960.0);
    EXPECT_DOUBLE_EQ(start.ComputeDurationSeconds(end), -31557600.0);
}

// Comparing across kinds, left operand first: 5 as a number, a string, a date-time (seconds) and a date
// of 5 days (its GetDouble is 5, its stored number 432000).
TEST(ScoreValue, CrossTypeComparisonSummary) {
    NumericValue const number(5.0);
    StringValue const text("5");
    DateTimeValue const dateTime(5.0, DateTimeValue::DATETIME_VAL);
    DateTimeValue const date(5.0 * 86400, DateTimeValue::DATE_VAL);

    struct Row {
        char const* name;
        ScoreValue const& left;
        ScoreValue const& right;
        bool eq, ge, le, equal;
    } const rows[] = {
        {"numeric/string", number, text, false, true, true, true},
        {"numeric/date-time", number, dateTime, false, true, true, true},
        {"numeric/date", number, date, false, true, true, true},
        {"string/numeric", text, number, false, false, false, false},
        {"string/date-time", text, dateTime, false, false, false, false},
        {"date-time/date-time", dateTime, DateTimeValue(dateTime), true, true, true, true},
        {"date-time/numeric", dateTime, number, false, true, true, true},
        {"date-time/string", dateTime, text, false, true, true, true},
        // The left date's stored seconds meet the right side's GetDouble.
        {"date/numeric", date, number, false, true, false, true},
        {"date/date", date, DateTimeValue(date), true, true, false, true},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(row.left == row.right, row.eq) << row.name;
        EXPECT_EQ(row.left >= row.right, row.ge) << row.name;
        EXPECT_EQ(row.left <= row.right, row.le) << row.name;
        EXPECT_EQ(row.left.Equal(&row.right, false, false), row.equal) << row.name;
    }
    EXPECT_TRUE(date > number);
    EXPECT_FALSE(number > date);
    EXPECT_FALSE(DateTimeValue() >= DateTimeValue());
}
