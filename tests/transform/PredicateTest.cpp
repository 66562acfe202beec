// Predicates evaluated on encoded numbers and on records, alone and combined.
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "vantry/transform/ScorePredicate.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreSplitVar.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;

namespace {

using Result = ScorePredicate::PredicateResult;
constexpr Result T = ScorePredicate::PRED_TRUE;
constexpr Result F = ScorePredicate::PRED_FALSE;
constexpr Result U = ScorePredicate::PRED_UNKNOWN;
constexpr Result S = ScorePredicate::PRED_SURROGATE_TRUE;
double const kSysmis = NumericValue::GetSysmisValue();
double const kInf = std::numeric_limits<double>::infinity();

// A variable that stands for a derived field.
class DerivedVar : public DictVar {
  public:
    using DictVar::DictVar;
    bool IsDerivedVariable() const override { return true; }
};

// A predicate with a fixed answer that counts how often it is asked.
class Fixed : public ScorePredicate {
  public:
    Fixed(Result result, int* calls) : fResult(result), fCalls(calls) {}
    ScorePredicate* Clone() const override { return new Fixed(*this); }
    Result Evaluate(std::vector<double> const&) override { return ++*fCalls, fResult; }
    Result Evaluate(ScoreCaseRecord const*, ScoreCaseRecord const*) override { return ++*fCalls, fResult; }
    PredicateType GetPredType() override { return SIMPLE_PREDICATE; }
    bool IsDerivedPredictor() const override { return false; }
    void SetSplit(ScoreSplitVar const*) override {}
    ScoreSplitVar const* GetSplit() const override { return nullptr; }
    void Display(std::ostream&) const override {}

  private:
    Result fResult;
    int* fCalls;
};

class PredicateTest : public testing::Test {
  protected:
    PredicateTest() : x("x", ScoreDictVar::kNUMERIC_VAR), c("c", ScoreDictVar::STRING_VAR) {
        x.SetValueIndex(0);
        x.SetEncodedValueIndex(0);
        c.SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
        c.SetValueIndex(1);
        c.SetEncodedValueIndex(1);
        for (char const* category : {"a", "b", "c"}) {
            c.AddScoreValueLabel(new StringValue(category), category);
        }
        input.Add("x", new NumericValue(7.0));
        input.Add("c", new StringValue("b"));
    }

    // "x greaterThan 5".
    ScaleSplit* XAbove5() {
        auto* split = new ScaleSplit(&x);
        split->PutSplit(new Range(5.0, kInf, false, false), 0);
        return split;
    }

    // "c equal b", by value or by the code 1 of an encoder of a, b, c.
    DiscreteSplit* CIsB(bool encoded) {
        if (encoded && c.GetEncoder() == nullptr) {
            c.SetEncoder(new ScoreCatStringEncoder(std::vector<std::string>{"a", "b", "c"}));
        }
        auto* split = new DiscreteSplit(&c);
        if (encoded) {
            split->PutSplit(1.0, 0);
        } else {
            split->PutSplit(new StringValue("b"), 0);
        }
        return split;
    }

    Result OnC(ScorePredicate& predicate, char const* text) {
        input.SetValue("c", std::string(text));
        return predicate.Evaluate(&input, nullptr);
    }

