// Documents that would exhaust the host: nesting deeper than the limit, and documents that end in the
// middle. Each is refused with a code on every route that parses, quickly, and frees what was built.
#include <chrono>
#include <sstream>

#include "FactoryTestSupport.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;

namespace {

const Names kCatalogue = {"TreeModel"};

// A tree model standing `depth` elements deep, the root "PMML" counted.
std::string NestedDocument(int depth) {
    std::string document = "<PMML>";
    for (int i = 2; i < depth; ++i)
        document += "<Extension>";
    document += "<TreeModel modelName=\"deep\"/>";
    for (int i = 2; i < depth; ++i)
        document += "</Extension>";
    return document + "</PMML>";
}

int FileCode(std::string const& document) {
    static const std::string catalogue = WriteTempFile("limits_catalogue.txt", "TreeModel\n");
    const std::string path = WriteTempFile("limits_document.xml", document);
    return ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(path, catalogue, ""); });
}

int TransformationCode(std::string const& document) {
    // The data dictionary is the caller's as soon as it is read, also when the route fails later.
    QXVantry_920::ScoreDictionary* dictionary = nullptr;
    const int code = ErrorCodeOf([&] {
        std::istringstream stream(document);
        delete ModelFactory::GetTransformationDictionaryFromXML(stream, dictionary, "");
        return static_cast<QXVantry_920::ScoreModel*>(nullptr);
    });
    delete dictionary;
    return code;
}

}  // namespace

TEST(DocumentLimits, NestingBeyondTheLimitIsRefusedWhileParsing) {
    EXPECT_EQ(StreamModel(NestedDocument(2000), kCatalogue), "TreeModel|document|PMML|TreeModel|deep|");
    const std::string tooDeep = NestedDocument(2001);
    std::string message;
    EXPECT_EQ(StreamCode(tooDeep, kCatalogue, &message), 260109);
    EXPECT_EQ(message,
              "Error in parsing the PMML file. Detailed message:elements nested deeper than 2000 levels");
    EXPECT_EQ(FileCode(tooDeep), 260109);
    EXPECT_EQ(TransformationCode(tooDeep), 260109);
    // Far deeper nesting costs no more than the limit: the parse stops there.
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(StreamCode(NestedDocument(200000), kCatalogue), 260109);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(DocumentLimits, DocumentCutShortIsRefusedOnEveryRoute) {
    const std::string whole =
        "<?xml version=\"1.0\"?><PMML><DataDictionary numberOfFields=\"1\">"
        "<DataField name=\"x\" optype=\"continuous\" dataType=\"double\"/></DataDictionary>"
        "<TreeModel modelName=\"t\">text</TreeModel></PMML>";
    ASSERT_EQ(StreamCode(whole, kCatalogue), 0);
    const std::size_t rootBegun = whole.find("<PMML>") + 6;
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const std::string cut = whole.substr(0, length);
        // Before the root's start tag is whole there is no root; after it, the document breaks off.
        const int expected = length < rootBegun ? 260110 : 260109;
        EXPECT_EQ(StreamCode(cut, kCatalogue), expected) << cut;
        EXPECT_EQ(FileCode(cut), expected) << cut;
        EXPECT_EQ(TransformationCode(cut), expected) << cut;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    // The words say where the document broke off.
    std::string message;
    EXPECT_EQ(StreamCode(whole.substr(0, whole.size() - 3), kCatalogue, &message), 260109);
    EXPECT_NE(message.find("line 1, column"), std::string::npos) << message;
}
