#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

// A variable whose only missing range is the single value 9, optionally with a category for 9.
std::unique_ptr<DictVar> NineIsMissing(ScoreDictVar::VariableType type, bool nineIsCategory) {
    auto var = std::make_unique<DictVar>("v", type);
    auto* missing = new MissingValueSet();
    if (type == ScoreDictVar::STRING_VAR) {
        missing->Add(new Range(new StringValue("9")));
    } else {
        missing->Add(new Range(9.0, 9.0, true, true));
        missing->Add(new Range(100.0, 200.0, true, true));
    }
    var->SetMissingValues(missing);
    if (nineIsCategory) {
        ScoreValue* nine = type == ScoreDictVar::STRING_VAR ? static_cast<ScoreValue*>(new StringValue("9"))
                                                            : new NumericValue(9.0);
        EXPECT_TRUE(var->AddScoreValueLabel(nine, "nine"));
    }
    return var;
}

}  // namespace

TEST(DictVar, NewVariableDefaultsAndConditionalSetters) {
    DictVar var("age", ScoreDictVar::kNUMERIC_VAR);
    EXPECT_EQ(var.GetDecimal(), -1);
    EXPECT_EQ(var.GetWidth(), -1);
    EXPECT_EQ(var.GetValueIndex(), -1);
    EXPECT_EQ(var.GetEncodedValueIndex(), -1);
    EXPECT_TRUE(var.IsUsageTypeEnable());
    EXPECT_EQ(var.GetMLevel(), ScoreDictVar::MEASURE_CONTINUOUS);
    EXPECT_EQ(var.GetDateTimeType(), ScoreDictVar::DT_NONE);
    EXPECT_EQ(var.GetNumericDataType(), ScoreDictVar::NUMERIC_TYPE_NONE);
    EXPECT_FALSE(var.GetNoSpaceTrim() || var.GetEmptyStringOK() || var.IsFlagVariable() ||
                 var.IsEmptyCateValues() || var.IsDerivedVariable() || var.IsString());
    EXPECT_TRUE(var.GetMissingValues() == nullptr && var.GetValueLabels() == nullptr &&
                var.GetVarStats() == nullptr && var.GetDefValue() == nullptr &&
                var.GetValueProbabilities() == nullptr && var.GetEncoder() == nullptr);

    // Space handling belongs to strings, flags to categorical variables.
    var.SetNoSpaceTrim(true);
    var.SetEmptyStringOK(true);
    EXPECT_FALSE(var.GetNoSpaceTrim() || var.GetEmptyStringOK());
    EXPECT_FALSE(var.SetFlagVariable(true));
    EXPECT_FALSE(var.IsFlagVariable());
    var.SetMLevel(ScoreDictVar::MEASURE_ORDINAL);
    EXPECT_TRUE(var.SetFlagVariable(true));
    EXPECT_TRUE(var.IsFlagVariable());
    var.SetVarType(ScoreDictVar::STRING_VAR);
    var.SetNoSpaceTrim(true);
    EXPECT_TRUE(var.GetNoSpaceTrim() && var.IsString());

    EXPECT_FALSE(var.SetName(""));
    EXPECT_EQ(var.GetName(), "age");

    // A setter takes the new object over and leaves the one it replaces with the caller.
    auto first = std::make_unique<NumericValue>(1.0);
    var.SetDefValue(first.get());
    var.SetDefValue(new NumericValue(2.0));
    EXPECT_EQ(first->GetDouble(), 1.0);
    EXPECT_EQ(var.GetDefValue()->GetDouble(), 2.0);

    // Equality is by name alone.
    EXPECT_TRUE(var == DictVar("age", ScoreDictVar::DATETIME_VAR));
    EXPECT_FALSE(var == DictVar("Age", ScoreDictVar::STRING_VAR));
}

