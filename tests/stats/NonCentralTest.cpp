#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <vector>

#include "tests/stats/DistFunAccess.h"
#include "vantry/stats/QXDistFun.h"

using namespace statstest;

namespace {

TEST(QXDistFunNonCentralT, ReducesToCentralLawsAndGuards) {
    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfT(1.0, 0.0, 1.0, 1e-12)));
    for (double t : {-2.0, 0.7, 3.0}) {
        EXPECT_EQ(QXDistFun::NonCentralCdfT(t, 7.0, 0.0, 1e-12), QXDistFun::CdfT(t, 7.0));
    }
    EXPECT_EQ(QXDistFun::NonCentralCdfT(0.0, 7.0, 1.3, 1e-12), QXDistFun::CdfStdNorm(-1.3));
    EXPECT_EQ(QXDistFun::NonCentralCdfT(DBL_MAX, 7.0, 1.3, 1e-12), 1.0);
    EXPECT_EQ(QXDistFun::NonCentralCdfT(-DBL_MAX, 7.0, 1.3, 1e-12), 0.0);
    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfT(1e-200, 7.0, 1.3, 1e-12)));  // t t / (t t + df) is 0
    // A bound that can never be met exhausts the passes.
    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfT(1.0, 7.0, 1.3, -1.0)));
}

TEST(QXDistFunNonCentralT, DensityReducesToCentralLaw) {
    long error = -1;
    EXPECT_TRUE(MissingWith(QXDistFun::NonCentralPdfT(1.0, -1.0, 1.0, error), error, 1));
    EXPECT_EQ(QXDistFun::NonCentralPdfT(1.3, 6.0, 0.0, error), QXDistFun::PdfT(1.3, 6.0, error));
    EXPECT_EQ(QXDistFun::NonCentralPdfT(0.0, 6.0, 0.0, error), QXDistFun::PdfT(0.0, 6.0, error));
    EXPECT_NEAR(QXDistFun::NonCentralPdfT(0.0, 6.0, 1.5, error),
                QXDistFun::PdfT(0.0, 6.0, error) * std::exp(-1.5 * 1.5 / 2.0), 1e-15);
    EXPECT_EQ(error, 0);
}

TEST(QXDistFunNonCentralBeta, DomainFirstTermAndPassLimit) {
    long error = -1;
    EXPECT_TRUE(MissingWith(Core::ncdbet(0.5, 0.0, 2.0, 1.0, error, 1e-12), error, 1));
    EXPECT_TRUE(MissingWith(Core::ncdbet(0.5, 2.0, 2.0, -1.0, error, 1e-12), error, 1));
    EXPECT_EQ(Core::ncdbet(0.0, 2.0, 3.0, 1.0, error, 1e-12), 0.0);
    EXPECT_EQ(error, 0);
    EXPECT_EQ(Core::ncdbet(1.0, 2.0, 3.0, 1.0, error, 1e-12), 1.0);
    long inner = 0;
    EXPECT_EQ(Core::ncdbet(0.4, 2.0, 3.0, 0.0, error, 1e-12), Core::cdfbet(0.4, 2.0, 3.0, inner));
    // An error bound of 1 or more keeps only the first term of the series.
    EXPECT_DOUBLE_EQ(Core::ncdbet(0.4, 2.0, 3.0, 0.5, error, 1.0),
                     std::exp(-0.25) * Core::cdfbet(0.4, 2.0, 3.0, inner));
    EXPECT_TRUE(MissingWith(Core::ncdbet(0.4, 2.0, 3.0, 0.5, error, -1.0), error, 2));

    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfF(1.0, 0.0, 3.0, 1.0, 1e-12)));
    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfF(1.0, 2.0, 3.0, -1.0, 1e-12)));
    EXPECT_EQ(QXDistFun::NonCentralCdfF(-1.0, 2.0, 3.0, 1.0, 1e-12), 0.0);
    EXPECT_NEAR(QXDistFun::NonCentralCdfF(0.6, 3.0, 8.0, 0.0, 1e-12), QXDistFun::CdfF(0.6, 3.0, 8.0), 1e-15);
}

TEST(QXDistFunNonCentralChi, ReducesToCentralLawAndStartsFarOut) {
    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfChi(1.0, 0.0, 1.0)));
    EXPECT_TRUE(Missing(QXDistFun::NonCentralCdfChi(1.0, 2.0, -1.0)));
    EXPECT_EQ(QXDistFun::NonCentralCdfChi(0.0, 2.0, 1.0), 0.0);
    EXPECT_EQ(QXDistFun::NonCentralCdfChi(3.0, 4.0, 0.0), QXDistFun::CdfChi(3.0, 4.0));
    // A very large non-centrality starts its series far from term 0: near the mean the law is nearly normal.
    double const lambda = 1e6;
    EXPECT_NEAR(QXDistFun::NonCentralCdfChi(4.0 + lambda, 4.0, lambda), 0.5, 2e-3);
}

