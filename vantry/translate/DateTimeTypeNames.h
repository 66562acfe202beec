// The names that documents give the date and time data types ("date", "dateDaysSince[1970]"), one per
// ScoreDictVar::DateTimeType: the dictionary readers read a dataType through them, and hosts that
// describe a field write its type with them.
#pragma once

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

// The data type name of a date or time type; null for DT_NONE and any number outside the enumeration.
VANTRY_EXPORT char const* DateTimeTypeName(ScoreDictVar::DateTimeType type);

}  // namespace QXVantry_920
