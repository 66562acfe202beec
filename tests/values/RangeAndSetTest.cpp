#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ValueLabel.h"
#include "vantry/values/ValueProbability.h"
#include "vantry/values/VarStats.h"

using namespace QXVantry_920;
using namespace vantry_test;

TEST(Range, NumericIntervalEndsUseRelativeEquality) {
    Range const lowClosed(5.0, 10.0, true, false);
    Range const open(5.0, 10.0, false, false);
    struct Row {
        double x;
        bool inLowClosed, inOpen;
    } const rows[] = {
        {5.0, true, false},           {10.0, false, false},         {7.0, true, true},
        {5.0 + 1e-13, true, true},    {5.0 - 1e-13, true, false},   {5.0 + 1e-14, true, true},
        {10.0 - 1e-14, true, true},   {10.0 + 1e-14, false, false}, {kSysmis, false, false},
        {std::nan(""), false, false},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(lowClosed.IsInRange(row.x), row.inLowClosed) << row.x;
        EXPECT_EQ(open.IsInRange(row.x), row.inOpen) << row.x;
    }

    NumericValue const seven(7.0), missing;
    StringValue const sevenText("7");
    DateTimeValue const sevenSeconds(7.0, DateTimeValue::DATETIME_VAL),
        sevenDays(7.0 * 86400, DateTimeValue::DATE_VAL);
    EXPECT_TRUE(lowClosed.IsInRange(&seven));
    EXPECT_TRUE(lowClosed.IsInRange(&sevenSeconds));
    EXPECT_TRUE(lowClosed.IsInRange(&sevenDays));
    EXPECT_FALSE(lowClosed.IsInRange(&sevenText));
    EXPECT_FALSE(lowClosed.IsInRange(&missing));
    EXPECT_FALSE(lowClosed.IsInRange(static_cast<ScoreValue const*>(nullptr)));
}

TEST(Range, MissingAndAbsentBounds) {
    // A missing lower bound object becomes negative infinity: no lower bound.
    Range const fromValues(new NumericValue(), new NumericValue(3.0), true, true);
    EXPECT_EQ(fromValues.GetMin()->GetDouble(), -kInf);
    EXPECT_TRUE(fromValues.IsInRange(-1e300));
    EXPECT_TRUE(fromValues.IsInRange(3.0));
    EXPECT_FALSE(fromValues.IsInRange(kSysmis));
    Range const fromDoubles(kSysmis, 3.0, true, true);
    EXPECT_EQ(fromDoubles.GetMin()->GetDouble(), -kInf);
    EXPECT_TRUE(fromDoubles.IsInRange(-1e300));

    // A missing upper bound is not treated likewise.
    Range const missingUpper(new NumericValue(1.0), new NumericValue(), true, true);
    EXPECT_FALSE(missingUpper.IsInRange(2.0));

    Range const whole(nullptr, nullptr, false, false);
    EXPECT_EQ(whole.GetMin()->GetDouble(), -kInf);
    EXPECT_EQ(whole.GetMax()->GetDouble(), kInf);
    EXPECT_TRUE(whole.IsInRange(1e300));

    // One object for both bounds: the upper one is a clone, and the range is single.
    NumericValue* const four = new NumericValue(4.0);
    Range const same(four, four, false, false);
    EXPECT_NE(same.GetMin(), same.GetMax());
    EXPECT_TRUE(same.IsInRange(4.0));
    EXPECT_FALSE(same.IsInRange(4.1));
}

TEST(Range, SingleValuesCompareByTheirOwnType) {
    Range const letter(new StringValue("a"));
    StringValue const padded("a   "), other("b");
    NumericValue const zero(0.0);
    EXPECT_TRUE(letter.IsInRange(&padded));
    EXPECT_FALSE(letter.IsInRange(&other));
    EXPECT_FALSE(letter.IsInRange(&zero));  // a number never equals a string
    EXPECT_TRUE(letter.IsInRange(0.0));     // the cached GetDouble of "a"
    EXPECT_FALSE(letter.IsInRange(1.0));

    Range const number(new NumericValue(2.5));
    EXPECT_TRUE(number.IsInRange(2.5));
    EXPECT_FALSE(number.IsInRange(2.6));
    EXPECT_EQ(Range(new NumericValue()).GetMin()->GetDouble(), -kInf);
    EXPECT_FALSE(Range(static_cast<ScoreValue*>(nullptr)).IsInRange(0.0));

    Range const date(new DateTimeValue(86400.0, DateTimeValue::DATE_VAL));
    DateTimeValue const sameDate(86400.0, DateTimeValue::DATE_VAL),
        sameSeconds(86400.0, DateTimeValue::DATETIME_VAL);
    EXPECT_TRUE(date.IsInRange(&sameDate));
    EXPECT_FALSE(date.IsInRange(&sameSeconds));
}