TEST(DictVar, MissingDecisionTable) {
    NumericValue nine(9.0), inRange(150.0), other(3.0), sysmis;
    StringValue nineText("9"), nineTextPadded("9  ");
    struct {
        char const* what;
        ScoreDictVar::VariableType type;
        bool nineIsCategory;
        ScoreValue const* value;
        bool missing;
    } const cases[] = {
        {"numeric: category outranks missing", ScoreDictVar::kNUMERIC_VAR, true, &nine, false},
        {"numeric: missing without category", ScoreDictVar::kNUMERIC_VAR, false, &nine, true},
        {"numeric: other missing range", ScoreDictVar::kNUMERIC_VAR, true, &inRange, true},
        {"numeric: outside every range", ScoreDictVar::kNUMERIC_VAR, true, &other, false},
        {"numeric: system-missing", ScoreDictVar::kNUMERIC_VAR, false, &sysmis, true},
        {"numeric: null", ScoreDictVar::kNUMERIC_VAR, false, nullptr, true},
        {"string: missing set wins", ScoreDictVar::STRING_VAR, true, &nineText, true},
        {"string: padded text is in range", ScoreDictVar::STRING_VAR, false, &nineTextPadded, true},
        {"string: sysmis number is not missing", ScoreDictVar::STRING_VAR, false, &sysmis, false},
        {"string: null", ScoreDictVar::STRING_VAR, false, nullptr, true},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(NineIsMissing(c.type, c.nineIsCategory)->IsMissingValue(c.value), c.missing) << c.what;
    }
    DictVar bare("s", ScoreDictVar::STRING_VAR);
    EXPECT_FALSE(bare.IsMissingValue(&sysmis));
    EXPECT_TRUE(bare.IsValidValue(&sysmis));
    EXPECT_TRUE(DictVar("d", ScoreDictVar::DATETIME_VAR).IsMissingValue(&sysmis));
}

TEST(DictVar, ValidDecisionTable) {
    NumericValue one(1.0), two(2.0), sysmis;
    StringValue text("a"), padded("a  "), blank("   ");
    DateTimeValue date(0.0, ScoreDictVar::DT_DATE);

    DictVar numeric("n", ScoreDictVar::kNUMERIC_VAR);
    EXPECT_TRUE(numeric.IsValidValue(&one));
    EXPECT_TRUE(numeric.IsValidValue(&date));
    EXPECT_FALSE(numeric.IsValidValue(&text));
    EXPECT_FALSE(numeric.IsValidValue(&sysmis));
    EXPECT_FALSE(numeric.IsValidValue(nullptr));

    // With categories, a continuous variable takes anything that is not missing.
    numeric.AddScoreValueLabel(new NumericValue(1.0), "one");
    EXPECT_TRUE(numeric.IsValidValue(&text));
    EXPECT_TRUE(numeric.IsValidValue(&two));
    numeric.SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
    EXPECT_TRUE(numeric.IsValidValue(&one));
    EXPECT_FALSE(numeric.IsValidValue(&two));
    EXPECT_FALSE(numeric.IsValidValue(&text));

    DictVar str("s", ScoreDictVar::STRING_VAR);
    EXPECT_TRUE(str.IsValidValue(&one));  // without categories only a numeric variable checks the type
    str.SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
    str.AddScoreValueLabel(new StringValue("a"), "A");
    EXPECT_TRUE(str.IsValidValue(&text));
    EXPECT_TRUE(str.IsValidValue(&padded));
    EXPECT_FALSE(str.IsValidValue(&blank));
    EXPECT_FALSE(str.IsValidValue(&one));
    str.SetNoSpaceTrim(true);
    EXPECT_FALSE(str.IsValidValue(&padded));
}

