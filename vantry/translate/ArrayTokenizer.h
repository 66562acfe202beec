// The scanner of the text of a PMML "Array": elements separated by blanks, double quotes around an
// element that holds blanks or is empty, and a backslash before a quote for a quote inside quotes.
// Internal to the library.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace QXVantry_920 {

// Splits the text into its elements. With `literalBackslash` a backslash is an ordinary character and
// a quoted element ends at the next quote. Each element is passed to `check` as it is cut out, before
// escaped quotes are turned into quotes.
std::vector<std::string> TokenizeArrayText(std::string const& text, bool literalBackslash,
                                           std::function<void(std::string const&)> const& check);

}  // namespace QXVantry_920
