#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ValueLabel.h"

using namespace QXVantry_920;
using TD = TransformationDictionary;
using Numbers = std::vector<double>;

namespace {

double const S = NumericValue::GetSysmisValue();
double const kMax = std::numeric_limits<double>::max();

struct Case {
    char const* name;
    double (*function)(Numbers const&);
    Numbers arguments;
    double expected;
};

// Missing answers must be the missing number exactly; others agree to 1e-9 relative.
void ExpectCases(std::vector<Case> const& cases) {
    for (Case const& c : cases) {
        double const actual = c.function(c.arguments);
        if (c.expected == S || c.expected == 0.0) {
            EXPECT_EQ(actual, c.expected) << c.name;
        } else {
            EXPECT_NEAR(actual, c.expected, 1e-9 * std::fabs(c.expected)) << c.name;
        }
    }
}

// The statics of one or two numbers, in the shape of the table.
template <double (*F)(double)>
double One(Numbers const& n) {
    return F(n[0]);
}
template <double (*F)(double, double)>
double Two(Numbers const& n) {
    return F(n[0], n[1]);
}
double Pow(Numbers const& n) {
    return TD::Pow(n[0], static_cast<int>(n[1]));
}
double Outlier(Numbers const& n) {
    return TD::OutlierHandle(n[0], static_cast<int>(n[1]), n[2], n[3], n[4], n[5]);
}

StringValue Text(std::string const& text, int length) {
    StringValue value(text);
    value.SetLength(length);
    return value;
}

}  // namespace

TEST(TransformFunctionsTest, NumbersOfOneOrTwo) {
    ExpectCases({
        {"round half up", One<TD::Rnd>, {2.5}, 3.0},
        {"round half away from zero", One<TD::Rnd>, {-2.5}, -3.0},
        {"round down", One<TD::Rnd>, {2.49}, 2.0},
        {"round beyond int", One<TD::Rnd>, {3e9}, S},
        {"round at the int bound", One<TD::Rnd>, {2147483647.0}, S},
        {"round sysmis", One<TD::Rnd>, {S}, S},
        {"trunc toward zero", One<TD::Trunc>, {-2.7}, -2.0},
        {"trunc beyond int", One<TD::Trunc>, {-3e9}, S},
        {"mod truncates", Two<TD::Mod>, {-7.0, 3.0}, -1.0},
        {"mod fraction", Two<TD::Mod>, {7.5, 2.0}, 1.5},
        {"mod by zero", Two<TD::Mod>, {7.0, 0.0}, S},
        {"mod quotient beyond int", Two<TD::Mod>, {1e10, 1.0}, S},
        {"mod sysmis", Two<TD::Mod>, {S, 3.0}, S},
        {"exp above 709", One<TD::Exp>, {709.5}, S},
        {"exp at 709", One<TD::Exp>, {709.0}, std::exp(709.0)},
        {"exp at -708", One<TD::Exp>, {-708.0}, 0.0},
        {"exp sysmis", One<TD::Exp>, {S}, S},
        {"ln of 0", One<TD::Ln>, {0.0}, S},
        {"ln of e", One<TD::Ln>, {std::exp(1.0)}, 1.0},
        {"log10", One<TD::Log10>, {100.0}, 2.0},
        {"log10 negative", One<TD::Log10>, {-1.0}, S},
        {"sqrt negative", One<TD::Sqrt>, {-1.0}, S},
        {"abs keeps sysmis", One<TD::Abs>, {S}, S},
        {"abs", One<TD::Abs>, {-2.0}, 2.0},
        {"floor passes sysmis", One<TD::Floor>, {S}, S},
        {"floor", One<TD::Floor>, {-1.5}, -2.0},
        {"plus sysmis", Two<TD::Plus>, {S, 2.0}, S},
        {"threshold sysmis", Two<TD::Threshold>, {S, 0.0}, 0.0},
        {"threshold above", Two<TD::Threshold>, {1.0, 0.0}, 1.0},
        {"pow 0 of tiny base", Pow, {S, 0.0}, 1.0},
        {"pow sysmis", Pow, {S, 3.0}, S},
        {"pow square", Pow, {-3.0, 2.0}, 9.0},
        {"pow", Pow, {2.0, -1.0}, 0.5},
        {"cdfnorm", One<TD::CdfNorm>, {0.0}, 0.5},
        {"cdfnorm sysmis", One<TD::CdfNorm>, {S}, S},
        {"outlier inside", Outlier, {5.0, 1.0, 5.0, 2.0, 1.0, 4.0}, 5.0},
        {"outlier extreme to high", Outlier, {9.0, 2.0, 5.0, 2.0, 1.0, 4.0}, 6.0},
        {"outlier extreme to low", Outlier, {0.0, 2.0, 5.0, 2.0, 1.0, 4.0}, 4.0},
        {"outlier as missing", Outlier, {9.0, 1.0, 5.0, 2.0, 1.0, 4.0}, S},
        {"outlier as is is missing too", Outlier, {9.0, 0.0, 5.0, 2.0, 1.0, 4.0}, S},
        {"outlier sysmis", Outlier, {S, 2.0, 5.0, 2.0, 1.0, 4.0}, S},
    });
}

