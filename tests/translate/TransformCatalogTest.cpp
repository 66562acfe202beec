// The function catalogue: texts, names, classes, and the checks of a parsed "Apply".
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/ScoreDictVar.h"

namespace {

using QXVantry_920::TransformationDictionary;
using TF = TransformationDictionary::TransformFunction;
using vantry_test::OpenPMMLTranslator;
using vantry_test::Refusal;

// The document texts of the functions in the order of their values, "|" between two texts of one
// value; the last value, 79, has none. Each value's name is its first text, except for the unnamed.
char const* const kTexts =
    "+ - * / pow abs exp log10|lg10 ln mod round sqrt trunc floor ceil product min max mean avg median sum "
    "sd "
    "variance cdf.normal cdfnorm idf.normal pdf.normal date_years_difference date_months_difference "
    "date_days_difference year-from-date month-from-date day-from-date time_hours_difference "
    "time_minutes_difference time_seconds_difference hour-from-time minute-from-time second-from-time "
    "isMissing "
    "isNotMissing equal notEqual lessThan lessOrEqual greaterThan greaterOrEqual isIn isNotIn and or not "
    "matches "
    "lowercase uppercase lower concat replace ltrim rtrim|trimend substr substring length if value threshold "
    "sysmis recast_to_ordinal recast_to_scale outlierHandle imputeCatFieldMissingAgainstConTarget normalCDF "
    "normalPDF stdNormalCDF stdNormalPDF erf normalIDF stdNormalIDF";
char const* const kUnnamed = "20,21,32,33,72-79";

std::vector<std::string> Split(std::string const& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    std::string part;
    while (std::getline(in, part, separator)) {
        parts.push_back(part);
    }
    return parts;
}

// The values of a list of ranges such as "0-3,66,67".
std::set<int> Values(std::string const& ranges) {
    std::set<int> values;
    for (std::string const& part : Split(ranges, ',')) {
        std::size_t const dash = part.find('-');
        int const low = std::stoi(part.substr(0, dash));
        int const high = dash == std::string::npos ? low : std::stoi(part.substr(dash + 1));
        for (int v = low; v <= high; ++v) {
            values.insert(v);
        }
    }
    return values;
}

class TransformCatalogTest : public vantry_test::DerivedFieldTest {
  protected:
    void SetUp() override {
        DerivedFieldTest::SetUp();
        translator->InitFunctionMap();
    }

