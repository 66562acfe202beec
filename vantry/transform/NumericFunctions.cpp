// Built-in functions of one or two numbers.
#include <cmath>
#include <cstdlib>

#include "vantry/stats/QXDistFun.h"
#include "vantry/transform/FunctionSupport.h"
#include "vantry/transform/TransformationDictionary.h"

namespace QXVantry_920 {

using detail::FitsInt;
using detail::IsSysmis;
using detail::kSysmis;

double TransformationDictionary::Plus(double a, double b) {
    return IsSysmis(a) || IsSysmis(b) ? kSysmis : a + b;
}

double TransformationDictionary::Pow(double base, int exponent) {
    if (exponent == 0 && base < 1e-14) {
        return 1.0;
    }
    if (IsSysmis(base)) {
        return kSysmis;
    }
    if (exponent == 2) {
        return base * base;
    }
    return std::pow(base, exponent);
}

double TransformationDictionary::Abs(double a) {
    return IsSysmis(a) ? kSysmis : std::fabs(a);
}

// Neither test: the missing number passes through as itself.
double TransformationDictionary::Ceil(double a) {
    return std::ceil(a);
}

double TransformationDictionary::Floor(double a) {
    return std::floor(a);
}

// Half away from zero; the int bounds exclude the missing number as well.
double TransformationDictionary::Rnd(double a) {
    if (!FitsInt(a)) {
        return kSysmis;
    }
    int truncated = static_cast<int>(a);
    if (std::fabs(a) - std::abs(truncated) >= 0.5) {
        truncated += a < 0.0 ? -1 : 1;
    }
    return truncated;
}

double TransformationDictionary::Trunc(double a) {
    return FitsInt(a) ? static_cast<int>(a) : kSysmis;
}

double TransformationDictionary::Exp(double a) {
    if (IsSysmis(a) || a > 709.0) {
        return kSysmis;
    }
    return a <= -708.0 ? 0.0 : std::exp(a);
}

double TransformationDictionary::Ln(double a) {
    return a > 0.0 ? std::log(a) : kSysmis;
}

double TransformationDictionary::Log10(double a) {
    return a > 0.0 ? std::log10(a) : kSysmis;
}

double TransformationDictionary::Sqrt(double a) {
    return a >= 0.0 ? std::sqrt(a) : kSysmis;
}

double TransformationDictionary::CdfNorm(double a) {
    return IsSysmis(a) ? kSysmis : QXMath_920::QXDistFun::prbnrm(a);
}

// The remainder of the quotient truncated toward zero, so that it takes the sign of a.
double TransformationDictionary::Mod(double a, double b) {
    if (b == 0.0 || IsSysmis(a) || IsSysmis(b)) {
        return kSysmis;
    }
    double const quotient = a / b;
    if (!FitsInt(quotient)) {
        return kSysmis;
    }
    return a - static_cast<int>(quotient) * b;
}

double TransformationDictionary::Threshold(double a, double b) {
    return a > b ? 1.0 : 0.0;
}

// Values beyond c +/- s * f / sqrt (n) become the nearer limit with method 2 (extreme values) and missing
// otherwise; "asIs" (0) is not told apart from "asMissingValues" (1) here.
double TransformationDictionary::OutlierHandle(double value, int method, double center, double spread,
                                               double factor, double count) {
    double const half = spread * factor / std::sqrt(count);
    double const low = center - half;
    double const high = center + half;
    if (IsSysmis(value)) {
        return value;
    }
    if (low > value) {
        return method == 2 ? low : kSysmis;
    }
    if (value > high) {
        return method == 2 ? high : kSysmis;
    }
    return value;
}

}  // namespace QXVantry_920
