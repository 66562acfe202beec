// Guarded floating-point operations: powers, exponentials and products that report underflow and overflow
// instead of suffering them, and the tests of integrality they rest on.
#pragma once

#include "vantry/Export.h"

namespace QXMath_920 {

class VANTRY_EXPORT QXPower {
  public:
    // The outcome of Power and Exponent.
    enum PowerStatus {
        kPowerComputed = 0,
        kPowerUnderflow = 1,                 // result 0 (negative zero for a negative base and an odd power)
        kPowerOverflow = 2,                  // in a positive result; result is the missing value
        kPowerOverflowNegative = 3,          // in a negative result; result is the missing value
        kPowerNoRealValue = 4,               // negative base, exponent with no real power (or an argument
                                             // that is no number); missing value
        kPowerNegativeBaseZeroExponent = 5,  // result 1
        kPowerZeroBaseNegativeExponent = 6,  // missing value
        kPowerZeroToZero = 7                 // result 1
    };

    QXPower() = default;
    QXPower(QXPower const&) = default;
    // The class has no state: assignment does nothing.
    QXPower& operator=(QXPower const&) { return *this; }

    static double MEpsilon();
    static double MaxExp();
    static double MinExp();
    static int MaxInt();

    static bool ExpOverflow(double x);
    static bool ExpUnderflow(double x);

    // Whole numbers not above MaxInt(); there is no lower limit.
    static bool IsInteger(double x);
    static bool IsEvenInteger(double x);
    static bool IsOddInteger(double x);
    // Whether 1 / x is an odd (even) whole number, within `ulps` units of the machine epsilon.
    static bool IsOneOverOddInteger(double x, double ulps);
    static bool IsOneOverEvenInteger(double x, double ulps);
    // Relative equality within `ulps` units of the machine epsilon; numbers of opposite signs never match.
    static bool AlmostEqual(double a, double b, double ulps);

    // a * b through logarithms: 0 on underflow, the missing value on overflow.
    static double Multiply(double a, double b);
    static PowerStatus Power(double base, double exponent, double& result);
    static PowerStatus Exponent(double x, double& result);

  private:
    static double const gMachineEpsilon;
    static double const gMachineMaxExp;
    static double const gMachineMinExp;
    static int const gMachineMaxInt;
};

}  // namespace QXMath_920
