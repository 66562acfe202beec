#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "vantry/diagnostics/ScoreMessages.h"
#include "vantry/diagnostics/VTErrorFormater.h"

using ScoreContext::gErrorFormater;
using ScoreContext::gScoreMessages;

namespace {

struct ExpectedRow {
    int code;
    char const* pattern;
};

// The message table as the library must hold it, kept apart from the library's own copy so that a
// change to one row of either shows up.
// clang-format off
ExpectedRow const kExpected[] = {
    {260101, "Unexpected error."},
    {260102, "Error in initializing DOCRDR. Detailed Message:"},
    {260103, "Could not open file: ''{0}''."},
    {260104, "Unexpected error in opening PMML file: ''{0}''."},
    {260105, "Unexpected error in opening PMML file."},
    {260106, "Error in parsing the PMML file: ''{0}'' to DOM tree."},
    {260107, "Error in parsing the PMML file to DOM tree."},
    {260108, "Error in parsing the PMML file: ''{0}''. Detailed message:"},
    {260109, "Error in parsing the PMML file. Detailed message:"},
    {260110, "Missing root element in PMML, invalid XML format or no dtd file available in current directory."},
    {260111, "Missing root element in PMML file: ''{0}'', invalid XML format or no dtd file available in current directory."},
    {260112, "Root tag name is empty in PMML."},
    {260113, "Missing model dll of ''{0}''."},
    {260114, "Missing node: ''{0}''."},
    {260115, "Missing node of ''{0}'' element  in ''{1}''."},
    {260116, "Missing the element with the value: ''{0}'' of attribute ''{1}'' in ''{2}''."},
    {260117, "Missing minimum ''{0}'' in ''{1}''."},
    {260118, "Missing maximum ''{0}'' in ''{1}''."},
    {260119, "Missing the attribute ''{0}''."},
    {260120, "Missing the attribute ''{0}'' of ''{1}''."},
    {260121, "Missing the attribute ''{0}'' of ''{1}'' in ''{2}''."},
    {260122, "Missing definition of ''{0}'' in ''{1}''."},
    {260123, "Missing ''{0}'' definition of ''{1}'' in ''{2}''."},
    {260124, "Missing variable:''{0}'' definition in the ''{1}''."},
    {260125, "Missing variable:''{0}'' definition in the ''{1}'' and ''{2}''."},
    {260126, "Required value list for variable: ''{0}''."},
    {260127, "The definition of value: ''{0}'' is missing or incorrect in value list of variable: ''{1}''."},
    {260128, "Missing definition of value: ''{0}'' in ''{1}''."},
    {260129, "Missing or incorrect cutpoints definition in ''{0}''."},
    {260130, "Definition a non-constant parameter in ''{0}, but missing definition of ''{1}''."},
    {260131, "Definition more than two parameter in ''{0}, but missing definition of ''{1}''."},
    {260132, "Missing or incorrect binning definition of ''{0}'' in ''{1}''."},
    {260133, "Missing target variable definition in <DataDictionary> and <MiningSchema>."},
    {260134, "Missing predictor variable definition in <DataDictionary> and <MiningSchema>."},
    {260135, "Missing the encoder info of variable: ''{0}'' in the dictionary."},
    {260151, "The value: ''{0}'' is invalid of type: ''{1}''."},
    {260152, "Invalid value ''{0}'' of attribute ''{1}''."},
    {260153, "Invalid value: ''{0}'' of attribute ''{1}'' in ''{2}''."},
    {260154, "Invalid tag: ''{0}''."},
    {260155, "Invalid predictor variable name: ''{0}''."},
    {260156, "Invalid content: ''{0}'' of element ''{1}''."},
    {260157, "Invalid value range of variable: ''{0}''."},
    {260158, "Invalid value ''{0}'' is not in the value range of variable: ''{1}''."},
    {260159, "Invalid node ''{0}'' in ''{1}''."},
    {260160, "Invalid top element: ''{0}'' of PMML document, expect ''{1}''."},
    {260161, "Variable: ''{0}'' is not defined as predictor."},
    {260162, "Incorrect definition of ''{0}'' in ''{1}''."},
    {260163, "Incorrect predictor number in dictionary."},
    {260164, "Not all ''{0}'' elements have ''{1}'' attribute."},
    {260165, "Not all ''{0}'' elements have ''{1}'' attribute or not all ''{2}'' elements have ''{3}'' attribute."},
    {260171, "Invalid value of attribute ''{0}'', expect ''{1}'' for null string value."},
    {260172, "The value: ''{0}'' is invalid, expect: ''{1}''."},
    {260173, "Require ''{0}'' parameters."},
    {260174, "Require ''{0}'' in ''{1}''."},
    {260175, "Require one of ''{0}'' or ''{1}''."},
    {260176, "More than one element ''{0}'' are required in ''{1}''."},
    {260177, "Invalid node ''{0}, expect ''{1}''."},
    {260178, "Invalid node ''{0}'', expect ''{1}'' in ''{2}''."},
    {260179, "Unsupported value ''{0}'' of attribute ''{1}'' in ''{2}, expect ''{3}''."},
    {260180, "Require the value ''{0}'' of attribute ''{1}'' in ''{2}''."},
    {260181, "Require two ''{0}'' for variable : ''{1}''."},
    {260182, "The value : ''{0}'' of attribute ''{1}'' should be greater than 0."},
    {260183, "The value : ''{0}'' of attribute ''{1}'' should be equal or greater than 0."},
    {260184, "Require variable : ''{0}'' has the value ''{1}'' of attribute ''{2}''."},
    {260185, "Require variable : ''{0}'' has the value ''{1}''or ''{2}'' of attribute ''{3}''."},
    {260186, "Variable: ''{0}'' should be numeric ordinal."},
    {260187, "Variable: ''{0}'' should be numeric."},
    {260188, "Missing the values of attribute ''{0}'' and ''{1}'' in ''{2}''."},
    {260189, "Require at least one foreach in three elements ''{0}, ''{1}'' and ''{2}''."},
    {260190, "Require one or two ''{0}'' elements."},
    {260191, "Require null value of attribute ''{0}'' in ''{1}''."},
    {260192, "Require one category in target variable and the value ''{0}'' of attribute ''{1}'' in ''{2}''."},
    {260201, "Duplicate definition of variable ''{0}''."},
    {260202, "Duplicate definition of variable ''{0}'', already in ''{1}''."},
    {260203, "Duplicate definition of ''{0}'': ''{1}'', already in ''{2}''."},
    {260204, "Duplicate definition of targe variable: ''{0}''."},
    {260211, "Conflict setting between the value ''{0}'' of attribute ''{1}'' and the value ''{2}'' of attribute ''{3}''."},
    {260212, "Conflict setting between the attribute ''{0}'' and ''{1}''."},
    {260213, "Conflict definition, the value ''{0}'' is defined in both valid and invalid."},
    {260214, "Conflict setting between the value ''{0}'' of attribute ''{1}'' in ''{2}'' and the value ''{3}'' of attribute ''{4}'' in ''{5}''."},
    {260215, "Conflict definition between the reference variable ''{0}'' and the variable ''{1}''."},
    {260216, "Conflict definition of element between ''{0}'' and ''{1}''."},
    {260217, "The value ''{0}'' of attribute ''{1}'' need worked with the value ''{2}'' of attribute ''{3}'' in variable ''{4}''."},
    {260221, "Error occurred in process ''{0}''."},
    {260222, "Error occurred in process the value ''{0}'' of attribute ''{1}''."},
    {260223, "Error occurred in process ''{0}'' : ''{1}''."},
    {260224, "Error occurred in process operator: ''{0}'' in ''{1}''."},
    {260225, "Error occurred in process the value ''{0}'' of ''{1}''."},
    {260226, "Error occurred in valiating the definition of the variable: ''{0}''."},
    {260227, "Error occurred in process ''{0}'' of variable: ''{1}''."},
    {260241, "The value: ''{0}'' of attribute ''{1}'' does not match the array size: ''{2}''."},
    {260242, "The value: ''{0}'' of attribute ''{1}'' does not match the number: ''{2}'' of ''{3}'' in ''{4}''."},
    {260243, "Type mismatch between parent function ''{0}'' and child function ''{1}''."},
    {260244, "Type mismatch between ''{0}'' and parameter variable ''{1}''."},
    {260245, "Type mismatch between function ''{0}'' and parameter variable ''{1}''."},
    {260246, "The value: ''{0}'' of attribute ''{1}'' does not match the number : ''{2}'' of ''{3}'' element in ''{4}''."},
    {260247, "The value: ''{0}'' of attribute ''{1}'' does not match the number : ''{2}'' of element with attribute ''{3}'' in ''{4}''."},
    {260248, "The array size: ''{0}'' of attribute ''{1}'' does not match the number : ''{2}'' of categories."},
    {260249, "The array size: ''{0}'' of attribute ''{1}'' does not match the number : ''{2}'' of categories in variable: ''{3}''."},
    {260250, "The total array size: ''{0}'' of attribute ''{1}'' does not match the total number : ''{2}'' of categories."},
    {260260, "Mismatch between the categories number: ''{0}'' of variable: ''{1}'' and the number: ''{2}'' of field in ''{3}''."},
    {260251, "Mismatch between the number: ''{0}'' of ''{1}'' in ''{2}'' and the number: ''{3}'' of ''{4}'' in ''{5}''."},
    {260252, "The value: ''{0}'' of attribute ''{1}'' in ''{2}'' does not match the number : ''{3}'' of ''{4}'' in ''{5}''."},
    {260253, "The value ''{0}'' of attribute ''{1}'' conflict with the definition of variable ''{2}''."},
    {260254, "The value ''{0}'' of attribute ''{1}'' in ''{2}'' does not match the definition of target variable: ''{3}'' in ''{4}''."},
    {260255, "Mismatch between the value ''{0}'' of attribute ''{1}'' in ''{2}'' and the number of unique values in the attribute ''{3}'' of ''{4}'' in ''{5}''."},
    {260256, "The number: ''{0}'' of layer units mismatch the number :''{1}'' of element ''{2}''."},
    {260257, "The total number: ''{0}'' of layer units mismatch the number :''{1}'' of element ''{2}''."},
    {260258, "Mismatch between the value: ''{0}'' of attribute ''{1}'' and the value: ''{2}'' of attribute ''{3}'' in ''{4}''."},
    {260259, "Mismatch between the number of predictors in ''{0}'': ''{1}'' and the number in ''{2}'': ''{3}''."},
    {260271, "More than two ''{0}'' defined when ''{1}'' is set."},
    {260272, "More than one ''{0}'' defined in ''{1}''."},
    {260273, "Definition of multiple targe variables: ''{0}'' and ''{1}''."},
    {260274, "More than one expression defined in ''{0}''."},
    {260281, "The element ''{0}'' in node ''{1}'' is false"},
    {260282, "The type ''{0}'' is only supported by ''{1}''."},
    {260283, "No child element in Node ''{0}''."},
    {260284, "Empty ''{0}'' in ''{1}''."},
    {260285, "The ''{0}'' of element ''{1}'' is null."},
    {260286, "No elements could be split in the value: ''{0}'' of attribute ''{1}''."},
    {260291, "No valid value in value list of variable: ''{0}''."},
    {260292, "The ''{0}''th value of variable: ''{1}'' is missing or valid value intersect."},
    {260293, "Value range intersect in variable ''{0}''."},
    {260294, "The value: ''{0}'' in variable ''{1}'' is defined as missing or both valid and invalid."},
    {260295, "Derived variable: ''{0}'' could not be target variable."},
    {260296, "Variable: ''{0}'' is not input or target variable."},
    {260297, "The source: ''{0}'' is equal with the destination in the content of element ''{1}''."},
    {260298, "Both variable: ''{0}'' and variable ''{1}'' are defined as split variable."},
    {260299, "Not support continous target variable: ''{0}''."},
    {260301, "Unsupported model: ''{0}''."},
    {260302, "Unsupport element ''{0}'' in ''{1}'' model."},
    {260303, "Unsupported value ''{0}'' of attribute ''{1}''."},
    {260304, "Error in building model."},
    {260305, "Failed to restore base model: ''{0}''."},
    {260306, "Repeate bin values in ''{0}''."},
};
// clang-format on

static_assert(std::size(kExpected) == 135, "the table has 135 rows");

// The words a pattern gives for `args`, made without ICU: each {i} is replaced by args[i] and each
// doubled apostrophe becomes one. `count` receives the number of placeholders.
std::string Expand(std::string const& pattern, std::vector<std::string> const& args, int* count) {
    std::string out;
    *count = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern.compare(i, 2, "''") == 0) {
            out += '\'';
            ++i;
        } else if (pattern[i] == '{') {
            std::size_t const close = pattern.find('}', i);
            std::size_t const index = std::stoul(pattern.substr(i + 1, close - i - 1));
            out += index < args.size() ? args[index] : "?";
            ++*count;
            i = close;
        } else {
            out += pattern[i];
        }
    }
    return out;
}

