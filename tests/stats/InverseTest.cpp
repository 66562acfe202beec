#include <gtest/gtest.h>

#include <cmath>

#include "tests/stats/DistFunAccess.h"
#include "vantry/stats/QXDistFun.h"

using namespace statstest;

namespace {

TEST(QXDistFunBetaInverse, ClosedFormsFailuresAndRoundTrip) {
    // The ends of p come before any test of the shapes.
    EXPECT_EQ(QXDistFun::IdfBeta(0.0, -1.0, -1.0), 0.0);
    EXPECT_EQ(QXDistFun::IdfBeta(1.0, -1.0, 2.0), 1.0);
    EXPECT_EQ(Core::betinv(0.3, -1.0, 2.0, 1e-20, 1e-12), -1.0);
    EXPECT_EQ(Core::betinv(1.3, 1.0, 2.0, 1e-20, 1e-12), -1.0);
    EXPECT_TRUE(Missing(QXDistFun::IdfBeta(0.3, 2.0, 0.0)));

    EXPECT_EQ(QXDistFun::IdfBeta(0.5, 3.5, 3.5), 0.5);
    double const s = std::sin(0.3 * M_PI / 2.0);
    EXPECT_EQ(QXDistFun::IdfBeta(0.3, 0.5, 0.5), s * s);
    EXPECT_EQ(QXDistFun::IdfBeta(0.3, 1.0, 4.0), 1.0 - std::exp(std::log(0.7) / 4.0));
    EXPECT_EQ(QXDistFun::IdfBeta(0.3, 4.0, 1.0), std::exp(std::log(0.3) / 4.0));
    EXPECT_EQ(QXDistFun::IdfBeta(0.3, 1e30, 1e9), 1.0);

    // A far tail: the damped Newton steps stay inside the unit interval.
    double const x = QXDistFun::IdfBeta(1e-12, 2.0, 90.0);
    EXPECT_GT(x, 0.0);
    EXPECT_LT(x, 1e-4);
}

TEST(QXDistFunStudentInverse, DomainSymmetryAndRoundTrip) {
    long error = -1;
    for (double p : {0.0, 1.0, -0.5}) {
        EXPECT_TRUE(MissingWith(Core::kromidft(p, 5.0, error), error, 1));
    }
    EXPECT_TRUE(MissingWith(Core::kromidft(0.3, 0.0, error), error, 1));
    EXPECT_EQ(Core::kromidft(0.5, 5.0, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::IdfT(0.975, 1e8, 1e-20, 1e-12), QXDistFun::IdfStdNorm(0.975));
    EXPECT_TRUE(Missing(QXDistFun::IdfT(1.0, 3.0, 1e-20, 1e-12)));
    // The caller's tolerances reach the beta inverse: a loose one stops it early.
    double const t = QXDistFun::IdfT(0.9, 6.0, 1e-20, 1e-12);
    EXPECT_NEAR(QXDistFun::CdfT(t, 6.0), 0.9, 1e-10);
    EXPECT_NE(QXDistFun::IdfT(0.9, 6.0, 1e-3, 1e-1), t);
}

TEST(QXDistFunFisherInverse, DomainAndOneNumeratorDegree) {
    long error = -1;
    EXPECT_TRUE(MissingWith(Core::kromidff(1.0, 2.0, 3.0, error), error, 1));
    EXPECT_TRUE(MissingWith(Core::kromidff(-0.1, 2.0, 3.0, error), error, 1));
    EXPECT_TRUE(Missing(QXDistFun::IdfF(0.5, 2.0, 0.0)));
    EXPECT_EQ(Core::kromidff(0.0, 2.0, 3.0, error), 0.0);
    EXPECT_EQ(error, 0);
    double const t = QXDistFun::IdfT(0.5 * 0.9 + 0.5, 12.0, 1e-20, 1e-12);
    EXPECT_EQ(QXDistFun::IdfF(0.9, 1.0, 12.0), t * t);
}

TEST(QXDistFunChiInverse, DomainStartGuardsAndBisection) {
    long error = -1;
    for (double p : {-0.1, 1.0}) {
        EXPECT_TRUE(MissingWith(Core::kromidfchi(p, 3.0, error), error, 1));
    }
    EXPECT_TRUE(MissingWith(Core::kromidfchi(0.5, 0.0, error), error, 1));
    EXPECT_EQ(Core::kromidfchi(0.0, 3.0, error), 0.0);
    EXPECT_EQ(error, 0);
    // The small-p start whose exponent is below -708 gives 0; one below 5e-7 is the answer as it stands.
    EXPECT_EQ(QXDistFun::IdfChi(1e-300, 1.0), 0.0);
    double const small = QXDistFun::IdfChi(1e-14, 1.0);
    EXPECT_GT(small, 0.0);
    EXPECT_LT(small, 5e-7);

    EXPECT_NEAR(Core::idfchb(0.5, 4.0, 3.5, error), 3.356693980033321, 1e-7);
    EXPECT_EQ(error, 0);
    EXPECT_TRUE(MissingWith(Core::idfchb(0.5, 4.0, 0.0, error), error, 1));
    EXPECT_TRUE(MissingWith(Core::idfchb(0.999, 2.0, 0.01, error), error, 2));   // above even twice the start
    EXPECT_TRUE(MissingWith(Core::idfchb(1e-10, 2.0, 100.0, error), error, 2));  // below a quarter of it

    EXPECT_EQ(QXDistFun::IdfGam(0.0, 2.0, 1.0), 0.0);
    EXPECT_EQ(QXDistFun::IdfGam(0.7, 2.5, 4.0), QXDistFun::IdfChi(0.7, 5.0) * 0.5 / 4.0);
    EXPECT_TRUE(Missing(QXDistFun::IdfGam(0.7, 0.0, 1.0)));
    EXPECT_TRUE(Missing(QXDistFun::IdfGam(0.7, 2.0, 0.0)));
    EXPECT_TRUE(Missing(QXDistFun::IdfGam(1.0, 2.0, 1.0)));
}

TEST(QXDistFunBinomialInverse, EndsDomainAndWalkLimit) {
    long error = -1;
    EXPECT_TRUE(MissingWith(QXDistFun::IdfBin(0.5, 10.5, 0.5, error), error, 1));
    EXPECT_TRUE(MissingWith(QXDistFun::IdfBin(0.5, 0.0, 0.5, error), error, 2));
    EXPECT_TRUE(MissingWith(QXDistFun::IdfBin(1.2, 10.0, 0.5, error), error, 2));
    EXPECT_TRUE(MissingWith(QXDistFun::IdfBin(0.5, 10.0, -0.1, error), error, 2));

    EXPECT_EQ(QXDistFun::IdfBin(0.0, 10.0, 0.5, error), -1.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::IdfBin(0.0, 10.0, 1.0, error), 9.0);
    EXPECT_EQ(QXDistFun::IdfBin(1.0, 10.0, 0.5, error), 10.0);
    EXPECT_EQ(QXDistFun::IdfBin(1.0, 10.0, 0.0, error), 0.0);
    EXPECT_EQ(QXDistFun::IdfBin(0.4, 10.0, 1.0, error), 9.0);
    EXPECT_EQ(QXDistFun::IdfBin(0.4, 10.0, 0.0, error), 0.0);
    // Counts too large to step by one end the walk with a failure instead of running on.
    EXPECT_TRUE(MissingWith(QXDistFun::IdfBin(1e-300, 1e300, 0.5, error), error, 2));
}

}  // namespace
