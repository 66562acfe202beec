#include <gtest/gtest.h>
#include <xercesc/util/PlatformUtils.hpp>

#include <string>

#include "tests/text/TextTestSupport.h"
#include "vantry/text/VantryString.h"

using QXVantry_920::VantryString;
using xercesc::XMLPlatformUtils;

namespace {

using VantryStringTest = mbtest::XercesSuite;

std::u16string Units(VantryString const& s) {
    return s.xc_str() == nullptr ? u"<null>" : s.xc_str();
}

}  // namespace

TEST_F(VantryStringTest, NullAndEmptyAreDistinctStates) {
    VantryString null;
    EXPECT_EQ(null.xc_str(), nullptr);
    EXPECT_EQ(null.length(), 0u);
    EXPECT_TRUE(null.empty());
    EXPECT_FALSE(null == VantryString());
    EXPECT_FALSE(null.equals(VantryString()));
    EXPECT_TRUE(null.equals(static_cast<char16_t const*>(nullptr)) && null.equals(u""));
    EXPECT_EQ(VantryString(static_cast<char const*>(nullptr)).xc_str(), nullptr);

    VantryString blank(u"");
    ASSERT_NE(blank.xc_str(), nullptr);
    EXPECT_TRUE(blank.empty());
    EXPECT_TRUE(blank == VantryString(u""));
    EXPECT_FALSE(blank == null);
    EXPECT_EQ(blank.clear().xc_str(), nullptr);
}

TEST_F(VantryStringTest, ConstructionAndAssignmentCopyTheText) {
    VantryString narrow("abc");
    EXPECT_EQ(Units(narrow), u"abc");
    VantryString copy(narrow);
    EXPECT_NE(copy.xc_str(), narrow.xc_str());
    EXPECT_TRUE(copy == narrow);

    copy = u"xy";
    EXPECT_EQ(Units(copy), u"xy");
    copy = copy;  // self-assignment keeps the text
    EXPECT_EQ(Units(copy), u"xy");
    copy.assign(copy.xc_str() + 1);  // a source inside the own buffer
    EXPECT_EQ(Units(copy), u"y");
    copy.assign(u'Z');
    EXPECT_EQ(Units(copy), u"Z");
    copy.assign(VantryString());
    EXPECT_EQ(copy.xc_str(), nullptr);
}

TEST_F(VantryStringTest, AppendIgnoresNullEmptyAndZero) {
    VantryString s;
    s.append(static_cast<char16_t const*>(nullptr)).append(u"").append(u'\0').append("");
    EXPECT_EQ(s.xc_str(), nullptr);
    s.append(u"ab").append("cd").append(u'e').append(VantryString(u"f"));
    EXPECT_EQ(Units(s), u"abcdef");
    s.append(s);
    EXPECT_EQ(Units(s), u"abcdefabcdef");
}

TEST_F(VantryStringTest, ContainsStringSearchesEveryPosition) {
    VantryString s(u"abcde");
    EXPECT_TRUE(s.ContainsString(u"abcde") && s.ContainsString(u"cde") && s.ContainsString(u""));
    EXPECT_FALSE(s.ContainsString(u"abcdef") || s.ContainsString(u"ce") || s.ContainsString(nullptr));
    EXPECT_FALSE(VantryString().ContainsString(u""));
}

TEST_F(VantryStringTest, ConvertToIntegerWrapsAndRejectsNonDigits) {
    struct Case {
        char16_t const* text;
        unsigned int expected;
    };
    Case const cases[] = {{u"123", 123u},      {u"12a", 0u},   {u"-5", 0u},          {u"+5", 0u},
                          {u"", 0u},           {nullptr, 0u},  {u"4294967295", ~0u}, {u"4294967296", 0u},
                          {u"4294967297", 1u}, {u"\u0661", 0u}};
    for (Case const& c : cases) {
        VantryString s(c.text);
        EXPECT_EQ(s.convertToInteger(), c.expected)
            << (c.text ? std::string(c.text, c.text + s.length()) : "null");
    }
}