    DictVar x;
    DictVar c;
    CaseRecord input;
};

TEST_F(PredicateTest, SimplePredicateOnEncodedNumbers) {
    SimplePredicate above(XAbove5());
    EXPECT_EQ(T, above.Evaluate({7.0}));
    EXPECT_EQ(F, above.Evaluate({5.0}));
    EXPECT_EQ(U, above.Evaluate({kSysmis}));
    EXPECT_EQ(U, above.Evaluate({}));  // the start value of a continuous variable is missing
    EXPECT_EQ(U, SimplePredicate().Evaluate({7.0}));

    SimplePredicate isB(CIsB(true));
    EXPECT_EQ(T, isB.Evaluate({0.0, 1.0}));
    EXPECT_EQ(F, isB.Evaluate({0.0, 2.0}));
    EXPECT_EQ(U, isB.Evaluate({0.0, -2.0}));
    EXPECT_EQ(F, isB.Evaluate({0.0}));  // -1.0 is not missing: the nominal split routes it nowhere

    auto* isMissing = new ScaleSplit(&x);
    isMissing->SetMissvalMap(0);
    SimplePredicate missing(isMissing);
    EXPECT_EQ(T, missing.Evaluate({kSysmis}));
    EXPECT_EQ(F, missing.Evaluate({1.0}));
}

TEST_F(PredicateTest, SimplePredicateOnRecordsPlainAndEncoded) {
    for (bool encoded : {false, true}) {
        SCOPED_TRACE(encoded ? "encoded" : "plain");
        SimplePredicate isB(CIsB(encoded));
        EXPECT_EQ(T, OnC(isB, "b"));
        EXPECT_EQ(F, OnC(isB, "a"));
        EXPECT_EQ(U, OnC(isB, "q"));  // not a category: missing
        const_cast<ScoreSplitVar*>(isB.GetSplit())->SetMissvalMap(0);
        EXPECT_EQ(T, OnC(isB, "q"));
    }
    // A range split reads the value itself even when the variable has an encoder.
    x.SetEncoder(new ScoreCatNumericEncoder(std::vector<double>{7.0, 3.0}));
    SimplePredicate above(XAbove5());
    EXPECT_EQ(T, above.Evaluate(&input, nullptr));
    input.SetValue("x", kSysmis);
    EXPECT_EQ(U, above.Evaluate(&input, nullptr));
    EXPECT_EQ(U, above.Evaluate(nullptr, nullptr));
}

TEST_F(PredicateTest, RecordsAreReadByIndexThenByName) {
    SimplePredicate above(XAbove5());
    CaseRecord shuffled;
    shuffled.Add("w", new NumericValue(1.0));
    shuffled.Add("x", new NumericValue(9.0));
    x.SetValueIndex(5);  // no slot there: found by name
    EXPECT_EQ(T, above.Evaluate(&shuffled, nullptr));
    x.SetValueIndex(0);  // a filled slot wins over the name
    EXPECT_EQ(F, above.Evaluate(&shuffled, nullptr));

    // A derived variable is read from the derived record when there is one.
    DerivedVar d("d", ScoreDictVar::kNUMERIC_VAR);
    d.SetValueIndex(0);
    auto* split = new ScaleSplit(&d);
    split->PutSplit(new Range(5.0, kInf, false, false), 0);
    SimplePredicate onD(split);
    CaseRecord in, derived;
    in.Add("d", new NumericValue(1.0));
    derived.Add("d", new NumericValue(8.0));
    EXPECT_EQ(T, onD.Evaluate(&in, &derived));
    EXPECT_EQ(F, onD.Evaluate(&in, nullptr));
    EXPECT_TRUE(onD.IsDerivedPredictor());
}

TEST_F(PredicateTest, SetPredicateIgnoresTheMissingChild) {
    for (bool encoded : {false, true}) {
        DiscreteSplit* split = CIsB(encoded);
        split->SetMissvalMap(0);
        SetPredicate in(split);
        EXPECT_EQ(T, OnC(in, "b"));
        EXPECT_EQ(F, OnC(in, "c"));
        EXPECT_EQ(U, OnC(in, "q"));
        if (encoded) {
            EXPECT_EQ(T, in.Evaluate({0.0, 1.0}));
            EXPECT_EQ(U, in.Evaluate({0.0, -2.0}));
        }
    }
    EXPECT_EQ(U, SetPredicate().Evaluate(&input, nullptr));
}

TEST(CompoundPredicateTest, CombinesChildResultsAndStopsEarly) {
    using Op = ScorePredicate::CompoundBoolOperator;
    struct Case {
        Op op;
        std::vector<Result> children;
        Result expected;
        int asked;
    };
    Case const cases[] = {
        {ScorePredicate::BOOL_AND, {}, T, 0},
        {ScorePredicate::BOOL_AND, {T, U}, U, 2},
        {ScorePredicate::BOOL_AND, {U, F, T}, F, 2},
        {ScorePredicate::BOOL_AND, {S, T}, T, 2},
        {ScorePredicate::BOOL_OR, {}, F, 0},
        {ScorePredicate::BOOL_OR, {U, T, F}, T, 2},
        {ScorePredicate::BOOL_OR, {F, U}, U, 2},
        {ScorePredicate::BOOL_OR, {S, F}, F, 2},
        {ScorePredicate::BOOL_XOR, {T, F}, T, 2},
        {ScorePredicate::BOOL_XOR, {T, T}, F, 2},
        {ScorePredicate::BOOL_XOR, {T, U, T}, U, 2},
        {ScorePredicate::BOOL_XOR, {S, T, T}, F, 3},
        {ScorePredicate::BOOL_SURROGATE, {}, U, 0},
        {ScorePredicate::BOOL_SURROGATE, {U, T}, S, 2},
        {ScorePredicate::BOOL_SURROGATE, {U, U, F}, F, 3},
        {ScorePredicate::BOOL_SURROGATE, {F, T}, F, 1},
        {ScorePredicate::BOOL_SURROGATE, {S, T}, S, 1},
        {ScorePredicate::BOOL_SURROGATE, {U, U}, U, 2},
    };
    for (Case const& test : cases) {
        SCOPED_TRACE(testing::Message() << "operator " << test.op << ", case " << (&test - cases));
        int calls = 0;
        CompoundPredicate compound(test.op);
        for (Result child : test.children) {
            compound.AddPredicate(new Fixed(child, &calls));
        }
        EXPECT_EQ(test.expected, compound.Evaluate(std::vector<double>()));
        EXPECT_EQ(test.asked, calls);
        EXPECT_EQ(test.expected, compound.Evaluate(nullptr, nullptr));
    }
}

TEST(CompoundPredicateTest, NestedSurrogatesAndEntryPoints) {
    int calls = 0;
    // and(surrogate(unknown, true), True): the surrogate's 3 does not spoil "and".
    auto* surrogate = new CompoundPredicate(ScorePredicate::BOOL_SURROGATE);
    surrogate->AddPredicate(new Fixed(U, &calls));
    surrogate->AddPredicate(new Fixed(T, &calls));
    CompoundPredicate both(ScorePredicate::BOOL_AND);
    both.AddPredicate(surrogate);
    both.AddPredicate(new TruePredicate());
    EXPECT_EQ(T, both.Evaluate(std::vector<double>()));

    // EvaluateSurrogate enters the chain at a given child.
    CompoundPredicate chain;
    for (Result result : {F, U, T}) {
        chain.AddPredicate(new Fixed(result, &calls));
    }
    std::vector<double> const none;
    EXPECT_EQ(F, chain.EvaluateSurrogate(none, 0));
    EXPECT_EQ(S, chain.EvaluateSurrogate(none, 1));
    EXPECT_EQ(T, chain.EvaluateSurrogate(none, 2));
    EXPECT_EQ(F, chain.EvaluateSurrogate(none, 3));
    EXPECT_EQ(F, both.EvaluateSurrogate(none, 0));  // not a surrogate
}

TEST_F(PredicateTest, CopiesOwnershipAndDescriptions) {
    auto* first = new SimplePredicate(XAbove5());
    CompoundPredicate compound(ScorePredicate::BOOL_XOR);
    compound.AddPredicate(first);
    compound.AddPredicate(new TruePredicate());
    compound.AddPredicate(nullptr);
    std::unique_ptr<ScorePredicate> copy(compound.Clone());
    auto& cloned = static_cast<CompoundPredicate&>(*copy);
    ASSERT_EQ(2, cloned.GetCount());
    EXPECT_NE(first->GetSplit(), cloned.GetPredicates()[0]->GetSplit());
    EXPECT_EQ(F, cloned.Evaluate(std::vector<double>{7.0}));

    EXPECT_TRUE(compound.RemovePredicate(first));
    EXPECT_FALSE(compound.RemovePredicate(first));
    std::unique_ptr<ScorePredicate> removed(first);  // still alive: removing does not delete

    std::ostringstream out;
    first->Display(out);
    SetPredicate().Display(out);
    compound.Display(out);
    TruePredicate().Display(out);
    FalsePredicate().Display(out);
    EXPECT_EQ("Simple Predicate: \nSet Predicate: \nCompound Predicate: \nConstant TRUE\nConstant FALSE\n",
              out.str());
}

TEST_F(PredicateTest, OperatorAndValueTexts) {
    SimplePredicate simple(XAbove5());
    std::vector<std::pair<char const*, int>> const operators = {
        {"greaterOrEqual", 5}, {"", 5}, {"isMissing", 6}, {"isNotMissing", 7}, {"notEqual", 1}};
    for (auto const& [text, number] : operators) {
        simple.SetPredicateOperator(text);
        EXPECT_EQ(number, simple.GetPredicateOperator()) << text;
    }
    simple.SetPredicateValue("5.5");
    EXPECT_EQ(5.5, simple.GetPredValueByDouble());

    SimplePredicate coded(CIsB(true));
    coded.SetPredicateValue("c");
    EXPECT_EQ(2.0, coded.GetPredValueByDouble());
}

}  // namespace
