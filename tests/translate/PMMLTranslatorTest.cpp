// The PMML translator's plumbing and the element reads of DOMElemUtility.
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/DOMElemUtility.h"
#include "vantry/translate/PMMLTranslator.h"

using QXVantry_920::BaseTranslator;
using QXVantry_920::DOMElemUtility;
using QXVantry_920::PMMLTranslator;
using QXVantry_920::ScoreDictVar;
using QXVantry_920::VantryTranscoder;
using namespace vantry_test;
XERCES_CPP_NAMESPACE_USE

namespace {

// Opens the protected plumbing to the test.
class OpenTranslator : public PMMLTranslator {
  public:
    using PMMLTranslator::PMMLTranslator;
    std::string Text(XMLCh const* text) { return ToString(text); }
    std::string BaseText(XMLCh const* text) { return BaseTranslator::ToString(text); }
    std::string Level(int level) { return ToString(static_cast<ScoreDictVar::MeasureLevel>(level)); }
    std::u16string Wide(char const* text) {
        XMLCh* wide = ToUTF16(text);
        if (wide == nullptr)
            return u"<null>";
        std::u16string result(wide);
        XMLString::release(&wide, XMLPlatformUtils::fgMemoryManager);
        return result;
    }
    bool Equals(XMLCh const* text, char const* other) { return XStrEqualsUTF8Str(text, other); }
    std::string const& Encoding() const { return fEncoding; }
    double Level() const { return fPMMLLevel; }
    VantryTranscoder* Transcoder() const { return fTranscoder; }
};

using PMMLTranslatorTest = XercesTest;

class DOMElemUtilityTest : public XercesTest {
  protected:
    void SetUp() override {
        XercesTest::SetUp();
        root = Parse(
                   "<Model n=\"3\" x=\" 1.5\" bad=\"abc\" s=\"caf\xc3\xa9\" empty=\"\">"
                   "<Field/><Field/><Group><Field/></Group></Model>")
                   ->getDocumentElement();
        translator.CreateTranscoder("UTF-8");
    }
    // The transcoder must go before Xerces-C stops.
    void TearDown() override {
        translator = OpenTranslator();
        XercesTest::TearDown();
    }

    OpenTranslator translator;
    DOMElement* root = nullptr;
};

}  // namespace

TEST_F(PMMLTranslatorTest, ConstructionAndTextConversions) {
    OpenTranslator translator("UTF-16LE");
    EXPECT_DOUBLE_EQ(translator.Level(), 4.0);

    // Before the transcoder exists the conversions through it answer nothing.
    EXPECT_EQ(translator.Wide("ab"), u"<null>");
    EXPECT_FALSE(translator.Equals(u"ab", "ab"));

    translator.CreateTranscoder("UTF-16LE");
    // The PMML form of ToString ignores the transcoder; the base form uses it.
    EXPECT_EQ(translator.Text(u"ab"), "ab");
    EXPECT_EQ(translator.BaseText(u"ab"), std::string("a\0b\0", 4));
    EXPECT_EQ(translator.Text(nullptr), "");

    OpenTranslator utf8("UTF-8");
    utf8.CreateTranscoder("UTF-8");
    EXPECT_EQ(utf8.Wide("caf\xc3\xa9"), u"caf\u00e9");
    EXPECT_TRUE(utf8.Equals(u"caf\u00e9", "caf\xc3\xa9"));
    EXPECT_FALSE(utf8.Equals(u"caf\u00e9", "cafe"));

    // A copy keeps the settings and reads with a transcoder of its own.
    OpenTranslator copy(utf8);
    EXPECT_EQ(copy.Encoding(), "UTF-8");
    EXPECT_NE(copy.Transcoder(), utf8.Transcoder());
    EXPECT_TRUE(copy.Equals(u"caf\u00e9", "caf\xc3\xa9"));

    EXPECT_EQ(translator.Level(0), "continuous");
    EXPECT_EQ(translator.Level(1), "ordinal");
    EXPECT_EQ(translator.Level(2), "categorical");
    EXPECT_EQ(translator.Level(3), "");
    EXPECT_EQ(translator.Level(-1), "");
}

