// The RegressionModel plug-in and the families' common layer, scored through the factory as a host
// scores: mining schema treatments, derived fields, targets, outputs and every normalization.
#include <cmath>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "tests/families/FamilyFixture.h"
#include "vantry/factory/ResultVar.h"

namespace families {
namespace {

// A regression or classification document of one input x and tables given as XML.
std::string Document(std::string const& function, std::string const& method, std::string const& target,
                     std::string const& tables, std::string const& extra = "") {
    return "<PMML version=\"4.4\"><Header/><DataDictionary numberOfFields=\"2\">"
           "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/>" +
           target + "</DataDictionary><RegressionModel functionName=\"" + function +
           "\" normalizationMethod=\"" + method +
           "\"><MiningSchema><MiningField name=\"x\"/><MiningField name=\"y\" usageType=\"target\"/>"
           "</MiningSchema>" +
           extra + tables + "</RegressionModel></PMML>";
}

std::string Table(double intercept, double coefficient, std::string const& category = "") {
    return "<RegressionTable intercept=\"" + std::to_string(intercept) + "\"" +
           (category.empty() ? "" : " targetCategory=\"" + category + "\"") +
           "><NumericPredictor name=\"x\" coefficient=\"" + std::to_string(coefficient) +
           "\"/></RegressionTable>";
}

std::string const kContinuousTarget = "<DataField name=\"y\" optype=\"continuous\" dataType=\"double\"/>";
std::string CategoricalTarget(std::string const& optype) {
    return "<DataField name=\"y\" optype=\"" + optype +
           "\" dataType=\"string\"><Value value=\"p\"/><Value value=\"q\"/><Value value=\"r\"/></DataField>";
}

TEST(RegressionFamily, MiningSchemaTreatmentsFeedDerivedFieldsAndOutputs) {
    Scorer scorer(Fixture("schema.pmml"));
    struct Case {
        std::vector<Input> inputs;
        std::string y;
        std::string shifted;
        long status;
    };
    // y = 1 + 2x + 3[c = A] + z / 2; shifted = y + z / 2.
    Case const cases[] = {
        {{Num("x", 1), Num("z", 2), Text("c", "A")}, "7", "8", 0},
        {{Num("z", 2), Text("c", "A")}, "7", "8", 0},                     // x missing: replaced by 1
        {{Num("x", 50), Num("z", 2), Text("c", "A")}, "25", "26", 0},     // outlier: clamped to 10
        {{Num("x", 1), Text("z", "abc"), Text("c", "A")}, "8", "10", 0},  // invalid z: replaced by 4
        {{Num("x", 1), Num("z", 2)}, "4", "5", 0},                        // missing category: no term
        {{Num("x", 1), Text("c", "A")}, "", "", 0},                       // missing z: no prediction
        {{Num("x", 1), Num("z", 2), Text("c", "Q")}, "", "", 90027},      // invalid c: returnInvalid
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.y + "/" + c.shifted);
        EXPECT_EQ(scorer.Score(c.inputs).Status(), c.status);
        EXPECT_EQ(scorer.TextOf("y"), c.y);
        EXPECT_EQ(scorer.TextOf("predicted"), c.y);
        EXPECT_EQ(scorer.TextOf("shifted"), c.shifted);
    }
}

TEST(RegressionFamily, ResultDictionaryListsTargetThenOutputsWithFeatures) {
    std::unique_ptr<ScoreModel> model = Load(Fixture("classify.pmml"));
    ASSERT_NE(model, nullptr);
    ScoreDictionary* results = model->GetResultDictionary();
    ASSERT_NE(results, nullptr);
    EXPECT_EQ(results->GetVarNames(), (std::vector<std::string>{"t", "pYes", "pNo", "label", "conf"}));
    auto feature = [&](char const* name) {
        return static_cast<ResultVar*>(results->GetVar(name))->GetFeature();
    };
    EXPECT_EQ(feature("t"), ScoreResultField::kPredictedValue);
    EXPECT_EQ(feature("pYes"), ScoreResultField::kProbability);
    EXPECT_EQ(feature("label"), ScoreResultField::kPredictedDisplayValue);
    EXPECT_EQ(feature("conf"), ScoreResultField::kFeatureNone);
    std::unique_ptr<ScoreCaseRecord> record(model->MakeCaseRecord());
    EXPECT_EQ(record->GetVarNames(true), (std::vector<std::string>{"a", "d", "b", "t"}));
    EXPECT_TRUE(model->HasOwnProbabilityOutput());
}

TEST(RegressionFamily, ClassificationWithPredictorKindsOutputsAndPriors) {
    Scorer scorer(Fixture("classify.pmml"));
    auto logistic = [](double y) { return 1.0 / (1.0 + std::exp(-y)); };
    // y(yes) = -1 + a^2 / 2 + [b = u] + a d / 4, logit; missing a falls back to the priors.
    struct Case {
        std::vector<Input> inputs;
        double pYes;
        std::string label;
    };
    Case const cases[] = {
        {{Num("a", 2), Num("d", 1), Text("b", "u")}, logistic(2.5), "Yes!"},
        {{Num("a", 2), Num("d", 1), Text("b", "w")}, logistic(1.5), "Yes!"},  // invalid b: as missing
        {{Num("a", 2), Text("b", "u")}, logistic(2.0), "Yes!"},               // d replaced by 0
        {{Num("a", 0), Num("d", 0), Text("b", "v")}, logistic(-1.0), "no"},
        {{Num("d", 1), Text("b", "u")}, 0.25, "no"},  // priors
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.label + std::to_string(c.pYes));
        EXPECT_EQ(scorer.Score(c.inputs).Status(), 0);
        EXPECT_NEAR(scorer.NumberOf("pYes"), c.pYes, 1e-12);
        EXPECT_NEAR(scorer.NumberOf("pNo"), 1.0 - c.pYes, 1e-12);
        EXPECT_EQ(scorer.TextOf("label"), c.label);
        EXPECT_EQ(scorer.TextOf("t"), c.pYes > 0.5 ? "yes" : "no");
        EXPECT_NEAR(scorer.NumberOf("conf"), std::max(c.pYes, 1.0 - c.pYes), 1e-12);
        auto const* result = dynamic_cast<ScoreClsResult const*>(scorer.Result());
        ASSERT_NE(result, nullptr);
        StringValue const yes("yes");
        EXPECT_NEAR(result->GetProbabilityOfValue(&yes), c.pYes, 1e-12);
    }
}

