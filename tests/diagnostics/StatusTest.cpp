#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "vantry/diagnostics/QXMV.h"
#include "vantry/diagnostics/QXStatus.h"

using QXCommon_920::QXMV;
using QXScore::QXStatus;

TEST(QXStatus, SeverityFollowsConstructor) {
    QXStatus ok;
    EXPECT_TRUE(ok.IsOK());
    EXPECT_EQ(ok.GetErrorCode(), 0);

    QXStatus warning(5, true), error(5, false);
    EXPECT_TRUE(warning.IsWarning());
    EXPECT_FALSE(warning.IsError());
    EXPECT_TRUE(error.IsError());
    EXPECT_FALSE(error.IsOK());
    EXPECT_FALSE(warning == error);
    EXPECT_TRUE(warning == QXStatus(5, true));
}

TEST(QXStatus, EqualityComparesEveryDatumAndNaNNeverEquals) {
    QXStatus a(7, true), b(7, true);
    a.SetDiscreteDatum(2, 9);
    EXPECT_FALSE(a == b);
    b.SetDiscreteDatum(2, 9);
    EXPECT_TRUE(a == b);
    EXPECT_EQ(b.GetDiscreteDatum(2), 9);

    a.SetScaleDatum(1, 0.5);
    b.SetScaleDatum(1, 0.5);
    EXPECT_TRUE(a == b);
    EXPECT_DOUBLE_EQ(a.GetScaleDatum(1), 0.5);

    a.SetScaleDatum(0, std::nan(""));
    EXPECT_FALSE(a == a);

    QXStatus c;
    c = a;
    EXPECT_EQ(c.GetErrorCode(), 7);
    EXPECT_EQ(c.GetDiscreteDatum(2), 9);

    QXCommon_920::QXStatus d, e;
    e.code = 3;
    e.scaleData[2] = 1.25;
    d = e;
    EXPECT_EQ(d.code, 3);
    EXPECT_EQ(d.scaleData[2], 1.25);
}

TEST(QXMV, MissingIsMostNegativeFiniteDoubleAndNaNIsNot) {
    double mv = QXMV::Missing();
    std::uint64_t bits;
    std::memcpy(&bits, &mv, sizeof bits);
    EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFull);
    EXPECT_EQ(mv, -std::numeric_limits<double>::max());
    EXPECT_TRUE(QXMV::IsMissing(mv));
    EXPECT_FALSE(QXMV::IsMissing(std::nan("")));
    EXPECT_FALSE(QXMV::IsMissing(0.0));
}
