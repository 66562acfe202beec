// Regular expressions of the string functions, compiled once per pattern text and thread. Internal to
// the library: a record-by-record evaluation repeats the same few patterns, and compiling one costs far
// more than matching it.
#pragma once

#include <string>

namespace QXVantry_920 {
namespace detail {

// Whether the pattern (UTF-8, no flags) matches anywhere in the subject; false for a pattern that does
// not compile.
bool RegexFind(std::string const& subject, std::string const& pattern);

// Every match of the pattern in the subject replaced by the replacement, whose "$n" name groups; false,
// with result untouched, when the pattern does not compile or the replacement fails.
bool RegexReplaceAll(std::string const& subject, std::string const& pattern, std::string const& replacement,
                     std::string& result);

}  // namespace detail
}  // namespace QXVantry_920
