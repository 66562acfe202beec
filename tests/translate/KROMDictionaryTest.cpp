// The dictionary of the legacy dialect.
#include <memory>
#include <string>
#include <vector>

#include "DocumentTestSupport.h"
#include "vantry/translate/KROMTranslator.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/VarStats.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

// The dialect's translator with the document slot a plug-in would supply.
class LegacyTranslator : public KROMTranslator {
  public:
    using BaseTranslator::ParseFromTree;
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument*, std::string const&) override {
        return nullptr;
    }
};

class KROMDictionaryTest : public XercesTest {
  protected:
    void SetUp() override {
        XercesTest::SetUp();
        translator = std::make_unique<LegacyTranslator>();
        translator->CreateTranscoder("UTF-8");
    }
    void TearDown() override {
        translator.reset();
        XercesTest::TearDown();
    }

    std::unique_ptr<ScoreDictionary> Read(std::string const& xml) {
        return std::unique_ptr<ScoreDictionary>(
            translator->ParseDictionary(Parse(xml)->getDocumentElement()));
    }

    std::unique_ptr<LegacyTranslator> translator;
};

std::string Variable(std::string const& attributes, std::string const& children = "") {
    return "<dictionary><variable " + attributes + ">" + children + "</variable></dictionary>";
}

}  // namespace

TEST_F(KROMDictionaryTest, ReadsVariablesWithTheirParts) {
    std::string const document = ReadFixture("legacy_dictionary.xml");
    auto root = Parse(document)->getDocumentElement();
    std::unique_ptr<ScoreDictionary> dictionary(translator->ParseDictionary(
        static_cast<XERCES_CPP_NAMESPACE::DOMElement*>(BaseTranslator::GetChildByTag(root, "dictionary"))));
    ASSERT_EQ(dictionary->Size(), 4);

    ScoreDictVar* income = dictionary->GetVar("income");
    EXPECT_EQ(income->GetLabel(), "Yearly income");
    EXPECT_EQ(income->GetVarType(), ScoreDictVar::kNUMERIC_VAR);
    EXPECT_EQ(income->GetMLevel(), ScoreDictVar::MEASURE_CONTINUOUS);
    EXPECT_EQ(income->GetDecimal(), 2);
    EXPECT_EQ(income->GetWidth(), 10);
    ASSERT_NE(income->GetVarStats(), nullptr);
    EXPECT_DOUBLE_EQ(income->GetVarStats()->GetMax(), 250000);
    // A statistic that is not a number, or absent, is system-missing.
    EXPECT_EQ(income->GetVarStats()->GetMean(), NumericValue::GetSysmisValue());
    EXPECT_EQ(income->GetVarStats()->GetStddev(), NumericValue::GetSysmisValue());
    EXPECT_TRUE(IsMissingNumber(income, -1));
    EXPECT_TRUE(IsMissingNumber(income, 999999));
    EXPECT_FALSE(IsMissingNumber(income, 5));
    EXPECT_EQ(income->GetMissingValues()->Size(), 2);
    EXPECT_EQ(income->GetEncoder(), nullptr);

    ScoreDictVar* status = dictionary->GetVar("status");
    EXPECT_EQ(status->GetVarType(), ScoreDictVar::STRING_VAR);
    EXPECT_EQ(status->GetLabel(), "status");
    EXPECT_EQ(status->GetMLevel(), ScoreDictVar::MEASURE_NOMINAL);
    StringValue const single("S");
    EXPECT_EQ(status->GetLabelOfValue(&single), "Single");
    StringValue const unknown("?");
    EXPECT_TRUE(status->IsMissingValue(&unknown));
    ScoreEncoder* encoder = status->GetEncoder();
    ASSERT_NE(encoder, nullptr);
    EXPECT_EQ(encoder->GetNumberOfCategories(), 2);
    EXPECT_EQ(encoder->Decode(1), "M");

    EXPECT_EQ(dictionary->GetVar("rank")->GetMLevel(), ScoreDictVar::MEASURE_ORDINAL);
    EXPECT_EQ(dictionary->GetVar("rank")->GetEncoder(), nullptr);
    ScoreEncoder* code = dictionary->GetVar("code")->GetEncoder();
    ASSERT_NE(code, nullptr);
    EXPECT_EQ(code->GetNumberOfCategories(), 0);
}

