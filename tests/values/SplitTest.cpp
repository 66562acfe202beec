#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreSplitVar.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

DictVar MakeVar(ScoreDictVar::VariableType type, ScoreDictVar::MeasureLevel level) {
    DictVar var("x", type);
    var.SetMLevel(level);
    return var;
}

}  // namespace

TEST(DiscreteSplit, NumbersAndValuesRouteThroughSeparateTables) {
    DictVar nominal = MakeVar(ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::MEASURE_NOMINAL);
    DiscreteSplit split(&nominal);
    EXPECT_EQ(split.GetSplitVarType(), ScoreSplitVar::DISCRETE_SPLIT);
    EXPECT_EQ(split.GetMissvalMap(), -1);
    split.SetMissvalMap(4);

    split.PutSplit(1.5, 2);
    split.PutSplit(1.5, 3);  // the first child for a number stays
    split.PutSplit(new NumericValue(7.0), 1);
    EXPECT_EQ(split.GetSplitChildIndex(1.5), 2);
    EXPECT_EQ(split.GetSplitChildIndex(7.0), -1);  // values are not in the number map
    EXPECT_EQ(split.GetSplitChildIndex(std::numeric_limits<double>::quiet_NaN()), -1);
    EXPECT_EQ(split.GetSplitChildIndex(-1.0), 4);  // negative on a nominal variable is missing
    NumericValue seven(7.0), onePointFive(1.5);
    EXPECT_EQ(split.GetSplitChildIndex(&seven), 1);
    EXPECT_EQ(split.GetSplitChildIndex(&onePointFive), -1);  // numbers are not in the value pairs
    EXPECT_EQ(split.GetSplitChildIndex(static_cast<ScoreValue const*>(nullptr)), 4);

    DictVar ordinal = MakeVar(ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::MEASURE_ORDINAL);
    DiscreteSplit ordered(&ordinal);
    ordered.SetMissvalMap(4);
    EXPECT_EQ(ordered.GetSplitChildIndex(-1.0), -1);
    ordered.PutSplit(-1.0, 0);
    EXPECT_EQ(ordered.GetSplitChildIndex(-1.0), 0);
}

TEST(DiscreteSplit, StringsMatchUnderTheVariablesSpaceRules) {
    DictVar var = MakeVar(ScoreDictVar::STRING_VAR, ScoreDictVar::MEASURE_NOMINAL);
    var.AddScoreValueLabel(new StringValue("a"), "A");
    auto* missing = new MissingValueSet();
    missing->Add(new Range(new StringValue("a")));
    var.SetMissingValues(missing);

    DiscreteSplit split(&var);
    split.SetMissvalMap(9);
    split.PutSplit(new StringValue("a"), 0);
    split.PutSplit(new StringValue("b"), 1);
    split.PutSplit(new StringValue("c"), 1);
    StringValue padded("a  "), other("z");
    // Declared missing but not null: no special path.
    EXPECT_EQ(split.GetSplitChildIndex(&padded), 0);
    EXPECT_EQ(split.GetSplitChildIndex(&other), -1);
    var.SetNoSpaceTrim(true);
    EXPECT_EQ(split.GetSplitChildIndex(&padded), -1);

    EXPECT_EQ(split.GetSplitValues().size(), 3u);
    ASSERT_EQ(split.GetSplitValuesForIndex(1).size(), 2u);
    EXPECT_EQ(ScoreValue::TextOf(*split.GetSplitValuesForIndex(1)[1]), "c");
    ASSERT_EQ(split.GetSplitValuesFirst().size(), 1u);
    EXPECT_EQ(ScoreValue::TextOf(*split.GetSplitValuesFirst()[0]), "a");
    EXPECT_TRUE(DiscreteSplit(&var).GetSplitValuesFirst().empty());

    split.SetStartAndEndIndex(0, 2);
    EXPECT_EQ(Shown(split),
              "SplitVarName = x; Var type: Categorical\nMissing Value index: 9\n"
              "Split value index starts from  0 to 2\n"
              "Value = a; Index = 0\nValue = b; Index = 1\nValue = c; Index = 1\n\n");
}

