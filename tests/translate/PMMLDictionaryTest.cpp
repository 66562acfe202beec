// The PMML data dictionary: fields, their categories, missing values and intervals, and every refusal.
#include <string>
#include <vector>

#include "DocumentTestSupport.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/ScoreEncoder.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

using PMMLDictionaryTest = DocumentTest;

std::string Field(std::string const& attributes, std::string const& children = "") {
    return "<DataField " + attributes + ">" + children + "</DataField>";
}

std::string Dict(std::string const& fields, int count = 1) {
    return "<DataDictionary numberOfFields=\"" + std::to_string(count) + "\">" + fields + "</DataDictionary>";
}

}  // namespace

TEST_F(PMMLDictionaryTest, ReadsEveryKindOfField) {
    auto dictionary = Dictionary(ReadFixture("data_dictionary.xml"));
    ASSERT_EQ(dictionary->GetVarNames(),
              (std::vector<std::string>{"age", "colour", "grade", "joined", "member", "region"}));

    ScoreDictVar* age = dictionary->GetVar("age");
    EXPECT_EQ(age->GetLabel(), "Age in years");
    EXPECT_EQ(age->GetMLevel(), ScoreDictVar::MEASURE_CONTINUOUS);
    EXPECT_EQ(age->GetNumericDataType(), ScoreDictVar::NUMERIC_TYPE_INTEGER);
    EXPECT_EQ(age->GetWidth(), 3);
    EXPECT_EQ(age->GetDecimal(), 0);
    EXPECT_TRUE(age->IsEmptyCateValues());
    // The interval [0, 120) is valid; its complement and the declared values are missing.
    EXPECT_FALSE(IsMissingNumber(age, 0));
    EXPECT_FALSE(IsMissingNumber(age, 119.5));
    EXPECT_TRUE(IsMissingNumber(age, 120));
    EXPECT_TRUE(IsMissingNumber(age, -0.5));
    EXPECT_TRUE(IsMissingNumber(age, 999));

    ScoreDictVar* colour = dictionary->GetVar("colour");
    EXPECT_EQ(colour->GetVarType(), ScoreDictVar::STRING_VAR);
    EXPECT_EQ(colour->GetMLevel(), ScoreDictVar::MEASURE_NOMINAL);
    EXPECT_EQ(colour->GetWidth(), 8);
    EXPECT_TRUE(colour->GetEmptyStringOK());
    EXPECT_EQ(CategoryTexts(colour), (std::vector<std::string>{"red=Red", "green=green", "blue=blue"}));
    StringValue const unknown("unknown");
    EXPECT_TRUE(colour->IsMissingValue(&unknown));
    EXPECT_EQ(colour->GetEncoder(), nullptr);

    ScoreDictVar* grade = dictionary->GetVar("grade");
    EXPECT_EQ(grade->GetMLevel(), ScoreDictVar::MEASURE_ORDINAL);
    EXPECT_EQ(grade->GetNumberOfCats(), 3);

    ScoreDictVar* joined = dictionary->GetVar("joined");
    EXPECT_EQ(joined->GetVarType(), ScoreDictVar::DATETIME_VAR);
    EXPECT_EQ(joined->GetDateTimeType(), ScoreDictVar::DT_DATE_DAYS_SINCE_1970);

    ScoreDictVar* member = dictionary->GetVar("member");
    EXPECT_EQ(member->GetVarType(), ScoreDictVar::STRING_VAR);
    EXPECT_TRUE(member->IsFlagVariable());
    EXPECT_EQ(member->GetXMeasure(), "flag");
    EXPECT_EQ(member->GetFalgTypeTrueValue(), "Y");

    ScoreDictVar* region = dictionary->GetVar("region");
    EXPECT_EQ(region->GetVarType(), ScoreDictVar::STRING_VAR);
    EXPECT_FALSE(region->IsUsageTypeEnable());
    EXPECT_TRUE(region->IsEmptyCateValues());
    ASSERT_NE(region->GetMissingValues(), nullptr);
    EXPECT_EQ(region->GetMissingValues()->Size(), 1);
}

