// Tree scoring through the shipped plug-in: strategies for missing values and for nodes without a true
// child, the penalty, probabilities and confidences, entity ids, regression trees and refused documents.
#include <gtest/gtest.h>

#include "tests/families/TreeHarness.h"
#include "vantry/diagnostics/VTException.h"

namespace {

using namespace treetest;

std::string StrategyDocument(std::string const& strategy, std::string const& noTrueChild) {
    return Replace(Replace(Fixture("tree_strategies.xml"), "@MVS@", strategy), "@NTC@", noTrueChild);
}

struct Expected {
    std::string predicted;  // "" for no prediction
    double confidence;
    double probabilityYes;
    std::string node;
};

void ExpectCase(Cells const& cells, Expected const& expected, std::string const& what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(cells.at("Predicted"), expected.predicted);
    EXPECT_EQ(cells.at("Node"), expected.node);
    if (expected.predicted.empty()) {
        EXPECT_EQ(cells.at("P_yes"), "");
        return;
    }
    EXPECT_NEAR(Number(cells.at("Confidence")), expected.confidence, 1e-12);
    EXPECT_NEAR(Number(cells.at("@confidence")), expected.confidence, 1e-6);
    EXPECT_NEAR(Number(cells.at("P_yes")), expected.probabilityYes, 1e-12);
    EXPECT_NEAR(Number(cells.at("P_no")), 1.0 - expected.probabilityYes, 1e-12);
}

char const* const kStrategies[] = {"none",         "lastPrediction",     "nullPrediction",
                                   "defaultChild", "weightedConfidence", "aggregateNodes"};

TEST(TreeStrategies, KnownValuesFollowTheFirstTrueChildWhateverTheStrategy) {
    for (char const* strategy : kStrategies) {
        LoadedModel model(StrategyDocument(strategy, "returnNullPrediction"));
        // Probabilities from record counts, confidence as the probability.
        ExpectCase(model.Score({{"x", "3"}, {"y", "2"}}), {"yes", 0.9, 0.9, "N4"}, strategy);
        // Explicit probabilities and confidences win over the counts.
        ExpectCase(model.Score({{"x", "25"}, {"y", "9"}}), {"no", 0.8, 0.3, "N3"}, strategy);
        ExpectCase(model.Score({{"x", "3"}, {"y", "7"}}), {"no", 0.55, 0.45, "N5"}, strategy);
    }
}

TEST(TreeStrategies, NoTrueChildReturnsNothingOrTheLastNode) {
    LoadedModel null(StrategyDocument("none", "returnNullPrediction"));
    LoadedModel last(StrategyDocument("none", "returnLastPrediction"));
    ExpectCase(null.Score({{"x", "15"}}), {"", 0, 0, ""}, "gap, null");
    ExpectCase(last.Score({{"x", "15"}}), {"yes", 0.6, 0.6, "N1"}, "gap, last");
    // Under "none" an unknown condition is false, and the search goes on to the following children.
    ExpectCase(null.Score({{"y", "2"}}), {"", 0, 0, ""}, "x missing, null");
    ExpectCase(last.Score({{"y", "2"}}), {"yes", 0.6, 0.6, "N1"}, "x missing, last");
    ExpectCase(last.Score({{"x", "3"}}), {"yes", 0.75, 0.75, "N2"}, "y missing, last");
}

TEST(TreeStrategies, MissingValueStrategiesAndPenalty) {
    struct Row {
        char const* strategy;
        char const* x;
        char const* y;
        Expected expected;
    };
    Row const rows[] = {
        // The penalty (0.5) lowers the confidence of each missing value handled, not the probabilities.
        {"lastPrediction", "", "2", {"yes", 0.3, 0.6, "N1"}},
        {"lastPrediction", "3", "", {"yes", 0.375, 0.75, "N2"}},
        {"nullPrediction", "", "2", {"", 0, 0, ""}},
        {"nullPrediction", "3", "", {"", 0, 0, ""}},
        {"defaultChild", "", "2", {"yes", 0.45, 0.9, "N4"}},
        {"defaultChild", "", "", {"yes", 0.225, 0.9, "N4"}},
        // Blends have no single node. weightedConfidence weighs each reached node by its share of the
        // parent's records: 0.6 * 0.9 + 0.4 * 0.2 (explicit confidence of N3).
        {"weightedConfidence", "", "2", {"yes", 0.62, 0.66, ""}},
        {"weightedConfidence", "3", "", {"yes", 0.75, 0.75, ""}},
        {"weightedConfidence", "", "", {"yes", 0.53, 0.57, ""}},
        // aggregateNodes sums the record counts of the nodes reached: (36 + 15) / 80.
        {"aggregateNodes", "", "2", {"yes", 0.6375, 0.6375, ""}},
        {"aggregateNodes", "", "", {"yes", 0.6, 0.6, ""}},
    };
    for (Row const& row : rows) {
        LoadedModel model(StrategyDocument(row.strategy, "returnNullPrediction"));
        ExpectCase(model.Score({{"x", row.x}, {"y", row.y}}), row.expected,
                   std::string(row.strategy) + " x=" + row.x + " y=" + row.y);
    }
}

TEST(TreeRegression, ScoresSplitOnDerivedFieldsAndBlendsByRecordCount) {
    std::string const document = Fixture("tree_regression.xml");
    LoadedModel plain(Replace(document, "@MVS@", "none"));
    Cells cells = plain.Score({{"a", "1"}, {"b", "-1"}});
    EXPECT_EQ(Number(cells.at("Predicted")), 2.0);
    EXPECT_EQ(cells.at("Node"), "LL");
    cells = plain.Score({{"a", "6"}, {"b", "-1"}});  // twiceA is 12
    EXPECT_EQ(Number(cells.at("Predicted")), 20.0);
    EXPECT_EQ(cells.at("Node"), "RR");
    EXPECT_EQ(plain.Score({{"a", "1"}}).at("Predicted"), "");

    LoadedModel last(Replace(document, "@MVS@", "lastPrediction"));
    EXPECT_EQ(Number(last.Score({{"a", "1"}}).at("Predicted")), 1.0);
    EXPECT_EQ(Number(last.Score({{"b", "1"}}).at("Predicted")), 10.0);

    // Leaves LL (3 records, 2) and LR (1 record, 3).
    LoadedModel aggregate(Replace(document, "@MVS@", "aggregateNodes"));
    EXPECT_DOUBLE_EQ(Number(aggregate.Score({{"a", "1"}}).at("Predicted")), 2.25);
    LoadedModel weighted(Replace(document, "@MVS@", "weightedConfidence"));
    EXPECT_DOUBLE_EQ(Number(weighted.Score({{"a", "1"}}).at("Predicted")), 2.25);
    // Every leaf below the root: (3 * 2 + 1 * 3 + 6 * 20) / 10.
    EXPECT_DOUBLE_EQ(Number(aggregate.Score({}).at("Predicted")), 12.9);
}

TEST(TreeDocuments, BadTreesAreRefusedWithTheirCodes) {
    struct Row {
        char const* from;
        char const* to;
        int code;
    };
    Row const rows[] = {
        {"missingValueStrategy=\"@MVS@\"", "missingValueStrategy=\"guess\"", 260153},
        {"noTrueChildStrategy=\"@NTC@\"", "noTrueChildStrategy=\"returnAnything\"", 260153},
        {"missingValuePenalty=\"0.5\"", "missingValuePenalty=\"half\"", 260151},
        {"<ScoreDistribution value=\"yes\" recordCount=\"60\"/>", "<ScoreDistribution recordCount=\"60\"/>",
         260120},
        {"score=\"yes\" recordCount=\"100\"", "score=\"yes\" recordCount=\"many\"", 260151},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.to);
        std::string const document =
            Replace(Replace(Replace(Fixture("tree_strategies.xml"), row.from, row.to), "@MVS@", "none"),
                    "@NTC@", "returnNullPrediction");
        try {
            LoadedModel model(document);
            ADD_FAILURE() << "accepted";
        } catch (QXVantry_920::VTException& e) {
            EXPECT_EQ(e.GetErrorCode(), row.code);
        }
    }
    // A tree without nodes.
    std::string const noNodes =
        "<PMML version=\"4.4\"><DataDictionary numberOfFields=\"1\"><DataField name=\"x\" "
        "optype=\"continuous\" "
        "dataType=\"double\"/></DataDictionary><TreeModel functionName=\"regression\">"
        "<MiningSchema><MiningField name=\"x\"/></MiningSchema></TreeModel></PMML>";
    try {
        LoadedModel model(noNodes);
        ADD_FAILURE() << "accepted";
    } catch (QXVantry_920::VTException& e) {
        EXPECT_EQ(e.GetErrorCode(), 260114) << e.GetErrorMessage();
    }
}

}  // namespace
