// The translator frame's helpers: blank trimming, the number checks, the DOM walks and the transcoder.
#include <xercesc/util/XMLString.hpp>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"

using QXVantry_920::BaseTranslator;
using QXVantry_920::ScoreModel;
using namespace vantry_test;
XERCES_CPP_NAMESPACE_USE

namespace {

// The smallest concrete translator, with the protected text conversion opened up.
class PlainTranslator : public BaseTranslator {
  public:
    using BaseTranslator::ParseFromTree;
    ScoreModel* ParseFromTree(DOMDocument*, std::string const&) override { return nullptr; }
    std::string Text(XMLCh const* text) { return ToString(text); }
    QXVantry_920::VantryTranscoder* Transcoder() const { return fTranscoder; }
};

std::string Trimmed(std::string const& text) {
    return BaseTranslator::TrimBlanks(text);
}

// The UTF-16 overloads transcode through Xerces-C, which must be running.
using VerifyDouble = XercesTest;
using VerifyInt = XercesTest;

}  // namespace

TEST(TrimBlanks, TrailingBlanksGoOnlyWithoutLeadingOnes) {
    const std::pair<const char*, const char*> cases[] = {
        {"ab  ", "ab"}, {"  ab", "ab"}, {" ab ", "ab "},      {"  a b  ", "a b  "},
        {"   ", "   "}, {"", ""},       {"\tab\t", "\tab\t"}, {"a", "a"},
    };
    for (auto const& [text, expected] : cases)
        EXPECT_EQ(Trimmed(text), expected) << '[' << text << ']';
}

TEST_F(VerifyDouble, AcceptsDecimalNumbers) {
    const std::pair<const char*, double> cases[] = {
        {"0", 0.0},   {"12.25", 12.25}, {" 1.5", 1.5},  {".5", 0.5},      {"+5", 5.0},        {"-5", -5.0},
        {"1e5", 1e5}, {"1E5", 1e5},     {"1.0e5", 1e5}, {"-1e-5", -1e-5}, {"2.5E+3", 2500.0}, {"1.5  ", 1.5},
    };
    for (auto const& [text, value] : cases)
        EXPECT_DOUBLE_EQ(BaseTranslator::VerifyDouble(text), value) << text;
    // Only the last sign is looked at once an exponent is there.
    EXPECT_NO_THROW(BaseTranslator::VerifyDouble("1-2e-5"));
    EXPECT_DOUBLE_EQ(BaseTranslator::VerifyDouble(u" 2.5"), 2.5);
}

TEST_F(VerifyDouble, RefusesWithTheTrimmedText) {
    for (const char* text : {"",    "   ", "1e5E2", "e5",   "5e",   "5e+", "--1", "1-",   "1.", "1.e5",
                             "+-5", "-+5", "1.2.3", "1e.5", "1e5e", "abc", "1,5", "0x10", "5-", " 1.5 "}) {
        const auto failure = FailureOf([&] { BaseTranslator::VerifyDouble(text); });
        EXPECT_EQ(failure.first, 260151) << text;
        std::string const shown = std::string(text) == " 1.5 " ? "1.5 " : text;
        EXPECT_EQ(failure.second, "The value: '" + shown + "' is invalid of type: 'double'.");
    }
}

TEST_F(VerifyInt, AcceptsSignedDigitsAsAtoiReadsThem) {
    const std::pair<const char*, int> cases[] = {
        {"0", 0}, {"+7", 7}, {"-12", -12}, {"0012", 12}, {"2147483647", 2147483647}, {"-0", 0},
    };
    for (auto const& [text, value] : cases)
        EXPECT_EQ(BaseTranslator::VerifyInt(text), value) << text;
    EXPECT_EQ(BaseTranslator::VerifyInt(u"42"), 42);

    for (const char* text : {"", "+", "-", "7-", "1.5", "+-1", "-+1", " 1", "1 ", "1e3", "--1", "x"}) {
        const auto failure = FailureOf([&] { BaseTranslator::VerifyInt(text); });
        EXPECT_EQ(failure.first, 260151) << text;
        EXPECT_EQ(failure.second, std::string("The value: '") + text + "' is invalid of type: 'integer'.");
    }
}

class DOMHelpers : public XercesTest {
  protected:
    void SetUp() override {
        XercesTest::SetUp();
        document = Parse(
            "<Root a=\"1\" empty=\"\"><!-- note -->text<Child id=\"1\"><Grand/></Child>"
            "<Other/><Child id=\"2\"/></Root>");
        root = document->getDocumentElement();
    }

    // The n-th element of that name in the document.
    DOMNode* Nth(char16_t const* name, XMLSize_t n) { return document->getElementsByTagName(name)->item(n); }

