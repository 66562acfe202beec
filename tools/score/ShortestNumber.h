// Numbers as text for the scoring command: written in the shortest form that reads back to the same
// double, and read back strictly (the whole text must be the number).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantry_tool {

// The shortest text that reads back to exactly this double: "0.1", "1e+300", "-0", "inf", "nan".
std::string ShortestNumber(double value);

// The number that the whole text spells, allowing blanks around it and a leading '+'; nothing for a
// text with anything else in it, for an empty text and for "nan".
std::optional<double> ReadNumber(std::string_view text);

}  // namespace vantry_tool
