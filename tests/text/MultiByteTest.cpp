#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "tests/text/TextTestSupport.h"
#include "vantry/text/KROMMultiByte.h"

using namespace QXXML_920;
using mbtest::Open;
using mbtest::Utf8Mode;

namespace {

// UTF-8 of characters of two, three and four bytes.
constexpr char kE_Acute[] = "\xC3\xA9";       // é
constexpr char kEuro[] = "\xE2\x82\xAC";      // €
constexpr char kGrin[] = "\xF0\x9F\x98\x80";  // U+1F600

std::string NameOf(UConverter* converter) {
    UErrorCode status = U_ZERO_ERROR;
    return converter != nullptr ? ucnv_getName(converter, &status) : "";
}

}  // namespace

TEST(MultiByteConverter, CodePageNumbersAndNamesOpenTheRightEncoding) {
    auto byNumber = Open("1252");
    auto byName = Open("cp1252");
    ASSERT_NE(byNumber, nullptr);
    EXPECT_EQ(NameOf(byNumber.get()), NameOf(byName.get()));
    EXPECT_EQ(NameOf(Open("932").get()), NameOf(Open("windows-31j").get()));
    EXPECT_EQ(NameOf(Open("65001").get()), NameOf(Open("UTF-8").get()));
    EXPECT_EQ(NameOf(Open("WINDOWS-28591").get()), NameOf(Open("ISO-8859-1").get()));
    // Not a whole number from 1 to 99999, so a name that ICU does not know; or a code page it lacks.
    for (char const* unknown : {"1252x", "100000", "0", "12345", "no-such-encoding"}) {
        EXPECT_EQ(KROMMBConverterNew_C(unknown), nullptr) << unknown;
    }
    mbtest::Converter utf8Named(static_cast<UConverter*>(KROMMBConverterNew_8("cp1252")), &ucnv_close);
    EXPECT_EQ(NameOf(utf8Named.get()), NameOf(byName.get()));
    mbtest::Converter fresh(static_cast<UConverter*>(KROMMBConverterNew_A(nullptr)), &ucnv_close);
    EXPECT_EQ(NameOf(fresh.get()), NameOf(KROMMBGetDefaultConverter()));
    EXPECT_GE(KROMMBDefaultConverterID(), 1);
}

TEST(MultiByteBuffer, Utf8AndUtf16BothWaysInBothFieldKinds) {
    struct Case {
        std::string utf8;
        std::u16string utf16;
    } const cases[] = {
        {"name", u"name"},
        {std::string("caf") + kE_Acute, u"caf\u00E9"},
        {std::string(kEuro) + "5", u"\u20AC5"},
        {std::string("a") + kGrin, u"a\U0001F600"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.utf8);
        int status = -1;
        char16_t wide[16];
        std::fill(std::begin(wide), std::end(wide), u'x');
        EXPECT_EQ(KROMMB8to16(wide, 16, c.utf8.c_str(), -1, &status), static_cast<int>(c.utf16.size()));
        EXPECT_EQ(status, 0);
        EXPECT_EQ(std::u16string(wide), c.utf16);

        std::fill(std::begin(wide), std::end(wide), u'x');
        int units = KROMMB8to16(wide, 16, c.utf8.data(), static_cast<int>(c.utf8.size()), &status);
        EXPECT_EQ(std::u16string(wide, units), c.utf16);
        EXPECT_EQ(wide[units], u' ');      // one blank behind a short text in a fixed field
        EXPECT_EQ(wide[units + 1], u'x');  // and nothing more

        char narrow[16];
        std::fill(std::begin(narrow), std::end(narrow), 'x');
        EXPECT_EQ(KROMMB16to8(narrow, 16, c.utf16.c_str(), -1, &status), static_cast<int>(c.utf8.size()));
        EXPECT_EQ(status, 0);
        EXPECT_EQ(std::string(narrow), c.utf8);

        std::fill(std::begin(narrow), std::end(narrow), 'x');
        int bytes = KROMMB16to8(narrow, 16, c.utf16.data(), static_cast<int>(c.utf16.size()), nullptr);
        EXPECT_EQ(std::string(narrow, bytes), c.utf8);
        EXPECT_EQ(std::string(narrow + bytes, 2), " x");
    }
}

