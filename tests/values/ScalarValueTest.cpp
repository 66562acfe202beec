#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <locale>
#include <memory>
#include <string>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

std::uint64_t Bits(double d) {
    std::uint64_t bits;
    std::memcpy(&bits, &d, sizeof bits);
    return bits;
}

// Opens the protected constants to the tests.
struct OpenNumeric : NumericValue {
    static double Epsilon() { return fEpsilon; }
};

struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

}  // namespace

TEST(NumericValue, ConstantsHoldTheirBitPatterns) {
    EXPECT_EQ(Bits(NumericValue::GetSysmisValue()), 0xFFEFFFFFFFFFFFFFull);
    EXPECT_EQ(Bits(NumericValue::GetInfinity()), 0x7FF0000000000000ull);
    EXPECT_EQ(Bits(OpenNumeric::Epsilon()), 0x3D190002EA46883Aull);
    EXPECT_EQ(Bits(NumericValue::SYSMIS.GetDouble()), 0xFFEFFFFFFFFFFFFFull);
    EXPECT_TRUE(NumericValue::SYSMIS.IsSystemMissingValue());
    EXPECT_EQ(NumericValue::SYSMIS.GetInt(), INT_MIN);

    EXPECT_TRUE(NumericValue::IsSystemMissingValue(kSysmis));
    EXPECT_FALSE(NumericValue::IsSystemMissingValue(-1.0e308));
    EXPECT_FALSE(NumericValue::IsSystemMissingValue(std::nan("")));
    EXPECT_FALSE(NumericValue(std::nan("")).IsSystemMissingValue());
}

TEST(NumericValue, FromStringReadsLeadingNumberInClassicLocale) {
    struct Row {
        char const* text;
        double expected;
    } const rows[] = {
        {"", kSysmis},
        {"   ", kSysmis},
        {"abc", 0.0},
        {"12.5xyz", 12.5},
        {"  -3e2", -300.0},
        {"1e999", kInf},
        {"inf", kInf},
        {"+INFINITY", kInf},
        {"-1e999", kSysmis},
        {"0x10", 0.0},
        {".5", 0.5},
        // Whole decimal texts are read without the stream; texts the stream refuses part of stay 0.
        {"+.5", 0.5},
        {"1e", 0.0},
        {"+-5", 0.0},
        {"-inf", 0.0},
        {"1-e-5", 1.0},
        {"4.9e-324", 4.9406564584124654e-324},
        {"0.30000000000000004", 0.30000000000000004},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(Bits(NumericValue(std::string(row.text)).GetDouble()), Bits(row.expected)) << row.text;
    }

    // Numbers are read in the classic locale, but written by a fresh stream in the global one.
    std::locale const previous = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    EXPECT_EQ(NumericValue(std::string("1.5")).GetDouble(), 1.5);
    EXPECT_EQ(NumericValue(2.5).GetString(), "2,5");
    EXPECT_EQ(DateTimeValue(1.5, DateTimeValue::TIME_VAL).GetNumericString(), "1,500000");
    std::locale::global(previous);
}

TEST(NumericValue, GetStringAndGetInt) {
    EXPECT_EQ(NumericValue().GetString(), "Undefined");
    EXPECT_EQ(NumericValue(-kInf).GetString(), "Undefined");
    EXPECT_FALSE(NumericValue(-kInf).IsSystemMissingValue());
    EXPECT_EQ(NumericValue(1234567.0).GetString(), "1.23457e+06");
    EXPECT_EQ(NumericValue(kInf).GetString(), "inf");

    struct Row {
        double value;
        int expected;
    } const rows[] = {
        {2.9, 2},
        {-2.9, -2},
        {2147483647.9, INT_MAX},
        {2147483648.0, INT_MIN},
        {-2147483648.9, INT_MIN},
        {-2147483649.0, INT_MIN},
        {kSysmis, INT_MIN},
        {kInf, INT_MIN},
        {std::nan(""), INT_MIN},
        {-0.5, 0},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(NumericValue(row.value).GetInt(), row.expected) << row.value;
    }
}

