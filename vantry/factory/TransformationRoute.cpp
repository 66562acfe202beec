// The factory's smallest route: the data dictionary and the derived fields of a PMML document, read by
// the library's own translator, with no model and no plug-in.
#include <fstream>
#include <memory>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/factory/FactoryInternals.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreDictionary.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

constexpr char kRouteName[] = "QXVantry_920::ModelFactory::GetTransformationDictionaryFromXML";

}  // namespace

TransformationDictionary* ModelFactory::GetTransformationDictionaryFromXML(std::istream& stream,
                                                                           ScoreDictionary*& dictionary,
                                                                           std::string const& encoding) {
    XercesInitGuard guard;
    // The same hardened parser as the model routes: no external entity is fetched, none explodes.
    std::unique_ptr<XercesDOMParser> parser(CreateDocumentParser());
    DOMDocument* document = ParseToDocument(parser.get(), stream);
    DOMElement* root = document->getDocumentElement();
    if (root == nullptr) {
        ThrowCodedError(260110);
    }
    if (!BaseTranslator::IsEqual(root->getTagName(), "PMML")) {
        ScoringLog::GetInstance()->TraceText(1, "Exit:%s", kRouteName);
        return nullptr;
    }
    DOMNode* dataDictionary = BaseTranslator::GetChildByTagForced(root, "DataDictionary");
    auto* transformationElement =
        static_cast<DOMElement*>(BaseTranslator::GetChildByTagForced(root, "TransformationDictionary"));

    // The translator lives for this call only: nothing it made keeps a pointer to it or its transcoder.
    PMMLTranslator translator(encoding);
    dictionary = translator.ParseDictionary(dataDictionary, false);
    TransformationDictionary* transformations =
        translator.HandleTransformationDictionary(transformationElement, dictionary);
    if (transformations != nullptr) {
        transformations->SetUpDerivedCaseRecord();
    }
    ScoringLog::GetInstance()->TraceText(1, "Exit:%s", kRouteName);
    return transformations;
}

TransformationDictionary* ModelFactory::GetTransformationDictionaryFromXML(std::string const& pmmlPath,
                                                                           ScoreDictionary*& dictionary,
                                                                           std::string const& encoding) {
    XercesInitGuard guard;
    ScoringLog::GetInstance()->TraceText(1, "Enter:%s", kRouteName);
    std::ifstream file(pmmlPath);
    if (!file.is_open()) {
        ThrowCodedError(260103, {pmmlPath});
    }
    return GetTransformationDictionaryFromXML(file, dictionary, encoding);
}

}  // namespace QXVantry_920