std::vector<std::string> Arguments(int count) {
    std::vector<std::string> args;
    for (int i = 0; i < count; ++i) {
        args.push_back("a" + std::to_string(i));
    }
    return args;
}

}  // namespace

TEST(MessageTable, HoldsEveryRowVerbatimInItsOrder) {
    ASSERT_EQ(std::size(gScoreMessages), std::size(kExpected));
    std::set<int> codes;
    for (std::size_t i = 0; i < std::size(kExpected); ++i) {
        SCOPED_TRACE(kExpected[i].code);
        EXPECT_EQ(gScoreMessages[i].code, kExpected[i].code);
        ASSERT_NE(gScoreMessages[i].text, nullptr);
        EXPECT_STREQ(gScoreMessages[i].text, kExpected[i].pattern);
        codes.insert(kExpected[i].code);
    }
    EXPECT_EQ(codes.size(), 135u);
    // The table is in its own order, not sorted by code.
    EXPECT_EQ(gScoreMessages[100].code, 260260);
    EXPECT_EQ(gScoreMessages[101].code, 260251);
}

TEST(MessageTable, GlobalFormatterWordsEveryCodeWithItsArguments) {
    for (ExpectedRow const& row : kExpected) {
        SCOPED_TRACE(row.code);
        int placeholders = 0;
        std::vector<std::string> const args = Arguments(6);
        Expand(row.pattern, args, &placeholders);
        std::vector<std::string> const used(args.begin(), args.begin() + placeholders);
        std::string const expected = Expand(row.pattern, used, &placeholders);

        EXPECT_EQ(gErrorFormater.GetParameterNumber(row.code), placeholders);
        EXPECT_EQ(gErrorFormater.FormatN(row.code, 0), row.pattern);
        if (placeholders > 0) {
            EXPECT_EQ(gErrorFormater.Format(row.code, used), expected);
            std::vector<char const*> pointers;
            for (std::string const& arg : used) {
                pointers.push_back(arg.c_str());
            }
            EXPECT_EQ(
                gErrorFormater.VFormatN(row.code, placeholders, reinterpret_cast<char*>(pointers.data())),
                expected);
        }
    }
}

TEST(MessageTable, OddPatternsFormatToTheirExactWords) {
    EXPECT_EQ(gErrorFormater.FormatN(260306, 1, "x"), "Repeate bin values in 'x'.");
    EXPECT_EQ(gErrorFormater.FormatN(260101, 0), "Unexpected error.");
    EXPECT_EQ(gErrorFormater.FormatN(260115, 2, "A", "B"), "Missing node of 'A' element  in 'B'.");
    EXPECT_EQ(gErrorFormater.FormatN(260130, 2, "f", "p"),
              "Definition a non-constant parameter in 'f, but missing definition of 'p'.");
    EXPECT_EQ(gErrorFormater.FormatN(260185, 4, "v", "1", "2", "t"),
              "Require variable : 'v' has the value '1'or '2' of attribute 't'.");
    EXPECT_EQ(gErrorFormater.FormatN(260281, 2, "e", "n"), "The element 'e' in node 'n' is false");
}
