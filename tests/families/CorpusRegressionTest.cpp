// Regression documents of other producers scored row by row against their expected outputs.
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/families/FamilyFixture.h"

namespace families {
namespace {

using Row = std::vector<std::string>;

std::vector<Row> ReadCsv(std::string const& name) {
    std::istringstream text(Fixture("corpus/" + name));
    std::vector<Row> rows;
    std::string line;
    while (std::getline(text, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        Row row;
        std::stringstream cells(line);
        std::string cell;
        while (std::getline(cells, cell, ',')) {
            row.push_back(cell);
        }
        if (!line.empty() && line.back() == ',') {
            row.emplace_back();
        }
        rows.push_back(row);
    }
    return rows;
}

bool IsNumber(std::string const& text, double& x) {
    char* end = nullptr;
    x = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0;
}

class CorpusRegression : public ::testing::TestWithParam<char const*> {};

TEST_P(CorpusRegression, MatchesExpectedOutputs) {
    std::string const name = GetParam();
    std::unique_ptr<ScoreModel> model = Load(Fixture("corpus/" + name + ".pmml"));
    ASSERT_NE(model, nullptr);
    std::vector<Row> const inputs = ReadCsv(name + ".input.csv");
    std::vector<Row> const expected = ReadCsv(name + ".expected.csv");
    ASSERT_EQ(inputs.size(), expected.size());
    // The first expected column is the prediction; the others are outputs by name (".1" marks a name
    // the producer repeated).
    std::vector<std::string> columns = model->GetResultDictionary()->GetVarNames();
    std::vector<std::string> names;
    for (std::size_t c = 0; c < expected[0].size(); ++c) {
        std::string column = expected[0][c];
        column = column.substr(0, column.find(".1"));
        names.push_back(c == 0 ? columns.front() : column);
    }
    Scorer scorer(model.get());
    for (std::size_t r = 1; r < inputs.size(); ++r) {
        std::vector<Input> row;
        for (std::size_t c = 0; c < inputs[0].size() && c < inputs[r].size(); ++c) {
            double x = 0.0;
            if (model->GetDictionary()->GetVar(inputs[0][c]) == nullptr || inputs[r][c].empty()) {
                continue;
            }
            bool const text = model->GetDictionary()->GetVar(inputs[0][c])->IsString();
            row.push_back(!text && IsNumber(inputs[r][c], x) ? Num(inputs[0][c], x)
                                                             : Text(inputs[0][c], inputs[r][c]));
        }
        scorer.Score(row);
        for (std::size_t c = 0; c < names.size() && c < expected[r].size(); ++c) {
            SCOPED_TRACE(name + " row " + std::to_string(r) + " " + names[c]);
            double want = 0.0;
            if (IsNumber(expected[r][c], want)) {
                double const got = scorer.NumberOf(names[c]);
                EXPECT_NEAR(got, want, 1e-6 * std::max(1.0, std::fabs(want)));
            } else {
                EXPECT_EQ(scorer.TextOf(names[c]), expected[r][c]);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, CorpusRegression,
                         ::testing::Values("cpmml_IrisLinearReg", "cpmml_IrisMultinomReg",
                                           "dmg_regression_interaction", "dmg_regression_linear",
                                           "dmg_regression_logistic", "dmg_regression_multi_classes",
                                           "dmg_regression_polynomial"));

}  // namespace
}  // namespace families