TEST(NumericValue, OperatorsMixRelativeEqualityWithAbsoluteOrder) {
    struct Row {
        double a, b;
        bool eq, gt, lt, ge, le;
    } const rows[] = {
        {5.0, 5.0, true, false, false, true, true},
        {2.0, 1.0, false, true, false, true, false},
        {1.0, 2.0, false, false, true, false, true},
        // Equal under ==, yet the absolute difference 1e-9 orders them.
        {1e6, 1e6 + 1e-9, true, false, true, false, true},
        // Unequal under ==, yet within the absolute 1e-14.
        {1e-15, 3e-15, false, false, false, true, true},
        // 0 equals only 0 under ==.
        {0.0, -0.0, true, false, false, true, true},
        {0.0, 1e-300, false, false, false, true, true},
        {1.0, 1.0 + 1e-13, false, false, true, false, true},
        // Two missing values are equal, and related by nothing else.
        {kSysmis, kSysmis, true, false, false, false, false},
        {kSysmis, -1e308, false, false, false, false, false},
        {1.0, kSysmis, false, false, false, false, false},
        // inf - inf is NaN: neither within the tolerance nor negative.
        {kInf, kInf, false, true, false, true, false},
    };
    for (Row const& row : rows) {
        NumericValue const a(row.a), b(row.b);
        EXPECT_EQ(NumericValue::IsEqual(row.a, row.b), row.eq) << row.a << " IsEqual " << row.b;
        EXPECT_EQ(a == b, row.eq) << row.a << " == " << row.b;
        EXPECT_EQ(a > b, row.gt) << row.a << " > " << row.b;
        EXPECT_EQ(a < b, row.lt) << row.a << " < " << row.b;
        EXPECT_EQ(a >= b, row.ge) << row.a << " >= " << row.b;
        EXPECT_EQ(a <= b, row.le) << row.a << " <= " << row.b;
    }
}

TEST(NumericValue, SetValueCopyAndEqual) {
    NumericValue n(3.0);
    StringValue const s("7");
    n.SetValue(&s);
    EXPECT_EQ(n.GetDouble(), 3.0);
    NumericValue const m(4.5);
    n.SetValue(&m);
    EXPECT_EQ(n.GetDouble(), 4.5);
    n.SetValue(nullptr);
    EXPECT_EQ(n.GetDouble(), 4.5);

    EXPECT_TRUE(n.Equal(nullptr, false, false));
    EXPECT_TRUE(n.Equal(&s, true, true));

    std::unique_ptr<ScoreValue> clone(n.Clone()), value(n.GetValue());
    EXPECT_TRUE(*clone == n);
    EXPECT_TRUE(*value == n);
}

TEST(StringValue, LengthFieldAndConstruction) {
    StringValue const empty;
    EXPECT_EQ(empty.GetLength(), 0);
    EXPECT_EQ(StringValue(empty).GetString(), std::string(255, '\0'));
    EXPECT_FALSE(StringValue() == StringValue(""));

    StringValue stale("abc");
    stale.SetLength(40);
    EXPECT_EQ(StringValue(stale).GetLength(), 3);  // copy construction recounts
    StringValue assigned("x");
    assigned = stale;
    EXPECT_EQ(assigned.GetLength(), 40);  // assignment keeps the stale length
    assigned.SetString("longer text");
    EXPECT_EQ(assigned.GetLength(), 40);
    std::unique_ptr<ScoreValue> clone(stale.Clone()), value(stale.GetValue());
    EXPECT_EQ(static_cast<StringValue&>(*clone).GetLength(), 3);
    EXPECT_EQ(static_cast<StringValue&>(*value).GetLength(), 3);

    NumericValue const number(1.0);
    assigned.SetValue(&number);
    EXPECT_EQ(assigned.GetString(), "");
    EXPECT_EQ(assigned.GetLength(), 40);
    assigned.SetValue(&stale);
    EXPECT_EQ(assigned.GetString(), "abc");
    EXPECT_EQ(StringValue(static_cast<char const*>(nullptr)).GetString(), "");
}

TEST(StringValue, NumbersFromText) {
    struct Row {
        char const* text;
        int asInt;
        double asDouble;
    } const rows[] = {
        {"  -42abc", -42, -42.0},
        {"abc", 0, 0.0},
        {"+7", 7, 7.0},
        {"3.75", 3, 3.75},
        {"", 0, 0.0},
        {"99999999999", 1215752191, 99999999999.0},
        {"\t12", 12, 12.0},
        {"-2147483648", INT_MIN, -2147483648.0},
    };
    for (Row const& row : rows) {
        EXPECT_EQ(StringValue(row.text).GetInt(), row.asInt) << row.text;
        EXPECT_EQ(StringValue(row.text).GetDouble(), row.asDouble) << row.text;
    }

    // The point of the text becomes the standard output stream's decimal point, read in the global locale.
    std::locale const comma(std::locale::classic(), new CommaPoint);
    std::locale const previous = std::locale::global(comma);
    std::locale const previousOut = std::cout.imbue(comma);
    EXPECT_EQ(StringValue("1.5").GetDouble(), 1.5);
    std::cout.imbue(previousOut);
    EXPECT_EQ(StringValue("1.5").GetDouble(), 1.0);
    std::locale::global(previous);
}

// Each row: left, right, expected result of the operator.
struct StringRow {
    char const* a;
    char const* b;
    bool expected;
};