TEST(QXDistFunNonCentralSearch, FindsTheNonCentralityOfAProbability) {
    EXPECT_TRUE(Missing(QXDistFun::FindNCParamT(-1.0, 10.0, 0.5, 1e-6, 1e-9)));
    EXPECT_TRUE(Missing(QXDistFun::FindNCParamT(1.0, 10.0, 1.5, 1e-6, 1e-9)));
    EXPECT_TRUE(Missing(QXDistFun::FindNCParamT(1.0, 0.0, 0.5, 1e-6, 1e-9)));
    EXPECT_TRUE(Missing(QXDistFun::FindNCParamT(1.0, 10.0, 0.5, -1.0, 1e-9)));
    // Above and below the central probability the walk goes up and down.
    for (double p : {0.05, 0.6, 0.97}) {
        double const delta = QXDistFun::FindNCParamT(1.5, 12.0, p, 1e-11, 1e-13);
        EXPECT_NEAR(QXDistFun::NonCentralCdfT(1.5, 12.0, delta, 1e-13), p, 1e-10) << p;
    }
    EXPECT_LT(QXDistFun::FindNCParamT(1.5, 12.0, 0.97, 1e-11, 1e-13), 0.0);

    EXPECT_TRUE(Missing(QXDistFun::FindNCParamF(2.0, 0.0, 10.0, 0.5, 1e-10)));
    EXPECT_TRUE(Missing(QXDistFun::FindNCParamF(2.0, 3.0, 10.0, 0.5, -1.0)));
    EXPECT_EQ(QXDistFun::FindNCParamF(2.0, 3.0, 10.0, 0.9, 1e-10), 0.0);  // p above the central value
    for (double p : {0.02, 0.3, 0.7}) {
        double const lambda = QXDistFun::FindNCParamF(2.0, 3.0, 10.0, p, 1e-12);
        EXPECT_NEAR(QXDistFun::NonCentralCdfF(2.0, 3.0, 10.0, lambda, 1e-12), p, 1e-10) << p;
    }

    EXPECT_TRUE(Missing(QXDistFun::FindNCParamChi(5.0, 0.0, 0.5, 1e-10)));
    EXPECT_TRUE(Missing(QXDistFun::FindNCParamChi(5.0, 2.0, -0.5, 1e-10)));
    EXPECT_EQ(QXDistFun::FindNCParamChi(5.0, 2.0, 0.95, 1e-10), 0.0);
    EXPECT_EQ(QXDistFun::FindNCParamChi(-1.0, 2.0, 0.5, 1e-10), 0.0);
    for (double p : {1e-4, 0.3, 0.9}) {
        double const lambda = QXDistFun::FindNCParamChi(6.0, 2.0, p, 1e-12);
        EXPECT_NEAR(QXDistFun::NonCentralCdfChi(6.0, 2.0, lambda), p, 1e-11) << p;
    }
}

TEST(QXDistFunGrouped, MedianIntervalFromOrderStatistics) {
    double lower = 0.0;
    double upper = 0.0;
    double coverage = 0.0;
    std::vector<double> values;
    std::vector<double> ones;
    for (int i = 1; i <= 20; ++i) {
        values.push_back(i * 1.5);
        ones.push_back(1.0);
    }
    // Twenty cases at 95 %: P(Bin(20, 1/2) <= 5) = 0.0207, so the interval runs from the 6th to the 15th.
    QXDistFun::Mednci(20, values, ones, 20.0, 95.0, true, lower, upper, coverage);
    EXPECT_EQ(lower, values[5]);
    EXPECT_EQ(upper, values[14]);
    EXPECT_NEAR(coverage, (0.5 - 0.020694732666015625) * 200.0, 1e-10);

    // The same cases in five classes of four.
    std::vector<double> const classes = {1.0, 2.0, 3.0, 4.0, 5.0};
    std::vector<double> const fours(5, 4.0);
    QXDistFun::Mednci(5, classes, fours, 20.0, 95.0, false, lower, upper, coverage);
    EXPECT_EQ(lower, 2.0);
    EXPECT_EQ(upper, 4.0);
    EXPECT_TRUE(Missing(coverage));

    QXDistFun::Mednci(2, {3.0, 7.0}, {1.0, 1.0}, 2.0, 95.0, true, lower, upper, coverage);
    EXPECT_EQ(lower, 3.0);
    EXPECT_EQ(upper, 7.0);
    EXPECT_EQ(coverage, 100.0);
    QXDistFun::Mednci(20, values, ones, 20.0, 100.0, true, lower, upper, coverage);  // no tail at all
    EXPECT_EQ(lower, values[0]);
    EXPECT_EQ(upper, values[19]);
    EXPECT_EQ(coverage, 100.0);
    for (double total : {1.0, 20.5}) {  // too few cases; a total that is no whole number
        QXDistFun::Mednci(20, values, ones, total, 95.0, true, lower, upper, coverage);
        EXPECT_TRUE(Missing(lower) && Missing(upper) && Missing(coverage)) << total;
    }
    QXDistFun::Mednci(30, values, ones, 20.0, 95.0, true, lower, upper, coverage);  // n beyond the data
    EXPECT_TRUE(Missing(lower));
}

