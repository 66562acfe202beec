// Helpers of the translator tests: Xerces-C started for each test, documents parsed from strings, fixture
// files, translators whose protected readers are open to the test, and failures compared by code and
// message.
#pragma once

#include <gtest/gtest.h>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "vantry/diagnostics/VTException.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/translate/KROMTranslator.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace vantry_test {

class XercesTest : public testing::Test {
  protected:
    void SetUp() override { XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize(); }
    void TearDown() override {
        parser.reset();
        XERCES_CPP_NAMESPACE::XMLPlatformUtils::Terminate();
    }

    // The document of an XML text; it lives until the next Parse or the end of the test.
    XERCES_CPP_NAMESPACE::DOMDocument* Parse(std::string const& xml) {
        parser = std::make_unique<XERCES_CPP_NAMESPACE::XercesDOMParser>();
        XERCES_CPP_NAMESPACE::MemBufInputSource source(reinterpret_cast<XMLByte const*>(xml.data()),
                                                       xml.size(), "test");
        parser->parse(source);
        return parser->getDocument();
    }

    std::unique_ptr<XERCES_CPP_NAMESPACE::XercesDOMParser> parser;
};

// The code and message of the VTException a call throws; code 0 if it throws none.
template <typename Call>
std::pair<int, std::string> FailureOf(Call call) {
    try {
        call();
    } catch (QXVantry_920::VTException& exception) {
        return {exception.GetErrorCode(), exception.GetErrorMessage()};
    }
    return {0, std::string()};
}

// A path in the fixture folder that ctest names in VANTRY_FIXTURES, and the text of such a file.
inline std::string FixturePath(std::string const& name) {
    char const* dir = std::getenv("VANTRY_FIXTURES");
    return std::string(dir != nullptr ? dir : "tests/fixtures") + "/" + name;
}

inline std::string ReadFixture(std::string const& name) {
    std::ifstream in(FixturePath(name));
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The legacy dialect's translator with the document slot a plug-in would supply.
class LegacyTranslator : public QXVantry_920::KROMTranslator {
  public:
    using BaseTranslator::ParseFromTree;
    QXVantry_920::ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument*, std::string const&) override {
        return nullptr;
    }
};

// Opens the protected readers of the PMML translator.
class OpenPMMLTranslator : public QXVantry_920::PMMLTranslator {
  public:
    using PMMLTranslator::fFunctionMap;
    using PMMLTranslator::GetArrayElements;
    using PMMLTranslator::GetIndexOfOrdinalValue;
    using PMMLTranslator::GetTransFunction;
    using PMMLTranslator::HandleArrayDiscreteSplit;
    using PMMLTranslator::HandleNodeDiscreteSplit;
    using PMMLTranslator::HandleNodeScaleSplit;
    using PMMLTranslator::HandleOrdinalVariable;
    using PMMLTranslator::InitFunctionMap;
    using PMMLTranslator::IsArithmeticFunction;
    using PMMLTranslator::IsDateTimeFunction;
    using PMMLTranslator::IsInputNumericFunction;
    using PMMLTranslator::IsInputStringFunction;
    using PMMLTranslator::IsLogicFunction;
    using PMMLTranslator::IsMathematicsFunction;
    using PMMLTranslator::IsMixInputFunction;
    using PMMLTranslator::IsMixOutputFunction;
    using PMMLTranslator::IsNumericFunction;
    using PMMLTranslator::IsOutputNumericFunction;
    using PMMLTranslator::IsOutputStringFunction;
    using PMMLTranslator::IsStatisticFunction;
    using PMMLTranslator::IsStringFunction;
    using PMMLTranslator::IsValidScoreValue;
    using PMMLTranslator::PMMLTranslator;
    using PMMLTranslator::ToString;
    using PMMLTranslator::VerifyApplyFunction;
};

// A test with Xerces-C started, and a UTF-8 translator and a data dictionary that go before Xerces-C stops.
class DocumentTest : public XercesTest {
  protected:
    void SetUp() override {
        XercesTest::SetUp();
        translator = std::make_unique<OpenPMMLTranslator>("UTF-8");
    }
    void TearDown() override {
        dictionary.reset();
        translator.reset();
        XercesTest::TearDown();
    }

    XERCES_CPP_NAMESPACE::DOMElement* Root(std::string const& xml) {
        return Parse(xml)->getDocumentElement();
    }

    // The data dictionary of an XML text, read without encoders unless asked.
    std::unique_ptr<QXVantry_920::ScoreDictionary> Dictionary(std::string const& xml, bool encoders = false) {
        return std::unique_ptr<QXVantry_920::ScoreDictionary>(
            translator->ParseDictionary(Root(xml), encoders));
    }

    std::unique_ptr<OpenPMMLTranslator> translator;
    std::unique_ptr<QXVantry_920::ScoreDictionary> dictionary;
};

// "code: message" of a call's VTException, "none" when it throws none.
template <typename Call>
std::string Refusal(Call call) {
    std::pair<int, std::string> const failure = FailureOf(call);
    return failure.first == 0 ? "none" : std::to_string(failure.first) + ": " + failure.second;
}

// The categories of a variable as "value=label", in order.
inline std::vector<std::string> CategoryTexts(QXVantry_920::ScoreDictVar const* variable) {
    std::vector<std::string> texts;
    for (QXVantry_920::ScoreValueLabel* label : variable->GetValueLabels()->GetAllValueLabels()) {
        texts.push_back(QXVantry_920::ScoreValue::TextOf(*label->GetValue()) + "=" + label->GetLabel());
    }
    return texts;
}

inline bool IsMissingNumber(QXVantry_920::ScoreDictVar const* variable, double number) {
    QXVantry_920::NumericValue const value(number);
    return variable->IsMissingValue(&value);
}

// The data fields of every derived-field test: x and y numbers, c a category of "a" and "b", s free
// text, d a date, k an ordinal number.
inline char const* const kDataDictionary = R"(<DataDictionary numberOfFields="6">
  <DataField name="x" optype="continuous" dataType="double"/>
  <DataField name="y" optype="continuous" dataType="double"/>
  <DataField name="c" optype="categorical" dataType="string"><Value value="a"/><Value value="b"/></DataField>
  <DataField name="s" optype="categorical" dataType="string"/>
  <DataField name="d" optype="continuous" dataType="date"/>
  <DataField name="k" optype="ordinal" dataType="integer"/>
</DataDictionary>)";

// A test with the data dictionary above read, and derived fields read against it.
class DerivedFieldTest : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        dictionary = Dictionary(kDataDictionary);
        dictionaryParser = std::move(parser);
    }
    void TearDown() override {
        derived.reset();
        dictionary.reset();
        translator.reset();
        dictionaryParser.reset();
        XercesTest::TearDown();
    }

    // The derived fields of a "TransformationDictionary" body; kept in `derived`.
    QXVantry_920::TransformationDictionary* Read(std::string const& body) {
        std::string const xml = "<TransformationDictionary>" + body + "</TransformationDictionary>";
        derived.reset(
            translator->HandleTransformationDictionary(Parse(xml)->getDocumentElement(), dictionary.get()));
        return derived.get();
    }

    std::unique_ptr<QXVantry_920::TransformationDictionary> derived;
    std::unique_ptr<XERCES_CPP_NAMESPACE::XercesDOMParser> dictionaryParser;
};

}  // namespace vantry_test