TEST(RegressionFamily, RegressionNormalizations) {
    double const y = 0.5;  // intercept 0.25 + 0.125 x at x = 2
    std::map<std::string, double> const expected = {
        {"none", y},
        {"logit", 1.0 / (1.0 + std::exp(-y))},
        {"softmax", 1.0 / (1.0 + std::exp(-y))},
        {"exp", 1.6487212707001282},
        {"probit", 0.69146246127401312},
        {"cloglog", 1.0 - std::exp(-1.6487212707001282)},
        {"loglog", std::exp(-std::exp(-y))},
        {"cauchit", 0.5 + std::atan(y) / 3.14159265358979323846},
    };
    for (auto const& [method, value] : expected) {
        SCOPED_TRACE(method);
        Scorer scorer(Document("regression", method, kContinuousTarget, Table(0.25, 0.125)));
        scorer.Score({Num("x", 2)});
        EXPECT_NEAR(scorer.NumberOf("y"), value, 1e-12);
    }
}

TEST(RegressionFamily, ClassificationNormalizations) {
    auto logistic = [](double v) { return 1.0 / (1.0 + std::exp(-v)); };
    struct Case {
        std::string method;
        std::string optype;
        double p, q, r;  // table values at x = 1 are 0.2, 0.3, 0 (first three tables) or as noted
    };
    double const e2 = std::exp(0.2), e3 = std::exp(0.3);
    Case const cases[] = {
        {"softmax", "categorical", e2 / (e2 + e3 + 1), e3 / (e2 + e3 + 1), 1 / (e2 + e3 + 1)},
        {"simplemax", "categorical", 0.4, 0.6, 0.0},
        {"none", "categorical", 0.2, 0.3, 0.5},
        {"logit", "categorical", logistic(0.2), logistic(0.3), 1 - logistic(0.2) - logistic(0.3)},
        {"logit", "ordinal", logistic(0.2), logistic(0.3) - logistic(0.2), 1 - logistic(0.3)},
        {"cauchit", "ordinal", 0.5 + std::atan(0.2) / M_PI, (std::atan(0.3) - std::atan(0.2)) / M_PI,
         0.5 - std::atan(0.3) / M_PI},
    };
    std::string const output =
        "<Output><OutputField name=\"P\" feature=\"probability\" value=\"p\"/>"
        "<OutputField name=\"Q\" feature=\"probability\" value=\"q\"/>"
        "<OutputField name=\"R\" feature=\"probability\" value=\"r\"/></Output>";
    std::string const tables = Table(0.1, 0.1, "p") + Table(0.2, 0.1, "q") + Table(0, 0, "r");
    for (Case const& c : cases) {
        SCOPED_TRACE(c.method + " " + c.optype);
        Scorer scorer(Document("classification", c.method, CategoricalTarget(c.optype), tables, output));
        scorer.Score({Num("x", 1)});
        EXPECT_NEAR(scorer.NumberOf("P"), c.p, 1e-12);
        EXPECT_NEAR(scorer.NumberOf("Q"), c.q, 1e-12);
        EXPECT_NEAR(scorer.NumberOf("R"), c.r, 1e-12);
        char const* best = c.p >= c.q && c.p >= c.r ? "p" : (c.q >= c.r ? "q" : "r");
        EXPECT_EQ(scorer.TextOf("y"), best);
    }
}

