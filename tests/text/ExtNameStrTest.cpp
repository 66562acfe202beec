#include "vantry/text/ExtNameStr.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/text/TextTestSupport.h"
#include "vantry/text/KROMMultiByte.h"

using namespace QXXML_920;

namespace {

constexpr char kGruesse[] =
    "Gr\xC3\xBC\xC3\x9F"
    "e";                                               // Grüße
constexpr char kNihon[] = "\xE6\x97\xA5\xE6\x9C\xAC";  // 日本
constexpr char kGruesse1252[] = "Gr\xFC\xDF\x65";      // Grüße in code page 1252

// The default converter on UTF-8 (as ICU has it on Linux) and the system encoding of the C locale.
#define REQUIRE_NAME_ENCODINGS()                                                  \
    REQUIRE_DEFAULT_CONVERTER("UTF-8");                                           \
    if (std::strcmp(SystemEncoding(), "CP1252") != 0) {                           \
        GTEST_SKIP() << "system encoding " << SystemEncoding() << ", not CP1252"; \
    }

}  // namespace

TEST(ExtNameStr, SetU8FillsEveryFormAndCopiesStandAlone) {
    REQUIRE_NAME_ENCODINGS();
    ExtNameStr fresh;
    EXPECT_TRUE(fresh.Empty());
    EXPECT_EQ(fresh.ErrorCode(), 0);
    EXPECT_STREQ(fresh.GetCPZ(), "");

    ExtNameStr name;
    name.SetU8(kGruesse);
    EXPECT_FALSE(name.Empty());
    EXPECT_EQ(name.ErrorCode(), 0);
    EXPECT_EQ(name.GetU8(), kGruesse);
    EXPECT_EQ(name.GetU16(), u"Gr\u00FC\u00DFe");
    EXPECT_EQ(std::u16string(name.GetU16Z()), u"Gr\u00FC\u00DFe");
    EXPECT_EQ(name.GetCP(), kGruesse);
    EXPECT_STREQ(name.GetSystemZ(), kGruesse1252);
    EXPECT_STREQ(name.GetGenericZ(), kGruesse);

    ExtNameStr copy(name);
    ExtNameStr assigned;
    assigned = name;
    name.SetU8("other");
    EXPECT_EQ(copy.GetU8(), kGruesse);
    EXPECT_EQ(assigned.GetSystem(), kGruesse1252);
    EXPECT_EQ(name.GetU16(), u"other");

    name.Clear();
    EXPECT_TRUE(name.Empty());
    EXPECT_TRUE(name.GetU16().empty());
    EXPECT_TRUE(name.GetSystem().empty());
}

TEST(ExtNameStr, ErrorCodeIsThatOfTheUtf16FormAlone) {
    REQUIRE_NAME_ENCODINGS();
    ExtNameStr name;
    // The system form lacks both characters, yet the UTF-16 form is whole.
    name.SetU8(kNihon);
    EXPECT_EQ(name.GetSystem(), "??");
    EXPECT_EQ(name.ErrorCode(), 0);

    name.SetU8("a\xC0");
    EXPECT_EQ(name.GetU16(), u"a?");
    EXPECT_EQ(name.ErrorCode(), 3);

    // The loss on the way to UTF-8 is overwritten by the clean UTF-16 form made from the result.
    name.SetU16(std::u16string(u"a") + char16_t(0xD800) + u"b");
    EXPECT_EQ(name.GetU8(), "a?b");
    EXPECT_EQ(name.ErrorCode(), 0);

    name.SetU8(kNihon);
    auto japanese = mbtest::Open("932");
    EXPECT_EQ(name.GetCP(japanese.get()), "\x93\xFA\x96\x7B");
    EXPECT_EQ(name.ErrorCode(), 0);
    auto western = mbtest::Open("1252");
    EXPECT_EQ(name.GetCP(western.get()), "??");
    EXPECT_EQ(name.ErrorCode(), 3);
}

TEST(ExtNameStr, SetSystemLeavesUtf16FormAlone) {
    REQUIRE_NAME_ENCODINGS();
    ExtNameStr name;
    name.SetU8("alt");
    name.SetSystem("\xE9t\xE9");
    EXPECT_EQ(name.GetU8(), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(name.GetSystem(), "\xE9t\xE9");
    EXPECT_EQ(name.GetCP(), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(name.ErrorCode(), 0);
    EXPECT_EQ(name.GetU16(), u"alt");
}

TEST(ExtNameStr, SettersReadEveryForm) {
    REQUIRE_NAME_ENCODINGS();
    ExtNameStr name;
    auto western = mbtest::Open("cp1252");
    name.SetCP("caf\xE9", western.get());
    EXPECT_EQ(name.GetU8(), "caf\xC3\xA9");
    EXPECT_EQ(name.GetU16(), u"caf\u00E9");
    name.SetCP("\xC3\xA9", nullptr);  // the default converter
    EXPECT_EQ(name.GetU16(), u"\u00E9");

    {
        mbtest::Utf8Mode on(1);
        name.SetGeneric("\xFF");  // taken as it stands, and only the UTF-16 form finds it broken
        EXPECT_EQ(name.GetU8(), "\xFF");
        EXPECT_EQ(name.ErrorCode(), 3);
        EXPECT_EQ(&name.GetGeneric(), &name.GetU8());
    }
    {
        mbtest::Utf8Mode off(0);
        name.SetGeneric("\xFF");  // read through the default converter
        EXPECT_EQ(name.GetU8(), "?");
        EXPECT_EQ(name.ErrorCode(), 0);
        EXPECT_EQ(&name.GetGeneric(), &name.GetCP());
    }
}