TEST(DictVar, CategoriesLabelsAndTextConversion) {
    DictVar var("c", ScoreDictVar::kNUMERIC_VAR);
    NumericValue kept(1.0);
    EXPECT_FALSE(var.AddScoreValueLabel(&kept, ""));  // refused, and neither taken nor deleted
    ASSERT_NE(var.GetValueLabels(), nullptr);         // the set is made even when the call fails
    EXPECT_EQ(var.GetValueLabels()->Size(), 0);
    EXPECT_FALSE(var.AddScoreValueLabel(nullptr, "x"));
    EXPECT_TRUE(var.AddScoreValueLabel(new NumericValue(1.0), "one"));
    EXPECT_FALSE(var.AddScoreValueLabel(new NumericValue(1.0), "again"));  // deleted by the variable
    EXPECT_TRUE(var.AddScoreValueLabel(new NumericValue(2.0), "two"));

    NumericValue two(2.0), three(3.0);
    EXPECT_EQ(var.GetLabelOfValue(&two), "two");
    EXPECT_EQ(var.GetLabelOfValue(&three), "");
    EXPECT_EQ(DictVar("x", ScoreDictVar::kNUMERIC_VAR).GetLabelOfValue(&two), "");

    EXPECT_EQ(var.GetNumberOfCats(), 1);  // continuous
    var.SetMLevel(ScoreDictVar::MEASURE_ORDINAL);
    EXPECT_EQ(var.GetNumberOfCats(), 2);
    DictVar nominal("n", ScoreDictVar::kNUMERIC_VAR);
    nominal.SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
    EXPECT_EQ(nominal.GetNumberOfCats(), 0);

    std::unique_ptr<ScoreValue> number(var.ToMyValue(""));
    EXPECT_EQ(ScoreValue::TypeOf(*number), ScoreValue::NUMERIC_VALUE);
    EXPECT_TRUE(number->IsSystemMissingValue());
    std::unique_ptr<ScoreValue> text(DictVar("s", ScoreDictVar::STRING_VAR).ToMyValue("12"));
    EXPECT_EQ(ScoreValue::TypeOf(*text), ScoreValue::STRING_VALUE);
    EXPECT_EQ(DictVar("d", ScoreDictVar::DATETIME_VAR).ToMyValue("2000-01-01"), nullptr);
}

TEST(DictVar, CopiesAreDeep) {
    DictVar source("src", ScoreDictVar::kNUMERIC_VAR);
    source.SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
    source.SetFormat(2, 8);
    source.SetFalgTypeTrueValue("T");
    source.AddScoreValueLabel(new NumericValue(1.0), "one");
    source.SetDefValue(new NumericValue(5.0));
    source.SetEncoder(new ScoreCatNumericEncoder(std::vector<double>{1.0}));
    auto* missing = new MissingValueSet();
    missing->Add(new Range(9.0, 9.0, true, true));
    source.SetMissingValues(missing);

    std::unique_ptr<ScoreDictVar> clone(source.Clone());
    DictVar assigned("other", ScoreDictVar::STRING_VAR);
    assigned.SetDefValue(new StringValue("gone"));
    assigned = source;
    assigned = assigned;

    for (ScoreDictVar* copy : {clone.get(), static_cast<ScoreDictVar*>(&assigned)}) {
        EXPECT_EQ(copy->GetName(), "src");
        EXPECT_EQ(copy->GetMLevel(), ScoreDictVar::MEASURE_NOMINAL);
        EXPECT_EQ(copy->GetWidth(), 8);
        EXPECT_EQ(copy->GetFalgTypeTrueValue(), "T");
        ASSERT_NE(copy->GetDefValue(), nullptr);
        EXPECT_NE(copy->GetDefValue(), source.GetDefValue());
        EXPECT_EQ(copy->GetDefValue()->GetDouble(), 5.0);
        EXPECT_NE(copy->GetValueLabels(), source.GetValueLabels());
        EXPECT_NE(copy->GetEncoder(), source.GetEncoder());
        EXPECT_EQ(copy->GetEncoder()->GetNumberOfCategories(), 1);
        EXPECT_NE(copy->GetMissingValues(), source.GetMissingValues());
        EXPECT_EQ(copy->GetVarStats(), nullptr);
        NumericValue nine(9.0);
        EXPECT_TRUE(copy->IsMissingValue(&nine));
    }
}

TEST(DictVar, DisplayLiterals) {
    DictVar var("v", ScoreDictVar::STRING_VAR);
    var.SetLabel("L");
    var.SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
    var.SetXMeasure("flag");
    EXPECT_EQ(Shown(var),
              "Start ScoreDictVar Display:\nVar Name = v; Var Lable = L; Var Type = STRING_VAR; "
              "Var level =  Nominal; \nx-Measure: flag\nEnd of ScoreDictVar Display.\n\n");

    DictVar date("d", ScoreDictVar::DATETIME_VAR);
    date.SetMLevel(static_cast<ScoreDictVar::MeasureLevel>(7));
    EXPECT_EQ(Shown(date),
              "Start ScoreDictVar Display:\nVar Name = d; Var Lable = ; Var level = unknown;\n"
              "End of ScoreDictVar Display.\n\n");
}