TEST(Range, EqualityCopiesAndSetters) {
    Range original(1.0, 2.0, true, true);
    EXPECT_TRUE(original == Range(1.0, 2.0, true, true));
    EXPECT_FALSE(original == Range(1.0, 2.0, true, false));
    EXPECT_FALSE(original == Range(1.0, 2.5, true, true));

    Range copy(original);
    Range assigned(7.0, 8.0, false, false);
    assigned = original;
    assigned = assigned;
    std::unique_ptr<ScoreValueRange> clone(original.Clone());

    // The replaced bound passes back to the caller.
    ScoreValue const* const oldMin = original.GetMin();
    original.SetMin(new NumericValue(0.0));
    delete oldMin;
    original.SetMin(nullptr);
    EXPECT_TRUE(original.IsInRange(0.5));
    EXPECT_FALSE(copy.IsInRange(0.5));
    EXPECT_FALSE(assigned.IsInRange(0.5));
    EXPECT_FALSE(clone->IsInRange(0.5));
    EXPECT_TRUE(*clone == copy);

    // Equal bounds make the range single.
    ScoreValue const* const oldMax = original.GetMax();
    original.SetMax(new NumericValue(0.0));
    delete oldMax;
    EXPECT_TRUE(original.IsInRange(0.0));
    EXPECT_FALSE(original.IsInRange(-0.5));

    // Handing a range its own lower bound as upper bound must not make it own one object twice.
    ScoreValue const* const replaced = original.GetMax();
    original.SetMax(const_cast<ScoreValue*>(original.GetMin()));
    delete replaced;
    EXPECT_NE(original.GetMin(), original.GetMax());
}

TEST(Range, DisplayLiterals) {
    EXPECT_EQ(Shown(Range(1.5, 2.0, true, false)),
              "  Start Range Display   \nMinValue: 1.5;  MaxValue: 2; High End not included; lower End "
              "included\n End of Range Display\n\n");
    EXPECT_EQ(Shown(Range(new StringValue("x"))),
              "  Start Range Display   \nMinValue: x;  MaxValue: x; High End included; lower End "
              "included\n End of Range Display\n\n");
}

TEST(MissingValueSet, AddContainsRemoveAndDeepCopy) {
    MissingValueSet set;
    EXPECT_FALSE(set.Add(nullptr));
    EXPECT_TRUE(set.Add(new Range(new NumericValue(-9.0))));
    EXPECT_TRUE(set.Add(new Range(1.0, 5.0, true, true)));

    // An equal range is refused and stays with the caller.
    std::unique_ptr<Range> duplicate(new Range(1.0, 5.0, true, true));
    EXPECT_FALSE(set.Add(duplicate.get()));
    EXPECT_EQ(set.Size(), 2);
    EXPECT_TRUE(set.Contains(duplicate.get()));
    EXPECT_FALSE(set.Contains(nullptr));

    std::vector<ScoreValueRange const*> held = set.GetMissingValues();
    ASSERT_EQ(held.size(), 2u);
    EXPECT_TRUE(held[0]->IsInRange(-9.0));
    EXPECT_TRUE(held[1]->IsInRange(3.0));

    std::unique_ptr<ScoreMissingValueSet> clone(set.Clone());
    MissingValueSet copy(set);
    // Removing with a pointer the set itself holds.
    EXPECT_TRUE(set.Remove(held[0]));
    EXPECT_FALSE(set.Remove(nullptr));
    Range const absent(0.0, 1.0, true, true);
    EXPECT_FALSE(set.Remove(&absent));
    EXPECT_EQ(set.Size(), 1);
    EXPECT_EQ(clone->Size(), 2);
    copy = set;
    EXPECT_EQ(copy.Size(), 1);

    EXPECT_EQ(Shown(set), " Begin MissingValueSet Display:\n" + Shown(Range(1.0, 5.0, true, true)) +
                              "End MissingValueSet Display.\n");
}

