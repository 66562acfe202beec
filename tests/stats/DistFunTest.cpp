// Domains, branch points and guards of the central laws. Their accuracy over whole grids is the business of
// the reference table (ReferenceTest.cpp); the cases here are the ones a grid does not pin down.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <iterator>
#include <limits>

#include "tests/stats/DistFunAccess.h"
#include "vantry/stats/QXDistFun.h"

using namespace statstest;

namespace {

double const kNaN = std::numeric_limits<double>::quiet_NaN();
double const kInf = std::numeric_limits<double>::infinity();

TEST(QXDistFunNormal, DomainsExactPointsAndRegionJoints) {
    EXPECT_EQ(QXDistFun::IdfNorm(0.5, 3.0, 2.0), 3.0);
    EXPECT_EQ(QXDistFun::IdfStdNorm(0.5), 0.0);
    EXPECT_TRUE(Missing(QXDistFun::IdfNorm(0.0, 0.0, 1.0)));
    EXPECT_TRUE(Missing(QXDistFun::IdfNorm(1.0, 0.0, 1.0)));
    EXPECT_TRUE(Missing(QXDistFun::IdfNorm(0.3, 0.0, 0.0)));
    EXPECT_TRUE(Missing(QXDistFun::CdfNorm(0.0, 0.0, 0.0)));
    for (double p : {0.0, 1.0, -0.25, 1.5, kNaN}) {
        EXPECT_TRUE(Missing(Core::probit(p))) << p;
    }
    EXPECT_EQ(Core::prbnrm(0.0), 0.5);

    // The three rational regions of the quantile meet without a visible step.
    double const qCentre = 0.075;  // |p - 0.5| = 0.425
    EXPECT_NEAR(Core::probit(std::nextafter(qCentre, 1.0)), Core::probit(qCentre), 1e-14);
    double const pFar = std::exp(-25.0);  // r = 5
    EXPECT_NEAR(Core::probit(std::nextafter(pFar, 1.0)) / Core::probit(pFar), 1.0, 1e-14);

    EXPECT_EQ(QXDistFun::PdfNormalStandard(0.0), 0.3989422804014327);
    EXPECT_TRUE(Missing(QXDistFun::PdfNormal(1.0, 0.0, 0.0)));
}

TEST(QXDistFunElementary, ErrorFunctionsWithAnUnderflowFloor) {
    EXPECT_EQ(Core::derf(0.0), 0.0);
    EXPECT_EQ(Core::derfc(0.0), 1.0);
    for (double x : {-1.3, 0.1, 2.2, 4.0}) {
        EXPECT_NEAR(Core::derf(x) + Core::derfc(x), 1.0, 4e-16) << x;
    }
    EXPECT_EQ(Core::derf(7.0), 1.0);
    EXPECT_EQ(Core::derf(-50.0), -1.0);
    // erfc(26.5) is about exp(-705.5); erfc(26.7) lies under exp(-708) and counts as 0.
    EXPECT_GT(Core::derfc(26.5), 0.0);
    EXPECT_EQ(Core::derfc(26.7), 0.0);
    EXPECT_EQ(Core::derfc(-26.7), 2.0);
    EXPECT_EQ(QXDistFun::CdfStdNorm(-37.8), 0.0);
}

TEST(QXDistFunElementary, LogGammaAndLogBinomialCoefficient) {
    EXPECT_EQ(Core::dnlgam(1.0), 0.0);
    EXPECT_EQ(Core::dnlgam(2.0), 0.0);
    EXPECT_EQ(Core::dnlgam(0.5), 0.5723649429247001);
    EXPECT_TRUE(Missing(Core::dnlgam(0.0)));
    EXPECT_TRUE(Missing(Core::dnlgam(-2.5)));

    long error = -1;
    EXPECT_EQ(Core::dnlbnc(10.0, 0.0, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(Core::dnlbnc(10.0, 10.0, error), 0.0);
    EXPECT_NEAR(Core::dnlbnc(33.0, 16.0, error), std::log(1166803110.0), 1e-14);  // the product
    EXPECT_NEAR(Core::dnlbnc(1000.0, 500.0, error), std::lgamma(1001.0) - 2.0 * std::lgamma(501.0), 1e-12);
    EXPECT_NEAR(Core::dnlbnc(5.5, 2.0, error), std::log(5.5 * 4.5 / 2.0), 1e-14);
    for (auto nk : {std::pair<double, double>{-1.0, 0.0}, {5.0, -1.0}, {5.0, 6.0}, {kNaN, 1.0}}) {
        EXPECT_TRUE(MissingWith(Core::dnlbnc(nk.first, nk.second, error), error, 1));
    }
}

TEST(QXDistFunGamma, IncompleteGammaRatioExponentialCaseDomainAndGuards) {
    long error = -1;
    EXPECT_TRUE(MissingWith(Core::gammad(1.0, 0.0, true, error), error, 1));
    EXPECT_EQ(Core::gammad(0.0, 2.0, true, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(Core::gammad(-1.0, 2.0, false, error), 1.0);

    // Shape 1 is the exponential law, with exp(-x) taken as 0 below -708 here and below -708.39 in cdfexp.
    EXPECT_EQ(Core::gammad(707.0, 1.0, false, error), std::exp(-707.0));
    EXPECT_EQ(Core::gammad(708.2, 1.0, false, error), 0.0);
    EXPECT_EQ(Core::cdfexp(708.2, 1.0, error), 1.0 - std::exp(-708.2));
    EXPECT_EQ(Core::cdfexp(0.0, 2.0, error), 0.0);
    EXPECT_TRUE(MissingWith(Core::cdfexp(1.0, 0.0, error), error, 1));
    EXPECT_EQ(QXDistFun::CdfGam(1.5, 1.0, 2.0), 1.0 - std::exp(-3.0));

    // Both tails add to one, on either side of the switch between series and continued fraction.
    for (double shape : {0.3, 2.5, 40.0}) {
        for (double x : {0.5, shape, 1.5 * shape + 2.0}) {
            double const lower = Core::gammad(x, shape, true, error);
            EXPECT_NEAR(lower + Core::gammad(x, shape, false, error), 1.0, 1e-14) << x << " " << shape;
        }
    }
    EXPECT_EQ(QXDistFun::CdfChi(0.0, 1.0), 0.0);
    EXPECT_EQ(QXDistFun::SigChi(0.0, 1.0), 1.0);
    EXPECT_TRUE(Missing(QXDistFun::CdfChi(1.0, 0.0)));
    EXPECT_TRUE(Missing(QXDistFun::SigChi(1.0, -1.0)));
    EXPECT_TRUE(Missing(QXDistFun::CdfGam(1.0, 1.0, 0.0)));
    EXPECT_EQ(QXDistFun::CdfGam(-1.0, 2.0, 1.0), 0.0);
}

TEST(QXDistFunBeta, IncompleteBetaRatioClosedFormsAndApproximation) {
    long error = -1;
    EXPECT_TRUE(MissingWith(Core::cdfbet(0.5, 0.0, 1.0, error), error, 1));
    EXPECT_EQ(Core::cdfbet(-0.1, 2.0, 3.0, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(Core::cdfbet(1.0, 2.0, 3.0, error), 1.0);
    EXPECT_EQ(Core::cdfbet(0.3, 1.0, 1.0, error), 0.3);
    EXPECT_EQ(Core::cdfbet(1e-300, 3.0, 1.0, error), 0.0);
    EXPECT_EQ(Core::cdfbet(1.0 - 1e-16, 1.0, 1e4, error), 1.0);

    // Shapes so large that the continued fraction does not settle within its passes use the normal
    // approximation: symmetric about the mean and increasing.
    double const centre = Core::cdfbet(0.5, 1e11, 1e11, error);
    EXPECT_EQ(error, 0);
    EXPECT_NEAR(centre, 0.5, 1e-6);
    EXPECT_LT(Core::cdfbet(0.5 - 1e-6, 1e11, 1e11, error), centre);
    EXPECT_GT(Core::cdfbet(0.5 + 1e-6, 1e11, 1e11, error), centre);

    EXPECT_EQ(Core::cbtaux(0.0), 1.0);
    EXPECT_EQ(Core::cbtaux(1.0), 0.0);
    EXPECT_TRUE(Missing(Core::cbtaux(-0.5)));
    EXPECT_EQ(Core::cbtaux(1e160), -1.0);
    EXPECT_NEAR(Core::cbtaux(0.5), (std::log(0.5) + 0.75) / 0.25, 1e-15);
}

TEST(QXDistFunStudentAndFisher, DomainsAndSpecialCases) {
    long error = -1;
    EXPECT_TRUE(MissingWith(Core::kromcdft(1.0, 0.0, error), error, 1));
    EXPECT_TRUE(Missing(QXDistFun::SigT(1.0, 0.0)));
    EXPECT_EQ(QXDistFun::CdfT(0.0, 7.0), 0.5);
    EXPECT_EQ(QXDistFun::SigT(0.0, 7.0), 0.5);
    EXPECT_EQ(QXDistFun::CdfT(1.96, 2e8), QXDistFun::CdfStdNorm(1.96));
    EXPECT_EQ(QXDistFun::CdfT(-30.0, 1.0), std::atan(-30.0) / M_PI + 0.5);

    EXPECT_TRUE(MissingWith(QXDistFun::PdfT(0.0, 0.0, error), error, 1));
    EXPECT_NEAR(QXDistFun::PdfT(0.0, 1.0, error), 1.0 / M_PI, 1e-16);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::PdfT(1e200, 3.0, error), 0.0);

    EXPECT_TRUE(MissingWith(Core::kromcdff(1.0, 0.0, 2.0, error), error, 1));
    EXPECT_TRUE(Missing(QXDistFun::SigF(1.0, -1.0, 2.0)));
    EXPECT_EQ(QXDistFun::CdfF(0.0, 2.0, 3.0), 0.0);
    EXPECT_EQ(QXDistFun::SigF(-1.0, 2.0, 3.0), 1.0);
}

TEST(QXDistFunDensities, GammaDensitySpecialPoints) {
    EXPECT_EQ(QXDistFun::PdfGamma(0.0, 1.0, 2.5), 2.5);
    EXPECT_TRUE(Missing(QXDistFun::PdfGamma(0.0, 0.5, 1.0)));
    EXPECT_EQ(QXDistFun::PdfGamma(0.0, 2.0, 1.0), 0.0);
    EXPECT_EQ(QXDistFun::PdfGamma(-1.0, 0.5, 1.0), 0.0);
    EXPECT_TRUE(Missing(QXDistFun::PdfGamma(1.0, 0.0, 1.0)));
    EXPECT_NEAR(QXDistFun::PdfGamma(0.5, 1.0, 2.0), 2.0 * std::exp(-1.0), 1e-16);
    EXPECT_TRUE(Missing(QXDistFun::PdfGamma(1e-318, 0.5, 1e308)));  // log density above 709
}

// Arguments that are no number, or infinities that cancel, give the missing value and never a NaN.
TEST(QXDistFunDomains, NonNumbersGiveTheMissingValue) {
    long e = 0;
    std::function<double()> const calls[] = {
        [] { return QXDistFun::PdfNormalStandard(kNaN); },
        [] { return QXDistFun::PdfNormal(1.0, kInf, kInf); },
        [] { return QXDistFun::IdfNorm(0.5, kNaN, 1.0); },
        [] { return QXDistFun::IdfNorm(0.1, kInf, kInf); },
        [] { return QXDistFun::CdfBeta(1e-300, 1.0, kInf); },
        [] { return QXDistFun::IdfF(0.5, kInf, kInf); },
        [&] { return QXDistFun::PdfT(0.3, kInf, e); },
        [] { return QXDistFun::PdfGamma(kInf, 2.5, 0.5); },
        [&] { return QXDistFun::PdfBin(1.0, kInf, 0.5, e); },
        [&] { return QXDistFun::PdfNegBin(kInf, 2.5, 1e-300, e); },
        [&] { return QXDistFun::PdfNegBin(1.0, kInf, 0.5, e); },
        [&] { return QXDistFun::NonCentralPdfT(0.0, kInf, 1.0, e); },
        [] { return QXDistFun::NonCentralCdfT(1.0, 5.0, 1e300, 1e-12); },
        [] { return QXDistFun::NonCentralCdfT(1.0, 5.0, -kInf, 1e-12); },
    };
    for (std::size_t i = 0; i < std::size(calls); ++i) {
        EXPECT_TRUE(Missing(calls[i]())) << "call " << i;
    }
}

TEST(QXDistFunBinomial, CumulativeProbabilityDomainEndsAndSums) {
    long error = -1;
    EXPECT_EQ(QXDistFun::CdfBin(3.7, 10.0, 0.5, error), QXDistFun::CdfBin(3.0, 10.0, 0.5, error));
    EXPECT_TRUE(MissingWith(QXDistFun::CdfBin(3.0, 10.5, 0.5, error), error, 3));
    EXPECT_TRUE(MissingWith(QXDistFun::CdfBin(3.0, 0.0, 0.5, error), error, 1));
    EXPECT_TRUE(MissingWith(QXDistFun::CdfBin(3.0, 10.0, 1.5, error), error, 1));

    EXPECT_EQ(QXDistFun::CdfBin(0.0, 10.0, 0.0, error), 1.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::CdfBin(-1.0, 10.0, 0.0, error), 0.0);
    EXPECT_EQ(QXDistFun::CdfBin(9.0, 10.0, 1.0, error), 0.0);
    EXPECT_EQ(QXDistFun::CdfBin(10.0, 10.0, 1.0, error), 1.0);
    EXPECT_EQ(QXDistFun::CdfBin(12.0, 10.0, 0.3, error), 1.0);
    EXPECT_EQ(QXDistFun::CdfBin(0.0, 10.0, 0.3, error), std::exp(10.0 * std::log(0.7)));

    // Below and above the mode the sums agree with adding the single probabilities.
    double sum = 0.0;
    for (int k = 0; k < 40; ++k) {
        sum += QXDistFun::PdfBin(k, 40.0, 0.35, error);
        EXPECT_NEAR(QXDistFun::CdfBin(k, 40.0, 0.35, error), sum, 1e-14) << k;
    }

    // Far tails whose probabilities underflow go to Peizer and Pratt's approximation, which gives 0 there;
    // a law too wide to sum term by term goes to it as well.
    EXPECT_EQ(QXDistFun::CdfBin(1000.0, 1e5, 0.5, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_NEAR(QXDistFun::CdfBin(5e15, 1e16, 0.5, error), 0.5, 1e-6);
}

TEST(QXDistFunBinomial, SingleProbabilities) {
    long error = -1;
    EXPECT_TRUE(MissingWith(QXDistFun::PdfBin(1.0, 10.0, -0.1, error), error, 1));
    EXPECT_TRUE(MissingWith(QXDistFun::PdfBin(1.0, 0.5, 0.5, error), error, 1));
    EXPECT_EQ(QXDistFun::PdfBin(1.5, 10.0, 0.5, error), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::PdfBin(11.0, 10.0, 0.5, error), 0.0);
    EXPECT_EQ(QXDistFun::PdfBin(0.0, 10.0, 0.0, error), 1.0);
    EXPECT_EQ(QXDistFun::PdfBin(10.0, 10.0, 1.0, error), 1.0);

    EXPECT_EQ(QXDistFun::PdfNegBin(0.0, 4.0, 1.0, error), 1.0);
    EXPECT_EQ(QXDistFun::PdfNegBin(3.0, 4.0, 1.0, error), 0.0);
    EXPECT_EQ(QXDistFun::PdfNegBin(1.0, 1.0, 0.3, error), 0.7 * 0.3);
    EXPECT_EQ(QXDistFun::PdfNegBin(4.0, 1.0, 0.3, error), std::pow(0.7, 4.0) * 0.3);
    EXPECT_EQ(QXDistFun::PdfNegBin(2.5, 3.0, 0.3, error), 0.0);
    EXPECT_EQ(QXDistFun::PdfNegBin(5.0, 0.0, 0.3, error), 0.0);
    for (double p : {0.0, 1.5}) {
        EXPECT_TRUE(MissingWith(QXDistFun::PdfNegBin(1.0, 2.0, p, error), error, 1));
    }
    // The log binomial coefficient of x + r - 1 over x has no value for r between 0 and 1.
    EXPECT_TRUE(MissingWith(QXDistFun::PdfNegBin(3.0, 0.5, 0.5, error), error, 2));
    double total = 0.0;
    for (int x = 0; x < 400; ++x) {
        total += QXDistFun::PdfNegBin(x, 3.5, 0.2, error);
    }
    EXPECT_NEAR(total, 1.0, 1e-13);
}

TEST(QXDistFunHypergeometric, DomainSymmetriesAndPointSums) {
    int error = -1;
    EXPECT_TRUE(MissingWith(QXDistFun::CDFHyper(1.0, 20.5, 5.0, 8.0, error), error, 1));
    EXPECT_TRUE(MissingWith(QXDistFun::CDFHyper(1.0, 20.0, 0.0, 8.0, error), error, 1));
    EXPECT_TRUE(Missing(QXDistFun::CDFHyper(1.0, 20.0, 5.0, 21.0, error)));
    EXPECT_TRUE(Missing(QXDistFun::CDFHyper(1.0, 3e9, 5.0, 21.0, error)));
    EXPECT_EQ(QXDistFun::CDFHyper(2.0, 20.0, 15.0, 8.0, error), 0.0);  // at least 3 marked are drawn
    EXPECT_EQ(error, 0);
    EXPECT_EQ(QXDistFun::CDFHyper(8.0, 20.0, 15.0, 8.0, error), 1.0);
    EXPECT_EQ(QXDistFun::CDFHyper(3.9, 20.0, 5.0, 8.0, error),
              QXDistFun::CDFHyper(3.0, 20.0, 5.0, 8.0, error));

    EXPECT_TRUE(Missing(QXDistFun::PdfHyper(6, 20, 5, 8)));
    EXPECT_TRUE(Missing(QXDistFun::PdfHyper(1, 20, 21, 8)));
    EXPECT_TRUE(Missing(QXDistFun::PdfHyper(0, 20, 5, 0)));

    // Every reduction by symmetry (sample against marked, each against its complement) meets the same sum.
    for (long total : {30L, 700L, 4000L}) {
        double const t = static_cast<double>(total);
        double const s = static_cast<double>(total / 3);
        double const m = static_cast<double>(total / 2 + 3);
        double cumulative = 0.0;
        for (long x = 0; x <= total / 3; ++x) {
            cumulative += QXDistFun::PdfHyper(x, total, total / 3, total / 2 + 3);
            double const c = QXDistFun::CDFHyper(x, t, s, m, error);
            EXPECT_NEAR(c, cumulative, 1e-9 * cumulative + 1e-15) << total << " " << x;
            EXPECT_NEAR(QXDistFun::CDFHyper(x, t, m, s, error), c, 1e-15 + 1e-13 * c);
            EXPECT_NEAR(1.0 - QXDistFun::CDFHyper(s - x - 1.0, t, s, t - m, error), c, 1e-13);
        }
    }
}

}  // namespace
