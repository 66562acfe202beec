// Sizes a document declares and the library allocates by while scoring: a text width pads every value
// of its field on every case, a lag keeps that many cases. Every reader refuses them beyond the limit
// before a variable carries them.
#include <memory>
#include <string>

#include "tests/translate/TranslateTestSupport.h"

using namespace QXVantry_920;
using vantry_test::Refusal;

namespace {

std::string Width(std::string const& value) {
    return "<Extension name=\"width\" value=\"" + value + "\"/>";
}

class DeclaredSizeLimitsTest : public vantry_test::DerivedFieldTest {
  protected:
    std::string DataFieldRefusal(std::string const& optype, std::string const& value) {
        std::string const xml = "<DataDictionary numberOfFields=\"1\"><DataField name=\"s\" optype=\"" +
                                optype + "\" dataType=\"" + (optype == "continuous" ? "double" : "string") +
                                "\">" + Width(value) + "</DataField></DataDictionary>";
        return Refusal([&] { delete translator->ParseDictionary(Parse(xml)->getDocumentElement(), false); });
    }

    std::string DerivedRefusal(std::string const& value) {
        return Refusal([&] {
            Read("<DerivedField name=\"w\" optype=\"categorical\" dataType=\"string\">" + Width(value) +
                 "<FieldRef field=\"s\"/></DerivedField>");
        });
    }

    std::string LegacyRefusal(std::string const& value) {
        vantry_test::LegacyTranslator legacy;
        legacy.CreateTranscoder("UTF-8");
        std::string const xml =
            "<dictionary><variable name=\"v\" storage-type=\"STRING\" measurement-level=\"NOMINAL\">"
            "<format-spec decimals=\"0\" width=\"" +
            value + "\"/></variable></dictionary>";
        return Refusal([&] { delete legacy.ParseDictionary(Parse(xml)->getDocumentElement()); });
    }
};

}  // namespace

TEST_F(DeclaredSizeLimitsTest, EveryReaderRefusesWidthsBeyondTheLimit) {
    for (std::string const optype : {"categorical", "continuous"}) {
        EXPECT_EQ(DataFieldRefusal(optype, "32767"), "none") << optype;
        EXPECT_EQ(DataFieldRefusal(optype, "2147483647"),
                  "260153: Invalid value: '2147483647' of attribute 'value' in 'Extension'.")
            << optype;
    }
    EXPECT_EQ(DerivedRefusal("32767"), "none");
    EXPECT_EQ(DerivedRefusal("32768"), "260153: Invalid value: '32768' of attribute 'value' in 'Extension'.");
    EXPECT_EQ(LegacyRefusal("32767"), "none");
    // The legacy reader names the variable behind the reader's words.
    EXPECT_EQ(LegacyRefusal("99999999"),
              "260223: Invalid value: '99999999' of attribute 'width' in "
              "'format-spec'.Error occurred in process 'variable' : 'v'.");
}

TEST_F(DeclaredSizeLimitsTest, LagHistoryIsBounded) {
    auto lag = [&](std::string const& n) {
        return Refusal([&] {
            Read("<DerivedField name=\"w\" optype=\"continuous\" dataType=\"double\"><Lag field=\"x\" n=\"" +
                 n + "\"/></DerivedField>");
        });
    };
    EXPECT_EQ(lag("100000"), "none");
    EXPECT_EQ(lag("100001"), "260153: Invalid value: '100001' of attribute 'n' in 'Lag'.");
    EXPECT_EQ(lag("2147483647"), "260153: Invalid value: '2147483647' of attribute 'n' in 'Lag'.");
}
