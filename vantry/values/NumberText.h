// Number conversions shared by the value classes. Each reproduces the result of a C library or processor
// conversion by defined means, independent of the process locale. Internal to the library.
#pragma once

#include <cstdint>
#include <string>

namespace QXVantry_920 {
namespace numbertext {

// What atoi gives on a platform with a 64-bit long: leading white space, an optional sign and the
// digits up to the first other character, saturated to 64 bits and then wrapped to 32; 0 without digits.
int LeadingInt(std::string const& text);

// What the C library's atof gives, read in the "C" locale whatever the process locale is.
double LeadingDouble(std::string const& text);

// Truncation toward zero; a value that does not fit (NaN included) gives the integer-indefinite value
// (the most negative integer), as the processor's truncating conversion does.
std::int32_t TruncateToInt32(double value);
std::int64_t TruncateToInt64(double value);

}  // namespace numbertext
}  // namespace QXVantry_920
