#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <string>

#include "tests/text/TextTestSupport.h"
#include "vantry/text/KROMMultiByte.h"

using namespace QXXML_920;

namespace {

// "aé€😀": characters of one to four bytes, starting at 0, 1, 3 and 6.
constexpr char kMixed[] = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";

// The C locale's multibyte functions and the default converter both on UTF-8.
bool UseUtf8Locale() {
    return std::setlocale(LC_ALL, "C.UTF-8") != nullptr;
}

}  // namespace

TEST(MultiByteUtf8, WellFormednessAndCharacterLength) {
    struct Case {
        char const* bytes;
        std::uint64_t n;
        int length;
    } const cases[] = {
        {"", 5, 0},
        {"a", 0, 0},
        {"a", 1, 1},
        {"\xC3\xA9", 2, 2},
        {"\xE2\x82\xAC", 3, 3},
        {"\xF0\x9F\x98\x80", 4, 4},
        {"\xC0\x80", 2, -1},          // overlong lead
        {"\xE2\x82", 2, -1},          // trail byte missing
        {"\xE2\x82\xAC", 2, -1},      // cut by n
        {"\xE0\x80\x80", 3, -1},      // overlong three-byte form
        {"\xED\xA0\x80", 3, -1},      // surrogate
        {"\xF4\x90\x80\x80", 4, -1},  // above U+10FFFF
        {"\xF5\x80\x80\x80", 4, -1},
        {"\x80", 1, -1},
        {"\xE2Z\xAC", 3, -1},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(KROMMBmblen_8(c.bytes, c.n), c.length) << testing::PrintToString(c.bytes) << " n=" << c.n;
    }
    EXPECT_EQ(KROMMBmblen_8(nullptr, 4), 0);

    EXPECT_EQ(KROMMBmbclen_8("a"), 1u);
    EXPECT_EQ(KROMMBmbclen_8("\xF0\x9F\x98\x80"), 4u);
    EXPECT_EQ(KROMMBmbclen_8("\xE2\x82"), 2u);  // never beyond the terminator
    EXPECT_EQ(KROMMBmbclen_8("\x80\x80"), 1u);
}

TEST(MultiByteUtf8, StepsBackAndForthOverWholeCharacters) {
    std::uint64_t const starts[] = {0, 1, 3, 6, 10};
    for (int i = 4; i > 0; --i) {
        EXPECT_EQ(KROMMBPreviousIndex_8(kMixed, starts[i]), starts[i - 1]);
        EXPECT_EQ(KROMMBAnsiPrev_8(kMixed, kMixed + starts[i]), kMixed + starts[i - 1]);
        EXPECT_EQ(KROMMBstrinc_8(kMixed + starts[i - 1]), kMixed + starts[i]);
    }
    EXPECT_EQ(KROMMBPreviousIndex_8(kMixed, 0), 0u);
    EXPECT_EQ(KROMMBAnsiPrev_8(kMixed, kMixed), kMixed);
    EXPECT_EQ(KROMMBAnsiPrev_8(kMixed, nullptr), nullptr);
    // A stray trail byte and a noncharacter count one byte at a time.
    EXPECT_EQ(KROMMBPreviousIndex_8("a\x80", 2), 1u);
    EXPECT_EQ(KROMMBPreviousIndex_8("a\xEF\xBF\xBF", 4), 3u);
}

TEST(MultiByteUtf8, CopyTakesWholeValidCharactersOnly) {
    char target[12];
    struct Case {
        char const* source;
        std::uint64_t n;
        std::string expected;  // all n bytes
    } const cases[] = {
        {kMixed, 2, std::string("a\0", 2)},
        {kMixed, 3, "a\xC3\xA9"},  // fills n: no terminator
        {kMixed, 5, std::string("a\xC3\xA9\0\0", 5)},
        {"ab\x80", 5, std::string("ab\0\0\0", 5)},  // a broken character at the end is dropped
        {"ab", 4, std::string("ab\0\0", 4)},
    };
    for (Case const& c : cases) {
        std::memset(target, 'x', sizeof target);
        EXPECT_EQ(KROMMBstrncpy_8(target, c.source, c.n), target);
        EXPECT_EQ(std::string(target, c.n), c.expected) << c.n;
        EXPECT_EQ(target[c.n], 'x');
    }
    EXPECT_EQ(KROMMBstrncpy_8(nullptr, "ab", 2), nullptr);
    std::memset(target, 'x', sizeof target);
    EXPECT_EQ(KROMMBstrncpy_8(target, "ab", 0), target);
    EXPECT_EQ(target[0], 'x');
}

