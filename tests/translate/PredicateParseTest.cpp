// PMML predicates read into predicate trees: the split chosen per field, compound simplification and
// refusals.
#include <memory>
#include <string>
#include <vector>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreSplitVar.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

class PredicateParseTest : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        dictionary = Dictionary(R"(<DataDictionary numberOfFields="3">
            <DataField name="x" optype="continuous" dataType="double"/>
            <DataField name="c" optype="categorical" dataType="string">
            <Value value="a"/><Value value="b"/><Value value="c"/></DataField>
            <DataField name="o" optype="ordinal" dataType="integer">
            <Value value="1"/><Value value="2"/><Value value="3"/></DataField></DataDictionary>)");
        second = Dictionary(R"(<DataDictionary numberOfFields="1">
            <DataField name="y" optype="continuous" dataType="double"/></DataDictionary>)");
    }
    void TearDown() override {
        second.reset();
        DocumentTest::TearDown();
    }

    std::unique_ptr<ScorePredicate> Simple(std::string const& xml, bool scaleOrdinal = false) {
        return std::unique_ptr<ScorePredicate>(
            translator->ParsePredicate(Root(xml), dictionary.get(), second.get(), scaleOrdinal));
    }
    std::unique_ptr<ScorePredicate> Set(std::string const& xml) {
        return std::unique_ptr<ScorePredicate>(
            translator->ParseSetPredicate(Root(xml), dictionary.get(), second.get()));
    }
    std::unique_ptr<ScorePredicate> Compound(std::string const& op, std::string const& children) {
        std::string const xml = "<CompoundPredicate" + (op.empty() ? "" : " booleanOperator=\"" + op + "\"") +
                                ">" + children + "</CompoundPredicate>";
        return std::unique_ptr<ScorePredicate>(
            translator->ParseCompoundPredicate(Root(xml), dictionary.get(), second.get(), false));
    }

    std::unique_ptr<ScoreDictionary> second;
};

char const kXAbove5[] = R"(<SimplePredicate field="x" operator="greaterThan" value="5"/>)";
char const kCIsB[] = R"(<SimplePredicate field="c" operator="equal" value="b"/>)";

bool IsDiscrete(ScorePredicate const& predicate) {
    return dynamic_cast<DiscreteSplit const*>(predicate.GetSplit()) != nullptr;
}

TEST_F(PredicateParseTest, SimplePredicateSplitsByMeasureLevel) {
    auto above = Simple(kXAbove5);
    auto& simple = static_cast<SimplePredicate&>(*above);
    EXPECT_FALSE(IsDiscrete(simple));
    EXPECT_EQ(SimplePredicate::OP_GREATER_THAN, simple.GetPredicateOperator());
    EXPECT_EQ(5.0, simple.GetPredValueByDouble());
    dictionary->GetVar("x")->SetEncodedValueIndex(0);
    EXPECT_EQ(ScorePredicate::PRED_TRUE, simple.Evaluate(std::vector<double>{6.0}));

    EXPECT_TRUE(IsDiscrete(*Simple(kCIsB)));
    char const ordinal[] = R"(<SimplePredicate field="o" operator="lessThan" value="3"/>)";
    EXPECT_TRUE(IsDiscrete(*Simple(ordinal)));
    EXPECT_FALSE(IsDiscrete(*Simple(ordinal, true)));

    auto missing = Simple(R"(<SimplePredicate field="y" operator="isMissing"/>)");
    auto& isMissing = static_cast<SimplePredicate&>(*missing);
    EXPECT_TRUE(isMissing.IsMissingValue());
    EXPECT_EQ(SimplePredicate::OP_IS_MISSING, isMissing.GetPredicateOperator());
    EXPECT_EQ(ScorePredicate::PRED_TRUE, isMissing.Evaluate(nullptr, nullptr));
}

