// Trees written by other producers, scored row by row against the predictions that came with them.
// The documents are copies from public projects: tests/fixtures/families/tree/NOTICE.md names their
// origins and licences.
#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/families/FamilyFixture.h"
#include "vantry/values/ScoreDictVar.h"

namespace families {
namespace {

using Table = std::vector<std::vector<std::string>>;

Table ReadCsv(std::string const& text) {
    Table rows;
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        std::vector<std::string> cells;
        std::istringstream fields(line);
        std::string cell;
        while (std::getline(fields, cell, ',')) {
            cells.push_back(cell);
        }
        if (!line.empty() && line.back() == ',') {
            cells.emplace_back();
        }
        rows.push_back(cells);
    }
    return rows;
}

bool IsNumber(std::string const& text, double& x) {
    char* end = nullptr;
    x = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0;
}

// Scores every row of tree/<name>.input.csv and compares the columns of tree/<name>.expected.csv:
// "prediction" is the target, "confidence" the result's confidence unless an output has that name,
// and a column the model has no output for is skipped. `document` replaces the case's own.
void ExpectCorpusCase(std::string const& name, std::string const& document = std::string()) {
    SCOPED_TRACE(name);
    std::unique_ptr<ScoreModel> model(Load(document.empty() ? Fixture("tree/" + name + ".pmml") : document));
    Scorer scorer(model.get());
    std::vector<std::string> const outputs = model->GetResultDictionary()->GetVarNames();
    Table const inputs = ReadCsv(Fixture("tree/" + name + ".input.csv"));
    Table const expected = ReadCsv(Fixture("tree/" + name + ".expected.csv"));
    ASSERT_EQ(inputs.size(), expected.size());
    for (std::size_t row = 1; row < inputs.size(); ++row) {
        std::vector<Input> values;
        for (std::size_t i = 0; i < inputs[0].size() && i < inputs[row].size(); ++i) {
            ScoreDictVar const* variable = model->GetDictionary()->GetVar(inputs[0][i]);
            std::string const& text = inputs[row][i];
            double x = 0.0;
            if (variable != nullptr && !text.empty() && text != "NA") {
                values.push_back(!variable->IsString() && IsNumber(text, x) ? Num(inputs[0][i], x)
                                                                            : Text(inputs[0][i], text));
            }
        }
        scorer.Score(values);
        for (std::size_t i = 0; i < expected[0].size(); ++i) {
            std::string const& column = expected[0][i];
            std::string const& want = expected[row][i];
            bool const known = std::find(outputs.begin(), outputs.end(), column) != outputs.end();
            double const got = column == "prediction" ? std::nan("")
                               : known                ? scorer.NumberOf(column)
                                                      : scorer.Result()->GetResultConfidence();
            double x = 0.0;
            if (column == "prediction" || (known && !IsNumber(want, x))) {
                EXPECT_EQ(scorer.TextOf(column == "prediction" ? outputs.front() : column), want)
                    << "row " << row << ", " << column;
            } else if ((known || column == "confidence") && !expected[row][0].empty() && IsNumber(want, x)) {
                EXPECT_NEAR(got, x, 1e-9) << "row " << row << ", " << column;
            }
        }
    }
}

TEST(TreeCorpus, ProducersTreesMatchTheirPredictions) {
    // Surrogates, set predicates and default children (Audit), record-count probabilities (Iris),
    // compound "and" and "or" (normal), weightedConfidence (strategies).
    for (char const* name : {"cpmml_IrisTree", "cpmml_AuditTree", "cpmml_single_iris_dectree",
                             "dmg_tree_normal", "dmg_tree_missing_value_strategies"}) {
        ExpectCorpusCase(name);
    }
}

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
        std::string text = document;
        std::string const from = "missingValueStrategy=\"weightedConfidence\"";
        text.replace(text.find(from), from.size(),
                     std::string("missingValueStrategy=\"") + row.strategy + "\"");
        std::unique_ptr<ScoreModel> model(Load(text));
        Scorer scorer(model.get());
        scorer.Score(row.inputs);
        EXPECT_EQ(scorer.TextOf("whatIdo"), row.predicted);
        if (*row.predicted != 0) {
            EXPECT_NEAR(scorer.Result()->GetResultConfidence(), row.confidence, 1e-12);
        }
    }
}

}  // namespace
}  // namespace families