TEST(TransformFunctionsTest, CollectedNumbers) {
    ExpectCases({
        {"sum skips sysmis", TD::Sum, {S, 2.0}, 2.0},
        {"sum of nothing", TD::Sum, {}, S},
        {"mean of only sysmis", TD::Mean, {S, S}, S},
        {"mean", TD::Mean, {1.0, S, 2.0}, 1.5},
        {"median even count", TD::MedianOperator, {10.0, 1.0, 3.0, 2.0}, 2.5},
        {"median odd count", TD::MedianOperator, {3.0, S, 1.0, 2.0}, 2.0},
        {"median of nothing", TD::MedianOperator, {S}, S},
        {"product skips sysmis", TD::ProductOperator, {2.0, S, 3.0}, 6.0},
        {"product of only sysmis", TD::ProductOperator, {S}, S},
        {"min", TD::Min, {S, 3.0, -1.0}, -1.0},
        {"min of the largest double", TD::Min, {kMax}, S},
        {"max of negatives", TD::Max, {-5.0, S, -3.0}, -3.0},
        {"max of nothing", TD::Max, {S}, S},
        {"sd of one", TD::Sd, {5.0}, S},
        {"sd", TD::Sd, {2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0}, std::sqrt(32.0 / 7.0)},
        {"sd of equal numbers", TD::Sd, {3.0, 3.0, 3.0}, 0.0},
        {"sd without overflow", TD::Sd, {1e200, -1e200}, std::sqrt(2.0) * 1e200},
        {"variance of one", TD::Variance, {5.0}, S},
        {"variance", TD::Variance, {1.0, 2.0, 3.0, 4.0, S}, 5.0 / 3.0},
        {"minus", TD::Minus, {5.0, 7.0}, -2.0},
        {"minus arity", TD::Minus, {5.0}, S},
        {"multiply sysmis", TD::Multiply, {5.0, S}, S},
        {"divided by zero", TD::Divided, {1.0, 0.0}, S},
        {"divided", TD::Divided, {1.0, 4.0}, 0.25},
        {"and with sysmis is true", TD::AndOperator, {S, 1.0}, 1.0},
        {"and with zero", TD::AndOperator, {0.0, 1.0}, 0.0},
        {"and of nothing", TD::AndOperator, {}, 0.0},
        {"or", TD::OrOperator, {0.0, S}, 1.0},
        {"or of zeros", TD::OrOperator, {0.0, 0.0}, 0.0},
        {"not of sysmis", TD::NotOperator, {S}, 0.0},
        {"not of zero", TD::NotOperator, {0.0}, 1.0},
        {"not arity", TD::NotOperator, {0.0, 0.0}, 0.0},
        {"lessThan compares sysmis as a number", TD::lessThan, {S, 1.0}, 1.0},
        {"lessOrEqual", TD::lessOrEqual, {1.0, 1.0}, 1.0},
        {"greaterThan", TD::greaterThan, {1.0, 1.0}, 0.0},
        {"greaterOrEqual arity", TD::greaterOrEqual, {1.0}, 0.0},
    });
}