TEST_F(PredicateParseTest, SetPredicateNeedsCategories) {
    auto set = Set(R"(<SimpleSetPredicate field="o" booleanOperator="isNotIn">
                      <Array type="int">2</Array></SimpleSetPredicate>)");
    ASSERT_NE(nullptr, set);
    EXPECT_EQ(SetPredicate::SET_OTHER, static_cast<SetPredicate&>(*set).GetPredicateOperator());
    EXPECT_EQ((std::vector<double>{1.0, 3.0}), static_cast<SetPredicate&>(*set).GetArrayData());
    EXPECT_EQ(nullptr, Set(R"(<SimpleSetPredicate field="x" booleanOperator="isIn">
                               <Array type="real">1</Array></SimpleSetPredicate>)"));
}

TEST_F(PredicateParseTest, CompoundKeepsOrDropsChildren) {
    std::string const extension = "<Extension/>";
    struct Case {
        char const* op;
        std::string children;
        int type;  // the predicate type of the result, -1 for none
    };
    Case const cases[] = {
        {"and", kXAbove5 + std::string("<True/>") + extension, ScorePredicate::SIMPLE_PREDICATE},
        {"and", "<True/><True/>", ScorePredicate::TRUE_PREDICATE},
        {"or", "<False/>", ScorePredicate::FALSE_PREDICATE},
        {"or", "<True/>", ScorePredicate::TRUE_PREDICATE},
        {"xor", "<False/>", ScorePredicate::FALSE_PREDICATE},
        {"surrogate", extension, -1},
        {"and", "<False/>", ScorePredicate::FALSE_PREDICATE},
        {"or", kCIsB + std::string("<False/>") + kXAbove5, ScorePredicate::COMPOUND_PREDICATE},
        {"and", R"(<SimpleSetPredicate field="x" booleanOperator="isIn"><Array type="real">1</Array>
                   </SimpleSetPredicate>)",
         -1},
    };
    for (Case const& c : cases) {
        auto result = Compound(c.op, c.children);
        EXPECT_EQ(c.type, result ? result->GetPredType() : -1) << c.op << " " << c.children;
    }
}

TEST_F(PredicateParseTest, NestedTreeEvaluatesOnRecords) {
    // surrogate(y > 5, and(c = b, x > 5)): y is missing, so the "and" decides through the surrogate.
    auto tree = Compound("surrogate", R"(<SimplePredicate field="y" operator="greaterThan" value="5"/>
        <CompoundPredicate booleanOperator="and">)" +
                                          std::string(kCIsB) + kXAbove5 + "<True/></CompoundPredicate>");
    ASSERT_EQ(ScorePredicate::COMPOUND_PREDICATE, tree->GetPredType());
    auto& surrogate = static_cast<CompoundPredicate&>(*tree);
    ASSERT_EQ(2, surrogate.GetCount());
    EXPECT_EQ(ScorePredicate::BOOL_AND,
              static_cast<CompoundPredicate*>(surrogate.GetPredicates()[1])->GetBoolOperator());
    EXPECT_EQ(2, static_cast<CompoundPredicate*>(surrogate.GetPredicates()[1])->GetCount());

    CaseRecord record;
    record.Add("x", new NumericValue(7.0));
    record.Add("c", new StringValue("b"));
    EXPECT_EQ(ScorePredicate::PRED_SURROGATE_TRUE, tree->Evaluate(&record, nullptr));
    record.SetValue("c", std::string("a"));
    EXPECT_EQ(ScorePredicate::PRED_FALSE, tree->Evaluate(&record, nullptr));
    record.Add("y", new NumericValue(6.0));
    EXPECT_EQ(ScorePredicate::PRED_TRUE, tree->Evaluate(&record, nullptr));
}

TEST_F(PredicateParseTest, Refusals) {
    EXPECT_EQ(
        Refusal([&] { Simple(R"(<SimplePredicate field="q" operator="equal" value="1"/>)"); }),
        "260125: Missing variable:'q' definition in the 'DataDictionary' and 'TransformationDictionary'.");
    EXPECT_EQ(Refusal([&] { Compound("nand", kXAbove5); }),
              "260153: Invalid value: 'nand' of attribute 'booleanOperator' in 'CompoundPredicate'.");
    EXPECT_EQ(Refusal([&] { Compound("", kXAbove5); }),
              "260153: Invalid value: '' of attribute 'booleanOperator' in 'CompoundPredicate'.");
    // A refusal deep in the tree frees the children already read (the leak check would fail otherwise).
    EXPECT_EQ(Refusal([&] {
                  Compound("or", kXAbove5 + std::string(R"(<CompoundPredicate booleanOperator="and">)") +
                                     kCIsB + R"(<SimplePredicate field="c" operator="equal" value="w"/>)" +
                                     "</CompoundPredicate>");
              }),
              "260291: No valid value in value list of variable: 'c'.");
}

}  // namespace
