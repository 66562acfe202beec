// The result dictionary of a model's outputs and the targets applied to the data dictionary.
#include <string>
#include <vector>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/factory/ResultVar.h"
#include "vantry/values/ValueProbability.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

class PMMLTargetsTest : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        dictionary = Dictionary(R"(<DataDictionary numberOfFields="4">
            <DataField name="y" optype="continuous"/>
            <DataField name="c" optype="categorical" dataType="string"><Value value="a" displayValue="Alpha"/>
            </DataField>
            <DataField name="n" optype="ordinal"/>
            <DataField name="f" optype="categorical" dataType="string"><Extension name="measure" value="flag"/>
            </DataField></DataDictionary>)");
    }

    bool Targets(std::string const& targets) {
        return translator->HandleTargets(Root(targets), dictionary.get());
    }
};

std::string Output(std::string const& fields) {
    return "<Output>" + fields + "</Output>";
}

}  // namespace

TEST_F(PMMLTargetsTest, ResultFieldsBecomeResultVariables) {
    std::unique_ptr<ScoreDictionary> results(translator->ParseResultDictionary(Root(Output(
        R"(<ResultField name="p" displayName="" optype="categorical" dataType="string" feature="categorical")"
        R"( value="yes"/>)"
        R"(<Group><ResultField name="q" optype="continuous" dataType="integer" feature=""/></Group>)"
        R"(<ResultField name="p" displayName="Second" feature="probability"/>)"))));
    ASSERT_NE(results, nullptr);
    EXPECT_EQ(results->Size(), 2);
    auto* p = dynamic_cast<ResultVar*>(results->GetVar("p"));
    ASSERT_NE(p, nullptr);
    // The first of two fields of one name stays.
    EXPECT_EQ(p->GetLabel(), "p");
    EXPECT_EQ(p->GetVarType(), ScoreDictVar::STRING_VAR);
    EXPECT_EQ(p->GetMLevel(), ScoreDictVar::MEASURE_NOMINAL);
    EXPECT_EQ(p->GetFeature(), ScoreResultField::kPredictedDisplayValue);
    ASSERT_NE(p->GetDefValue(), nullptr);
    EXPECT_EQ(ScoreValue::TextOf(*p->GetDefValue()), "yes");
    auto* q = dynamic_cast<ResultVar*>(results->GetVar("q"));
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(q->GetVarType(), ScoreDictVar::kNUMERIC_VAR);
    EXPECT_EQ(q->GetFeature(), ScoreResultField::kFeatureNone);
    EXPECT_EQ(q->GetDefValue(), nullptr);

    EXPECT_EQ(translator->ParseResultDictionary(Root("<Output><Other/></Output>")), nullptr);
}

TEST_F(PMMLTargetsTest, ResultFieldRefusals) {
    std::pair<char const*, char const*> const cases[] = {
        {R"(<ResultField name="p"/>)", "260120: Missing the attribute 'feature' of 'ResultField'."},
        {R"(<ResultField name="" feature=""/>)", "260285: The 'name' of element 'ResultField' is null."},
        {R"(<ResultField name="p" optype="nominal" feature=""/>)",
         "260152: Invalid value 'nominal' of attribute 'optype'."},
        {R"(<ResultField name="p" feature="reasonCode"/>)",
         "260153: Invalid value: 'reasonCode' of attribute 'feature' in 'ResultField'."},
        // A failure after earlier fields were added frees them with the dictionary.
        {R"(<ResultField name="a" feature=""/><ResultField name="a" feature="bad"/>)",
         "260153: Invalid value: 'bad' of attribute 'feature' in 'ResultField'."},
    };
    for (auto const& [field, refusal] : cases) {
        EXPECT_EQ(Refusal([&] { delete translator->ParseResultDictionary(Root(Output(field))); }), refusal);
    }
    EXPECT_EQ(Refusal([&] { translator->ParseResultDictionary(nullptr); }),
              "260114: Missing node: 'ResultField'.");
}

TEST_F(PMMLTargetsTest, TargetsAddCategoriesPriorsAndDefaults) {
    EXPECT_TRUE(translator->HandleTargets(nullptr, dictionary.get()));
    EXPECT_TRUE(Targets(R"(<Targets><Other/>
        <Target field="y" optype="continuous"><TargetValue defaultValue="2.5"/><TargetValue defaultValue="9"/>
        </Target>
        <Target field="c" optype=""><TargetValue value="a" displayValue="Other" priorProbability="0.25"/>
        <TargetValue value="b" priorProbability="0.75"/></Target>
        <Target field="n" optype="ordinal"><TargetValue value="3"/></Target>
        <Target field="f" optype="categorical"/></Targets>)"));
    EXPECT_DOUBLE_EQ(dictionary->GetVar("y")->GetDefValue()->GetDouble(), 2.5);
    // An existing label stays; a new value is added behind it.
    EXPECT_EQ(CategoryTexts(dictionary->GetVar("c")), (std::vector<std::string>{"a=Alpha", "b=b"}));
    ScoreValueProbabilitySet const* priors = dictionary->GetVar("c")->GetValueProbabilities();
    ASSERT_NE(priors, nullptr);
    StringValue const b("b");
    EXPECT_DOUBLE_EQ(priors->GetProbabilityOfValue(&b), 0.75);
    EXPECT_EQ(CategoryTexts(dictionary->GetVar("n")), (std::vector<std::string>{"3=3"}));
    EXPECT_EQ(dictionary->GetVar("n")->GetValueProbabilities(), nullptr);
    EXPECT_EQ(dictionary->GetVar("f")->GetValueLabels(), nullptr);
}

TEST_F(PMMLTargetsTest, BadTargetsAnswerFalseAndKeepWhatWasApplied) {
    char const* const bad[] = {
        R"(<Target field="nothere" optype=""/>)",
        R"(<Target field="y" optype="categorical"/>)",
        R"(<Target field="y" optype="nominal"/>)",
        R"(<Target field="" optype=""/>)",
        R"(<Target field="y"/>)",
        R"(<Target field="n" optype=""><TargetValue value=""/></Target>)",
        R"(<Target field="n" optype=""><TargetValue value="x"/></Target>)",
        R"(<Target field="c" optype=""><TargetValue value="z" priorProbability="p"/></Target>)",
        R"(<Target field="n" optype=""><TargetValue value="1"/><TargetValue value="1.0"/></Target>)",
    };
    for (char const* target : bad) {
        EXPECT_FALSE(Targets(std::string("<Targets>") + target + "</Targets>")) << target;
    }
    // A flag variable gets its labels before the count is refused; an earlier target stays applied.
    EXPECT_FALSE(Targets(R"(<Targets><Target field="y" optype=""><TargetValue defaultValue="1"/></Target>
        <Target field="f" optype=""><TargetValue value="1"/><TargetValue value="2"/><TargetValue value="3"/>
        </Target></Targets>)"));
    EXPECT_DOUBLE_EQ(dictionary->GetVar("y")->GetDefValue()->GetDouble(), 1.0);
    EXPECT_EQ(dictionary->GetVar("f")->GetNumberOfCats(), 3);
}