TEST(RegressionFamily, TargetsRescaleClampCastAndDefault) {
    struct Case {
        std::string attributes;
        double x;  // y = x
        std::string expected;
    };
    Case const cases[] = {
        {"rescaleFactor=\"2\" rescaleConstant=\"1\"", 1.25, "3.5"},
        {"min=\"0\" max=\"2\" rescaleFactor=\"10\"", 5, "20"},
        {"castInteger=\"round\"", 2.5, "3"},
        {"castInteger=\"floor\"", -1.5, "-2"},
        {"castInteger=\"ceiling\"", 1.2, "2"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.attributes);
        std::string const targets = "<Targets><Target field=\"y\" " + c.attributes +
                                    "><TargetValue defaultValue=\"42\"/></Target></Targets>";
        Scorer scorer(Document("regression", "none", kContinuousTarget, Table(0, 1), targets));
        scorer.Score({Num("x", c.x)});
        EXPECT_EQ(scorer.TextOf("y"), c.expected);
        scorer.Score({});
        EXPECT_EQ(scorer.TextOf("y"), "42");
    }
}

TEST(RegressionFamily, BadDocumentsFailWithCodes) {
    auto const code = RefusalCode;
    EXPECT_EQ(code(Document("regression", "bogus", kContinuousTarget, Table(0, 1))), 260152);
    EXPECT_EQ(code(Document("regression", "none", kContinuousTarget, "")), 260114);
    EXPECT_EQ(
        code(Document("regression", "none", kContinuousTarget,
                      "<RegressionTable intercept=\"1\"><NumericPredictor name=\"nope\" coefficient=\"1\"/>"
                      "</RegressionTable>")),
        260124);
    EXPECT_EQ(code(Document("regression", "none", kContinuousTarget, "<RegressionTable/>")), 260120);
}

}  // namespace
}  // namespace families