TEST(MultiByteUtf8, CaseBlindComparison) {
    int status = -1;
    EXPECT_EQ(KROMMBqstricmp_8("STRASSE", -1, "strasse", -1, &status), 1);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(KROMMBqstricmp_8("\xC3\x84\xC3\x96", -1, "\xC3\xA4\xC3\xB6", -1, &status), 1);  // ÄÖ, äö
    EXPECT_EQ(KROMMBqstricmp_8("a\xC0z", -1, "A\xC0Z", -1, &status), 1);
    EXPECT_EQ(status, 3);
    EXPECT_EQ(KROMMBqstricmp_8("abcX", 3, "ABCY", 3, &status), 1);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(KROMMBqstricmp_8("abc", -1, "abd", -1, &status), 0);
    // A broken byte never matches the character of the same number.
    EXPECT_EQ(KROMMBqstricmp_8("\xE9", -1, "\xC3\xA9", -1, &status), 0);

    EXPECT_EQ(KROMMBstrnicmp_8("Apple", "aPPLE", 99), 0);
    EXPECT_EQ(KROMMBstrnicmp_8("apple", "APPLY", 99), -1);
    EXPECT_EQ(KROMMBstrnicmp_8("\xC3\x89t\xC3\xA9", "\xC3\xA9T\xC3\x89", 99), 0);  // Été, éTÉ
    EXPECT_EQ(KROMMBstrnicmp_8("apples", "APPLE", 99), 1);
    EXPECT_EQ(KROMMBstrnicmp_8("apples", "APPLE", 5), 0);
    EXPECT_EQ(KROMMBstrnicmp_8("", "a", 1), -1);
}

TEST(MultiByteUtf8, SearchByCharacter) {
    char const text[] =
        "a\xE2\x82\xAC"
        "b\xE2\x82\xAC"
        "c";  // a€b€c
    EXPECT_EQ(KROMMBstrchr_8(text, 0x20AC), text + 1);
    EXPECT_EQ(KROMMBstrrchr_8(text, 0x20AC), text + 5);
    EXPECT_EQ(KROMMBstrchr_8(text, 'b'), text + 4);
    EXPECT_EQ(KROMMBstrchr_8(text, 0), text + 9);
    EXPECT_EQ(KROMMBstrchr_8(text, 0xE9), nullptr);
    EXPECT_EQ(KROMMBstrrchr_8(text, 0x82), nullptr);  // a trail byte is no character

    EXPECT_EQ(KROMMBstrcspn_8(text, "x\xE2\x82\xAC"), 1u);
    EXPECT_EQ(KROMMBstrcspn_8(text, "cb"), 4u);
    EXPECT_EQ(KROMMBstrcspn_8(text, "\xC3\xA9"), 9u);
    EXPECT_EQ(KROMMBstrcspn_8(text, ""), 9u);
    // More than 64 characters to reject: the ones behind the first 64 count as well.
    std::string reject(70, 'z');
    reject += "c";
    EXPECT_EQ(KROMMBstrcspn_8(text, reject.c_str()), 8u);
}

