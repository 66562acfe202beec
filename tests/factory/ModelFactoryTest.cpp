// The stream route end to end: the root tag and the catalogue choose the family, the family's plug-in
// builds the model, and every refusal comes back as its coded exception.
#include <cstdlib>
#include <sstream>

#include "FactoryTestSupport.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;

namespace {

const char kTwoModels[] =
    "<PMML version=\"4.1\"><Header/>"
    "<RegressionModel modelName=\"reg\"/><Segment><TreeModel modelName=\"tree\"/></Segment></PMML>";

class ModelFactoryTest : public FactoryStateTest {};

}  // namespace

TEST_F(ModelFactoryTest, CatalogueOrderNotDocumentOrderDecidesTheFamily) {
    EXPECT_EQ(StreamModel(kTwoModels, {"TreeModel", "RegressionModel"}, "UTF-8"),
              "TreeModel|document|PMML|TreeModel|tree|UTF-8");
    // The reversed catalogue chooses the other family; that plug-in also receives the catalogue.
    EXPECT_EQ(StreamModel(kTwoModels, {"RegressionModel", "TreeModel"}),
              "RegressionModel|document|PMML|RegressionModel|reg||names=RegressionModel,TreeModel");
    // Names absent from the document are passed over; the element may stand at any depth.
    EXPECT_EQ(StreamModel(kTwoModels, {"NaiveBayesModel", "TreeModel"}),
              "TreeModel|document|PMML|TreeModel|tree|");
    // Names are compared exactly.
    std::string message;
    EXPECT_EQ(StreamCode(kTwoModels, {"treemodel", "REGRESSIONMODEL"}, &message), 260301);
    EXPECT_EQ(message, "Unsupported model: ''.");
}

TEST_F(ModelFactoryTest, RootTagSelectsTheDispatch) {
    // "Tree" is served by TreeModel even without a catalogue.
    EXPECT_EQ(StreamModel("<Tree><Node/></Tree>", {}), "TreeModel|document|Tree|Tree||");
    // A legacy document with a regression model goes to GeneralRegressionModel, catalogue or not.
    EXPECT_EQ(StreamModel("<krom-ml><model><regression-model/></model></krom-ml>", {}),
              "GeneralRegressionModel|document|krom-ml|krom-ml||");
    // Any other legacy document is searched like PMML.
    EXPECT_EQ(StreamModel("<krom-ml><TreeModel modelName=\"k\"/></krom-ml>", {"TreeModel"}),
              "TreeModel|document|krom-ml|TreeModel|k|");
    EXPECT_EQ(StreamCode("<krom-ml><TreeModel/></krom-ml>", {}), 260301);
    EXPECT_EQ(StreamModel("<AssocLattice><TreeModel/></AssocLattice>", {"TreeModel"}),
              "TreeModel|document|AssocLattice|TreeModel||");
    EXPECT_EQ(StreamModel("<SequentialAssociationLattice><TreeModel/></SequentialAssociationLattice>",
                          {"TreeModel"}),
              "TreeModel|document|SequentialAssociationLattice|TreeModel||");

    // Roots are compared exactly, and namespaces are off, so a prefixed root is unknown.
    std::string message;
    EXPECT_EQ(StreamCode("<pmml><TreeModel/></pmml>", {"TreeModel"}, &message), 260301);
    EXPECT_EQ(message, "Unsupported model: 'pmml'.");
    EXPECT_EQ(StreamCode("<p:PMML xmlns:p=\"urn:p\"><TreeModel/></p:PMML>", {"TreeModel"}, &message), 260301);
    EXPECT_EQ(message, "Unsupported model: 'p:PMML'.");
}

TEST_F(ModelFactoryTest, PluginIsFoundByModelNameAndFailuresNameTheModel) {
    // One library serves both association elements.
    EXPECT_EQ(StreamModel("<PMML><AssociationModelLattice/></PMML>", {"AssociationModelLattice"}),
              "AssociationModel|document|PMML|PMML||");
    std::string message;
    // No library of that name.
    EXPECT_EQ(
        StreamCode("<PMML><SupportVectorMachineModel/></PMML>", {"SupportVectorMachineModel"}, &message),
        260113);
    EXPECT_EQ(message, "Missing model dll of 'SupportVectorMachineModel'.");
    // A library without GiveMyTranslator.
    EXPECT_EQ(StreamCode("<PMML><MiningModel/></PMML>", {"MiningModel"}, &message), 260113);
    EXPECT_EQ(message, "Missing model dll of 'MiningModel'.");
    // A catalogue name that already ends in the extension still gets the release suffix.
    EXPECT_EQ(StreamCode("<PMML><TreeModel.so/></PMML>", {"TreeModel.so"}), 260113);
}

TEST_F(ModelFactoryTest, TranslatorAnswersPassThrough) {
    // A translator that answers null makes no error: the host gets null.
    EXPECT_EQ(StreamModel("<PMML><ClusteringModel/></PMML>", {"ClusteringModel"}), "null");
    // The translator's own exception reaches the host unchanged.
    std::string message;
    EXPECT_EQ(StreamCode("<PMML><TreeModel count=\"12x\"/></PMML>", {"TreeModel"}, &message), 260151);
    EXPECT_EQ(message, "The value: '12x' is invalid of type: 'integer'.");
    EXPECT_EQ(StreamModel("<PMML><TreeModel count=\"+12\"/></PMML>", {"TreeModel"}),
              "TreeModel|document|PMML|TreeModel|||count=12");

    // A plug-in that gives no translator gives no model either, on both plug-in paths.
    ASSERT_EQ(setenv("VANTRY_TEST_NULL_GIVE", "NearestNeighborModel", 1), 0);
    EXPECT_EQ(StreamModel("<PMML><NearestNeighborModel/></PMML>", {"NearestNeighborModel"}), "null");
    ASSERT_EQ(setenv("VANTRY_TEST_NULL_GIVE", "TreeModel", 1), 0);
    EXPECT_EQ(StreamModel("<PMML><TreeModel/></PMML>", {"TreeModel"}), "null");
    unsetenv("VANTRY_TEST_NULL_GIVE");
    EXPECT_EQ(StreamModel("<PMML><TreeModel/></PMML>", {"TreeModel"}), "TreeModel|document|PMML|TreeModel||");
}

