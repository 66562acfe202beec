// The routes for a host that brings its own data dictionary or its own DOM: which translator slot each
// one reaches, how it names the model, and that the host's DOM (or, under an unknown root, the
// factory's) is still alive when the model is used.
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <sstream>

#include "FactoryTestSupport.h"
#include "vantry/factory/VersionInfo.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"

using namespace QXVantry_920;
using namespace vantry_test;
XERCES_CPP_NAMESPACE_USE

namespace {

// A dictionary of n numeric variables.
ScoreDictionary* DictionaryOf(int n, ScoreDictionary* dictionary = new BaseDictionary()) {
    for (int i = 0; i < n; ++i) {
        const std::string name = "v" + std::to_string(i);
        dictionary->AddVar(name, new DictVar(name, ScoreDictVar::kNUMERIC_VAR));
    }
    return dictionary;
}

// What a model shows of the element it keeps, and its description.
std::string KeptAndDescribed(ScoreModel* model) {
    std::ostringstream kept;
    if (model != nullptr)
        model->Display(kept);
    return kept.str() + " " + Describe(model);
}

class HostRoutesTest : public FactoryStateTest {
  protected:
    void SetUp() override {
        FactoryStateTest::SetUp();
        XMLPlatformUtils::Initialize();
        parser = std::make_unique<XercesDOMParser>();
        MemBufInputSource source(reinterpret_cast<XMLByte const*>(kHostDocument), sizeof kHostDocument - 1,
                                 "host");
        parser->parse(source);
        root = parser->getDocument()->getDocumentElement();
    }
    void TearDown() override {
        parser.reset();
        XMLPlatformUtils::Terminate();
        FactoryStateTest::TearDown();
    }

    // The first element of that name in the host's document.
    DOMElement* Element(char16_t const* tag) {
        return static_cast<DOMElement*>(root->getElementsByTagName(tag)->item(0));
    }

    static constexpr char kHostDocument[] =
        "<PMML><DataDictionary/><Extra/><DecisionTree modelName=\"d\"/><Regression modelName=\"r\"/>"
        "<TreeModel modelName=\"t\"/><RegressionModel modelName=\"g\"/><Unlisted/></PMML>";
    std::unique_ptr<XercesDOMParser> parser;
    DOMElement* root = nullptr;
};

ScoreModel* FromStreamWithDictionary(std::string const& document, Names const& names,
                                     ScoreDictionary* dictionary) {
    std::istringstream stream(document);
    return ModelFactory::MakeModelFromXML(stream, dictionary, names, "UTF-8");
}

}  // namespace

TEST_F(HostRoutesTest, StreamWithDictionaryReachesTheDictionarySlot) {
    std::unique_ptr<ScoreDictionary> dictionary(DictionaryOf(2));
    const Names names = {"NearestNeighborModel", "TreeModel"};
    EXPECT_EQ(Describe(FromStreamWithDictionary("<PMML><TreeModel modelName=\"t\"/></PMML>", names,
                                                dictionary.get())),
              "TreeModel|dictionary|PMML|TreeModel|t|UTF-8|vars=2");
    // The other known roots take the document route and drop the dictionary.
    EXPECT_EQ(Describe(FromStreamWithDictionary("<Tree/>", names, dictionary.get())),
              "TreeModel|document|Tree|Tree||UTF-8");
    // The nearest-neighbour translator gets neither encoding nor auxiliary path.
    EXPECT_EQ(
        Describe(FromStreamWithDictionary("<PMML><NearestNeighborModel/></PMML>", names, dictionary.get())),
        "NearestNeighborModel|stream|36||");

    // Any other root is searched like PMML, and its document outlives the call for the model's use.
    EXPECT_EQ(KeptAndDescribed(FromStreamWithDictionary("<Other><TreeModel/></Other>", names, nullptr)),
              "Other TreeModel|dictionary|Other|TreeModel||UTF-8|vars=-1");
    std::string message;
    EXPECT_EQ(ErrorCodeOf(
                  [&] {
                      std::istringstream stream("<Other><Unlisted/></Other>");
                      return ModelFactory::MakeModelFromXML(stream, dictionary.get(), names, "");
                  },
                  &message),
              260301);
    EXPECT_EQ(message, "Unsupported model: ''.");
}