TEST_F(DOMElemUtilityTest, ListsOfDescendants) {
    DOMElemUtility utility(&translator, translator.Transcoder());
    ASSERT_NE(utility.GetDOMNodeList(root, "Field", false), nullptr);
    EXPECT_EQ(utility.GetDOMNodeList(root, "Field", false)->getLength(), 3u);
    EXPECT_EQ(utility.GetDOMNodeList(root, "None", true), nullptr);
    EXPECT_EQ(utility.GetDOMNodeList(nullptr, "Field", true), nullptr);
    EXPECT_EQ(utility.GetDOMNodeList(root, "", true), nullptr);
    EXPECT_EQ(utility.GetNodeListLength(root, "Field", false), 3u);
    EXPECT_EQ(utility.GetNodeListLength(root, "None", false), 0u);
    EXPECT_NE(utility.GetElemFromNodeList(root, "Field", 2, false), nullptr);
    EXPECT_EQ(utility.GetElemFromNodeList(root, "Field", 3, true), nullptr);

    // Without a translator only the plain list still answers.
    DOMElemUtility bare(nullptr, nullptr);
    EXPECT_NE(bare.GetDOMNodeList(root, "Field", false), nullptr);
    EXPECT_EQ(bare.GetNodeListLength(root, "Field", false), 0u);
    EXPECT_EQ(bare.GetElemFromNodeList(root, "Field", 0, false), nullptr);
    EXPECT_EQ(bare.GetChildElemByName(root, "Group", true), nullptr);
    EXPECT_EQ(bare.GetAttributeToInt(root, "n", true), -1);
}

TEST_F(DOMElemUtilityTest, AttributesAndChildrenSwallowOrPassFailures) {
    DOMElemUtility utility(&translator, translator.Transcoder());
    EXPECT_DOUBLE_EQ(utility.GetAttributeToDouble(root, "x", true), 1.5);
    EXPECT_EQ(utility.GetAttributeToInt(root, "n", true), 3);
    EXPECT_EQ(utility.GetAttributeToString(root, "s", true), "caf\xc3\xa9");
    EXPECT_EQ(utility.GetAttributeToString(root, "empty", true), "");
    EXPECT_NE(utility.GetChildElemByName(root, "Group", true), nullptr);

    // Swallowed failures give the neutral values.
    EXPECT_DOUBLE_EQ(utility.GetAttributeToDouble(root, "bad", false), -1.0);
    EXPECT_DOUBLE_EQ(utility.GetAttributeToDouble(root, "absent", false), -1.0);
    EXPECT_EQ(utility.GetAttributeToInt(root, "x", false), -1);
    EXPECT_EQ(utility.GetAttributeToString(root, "absent", false), "");
    EXPECT_EQ(utility.GetChildElemByName(root, "Field2", false), nullptr);

    // Passed-on failures keep their codes.
    EXPECT_EQ(FailureOf([&] { utility.GetAttributeToDouble(root, "bad", true); }).first, 260151);
    EXPECT_EQ(FailureOf([&] { utility.GetAttributeToDouble(root, "absent", true); }).first, 260120);
    EXPECT_EQ(FailureOf([&] { utility.GetAttributeToInt(root, "x", true); }).second,
              "The value: ' 1.5' is invalid of type: 'integer'.");
    EXPECT_EQ(FailureOf([&] { utility.GetChildElemByName(root, "Field2", true); }).second,
              "Missing node: 'Field2'.");

    // Text needs a transcoder.
    DOMElemUtility noTranscoder(&translator, nullptr);
    EXPECT_EQ(noTranscoder.GetAttributeToString(root, "s", true), "");
}
