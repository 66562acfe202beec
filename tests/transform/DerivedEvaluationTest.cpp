// Derived values computed case by case from hand-built variables: each expression kind with its missing
// and default rules, the dictionary's evaluation order, and copies.
#include <gtest/gtest.h>

#include "tests/transform/EvaluationSupport.h"
#include "vantry/transform/InlineTable.h"
#include "vantry/transform/MapValues.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"

using namespace evaltest;

namespace {

struct NormCase {
    int treatment;
    double input;
    double expected;
};

TransformVar* Norm(int treatment) {
    TransformVar* norm = Derived("n", ScoreDictVar::kNUMERIC_VAR, TD::TE_NORM_CONTINUOUS, "x");
    // (0,0) (10,100) (20,150): slopes 10 and 5, intercepts 0 and 50.
    for (auto [orig, target] : {std::pair{0.0, 0.0}, {10.0, 100.0}, {20.0, 150.0}}) {
        norm->AddLinearNorm(orig, target);
    }
    norm->AddNormInfo(10.0, 0.0);
    norm->AddNormInfo(5.0, 50.0);
    norm->SetOutlierTreatMent(treatment);
    norm->SetRecodeMissValueTo(Num(-1.0));
    return norm;
}

}  // namespace

TEST(DerivedEvaluation, FieldRefCopiesTheInputAndMapsMissingOnes) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}});
    TransformVar* ref = Derived("r", ScoreDictVar::kNUMERIC_VAR, TD::TE_FIELD_REF, "x");
    ref->SetRecodeMissValueTo(Num(99.0));
    TD dictionary;
    Fill(dictionary, {ref});

    for (auto [input, expected] : {std::pair{5.0, 5.0}, {kSysmis, 99.0}, {-2.5, -2.5}}) {
        auto record = Record({{"x", Num(input)}});
        ScoreCaseRecord const* values = dictionary.GetValuesForDerivedVars(record.get(), inputs.get());
        EXPECT_DOUBLE_EQ(NumberOf(values->Get("r")), expected) << input;
        EXPECT_TRUE(dictionary.IsVarValueComputed(ref));
    }
    // A record without a value for the field maps it as missing too.
    auto other = Record({{"x", nullptr}});
    EXPECT_DOUBLE_EQ(NumberOf(ref->GetTransformedValue(other.get(), inputs.get(), &dictionary)), 99.0);
}

TEST(DerivedEvaluation, StringResultsAreCutToTheWidth) {
    TransformVar* constant = Derived("c", ScoreDictVar::STRING_VAR, TD::TE_CONSTANT);
    constant->SetConstString("abcdef");
    constant->SetWidth(3);
    TransformVar* ref = Derived("r", ScoreDictVar::STRING_VAR, TD::TE_FIELD_REF, "s");
    ref->SetWidth(2);
    TD dictionary;
    Fill(dictionary, {constant, ref});
    auto inputs = Inputs({{"s", ScoreDictVar::STRING_VAR}});
    auto record = Record({{"s", Text("wxyz")}});

    ScoreCaseRecord const* values = dictionary.GetValuesForDerivedVars(record.get(), inputs.get());
    EXPECT_EQ(TextOf(values->Get("c")), "abc");
    EXPECT_EQ(TextOf(values->Get("r")), "wx");
    auto const* cut =
        static_cast<StringValue const*>(constant->GetTransformedValue(record.get(), nullptr, nullptr));
    EXPECT_EQ(cut->GetLength(), 3);
}

TEST(DerivedEvaluation, NormContinuousFollowsTheSegmentsAndTheOutlierTreatment) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}});
    NormCase const cases[] = {
        {0, 5.0, 50.0},   {0, 15.0, 125.0}, {0, 30.0, 200.0}, {0, -5.0, -50.0},
        {1, 30.0, 200.0},  // as missing values behaves as "as is"
        {2, 30.0, 150.0}, {2, -5.0, 0.0},   {2, 10.0, 100.0}, {0, kSysmis, -1.0},
    };
    for (NormCase const& c : cases) {
        std::unique_ptr<TransformVar> norm(Norm(c.treatment));
        auto record = Record({{"x", Num(c.input)}});
        EXPECT_DOUBLE_EQ(NumberOf(norm->GetTransformedValue(record.get(), inputs.get(), nullptr)), c.expected)
            << c.treatment << " " << c.input;
    }
}

