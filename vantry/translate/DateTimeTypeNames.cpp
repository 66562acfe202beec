#include "vantry/translate/DateTimeTypeNames.h"

namespace QXVantry_920 {

char const* DateTimeTypeName(ScoreDictVar::DateTimeType type) {
    // In the order of the enumeration, from DT_DATE = 1.
    static char const* const kNames[] = {
        "date",
        "time",
        "dateTime",
        "dateDaysSince[0]",
        "dateDaysSince[1960]",
        "dateDaysSince[1970]",
        "dateDaysSince[1980]",
        "timeSeconds",
        "dateTimeSecondsSince[0]",
        "dateTimeSecondsSince[1960]",
        "dateTimeSecondsSince[1970]",
        "dateTimeSecondsSince[1980]",
    };
    int const number = static_cast<int>(type);
    constexpr int kCount = static_cast<int>(sizeof(kNames) / sizeof(kNames[0]));
    static_assert(kCount == ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1980);
    return number >= 1 && number <= kCount ? kNames[number - 1] : nullptr;
}

}  // namespace QXVantry_920
