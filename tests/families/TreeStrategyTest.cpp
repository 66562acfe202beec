// Tree scoring through the shipped plug-in: strategies for missing values and for nodes without a true
// child, the penalty, probabilities and confidences, entity ids, regression trees and refused documents.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/families/FamilyFixture.h"

namespace families {
namespace {

// Every occurrence of `from` replaced.
std::string Replace(std::string text, std::string const& from, std::string const& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// x and y as numbers; an empty text leaves the input missing.
std::vector<Input> XY(std::string const& x, std::string const& y) {
    std::vector<Input> inputs;
    if (!x.empty()) {
        inputs.push_back(Num("x", std::stod(x)));
    }
    if (!y.empty()) {
        inputs.push_back(Num("y", std::stod(y)));
    }
    return inputs;
}

std::string StrategyDocument(std::string const& strategy, std::string const& noTrueChild) {
    return Replace(Replace(Fixture("tree_strategies.xml"), "@MVS@", strategy), "@NTC@", noTrueChild);
}

struct Expected {
    std::string predicted;  // "" for no prediction
    double confidence;
    double probabilityYes;
    std::string node;
};

void ExpectCase(Scorer const& scored, Expected const& expected, std::string const& what) {
    SCOPED_TRACE(what);
    EXPECT_EQ(scored.TextOf("Predicted"), expected.predicted);
    EXPECT_EQ(scored.TextOf("Node"), expected.node);
    if (expected.predicted.empty()) {
        EXPECT_TRUE(scored.IsMissing("P_yes"));
        return;
    }
    EXPECT_NEAR(scored.NumberOf("Confidence"), expected.confidence, 1e-12);
    EXPECT_NEAR(scored.Result()->GetResultConfidence(), expected.confidence, 1e-12);
    EXPECT_NEAR(scored.NumberOf("P_yes"), expected.probabilityYes, 1e-12);
    EXPECT_NEAR(scored.NumberOf("P_no"), 1.0 - expected.probabilityYes, 1e-12);
}

char const* const kStrategies[] = {"none",         "lastPrediction",     "nullPrediction",
                                   "defaultChild", "weightedConfidence", "aggregateNodes"};

TEST(TreeStrategies, KnownValuesFollowTheFirstTrueChildWhateverTheStrategy) {
    for (char const* strategy : kStrategies) {
        Scorer model(StrategyDocument(strategy, "returnNullPrediction"));
        // Probabilities from record counts, confidence as the probability.
        ExpectCase(model.Score(XY("3", "2")), {"yes", 0.9, 0.9, "N4"}, strategy);
        // Explicit probabilities and confidences win over the counts.
        ExpectCase(model.Score(XY("25", "9")), {"no", 0.8, 0.3, "N3"}, strategy);
        ExpectCase(model.Score(XY("3", "7")), {"no", 0.55, 0.45, "N5"}, strategy);
    }
}

TEST(TreeStrategies, NoTrueChildReturnsNothingOrTheLastNode) {
    Scorer null(StrategyDocument("none", "returnNullPrediction"));
    Scorer last(StrategyDocument("none", "returnLastPrediction"));
    ExpectCase(null.Score(XY("15", "")), {"", 0, 0, ""}, "gap, null");
    ExpectCase(last.Score(XY("15", "")), {"yes", 0.6, 0.6, "N1"}, "gap, last");
    // Under "none" an unknown condition is false, and the search goes on to the following children.
    ExpectCase(null.Score(XY("", "2")), {"", 0, 0, ""}, "x missing, null");
    ExpectCase(last.Score(XY("", "2")), {"yes", 0.6, 0.6, "N1"}, "x missing, last");
    ExpectCase(last.Score(XY("3", "")), {"yes", 0.75, 0.75, "N2"}, "y missing, last");
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
        Scorer model(StrategyDocument(row.strategy, "returnNullPrediction"));
        ExpectCase(model.Score(XY(row.x, row.y)), row.expected,
                   std::string(row.strategy) + " x=" + row.x + " y=" + row.y);
    }
}

TEST(TreeRegression, ScoresSplitOnDerivedFieldsAndBlendsByRecordCount) {
    std::string const document = Fixture("tree_regression.xml");
    Scorer plain(Replace(document, "@MVS@", "none"));
    Scorer& scored = plain.Score({Num("a", 1), Num("b", -1)});
    EXPECT_EQ(scored.NumberOf("Predicted"), 2.0);
    EXPECT_EQ(scored.TextOf("Node"), "LL");
    plain.Score({Num("a", 6), Num("b", -1)});  // twiceA is 12
    EXPECT_EQ(scored.NumberOf("Predicted"), 20.0);
    EXPECT_EQ(scored.TextOf("Node"), "RR");
    EXPECT_TRUE(plain.Score({Num("a", 1)}).IsMissing("Predicted"));

    Scorer last(Replace(document, "@MVS@", "lastPrediction"));
    EXPECT_EQ(last.Score({Num("a", 1)}).NumberOf("Predicted"), 1.0);
    EXPECT_EQ(last.Score({Num("b", 1)}).NumberOf("Predicted"), 10.0);

    // Leaves LL (3 records, 2) and LR (1 record, 3).
    Scorer aggregate(Replace(document, "@MVS@", "aggregateNodes"));
    EXPECT_DOUBLE_EQ(aggregate.Score({Num("a", 1)}).NumberOf("Predicted"), 2.25);
    Scorer weighted(Replace(document, "@MVS@", "weightedConfidence"));
    EXPECT_DOUBLE_EQ(weighted.Score({Num("a", 1)}).NumberOf("Predicted"), 2.25);
    // Every leaf below the root: (3 * 2 + 1 * 3 + 6 * 20) / 10.
    EXPECT_DOUBLE_EQ(aggregate.Score({}).NumberOf("Predicted"), 12.9);
}

// Splits test numbers by the ranges' own rule: an included end within the relative tolerance, a strict
// end exactly; a declared missing value is unknown, and an invalid text goes through the predicate.
TEST(TreeRegression, SplitsTestEndsByTheRangeRule) {
    std::string const document =
        "<PMML version=\"4.4\"><DataDictionary numberOfFields=\"3\">"
        "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"><Value value=\"-1\" "
        "property=\"missing\"/></DataField>"
        "<DataField name=\"y\" optype=\"continuous\" dataType=\"double\"/>"
        "<DataField name=\"t\" optype=\"continuous\" dataType=\"double\"/></DataDictionary>"
        "<TreeModel functionName=\"regression\"><MiningSchema><MiningField name=\"x\" "
        "invalidValueTreatment=\"asIs\"/><MiningField name=\"y\"/><MiningField name=\"t\" "
        "usageType=\"target\"/></MiningSchema><Node score=\"0\"><True/>"
        "<Node score=\"1\"><SimplePredicate field=\"x\" operator=\"lessOrEqual\" value=\"5\"/></Node>"
        "<Node score=\"2\"><SimplePredicate field=\"y\" operator=\"lessThan\" value=\"2\"/></Node>"
        "<Node score=\"3\"><SimplePredicate field=\"y\" operator=\"equal\" value=\"2\"/></Node>"
        "<Node score=\"4\"><True/></Node></Node></TreeModel></PMML>";
    Scorer tree(document);
    EXPECT_EQ(tree.Score({Num("x", 5.0 * (1 + 1e-15)), Num("y", 9)}).NumberOf("t"), 1.0);
    EXPECT_EQ(tree.Score({Num("x", 5.0 * (1 + 1e-12)), Num("y", 2.0 * (1 - 1e-15))}).NumberOf("t"), 2.0);
    EXPECT_EQ(tree.Score({Num("x", -1), Num("y", 2.0 * (1 + 1e-15))}).NumberOf("t"), 3.0);
    EXPECT_EQ(tree.Score({Num("x", -1), Num("y", 2.0 * (1 + 1e-12))}).NumberOf("t"), 4.0);
    EXPECT_EQ(tree.Score({Text("x", "four"), Num("y", 9)}).NumberOf("t"), 4.0);
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
        EXPECT_EQ(RefusalCode(document), row.code);
    }
    // A tree without nodes.
    std::string const noNodes =
        "<PMML version=\"4.4\"><DataDictionary numberOfFields=\"1\"><DataField name=\"x\" "
        "optype=\"continuous\" "
        "dataType=\"double\"/></DataDictionary><TreeModel functionName=\"regression\">"
        "<MiningSchema><MiningField name=\"x\"/></MiningSchema></TreeModel></PMML>";
    EXPECT_EQ(RefusalCode(noNodes), 260114);
}

}  // namespace
}  // namespace families
