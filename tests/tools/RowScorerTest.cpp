// How the scoring command turns table rows into case records and results into cells, checked with a
// model that hands back every value it was given.
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tools/score/RowScorer.h"
#include "vantry/factory/BaseModel.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ResultVar.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"

using namespace QXVantry_920;
using vantry_tool::RowScorer;

namespace {

// Inputs x (double), n (integer), s (text), d (date), b (no number type); each output echoes the input
// of its name, an invalid number as "invalid:<text>", a missing one not at all.
class EchoModel : public BaseModel {
  public:
    EchoModel() {
        auto* inputs = new BaseDictionary();
        auto add = [&](char const* name, ScoreDictVar::VariableType type) {
            auto* var = new DictVar(name, type);
            inputs->AddVar(name, var);
            return var;
        };
        add("x", ScoreDictVar::kNUMERIC_VAR)->SetNumericDataType(ScoreDictVar::NUMERIC_TYPE_DOUBLE);
        add("n", ScoreDictVar::kNUMERIC_VAR)->SetNumericDataType(ScoreDictVar::NUMERIC_TYPE_INTEGER);
        add("s", ScoreDictVar::STRING_VAR);
        add("d", ScoreDictVar::DATETIME_VAR)->SetDateTimeType(ScoreDictVar::DT_DATE);
        add("b", ScoreDictVar::kNUMERIC_VAR);
        SetScoreDictionary(inputs, true);
        auto* results = new BaseDictionary();
        for (char const* name : {"s", "x", "n", "d", "b"}) {
            results->AddVar(name, new ResultVar(name, ScoreDictVar::STRING_VAR));
        }
        SetResultScoreDictionary(results);
    }
    QXScore::QXStatus Score(ScoreCaseRecord* record, ScoreResult*) override {
        fSeen = record;
        return {};
    }
    ScoreResult* MakeResult() const override { return nullptr; }
    ScoreCaseRecord* MakeCaseRecord() const override {
        auto* record = new CaseRecord();
        record->Add("x", new NumericValue());
        record->Add("n", new NumericValue());
        record->Add("s", new StringValue(""));
        record->Add("d", new DateTimeValue());
        record->Add("b", new NumericValue());
        return record;
    }
    QXScore::QXStatus FillResultFields(ScoreResult const*, ScoreResultField* fields) override {
        for (std::string const& name : fSeen->GetVarNames(true)) {
            ScoreValue const* value = fSeen->Get(name);
            bool const textField = GetDictionary()->GetVar(name)->IsString();
            if (!textField && ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
                fields->SetResultValue(name, "invalid:" + ScoreValue::TextOf(*value));
            } else if (textField || !value->IsSystemMissingValue()) {
                fields->SetResultValue(name, value);
            }
        }
        return {};
    }
    bool HasOwnProbabilityOutput() override { return false; }
    void Display(std::ostream&) const override {}

  private:
    ScoreCaseRecord* fSeen = nullptr;
};

using Row = std::vector<std::string>;

TEST(RowScorer, BindsColumnsByNameAndWritesResultsInDictionaryOrder) {
    EchoModel model;
    // b has no column, "extra" names no field, a repeated name takes its first column.
    RowScorer scorer(model, {"extra", "n", "x", "s", "d", "x"});
    EXPECT_EQ(scorer.OutputNames(), (Row{"s", "x", "n", "d", "b"}));
    Row cells;
    ASSERT_TRUE(scorer.ScoreRow({"?", "3", "0.1", "red, dark", "1970-01-03", "9"}, cells));
    EXPECT_EQ(cells, (Row{"red, dark", "0.1", "3", "2", ""}));
    // A short row lacks its last cells.
    ASSERT_TRUE(scorer.ScoreRow({"?", "4"}, cells));
    EXPECT_EQ(cells, (Row{"", "", "4", "", ""}));
}

TEST(RowScorer, MissingCellsAndValuesThatDoNotFitTheirField) {
    EchoModel model;
    RowScorer scorer(model, {"x", "n", "s", "d", "b"});
    struct Case {
        Row row;
        Row cells;
    };
    // Rows in sequence: a slot that held an invalid text takes numbers and missing values again.
    Case const cases[] = {
        {{"", "NA", "N/A", "", ""}, {"", "", "", "", ""}},
        {{"abc", "2.5", "NA", "not a date", "maybe"},
         {"", "invalid:abc", "invalid:2.5", "invalid:not a date", "invalid:maybe"}},
        {{"abc", "7.0", "x", "86400", "true"}, {"x", "invalid:abc", "7", "1", "1"}},
        {{" -1e2 ", "", "y", "", "false"}, {"y", "-100", "", "", "0"}},
        {{"1,5", "1e999", "z", "", "0.25"}, {"z", "invalid:1,5", "invalid:1e999", "", "0.25"}},
    };
    for (Case const& c : cases) {
        Row cells;
        ASSERT_TRUE(scorer.ScoreRow(c.row, cells));
        EXPECT_EQ(cells, c.cells) << c.row[0] << "|" << c.row[1];
    }
    EXPECT_EQ(vantry_tool::CellText(nullptr), "");
    NumericValue const missing;
    EXPECT_EQ(vantry_tool::CellText(&missing), "");
}

}  // namespace
