#include "vantry/translate/DocumentSupport.h"

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

std::string TranscodeText(VantryTranscoder* transcoder, XMLCh const* text) {
    if (text == nullptr) {
        return std::string();
    }
    return transcoder != nullptr ? transcoder->transcodeTo(text) : NarrowText(text);
}

int ParseIntAttribute(VantryTranscoder* transcoder, XMLCh const* text, char const* attribute) {
    try {
        return XMLString::parseInt(text);
    } catch (XMLException const&) {
        ThrowCodedError(260152, {TranscodeText(transcoder, text), attribute});
    }
}

int CheckTextWidth(int width, std::string const& attribute) {
    if (width > kMaxTextWidth) {
        ThrowCodedError(260152, {std::to_string(width), attribute});
    }
    return width;
}

DOMElement* AsElement(DOMNode* node) {
    if (node == nullptr || node->getNodeType() != DOMNode::ELEMENT_NODE) {
        return nullptr;
    }
    return static_cast<DOMElement*>(node);
}

bool HasName(DOMNode const* node, char const* tag) {
    return node != nullptr && XMLString::equals(node->getNodeName(), XMLText(tag));
}

std::string NameOf(DOMNode const* node) {
    return node != nullptr ? NarrowText(node->getNodeName()) : std::string();
}

bool IsEmptyText(XMLCh const* text) {
    return text == nullptr || *text == 0;
}

}  // namespace QXVantry_920