TEST(DerivedEvaluation, NormDiscreteGivesItsConstantForAnyPresentInput) {
    auto inputs = Inputs({{"color", ScoreDictVar::STRING_VAR}});
    std::unique_ptr<TransformVar> indicator(
        Derived("isRed", ScoreDictVar::kNUMERIC_VAR, TD::TE_NORM_DISCRETE, "color"));
    indicator->SetRecodeDefaultValue(Num(1.0));
    indicator->SetRecodeMissValueTo(Num(-7.0));

    auto red = Record({{"color", Text("red")}});
    auto blue = Record({{"color", Text("blue")}});
    auto none = Record({{"color", nullptr}});
    EXPECT_DOUBLE_EQ(NumberOf(indicator->GetTransformedValue(red.get(), inputs.get(), nullptr)), 1.0);
    EXPECT_DOUBLE_EQ(NumberOf(indicator->GetTransformedValue(blue.get(), inputs.get(), nullptr)), 1.0);
    EXPECT_DOUBLE_EQ(NumberOf(indicator->GetTransformedValue(none.get(), inputs.get(), nullptr)), -7.0);
}

TEST(DerivedEvaluation, DiscretizeTakesTheFirstMatchingBin) {
    auto inputs = Inputs({{"age", ScoreDictVar::kNUMERIC_VAR}});
    std::unique_ptr<TransformVar> bins(Derived("band", ScoreDictVar::STRING_VAR, TD::TE_DISCRETIZE, "age"));
    bins->AddBinningValue(new Range(Num(0.0), Num(10.0), true, false), Text("low"), "age");
    bins->AddBinningValue(new Range(Num(5.0), Num(20.0), true, true), Text("mid"), "age");
    bins->AddBinningValue(new Range(nullptr, Num(0.0), false, false), Text("neg"), "age");
    bins->AddBinningValue(new Range(Num(30.0), Num(40.0), true, true), nullptr, "age");
    bins->SetRecodeDefaultValue(Text("other"));
    bins->SetRecodeMissValueTo(Text("unknown"));

    std::pair<double, char const*> const cases[] = {{7.0, "low"},    {10.0, "mid"},        {-3.0, "neg"},
                                                    {25.0, "other"}, {kSysmis, "unknown"}, {35.0, ""}};
    for (auto [age, expected] : cases) {
        auto record = Record({{"age", Num(age)}});
        EXPECT_EQ(TextOf(bins->GetTransformedValue(record.get(), inputs.get(), nullptr)), expected) << age;
    }
    EXPECT_EQ(bins->GetOrigIntervalForBinningValue("low", true), "0<=age<10");
    EXPECT_EQ(bins->GetOrigIntervalForBinningValue("low", false), "[0,10)");
    EXPECT_EQ(bins->GetOrigIntervalForBinningValue("mid", false), "[5,20]");
    EXPECT_EQ(bins->GetOrigIntervalForBinningValue("neg", true), "age<0");
    EXPECT_EQ(bins->GetOrigIntervalForBinningValue("neg", false), "<0");
    EXPECT_EQ(bins->GetOrigIntervalForBinningValue("none", true), "none");
}

TEST(DerivedEvaluation, MapValuesLooksUpRowsAndMapsMissingInputs) {
    auto inputs = Inputs({{"a", ScoreDictVar::kNUMERIC_VAR}, {"b", ScoreDictVar::STRING_VAR}});
    auto make = [&](bool withDefault) {
        auto* mapped = Derived("m", ScoreDictVar::STRING_VAR, TD::TE_MAP_VALUES, "b");
        auto* map = new MapValues(mapped);
        map->AddFieldColumnPair("ca", "a", inputs->GetVar("a"));
        map->AddFieldColumnPair("cb", "b", inputs->GetVar("b"));
        auto* table = new InlineTable();
        table->AppendInputField(inputs->GetVar("a"));
        table->AppendInputField(inputs->GetVar("b"));
        table->AddInputOutput({Num(1.0), Text("x")}, Text("one-x"));
        table->AddInputOutput({Num(2.0), Text("x")}, Text("two-x"));
        map->SetInlineTable(table);
        map->SetMapMissingTo(Text("missing"));
        if (withDefault) {
            map->SetDefaultValue(Text("default"));
        }
        mapped->SetMapValues(map);
        return std::unique_ptr<TransformVar>(mapped);
    };
    auto withDefault = make(true);
    auto without = make(false);

    auto hit = Record({{"a", Num(2.0)}, {"b", Text("x")}});
    auto miss = Record({{"a", Num(3.0)}, {"b", Text("x")}});
    auto missing = Record({{"a", Num(kSysmis)}, {"b", Text("x")}});
    EXPECT_EQ(TextOf(withDefault->GetTransformedValue(hit.get(), inputs.get(), nullptr)), "two-x");
    EXPECT_EQ(TextOf(withDefault->GetTransformedValue(miss.get(), inputs.get(), nullptr)), "default");
    EXPECT_EQ(TextOf(withDefault->GetTransformedValue(missing.get(), inputs.get(), nullptr)), "missing");
    EXPECT_EQ(TextOf(without->GetTransformedValue(miss.get(), inputs.get(), nullptr)), "");
    EXPECT_EQ(TextOf(without->GetTransformedValue(hit.get(), inputs.get(), nullptr)), "two-x");
}

