// Helpers of the derived-field reader tests: a translator whose derived-field readers are open to the
// test, and a data dictionary to read derived fields against.
#pragma once

#include <memory>
#include <string>

#include "DocumentTestSupport.h"
#include "vantry/transform/TransformationDictionary.h"

namespace vantry_test {

class OpenTransformTranslator : public QXVantry_920::PMMLTranslator {
  public:
    using PMMLTranslator::fFunctionMap;
    using PMMLTranslator::GetTransFunction;
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
    using PMMLTranslator::PMMLTranslator;
    using PMMLTranslator::ToString;
    using PMMLTranslator::VerifyApplyFunction;
    using PMMLTranslator::VerifyOneElem;
    using PMMLTranslator::VerifyParentAndChildFunction;
};

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
class DerivedFieldTest : public XercesTest {
  protected:
    void SetUp() override {
        XercesTest::SetUp();
        translator = std::make_unique<OpenTransformTranslator>("UTF-8");
        dictionary.reset(translator->ParseDictionary(Parse(kDataDictionary)->getDocumentElement(), false));
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

    std::unique_ptr<OpenTransformTranslator> translator;
    std::unique_ptr<QXVantry_920::ScoreDictionary> dictionary;
    std::unique_ptr<QXVantry_920::TransformationDictionary> derived;
    std::unique_ptr<XERCES_CPP_NAMESPACE::XercesDOMParser> dictionaryParser;
};

}  // namespace vantry_test