// A number is tested against the held ranges without asking each range; the answer must stay the one
// the ranges give, through copies and removals (which hold other range objects).
TEST(MissingValueSet, NumbersAnswerAsTheRangesDo) {
    auto set = std::make_unique<MissingValueSet>();
    set->Add(new Range(new NumericValue(-9.0)));
    set->Add(new Range(new StringValue("x")));
    set->Add(new Range(1.0, 5.0, true, false));
    set->Add(new Range(NumericValue::GetSysmisValue(), -100.0, false, true));
    auto agree = [](MissingValueSet const& s) {
        for (double x : {-9.0, -9.0 + 1e-15, 1.0, 3.0, 5.0, 4.999999, 7.0, -100.0, -1e300,
                         NumericValue::GetSysmisValue()}) {
            NumericValue const value(x);
            bool expected = false;
            for (ScoreValueRange const* range : s.GetMissingValues()) {
                expected = expected || range->IsInRange(&value);
            }
            EXPECT_EQ(s.AnyRangeHolds(&value), expected) << x;
        }
    };
    agree(*set);
    MissingValueSet copy(*set);
    set.reset();
    agree(copy);
    NumericValue const two(2.0);
    EXPECT_TRUE(copy.AnyRangeHolds(&two));
    copy.Remove(copy.GetMissingValues()[2]);
    agree(copy);
    EXPECT_FALSE(copy.AnyRangeHolds(&two));
}

TEST(ValueLbl, SettersOperatorsAndAssignment) {
    ValueLbl one(new NumericValue(1.0), "one");
    ValueLbl two(new NumericValue(2.0), "two");
    EXPECT_FALSE(one.SetLabel(""));
    EXPECT_TRUE(one.SetLabel("uno"));
    EXPECT_FALSE(one.SetValueLabel(nullptr, "x"));
    std::unique_ptr<NumericValue> refused(new NumericValue(3.0));
    EXPECT_FALSE(one.SetValueLabel(refused.get(), ""));
    EXPECT_EQ(one.GetLabel(), "uno");

    EXPECT_TRUE(one < two);
    EXPECT_TRUE(one <= two);
    EXPECT_FALSE(one > two);
    EXPECT_FALSE(one >= two);
    EXPECT_TRUE(one == ValueLbl(new NumericValue(1.0), "other text"));

    ValueLbl copy(one);
    EXPECT_NE(copy.GetValue(), one.GetValue());
    EXPECT_TRUE(copy == one);
    std::unique_ptr<ScoreValueLabel> clone(two.Clone());
    EXPECT_TRUE(*clone == two);

    // Assignment drops the value and copies only the label.
    copy = two;
    EXPECT_EQ(copy.GetValue(), nullptr);
    EXPECT_EQ(copy.GetLabel(), "two");
    EXPECT_FALSE(copy == two);
    EXPECT_FALSE(two == copy);
    EXPECT_EQ(Shown(copy), "Value: NULL;  Label: two\n");
    EXPECT_TRUE(copy.SetValueLabel(new StringValue("b"), "bee"));
    EXPECT_EQ(Shown(copy), "Value: b;  Label: bee\n");
}

TEST(ValueLabelSet, KeepsDeclarationOrderAndFindsFirstMatch) {
    ValueLabelSet set;
    EXPECT_FALSE(set.Add(nullptr));
    EXPECT_TRUE(set.Add(new ValueLbl(new StringValue("a"), "first")));
    EXPECT_TRUE(set.Add(new ValueLbl(new StringValue("b"), "bee")));
    EXPECT_TRUE(set.Add(new ValueLbl(new StringValue("a"), "second")));
    ValueLbl empty;
    EXPECT_TRUE(set.Add(new ValueLbl(empty)));  // a label without value is skipped by look-ups
    EXPECT_EQ(set.Size(), 4);
    EXPECT_EQ(set.GetAllValueLabels()[1]->GetLabel(), "bee");

    StringValue const padded("a  "), unknown("z");
    EXPECT_TRUE(set.Contains(&padded));
    EXPECT_FALSE(set.Contains(&unknown));
    EXPECT_FALSE(set.Contains(nullptr));
    EXPECT_EQ(set.GetLabelOfValue(&padded), "first");
    EXPECT_EQ(set.GetLabelOfValue(&unknown), "");
    EXPECT_EQ(set.GetLabelOfValue(nullptr), "");

    std::unique_ptr<ScoreValueLabelSet> clone(set.Clone());
    ValueLbl const key(new StringValue("a"), "ignored");
    EXPECT_TRUE(set.Remove(&key));  // only the first match goes
    EXPECT_EQ(set.GetLabelOfValue(&padded), "second");
    EXPECT_TRUE(set.Remove(set.GetAllValueLabels()[1]));
    EXPECT_FALSE(set.Remove(&key));
    EXPECT_FALSE(set.Remove(nullptr));
    EXPECT_EQ(set.Size(), 2);
    EXPECT_EQ(clone->GetLabelOfValue(&padded), "first");

    ValueLabelSet assigned;
    assigned.Add(new ValueLbl(new NumericValue(1.0), "x"));
    assigned = set;
    EXPECT_EQ(assigned.Size(), 2);
    EXPECT_EQ(Shown(assigned),
              "Start ScoreValueLabelSet Display:\nValue: b;  Label: bee\nValue: NULL;  Label: "
              "\nEnd of ScoreValueLabelSet Display.\n\n");
}