TEST(MultiByteBuffer, CodePageBothWays) {
    auto western = Open("cp1252");
    std::string const utf8 = std::string("Gr\xC3\xBC\xC3\x9F\x65 ") + kEuro;  // Grüße €
    char const codePage[] = "Gr\xFC\xDF\x65 \x80";
    std::u16string const utf16 = u"Gr\u00FC\u00DFe \u20AC";
    int status = -1;
    char narrow[32];
    char16_t wide[32];

    EXPECT_EQ(KROMMB8toCodePage(western.get(), narrow, 32, utf8.c_str(), -1, &status), 7);
    EXPECT_STREQ(narrow, codePage);
    EXPECT_EQ(KROMMBCodePageto8(western.get(), narrow, 32, codePage, -1, &status),
              static_cast<int>(utf8.size()));
    EXPECT_EQ(std::string(narrow), utf8);
    EXPECT_EQ(KROMMBCodePageto16(western.get(), wide, 32, codePage, -1, &status), 7);
    EXPECT_EQ(std::u16string(wide), utf16);
    EXPECT_EQ(KROMMB16toCodePage(western.get(), narrow, 32, utf16.c_str(), -1, &status), 7);
    EXPECT_STREQ(narrow, codePage);
    EXPECT_EQ(status, 0);

    // A double-byte code page, character by character.
    auto japanese = Open("932");
    EXPECT_EQ(KROMMB16toCodePage(japanese.get(), narrow, 32, u"a\u3042", -1, &status), 3);
    EXPECT_STREQ(narrow, "a\x82\xA0");
    EXPECT_EQ(KROMMBCodePageto8(japanese.get(), narrow, 32, "a\x82\xA0", -1, &status), 4);
    EXPECT_STREQ(narrow, "a\xE3\x81\x82");
}