TEST_F(VantryStringTest, TruncateTakesUnitsOffTheEnd) {
    VantryString s(u"abcde");
    EXPECT_EQ(Units(s.truncateString(2)), u"abc");
    EXPECT_EQ(Units(s.truncateString(0)), u"abc");
    s.truncateString(9);
    ASSERT_NE(s.xc_str(), nullptr);
    EXPECT_TRUE(s.empty());
    EXPECT_EQ(VantryString().truncateString(3).xc_str(), nullptr);
}

TEST_F(VantryStringTest, ReplaceSubstringStepsByReplacementLength) {
    struct Case {
        char16_t const* text;
        char16_t const* find;
        char16_t const* replacement;
        char16_t const* expected;  // null: a null buffer
        unsigned int count;
    };
    Case const cases[] = {
        {u"abc", u"ab", u"x", u"xc", 1},      {u"abab", u"ab", u"b", u"bb", 2},
        {u"abcde", u"a", u"xyz", u"xyze", 1},  // b, c and d are stepped over
        {u"aab", u"a", u"b", u"bb", 1},        // the second a is stepped over
        {u"aaa", u"a", u"", nullptr, 3},      {u"ab", u"a", u"xyz", u"xyz", 1},
        {u"abc", u"z", u"x", u"abc", 0},      {u"ab", u"", u"x", u"xx", 2},
    };
    for (Case const& c : cases) {
        VantryString s(c.text);
        EXPECT_EQ(s.replaceSubstring(c.find, c.replacement), c.count);
        EXPECT_EQ(Units(s), c.expected ? c.expected : u"<null>");
    }
    VantryString null;
    EXPECT_EQ(null.replaceSubstring(u"", u"x"), 0u);
    EXPECT_EQ(null.xc_str(), nullptr);
}

TEST_F(VantryStringTest, UTF8RoundTripsMultiByteCharacters) {
    std::string const utf8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";  // a é € 😀 z
    VantryString s;
    s.assignUTF8(utf8);
    EXPECT_EQ(Units(s), u"a\u00E9\u20AC\U0001F600z");
    EXPECT_EQ(s.toUTF8(), utf8);

    std::string const longText = std::string(2500, 'x') + "\xE2\x82\xAC";
    s.assignUTF8(longText);
    EXPECT_EQ(s.length(), 2501u);
    EXPECT_EQ(s.toUTF8(), longText);

    EXPECT_EQ(s.assignUTF8("").xc_str(), nullptr);
    EXPECT_EQ(VantryString().toUTF8(), "");
}

TEST_F(VantryStringTest, MalformedUTF8KeepsWhatWasConverted) {
    VantryString s(u"old");
    EXPECT_EQ(Units(s.assignUTF8("ab\xFFxy")), u"ab");
    EXPECT_EQ(Units(s.assignUTF8("ab\xC3")), u"ab");  // cut at the end
    EXPECT_EQ(s.assignUTF8("\xFFxy").xc_str(), nullptr);
    // A bad continuation byte loses the block of 1000 units that holds it; the blocks before it stay.
    s.assignUTF8(std::string(1500, 'x') + "\xC3\x28" + "tail");
    EXPECT_EQ(Units(s), std::u16string(1000, u'x'));

    VantryString loneSurrogate(u"ab\xD800");
    EXPECT_EQ(loneSurrogate.toUTF8(), "ab");
}

TEST(VantryStringLifetime, StringMayOutliveXerces) {
    XMLPlatformUtils::Initialize();
    auto* s = new VantryString(u"kept");
    s->append(u"!");
    XMLPlatformUtils::Terminate();
    EXPECT_EQ(std::u16string(s->xc_str()), u"kept!");
    delete s;  // goes back to the global operator delete that the default memory manager uses
}