    DOMDocument* document = nullptr;
    DOMElement* root = nullptr;
};

TEST_F(DOMHelpers, WalksSkipEverythingButElements) {
    DOMNode* first = BaseTranslator::GetFirstChildElt(root);
    EXPECT_EQ(first, Nth(u"Child", 0));
    EXPECT_EQ(BaseTranslator::GetNextSiblingElt(first), Nth(u"Other", 0));
    EXPECT_EQ(BaseTranslator::GetNextSiblingElt(BaseTranslator::GetNextSiblingElt(first)), Nth(u"Child", 1));
    EXPECT_EQ(BaseTranslator::GetNextSiblingElt(root->getLastChild()), nullptr);
    EXPECT_EQ(BaseTranslator::GetFirstChildElt(Nth(u"Grand", 0)), nullptr);
    EXPECT_EQ(BaseTranslator::GetFirstChildElt(nullptr), nullptr);
}

TEST_F(DOMHelpers, ChildSearchesSeeOnlyDirectChildren) {
    EXPECT_EQ(BaseTranslator::GetChildByTag(root, "Child"), Nth(u"Child", 0));
    EXPECT_EQ(BaseTranslator::GetChildByTag(root, "Grand"), nullptr);
    EXPECT_EQ(BaseTranslator::GetChildByTag(root, "child"), nullptr);
    EXPECT_EQ(BaseTranslator::GetChildByTag(nullptr, "Child"), nullptr);
    auto failure = FailureOf([&] { BaseTranslator::GetChildByTagForced(root, "Grand"); });
    EXPECT_EQ(failure.first, 260114);
    EXPECT_EQ(failure.second, "Missing node: 'Grand'.");

    // The UTF-16 forms take the buffer over and release it.
    EXPECT_EQ(BaseTranslator::GetChildTag(root, XMLString::transcode("Other")), Nth(u"Other", 0));
    EXPECT_EQ(BaseTranslator::GetChildTag(root, XMLString::transcode("Grand")), nullptr);
    failure = FailureOf([&] { BaseTranslator::GetChildTagForced(root, XMLString::transcode("Missing")); });
    EXPECT_EQ(failure.first, 260114);
    EXPECT_EQ(failure.second, "Missing node: 'Missing'.");

    // Elements by name are all descendants, at any depth.
    EXPECT_EQ(BaseTranslator::GetElementsByTagName(document, "Grand")->getLength(), 1u);
    EXPECT_EQ(BaseTranslator::GetElementsByTagName(root, "Child")->getLength(), 2u);
    EXPECT_EQ(BaseTranslator::GetElementsByTagName(root, "Root")->getLength(), 0u);
    failure =
        FailureOf([&] { BaseTranslator::GetElementsByTagName(static_cast<DOMElement*>(nullptr), "Y"); });
    EXPECT_EQ(failure.second, "Missing node: 'Y'.");
}

TEST_F(DOMHelpers, AttributesAbsentAndEmptyDiffer) {
    EXPECT_TRUE(XMLString::equals(BaseTranslator::GetAttribute(root, "a"), u"1"));
    // Absent: an empty text, never null.
    XMLCh const* absent = BaseTranslator::GetAttribute(root, "zz");
    ASSERT_NE(absent, nullptr);
    EXPECT_EQ(*absent, 0);
    auto failure = FailureOf([&] { BaseTranslator::GetAttributeForced(root, "zz"); });
    EXPECT_EQ(failure.first, 260120);
    EXPECT_EQ(failure.second, "Missing the attribute 'zz' of 'Root'.");
    // Present and empty is no failure.
    XMLCh const* empty = BaseTranslator::GetAttributeForced(root, "empty");
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(*empty, 0);
    // Names are exact.
    EXPECT_EQ(FailureOf([&] { BaseTranslator::GetAttributeForced(root, "A"); }).first, 260120);
}

TEST_F(DOMHelpers, ComparisonsAreExact) {
    EXPECT_TRUE(BaseTranslator::IsEqual(u"TreeModel", "TreeModel"));
    EXPECT_FALSE(BaseTranslator::IsEqual(u"TreeModel", "treemodel"));
    EXPECT_FALSE(BaseTranslator::IsEqual(u"TreeModel", "TreeModel "));
    QXVantry_920::VantryTranscoder utf8("UTF-8");
    EXPECT_TRUE(BaseTranslator::IsEqual(&utf8, u"caf\u00e9", "caf\xc3\xa9"));
    EXPECT_FALSE(BaseTranslator::IsEqual(&utf8, u"caf\u00e9", "caf\xe9"));
}