TEST(DerivedEvaluation, ApplyTreesHandleConditionsAndMissingArguments) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}});
    // if (isMissing (x)) -1 else x * 2
    auto guarded = Applied(Fn(TD::TF_IF, {Fn(TD::TF_IS_MISSING, {Leaf("x")}), Const(Num(-1.0)),
                                          Fn(TD::TF_MULTIPLY, {Leaf("x"), Const(Num(2.0))})}));
    // if (x > 5) 1, with no else branch
    auto noElse =
        Applied(Fn(TD::TF_IF, {Fn(TD::TF_GREATER_THAN, {Leaf("x"), Const(Num(5.0))}), Const(Num(1.0))}));
    // isMissing of a field whose missing input is mapped: sees the mapped value.
    auto mappedField = Applied(Fn(TD::TF_IS_MISSING, {Leaf("x", Num(0.0))}));
    // x - 1 with node-level mapMissingTo, and one with only a default.
    auto minusMapped = Applied(Fn(TD::TF_MINUS, {Leaf("x"), Const(Num(1.0))}, {Num(42.0), Num(43.0)}));
    auto minusDefault = Applied(Fn(TD::TF_MINUS, {Leaf("x"), Const(Num(1.0))}, {nullptr, Num(43.0)}));
    // One argument: neither applies.
    auto single = Applied(Fn(TD::TF_ABS, {Leaf("x")}, {Num(42.0), Num(43.0)}));
    // An invalid result: asMissing takes the default, asIs keeps the missing number.
    auto lnAsMissing =
        Applied(Fn(TD::TF_LN, {Leaf("x")}, {nullptr, Num(7.0), ApplyNodeStats::IVT_AS_MISSING}));
    auto lnAsIs = Applied(Fn(TD::TF_LN, {Leaf("x")}, {nullptr, Num(7.0), ApplyNodeStats::IVT_AS_IS}));

    struct Row {
        TransformVar* variable;
        double x;
        double expected;
    };
    Row const rows[] = {
        {guarded.get(), 3.0, 6.0},
        {guarded.get(), kSysmis, -1.0},
        {noElse.get(), 7.0, 1.0},
        {noElse.get(), 2.0, 0.0},
        {mappedField.get(), kSysmis, 0.0},
        {mappedField.get(), 4.0, 0.0},
        {minusMapped.get(), kSysmis, 42.0},
        {minusMapped.get(), 3.0, 2.0},
        {minusDefault.get(), kSysmis, 43.0},
        {single.get(), kSysmis, kSysmis},
        {lnAsMissing.get(), -1.0, 7.0},
        {lnAsIs.get(), -1.0, kSysmis},
        {lnAsIs.get(), 1.0, 0.0},
    };
    for (Row const& row : rows) {
        auto record = Record({{"x", Num(row.x)}});
        EXPECT_DOUBLE_EQ(NumberOf(row.variable->GetTransformedValue(record.get(), inputs.get(), nullptr)),
                         row.expected)
            << (&row - rows);
    }
}