TEST_F(PMMLDictionaryTest, EncodersOnlyForStringVariablesWhenAsked) {
    auto dictionary = Dictionary(ReadFixture("data_dictionary.xml"), true);
    ScoreEncoder* colour = dictionary->GetVar("colour")->GetEncoder();
    ASSERT_NE(colour, nullptr);
    EXPECT_EQ(colour->GetNumberOfCategories(), 3);
    EXPECT_EQ(colour->Decode(0), "red");
    EXPECT_EQ(colour->Decode(2), "blue");
    EXPECT_NE(dictionary->GetVar("region")->GetEncoder(), nullptr);
    EXPECT_EQ(dictionary->GetVar("grade")->GetEncoder(), nullptr);
}

TEST_F(PMMLDictionaryTest, RefusesBadDocumentsWithTheirCodeAndWords) {
    std::string const cont = R"(name="x" optype="continuous")";
    std::string const cat = R"(name="x" optype="categorical")";
    std::string const str = R"(name="x" optype="categorical" dataType="string")";
    std::string const flag = R"(<Extension name="measure" value="flag"/>)";
    std::pair<std::string, std::string> const cases[] = {
        {Dict(Field(cont) + "<MiningField/>"),
         "260178: Invalid node 'MiningField', expect 'DataDictionary' in 'Extension'."},
        {"<DataDictionary/>", "260120: Missing the attribute 'numberOfFields' of 'DataDictionary'."},
        {R"(<DataDictionary numberOfFields=""/>)",
         "260285: The 'numberOfFields' of element 'DataDictionary' is null."},
        {Dict(Field(cont) + Field(R"(name="y" optype="continuous")"), 3),
         "260242: The value: '3' of attribute 'numberOfFields' does not match the number: '2' of 'DataField' "
         "in 'DataDictionary'."},
        // Errors within the fields win over a wrong count.
        {Dict(Field(cont) + Field(cont), 5),
         "260202: Duplicate definition of variable 'x', already in 'DataDictionary'."},
        {Dict(Field(R"(name="" optype="continuous")")), "260285: The 'name' of element 'DataField' is null."},
        {Dict(Field(R"(name="x" optype="nominal")")),
         "260152: Invalid value 'nominal' of attribute 'optype'."},
        {Dict(Field(cont, flag)), "260282: The type 'flag' is only supported by 'categorical'."},
        {Dict(Field(cont + R"( x-storageType="string")")),
         "260211: Conflict setting between the value 'continuous' of attribute 'optype' and the value "
         "'string' of attribute 'dataType'."},
        {Dict(Field(cat, R"(<Interval leftMargin="0"/>)")),
         "260172: The value: 'Interval' is invalid, expect: 'Extension, Value'."},
        {Dict(Field(cat + R"( dataType="integer")", R"(<Value value=""/>)")),
         "260153: Invalid value: '' of attribute 'value' in 'MapValues'."},
        {Dict(Field(cat, R"(<Value value="1" property="odd"/>)")),
         "260153: Invalid value: 'odd' of attribute 'property' in 'Value'."},
        {Dict(Field(str, R"(<Value value="NA" property="missing"/><Value value="na"/>)")),
         "260213: Conflict definition, the value 'NA' is defined in both valid and invalid."},
        {Dict(Field(cont, R"(<Value value="9" property="missing"/><Value value="9" property="valid"/>)")),
         "260294: The value: '9' in variable 'x' is defined as missing or both valid and invalid."},
        {Dict(Field(str, flag + R"(<Value value="a"/><Value value="b"/><Value value="c"/>)")),
         "260271: More than two 'categorical' defined when 'flag' is set."},
        {Dict(Field(str, R"(<Value value="a"/><Value value="a  "/>)")),
         "260203: Duplicate definition of 'value': 'a', already in 'DataDictionary'."},
        {Dict(Field(cont, R"(<Interval leftMargin="0"/><Interval rightMargin="1"/>)")),
         "260272: More than one 'Interval' defined in 'DataField'."},
        {Dict(Field(cat, R"(<Extension name="invalidRangeLower" value="1"/>)"
                         R"(<Extension name="invalidRangeLower" value="2"/>)")),
         "260272: More than one 'invalidRangeLower, invalidRangeUpper' defined in 'Value'."},
        {Dict(Field(cat, R"(<Extension name="width" value="1.5"/>)")),
         "260151: The value: '1.5' is invalid of type: 'integer'."},
        // A text width is memory that every derived value of the field takes.
        {Dict(Field(cat, R"(<Extension name="width" value="32768"/>)")),
         "260152: Invalid value '32768' of attribute 'width'."},
        {Dict(Field(cont, R"(<Extension name="stringLength" value="2147483647"/>)")),
         "260152: Invalid value '2147483647' of attribute 'stringLength'."},
        {Dict(Field(cont, R"(<Interval leftMargin="low"/>)")),
         "260151: The value: 'low' is invalid of type: 'double'."},
        {R"(<DataDictionary numberOfFields="many"/>)",
         "260152: Invalid value 'many' of attribute 'numberOfFields'."},
    };
    for (auto const& [xml, refusal] : cases) {
        EXPECT_EQ(Refusal([&] { Dictionary(xml); }), refusal) << xml;
    }
    EXPECT_EQ(Refusal([&] { translator->ParseDictionary(nullptr, false); }),
              "260115: Missing node of 'DataDictionary' element  in 'PMML'.");
}

