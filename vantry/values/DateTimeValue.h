// Date and time values. The inherited number counts seconds: since 1970-01-01T00:00:00 for dates and
// date-times, since midnight for times. The PMML variants (days since 1960, seconds since year 0, ...)
// are converted on the way in and out, so that inside the library there is one scale. The calendar is
// the proleptic Gregorian one, without time zones or leap seconds.
#pragma once

#include <cstdint>
#include <string>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

class VANTRY_EXPORT DateTimeValue : public NumericValue {
  public:
    enum DateTimeValType : std::int32_t { DATE_VAL = 0, TIME_VAL = 1, DATETIME_VAL = 2 };

    // Missing, DATETIME_VAL.
    DateTimeValue();
    // The number is stored as it stands.
    DateTimeValue(double seconds, DateTimeValType valType);
    // The outside number of the PMML type, converted by FromNumeric.
    DateTimeValue(double value, ScoreDictVar::DateTimeType type);
    // The text of the PMML type, read by FromString; missing when it does not parse.
    DateTimeValue(std::string const& text, ScoreDictVar::DateTimeType type);
    DateTimeValue(DateTimeValue const& other);
    DateTimeValue& operator=(DateTimeValue const& other);
    ~DateTimeValue() override;

    // Takes a numeric or date-time value's GetDouble (and a date-time's val type); anything else, null
    // included, makes this value missing. A date's GetDouble is in days, so this is not a copy.
    void SetValue(ScoreValue const* value) override;
    ScoreValue* GetValue() const override;
    ScoreValue* Clone() const override;
    // Another date-time with exactly the same number and val type.
    bool operator==(ScoreValue const& other) const override;
    int GetInt() const override;
    // Days since 1970 for a date, the number of seconds otherwise.
    double GetDouble() const override;
    // "Undefined" for every number above gSysmisValue; only a number at or below it is formatted as a
    // date or time. GetNumericString is the readable form of a real value.
    std::string GetString() override;
    ValueType GetType() override;
    virtual void SetDateTimeType(DateTimeValType valType);
    virtual DateTimeValType GetDateTimeType();

    void SetDateTimeValue(double seconds, DateTimeValType valType);
    void SetDateTimeValue(double value, ScoreDictVar::DateTimeType type);
    // The number on the scale of the PMML type; gSysmisValue when missing or for a type outside 1 to 12.
    double GetDoubleValue(ScoreDictVar::DateTimeType type) const;
    // A new NumericValue of GetDoubleValue (type); the caller owns it.
    NumericValue* GetValue(ScoreDictVar::DateTimeType type) const;
    // "Undefined" at or below gSysmisValue, otherwise the number in fixed notation with 6 decimals.
    std::string GetNumericString();

    // This number minus the other's, in the unit of the name. Months and years are the average lengths
    // 30.4375 and 365.25 days. Missing values are not tested for.
    double ComputeDurationSeconds(DateTimeValue const& other) const;
    double ComputeDurationMinutes(DateTimeValue const& other) const;
    double ComputeDurationHours(DateTimeValue const& other) const;
    double ComputeDurationDays(DateTimeValue const& other) const;
    double ComputeDurationMonths(DateTimeValue const& other) const;
    double ComputeDurationYears(DateTimeValue const& other) const;

    // Parts of the stored number, by ExtractTime and ExtractDate.
    double ExtractSecond() const;
    double ExtractMinute() const;
    double ExtractHour() const;
    double ExtractDay() const;
    double ExtractMonth() const;
    double ExtractYear() const;

    // DATE_VAL gives DT_DATE, TIME_VAL DT_TIME, anything else DT_DATETIME.
    static ScoreDictVar::DateTimeType GetDateTimeType(DateTimeValType valType);
    // Types 1, 4 to 7 are dates, 2 and 8 times, everything else date-times.
    static DateTimeValType GetValType(ScoreDictVar::DateTimeType type);
    // Whether the text parses as the type: dates, times and date-times by their text forms, types 4 to
    // 12 as strict decimal numbers, any other type true.
    static bool IsValidDateTime(std::string const& text, ScoreDictVar::DateTimeType type);
    static bool IsValidDate(std::int64_t year, std::int64_t month, std::int64_t day);
    static bool IsValidTime(std::int64_t hour, std::int64_t minute, std::int64_t second);
    // A month outside 1 to 12 has 0 days and 0 days before it.
    static std::int64_t DaysInMonth(std::int64_t year, std::int64_t month);
    static std::int64_t DaysInYear(std::int64_t year);
    static std::int64_t DaysBeforeMonth(std::int64_t year, std::int64_t month);
    static bool IsLeapYear(std::int64_t year);
    // The days of the years from the smaller up to but not including the larger; negative when from is
    // greater than to.
    static std::int64_t DaysBetweenYear(std::int64_t from, std::int64_t to);
    // The leap years in the same half-open interval, unsigned.
    static std::int64_t NumberOfLeapYear(std::int64_t from, std::int64_t to);
    // The calendar date of seconds since 1970, through the Julian day number. The day count is truncated
    // toward zero, so the seconds of the day before 1970 still fall on 1970-01-01.
    static void ExtractDate(double seconds, std::int64_t& year, std::int64_t& month, std::int64_t& day);
    // The time of day of seconds since midnight or since 1970.
    static void ExtractTime(double seconds, std::int64_t& hour, std::int64_t& minute, std::int64_t& second);

  private:
    void FromNumeric(double value, ScoreDictVar::DateTimeType type);
    void FromString(std::string const& text, ScoreDictVar::DateTimeType type);
    // "year-month-day"; an empty text is accepted and leaves the outputs alone.
    static bool ParseDate(std::string const& text, std::int64_t& year, std::int64_t& month,
                          std::int64_t& day);
    // "hour:minute:second"; an empty text is accepted and leaves the outputs alone.
    static bool ParseTime(std::string const& text, std::int64_t& hour, std::int64_t& minute,
                          std::int64_t& second);
    // "date" "T" "time"; an empty text is accepted.
    static bool ParseDateTime(std::string const& text, std::int64_t& year, std::int64_t& month,
                              std::int64_t& day, std::int64_t& hour, std::int64_t& minute,
                              std::int64_t& second);
    // A strict check that the text is a plain decimal number, which is then read into number.
    static bool ParseDouble(std::string const& text, double& number);
    static std::string TrimString(std::string const& text, char c);

    DateTimeValType fValType;
};

}  // namespace QXVantry_920
