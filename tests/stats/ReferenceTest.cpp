#include <gtest/gtest.h>

#include "tests/stats/ReferenceTable.h"

namespace {

TEST(QXDistFunReference, EveryGridAgreesWithHighPrecisionValues) {
    std::vector<statsref::Row> const rows = statsref::Load(statsref::FixturePath("stats_reference.csv"));
    ASSERT_GT(rows.size(), 1000u) << "reference table missing or short";

    for (statsref::GridResult const& result : statsref::Evaluate(rows)) {
        auto bound = statsref::Bounds().find({result.function, result.grid});
        ASSERT_NE(bound, statsref::Bounds().end())
            << "no bound for " << result.function << " / " << result.grid;
        double const error = bound->second.absolute ? result.worstAbsolute : result.worst;
        statsref::Row const& w = result.worstRow;
        EXPECT_LE(error, bound->second.limit)
            << result.function << " / " << result.grid << ": worst at (" << w.x[0] << ", " << w.x[1] << ", "
            << w.x[2] << ", " << w.x[3] << "), expected " << w.expected;
    }
}

}  // namespace
