// Number conversions shared by the value classes. Each reproduces the result of a C library or processor
// conversion by defined means, independent of the process locale. Internal to the library.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace QXVantry_920 {
namespace numbertext {

// The system-missing number and the relative tolerance of NumericValue, which checks that they agree.
constexpr double kSysmis = -std::numeric_limits<double>::max();
constexpr double kRelativeEpsilon = 2.22045e-14;

// NumericValue::IsEqual: both zero, both system-missing, or equal within the relative tolerance. Inline,
// for the range tests that every case makes.
inline bool SameNumber(double a, double b) {
    if (a == 0.0 && b == 0.0) {
        return true;
    }
    if (a == kSysmis || b == kSysmis) {
        return a == b;
    }
    return std::fmax(std::fabs(a), std::fabs(b)) * kRelativeEpsilon > std::fabs(a - b);
}

// What atoi gives on a platform with a 64-bit long: leading white space, an optional sign and the
// digits up to the first other character, saturated to 64 bits and then wrapped to 32; 0 without digits.
int LeadingInt(std::string const& text);

// What the C library's atof gives, read in the "C" locale whatever the process locale is.
double LeadingDouble(std::string const& text);

// A text that is one finite decimal number and nothing else (digits with at most one point, an optional
// leading sign, an optional exponent; no blanks, no "inf" or "nan"), read correctly rounded into x, as
// strtod and a classic-locale stream read it. False, x untouched, for any other text and for a number
// beyond the range of a double, which the caller then reads its own way.
bool WholeDecimal(std::string const& text, double& x);

// Truncation toward zero; a value that does not fit (NaN included) gives the integer-indefinite value
// (the most negative integer), as the processor's truncating conversion does.
std::int32_t TruncateToInt32(double value);
std::int64_t TruncateToInt64(double value);

}  // namespace numbertext
}  // namespace QXVantry_920
