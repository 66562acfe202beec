#include <gtest/gtest.h>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <string>

#include "tests/text/TextTestSupport.h"
#include "vantry/text/VantryTranscoder.h"

using QXVantry_920::VantryTranscoder;
using xercesc::XMLPlatformUtils;
using xercesc::XMLString;

namespace {

class VantryTranscoderTest : public mbtest::XercesSuite {
  protected:
    // Decodes through ChangeChar2XML and releases the caller-owned buffer.
    static std::u16string Decode(VantryTranscoder const& t, char const* text) {
        char16_t* buffer = t.ChangeChar2XML(text);
        std::u16string result = buffer == nullptr ? u"<null>" : buffer;
        XMLString::release(&buffer, XMLPlatformUtils::fgMemoryManager);
        return result;
    }
};

}  // namespace

TEST_F(VantryTranscoderTest, RoundTripsThroughNamedEncodings) {
    struct Case {
        char const* encoding;
        char const* bytes;
        char16_t const* units;
    };
    Case const cases[] = {
        {"CP1252", "caf\xE9 \x80 \x9C", u"caf\u00E9 \u20AC \u0153"},
        {"windows-1252", "\xE9t\xE9 \x80", u"\u00E9t\u00E9 \u20AC"},
        {"UTF-8", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E9\u20AC\U0001F600"},
        {"CP1252", "", u""},
    };
    for (Case const& c : cases) {
        VantryTranscoder t(c.encoding);
        EXPECT_EQ(Decode(t, c.bytes), c.units) << c.encoding;
        EXPECT_EQ(t.transcodeTo(c.units), c.bytes) << c.encoding;
        EXPECT_EQ(t.transcodeTo(nullptr), "");
        EXPECT_EQ(Decode(t, nullptr), u"<null>");
    }
    std::u16string const longText(2500, u'\u00E9');
    EXPECT_EQ(VantryTranscoder("CP1252").transcodeTo(longText.c_str()), std::string(2500, '\xE9'));
    // A multibyte code page text longer than a transcoder block still goes through in one call.
    std::string sjis;
    for (int i = 0; i < 3000; ++i) {
        sjis += "a\x82\xa0";  // "a", HIRAGANA LETTER A
    }
    std::u16string units;
    for (int i = 0; i < 3000; ++i) {
        units += u"a\u3042";
    }
    VantryTranscoder shiftJis("Shift_JIS");
    EXPECT_EQ(Decode(shiftJis, sjis.c_str()), units);
    EXPECT_EQ(shiftJis.transcodeTo(units.c_str()), sjis);
}

TEST_F(VantryTranscoderTest, UnrepresentableCharacterStopsWithPrefixKept) {
    VantryTranscoder cp1252("CP1252");
    EXPECT_EQ(cp1252.transcodeTo(u"ab\u00E9\u4E2Dcd"), "ab\xE9");
    EXPECT_EQ(cp1252.transcodeTo(u"a\U0001F600b"), "a");
    EXPECT_EQ(cp1252.transcodeTo(u"\u4E2D"), "");
    std::u16string longText = std::u16string(1500, u'x') + u"\u4E2D" + u"tail";
    EXPECT_EQ(cp1252.transcodeTo(longText.c_str()), std::string(1500, 'x'));
    EXPECT_EQ(cp1252.transcodeTo(u"ok"), "ok");  // the transcoder stays usable

    VantryTranscoder utf8("UTF-8");
    EXPECT_EQ(Decode(utf8, "ab\xFFxy"), u"ab");
}

TEST_F(VantryTranscoderTest, UnknownEncodingGivesEmptyResults) {
    VantryTranscoder unknown("no-such-encoding");
    EXPECT_EQ(unknown.transcodeTo(u"abc"), "");
    EXPECT_EQ(Decode(unknown, "abc"), u"");
    VantryTranscoder copy(unknown);
    EXPECT_EQ(copy.transcodeTo(u"abc"), "");
}

TEST_F(VantryTranscoderTest, CopiesOwnTheirTranscoder) {
    auto* original = new VantryTranscoder("CP1252");
    VantryTranscoder copy(*original);
    VantryTranscoder assigned("UTF-8");
    assigned = *original;
    assigned = assigned;
    delete original;
    EXPECT_EQ(copy.transcodeTo(u"\u20AC"), "\x80");
    EXPECT_EQ(assigned.transcodeTo(u"\u20AC"), "\x80");
    EXPECT_EQ(Decode(assigned, "\x80"), u"\u20AC");
}