    // VerifyApplyFunction on children given as "D" (number constant), "S" (text constant),
    // "T" (date constant), "A<value>" (nested function) or a field name.
    std::string Verify(int function, std::vector<std::string> const& children) {
        std::vector<std::string> names;
        std::vector<int> kinds;
        std::vector<TF> functions;
        for (std::string const& child : children) {
            if (child == "D" || child == "S" || child == "T") {
                names.push_back("Constant_" + child + "_");
                kinds.push_back(2);
                functions.push_back(TransformationDictionary::TF_UNKNOWN);
            } else if (child[0] == 'A') {
                names.push_back("APPLY");
                kinds.push_back(0);
                functions.push_back(static_cast<TF>(std::stoi(child.substr(1))));
            } else {
                names.push_back(child);
                kinds.push_back(1);
                functions.push_back(TransformationDictionary::TF_UNKNOWN);
            }
        }
        QXVantry_920::TransformVar const* variable = nullptr;
        return Refusal([&] {
            translator->VerifyApplyFunction(names, kinds, dictionary.get(), nullptr,
                                            static_cast<TF>(function), functions, variable);
        });
    }
};

TEST_F(TransformCatalogTest, EveryTextMapsToItsFunctionAndBackToItsName) {
    EXPECT_EQ(translator->fFunctionMap.size(), 81u);
    std::vector<std::string> const byValue = Split(kTexts, ' ');
    ASSERT_EQ(byValue.size(), 79u);
    std::set<int> const unnamed = Values(kUnnamed);
    for (int value = 0; value <= 79; ++value) {
        std::vector<std::string> const texts =
            value < 79 ? Split(byValue[value], '|') : std::vector<std::string>{};
        for (std::string const& text : texts) {
            EXPECT_EQ(translator->GetTransFunction(text), value) << text;
        }
        std::string const name = unnamed.count(value) == 1 ? "<not defined>" : texts.at(0);
        EXPECT_EQ(translator->ToString(static_cast<TF>(value)), name) << value;
    }
    // Exact and case-sensitive; a second fill leaves the same map, and an empty one is filled on demand.
    EXPECT_EQ(translator->GetTransFunction("LOG10"), TransformationDictionary::TF_UNKNOWN);
    EXPECT_EQ(translator->GetTransFunction(" abs"), TransformationDictionary::TF_UNKNOWN);
    translator->InitFunctionMap();
    EXPECT_EQ(translator->fFunctionMap.size(), 81u);
    translator->fFunctionMap.clear();
    EXPECT_EQ(translator->GetTransFunction("trimend"), TransformationDictionary::TF_RTRIM);
}

TEST_F(TransformCatalogTest, ClassesAreTheFixedRangesWithTheirHoles) {
    using Classifier = bool (OpenPMMLTranslator::*)(TF);
    struct Class {
        char const* name;
        Classifier test;
        char const* ranges;
    };
    Class const classes[] = {
        {"arithmetic", &OpenPMMLTranslator::IsArithmeticFunction, "0-3"},
        {"mathematics", &OpenPMMLTranslator::IsMathematicsFunction, "4-15,66,67"},
        {"statistic", &OpenPMMLTranslator::IsStatisticFunction, "16-27,72-78"},
        {"date", &OpenPMMLTranslator::IsDateTimeFunction, "28-39"},
        {"logic", &OpenPMMLTranslator::IsLogicFunction, "40-46,48-53"},
        {"string", &OpenPMMLTranslator::IsStringFunction, "54-61"},
        {"numeric", &OpenPMMLTranslator::IsNumericFunction, "0-39,66,67,70-78"},
        {"input numeric", &OpenPMMLTranslator::IsInputNumericFunction, "0-39,66,67,70-78"},
        {"input string", &OpenPMMLTranslator::IsInputStringFunction, "54-61,63"},
        {"mix input", &OpenPMMLTranslator::IsMixInputFunction, "40-46,48-53,64,65,68,69"},
        {"output numeric", &OpenPMMLTranslator::IsOutputNumericFunction, "0-46,48-53,63,66,67,70-78"},
        {"output string", &OpenPMMLTranslator::IsOutputStringFunction, "54-61"},
        {"mix output", &OpenPMMLTranslator::IsMixOutputFunction, "64,65"},
    };
    for (Class const& c : classes) {
        std::set<int> const expected = Values(c.ranges);
        for (int f = 0; f <= 79; ++f) {
            EXPECT_EQ((translator.get()->*c.test)(static_cast<TF>(f)), expected.count(f) == 1)
                << c.name << " " << f;
        }
    }
}

TEST_F(TransformCatalogTest, WrongChildCountsAreRefusedWithTheRequiredCount) {
    // A function, children that it accepts, and the count that a message names.
    struct Arity {
        int function;
        std::vector<std::string> accepted;
    };
    Arity const arities[] = {
        {0, {"D", "x"}},
        {4, {"D", "D"}},
        {9, {"x", "y"}},
        {53, {"S", "s"}},
        {61, {"S", "D"}},
        {5, {"D"}},
        {25, {"x"}},
        {54, {"S"}},
        {63, {"s"}},
        {24, {"D", "D", "D"}},
        {77, {"x", "D", "D"}},
        {74, {"D"}},
        {30, {"d", "d"}},
        {31, {"d"}},
        {58, {"S", "S", "S"}},
        {62, {"S", "D", "D"}},
        {70, {"x", "S", "D", "D", "D", "D"}},
        {65, {"x"}},
        {67, {"x"}},
    };
    for (Arity const& arity : arities) {
        std::string const count = std::to_string(arity.accepted.size());
        EXPECT_EQ(Verify(arity.function, arity.accepted), "none") << arity.function;
        std::vector<std::string> more = arity.accepted;
        more.push_back("D");
        EXPECT_EQ(Verify(arity.function, more), "260173: Require '" + count + "' parameters.")
            << arity.function;
    }
    // Functions of any count, and those without a check at all.
    EXPECT_EQ(Verify(15, {"D", "x", "D", "y"}), "none");
    EXPECT_EQ(Verify(21, {}), "none");
    EXPECT_EQ(Verify(57, {"S", "s", "S"}), "none");
    EXPECT_EQ(Verify(13, {"D", "D"}), "none");
    EXPECT_EQ(Verify(50, {"S", "d", "A5"}), "none");
    EXPECT_EQ(Verify(64, {"D", "S", "T"}), "none");
}

TEST_F(TransformCatalogTest, ChildrenMustHaveTheTypeTheirFunctionReads) {
    // Dates are no numbers, neither as fields nor as constants.
    EXPECT_EQ(Verify(5, {"d"}), "260245: Type mismatch between function 'abs' and parameter variable 'd'.");
    EXPECT_EQ(Verify(5, {"T"}),
              "260245: Type mismatch between function 'abs' and parameter variable 'Constant_T_'.");
    EXPECT_EQ(Verify(30, {"d", "D"}), "none");
    EXPECT_EQ(Verify(0, {"x", "s"}),
              "260245: Type mismatch between function '+' and parameter variable 's'.");
    EXPECT_EQ(Verify(54, {"D"}),
              "260245: Type mismatch between function 'lowercase' and parameter variable 'Constant_D_'.");
    EXPECT_EQ(Verify(61, {"D", "D"}),
              "260245: Type mismatch between function 'substr' and parameter variable 'Constant_D_'.");
    // A function without a name of its own says so in the message.
    EXPECT_EQ(Verify(21, {"s"}),
              "260245: Type mismatch between function '<not defined>' and parameter variable 's'.");
    // An unknown field is let through where a number is wanted, and refused where text is.
    EXPECT_EQ(Verify(5, {"nowhere"}), "none");
    EXPECT_EQ(Verify(54, {"nowhere"}),
              "260245: Type mismatch between function 'lowercase' and parameter variable 'nowhere'.");
}

TEST_F(TransformCatalogTest, FieldOnlyFunctionsTakeOneFieldOfTheRightType) {
    EXPECT_EQ(Verify(65, {"D"}), "260174: Require 'FieldRef' in 'Apply'.");
    EXPECT_EQ(Verify(68, {"A0"}), "260174: Require 'FieldRef' in 'Apply'.");
    EXPECT_EQ(Verify(67, {"s"}),
              "260245: Type mismatch between function 'sysmis' and parameter variable 's'.");
    EXPECT_EQ(Verify(67, {"nowhere"}), "none");

    // value and the recasts compare the field's type with the derived variable's.
    QXVantry_920::TransformVar text("t", QXVantry_920::ScoreDictVar::STRING_VAR);
    auto const verifyFor = [&](int function, std::string const& field) {
        return Refusal([&] {
            translator->VerifyApplyFunction({field}, {1}, dictionary.get(), nullptr,
                                            static_cast<TF>(function), {TransformationDictionary::TF_UNKNOWN},
                                            &text);
        });
    };
    EXPECT_EQ(verifyFor(65, "s"), "none");
    EXPECT_EQ(verifyFor(69, "x"),
              "260215: Conflict definition between the reference variable 't' and the variable 'x'.");
}

TEST_F(TransformCatalogTest, NestedFunctionsMustFitTheirParent) {
    // Numeric parents take numeric and mixed children; greaterOrEqual is outside the numeric outputs.
    EXPECT_EQ(Verify(5, {"A46"}), "none");
    EXPECT_EQ(Verify(5, {"A64"}), "none");
    EXPECT_EQ(Verify(0, {"A63", "A65"}), "none");
    EXPECT_EQ(Verify(5, {"A47"}),
              "260243: Type mismatch between parent function 'abs' and child function 'greaterOrEqual'.");
    EXPECT_EQ(Verify(0, {"A54", "D"}),
              "260243: Type mismatch between parent function '+' and child function 'lowercase'.");
    // Text parents take text and mixed children; substring is no text function here.
    EXPECT_EQ(Verify(57, {"A55", "A64", "A61"}), "none");
    EXPECT_EQ(Verify(57, {"A62"}),
              "260243: Type mismatch between parent function 'concat' and child function 'substring'.");
    EXPECT_EQ(Verify(63, {"A5"}),
              "260243: Type mismatch between parent function 'length' and child function 'abs'.");
    // matches and substring take no nested function at all; and checks nothing.
    EXPECT_EQ(Verify(53, {"A54", "S"}),
              "260243: Type mismatch between parent function 'matches' and child function 'lowercase'.");
    EXPECT_EQ(Verify(50, {"A47", "A47"}), "none");
}

}  // namespace