TEST(DiscreteSplit, CopiesCloneValuePairsButNotTheNumberMap) {
    DictVar var = MakeVar(ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::MEASURE_ORDINAL);
    DiscreteSplit split(&var);
    split.SetMissvalMap(2);
    split.SetStartAndEndIndex(1, 3);
    split.PutSplit(5.0, 1);
    split.PutSplit(new NumericValue(5.0), 0);

    std::unique_ptr<ScoreSplitVar> clone(split.Clone());
    NumericValue five(5.0);
    EXPECT_EQ(clone->GetSplitChildIndex(&five), 0);
    EXPECT_EQ(clone->GetSplitChildIndex(5.0), -1);
    EXPECT_EQ(clone->GetMissvalMap(), 2);
    EXPECT_EQ(clone->GetSplitVar(), &var);

    // Assignment appends to the pairs already held.
    DiscreteSplit target(nullptr);
    target.PutSplit(new NumericValue(1.0), 7);
    target = split;
    target = target;
    EXPECT_EQ(target.GetSplitValues().size(), 2u);
    EXPECT_EQ(target.GetSplitChildIndex(&five), 0);
    int start = -1, end = -1;
    target.GetStartAndEndIndex(start, end);
    EXPECT_EQ(start, 1);
    EXPECT_EQ(end, 3);
    EXPECT_EQ(target.GetSplitVar(), &var);
}

TEST(ScaleSplit, FirstRangeWinsAndMissingGoesToTheMissingChild) {
    DictVar var = MakeVar(ScoreDictVar::kNUMERIC_VAR, ScoreDictVar::MEASURE_CONTINUOUS);
    auto* missing = new MissingValueSet();
    missing->Add(new Range(99.0, 99.0, true, true));
    var.SetMissingValues(missing);

    ScaleSplit split(&var);
    EXPECT_EQ(split.GetSplitVarType(), ScoreSplitVar::SCALE_SPLIT);
    EXPECT_EQ(split.GetMissvalMap(), -1);
    EXPECT_EQ(split.GetSplitValueRangeFirst(), nullptr);
    split.SetMissvalMap(5);
    split.PutSplit(new Range(0.0, 10.0, true, true), 0);
    split.PutSplit(new Range(5.0, 100.0, false, true), 1);

    EXPECT_EQ(split.GetSplitChildIndex(7.0), 0);
    EXPECT_EQ(split.GetSplitChildIndex(50.0), 1);
    EXPECT_EQ(split.GetSplitChildIndex(500.0), -1);
    EXPECT_EQ(split.GetSplitChildIndex(NumericValue::GetSysmisValue()), 5);
    EXPECT_EQ(split.GetSplitChildIndex(99.0), 1);  // the number form does not ask the variable

    NumericValue seven(7.0), ninetyNine(99.0), sysmis;
    EXPECT_EQ(split.GetSplitChildIndex(&seven), 0);
    EXPECT_EQ(split.GetSplitChildIndex(&ninetyNine), 5);
    EXPECT_EQ(split.GetSplitChildIndex(&sysmis), 5);
    EXPECT_EQ(split.GetSplitChildIndex(static_cast<ScoreValue const*>(nullptr)), 5);

    EXPECT_NE(split.GetSplitValueRangeForIndex(1), nullptr);
    EXPECT_EQ(split.GetSplitValueRangeForIndex(3), nullptr);
    EXPECT_EQ(split.GetSplitValueRangeFirst(), split.GetSplitValueRangeForIndex(0));

    std::unique_ptr<ScoreSplitVar> clone(split.Clone());
    EXPECT_EQ(clone->GetSplitChildIndex(50.0), 1);
    EXPECT_EQ(clone->GetMissvalMap(), 5);
    ScaleSplit target(&var);
    target.PutSplit(new Range(40.0, 60.0, true, true), 8);
    target = split;
    EXPECT_EQ(target.GetSplitChildIndex(50.0), 8);  // its own range stays first
    EXPECT_EQ(target.GetSplitChildIndex(7.0), 0);
}
