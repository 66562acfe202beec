#include "vantry/stats/QXPower.h"

#include <cmath>

#include "vantry/diagnostics/QXMV.h"

namespace QXMath_920 {

double const QXPower::gMachineEpsilon = 2.220446049250313e-16;
double const QXPower::gMachineMaxExp = 709.0;
double const QXPower::gMachineMinExp = -708.39;
int const QXPower::gMachineMaxInt = 2147483647;

double QXPower::MEpsilon() {
    return gMachineEpsilon;
}

double QXPower::MaxExp() {
    return gMachineMaxExp;
}

double QXPower::MinExp() {
    return gMachineMinExp;
}

int QXPower::MaxInt() {
    return gMachineMaxInt;
}

bool QXPower::ExpOverflow(double x) {
    return x > gMachineMaxExp;
}

bool QXPower::ExpUnderflow(double x) {
    return x < gMachineMinExp;
}

bool QXPower::IsInteger(double x) {
    return x <= gMachineMaxInt && std::floor(x) == x;
}

bool QXPower::IsEvenInteger(double x) {
    double const half = x / 2.0;
    return IsInteger(x) && std::floor(half) == half;
}

bool QXPower::IsOddInteger(double x) {
    double const half = x / 2.0 + 0.5;
    return IsInteger(x) && std::floor(half) == half;
}

namespace {

// Whether v lies within `ulps` units of the machine epsilon of the nearest whole number.
bool AlmostWhole(double v, double ulps) {
    return QXPower::AlmostEqual(v, std::round(v), ulps);
}

}  // namespace

bool QXPower::IsOneOverOddInteger(double x, double ulps) {
    if (x == 0.0) {
        return false;
    }
    double const v = 1.0 / x;
    return !(v > gMachineMaxInt) && AlmostWhole(v / 2.0 + 0.5, ulps);
}

bool QXPower::IsOneOverEvenInteger(double x, double ulps) {
    if (x == 0.0) {
        return false;
    }
    double const v = 1.0 / x;
    return !(v > gMachineMaxInt) && AlmostWhole(v / 2.0, ulps);
}

bool QXPower::AlmostEqual(double a, double b, double ulps) {
    if (a == 0.0) {
        return b == 0.0;
    }
    if (b == 0.0 || (a < 0.0) != (b < 0.0)) {
        return false;
    }
    double const d = std::fabs(a) - std::fabs(b);
    double const larger = std::fmax(std::fabs(a), std::fabs(b));
    return std::fabs(d) / larger <= ulps * gMachineEpsilon;
}

double QXPower::Multiply(double a, double b) {
    if (a == 0.0 || b == 0.0) {
        return 0.0;
    }
    bool const negative = (a < 0.0) != (b < 0.0);
    double const L = std::log(std::fabs(a)) + std::log(std::fabs(b));
    if (std::isnan(L)) {
        return QXCommon_920::QXMV::Missing();
    }
    if (L < gMachineMinExp) {
        return negative ? -0.0 : 0.0;
    }
    if (L > gMachineMaxExp) {
        return QXCommon_920::QXMV::Missing();
    }
    double const value = std::exp(L);
    return negative ? -value : value;
}

QXPower::PowerStatus QXPower::Power(double base, double exponent, double& result) {
    result = QXCommon_920::QXMV::Missing();
    if (base == 0.0) {
        if (exponent == 0.0) {
            result = 1.0;
            return kPowerZeroToZero;
        }
        if (exponent < 0.0) {
            return kPowerZeroBaseNegativeExponent;
        }
        result = 0.0;
        return kPowerComputed;
    }
    if (base < 0.0) {
        if (exponent == 0.0) {
            result = 1.0;
            return kPowerNegativeBaseZeroExponent;
        }
        if (!IsEvenInteger(exponent)) {
            // An odd power, or an odd root: the result is negative.
            if (!IsOddInteger(exponent) && !IsOneOverOddInteger(exponent, 32.0)) {
                return kPowerNoRealValue;
            }
            double const L = exponent * std::log(-base);
            if (L < gMachineMinExp) {
                result = -0.0;
                return kPowerUnderflow;
            }
            if (L > gMachineMaxExp) {
                return exponent > 0.0 ? kPowerOverflowNegative : kPowerOverflow;
            }
            result = -std::exp(L);
            return kPowerComputed;
        }
    } else if (exponent == 0.0) {
        result = 1.0;
        return kPowerComputed;
    }
    double const L = exponent * std::log(std::fabs(base));
    if (std::isnan(L)) {
        // A base or exponent that is no number, or 1 to an infinite power.
        return kPowerNoRealValue;
    }
    if (L < gMachineMinExp) {
        result = 0.0;
        return kPowerUnderflow;
    }
    if (L > gMachineMaxExp) {
        return kPowerOverflow;
    }
    result = std::exp(L);
    return kPowerComputed;
}

QXPower::PowerStatus QXPower::Exponent(double x, double& result) {
    if (std::isnan(x)) {
        result = QXCommon_920::QXMV::Missing();
        return kPowerNoRealValue;
    }
    if (x < gMachineMinExp) {
        result = 0.0;
        return kPowerUnderflow;
    }
    if (x > gMachineMaxExp) {
        result = QXCommon_920::QXMV::Missing();
        return kPowerOverflow;
    }
    result = std::exp(x);
    return kPowerComputed;
}

}  // namespace QXMath_920
