#include "vantry/translate/XMLText.h"

#include <xercesc/util/XMLString.hpp>

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

XMLText::XMLText(char const* text) : fText(XMLString::transcode(text)) {}

XMLText::~XMLText() {
    XMLString::release(&fText);
}

std::string NarrowText(XMLCh const* text) {
    if (text == nullptr)
        return std::string();
    char* narrow = XMLString::transcode(text);
    std::string result = narrow != nullptr ? std::string(narrow) : std::string();
    XMLString::release(&narrow);
    return result;
}

}  // namespace QXVantry_920