// Arithmetic trees take a faster road than the other functions; these rows pin what they must still do.
TEST(DerivedEvaluation, ArithmeticKeepsTheMissingRulesOfEveryNode) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}, {"y", ScoreDictVar::kNUMERIC_VAR}});
    // y declares -9 missing: a number like any other to the record, missing to the variable.
    auto declared = std::make_unique<MissingValueSet>();
    declared->Add(new Range(-9.0, -9.0, true, true));
    inputs->GetVar("y")->SetMissingValues(declared.release());
    // "+" collects no arguments, so its mapMissingTo never applies; "*" collects both.
    auto plusMapped = Applied(Fn(TD::TF_PLUS, {Leaf("x"), Const(Num(1.0))}, {Num(42.0), Num(43.0)}));
    auto timesMapped = Applied(Fn(TD::TF_MULTIPLY, {Leaf("x"), Leaf("y")}, {Num(42.0)}));
    // A field's own mapMissingTo feeds the operator.
    auto fieldMapped = Applied(Fn(TD::TF_MINUS, {Leaf("x", Num(10.0)), Leaf("y")}));
    // A branch inside arithmetic, arithmetic inside the branch, and a division by zero treated asMissing.
    auto nested = Applied(Fn(TD::TF_PLUS, {Fn(TD::TF_IF, {Fn(TD::TF_GREATER_THAN, {Leaf("x"), Leaf("y")}),
                                                          Fn(TD::TF_DIVIDE, {Leaf("x"), Leaf("y")})}),
                                           Const(Num(0.5))}));
    auto divideAsMissing = Applied(
        Fn(TD::TF_DIVIDE, {Leaf("x"), Leaf("y")}, {nullptr, Num(-1.0), ApplyNodeStats::IVT_AS_MISSING}));

    struct Row {
        TransformVar* variable;
        double x;
        double y;
        double expected;
    };
    Row const rows[] = {
        {plusMapped.get(), kSysmis, 0.0, kSysmis},
        {plusMapped.get(), 2.0, 0.0, 3.0},
        {timesMapped.get(), kSysmis, 3.0, 42.0},
        {timesMapped.get(), 2.0, -9.0, 42.0},
        {timesMapped.get(), 2.0, 3.0, 6.0},
        {fieldMapped.get(), kSysmis, 4.0, 6.0},
        {fieldMapped.get(), 5.0, -9.0, kSysmis},
        {nested.get(), 6.0, 3.0, 2.5},
        {nested.get(), 1.0, 3.0, 0.5},
        {divideAsMissing.get(), 1.0, 0.0, -1.0},
        {divideAsMissing.get(), 1.0, 4.0, 0.25},
    };
    for (Row const& row : rows) {
        auto record = Record({{"x", Num(row.x)}, {"y", Num(row.y)}});
        EXPECT_DOUBLE_EQ(NumberOf(row.variable->GetTransformedValue(record.get(), inputs.get(), nullptr)),
                         row.expected)
            << (&row - rows);
    }

    // A new tree replaces the old one at once.
    plusMapped->SetRoot(Fn(TD::TF_MINUS, {Leaf("x"), Const(Num(1.0))}));
    auto record = Record({{"x", Num(2.0)}, {"y", Num(0.0)}});
    EXPECT_DOUBLE_EQ(NumberOf(plusMapped->GetTransformedValue(record.get(), inputs.get(), nullptr)), 1.0);
}

TEST(DerivedEvaluation, ApplyComparesTextsAndBuildsStrings) {
    auto inputs = Inputs({{"s", ScoreDictVar::STRING_VAR}});
    inputs->GetVar("s")->SetWidth(4);
    // concat (uppercase (s), s): each piece padded to the field's width.
    auto text =
        Applied(Fn(TD::TF_CONCAT, {Fn(TD::TF_UPPERCASE, {Leaf("s")}), Leaf("s")}), ScoreDictVar::STRING_VAR);
    auto same = Applied(Fn(TD::TF_IS_IN, {Leaf("s"), Const(Text("ab")), Const(Text("cd"))}));

    for (auto [input, concat, found] : {std::tuple{"ab", "AB  ab  ", 1.0}, {"zz", "ZZ  zz  ", 0.0}}) {
        auto record = Record({{"s", Text(input)}});
        EXPECT_EQ(TextOf(text->GetTransformedValue(record.get(), inputs.get(), nullptr)), concat);
        EXPECT_DOUBLE_EQ(NumberOf(same->GetTransformedValue(record.get(), inputs.get(), nullptr)), found);
    }
}

