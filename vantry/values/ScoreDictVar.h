// The abstract dictionary variable. This header so far carries the enumerations of ScoreDictVar that
// the value classes need; the variable interface itself belongs here as well.
#pragma once

#include <cstdint>

#include "vantry/Export.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreDictVar {
  public:
    enum VariableType : std::int32_t { kNUMERIC_VAR = 0, STRING_VAR = 1, DATETIME_VAR = 4 };

    enum MeasureLevel : std::int32_t { MEASURE_CONTINUOUS = 0, MEASURE_ORDINAL = 1, MEASURE_NOMINAL = 2 };

    // The PMML date and time types. The comment gives the PMML text, the unit of the outside number
    // and its epoch; inside the library every date is seconds since 1970 and every time seconds since
    // midnight.
    enum DateTimeType : std::int32_t {
        DT_NONE = 0,                          // not a date or time
        DT_DATE = 1,                          // "date": seconds since 1970
        DT_TIME = 2,                          // "time": seconds since midnight
        DT_DATETIME = 3,                      // "dateTime": seconds since 1970
        DT_DATE_DAYS_SINCE_0 = 4,             // "dateDaysSince[0]": days since year 0
        DT_DATE_DAYS_SINCE_1960 = 5,          // "dateDaysSince[1960]"
        DT_DATE_DAYS_SINCE_1970 = 6,          // "dateDaysSince[1970]"
        DT_DATE_DAYS_SINCE_1980 = 7,          // "dateDaysSince[1980]"
        DT_TIME_SECONDS = 8,                  // "timeSeconds": seconds since midnight
        DT_DATETIME_SECONDS_SINCE_0 = 9,      // "dateTimeSecondsSince[0]": seconds since year 0
        DT_DATETIME_SECONDS_SINCE_1960 = 10,  // "dateTimeSecondsSince[1960]"
        DT_DATETIME_SECONDS_SINCE_1970 = 11,  // "dateTimeSecondsSince[1970]"
        DT_DATETIME_SECONDS_SINCE_1980 = 12,  // "dateTimeSecondsSince[1980]"
    };
};

}  // namespace QXVantry_920
