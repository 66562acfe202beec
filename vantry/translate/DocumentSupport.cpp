#include "vantry/translate/DocumentSupport.h"

#include <array>
#include <cstddef>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "vantry/diagnostics/VTException.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// The longest message of the table has six placeholders.
constexpr std::size_t kMaxArguments = 6;

void PutMessage(VTException& exception, int code, std::initializer_list<std::string> arguments) {
    std::array<char const*, kMaxArguments + 1> pointers{};
    std::size_t i = 0;
    for (std::string const& argument : arguments) {
        if (i == kMaxArguments) {
            break;
        }
        pointers[i++] = argument.c_str();
    }
    exception.PutErrorMessage(code, pointers[0], pointers[1], pointers[2], pointers[3], pointers[4],
                              pointers[5], pointers[6]);
}

}  // namespace

void ThrowDocumentError(int code, std::initializer_list<std::string> arguments) {
    VTException exception;
    PutMessage(exception, code, arguments);
    throw exception;
}

void RethrowWithMessage(VTException const& caught, int code, std::initializer_list<std::string> arguments) {
    VTException exception(caught);
    PutMessage(exception, code, arguments);
    throw exception;
}

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
        ThrowDocumentError(260152, {TranscodeText(transcoder, text), attribute});
    }
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
