#include "vantry/translate/TransformReading.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/translate/XMLText.h"
#include "vantry/values/ScoreDictionary.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

ScoreDictVar const* RequireVariable(std::string const& name, ScoreDictionary const* dictionary,
                                    ScoreDictionary const* transformations) {
    ScoreDictVar const* variable = FindVariable(name, dictionary, transformations);
    if (variable == nullptr) {
        ThrowCodedError(260125, {name, "DataDictionary", "TransformationDictionary"});
    }
    return variable;
}

TransformVar* AsDerivedVariable(ScoreDictVar* variable) {
    auto* derived = dynamic_cast<TransformVar*>(variable);
    if (derived == nullptr) {
        ThrowCodedError(260221, {"DerivedField"});
    }
    return derived;
}

bool HasAttribute(DOMElement const* element, char const* name) {
    return element != nullptr && element->getAttributeNode(XMLText(name)) != nullptr;
}

XMLCh const* FirstChildText(DOMElement const* element) {
    DOMNode const* child = element != nullptr ? element->getFirstChild() : nullptr;
    if (child == nullptr) {
        return nullptr;
    }
    XMLCh const* text = child->getNodeValue();
    return text != nullptr ? text : u"";
}

}  // namespace QXVantry_920
