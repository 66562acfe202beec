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

    // The iteration stops on absolute tolerances: the quantile is good to about 1e-10. (In far tails its 50
    // passes of damped Newton steps may not reach the root from a poor start.)
    for (double a : {0.7, 2.0, 40.0}) {
        for (double b : {0.6, 3.0, 90.0}) {
            for (double x : {0.001, 0.2, 0.5, 0.95}) {
                double const p = QXDistFun::CdfBeta(x, a, b);
                if (p > 1e-8 && p < 1.0 - 1e-8) {
                    EXPECT_NEAR(QXDistFun::IdfBeta(p, a, b), x, 1e-10) << x << " " << a << " " << b;
                }
            }
        }
    }
}

TEST(QXDistFunStudentInverse, DomainSymmetryAndRoundTrip) {
    long error = -1;
    for (double p : {0.0, 1.0, -0.5}) {
        EXPECT_TRUE(Missing(Core::kromidft(p, 5.0, error)));
        EXPECT_EQ(error, 1);
    }
    EXPECT_TRUE(Missing(Core::kromidft(0.3, 0.0, error)));
    EXPECT_EQ(error, 1);
    EXPECT_EQ(Core::kromidft(0.5, 5.0, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::IdfT(0.975, 1e8, 1e-20, 1e-12), QXDistFun::IdfStdNorm(0.975));
    EXPECT_TRUE(Missing(QXDistFun::IdfT(1.0, 3.0, 1e-20, 1e-12)));
    for (double df : {1.0, 2.5, 30.0}) {
        for (double p : {0.02, 0.3, 0.8}) {
            double const t = QXDistFun::IdfT(p, df, 1e-20, 1e-12);
            EXPECT_NEAR(QXDistFun::IdfT(1.0 - p, df, 1e-20, 1e-12), -t, 1e-8 * std::fabs(t));
            EXPECT_NEAR(QXDistFun::CdfT(t, df), p, 1e-9) << p << " " << df;
        }
    }
}

TEST(QXDistFunFisherInverse, DomainAndOneNumeratorDegree) {
    long error = -1;
    EXPECT_TRUE(Missing(Core::kromidff(1.0, 2.0, 3.0, error)));
    EXPECT_EQ(error, 1);
    EXPECT_TRUE(Missing(Core::kromidff(-0.1, 2.0, 3.0, error)));
    EXPECT_EQ(error, 1);
    EXPECT_TRUE(Missing(QXDistFun::IdfF(0.5, 2.0, 0.0)));
    EXPECT_EQ(Core::kromidff(0.0, 2.0, 3.0, error), 0.0);
    EXPECT_EQ(error, 0);
    double const t = QXDistFun::IdfT(0.5 * 0.9 + 0.5, 12.0, 1e-20, 1e-12);
    EXPECT_EQ(QXDistFun::IdfF(0.9, 1.0, 12.0), t * t);
    for (double p : {0.05, 0.5, 0.99}) {
        EXPECT_NEAR(QXDistFun::CdfF(QXDistFun::IdfF(p, 4.0, 9.0), 4.0, 9.0), p, 1e-9);
    }
}

TEST(QXDistFunChiInverse, StartRegionsRefinementAndBisection) {
    long error = -1;
    for (double p : {-0.1, 1.0}) {
        EXPECT_TRUE(Missing(Core::kromidfchi(p, 3.0, error)));
        EXPECT_EQ(error, 1);
    }
    EXPECT_TRUE(Missing(Core::kromidfchi(0.5, 0.0, error)));
    EXPECT_EQ(error, 1);
    EXPECT_EQ(Core::kromidfchi(0.0, 3.0, error), 0.0);
    EXPECT_EQ(error, 0);
    // The small-p start whose exponent is below -708 gives 0; one below 5e-7 is the answer as it stands.
    EXPECT_EQ(QXDistFun::IdfChi(1e-300, 1.0), 0.0);
    double const small = QXDistFun::IdfChi(1e-14, 1.0);
    EXPECT_GT(small, 0.0);
    EXPECT_LT(small, 5e-7);
    // Every start region refines to the quantile: small p, very small degrees, the general start.
    for (auto const& [p, df] :
         {std::pair<double, double>{0.05, 2.0}, {0.5, 0.2}, {0.99, 0.3}, {0.3, 7.0}, {0.999, 150.0}}) {
        double const x = QXDistFun::IdfChi(p, df);
        EXPECT_NEAR(QXDistFun::CdfChi(x, df), p, 1e-12 * std::max(p, 1e-3)) << p << " " << df;
    }
    // Tiny probabilities whose Taylor step would overflow go to the bisection.
    double const tiny = QXDistFun::IdfChi(1e-300, 100.0);
    EXPECT_NEAR(QXDistFun::CdfChi(tiny, 100.0) / 1e-300, 1.0, 1e-6);

    EXPECT_NEAR(Core::idfchb(0.5, 4.0, 3.5, error), 3.356693980033321, 1e-7);
    EXPECT_EQ(error, 0);
    EXPECT_TRUE(Missing(Core::idfchb(0.5, 4.0, 0.0, error)));
    EXPECT_EQ(error, 1);
    EXPECT_TRUE(Missing(Core::idfchb(0.999, 2.0, 0.01, error)));  // above even twice the start
    EXPECT_EQ(error, 2);
    EXPECT_TRUE(Missing(Core::idfchb(1e-10, 2.0, 100.0, error)));  // below a quarter of it
    EXPECT_EQ(error, 2);

    EXPECT_EQ(QXDistFun::IdfGam(0.0, 2.0, 1.0), 0.0);
    EXPECT_EQ(QXDistFun::IdfGam(0.7, 2.5, 4.0), QXDistFun::IdfChi(0.7, 5.0) * 0.5 / 4.0);
    EXPECT_TRUE(Missing(QXDistFun::IdfGam(0.7, 0.0, 1.0)));
    EXPECT_TRUE(Missing(QXDistFun::IdfGam(0.7, 2.0, 0.0)));
    EXPECT_TRUE(Missing(QXDistFun::IdfGam(1.0, 2.0, 1.0)));
}

TEST(QXDistFunBinomialInverse, EndsDomainAndDefiningInequality) {
    long error = -1;
    EXPECT_TRUE(Missing(QXDistFun::IdfBin(0.5, 10.5, 0.5, error)));
    EXPECT_EQ(error, 1);
    EXPECT_TRUE(Missing(QXDistFun::IdfBin(0.5, 0.0, 0.5, error)));
    EXPECT_EQ(error, 2);
    EXPECT_TRUE(Missing(QXDistFun::IdfBin(1.2, 10.0, 0.5, error)));
    EXPECT_EQ(error, 2);
    EXPECT_TRUE(Missing(QXDistFun::IdfBin(0.5, 10.0, -0.1, error)));
    EXPECT_EQ(error, 2);

    EXPECT_EQ(QXDistFun::IdfBin(0.0, 10.0, 0.5, error), -1.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::IdfBin(0.0, 10.0, 1.0, error), 9.0);
    EXPECT_EQ(QXDistFun::IdfBin(1.0, 10.0, 0.5, error), 10.0);
    EXPECT_EQ(QXDistFun::IdfBin(1.0, 10.0, 0.0, error), 0.0);
    EXPECT_EQ(QXDistFun::IdfBin(0.4, 10.0, 1.0, error), 9.0);
    EXPECT_EQ(QXDistFun::IdfBin(0.4, 10.0, 0.0, error), 0.0);

    // The answer is the count just before the cumulative probability passes p.
    for (double n : {7.0, 60.0, 2500.0}) {
        for (double prob : {0.1, 0.5, 0.75}) {
            for (double p : {0.04, 0.37, 0.93}) {
                double const k = QXDistFun::IdfBin(p, n, prob, error);
                ASSERT_EQ(error, 0);
                if (k > 0.0) {
                    EXPECT_LE(QXDistFun::CdfBin(k, n, prob, error), p + 1e-12)
                        << n << " " << prob << " " << p;
                }
                EXPECT_GT(QXDistFun::CdfBin(k + 1.0, n, prob, error), p - 1e-12)
                    << n << " " << prob << " " << p;
            }
        }
    }
}

}  // namespace
