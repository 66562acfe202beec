#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;
using namespace vantry_test;

TEST(CaseRecord, SlotsAreFixedOnArrivalAndNamesListTwoWays) {
    CaseRecord record;
    EXPECT_EQ(record.Size(), 0);
    EXPECT_TRUE(record.HasMap());
    EXPECT_EQ(record.Get(0), nullptr);
    EXPECT_EQ(record.GetIndex("x"), -1);

    record.SetUpNameIndexMap(std::vector<std::string>{"p", "q", "r"});
    EXPECT_EQ(record.Size(), 0);
    EXPECT_EQ(record.GetIndex("p"), -1);

    auto* b = new NumericValue(1.0);
    record.Add("b", b);
    record.Add("a", new StringValue("w"));
    EXPECT_EQ(record.GetIndex("b"), 0);
    EXPECT_EQ(record.GetIndex("a"), 1);
    EXPECT_EQ(record.Get("b"), b);
    EXPECT_EQ(record.Get(0), b);
    EXPECT_EQ(record.Get(-1), nullptr);
    EXPECT_EQ(record.Get(record.Size()), nullptr);
    EXPECT_EQ(record.Get("nobody"), nullptr);
    EXPECT_EQ(record.GetVarNames(false), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(record.GetVarNames(true), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(record.GetAllValues().size(), 2u);

    // Re-adding a known name puts the new value in the same slot; the old one is the caller's.
    std::unique_ptr<ScoreValue> old(const_cast<ScoreValue*>(record.Get("b")));
    auto* replacement = new NumericValue(2.0);
    record.Add("b", replacement);
    EXPECT_EQ(record.Size(), 2);
    EXPECT_EQ(record.Get(0), replacement);

    // A null value still takes a slot, which the first setter fills.
    record.Add("c", nullptr);
    EXPECT_EQ(record.Size(), 3);
    EXPECT_EQ(record.Get("c"), nullptr);
    EXPECT_TRUE(record.SetValue("c", 3.0));
    ASSERT_NE(record.Get("c"), nullptr);
    EXPECT_EQ(ScoreValue::TypeOf(*record.Get("c")), ScoreValue::NUMERIC_VALUE);
    EXPECT_EQ(record.Get("c")->GetDouble(), 3.0);
}

TEST(CaseRecord, SettersWriteInPlaceAndRefuseAnotherKind) {
    CaseRecord record;
    record.Add("num", new NumericValue(1.0));
    record.Add("str", new StringValue("s"));
    record.Add("date", new DateTimeValue(0.0, ScoreDictVar::DT_DATE));
    int const num = 0, str = 1, date = 2;
    ScoreValue const* numValue = record.Get(num);
    ScoreValue const* strValue = record.Get(str);
    ScoreValue const* dateValue = record.Get(date);

    EXPECT_TRUE(record.SetValue(num, 5.5));
    EXPECT_TRUE(record.SetValue(str, std::string("t")));
    EXPECT_TRUE(record.SetValue(date, 2.0, ScoreDictVar::DT_DATE_DAYS_SINCE_1970));
    EXPECT_EQ(record.Get(num), numValue);
    EXPECT_EQ(record.Get(str), strValue);
    EXPECT_EQ(record.Get(date), dateValue);
    EXPECT_EQ(numValue->GetDouble(), 5.5);
    EXPECT_EQ(ScoreValue::TextOf(*strValue), "t");
    EXPECT_EQ(static_cast<DateTimeValue const*>(dateValue)->GetDoubleValue(ScoreDictVar::DT_DATE), 172800.0);

    struct {
        char const* what;
        bool result;
    } const refusals[] = {
        {"text on number", record.SetValue(num, std::string("x"))},
        {"number on text", record.SetValue(str, 1.0)},
        {"number on date", record.SetValue(date, 1.0)},
        {"text on date", record.SetValue(date, std::string("x"))},
        {"date on number", record.SetValue(num, 1.0, ScoreDictVar::DT_DATE)},
        {"out of range", record.SetValue(3, 1.0)},
        {"negative index", record.SetValue(-1, std::string("x"))},
        {"unknown name", record.SetValue("unknown", 1.0)},
        {"unknown name, date", record.SetValue("unknown", 1.0, ScoreDictVar::DT_DATE)},
    };
    for (auto const& refusal : refusals) {
        EXPECT_FALSE(refusal.result) << refusal.what;
    }
    EXPECT_EQ(numValue->GetDouble(), 5.5);
    EXPECT_EQ(ScoreValue::TextOf(*strValue), "t");
    EXPECT_EQ(record.Size(), 3);
    EXPECT_EQ(record.GetIndex("unknown"), -1);

    EXPECT_TRUE(record.SetValue("str", std::string("by name")));
    EXPECT_EQ(ScoreValue::TextOf(*strValue), "by name");
}

TEST(CaseRecord, MissingAndRemoveKeepTheSlot) {
    CaseRecord record;
    record.Add("num", new NumericValue(1.0));
    record.Add("str", new StringValue("s"));
    record.Add("empty", nullptr);

    EXPECT_TRUE(record.SetMissingValue("num"));
    EXPECT_TRUE(record.Get("num")->IsSystemMissingValue());
    EXPECT_TRUE(record.SetMissingValue(1));
    EXPECT_EQ(ScoreValue::TypeOf(*record.Get("str")), ScoreValue::STRING_VALUE);
    EXPECT_EQ(ScoreValue::TextOf(*record.Get("str")), "");
    EXPECT_FALSE(record.SetMissingValue("empty"));
    EXPECT_FALSE(record.SetMissingValue("unknown"));
    EXPECT_FALSE(record.SetMissingValue(7));

    record.Remove("num");
    record.Remove("unknown");
    EXPECT_EQ(record.Get("num"), nullptr);
    EXPECT_EQ(record.GetIndex("num"), 0);
    EXPECT_EQ(record.Size(), 3);
    EXPECT_TRUE(record.SetValue("num", 2.0));
    EXPECT_EQ(record.Get(0)->GetDouble(), 2.0);
}

TEST(CaseRecord, CopiesCloneEveryValue) {
    CaseRecord source;
    source.Add("x", new NumericValue(1.0));
    source.Add("gap", nullptr);
    source.Add("y", new StringValue("y"));

    CaseRecord copy(source);
    EXPECT_EQ(copy.Size(), 3);
    EXPECT_NE(copy.Get("x"), source.Get("x"));
    EXPECT_EQ(copy.Get("gap"), nullptr);
    EXPECT_EQ(copy.GetVarNames(true), source.GetVarNames(true));

    CaseRecord assigned;
    assigned.Add("other", new NumericValue(9.0));
    assigned.Add("more", new StringValue("9"));
    assigned = source;
    EXPECT_EQ(assigned.Size(), 3);
    EXPECT_EQ(assigned.GetIndex("other"), -1);
    EXPECT_EQ(assigned.GetIndex("y"), 2);
    EXPECT_EQ(ScoreValue::TextOf(*assigned.Get("y")), "y");
    assigned = assigned;
    EXPECT_EQ(assigned.Size(), 3);

    EXPECT_EQ(Shown(source),
              "Start ScoreCaseRecord Display:\nVar Name: gap\nVar Name: x; Var Value: 1\n"
              "Var Name: y; Var Value: y\nEnd of ScoreCaseRecord Display.\n\n");
}