TEST_F(PMMLDictionaryTest, OrderOfChecksDiffersBetweenTheTwoLoops) {
    // A repeated invalid-range extension and a valid/invalid clash: the categorical loop turns the
    // mask into a range first, the continuous loop checks the clash first.
    std::string const children =
        R"(<Extension name="invalidRangeUpper" value="1"/><Extension name="invalidRangeUpper" value="2"/>)"
        R"(<Value value="7" property="missing"/><Value value="7" property="valid"/>)";
    EXPECT_EQ(FailureOf([&] { Dictionary(Dict(Field(R"(name="x" optype="ordinal")", children))); }).first,
              260272);
    EXPECT_EQ(FailureOf([&] { Dictionary(Dict(Field(R"(name="x" optype="continuous")", children))); }).first,
              260294);
}

TEST_F(PMMLDictionaryTest, TextRulesOfCategories) {
    // An empty string category is accepted, spaces count only with noSpaceTrim, and an unknown element
    // of a continuous field is ignored.
    auto dictionary = Dictionary(
        Dict(Field(R"(name="s" optype="categorical" dataType="string")",
                   R"(<Extension name="noSpaceTrim" value="true"/><Value value=""/><Value value="a"/>)"
                   R"(<Value value="a "/>)") +
                 Field(R"(name="n" optype="continuous")", R"(<Unknown/><Value value="4" property="valid"/>)"),
             2));
    ScoreDictVar* s = dictionary->GetVar("s");
    EXPECT_TRUE(s->GetNoSpaceTrim());
    EXPECT_EQ(s->GetNumberOfCats(), 3);
    ScoreDictVar* n = dictionary->GetVar("n");
    EXPECT_EQ(CategoryTexts(n), (std::vector<std::string>{"4=4"}));
    EXPECT_FALSE(n->IsEmptyCateValues());
    // An epoch outside the table leaves the field numeric.
    auto other = Dictionary(Dict(Field(R"(name="d" optype="continuous" dataType="dateDaysSince[2000]")")));
    EXPECT_EQ(other->GetVar("d")->GetVarType(), ScoreDictVar::kNUMERIC_VAR);
}

