// Documents of other producers scored row by row against the outputs that came with them. The documents
// are copies from public projects: NOTICE.md in tests/fixtures/families/corpus and .../tree names their
// origins and licences.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/families/FamilyFixture.h"
#include "vantry/values/ScoreDictVar.h"

namespace families {
namespace {

struct CorpusCase {
    char const* name;  // <folder>/<document> under tests/fixtures/families
    double tolerance;  // relative, at least absolute
};

void PrintTo(CorpusCase const& c, std::ostream* out) {
    *out << c.name;
}

// Scores every row of <name>.input.csv (empty and "NA" cells missing, columns of no field ignored) and
// compares the columns of <name>.expected.csv. The first column is the prediction, the others outputs by
// name (".1" marks a name the producer repeated); "confidence" is the result's confidence unless an output
// has that name, and a column of no output is skipped. A row without a prediction checks no numbers.
class Corpus : public ::testing::TestWithParam<CorpusCase> {};

TEST_P(Corpus, MatchesTheProducersOutputs) {
    std::string const name = GetParam().name;
    Scorer scorer(Fixture(name + ".pmml"));
    ScoreModel const& model = scorer.Model();
    std::vector<std::string> const outputs = model.GetResultDictionary()->GetVarNames();
    auto const inputs = ReadCsv(Fixture(name + ".input.csv"));
    auto const expected = ReadCsv(Fixture(name + ".expected.csv"));
    ASSERT_EQ(inputs.size(), expected.size());
    for (std::size_t row = 1; row < inputs.size(); ++row) {
        std::vector<Input> values;
        for (std::size_t i = 0; i < inputs[0].size() && i < inputs[row].size(); ++i) {
            ScoreDictVar const* variable = model.GetDictionary()->GetVar(inputs[0][i]);
            std::string const& text = inputs[row][i];
            double x = 0.0;
            if (variable != nullptr && !text.empty() && text != "NA") {
                values.push_back(!variable->IsString() && IsNumber(text, x) ? Num(inputs[0][i], x)
                                                                            : Text(inputs[0][i], text));
            }
        }
        scorer.Score(values);
        for (std::size_t i = 0; i < expected[0].size() && i < expected[row].size(); ++i) {
            std::string const column =
                i == 0 ? outputs.front() : expected[0][i].substr(0, expected[0][i].find(".1"));
            SCOPED_TRACE(name + " row " + std::to_string(row) + " " + column);
            std::string const& want = expected[row][i];
            bool const known = std::find(outputs.begin(), outputs.end(), column) != outputs.end();
            double x = 0.0;
            if (!known && column != "confidence") {
                continue;
            }
            if (!IsNumber(want, x)) {
                if (known) {
                    EXPECT_EQ(scorer.TextOf(column), want);
                }
            } else if (!expected[row][0].empty()) {
                double const got = known ? scorer.NumberOf(column) : scorer.Result()->GetResultConfidence();
                EXPECT_NEAR(got, x, GetParam().tolerance * std::max(1.0, std::fabs(x)));
            }
        }
    }
}

// Trees: surrogates, set predicates and default children (Audit), record-count probabilities (Iris),
// compound "and" and "or" (normal), weightedConfidence (strategies).
std::string CaseName(::testing::TestParamInfo<CorpusCase> const& info) {
    std::string name = info.param.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; },
        '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Documents, Corpus,
                         ::testing::Values(CorpusCase{"corpus/cpmml_IrisLinearReg", 1e-6},
                                           CorpusCase{"corpus/cpmml_IrisMultinomReg", 1e-6},
                                           CorpusCase{"corpus/dmg_regression_interaction", 1e-6},
                                           CorpusCase{"corpus/dmg_regression_linear", 1e-6},
                                           CorpusCase{"corpus/dmg_regression_logistic", 1e-6},
                                           CorpusCase{"corpus/dmg_regression_multi_classes", 1e-6},
                                           CorpusCase{"corpus/dmg_regression_polynomial", 1e-6},
                                           CorpusCase{"tree/cpmml_IrisTree", 1e-9},
                                           CorpusCase{"tree/cpmml_AuditTree", 1e-9},
                                           CorpusCase{"tree/cpmml_single_iris_dectree", 1e-9},
                                           CorpusCase{"tree/dmg_tree_normal", 1e-9},
                                           CorpusCase{"tree/dmg_tree_missing_value_strategies", 1e-9}),
                         CaseName);

TEST(TreeCorpus, WorkedExamplesOfEachMissingValueStrategy) {
    std::string const document = Fixture("tree/dmg_tree_missing_value_strategies.pmml");
    struct Row {
        char const* strategy;
        std::vector<Input> inputs;
        char const* predicted;
        double confidence;
    };
    Row const rows[] = {
        {"aggregateNodes", {Num("temperature", 45), Num("humidity", 90)}, "may play", 28.0 / 60.0},
        {"defaultChild\" missingValuePenalty=\"0.8",
         {Num("temperature", 40), Num("humidity", 70)},
         "no play",
         0.48},
        {"lastPrediction", {Text("outlook", "sunny")}, "will play", 0.8},
        {"nullPrediction", {Text("outlook", "sunny")}, "", 0.0},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.strategy);
        Scorer scorer(Edited(document, {{"missingValueStrategy=\"weightedConfidence\"",
                                         std::string("missingValueStrategy=\"") + row.strategy + "\""}}));
        scorer.Score(row.inputs);
        EXPECT_EQ(scorer.TextOf("whatIdo"), row.predicted);
        if (*row.predicted != 0) {
            EXPECT_NEAR(scorer.Result()->GetResultConfidence(), row.confidence, 1e-12);
        }
    }
}

}  // namespace
}  // namespace families
