// Shared by the built-in functions of derived fields. Internal to the library.
#pragma once

#include <limits>

namespace QXVantry_920 {
namespace detail {

// The system-missing number (NumericValue::GetSysmisValue), here as a constant for the hot paths.
constexpr double kSysmis = std::numeric_limits<double>::lowest();

inline bool IsSysmis(double x) {
    return x == kSysmis;
}

// The bounds of the functions that truncate through a 32-bit int; an argument must lie strictly between.
constexpr double kIntLow = -2147483648.0;
constexpr double kIntHigh = 2147483647.0;

inline bool FitsInt(double x) {
    return x > kIntLow && x < kIntHigh;
}

}  // namespace detail
}  // namespace QXVantry_920
