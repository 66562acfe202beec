// Numbers and values as text for hosts: numbers written in the shortest form that reads back to the
// same double, and read back strictly (the whole text must be the number). Independent of the process
// locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "vantry/Export.h"

namespace QXVantry_920 {
class ScoreValue;
}

namespace vantry {

// The shortest text that reads back to exactly this double: "0.1", "1e+300", "-0", "inf", "nan".
VANTRY_EXPORT std::string ShortestNumber(double value);

// The number that the whole text spells, allowing blanks around it and a leading '+'; nothing for a
// text with anything else in it, for an empty text and for "nan".
VANTRY_EXPORT std::optional<double> ReadNumber(std::string_view text);

// The text of a value: a text as it stands, a number (a date's too: days since 1970, seconds for times)
// in its shortest form, a missing value (none, system-missing) as the empty text.
VANTRY_EXPORT std::string ValueText(QXVantry_920::ScoreValue const* value);

}  // namespace vantry
