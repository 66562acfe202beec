// The memory of lag expressions over a run of cases, with block fields that reset it.
#include <gtest/gtest.h>

#include <vector>

#include "tests/transform/EvaluationSupport.h"

using namespace evaltest;

namespace {

// The lag's answers over the cases, each case given as (value, block).
std::vector<double> Answers(TransformVar& lag, ScoreDictionary const* inputs,
                            std::vector<std::pair<double, double>> const& cases) {
    std::vector<double> answers;
    for (auto [value, block] : cases) {
        auto record = Record({{"x", Num(value)}, {"id", Num(block)}});
        answers.push_back(NumberOf(lag.GetTransformedValue(record.get(), inputs, nullptr)));
    }
    return answers;
}

}  // namespace

TEST(Lag, AnswersTheValueOfNCasesAgo) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}, {"id", ScoreDictVar::kNUMERIC_VAR}});
    std::unique_ptr<TransformVar> one(Derived("l1", ScoreDictVar::kNUMERIC_VAR, TD::TE_LAG, "x"));
    one->SetLags(1, {});
    std::unique_ptr<TransformVar> two(Derived("l2", ScoreDictVar::kNUMERIC_VAR, TD::TE_LAG, "x"));
    two->SetLags(2, {});
    std::vector<std::pair<double, double>> const cases = {{1, 0}, {2, 0}, {3, 0}, {4, 0}};

    EXPECT_EQ(Answers(*one, inputs.get(), cases), (std::vector<double>{kSysmis, 1, 2, 3}));
    EXPECT_EQ(Answers(*two, inputs.get(), cases), (std::vector<double>{kSysmis, kSysmis, 1, 2}));
}

TEST(Lag, BlockChangeAnswersMissingWhileTheMemoryMovesOn) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}, {"id", ScoreDictVar::kNUMERIC_VAR}});
    std::unique_ptr<TransformVar> lag(Derived("l", ScoreDictVar::kNUMERIC_VAR, TD::TE_LAG, "x"));
    lag->SetLags(2, {inputs->GetVar("id")});

    // Case 3 compares its block with case 1's, case 4 with case 2's, case 5 with case 3's.
    std::vector<double> const answers =
        Answers(*lag, inputs.get(), {{10, 1}, {20, 1}, {30, 2}, {40, 2}, {50, 2}, {60, 2}});
    EXPECT_EQ(answers, (std::vector<double>{kSysmis, kSysmis, kSysmis, kSysmis, 30, 40}));
}

TEST(Lag, CopiesCarryTheMemoryAndAbsentValuesCountAsMissing) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}, {"id", ScoreDictVar::kNUMERIC_VAR}});
    std::unique_ptr<TransformVar> lag(Derived("l", ScoreDictVar::kNUMERIC_VAR, TD::TE_LAG, "x"));
    lag->SetLags(1, {});
    Answers(*lag, inputs.get(), {{5, 0}});
    std::unique_ptr<ScoreDictVar> copy(lag->Clone());

    EXPECT_EQ(Answers(*lag, inputs.get(), {{6, 0}}), std::vector<double>{5});
    EXPECT_EQ(Answers(static_cast<TransformVar&>(*copy), inputs.get(), {{7, 0}}), std::vector<double>{5});

    // A case without the value: the next case answers missing.
    auto empty = Record({{"x", nullptr}, {"id", Num(0)}});
    lag->GetTransformedValue(empty.get(), inputs.get(), nullptr);
    EXPECT_EQ(Answers(*lag, inputs.get(), {{8, 0}, {9, 0}}), (std::vector<double>{kSysmis, 8}));
}

TEST(Lag, TextLagKeepsTheText) {
    auto inputs = Inputs({{"x", ScoreDictVar::STRING_VAR}});
    std::unique_ptr<TransformVar> lag(Derived("l", ScoreDictVar::STRING_VAR, TD::TE_LAG, "x"));
    lag->SetLags(1, {});
    std::vector<std::string> answers;
    for (char const* text : {"a", "b", "c"}) {
        auto record = Record({{"x", Text(text)}});
        answers.push_back(TextOf(lag->GetTransformedValue(record.get(), inputs.get(), nullptr)));
    }
    EXPECT_EQ(answers, (std::vector<std::string>{"", "a", "b"}));
}