template <class Op>
void CheckStringRows(char const* name, std::initializer_list<StringRow> rows, Op op) {
    for (StringRow const& row : rows) {
        StringValue const a(row.a), b(row.b);
        EXPECT_EQ(op(a, b), row.expected) << "'" << row.a << "' " << name << " '" << row.b << "'";
    }
}

TEST(StringValue, EqualityTrimsTrailingSpacesOnly) {
    CheckStringRows("==",
                    {{"abc", "abc   ", true},
                     {"abc  ", "abc", true},
                     {"  abc", "abc", false},
                     {"", "   ", true},
                     {"   ", "", true},
                     {"abc", "", false},
                     {"", "abc", false},
                     {"abc", "abd", false},
                     {"a\t", "a", false}},
                    [](StringValue const& a, StringValue const& b) { return a == b; });
    EXPECT_FALSE(StringValue("5") == NumericValue(5.0));
    // A string kind other than StringValue itself is read through its GetString.
    struct DerivedText : StringValue {
        using StringValue::StringValue;
    };
    EXPECT_TRUE(StringValue("abc") == DerivedText("abc  "));
    EXPECT_TRUE(StringValue("abc") < DerivedText("abd"));
}

TEST(StringValue, StrictOrderTreatsBlankRightOperandAsBelowAndAbove) {
    CheckStringRows(">",
                    {{"abc", "", true},
                     {"", "abc", false},
                     {"", "  ", false},
                     {"b", "a  ", true},
                     {"a", "b", false},
                     {"abc ", "abc", false},
                     {"\xe9", "z", true}},
                    [](StringValue const& a, StringValue const& b) { return a > b; });
    CheckStringRows("<",
                    {{"abc", "", true},
                     {"", "abc", false},
                     {" ", "", false},
                     {"a  ", "b", true},
                     {"ab", "abc", true},
                     {"abc", "abc   ", false},
                     {"z", "\xe9", true}},
                    [](StringValue const& a, StringValue const& b) { return a < b; });
    EXPECT_FALSE(StringValue("5") > NumericValue(1.0));
    EXPECT_FALSE(StringValue("0") < NumericValue(1.0));
}

TEST(StringValue, OrEqualDependsOnTrailingSpaces) {
    CheckStringRows(">=",
                    {{"", "abc", false},
                     {"abc", "", true},
                     {"", "", true},
                     {"abc", "abb", true},
                     {"abb", "abc", false},
                     {"b", "a ", true},
                     {"abb", "abc ", false},
                     {"b ", "a", false},
                     {"abc ", "abb", false},
                     {"abc ", "abc", true},
                     {"abc  ", "abb ", true},
                     {"abb  ", "abc ", false}},
                    [](StringValue const& a, StringValue const& b) { return a >= b; });
    CheckStringRows("<=",
                    {{"", "abc", true},
                     {"abc", "", false},
                     {"  ", "", true},
                     {"abb", "abc", true},
                     {"abc", "abb", false},
                     {"a", "b ", true},
                     {"c", "b ", false},
                     {"a ", "b", false},
                     {"abc ", "abb", false},
                     {"abc ", "abc", true},
                     {"abb ", "abc  ", true},
                     {"abc ", "abb  ", false}},
                    [](StringValue const& a, StringValue const& b) { return a <= b; });
    EXPECT_FALSE(StringValue("5") >= NumericValue(5.0));
    EXPECT_FALSE(StringValue("5") <= NumericValue(5.0));
}

TEST(StringValue, EqualHonoursNoSpaceTrimAndEmptyStringOK) {
    struct Row {
        char const* a;
        char const* b;
        bool noSpaceTrim, emptyStringOK, expected;
    } const rows[] = {
        {"a", "a", true, true, true},     {"a", "a ", true, false, false},
        {"a", "a ", false, false, true},  {"", "   ", false, false, true},
        {"", "   ", false, true, false},  {"   ", "", false, true, false},
        {"  ", "   ", false, true, true}, {"  ", "   ", true, false, false},
        {"a", "  ", false, false, false}, {"  ", "a", false, false, false},
        {" a", "a", false, false, false}, {"ab  ", "ab", false, true, true},
    };
    for (Row const& row : rows) {
        StringValue const a(row.a), b(row.b);
        EXPECT_EQ(a.Equal(&b, row.noSpaceTrim, row.emptyStringOK), row.expected)
            << "'" << row.a << "' '" << row.b << "' " << row.noSpaceTrim << row.emptyStringOK;
    }
    NumericValue const number(0.0);
    EXPECT_FALSE(StringValue("").Equal(nullptr, false, false));
    EXPECT_FALSE(StringValue("0").Equal(&number, false, false));
}