TEST_F(KROMDictionaryTest, RefusalsNameTheVariable) {
    std::string const num = R"(name="v" storage-type="NUMERIC" measurement-level="NOMINAL")";
    std::string const wrap = "Error occurred in process 'variable' : 'v'.";
    std::pair<std::string, std::string> const cases[] = {
        {"<dictionary/>", "260283: No child element in Node 'dictionary'."},
        {"<dictionary><var/></dictionary>", "260178: Invalid node 'var', expect 'variable' in 'dictionary'."},
        {Variable(R"(storage-type="STRING" measurement-level="NOMINAL")"),
         "260223: Missing the attribute 'name' of 'variable'.Error occurred in process 'variable' : ''."},
        {Variable(R"(name="" storage-type="" measurement-level="NOMINAL")"),
         "260223: The 'name' of element 'variable' is null.Error occurred in process 'variable' : ''."},
        {Variable(R"(name="v" storage-type="" measurement-level="NOMINAL")"),
         "260223: The 'storage-type' of element 'variable' is null." + wrap},
        {"<dictionary><variable " + num + "/><variable " + num + "/></dictionary>",
         "260223: Duplicate definition of variable 'v', already in 'dictionary'." + wrap},
        {Variable(R"(name="v" storage-type="STRING" measurement-level="CONTINUOUS")"),
         "260223: Conflict setting between the value 'CONTINUOUS' of attribute 'measurement-level' and the "
         "value 'STRING' of attribute 'storage-type'." +
             wrap},
        {Variable(R"(name="v" storage-type="NUMERIC" measurement-level="SCALE")"),
         "260223: Invalid value 'SCALE' of attribute 'measurement-level'." + wrap},
        {Variable(num, "<categories><value/></categories>"),
         "260223: Invalid value 'value' of attribute 'category'." + wrap},
        {Variable(num, R"(<categories><category value="x"/></categories>)"),
         "260223: The value: 'x' is invalid of type: 'double'." + wrap},
        {Variable(num, R"(<missing-values><category value=""/></missing-values>)"),
         "260223: The 'value' of element 'category' is null." + wrap},
        {Variable(num, "<missing-values><range/></missing-values>"),
         "260223: Missing minimum 'category' in 'range'." + wrap},
        {Variable(num, R"(<missing-values><range><low value="1"/></range></missing-values>)"),
         "260223: Missing maximum 'category' in 'range'." + wrap},
        {Variable(num, R"(<missing-values><range><low value="1"/><high value=""/></range></missing-values>)"),
         "260223: Missing the attribute 'value' of 'category'." + wrap},
        {Variable(num, "<extra/>"), "260223: Invalid tag: 'extra'." + wrap},
        {Variable(num, R"(<categories/><missing-values><category value="1"/></missing-values>)"),
         "260223: Required value list for variable: 'v'." + wrap},
        // Only for strings does a missing value win over a category.
        {Variable(R"(name="v" storage-type="STRING" measurement-level="NOMINAL")",
                  R"(<categories><category value="a"/><category value="b"/></categories>)"
                  R"(<missing-values><category value="b"/></missing-values>)"),
         "260223: The '1'th value of variable: 'v' is missing or valid value intersect." + wrap},
        {Variable(num, R"(<format-spec width="4"/>)"),
         "260223: Invalid value '' of attribute 'decimals'." + wrap},
        {Variable(num, R"(<format-spec decimals="0" width="99999999"/>)"),
         "260223: Invalid value '99999999' of attribute 'width'." + wrap},
    };
    for (auto const& [xml, refusal] : cases) {
        EXPECT_EQ(Refusal([&] { Read(xml); }), refusal) << xml;
    }
    EXPECT_EQ(Refusal([&] { translator->ParseDictionary(nullptr); }),
              "260115: Missing node of 'dictionary' element  in 'krom-ml'.");
}
