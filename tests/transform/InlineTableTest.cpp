// Lookup tables: key order, duplicate rows, outcomes of a lookup and copies.
#include <gtest/gtest.h>

#include "tests/transform/EvaluationSupport.h"
#include "vantry/transform/InlineTable.h"
#include "vantry/transform/MapValues.h"

using namespace evaltest;

TEST(InlineTable, KeysCompareElementWiseAndSkipDates) {
    InlineTable::KeyLess less;
    NumericValue one(1.0), two(2.0);
    StringValue a("a"), b("b");
    DateTimeValue early(10.0, DateTimeValue::DATETIME_VAL), late(20.0, DateTimeValue::DATETIME_VAL);
    using Key = std::vector<ScoreValue*>;
    EXPECT_TRUE(less(Key{&one, &b}, Key{&two, &a}));
    EXPECT_FALSE(less(Key{&two, &a}, Key{&one, &b}));
    EXPECT_TRUE(less(Key{&one, &a}, Key{&one, &b}));
    EXPECT_FALSE(less(Key{&one, &a}, Key{&one, &a}));
    // Date-time elements do not order: these keys are equivalent.
    EXPECT_FALSE(less(Key{&early}, Key{&late}));
    EXPECT_FALSE(less(Key{&late}, Key{&early}));
}

TEST(InlineTable, LookupReportsItsOutcomeAndCopiesStandAlone) {
    auto inputs = Inputs({{"a", ScoreDictVar::kNUMERIC_VAR}});
    auto table = std::make_unique<InlineTable>();
    table->AppendInputField(inputs->GetVar("a"));
    table->AddInputOutput({Num(1.0)}, Text("one"));
    table->AddInputOutput({Num(1.0)}, Text("again"));  // an existing key: dropped
    EXPECT_EQ(table->GetRows().size(), 1u);

    std::map<std::string, std::string> const columns;
    auto hit = Record({{"a", Num(1.0)}});
    auto miss = Record({{"a", Num(5.0)}});
    auto missing = Record({{"a", Num(kSysmis)}});
    EXPECT_EQ(TextOf(table->getValue(hit.get(), inputs.get(), nullptr, columns)), "one");
    EXPECT_EQ(table->GetInfoCode(), InlineTable::OK);
    EXPECT_EQ(table->getValue(miss.get(), inputs.get(), nullptr, columns), nullptr);
    EXPECT_EQ(table->GetInfoCode(), InlineTable::NoMatches);
    EXPECT_EQ(table->getValue(missing.get(), inputs.get(), nullptr, columns), nullptr);
    EXPECT_EQ(table->GetInfoCode(), InlineTable::InputMissing);

    InlineTable copy(*table);
    table.reset();
    EXPECT_EQ(TextOf(copy.getValue(hit.get(), inputs.get(), nullptr, columns)), "one");
}

TEST(InlineTable, MapValuesWithoutTableUsesItsSingleInput) {
    auto inputs = Inputs({{"a", ScoreDictVar::kNUMERIC_VAR}});
    TransformVar owner("m", ScoreDictVar::kNUMERIC_VAR);
    MapValues single(&owner);
    single.AddFieldColumnPair("c", "a", inputs->GetVar("a"));
    single.SetMapMissingTo(Num(-1.0));
    auto present = Record({{"a", Num(4.0)}});
    auto missing = Record({{"a", Num(kSysmis)}});
    EXPECT_DOUBLE_EQ(NumberOf(single.Lookup(present.get(), inputs.get(), nullptr)), 4.0);
    EXPECT_DOUBLE_EQ(NumberOf(single.Lookup(missing.get(), inputs.get(), nullptr)), -1.0);

    MapValues none(&owner);
    none.SetDefaultValue(Num(9.0));
    EXPECT_DOUBLE_EQ(NumberOf(none.Lookup(present.get(), inputs.get(), nullptr)), 9.0);
}