TEST(MultiByteBuffer, BadCharactersBecomeQuestionMarksWithCodeThree) {
    // Characters that the code page lacks, either way, also behind the first piece of a long text.
    auto greek = Open("cp1253");  // 0xD2 is unassigned in it
    auto western = Open("1252");
    std::u16string wide;
    std::string bytes;
    EXPECT_EQ(KROMMBCodePageToU16(greek.get(), wide, std::string("a\xD2") + "b"), 3);
    EXPECT_EQ(wide, u"a?b");
    EXPECT_EQ(KROMMBCodePageToU8(greek.get(), bytes, std::string(300, 'a') + "\xD2"), 3);
    EXPECT_EQ(bytes, std::string(300, 'a') + "?");
    EXPECT_EQ(KROMMBU8ToCodePage(western.get(), bytes, std::string("x") + kEuro + "\xE6\x97\xA5y"), 3);
    EXPECT_EQ(bytes, "x\x80?y");
    EXPECT_EQ(KROMMBU16ToCodePage(western.get(), bytes, u"\u65E5\u672C!"), 3);
    EXPECT_EQ(bytes, "?\x3F!");

    // Malformed input in each engine.
    int status = 0;
    char16_t wideField[16];
    EXPECT_EQ(KROMMB8to16(wideField, 16, "a\xC0\x80z", -1, &status), 4);
    EXPECT_EQ(std::u16string(wideField), u"a??z");
    EXPECT_EQ(status, 3);
    char narrow[16];
    char16_t const loneSurrogate[] = {u'a', 0xD800, u'b', 0};
    EXPECT_EQ(KROMMB16to8(narrow, 16, loneSurrogate, -1, &status), 3);
    EXPECT_STREQ(narrow, "a?b");
    EXPECT_EQ(status, 3);
    EXPECT_EQ(KROMMB8toCodePage(western.get(), narrow, 16, "a\xE2\x82z", -1, &status), 3);
    EXPECT_STREQ(narrow, "a?z");
    EXPECT_EQ(status, 3);
    auto utf8 = Open("65001");
    EXPECT_EQ(KROMMBCodePageto16(utf8.get(), wideField, 16, "\xFFok", -1, &status), 3);
    EXPECT_EQ(std::u16string(wideField), u"?ok");
    EXPECT_EQ(status, 3);

    // No target at all: nothing written, and a text that had to go somewhere is cut.
    EXPECT_EQ(KROMMB8to16(nullptr, 0, "abc", -1, &status), 0);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(KROMMB8to16(wideField, 1, "", -1, &status), 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(wideField[0], 0);
}

TEST(MultiByteBuffer, TooSmallTargetIsCutAtACharacterBoundary) {
    int status = 0;
    char16_t wide[8];
    std::fill(std::begin(wide), std::end(wide), u'x');
    // Fixed field of three units: the lead surrogate of U+1F600 would be left alone, so it becomes a blank.
    std::string const grin = std::string("ab") + kGrin;
    EXPECT_EQ(KROMMB8to16(wide, 3, grin.data(), static_cast<int>(grin.size()), &status), 2);
    EXPECT_EQ(std::u16string(wide, 4), u"ab x");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(KROMMB8to16(wide, 4, grin.c_str(), -1, &status), 2);
    EXPECT_EQ(std::u16string(wide), u"ab");
    EXPECT_EQ(status, 1);

    char narrow[8];
    std::fill(std::begin(narrow), std::end(narrow), 'x');
    EXPECT_EQ(KROMMB16to8(narrow, 3, u"a\u20AC", 2, &status), 1);
    EXPECT_EQ(std::string(narrow, 4), "a  x");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(KROMMB16to8(narrow, 4, u"a\U0001F600", -1, &status), 1);
    EXPECT_STREQ(narrow, "a");

    auto japanese = Open("windows-31j");
    std::fill(std::begin(narrow), std::end(narrow), 'x');
    EXPECT_EQ(KROMMB16toCodePage(japanese.get(), narrow, 2, u"a\u3042", 2, &status), 1);
    EXPECT_EQ(std::string(narrow, 3), "a x");
    EXPECT_EQ(status, 1);
    std::fill(std::begin(narrow), std::end(narrow), 'x');
    EXPECT_EQ(KROMMB8toCodePage(japanese.get(), narrow, 4, "ab\xE3\x81\x82\xE3\x81\x82", 9, &status), 4);
    EXPECT_EQ(std::string(narrow, 5), "ab\x82\xA0x");

    auto western = Open("cp1252");
    std::fill(std::begin(narrow), std::end(narrow), 'x');
    EXPECT_EQ(KROMMBCodePageto8(western.get(), narrow, 4, "\xE9\x80", 2, &status), 2);
    EXPECT_EQ(std::string(narrow, 5), std::string(kE_Acute) + "  x");
    EXPECT_EQ(status, 1);
}

TEST(MultiByteBuffer, GenericFollowsUtf8Mode) {
    // ICU on Linux and macOS always defaults to UTF-8, so UTF-8 is the default code page here.
    REQUIRE_DEFAULT_CONVERTER("UTF-8");
    std::string const broken = std::string("\xFF") + kE_Acute;
    char narrow[16];
    int status = -1;
    {
        Utf8Mode on(1);
        // The same encoding on both sides: a plain copy, even of bytes that are not UTF-8.
        EXPECT_EQ(KROMMB8toGeneric(narrow, 16, broken.c_str(), -1, &status), 3);
        EXPECT_EQ(std::string(narrow), broken);
        EXPECT_EQ(status, 0);
        EXPECT_EQ(KROMMBGenericto8(narrow, 2, "abc", 3, &status), 2);
        EXPECT_EQ(std::string(narrow, 2), "ab");
        auto western = Open("cp1252");
        EXPECT_EQ(KROMMBCodePagetoGeneric(western.get(), narrow, 16, "\xE9", -1, &status), 2);
        EXPECT_STREQ(narrow, kE_Acute);
        EXPECT_EQ(KROMMBGenerictoCodePage(western.get(), narrow, 16, kEuro, -1, &status), 1);
        EXPECT_STREQ(narrow, "\x80");
    }
    {
        Utf8Mode off(0);
        // Now the same call goes through the default converter, which replaces what is not UTF-8.
        EXPECT_EQ(KROMMB8toGeneric(narrow, 16, broken.c_str(), -1, &status), 3);
        EXPECT_EQ(std::string(narrow), std::string("?") + kE_Acute);
        EXPECT_EQ(status, 3);
        // Generic text and the code page are one encoding now: copied as they stand.
        EXPECT_EQ(KROMMBCodePagetoGeneric(nullptr, narrow, 16, "\x81\xFF", -1, &status), 2);
        EXPECT_STREQ(narrow, "\x81\xFF");
        EXPECT_EQ(status, 0);

        std::string text;
        EXPECT_EQ(KROMMBGenericToU8(text, broken), 3);
        EXPECT_EQ(text, std::string("?") + kE_Acute);
        EXPECT_EQ(KROMMBGenericToCodePage(nullptr, text, broken), 0);
        EXPECT_EQ(text, broken);
        std::unique_ptr<char16_t[]> owned(KROMMBTranscodeGeneric(kEuro));
        EXPECT_EQ(std::u16string(owned.get()), u"\u20AC");
    }
}

TEST(MultiByteString, ConversionsKeepLongTextsWhole) {
    auto western = Open("cp1252");
    std::string utf8;
    std::u16string utf16;
    std::string codePage;
    // Longer than every stack work area, so that the heap path runs too.
    for (std::string const& text : {std::string("abc"), std::string(3000, 'a') + kE_Acute + kEuro}) {
        SCOPED_TRACE(text.size());
        ASSERT_EQ(KROMMBU8ToU16(utf16, text), 0);
        ASSERT_EQ(KROMMBU16ToU8(utf8, utf16), 0);
        EXPECT_EQ(utf8, text);
        ASSERT_EQ(KROMMBU16ToCodePage(western.get(), codePage, utf16), 0);
        EXPECT_EQ(codePage.size(), utf16.size());
        ASSERT_EQ(KROMMBCodePageToU8(western.get(), utf8, codePage), 0);
        EXPECT_EQ(utf8, text);
        ASSERT_EQ(KROMMBCodePageToU16(western.get(), utf16, codePage), 0);
        ASSERT_EQ(KROMMBU8ToCodePage(western.get(), codePage, text), 0);
        EXPECT_EQ(codePage.size(), utf16.size());
    }
    // An encoding whose characters outgrow their UTF-8: U+0080 takes four bytes in GB 18030.
    auto chinese = Open("GB18030");
    ASSERT_NE(chinese, nullptr);
    EXPECT_EQ(KROMMBU8ToCodePage(chinese.get(), codePage, "\xC2\x80\xC2\x80"), 0);
    EXPECT_EQ(codePage, "\x81\x30\x81\x30\x81\x30\x81\x30");

    std::unique_ptr<char16_t[]> wide(KROMMBTranscodeU8("caf\xC3\xA9"));
    EXPECT_EQ(std::u16string(wide.get()), u"caf\u00E9");
    std::unique_ptr<char[]> narrow(KROMMBTranscodeU8(u"\U0001F600!"));
    EXPECT_EQ(std::string(narrow.get()), std::string(kGrin) + "!");
}

TEST(MultiByteSetUp, SystemEncodingComesFromTheLocaleName) {
    std::string const before = std::setlocale(LC_CTYPE, nullptr);
    if (before != "C") {
        GTEST_SKIP() << "the process already left the C locale";
    }
    char const* encoding = SystemEncoding();
    // The C locale names no encoding; en_US (where it exists) does not either.
    EXPECT_STREQ(encoding, "CP1252");
    EXPECT_EQ(SystemEncoding(), encoding);
    ASSERT_NE(std::getenv("LC_ALL"), nullptr);
    EXPECT_STREQ(std::getenv("LC_ALL"), "en_US");
    mbtest::Converter system(static_cast<UConverter*>(KROMMBConverterNew_C(encoding)), &ucnv_close);
    EXPECT_EQ(NameOf(system.get()), NameOf(Open("windows-1252").get()));
}