TEST(DerivedEvaluation, DictionaryEvaluatesInOrderAndKeepsValuesWithoutRecord) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}});
    TransformVar* twice = Derived("twice", ScoreDictVar::kNUMERIC_VAR, TD::TE_APPLY);
    twice->SetRoot(Fn(TD::TF_MULTIPLY, {Leaf("x"), Const(Num(2.0))}));
    // Reads the derived value through a tree leaf and through a field reference.
    TransformVar* plusOne = Derived("plusOne", ScoreDictVar::kNUMERIC_VAR, TD::TE_APPLY);
    plusOne->SetRoot(Fn(TD::TF_PLUS, {Leaf("twice"), Const(Num(1.0))}));
    TransformVar* copy = Derived("copy", ScoreDictVar::kNUMERIC_VAR, TD::TE_FIELD_REF, "twice");
    TD dictionary;
    Fill(dictionary, {twice, plusOne, copy});
    EXPECT_EQ(dictionary.GetDerivedVarNames(), (std::vector<std::string>{"twice", "plusOne", "copy"}));

    auto first = Record({{"x", Num(3.0)}});
    dictionary.GetValuesForDerivedVars(first.get(), inputs.get());
    auto second = Record({{"x", Num(10.0)}});
    ScoreCaseRecord const* values = dictionary.GetValuesForDerivedVars(second.get(), inputs.get());
    EXPECT_DOUBLE_EQ(NumberOf(values->Get("twice")), 20.0);
    EXPECT_DOUBLE_EQ(NumberOf(values->Get("plusOne")), 21.0);
    EXPECT_DOUBLE_EQ(NumberOf(values->Get("copy")), 20.0);

    EXPECT_EQ(dictionary.GetValuesForDerivedVars(nullptr, inputs.get()), values);
    EXPECT_DOUBLE_EQ(NumberOf(dictionary.GetVarValue("plusOne")), 21.0);
    EXPECT_EQ(TD().GetVarValue("plusOne"), nullptr);
}

TEST(DerivedEvaluation, CopiesEvaluateIndependently) {
    auto inputs = Inputs({{"x", ScoreDictVar::kNUMERIC_VAR}});
    TransformVar* twice = Derived("twice", ScoreDictVar::kNUMERIC_VAR, TD::TE_APPLY);
    twice->SetRoot(Fn(TD::TF_MULTIPLY, {Leaf("x"), Const(Num(2.0))}));
    TransformVar* band = Derived("band", ScoreDictVar::STRING_VAR, TD::TE_DISCRETIZE, "twice");
    band->AddBinningValue(new Range(Num(0.0), Num(10.0), true, false), Text("small"), "twice");
    band->SetRecodeDefaultValue(Text("large"));
    auto original = std::make_unique<TD>();
    Fill(*original, {twice, band});

    auto small = Record({{"x", Num(2.0)}});
    original->GetValuesForDerivedVars(small.get(), inputs.get());
    TD copied(*original);
    TD assigned;
    assigned = *original;
    original.reset();

    auto large = Record({{"x", Num(8.0)}});
    ScoreCaseRecord const* values = copied.GetValuesForDerivedVars(large.get(), inputs.get());
    EXPECT_EQ(TextOf(values->Get("band")), "large");
    EXPECT_EQ(TextOf(assigned.GetVarValue("band")), "small");
    values = assigned.GetValuesForDerivedVars(small.get(), inputs.get());
    EXPECT_DOUBLE_EQ(NumberOf(values->Get("twice")), 4.0);
    EXPECT_EQ(TextOf(copied.GetVarValue("band")), "large");
}

TEST(DerivedEvaluation, BrokenSetupsGiveMissingValues) {
    // A variable that refers to itself, a tree over an unknown field, and evaluation without a record.
    TransformVar* self = Derived("self", ScoreDictVar::kNUMERIC_VAR, TD::TE_FIELD_REF, "self");
    TransformVar* unknown = Derived("unknown", ScoreDictVar::kNUMERIC_VAR, TD::TE_APPLY);
    unknown->SetRoot(Fn(TD::TF_PLUS, {Leaf("nowhere"), Const(Num(1.0))}));
    TransformVar* lag = Derived("lag", ScoreDictVar::STRING_VAR, TD::TE_LAG, "nowhere");
    lag->SetLags(1, {nullptr});
    TD dictionary;
    Fill(dictionary, {self, unknown, lag});
    auto record = Record({{"x", Num(1.0)}});

    ScoreCaseRecord const* values = dictionary.GetValuesForDerivedVars(record.get(), nullptr);
    EXPECT_DOUBLE_EQ(NumberOf(values->Get("self")), kSysmis);
    EXPECT_DOUBLE_EQ(NumberOf(values->Get("unknown")), kSysmis);
    EXPECT_EQ(TextOf(values->Get("lag")), "");
    for (TransformVar* variable : {self, unknown, lag}) {
        ASSERT_NE(variable->GetTransformedValue(nullptr, nullptr, nullptr), nullptr);
    }
}