TEST_F(PMMLDictionaryTest, IntervalsStoreTheirComplement) {
    auto dictionary = Dictionary(Dict(
        Field(R"(name="a" optype="continuous")", R"(<Interval closure="closedClosed" leftMargin="0"/>)") +
            Field(R"(name="b" optype="continuous")",
                  R"(<Interval closure="openOpen" leftMargin="-5" rightMargin="5"/>)") +
            Field(R"(name="c" optype="continuous")",
                  R"(<Extension name="tree"><X-DataField><Interval closure="openClosed" leftMargin="1" )"
                  R"(rightMargin="2"/></X-DataField></Extension>)"
                  R"(<Extension name="invalidRangeUpper" value="-10"/>)") +
            Field(R"(name="d" optype="continuous")",
                  R"(<Interval closure="closedClosed" leftMargin="1e400"/>)"),
        4));
    ScoreDictVar* a = dictionary->GetVar("a");
    // With the right side open-ended, a closed left margin itself is missing.
    EXPECT_TRUE(IsMissingNumber(a, 0));
    EXPECT_TRUE(IsMissingNumber(a, -1));
    EXPECT_FALSE(IsMissingNumber(a, 1));
    ScoreDictVar* b = dictionary->GetVar("b");
    EXPECT_TRUE(IsMissingNumber(b, -5));
    EXPECT_TRUE(IsMissingNumber(b, 5));
    EXPECT_FALSE(IsMissingNumber(b, 0));
    // The tree extension is the invalid interval itself; the invalid range runs up from negative infinity.
    ScoreDictVar* c = dictionary->GetVar("c");
    EXPECT_FALSE(IsMissingNumber(c, 1));
    EXPECT_TRUE(IsMissingNumber(c, 2));
    EXPECT_TRUE(IsMissingNumber(c, -20));
    EXPECT_FALSE(IsMissingNumber(c, 0));
    // Only a finite closed margin moves: an infinite left margin leaves every number missing.
    EXPECT_TRUE(IsMissingNumber(dictionary->GetVar("d"), 5));
}

TEST_F(PMMLDictionaryTest, OrdinalLookupsAndBands) {
    auto dictionary = Dictionary(
        Dict(Field(R"(name="o" optype="ordinal" dataType="string")",
                   R"(<Value value="a"/><Value value="b"/><Value value="c"/><Value value="d"/>)") +
                 Field(R"(name="n" optype="ordinal")", R"(<Value value="1.5"/><Value value="3"/>)") +
                 Field(R"(name="e" optype="categorical")"),
             3));
    ScoreDictVar const* o = dictionary->GetVar("o");
    ScoreDictVar const* n = dictionary->GetVar("n");
    EXPECT_TRUE(translator->IsValidScoreValue(o, "c"));
    EXPECT_FALSE(translator->IsValidScoreValue(o, "c "));
    EXPECT_TRUE(translator->IsValidScoreValue(n, "1.50"));
    EXPECT_FALSE(translator->IsValidScoreValue(nullptr, "a"));
    EXPECT_EQ(translator->GetIndexOfOrdinalValue("3", n), 1);
    EXPECT_EQ(translator->GetIndexOfOrdinalValue("x", o), -1);
    EXPECT_EQ(Refusal([&] { translator->IsValidScoreValue(dictionary->GetVar("e"), "a"); }),
              "260126: Required value list for variable: 'e'.");

    struct Band {
        char const* op;
        int low;
        int high;
        int result;
    };
    Band const bands[] = {{"greaterThan", 2, 3, 1}, {"greaterOrEqual", 1, 3, 1}, {"lessThan", 0, 0, 1},
                          {"lessOrEqual", 0, 1, 1}, {"equal", 1, 1, 0},          {"notEqual", 1, 1, 2}};
    int low = -9;
    int high = -9;
    for (Band const& band : bands) {
        auto* element = Root(std::string(R"(<P value="b" operator=")") + band.op + "\"/>");
        EXPECT_EQ(translator->HandleOrdinalVariable(element, o, low, high), band.result) << band.op;
        EXPECT_EQ(low, band.low) << band.op;
        EXPECT_EQ(high, band.high) << band.op;
    }
    EXPECT_EQ(Refusal([&] {
                  translator->HandleOrdinalVariable(Root(R"(<P value="z" operator="equal"/>)"), o, low, high);
              }),
              "260153: Invalid value: 'z' of attribute 'value' in 'o'.");
    EXPECT_EQ(Refusal([&] {
                  translator->HandleOrdinalVariable(Root(R"(<P value="a" operator="isIn"/>)"), o, low, high);
              }),
              "260153: Invalid value: 'isIn' of attribute 'operator' in 'o'.");
}