TEST_F(DOMHelpers, TranscoderDecidesHowTextIsRead) {
    PlainTranslator translator;
    // Before any transcoder: the parser's default transcoding.
    EXPECT_EQ(translator.Text(u"plain"), "plain");
    EXPECT_EQ(translator.Text(nullptr), "");
    translator.CreateTranscoder("");
    EXPECT_EQ(translator.Text(u"caf\u00e9 \u20ac"), "caf\xe9 \x80");
    // A new transcoder replaces the old one without freeing it: whoever was given it keeps using it.
    std::unique_ptr<QXVantry_920::VantryTranscoder> first(translator.Transcoder());
    translator.CreateTranscoder("UTF-8");
    EXPECT_NE(translator.Transcoder(), first.get());
    EXPECT_EQ(translator.Text(u"caf\u00e9"), "caf\xc3\xa9");
    EXPECT_EQ(first->transcodeTo(u"caf\u00e9"), "caf\xe9");
    // A copy reads as the original does.
    PlainTranslator assigned;
    assigned = translator;
    EXPECT_EQ(assigned.Text(u"\u00e9"), "\xc3\xa9");
}

using VerifyDateTime = XercesTest;

TEST_F(VerifyDateTime, ReadsTheTextOfTheTypeAsItsNumber) {
    using QXVantry_920::ScoreDictVar;
    EXPECT_DOUBLE_EQ(BaseTranslator::VerifyDateTime("2020-01-01", ScoreDictVar::DT_DATE), 18262.0);
    EXPECT_DOUBLE_EQ(BaseTranslator::VerifyDateTime("2020-01-01T00:00:01", ScoreDictVar::DT_DATETIME),
                     1577836801.0);
    EXPECT_DOUBLE_EQ(BaseTranslator::VerifyDateTime(u"01:00:00", ScoreDictVar::DT_TIME), 3600.0);
    for (auto const& [text, type] :
         {std::pair<const char*, ScoreDictVar::DateTimeType>{"2020-13-01", ScoreDictVar::DT_DATE},
          {"25:00:00", ScoreDictVar::DT_TIME},
          {"soon", ScoreDictVar::DT_DATETIME}}) {
        const auto failure = FailureOf([&] { BaseTranslator::VerifyDateTime(text, type); });
        EXPECT_EQ(failure.first, 260151) << text;
        EXPECT_EQ(failure.second, std::string("The value: '") + text + "' is invalid of type: 'dateTime'.");
    }
}

TEST_F(VerifyDateTime, VariableValuesTakeTheVariablesType) {
    using QXVantry_920::DictVar;
    using QXVantry_920::ScoreDictVar;
    using QXVantry_920::ScoreValue;
    PlainTranslator translator;
    DictVar text("t", ScoreDictVar::STRING_VAR);
    DictVar number("n", ScoreDictVar::kNUMERIC_VAR);
    DictVar date("d", ScoreDictVar::DATETIME_VAR);
    date.SetDateTimeType(ScoreDictVar::DT_DATE_DAYS_SINCE_1970);

    std::unique_ptr<ScoreValue> value(translator.CarefullyMakeVarValue(&text, " a b "));
    EXPECT_EQ(ScoreValue::TypeOf(*value), ScoreValue::STRING_VALUE);
    EXPECT_EQ(ScoreValue::TextOf(*value), " a b ");
    value.reset(translator.CarefullyMakeVarValue(&number, " 2.5"));
    EXPECT_EQ(ScoreValue::TypeOf(*value), ScoreValue::NUMERIC_VALUE);
    EXPECT_DOUBLE_EQ(value->GetDouble(), 2.5);
    value.reset(translator.CarefullyMakeVarValue(&date, u"10"));
    EXPECT_EQ(ScoreValue::TypeOf(*value), ScoreValue::DATETIME_VALUE);
    EXPECT_DOUBLE_EQ(value->GetDouble(), 10.0);
    translator.CreateTranscoder("UTF-8");
    value.reset(translator.CarefullyMakeVarValue(&text, u"caf\u00e9"));
    EXPECT_EQ(ScoreValue::TextOf(*value), "caf\xc3\xa9");
    EXPECT_EQ(translator.CarefullyMakeVarValue(nullptr, "1"), nullptr);

    // Dates come as numbers here, never as date texts.
    auto failure = FailureOf([&] { delete translator.CarefullyMakeVarValue(&date, "2020-01-01"); });
    EXPECT_EQ(failure.second, "The value: '2020-01-01' is invalid of type: 'double'.");
    failure = FailureOf([&] { delete translator.CarefullyMakeVarValue(&number, "n/a"); });
    EXPECT_EQ(failure.first, 260151);
}
