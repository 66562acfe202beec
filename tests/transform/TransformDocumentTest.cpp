// Whole documents through the factory's derived-field route: what is read, what is refused, and the
// derived values of a run of records.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <xercesc/dom/DOM.hpp>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

namespace {

namespace fs = std::filesystem;
using QXVantry_920::CaseRecord;
using QXVantry_920::ModelFactory;
using QXVantry_920::NumericValue;
using QXVantry_920::ScoreDictionary;
using QXVantry_920::ScoreValue;
using QXVantry_920::StringValue;
using QXVantry_920::TransformationDictionary;
using vantry_test::FailureOf;
using vantry_test::FixturePath;

// A value as the tables below write it: "." for a missing number, the text of anything else.
std::string Show(ScoreValue const* value) {
    if (value == nullptr) {
        return "null";
    }
    if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
        return ScoreValue::TextOf(*value);
    }
    if (value->IsSystemMissingValue()) {
        return ".";
    }
    std::ostringstream out;
    out << value->GetDouble();
    return out.str();
}

// The derived fields of a document and its data dictionary, owned together.
struct Document {
    std::unique_ptr<ScoreDictionary> dictionary;
    std::unique_ptr<TransformationDictionary> derived;

    explicit Document(std::string const& fixture) {
        ScoreDictionary* read = nullptr;
        derived.reset(ModelFactory::GetTransformationDictionaryFromXML(FixturePath(fixture), read, ""));
        dictionary.reset(read);
    }

    // The derived values of one record, in the order of the names.
    std::vector<std::string> Values(CaseRecord const& record, std::vector<std::string> const& names) {
        QXVantry_920::ScoreCaseRecord const* values =
            derived->GetValuesForDerivedVars(&record, dictionary.get());
        std::vector<std::string> shown;
        for (std::string const& name : names) {
            shown.push_back(Show(values->Get(name)));
        }
        return shown;
    }
};

TEST(TransformDocumentTest, NumbersFlowThroughTreesBinsNormsTablesAndLags) {
    Document document("derived_numbers.xml");
    ASSERT_NE(document.derived, nullptr);
    ASSERT_NE(document.dictionary, nullptr);
    EXPECT_EQ(document.dictionary->Size(), 3);
    std::vector<std::string> const names = {"sum", "scaled", "band", "norm", "isA", "label", "prev"};
    EXPECT_EQ(document.derived->GetDerivedVarNames(), names);

    struct Row {
        double x;
        double y;
        char const* group;
        std::vector<std::string> expected;
    };
    double const missing = NumericValue::GetSysmisValue();
    // isA is 1 for every present group: the constant is decided when the document is read. The lag
    // answers the previous x of the same group, and missing when the group changes.
    Row const rows[] = {
        {5, 1, "a", {"6", "-2", "low", "50", "1", "a-low", "."}},
        {12, 3, "a", {"15", "2.5", "high", "120", "1", "other", "5"}},
        {-3, 0, "b", {"-3", "-6.5", "neg", "-30", "1", "other", "."}},
        {missing, 2, "b", {".", ".", "none", "-1", "1", "other", "-3"}},
        {20, 1, "b", {"21", "5.5", "high", "200", "1", "b-high", "."}},
        {500, 0, "b", {"500", "245", "out", "5000", "1", "other", "20"}},
    };
    for (Row const& row : rows) {
        CaseRecord record;
        record.Add("x", new NumericValue(row.x));
        record.Add("y", new NumericValue(row.y));
        record.Add("grp", new StringValue(row.group));
        EXPECT_EQ(document.Values(record, names), row.expected) << row.x;
    }
}

// Text fields have a declared width: concat pads each part to it, and length answers it.
TEST(TransformDocumentTest, TextFunctionsComputeOverRecords) {
    Document document("derived_text.xml");
    ASSERT_NE(document.derived, nullptr);
    std::vector<std::string> const names = {"up", "joined", "len", "part", "startsA", "long", "fixed"};
    struct Row {
        char const* name;
        char const* code;
        std::vector<std::string> expected;
    };
    Row const rows[] = {
        {"Alexander", "X1", {"ALEXANDER", "Alexander -X1", "10", "lex", "1", "1", "fixed"}},
        {"Bo", "Z", {"BO", "Bo        -Z ", "10", "o", "0", "1", "fixed"}},
    };
    for (Row const& row : rows) {
        CaseRecord record;
        record.Add("name", new StringValue(row.name));
        record.Add("code", new StringValue(row.code));
        EXPECT_EQ(document.Values(record, names), row.expected) << row.name;
    }
}

