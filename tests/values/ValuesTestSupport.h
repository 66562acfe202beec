// Helpers of the value tests: the system-missing number, infinity, and what an object's Display writes.
#pragma once

#include <limits>
#include <sstream>
#include <string>

namespace vantry_test {

inline double const kSysmis = -std::numeric_limits<double>::max();
inline double const kInf = std::numeric_limits<double>::infinity();

template <class T>
std::string Shown(T const& object) {
    std::ostringstream out;
    object.Display(out);
    return out.str();
}

}  // namespace vantry_test
