// Reading derived fields: what each expression leaves in its variable, and the refusals of bad ones.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TransformTestSupport.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/MapValues.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/ScoreValue.h"

namespace {

using QXVantry_920::ApplyNodeStats;
using QXVantry_920::FunctionTree;
using QXVantry_920::ScoreDictVar;
using QXVantry_920::ScoreValue;
using QXVantry_920::TransformationDictionary;
using QXVantry_920::TransformVar;
using vantry_test::Refusal;

std::string Field(std::string const& attributes, std::string const& body) {
    return "<DerivedField name=\"v\" optype=\"continuous\" dataType=\"double\" " + attributes + ">" + body +
           "</DerivedField>";
}

class DerivedFieldParseTest : public vantry_test::DerivedFieldTest {
  protected:
    TransformVar* Var(std::string const& name) { return dynamic_cast<TransformVar*>(derived->GetVar(name)); }

    std::string RefusalOf(std::string const& body) {
        return Refusal([&] { Read(body); });
    }
};

TEST_F(DerivedFieldParseTest, FieldsGetTheirTypesLabelsAndExpressions) {
    EXPECT_EQ(Read("<Extension name=\"none\"/>"), nullptr);
    ASSERT_NE(Read(R"(
        <DerivedField name="f" displayName="Float" optype="continuous" dataType="float"/>
        <DerivedField name="t" optype="categorical" dataType="string">
          <Extension name="width" value="4"/><FieldRef field="s" mapMissingTo="none"/></DerivedField>
        <DerivedField name="o" optype="ordinal" dataType="integer"><Constant>7</Constant></DerivedField>
        <DerivedField name="dd" optype="continuous" dataType="date"><FieldRef field="d"/></DerivedField>
        <DerivedField name="day" optype="continuous" dataType="date">
          <Constant dataType="dateDaysSince[1970]">1</Constant></DerivedField>
        <DerivedField name="l" optype="categorical" dataType="string">
          <Value value="p" property="valid" displayValue="P"/><Value value="q" property="valid"/></DerivedField>)"),
              nullptr);
    EXPECT_EQ(derived->GetDerivedVarNames(), (std::vector<std::string>{"f", "t", "o", "dd", "day", "l"}));

    TransformVar* f = Var("f");
    EXPECT_EQ(f->GetLabel(), "Float");
    EXPECT_EQ(f->GetVarType(), ScoreDictVar::kNUMERIC_VAR);
    EXPECT_EQ(f->GetNumericDataType(), ScoreDictVar::NUMERIC_TYPE_NONE);
    EXPECT_EQ(f->GetTransExpression(), TransformationDictionary::TE_NONE);

    TransformVar* t = Var("t");
    EXPECT_EQ(t->GetLabel(), "t");
    EXPECT_EQ(t->GetMLevel(), ScoreDictVar::MEASURE_NOMINAL);
    EXPECT_EQ(t->GetWidth(), 4);
    EXPECT_EQ(t->GetTransExpression(), TransformationDictionary::TE_FIELD_REF);
    EXPECT_EQ(t->GetFieldName(), "s");
    EXPECT_EQ(ScoreValue::TextOf(*t->GetRecodeMissValueRep()), "none");

    TransformVar* o = Var("o");
    EXPECT_EQ(o->GetMLevel(), ScoreDictVar::MEASURE_ORDINAL);
    EXPECT_EQ(o->GetNumericDataType(), ScoreDictVar::NUMERIC_TYPE_INTEGER);
    EXPECT_EQ(o->GetTransExpression(), TransformationDictionary::TE_CONSTANT);
    EXPECT_EQ(o->GetConstString(), "7");

    EXPECT_EQ(Var("dd")->GetVarType(), ScoreDictVar::DATETIME_VAR);
    // A date constant is kept as its number of seconds.
    EXPECT_EQ(Var("day")->GetConstString(), "86400.000000");
    EXPECT_EQ(vantry_test::CategoryTexts(Var("l")), (std::vector<std::string>{"p=P", "q="}));
}

TEST_F(DerivedFieldParseTest, ApplyBecomesATreeOfNumberedNodes) {
    ASSERT_NE(Read(Field("", R"(<Apply function="+" invalidValueTreatment="bad" mapMissingTo="-1">
        <FieldRef field="x" mapMissingTo="0"/><Extension><Array n="2" type="real">1 2</Array></Extension>
        <Apply function="*" invalidValueTreatment="asMissing"><Constant>2</Constant><FieldRef field="y"/></Apply>
        </Apply>)")),
              nullptr);
    FunctionTree const* root = Var("v")->GetRoot();
    ASSERT_NE(root, nullptr);
    ApplyNodeStats const& stats = root->GetNodeStats();
    EXPECT_EQ(stats.GetNodeID(), "0");
    EXPECT_EQ(stats.GetTransformFunction(), TransformationDictionary::TF_PLUS);
    EXPECT_EQ(stats.GetInvalidValueTreatmentMethod(), ApplyNodeStats::IVT_UNSET);
    EXPECT_DOUBLE_EQ(stats.GetRecodeMissValueRep()->GetDouble(), -1.0);
    EXPECT_EQ(stats.GetNumberOfArray(), 1u);
    ASSERT_EQ(root->GetChildCount(), 2);

    ApplyNodeStats const& field = root->GetChildAt(0)->GetNodeStats();
    EXPECT_EQ(field.GetNodeID(), "1");
    EXPECT_EQ(field.GetParameterName(), "x");
    EXPECT_DOUBLE_EQ(field.GetFieldrefRecodeMissValueRep()->GetDouble(), 0.0);

    FunctionTree const* product = root->GetChildAt(1);
    EXPECT_EQ(product->GetNodeStats().GetNodeID(), "2");
    EXPECT_EQ(product->GetNodeStats().GetInvalidValueTreatmentMethod(), ApplyNodeStats::IVT_AS_MISSING);
    ASSERT_EQ(product->GetChildCount(), 2);
    EXPECT_TRUE(product->GetChildAt(0)->GetNodeStats().IsConstNode());
    EXPECT_DOUBLE_EQ(product->GetChildAt(0)->GetNodeStats().GetValue()->GetDouble(), 2.0);
    EXPECT_EQ(product->GetChildAt(1)->GetNodeStats().GetNodeID(), "4");
}

TEST_F(DerivedFieldParseTest, TableExpressionsFillTheirVariables) {
    ASSERT_NE(Read(R"(
        <DerivedField name="band" optype="categorical" dataType="string">
          <Discretize field="x" defaultValue="other">
            <DiscretizeBin binValue="low"><Interval closure="closedOpen" rightMargin="10"/></DiscretizeBin>
            <DiscretizeBin binValue="mid"><Interval closure="closedOpen" leftMargin="10" rightMargin="20"/></DiscretizeBin>
          </Discretize></DerivedField>
        <DerivedField name="norm" optype="continuous" dataType="double" >
          <NormContinuous field="x" outliers="asExtremeValues" mapMissingTo="5">
            <LinearNorm orig="0" norm="0"/><LinearNorm orig="0" norm="1"/><LinearNorm orig="10" norm="21"/>
          </NormContinuous></DerivedField>
        <DerivedField name="isA" optype="continuous" dataType="double">
          <NormDiscrete field="c" value="a" mapMissingTo="-1"/></DerivedField>
        <DerivedField name="map" optype="categorical" dataType="string">
          <MapValues outputColumn="out" mapMissingTo="?"><FieldColumnPair field="c" column="in"/>
            <InlineTable><row><in>a</in><out>A</out></row></InlineTable></MapValues></DerivedField>
        <DerivedField name="prev" optype="continuous" dataType="double"><Lag field="x"/></DerivedField>)"),
              nullptr);
    TransformVar* band = Var("band");
    EXPECT_EQ(band->GetTransExpression(), TransformationDictionary::TE_DISCRETIZE);
    EXPECT_EQ(band->GetFieldName(), "x");
    EXPECT_EQ(ScoreValue::TextOf(*band->GetRecodeDefaultValue()), "other");
    EXPECT_EQ(band->GetOrigIntervalForBinningValue("mid", true), "10<=x<20");
    EXPECT_EQ(band->GetOrigIntervalForBinningValue("low", false), "<10");

    TransformVar* norm = Var("norm");
    EXPECT_EQ(norm->GetTransExpression(), TransformationDictionary::TE_NORM_CONTINUOUS);
    EXPECT_DOUBLE_EQ(norm->GetRecodeMissValueRep()->GetDouble(), 5.0);

    TransformVar* isA = Var("isA");
    EXPECT_EQ(isA->GetTransExpression(), TransformationDictionary::TE_NORM_DISCRETE);
    EXPECT_DOUBLE_EQ(isA->GetRecodeDefaultValue()->GetDouble(), 1.0);
    EXPECT_DOUBLE_EQ(isA->GetRecodeMissValueRep()->GetDouble(), -1.0);

    TransformVar* map = Var("map");
    EXPECT_EQ(map->GetTransExpression(), TransformationDictionary::TE_MAP_VALUES);
    ASSERT_NE(map->GetMapValues(), nullptr);
    EXPECT_EQ(map->GetMapValues()->GetColumns().at("in"), "c");
    EXPECT_EQ(ScoreValue::TextOf(*map->GetRecodeMissValueRep()), "?");

    EXPECT_EQ(Var("prev")->GetTransExpression(), TransformationDictionary::TE_LAG);
}

TEST_F(DerivedFieldParseTest, BadFieldsAreRefusedWithTheirCodes) {
    struct Case {
        std::string body;
        std::string refusal;
    };
    Case const cases[] = {
        {"<DerivedField name=\"\" optype=\"continuous\" dataType=\"double\"/>",
         "260285: The 'name' of element 'DerivedField' is null."},
        {"<DerivedField name=\"x\" optype=\"continuous\" dataType=\"double\"/>",
         "260202: Duplicate definition of variable 'x', already in 'DataDictionary'."},
        {Field("", "") + Field("", ""),
         "260202: Duplicate definition of variable 'v', already in 'DataDictionary'."},
        {"<DerivedField name=\"v\" dataType=\"double\"/>",
         "260285: The 'optype' of element 'DerivedField' is null."},
        {"<DerivedField name=\"v\" optype=\"interval\" dataType=\"double\"/>",
         "260152: Invalid value 'interval' of attribute 'optype'."},
        {"<DerivedField name=\"v\" optype=\"categorical\" dataType=\"string\"><Extension name=\"width\" "
         "value=\"2147483647\"/><FieldRef field=\"s\"/></DerivedField>",
         "260152: Invalid value '2147483647' of attribute 'width'."},
        {"<DerivedField name=\"v\" optype=\"continuous\"/>",
         "260120: Missing the attribute 'dataType' of 'DerivedField'."},
        {"<DerivedField name=\"v\" optype=\"continuous\" dataType=\"string\"/>",
         "260211: Conflict setting between the value 'continuous' of attribute 'optype' and the value "
         "'string' "
         "of attribute 'dataType'."},
        {Field("", "<FieldRef field=\"x\"/><Constant>1</Constant>"),
         "260274: More than one expression defined in 'DerivedField'."},
        {Field("", "<FieldRef field=\"x\"/><Other/>"),
         "260274: More than one expression defined in 'DerivedField'."},
        {Field("", "<Other/>"), "260152: Invalid value 'Other' of attribute 'name'."},
        {Field("", "<Aggregate field=\"x\" function=\"sum\"/>"),
         "260303: Unsupported value 'Aggregate' of attribute 'name'."},
        {Field("", "<FieldRef field=\"w\"/>") +
             "<DerivedField name=\"w\" optype=\"continuous\" dataType=\"double\"/>",
         "260125: Missing variable:'w' definition in the 'DataDictionary' and 'TransformationDictionary'."},
        {Field("", "<FieldRef field=\"s\"/>"),
         "260215: Conflict definition between the reference variable 's' and the variable 'v'."},
        {Field("", "<Value value=\"1\" property=\"missing\"/>"),
         "260153: Invalid value: 'missing' of attribute 'property' in 'Value'."},
        {Field("", "<Value value=\"1\"/>"), "260120: Missing the attribute 'property' of 'Value'."},
        {"<DerivedField name=\"v\" optype=\"categorical\" dataType=\"string\"><Extension "
         "name=\"MissingValues\">"
         "<Value value=\"z\"/></Extension><Value value=\"z\" property=\"valid\"/></DerivedField>",
         "260294: The value: 'z' in variable 'v' is defined as missing or both valid and invalid."},
        {"<DerivedField name=\"v\" optype=\"categorical\" dataType=\"string\">"
         "<Extension name=\"MissingValues\"><Interval closure=\"openOpen\" leftMargin=\"1\"/></Extension>"
         "</DerivedField>",
         "260216: Conflict definition of element between 'Interval' and 'categorical,ordinal'."},
        {Field("", "<Constant/>"), "260114: Missing node: 'Constant'."},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(RefusalOf(c.body), c.refusal) << c.body;
    }
}

TEST_F(DerivedFieldParseTest, BadApplyElementsAreRefusedWithTheirCodes) {
    struct Case {
        std::string apply;
        std::string refusal;
    };
    Case const cases[] = {
        {"<Apply><FieldRef field=\"x\"/></Apply>", "260120: Missing the attribute 'function' of 'Apply'."},
        {"<Apply function=\"Abs\"><FieldRef field=\"x\"/></Apply>",
         "260303: Unsupported value 'Abs' of attribute 'function'."},
        {"<Apply function=\"+\"><FieldRef field=\"x\"/><FieldRef field=\"y\"/><Constant>1</Constant></Apply>",
         "260173: Require '2' parameters."},
        {"<Apply function=\"abs\"><FieldRef field=\"nowhere\"/></Apply>",
         "260125: Missing variable:'nowhere' definition in the 'DataDictionary' and "
         "'TransformationDictionary'."},
        {"<Apply function=\"abs\"><Apply function=\"greaterOrEqual\"><FieldRef "
         "field=\"x\"/><Constant>1</Constant>"
         "</Apply></Apply>",
         "260243: Type mismatch between parent function 'abs' and child function 'greaterOrEqual'."},
        {"<Apply function=\"outlierHandle\"><FieldRef field=\"x\"/><Constant "
         "dataType=\"string\">clip</Constant>"
         "<Constant>0</Constant><Constant>1</Constant><Constant>2</Constant><Constant>3</Constant></Apply>",
         "260303: Unsupported value 'clip' of attribute 'string'."},
        {"<Apply function=\"concat\"><Constant dataType=\"double\">1</Constant></Apply>",
         "260153: Invalid value: 'double' of attribute 'dataType' in 'Constant'."},
        {"<Apply function=\"imputeCatFieldMissingAgainstConTarget\"><FieldRef field=\"c\"/><FieldRef "
         "field=\"x\"/>"
         "<Extension><Array>1 2</Array></Extension><Extension><Array>1</Array></Extension></Apply>",
         "260221: Error occurred in process 'imputeCatFieldMissingAgainstConTarget'."},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(RefusalOf(Field("", c.apply)), c.refusal) << c.apply;
    }

    // Nesting deep enough to threaten the stack is refused while reading, and nothing leaks.
    std::string deep;
    for (int i = 0; i < 1000; ++i) {
        deep += "<Apply function=\"abs\">";
    }
    deep += "<FieldRef field=\"x\"/>";
    for (int i = 0; i < 1000; ++i) {
        deep += "</Apply>";
    }
    EXPECT_EQ(RefusalOf(Field("", deep)), "260221: Error occurred in process 'Apply'.");
}

TEST_F(DerivedFieldParseTest, BadTableExpressionsAreRefusedWithTheirCodes) {
    std::string const bin =
        "<DiscretizeBin binValue=\"1\"><Interval closure=\"closedClosed\" leftMargin=\"0\" "
        "rightMargin=\"10\"/></DiscretizeBin>";
    struct Case {
        std::string expression;
        std::string refusal;
    };
    Case const cases[] = {
        {"<Discretize field=\"x\"/>", "260115: Missing node of 'DiscretizeBin' element  in 'DerivedField'."},
        {"<Discretize field=\"x\">" + bin +
             "<DiscretizeBin binValue=\"2\"><Interval closure=\"closedOpen\" "
             "leftMargin=\"10\"/></DiscretizeBin>"
             "</Discretize>",
         "260293: Value range intersect in variable 'v'."},
        {"<Discretize field=\"x\"><DiscretizeBin binValue=\"one\"><Interval closure=\"openOpen\"/>"
         "</DiscretizeBin></Discretize>",
         "260151: The value: 'one' is invalid of type: 'double'."},
        {"<Discretize field=\"x\"><DiscretizeBin binValue=\"1\"><Interval closure=\"shut\"/></DiscretizeBin>"
         "</Discretize>",
         "260153: Invalid value: 'shut' of attribute 'closure' in 'Interval'."},
        {"<Discretize field=\"x\"><DiscretizeBin binValue=\"1\"/></Discretize>",
         "260115: Missing node of 'Interval' element  in 'DiscretizeBin'."},
        {"<Discretize field=\"x\">" + bin + "<Other/></Discretize>",
         "260178: Invalid node 'Other', expect 'Extension, DiscretizeBin' in 'DiscretizeBin'."},
        {"<Discretize field=\"x\" defaultValue=\"0\">" + bin +
             "<Extension name=\"recodeElseCopy\"/></Discretize>",
         "260216: Conflict definition of element between 'defaultValue' and 'recodeElseCopy'."},
        {"<MapValues outputColumn=\"out\"><FieldColumnPair field=\"x\" column=\"in\"/>"
         "<InlineTable><row><in>1</in><other>2</other><out>3</out></row></InlineTable></MapValues>",
         "1: other: not predefined!"},
        {"<MapValues outputColumn=\"out\"><InlineTable/></MapValues>",
         "260122: Missing definition of 'FieldColumnPair' in 'InlineTable'."},
        {"<MapValues outputColumn=\"out\"><Other/></MapValues>",
         "260153: Invalid value: 'Other' of attribute 'name' in 'MapValues'."},
        {"<NormContinuous field=\"x\"><LinearNorm orig=\"0\" norm=\"0\"/></NormContinuous>",
         "260176: More than one element 'LinearNorm' are required in 'DerivedField'."},
        {"<NormContinuous field=\"c\"><LinearNorm orig=\"0\" norm=\"0\"/><LinearNorm orig=\"1\" norm=\"1\"/>"
         "</NormContinuous>",
         "260180: Require the value 'continuous' of attribute 'optype' in 'c'."},
        {"<NormDiscrete field=\"x\" value=\"1\"/>",
         "260214: Conflict setting between the value 'continuous' of attribute 'optype' in 'x' and the value "
         "'NormDiscrete' of attribute 'name' in 'v'."},
        {"<Lag field=\"x\" n=\"0\"/>", "260151: The value: '0' is invalid of type: 'positiveInteger'."},
        {"<Lag field=\"x\"><BlockIndicator field=\"nowhere\"/></Lag>",
         "260125: Missing variable:'nowhere' definition in the 'DataDictionary' and "
         "'TransformationDictionary'."},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(RefusalOf(Field("", c.expression)), c.refusal) << c.expression;
    }
    // Bins that touch at an end that only one of them includes do not intersect.
    EXPECT_EQ(
        RefusalOf(Field("",
                        "<Discretize field=\"x\"><DiscretizeBin binValue=\"1\"><Interval "
                        "closure=\"closedOpen\" leftMargin=\"0\" rightMargin=\"10\"/></DiscretizeBin>"
                        "<DiscretizeBin binValue=\"2\"><Interval closure=\"closedOpen\" leftMargin=\"10\"/>"
                        "</DiscretizeBin></Discretize>")),
        "none");
}

}  // namespace