TEST(TransformDocumentTest, TheRouteAnswersNullOrRefusesAsTheDocumentSays) {
    // Another root: null, and the dictionary argument is left alone.
    ScoreDictionary* sentinel = reinterpret_cast<ScoreDictionary*>(&sentinel);
    ScoreDictionary* dictionary = sentinel;
    std::istringstream other("<Other/>");
    EXPECT_EQ(ModelFactory::GetTransformationDictionaryFromXML(other, dictionary, ""), nullptr);
    EXPECT_EQ(dictionary, sentinel);

    // No derived field: null, with the data dictionary read.
    dictionary = nullptr;
    std::istringstream empty(
        R"(<PMML><DataDictionary numberOfFields="0"/><TransformationDictionary/></PMML>)");
    EXPECT_EQ(ModelFactory::GetTransformationDictionaryFromXML(empty, dictionary, ""), nullptr);
    ASSERT_NE(dictionary, nullptr);
    delete dictionary;

    // Both dictionaries are required.
    dictionary = nullptr;
    std::istringstream bare(R"(<PMML><DataDictionary numberOfFields="0"/></PMML>)");
    auto const missing =
        FailureOf([&] { ModelFactory::GetTransformationDictionaryFromXML(bare, dictionary, ""); });
    EXPECT_EQ(missing.second, "Missing node: 'TransformationDictionary'.");
    EXPECT_EQ(dictionary, nullptr);

    // A refused derived field leaves the data dictionary with the caller, read already.
    std::istringstream refused(R"(<PMML><DataDictionary numberOfFields="0"/><TransformationDictionary>
        <DerivedField name="v" optype="continuous" dataType="double"><FieldRef field="x"/></DerivedField>
        </TransformationDictionary></PMML>)");
    EXPECT_EQ(
        FailureOf([&] { ModelFactory::GetTransformationDictionaryFromXML(refused, dictionary, ""); }).first,
        260125);
    ASSERT_NE(dictionary, nullptr);
    delete dictionary;

    dictionary = nullptr;
    auto const absent = FailureOf(
        [&] { ModelFactory::GetTransformationDictionaryFromXML(FixturePath("absent.xml"), dictionary, ""); });
    EXPECT_EQ(absent.first, 260103);
    EXPECT_EQ(dictionary, nullptr);
}

// Every document of a folder, at any depth, that has a "TransformationDictionary".
std::vector<fs::path> DocumentsWithDerivedFields(fs::path const& folder) {
    std::vector<fs::path> documents;
    for (fs::directory_entry const& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && entry.path().extension() == ".pmml") {
            std::ifstream in(entry.path());
            std::string const text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            if (text.find("TransformationDictionary") != std::string::npos) {
                documents.push_back(entry.path());
            }
        }
    }
    return documents;
}

// Reads the document's derived fields, those of the whole document and those local to its models. The
// data dictionary is first brought within the reader's rules where other producers go beyond them: the
// field count that the reader requires is written in, and "boolean" fields become text. Functions that
// the document defines itself are not built in, and are refused as unknown functions.
void ExpectDerivedFieldsRead(fs::path const& path) {
    std::ifstream in(path);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::size_t const open = text.find("<DataDictionary");
    std::size_t const close = text.find('>', open);
    if (open != std::string::npos &&
        text.substr(open, close - open).find("numberOfFields") == std::string::npos) {
        int fields = 0;
        for (std::size_t at = text.find("<DataField "); at != std::string::npos;
             at = text.find("<DataField ", at + 1)) {
            ++fields;
        }
        text.insert(open + 15, " numberOfFields=\"" + std::to_string(fields) + "\"");
    }
    std::string const boolean = "dataType=\"boolean\"";
    for (std::size_t at = text.find(boolean); at != std::string::npos; at = text.find(boolean, at)) {
        text.replace(at, boolean.size(), "dataType=\"string\"");
    }
    bool const definesFunctions = text.find("<DefineFunction") != std::string::npos;
    int const expected = definesFunctions ? 260303 : 0;

    ScoreDictionary* dictionary = nullptr;
    std::istringstream stream(text);
    auto const failure = FailureOf(
        [&] { delete ModelFactory::GetTransformationDictionaryFromXML(stream, dictionary, "UTF-8"); });
    delete dictionary;
    EXPECT_EQ(failure.first, expected) << path << ": " << failure.second;

    XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
    {
        XERCES_CPP_NAMESPACE::XercesDOMParser parser;
        XERCES_CPP_NAMESPACE::MemBufInputSource source(reinterpret_cast<XMLByte const*>(text.data()),
                                                       text.size(), "corpus");
        parser.parse(source);
        XERCES_CPP_NAMESPACE::DOMElement* root = parser.getDocument()->getDocumentElement();
        QXVantry_920::PMMLTranslator translator("UTF-8");
        std::unique_ptr<ScoreDictionary> data(
            translator.ParseDictionary(root->getElementsByTagName(u"DataDictionary")->item(0), false));
        XERCES_CPP_NAMESPACE::DOMNodeList* locals = root->getElementsByTagName(u"LocalTransformations");
        for (XMLSize_t i = 0; i < locals->getLength(); ++i) {
            auto* local = static_cast<XERCES_CPP_NAMESPACE::DOMElement*>(locals->item(i));
            auto const localFailure =
                FailureOf([&] { delete translator.HandleTransformationDictionary(local, data.get()); });
            EXPECT_EQ(localFailure.first, 0) << path << ": " << localFailure.second;
        }
    }
    XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
}

TEST(TransformDocumentTest, ShippedDocumentsFromOtherProducersAreRead) {
    std::vector<fs::path> const documents = DocumentsWithDerivedFields(FixturePath("corpus"));
    EXPECT_EQ(documents.size(), 2u);
    for (fs::path const& path : documents) {
        ExpectDerivedFieldsRead(path);
    }
}

TEST(TransformDocumentTest, CorpusDocumentsAreRead) {
    char const* corpus = std::getenv("VANTRY_CORPUS");
    if (corpus == nullptr || !fs::is_directory(corpus)) {
        GTEST_SKIP() << "no corpus beside the repository";
    }
    for (fs::path const& path : DocumentsWithDerivedFields(corpus)) {
        ExpectDerivedFieldsRead(path);
    }
}

}  // namespace
