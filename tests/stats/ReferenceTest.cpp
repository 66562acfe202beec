#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

#include "tests/stats/ReferenceTable.h"

namespace {

struct Bound {
    double limit;
    bool absolute;  // approximations are held to an absolute bound, everything else to a relative one
};

// Bounds per function and grid. Where a bound is wider than a few units of 1e-14 the algorithm itself costs
// the digits: differences of log gamma values of large arguments, 1 - exp(b log(1 - x)) for small x in the
// beta ratio with a shape of 1, 0.5 - atan(x) / pi for large x, the stopping rules of the iterations, and the
// named normal approximations. The beta inverse stops on absolute tolerances, so the quantiles built on it
// are held to what those allow.
std::map<std::pair<std::string, std::string>, Bound> const& Bounds() {
    static std::map<std::pair<std::string, std::string>, Bound> const bounds = {
        {{"CdfStdNorm", "centre"}, {1e-14, false}},
        {{"CdfStdNorm", "lower tail"}, {5e-13, false}},
        {{"CdfStdNorm", "upper tail"}, {1e-15, false}},
        {{"CdfStdNorm", "underflow guard"}, {0.0, false}},
        {{"CdfNorm", "centre"}, {2e-14, false}},
        {{"IdfStdNorm", "centre"}, {1e-14, false}},
        {{"IdfStdNorm", "lower tail"}, {1e-14, false}},
        {{"IdfStdNorm", "upper tail"}, {1e-14, false}},
        {{"IdfNorm", "centre"}, {1e-14, false}},
        {{"IdfT", "centre"}, {1e-8, false}},
        {{"IdfT", "tails"}, {5e-7, false}},
        {{"IdfF", "centre"}, {1e-8, false}},
        {{"IdfF", "one and 1000 degrees"}, {1e-4, false}},
        {{"IdfChi", "centre"}, {1e-12, false}},
        {{"IdfChi", "tails"}, {1e-9, false}},
        {{"IdfChi", "below 5e-7"}, {2e-7, false}},
        {{"IdfChi", "bisection"}, {1e-8, false}},
        {{"IdfGam", "centre"}, {1e-13, false}},
        {{"IdfBeta", "centre"}, {1e-10, true}},
        {{"IdfBin", "counts"}, {0.0, false}},
        {{"kromdnlgam", "below 1/2"}, {1e-15, false}},
        {{"kromdnlgam", "1/2 to 8"}, {1e-15, false}},
        {{"kromdnlgam", "8 and above"}, {1e-15, false}},
        {{"kromdnlgam", "exact points"}, {0.0, false}},
        {{"CdfT", "centre"}, {1e-13, false}},
        {{"SigT", "centre"}, {1e-13, false}},
        {{"CdfT", "lower tail"}, {2e-11, false}},
        {{"SigT", "upper tail"}, {2e-11, false}},
        {{"CdfT", "df 1e4"}, {2e-10, false}},
        {{"SigT", "df 1e4"}, {2e-10, false}},
        {{"CdfT", "one degree"}, {1e-14, false}},
        {{"SigT", "one degree"}, {1e-10, false}},
        {{"CdfF", "centre"}, {5e-13, false}},
        {{"SigF", "centre"}, {5e-13, false}},
        {{"CdfF", "lower tail"}, {2e-10, false}},
        {{"SigF", "upper tail"}, {1e-12, false}},
        {{"CdfChi", "centre"}, {5e-13, false}},
        {{"SigChi", "centre"}, {5e-13, false}},
        {{"CdfChi", "lower tail"}, {5e-13, false}},
        {{"SigChi", "upper tail"}, {5e-13, false}},
        {{"CdfChi", "df 5000"}, {1e-11, false}},
        {{"SigChi", "df 5000"}, {1e-11, false}},
        {{"CdfChi", "normal approximation"}, {1e-4, true}},
        {{"SigChi", "normal approximation"}, {1e-4, true}},
        {{"CdfChi", "underflow guard"}, {0.0, false}},
        {{"SigChi", "underflow guard"}, {0.0, false}},
        {{"CdfGam", "centre"}, {1e-14, false}},
        {{"CdfGam", "underflow guard"}, {0.0, false}},
        {{"CdfBeta", "centre"}, {1e-12, false}},
        {{"CdfBeta", "lower tail"}, {2e-10, false}},
        {{"CdfBeta", "upper tail"}, {1e-12, false}},
        {{"CdfBeta", "large shapes"}, {1e-9, false}},
        {{"PdfT", "centre"}, {1e-12, false}},
        {{"PdfGamma", "centre"}, {1e-13, false}},
        {{"PdfGamma", "underflow guard"}, {0.0, false}},
        {{"PdfNormal", "centre"}, {1e-15, false}},
        {{"PdfBin", "ends"}, {1e-13, false}},
        {{"PdfBin", "n up to 1000"}, {5e-12, false}},
        {{"PdfBin", "n 1e5 and 1e7"}, {1e-7, false}},
        {{"CdfBin", "n up to 1000"}, {5e-12, false}},
        {{"CdfBin", "n 1e5 and 1e7"}, {1e-7, false}},
        {{"CdfBin", "tails"}, {5e-11, false}},
        {{"PdfNegBin", "centre"}, {1e-13, false}},
        {{"PdfHyper", "total up to 1000"}, {2e-11, false}},
        {{"PdfHyper", "total above 1000"}, {2e-8, false}},
        {{"PdfHyper", "underflow guard"}, {0.0, false}},
        {{"CDFHyper", "total up to 1000"}, {1e-14, false}},
        {{"CDFHyper", "total above 1000"}, {1e-8, false}},
        {{"CDFHyper", "normal approximation"}, {5e-4, true}},
    };
    return bounds;
}

TEST(QXDistFunReference, EveryGridAgreesWithHighPrecisionValues) {
    std::vector<statsref::Row> const rows = statsref::Load(statsref::FixturePath("stats_reference.csv"));
    ASSERT_GT(rows.size(), 1000u) << "reference table missing or short";

    for (statsref::GridResult const& result : statsref::Evaluate(rows)) {
        auto bound = Bounds().find({result.function, result.grid});
        ASSERT_NE(bound, Bounds().end()) << "no bound for " << result.function << " / " << result.grid;
        double const error = bound->second.absolute ? result.worstAbsolute : result.worst;
        statsref::Row const& w = result.worstRow;
        EXPECT_LE(error, bound->second.limit)
            << result.function << " / " << result.grid << ": worst at (" << w.x[0] << ", " << w.x[1] << ", "
            << w.x[2] << ", " << w.x[3] << "), expected " << w.expected;
    }
}

}  // namespace