TEST(QXDistFunGrouped, PercentileOfGroupedDataInEachMode) {
    double result = 0.0;
    long status = 0;
    std::vector<double> const values = {1.0, 2.0, 3.0, 4.0};
    std::vector<double> const none;

    QXDistFun::GPTile(1, 50.0, values, {2.0}, none, 0, result, status);
    EXPECT_EQ(status, -1);
    EXPECT_TRUE(Missing(result));
    QXDistFun::GPTile(4, 50.0, values, {2.0, 2.0}, none, 0, result, status);  // counts too short
    EXPECT_EQ(status, -1);

    // Midpoints: centres at cumulative 1, 3, 5, 7 of 8.
    std::vector<double> const twos(4, 2.0);
    QXDistFun::GPTile(4, 50.0, values, twos, none, 0, result, status);
    EXPECT_EQ(status, 0);
    EXPECT_DOUBLE_EQ(result, 2.5);
    QXDistFun::GPTile(4, 10.0, values, twos, none, 0, result, status);
    EXPECT_EQ(status, 1);
    EXPECT_TRUE(Missing(result));
    QXDistFun::GPTile(4, 95.0, values, twos, none, 0, result, status);
    EXPECT_EQ(status, 2);
    QXDistFun::GPTile(4, 87.5, values, twos, none, 0, result, status);
    EXPECT_EQ(result, 4.0);
    // Empty middle classes put two centres at T: the earlier class is taken.
    QXDistFun::GPTile(4, 50.0, values, {2.0, 0.0, 0.0, 2.0}, none, 0, result, status);
    EXPECT_EQ(result, 2.0);

    // Fixed width 10 around 10, 20, 30.
    std::vector<double> const centres = {10.0, 20.0, 30.0};
    QXDistFun::GPTile(3, 50.0, centres, {1.0, 2.0, 1.0}, {10.0}, 1, result, status);
    EXPECT_DOUBLE_EQ(result, 20.0);
    QXDistFun::GPTile(3, 100.0, centres, {1.0, 2.0, 1.0}, {10.0}, 1, result, status);
    EXPECT_EQ(result, 35.0);
    QXDistFun::GPTile(3, 50.0, centres, {1.0, 0.0, 1.0}, {10.0}, 1, result, status);
    EXPECT_EQ(result, 15.0);
    QXDistFun::GPTile(3, 50.0, centres, {1.0, 2.0, 1.0}, none, 1, result, status);  // width missing
    EXPECT_EQ(status, -1);

    // Explicit boundaries 0, 10, 20; the last class reaches to 2 * 25 - 20.
    std::vector<double> const mids = {5.0, 15.0, 25.0};
    std::vector<double> const bounds = {0.0, 10.0, 20.0};
    QXDistFun::GPTile(3, 50.0, mids, {2.0, 2.0, 2.0}, bounds, 3, result, status);
    EXPECT_DOUBLE_EQ(result, 15.0);
    QXDistFun::GPTile(3, 100.0, mids, {2.0, 2.0, 2.0}, bounds, 3, result, status);
    EXPECT_EQ(result, 30.0);
    QXDistFun::GPTile(3, 0.0, mids, {2.0, 2.0, 2.0}, bounds, 3, result, status);
    EXPECT_EQ(result, 0.0);
    QXDistFun::GPTile(3, 50.0, mids, {0.0, 0.0, 0.0}, bounds, 3, result, status);
    EXPECT_EQ(result, 0.0);  // nothing counted: the first boundary
}

}  // namespace