TEST_F(HostRoutesTest, HostNodeRoutesNameTheModelByTheElement) {
    TinyModel parent;
    parent.SetVersionInfo(new VersionInfo("host"));
    const Names names = {"TreeModel", "RegressionModel"};
    // The model may keep the host's element: it is read again after the call.
    EXPECT_EQ(
        KeptAndDescribed(ModelFactory::MakeModelFromXML(Element(u"DecisionTree"), names, &parent, "enc")),
        "DecisionTree TreeModel|parent|DecisionTree|d|enc|parent=host");
    // The plug-in is not told the catalogue on these routes.
    EXPECT_EQ(KeptAndDescribed(ModelFactory::MakeModelFromXML(Element(u"Regression"), names, &parent, "")),
              "Regression RegressionModel|parent|Regression|r||parent=host");

    std::unique_ptr<ScoreDictionary> first(DictionaryOf(2)), second(DictionaryOf(1));
    EXPECT_EQ(KeptAndDescribed(ModelFactory::MakeModelFromXML(Element(u"TreeModel"), names, first.get(),
                                                              second.get(), "e")),
              "TreeModel TreeModel|element|TreeModel|t|e|vars=2,1");
    // An empty catalogue falls back to the process's; the name must stand in it.
    ModelFactory::fModelNames = {"TreeModel"};
    EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(Element(u"TreeModel"), {}, nullptr, nullptr, "")),
              "TreeModel|element|TreeModel|t||vars=-1,-1");
    std::string message;
    EXPECT_EQ(
        ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(Element(u"Regression"), {}, &parent, ""); },
                    &message),
        260113);
    EXPECT_EQ(message, "Missing model dll of 'RegressionModel'.");
    EXPECT_EQ(ModelFactory::MakeModelFromXML(nullptr, names, &parent, ""), nullptr);
    EXPECT_EQ(ModelFactory::MakeModelFromXML(nullptr, names, nullptr, nullptr, ""), nullptr);
    // The host's DOM is intact.
    EXPECT_EQ(root->getElementsByTagName(u"TreeModel")->getLength(), 1u);
}

TEST_F(HostRoutesTest, ElementRoutesLoadTheElementsPluginDirectly) {
    TinyModel parent;
    parent.SetScoreDictionary(DictionaryOf(3));
    parent.SetTransformationScoreDictionary(
        static_cast<TransformationDictionary*>(DictionaryOf(1, new TransformationDictionary())));

    // A sub-model gets the parent's dictionaries; no catalogue test, and the plug-in is told the names.
    EXPECT_EQ(KeptAndDescribed(
                  ModelFactory::MakeModelFromXML(&parent, Element(u"RegressionModel"), {"X"}, "e", true)),
              "RegressionModel RegressionModel|element|RegressionModel|g|e|vars=3,1|old|names=X");
    EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(&parent, Element(u"TreeModel"), {}, "", false)),
              "TreeModel|element|TreeModel|t||vars=3,1");
    // No mapping of element names here: "DecisionTree" looks for a plug-in of its own name.
    std::string message;
    EXPECT_EQ(
        ErrorCodeOf(
            [&] { return ModelFactory::MakeModelFromXML(&parent, Element(u"DecisionTree"), {}, "", false); },
            &message),
        260113);
    EXPECT_EQ(message, "Missing model dll of 'DecisionTree'.");

    EXPECT_EQ(KeptAndDescribed(ModelFactory::MakeModelFromXML(Element(u"DataDictionary"), Element(u"Extra"),
                                                              Element(u"TreeModel"), {}, "e", true)),
              "TreeModel TreeModel|three|DataDictionary|Extra|TreeModel|e|old");
    EXPECT_EQ(
        Describe(ModelFactory::MakeModelFromXML(nullptr, nullptr, Element(u"TreeModel"), {}, "", false)),
        "TreeModel|three|||TreeModel|");

    // A null element loads nothing and throws nothing.
    EXPECT_NO_THROW(delete ModelFactory::MakeModelFromXML(&parent, nullptr, {}, "", false));
    EXPECT_NO_THROW(delete ModelFactory::MakeModelFromXML(nullptr, nullptr, nullptr, {}, "", false));
}