TEST_F(ModelFactoryTest, CallsAfterTerminateStartXercesThemselves) {
    ModelFactory::Initialize("");
    ModelFactory::Terminate();
    // fInitialized stays true, but the call does not rely on a stopped parser library.
    EXPECT_TRUE(ModelFactory::fInitialized);
    EXPECT_EQ(StreamModel("<Tree/>", {}), "TreeModel|document|Tree|Tree||");
}

TEST_F(ModelFactoryTest, DocumentsWithoutUsableRootAreRefused) {
    std::string message;
    EXPECT_EQ(StreamCode("", {"TreeModel"}, &message), 260110);
    EXPECT_EQ(
        message,
        "Missing root element in PMML, invalid XML format or no dtd file available in current directory.");
    EXPECT_EQ(StreamCode("not xml at all", {"TreeModel"}), 260110);
    // Content behind the root is a fatal error: the document is refused, not read in part.
    EXPECT_EQ(StreamCode("<PMML></PMML><TreeModel/>", {"TreeModel"}), 260109);
}

TEST_F(ModelFactoryTest, ModelNameOverloadsKeepTheirTrap) {
    const std::string document = "<PMML><TreeModel modelName=\"t\"/></PMML>";
    {
        // A const string is a model name.
        std::istringstream stream(document);
        EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(stream, std::string("TreeModel"))),
                  "TreeModel|document|PMML|TreeModel|t|");
    }
    {
        // The empty name occurs nowhere.
        std::istringstream stream(document);
        EXPECT_EQ(ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(stream, std::string()); }), 260301);
    }
    {
        // A non-const string is the path of a catalogue.
        std::string catalogue = WriteTempFile("overload_catalogue.txt", "RegressionModel TreeModel\n");
        std::istringstream stream(document);
        EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(stream, catalogue)),
                  "TreeModel|document|PMML|TreeModel|t|");
    }
    {
        std::string missing = testing::TempDir() + "no_such_catalogue.txt";
        std::string message;
        std::istringstream stream(document);
        EXPECT_EQ(ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(stream, missing); }, &message),
                  260103);
        EXPECT_EQ(message, "Could not open file: '" + missing + "'.");
    }
}

TEST_F(ModelFactoryTest, FirstCallerFillsAnEmptyProcessCatalogue) {
    ModelFactory::fModelNames.clear();
    EXPECT_EQ(StreamModel(kTwoModels, {"TreeModel", "RegressionModel"}),
              "TreeModel|document|PMML|TreeModel|tree|");
    EXPECT_EQ(ModelFactory::fModelNames, (Names{"TreeModel", "RegressionModel"}));
    // Later callers use their own names and leave the process catalogue alone.
    EXPECT_EQ(StreamModel(kTwoModels, {"RegressionModel"}),
              "RegressionModel|document|PMML|RegressionModel|reg||names=RegressionModel");
    EXPECT_EQ(ModelFactory::fModelNames, (Names{"TreeModel", "RegressionModel"}));
    // An empty list of the caller counts, not the process catalogue.
    EXPECT_EQ(StreamCode(kTwoModels, {}), 260301);
}

TEST_F(ModelFactoryTest, FileRouteReadsCatalogueAndDocument) {
    const std::string catalogue = WriteTempFile("route_a_catalogue.txt", "NearestNeighborModel,TreeModel\n");
    const std::string tree = WriteTempFile("route_a_tree.xml", "<PMML><TreeModel modelName=\"f\"/></PMML>");
    const std::string knn = WriteTempFile("route_a_knn.xml", "<PMML><NearestNeighborModel/></PMML>");

    ModelFactory::fModelNames.clear();
    EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(tree, catalogue, "CP1252")),
              "TreeModel|document|PMML|TreeModel|f|CP1252");
    EXPECT_EQ(ModelFactory::fModelNames, (Names{"NearestNeighborModel", "TreeModel"}));
    EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(knn, catalogue, "CP1252", "/tmp/aux")),
              "NearestNeighborModel|stream|36||/tmp/aux");
    // Paths are UTF-8.
    const std::string accented =
        WriteTempFile("mod\xc3\xa8le.xml", "<PMML><TreeModel modelName=\"u\"/></PMML>");
    EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(accented, catalogue, "")),
              "TreeModel|document|PMML|TreeModel|u|");

    std::string message;
    const std::string missing = testing::TempDir() + "route_a_missing.xml";
    EXPECT_EQ(ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(missing, catalogue, ""); }, &message),
              260104);
    EXPECT_EQ(message, "Unexpected error in opening PMML file: '" + missing + "'.");
    const std::string noCatalogue = testing::TempDir() + "route_a_missing.txt";
    EXPECT_EQ(ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(tree, noCatalogue, ""); }), 260103);
}
