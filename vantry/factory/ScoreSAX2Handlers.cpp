#include "vantry/factory/ScoreSAX2Handlers.h"

#include <xercesc/util/XMLString.hpp>

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

ScoreSAX2Handlers::ScoreSAX2Handlers(std::string const& elementName)
    : fState(kEndOfPMML), fElementName(elementName) {}

ScoreSAX2Handlers::~ScoreSAX2Handlers() = default;

void ScoreSAX2Handlers::startElement(const XMLCh* const, const XMLCh* const, const XMLCh* const qname,
                                     const Attributes&) {
    XMLCh* sought = XMLString::transcode(fElementName.c_str());
    const bool found = XMLString::equals(sought, qname);
    XMLString::release(&sought);
    if (found)
        throw kElementFound;
}

void ScoreSAX2Handlers::endElement(const XMLCh* const, const XMLCh* const, const XMLCh* const qname) {
    if (XMLString::equals(qname, u"PMML"))
        throw kEndOfPMML;
}

void ScoreSAX2Handlers::warning(const SAXParseException&) {}

void ScoreSAX2Handlers::error(const SAXParseException&) {
    throw kParseError;
}

void ScoreSAX2Handlers::fatalError(const SAXParseException&) {
    throw kFatalError;
}

void ScoreSAX2Handlers::writeChars(const XMLByte* const, const XMLSize_t, XMLFormatter* const) {}

}  // namespace QXVantry_920
