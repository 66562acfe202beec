#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "vantry/factory/ResultField.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;

TEST(ResultField, FirstSettingDecidesTheTypeAndLaterOnesWriteInPlace) {
    ResultField field;
    EXPECT_TRUE(field.SetResultValue("label", std::string("yes")));
    EXPECT_TRUE(field.SetResultValue("score", 0.25));
    EXPECT_EQ(field.GetResultSize(), 2);

    ScoreValue const* score = field.GetResultValue("score");
    EXPECT_FALSE(field.SetResultValue("label", 1.0));
    EXPECT_EQ(ScoreValue::TextOf(*field.GetResultValue("label")), "yes");
    EXPECT_FALSE(field.SetResultValue("score", std::string("x")));
    EXPECT_TRUE(field.SetResultValue("score", 0.75));
    EXPECT_EQ(field.GetResultValue("score"), score);  // same object, new number
    EXPECT_EQ(score->GetDouble(), 0.75);

    NumericValue number(2.0);
    StringValue text("no");
    EXPECT_FALSE(field.SetResultValue("label", &number));
    EXPECT_TRUE(field.SetResultValue("label", &text));
    EXPECT_EQ(ScoreValue::TextOf(*field.GetResultValue("label")), "no");
    EXPECT_TRUE(field.SetResultValue("score", &number));
    EXPECT_EQ(field.GetResultValue("score"), score);
    EXPECT_EQ(score->GetDouble(), 2.0);
    EXPECT_FALSE(field.SetResultValue("score", static_cast<ScoreValue const*>(nullptr)));

    // A new name keeps a clone, never the caller's object.
    EXPECT_TRUE(field.SetResultValue("copy", &number));
    EXPECT_NE(field.GetResultValue("copy"), &number);
    EXPECT_EQ(field.GetResultSize(), 3);
    EXPECT_EQ(field.GetResultValue("unknown"), nullptr);
    EXPECT_EQ(field.GetResultType("score"), ScoreResultField::kFeatureNone);
}

TEST(ResultField, NamesAreSortedAndNullEntriesAreFilledByEveryForm) {
    ResultField field;
    field.AddResultField("b", nullptr);
    field.AddResultField("c", nullptr);
    field.AddResultField("a", nullptr);
    EXPECT_EQ(field.GetResultFields(), (std::vector<std::string>{"a", "b", "c"}));

    StringValue text("t");
    EXPECT_TRUE(field.SetResultValue("a", &text));
    EXPECT_TRUE(field.SetResultValue("b", std::string("u")));
    EXPECT_TRUE(field.SetResultValue("c", 3.0));
    EXPECT_EQ(field.GetResultSize(), 3);
    EXPECT_EQ(ScoreValue::TypeOf(*field.GetResultValue("a")), ScoreValue::STRING_VALUE);
    EXPECT_EQ(ScoreValue::TypeOf(*field.GetResultValue("c")), ScoreValue::NUMERIC_VALUE);

    // A name already held keeps its value; the one offered stays with the caller.
    auto offered = std::make_unique<NumericValue>(9.0);
    field.AddResultField("c", offered.get());
    EXPECT_EQ(field.GetResultValue("c")->GetDouble(), 3.0);
}

TEST(ResultField, CopiesAndMapSettingShareTheValues) {
    ResultField field;
    field.SetResultValue("x", 1.0);
    {
        ResultField copy(field);
        EXPECT_EQ(copy.GetResultValue("x"), field.GetResultValue("x"));
        // Emptying the copy's map deletes nothing, so the copy can go without taking the value along.
        copy.SetMapResultValue({});
        EXPECT_EQ(copy.GetResultSize(), 0);
    }
    EXPECT_EQ(field.GetResultValue("x")->GetDouble(), 1.0);

    ResultField other;
    other.SetMapResultValue(field.GetMapResultValue());
    EXPECT_EQ(other.GetResultValue("x"), field.GetResultValue("x"));
    other.SetMapResultValue(other.GetMapResultValue());  // self: no change
    EXPECT_EQ(other.GetResultSize(), 1);
    other.SetMapResultValue({});
}
