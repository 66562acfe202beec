// A model built as a segment of a parent model: its inputs are the parent's fields plus the parent's
// derived fields, whose values arrive in the same record.
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "tests/families/FamilyFixture.h"

XERCES_CPP_NAMESPACE_USE

namespace families {
namespace {

TEST(SegmentRoute, SegmentReadsParentFieldsAndDerivedStandIns) {
    std::unique_ptr<ScoreModel> parent = Load(Fixture("schema.pmml"));
    ASSERT_NE(parent, nullptr);
    std::string const segment =
        "<RegressionModel functionName=\"regression\"><MiningSchema><MiningField name=\"x2\"/>"
        "<MiningField name=\"c\" invalidValueTreatment=\"asIs\"/><MiningField name=\"y\" "
        "usageType=\"target\"/>"
        "</MiningSchema><LocalTransformations><DerivedField name=\"x4\" optype=\"continuous\" "
        "dataType=\"double\">"
        "<Apply function=\"*\"><FieldRef field=\"x2\"/><Constant>2</Constant></Apply></DerivedField>"
        "</LocalTransformations><RegressionTable intercept=\"0\"><NumericPredictor name=\"x4\" "
        "coefficient=\"1\"/>"
        "<CategoricalPredictor name=\"c\" value=\"B\" "
        "coefficient=\"100\"/></RegressionTable></RegressionModel>";
    XMLPlatformUtils::Initialize();
    {
        XercesDOMParser parser;
        MemBufInputSource source(reinterpret_cast<XMLByte const*>(segment.data()), segment.size(), "segment");
        parser.parse(source);
        std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML(
            parser.getDocument()->getDocumentElement(), Catalogue(), parent.get(), std::string()));
        ASSERT_NE(model, nullptr);
        std::unique_ptr<ScoreCaseRecord> record(model->MakeCaseRecord());
        EXPECT_EQ(record->GetVarNames(true), (std::vector<std::string>{"x", "z", "c", "y", "x2", "halfZ"}));
        Scorer scorer(model.get());
        // x2 comes in the record as the parent computed it; x itself is not read.
        scorer.Score({Num("x", 100), Num("x2", 3), Text("c", "B")});
        EXPECT_EQ(scorer.TextOf("y"), "106");
        scorer.Score({Num("x2", 3), Text("c", "Q")});
        EXPECT_EQ(scorer.TextOf("y"), "6");
    }
    XMLPlatformUtils::Terminate();
}

}  // namespace
}  // namespace families