TEST(ValueProbability, ProbabilityMustLieInUnitInterval) {
    ValueProbability p(new StringValue("x"), 0.25);
    EXPECT_TRUE(p.SetProbability(1.0));
    EXPECT_FALSE(p.SetProbability(1.0000001));
    EXPECT_FALSE(p.SetProbability(-1e-300));
    EXPECT_FALSE(p.SetProbability(std::nan("")));
    EXPECT_EQ(p.GetProbability(), 1.0);
    EXPECT_TRUE(p.SetProbability(0.0));
    std::unique_ptr<NumericValue> refused(new NumericValue(1.0));
    EXPECT_FALSE(p.SetValueProbability(refused.get(), 2.0));
    EXPECT_FALSE(p.SetValueProbability(nullptr, 0.5));
    EXPECT_EQ(ValueProbability(new NumericValue(1.0), 5.0).GetProbability(), 5.0);

    ValueProbability q(new StringValue("y"), 0.5);
    EXPECT_TRUE(p < q);
    EXPECT_TRUE(q >= p);
    ValueProbability copy(q);
    EXPECT_TRUE(copy == q);
    copy = p;
    EXPECT_EQ(copy.GetValue(), nullptr);
    EXPECT_EQ(copy.GetProbability(), 0.0);
    EXPECT_EQ(Shown(q), "Value: y;  Probability: 0.5\n");
    EXPECT_EQ(Shown(copy), "Value: NULL;  Probability: 0\n");
}

TEST(ValueProbabilitySet, LooksUpProbabilitiesByValue) {
    ValueProbabilitySet set;
    EXPECT_FALSE(set.Add(nullptr));
    set.Add(new ValueProbability(new NumericValue(1.0), 0.25));
    set.Add(new ValueProbability(new NumericValue(2.0), 0.75));
    NumericValue const one(1.0), two(2.0), three(3.0);
    EXPECT_EQ(set.GetAllValueProbabilities()[1]->GetProbability(), 0.75);
    EXPECT_EQ(set.GetProbabilityOfValue(&two), 0.75);
    EXPECT_EQ(set.GetProbabilityOfValue(&three), 0.0);
    EXPECT_EQ(set.GetProbabilityOfValue(nullptr), 0.0);
    EXPECT_TRUE(set.Contains(&one));

    ValueProbabilitySet copy(set);
    ValueProbability const key(new NumericValue(1.0), 0.0);
    EXPECT_TRUE(set.Remove(&key));
    EXPECT_FALSE(set.Contains(&one));
    EXPECT_EQ(set.Size(), 1);
    EXPECT_EQ(copy.GetProbabilityOfValue(&one), 0.25);
    copy = set;
    EXPECT_EQ(Shown(copy),
              "Start ScoreValueProbabilitySet Display:\nValue: 2;  Probability: 0.75\nEnd of "
              "ScoreValueProbabilitySet Display.\n\n");
}

TEST(VarStats, DefaultsAndOwnedReplacement) {
    VarStats stats;
    EXPECT_EQ(stats.GetMin(), kSysmis);
    EXPECT_EQ(stats.GetMax(), -kSysmis);
    EXPECT_EQ(stats.GetMean(), 0.0);
    EXPECT_EQ(stats.GetStddev(), 1.0);
    EXPECT_EQ(stats.GetMissingReplacement(), nullptr);

    // The replacement is cloned; the caller keeps its own object.
    NumericValue const replacement(4.0);
    stats.SetMissingReplacement(&replacement);
    EXPECT_NE(stats.GetMissingReplacement(), &replacement);
    EXPECT_EQ(stats.GetMissingReplacement()->GetDouble(), 4.0);
    stats.SetMissingReplacement(stats.GetMissingReplacement());
    EXPECT_EQ(stats.GetMissingReplacement()->GetDouble(), 4.0);

    VarStats copy(stats);
    std::unique_ptr<ScoreVarStats> clone(stats.Clone());
    stats.SetMissingReplacement(nullptr);
    EXPECT_EQ(stats.GetMissingReplacement(), nullptr);
    EXPECT_EQ(copy.GetMissingReplacement()->GetDouble(), 4.0);
    EXPECT_EQ(clone->GetMissingReplacement()->GetDouble(), 4.0);
    copy = stats;
    EXPECT_EQ(copy.GetMissingReplacement(), nullptr);
}