TEST(TransformFunctionsTest, NormalLaw) {
    ExpectCases({
        {"cdf.normal", TD::CdfNormal, {1.0, 1.0, 2.0}, 0.5},
        {"cdf.normal upper", TD::CdfNormal, {2.96, 1.0, 1.0}, 0.9750021048517795},
        {"cdf.normal spread 0", TD::CdfNormal, {0.0, 0.0, 0.0}, std::numeric_limits<double>::lowest()},
        {"cdf.normal arity", TD::CdfNormal, {0.0, 0.0, 1.0, 2.0}, S},
        {"cdf.normal sysmis", TD::CdfNormal, {S, 0.0, 1.0}, S},
        {"idf.normal centre", TD::IdfNormal, {0.5, 10.0, 2.0}, 10.0},
        {"idf.normal", TD::IdfNormal, {0.975, 0.0, 2.0}, 2.0 * 1.959963984540054},
        {"pdf.normal centre", TD::PdfNormal, {3.0, 3.0, 2.0}, 1.0 / std::sqrt(6.283185307179586) / 2.0},
        {"pdf.normal", TD::PdfNormal, {1.0, 0.0, 1.0}, 0.24197072451914337},
        {"pdf.normal far tail", TD::PdfNormal, {38.0, 0.0, 1.0}, 0.0},
        {"pdf.normal spread negative", TD::PdfNormal, {0.0, 0.0, -1.0}, S},
        // The standard density keeps its shorter circle constant.
        {"stdNormalPDF", TD::stdNormalPDF, {0.0}, 1.0 / std::sqrt(6.2831853)},
        {"stdNormalCDF", TD::stdNormalCDF, {1.96}, 0.9750021048517795},
        {"stdNormalCDF arity", TD::stdNormalCDF, {}, S},
        {"erf", TD::Erf, {1.0}, 0.8427007929497149},
        {"erf sysmis", TD::Erf, {S}, S},
        {"stdNormalIDF centre", TD::stdNormalIDF, {0.5}, 0.0},
        {"stdNormalIDF", TD::stdNormalIDF, {0.025}, -1.959963984540054},
        {"stdNormalIDF at 1", TD::stdNormalIDF, {1.0}, std::numeric_limits<double>::lowest()},
    });
    EXPECT_NE(TD::stdNormalPDF({0.0}), TD::PdfNormal({0.0, 0.0, 1.0}));
}

TEST(TransformFunctionsTest, ValueTestsCompareKindsAndFreeTheirValues) {
    struct PairCase {
        char const* name;
        ScoreValue* left;
        ScoreValue* right;
        double equal;
    };
    std::vector<PairCase> const cases = {
        {"number and text", new NumericValue(1.0), new StringValue("1"), 0.0},
        {"numbers", new NumericValue(1.0), new NumericValue(1.0), 1.0},
        {"number and date of the same number", new NumericValue(0.0),
         new DateTimeValue(0.0, DateTimeValue::DATETIME_VAL), 0.0},
        {"texts with trailing blanks", new StringValue("a "), new StringValue("a"), 1.0},
    };
    for (PairCase const& c : cases) {
        std::vector<ScoreValue*> values = {c.left, c.right};
        std::vector<ScoreValue*> copies = {c.left->Clone(), c.right->Clone()};
        EXPECT_EQ(TD::equal(values), c.equal) << c.name;
        EXPECT_EQ(TD::notEqual(copies), 1.0 - c.equal) << c.name;
        EXPECT_TRUE(values.empty() && copies.empty()) << c.name;
    }
    std::vector<ScoreValue*> three = {new NumericValue(1.0), new NumericValue(1.0), new NumericValue(1.0)};
    EXPECT_EQ(TD::equal(three), 0.0);
    std::vector<ScoreValue*> one = {new NumericValue(1.0)};
    EXPECT_EQ(TD::notEqual(one), 1.0);

    auto list = [] { return std::vector<ScoreValue*>{new StringValue("a"), new StringValue("b")}; };
    std::vector<ScoreValue*> values = list();
    EXPECT_EQ(TD::isIn(values, new StringValue("b")), 1.0);
    EXPECT_TRUE(values.empty());
    values = list();
    EXPECT_EQ(TD::isNotIn(values, new StringValue("c")), 1.0);
    values = list();
    EXPECT_EQ(TD::isIn(values, nullptr), 0.0);
    values = list();
    EXPECT_EQ(TD::isNotIn(values, nullptr), 1.0);
}

TEST(TransformFunctionsTest, ImputedCategoryIsTheNearestMeanInItsOwnSpread) {
    ValueLbl low(new StringValue("low"), "Low");
    ValueLbl high(new StringValue("high"), "High");
    std::vector<ScoreValueLabel*> const labels = {&low, &high};
    // 5 is 5 spreads from 0 but half a spread from 10.
    EXPECT_EQ(TD::ImputeCatFieldMissingAgainstConTargetHandle(5.0, labels, {0.0, 10.0}, {1.0, 100.0}),
              high.GetValue());
    EXPECT_EQ(TD::ImputeCatFieldMissingAgainstConTargetHandle(5.0, labels, {0.0, 10.0}, {1.0, 1.0}),
              low.GetValue());
    // Fewer labels than categories: no answer rather than a failure.
    EXPECT_EQ(TD::ImputeCatFieldMissingAgainstConTargetHandle(9.0, {&low}, {0.0, 10.0}, {1.0, 1.0}), nullptr);
    EXPECT_EQ(TD::ImputeCatFieldMissingAgainstConTargetHandle(9.0, labels, {}, {}), nullptr);
}

