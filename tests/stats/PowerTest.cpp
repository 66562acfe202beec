#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "vantry/diagnostics/QXMV.h"
#include "vantry/stats/QXPower.h"

using QXCommon_920::QXMV;
using QXMath_920::QXPower;

namespace {

TEST(QXPower, ConstantsAndExponentBounds) {
    EXPECT_EQ(QXPower::MEpsilon(), 2.220446049250313e-16);
    EXPECT_EQ(QXPower::MaxExp(), 709.0);
    EXPECT_EQ(QXPower::MinExp(), -708.39);
    EXPECT_EQ(QXPower::MaxInt(), 2147483647);
    EXPECT_FALSE(QXPower::ExpOverflow(709.0));
    EXPECT_TRUE(QXPower::ExpOverflow(709.0001));
    EXPECT_FALSE(QXPower::ExpUnderflow(-708.39));
    EXPECT_TRUE(QXPower::ExpUnderflow(-708.3901));

    double result = 0.0;
    EXPECT_EQ(QXPower::Exponent(1.0, result), QXPower::kPowerComputed);
    EXPECT_EQ(result, std::exp(1.0));
    EXPECT_EQ(QXPower::Exponent(-708.4, result), QXPower::kPowerUnderflow);
    EXPECT_EQ(result, 0.0);
    EXPECT_EQ(QXPower::Exponent(709.5, result), QXPower::kPowerOverflow);
    EXPECT_TRUE(QXMV::IsMissing(result));
}

TEST(QXPower, IntegralityTests) {
    EXPECT_TRUE(QXPower::IsInteger(2147483647.0));
    EXPECT_FALSE(QXPower::IsInteger(3e9));  // whole, but above the largest int
    EXPECT_TRUE(QXPower::IsInteger(-3e9));  // no lower limit
    EXPECT_FALSE(QXPower::IsInteger(4.5));
    EXPECT_TRUE(QXPower::IsEvenInteger(-4.0));
    EXPECT_FALSE(QXPower::IsEvenInteger(5.0));
    EXPECT_TRUE(QXPower::IsOddInteger(-3.0));
    EXPECT_FALSE(QXPower::IsOddInteger(2.5));
    EXPECT_FALSE(QXPower::IsOddInteger(3e9 + 1.0));

    EXPECT_TRUE(QXPower::IsOneOverOddInteger(1.0 / 3.0, 32.0));
    EXPECT_TRUE(QXPower::IsOneOverOddInteger(-0.2, 32.0));
    EXPECT_FALSE(QXPower::IsOneOverOddInteger(0.5, 32.0));
    EXPECT_FALSE(QXPower::IsOneOverOddInteger(0.0, 32.0));
    EXPECT_FALSE(QXPower::IsOneOverOddInteger(1.0 / 4294967297.0, 32.0));  // 1 / x beyond the largest int
    EXPECT_TRUE(QXPower::IsOneOverEvenInteger(0.25, 1.0));
    EXPECT_FALSE(QXPower::IsOneOverEvenInteger(1.0 / 3.0, 32.0));

    EXPECT_TRUE(QXPower::AlmostEqual(0.0, 0.0, 1.0));
    EXPECT_FALSE(QXPower::AlmostEqual(0.0, 1e-300, 1e9));
    EXPECT_FALSE(QXPower::AlmostEqual(1.0, -1.0, 1e9));
    EXPECT_TRUE(QXPower::AlmostEqual(1.0, 1.0 + 1e-15, 8.0));
    EXPECT_FALSE(QXPower::AlmostEqual(1.0, 1.0 + 1e-14, 8.0));
    EXPECT_TRUE(QXPower::AlmostEqual(-5e200, -5e200 * (1.0 + 1e-15), 8.0));
}

TEST(QXPower, MultiplyTellsUnderflowAndOverflow) {
    EXPECT_NEAR(QXPower::Multiply(2.0, 3.0), 6.0, 1e-14);
    EXPECT_NEAR(QXPower::Multiply(-2.0, 3.0), -6.0, 1e-14);
    EXPECT_EQ(QXPower::Multiply(0.0, -7.0), 0.0);
    double const tiny = QXPower::Multiply(1e-200, -1e-200);
    EXPECT_EQ(tiny, 0.0);
    EXPECT_TRUE(std::signbit(tiny));
    EXPECT_FALSE(std::signbit(QXPower::Multiply(1e-200, 1e-200)));
    EXPECT_TRUE(QXMV::IsMissing(QXPower::Multiply(1e200, 1e200)));
    EXPECT_TRUE(QXMV::IsMissing(QXPower::Multiply(-1e200, 1e200)));
    EXPECT_TRUE(QXMV::IsMissing(QXPower::Multiply(std::nan(""), 2.0)));
}

TEST(QXPower, PowerStatusForEveryKindOfBase) {
    double const M = QXMV::Missing();
    double const unchecked = std::nan("");
    struct Row {
        double base, exponent;
        QXPower::PowerStatus status;
        double result;  // a zero's sign counts
    } const rows[] = {
        {-8.0, 1.0 / 3.0, QXPower::kPowerComputed, -2.0},
        {-8.0, 0.5, QXPower::kPowerNoRealValue, M},
        {0.0, 0.0, QXPower::kPowerZeroToZero, 1.0},
        {0.0, -1.0, QXPower::kPowerZeroBaseNegativeExponent, M},
        {0.0, 2.5, QXPower::kPowerComputed, 0.0},
        {-2.0, 0.0, QXPower::kPowerNegativeBaseZeroExponent, 1.0},
        {2.0, 0.0, QXPower::kPowerComputed, 1.0},
        {-2.0, 3.0, QXPower::kPowerComputed, -8.0},
        {-2.0, 2.0, QXPower::kPowerComputed, 4.0},  // an even power is positive
        {-1e-300, 3.0, QXPower::kPowerUnderflow, -0.0},
        {-1e200, 5.0, QXPower::kPowerOverflowNegative, M},
        {-1e-200, -5.0, QXPower::kPowerOverflow, unchecked},
        {10.0, 400.0, QXPower::kPowerOverflow, M},
        {10.0, -400.0, QXPower::kPowerUnderflow, 0.0},
        {2.0, 10.0, QXPower::kPowerComputed, 1024.0},
        // No number comes out as a computed result.
        {2.0, std::nan(""), QXPower::kPowerNoRealValue, M},
        {1.0, INFINITY, QXPower::kPowerNoRealValue, M},
        {-1.0, -INFINITY, QXPower::kPowerNoRealValue, M},
    };
    for (Row const& row : rows) {
        double r = 0.0;
        EXPECT_EQ(QXPower::Power(row.base, row.exponent, r), row.status) << row.base << " ^ " << row.exponent;
        if (row.result == M) {
            EXPECT_TRUE(QXMV::IsMissing(r)) << row.base << " ^ " << row.exponent;
        } else if (!std::isnan(row.result)) {
            EXPECT_NEAR(r, row.result, 1e-14 * std::fabs(row.result)) << row.base << " ^ " << row.exponent;
            EXPECT_EQ(std::signbit(r), std::signbit(row.result)) << row.base << " ^ " << row.exponent;
        }
    }
    double r = 0.0;
    EXPECT_EQ(QXPower::Exponent(std::nan(""), r), QXPower::kPowerNoRealValue);
    EXPECT_TRUE(QXMV::IsMissing(r));
}

}  // namespace