TEST(MultiByteCodePage, NeverSplitsACharacterOfTheLocale) {
    if (!UseUtf8Locale()) {
        GTEST_SKIP() << "no UTF-8 C locale here";
    }
    REQUIRE_DEFAULT_CONVERTER("UTF-8");
    EXPECT_EQ(KROMMBIsLeadByte_C(0xE2), 1);
    EXPECT_EQ(KROMMBIsLeadByte_C('a'), 0);
    EXPECT_EQ(KROMMBIsLeadByte_C(0x82), 0);
    EXPECT_EQ(KROMMBmbclen_C(kMixed + 3), 3u);
    EXPECT_EQ(KROMMBmblen_C(kMixed + 6, 4), 4);
    EXPECT_EQ(KROMMBmblen_C(kMixed + 6, 3), -1);
    EXPECT_EQ(KROMMBstrinc_C(kMixed + 1), kMixed + 3);

    for (std::uint64_t index : {3, 4, 5}) {
        EXPECT_EQ(KROMMBFindStart_C(kMixed, index), 3u);
    }
    EXPECT_EQ(KROMMBFindStart_C(kMixed, 99), 10u);
    EXPECT_EQ(KROMMBAnsiPrev_C(kMixed, kMixed + 10), kMixed + 6);
    EXPECT_EQ(KROMMBAnsiPrev_C(kMixed, kMixed), kMixed);

    char target[8];
    std::memset(target, 'x', sizeof target);
    KROMMBstrncpy_C(target, kMixed, 5);
    EXPECT_EQ(std::string(target, 6), std::string("a\xC3\xA9\0\0x", 6));

    char const text[] =
        "a\xE2\x82\xAC"
        "b\xE2\x82\xAC"
        "b";
    EXPECT_EQ(KROMMBstrchr_C(text, 'b'), text + 4);
    EXPECT_EQ(KROMMBstrrchr_C(text, 'b'), text + 8);
    EXPECT_EQ(KROMMBstrchr_C(text, 0x82), nullptr);  // not at the start of a character
    char const cut[] = "a\xE2\x82";                  // cut short by the terminator: a byte at a time
    EXPECT_EQ(KROMMBstrrchr_C(cut, 0x82), cut + 2);
    EXPECT_EQ(KROMMBstrrchr_C(text, 0), text + 9);
    EXPECT_EQ(KROMMBstrcspn_C(text, "\xE2\x82\xAC"), 1u);

    int codePoint = -1;
    EXPECT_EQ(KROMMBU32Get_C(&codePoint, text, 1, -1), 3);
    EXPECT_EQ(codePoint, 0x20AC);
    EXPECT_EQ(KROMMBU32Get_C(&codePoint, text, 9, -1), 0);
    EXPECT_EQ(KROMMBU32Get_C(&codePoint, text, 1, 4), 3);
    EXPECT_EQ(KROMMBU32Get_C(&codePoint, text, 1, 3), -1);  // cut by the length of the text
    EXPECT_EQ(codePoint, 0);
    EXPECT_EQ(KROMMBU32Get_C(&codePoint, "\x80", 0, -1), -1);

    int status = -1;
    EXPECT_EQ(KROMMBqstricmp_C("\xC3\x84x", -1, "\xC3\xA4X", -1, &status), 1);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(KROMMBqstricmp_C("\xFF", -1, "\xFF", -1, &status), 1);
    EXPECT_EQ(status, 3);
    EXPECT_EQ(KROMMBstrnicmp_C("ab", "AC", 2), -1);
}

TEST(MultiByteGeneric, StringFunctionsFollowUtf8Mode) {
    if (!std::setlocale(LC_ALL, "C")) {
        GTEST_SKIP();
    }
    // In the C locale every byte is a character of its own; in UTF-8 mode the UTF-8 rules hold.
    mbtest::Utf8Mode on(1);
    EXPECT_EQ(KROMMBstrinc_A(kMixed + 1), kMixed + 3);
    EXPECT_EQ(KROMMBAnsiPrev_A(kMixed, kMixed + 10), kMixed + 6);
    EXPECT_EQ(KROMMBstrchr_A(kMixed, 0x20AC), kMixed + 3);
    SetUTF8mode(0);
    EXPECT_EQ(KROMMBstrinc_A(kMixed + 1), kMixed + 2);
    EXPECT_EQ(KROMMBAnsiPrev_A(kMixed, kMixed + 10), kMixed + 9);
    EXPECT_EQ(KROMMBstrchr_A(kMixed, 0xAC), kMixed + 5);
    char target[4];
    KROMMBstrncpy_A(target, kMixed, 2);
    EXPECT_EQ(std::string(target, 2), "a\xC3");
}
