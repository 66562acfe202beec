// Helpers of the document reader tests: fixture files, a translator whose readers are open to the test,
// and failures compared by code and message.
#pragma once

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "TranslatorTestSupport.h"
#include "vantry/translate/KROMTranslator.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace vantry_test {

// A file of the fixture folder that ctest names in VANTRY_FIXTURES.
inline std::string ReadFixture(std::string const& name) {
    char const* dir = std::getenv("VANTRY_FIXTURES");
    std::ifstream in(std::string(dir != nullptr ? dir : "tests/fixtures") + "/" + name);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Opens the protected readers of the PMML translator.
class OpenPMMLTranslator : public QXVantry_920::PMMLTranslator {
  public:
    using PMMLTranslator::GetArrayElements;
    using PMMLTranslator::GetIndexOfOrdinalValue;
    using PMMLTranslator::HandleArrayDiscreteSplit;
    using PMMLTranslator::HandleNodeDiscreteSplit;
    using PMMLTranslator::HandleNodeScaleSplit;
    using PMMLTranslator::HandleOrdinalVariable;
    using PMMLTranslator::IsValidScoreValue;
    using PMMLTranslator::PMMLTranslator;
};

// The legacy dialect's translator with the document slot a plug-in would supply.
class LegacyTranslator : public QXVantry_920::KROMTranslator {
  public:
    using BaseTranslator::ParseFromTree;
    QXVantry_920::ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument*, std::string const&) override {
        return nullptr;
    }
};

// A test with Xerces-C started and a UTF-8 translator that goes before Xerces-C stops.
class DocumentTest : public XercesTest {
  protected:
    void SetUp() override {
        XercesTest::SetUp();
        translator = std::make_unique<OpenPMMLTranslator>("UTF-8");
    }
    void TearDown() override {
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

}  // namespace vantry_test