TEST(TransformFunctionsTest, FixedWidthTexts) {
    int length = -1;
    EXPECT_EQ(TD::Concat({"ab", "cde"}, {4, 2}, length), "ab  cd");
    EXPECT_EQ(length, 6);
    EXPECT_EQ(TD::Concat({}, {}, length), "");
    EXPECT_EQ(length, 0);

    StringValue const padded = Text(" \tab \t ", 10);
    EXPECT_EQ(TD::Ltrim(&padded, length), "ab \t ");
    EXPECT_EQ(length, 8);
    EXPECT_EQ(TD::Rtrim(&padded, length), " \tab \t");  // the tab stays
    EXPECT_EQ(length, 6);

    StringValue const abc = Text("abc", 8);
    EXPECT_EQ(TD::Substring(&abc, 2, length), "bc");
    EXPECT_EQ(length, 2);
    EXPECT_EQ(TD::Substring(&abc, 3, length), "");  // the last byte is out of reach
    EXPECT_EQ(length, 8);
    EXPECT_EQ(TD::Substring(&abc, 0, length), "");
    EXPECT_EQ(length, 8);
    StringValue const empty = Text("", 8);
    EXPECT_EQ(TD::Substring(&empty, 1, length), "");
    EXPECT_EQ(length, 0);
}

TEST(TransformFunctionsTest, SubstringCountsFromOneAndCutsAtTheEnd) {
    struct SubCase {
        char const* text;
        int start;
        int count;
        char const* unicode;  // by UTF-16 code units
        int unicodeLength;
        char const* bytes;  // by bytes
        int bytesLength;
    };
    std::vector<SubCase> const cases = {
        {"abc", 2, 10, "bc", 2, "bc", 2}, {"abc", 1, 2, "ab", 2, "ab", 2},
        {"abc", 3, 1, "c", 1, "c", 1},    {"abc", 4, 1, "", 0, "", 0},
        {"abc", 0, 1, "", 0, "", 0},      {"h\xC3\xA9llo", 2, 3, "\xC3\xA9ll", 4, "\xC3\xA9l", 3},
    };
    for (SubCase const& c : cases) {
        StringValue const value = Text(c.text, 20);
        int length = -1;
        EXPECT_EQ(TD::Substring_unicode(&value, c.start, c.count, length), c.unicode) << c.text << c.start;
        EXPECT_EQ(length, c.unicodeLength) << c.text << c.start;
        EXPECT_EQ(TD::Substring(&value, c.start, c.count, length), c.bytes) << c.text << c.start;
        EXPECT_EQ(length, c.bytesLength) << c.text << c.start;
    }
}

TEST(TransformFunctionsTest, RegularExpressions) {
    EXPECT_EQ(TD::Matches({"hello world", "o w"}), 1.0);
    EXPECT_EQ(TD::Matches({"hello world", "^world"}), 0.0);
    EXPECT_EQ(TD::Matches({"hello", "("}), 0.0);
    EXPECT_EQ(TD::Matches({"h\xC3\xA9llo", "^h.l"}), 1.0);  // one character, two bytes

    int length = -1;
    EXPECT_EQ(TD::Replace({"a1b22", "[0-9]+", "#"}, length), "a#b#");
    EXPECT_EQ(length, 4);
    EXPECT_EQ(TD::Replace({"2024-05", "(\\d+)-(\\d+)", "$2/$1"}, length), "05/2024");
    EXPECT_EQ(TD::Replace({"keep me", "[", "x"}, length), "keep me");
    EXPECT_EQ(length, 7);

    // More patterns than the per-thread cache holds, twice over: evicted patterns compile again correctly.
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 20; ++i) {
            std::string const digits = std::to_string(i);
            EXPECT_EQ(TD::Matches({"x" + digits + "y", "x" + digits + "y"}), 1.0) << i;
            EXPECT_EQ(TD::Matches({"x" + digits + "z", "x" + digits + "y"}), 0.0) << i;
        }
    }
}
