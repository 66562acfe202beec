// Small helpers shared by the distribution sources. Internal to the library: nothing here is exported.
#pragma once

#include <cfloat>
#include <cmath>

#include "vantry/diagnostics/QXMV.h"

namespace QXMath_920 {
namespace dist {

// Exponent bounds. Below the floor an exponential counts as 0; above the ceiling it overflows. Most
// functions use the plain floor, the non-central series and the guarded arithmetic the tighter one.
constexpr double kExpFloor = -708.0;
constexpr double kExpFloorTight = -708.39;
constexpr double kExpCeiling = 709.0;

// log(pi) / 2, the log of the gamma function at one half.
constexpr double kHalfLogPi = 0.5723649429247001;
constexpr double kPi = 3.14159265358979323846;

// Constants computed once, under the thread-safe initialisation of local statics.
inline double SqrtTwo() {
    static double const value = std::sqrt(2.0);
    return value;
}

inline double SqrtDblMax() {
    static double const value = std::sqrt(DBL_MAX);
    return value;
}

inline double Missing() {
    return QXCommon_920::QXMV::Missing();
}

inline bool IsMissing(double value) {
    return QXCommon_920::QXMV::IsMissing(value);
}

// exp(t), or 0 when t lies below the given floor.
inline double ExpAbove(double t, double floor) {
    return t < floor ? 0.0 : std::exp(t);
}

inline bool IsWhole(double v) {
    return std::floor(v) == v;
}

// Runs a computation that reports an error code through its argument; gives its value, or the missing value
// for any code but 0 and for a value that is no number (infinite arguments that cancel).
template <typename Compute>
double ValueOrMissing(Compute compute) {
    long error = 0;
    double const value = compute(error);
    return error == 0 && !std::isnan(value) ? value : Missing();
}

// The most counts a binomial sum or walk takes one at a time. A law so wide that a sum has not settled after
// this many terms is treated by the normal approximation; a quantile walk that has not ended (counts beyond
// 2^53 no longer step by one) fails. The cap keeps such calls from running for hours.
constexpr double kBinomialStepCap = 67108864.0;

// First index of the Poisson-weighted series of the non-central laws, for c half the non-centrality:
// about seven standard deviations below the mean, so that a large non-centrality does not start in a
// region of underflowing terms.
inline double PoissonStart(double c) {
    double start = c - 7.0344838253011 * std::sqrt(c);
    return start > 0.0 ? std::floor(start) : 0.0;
}

}  // namespace dist
}  // namespace QXMath_920
