// The SAX handler with which the factory looks for one element in a stream without building a DOM.
//
// It ends the parse by throwing a HandlerState by value: the parse is stopped at the first start tag
// of the sought element, at the end tag "PMML", or at the first error.
#pragma once

#include <cstdint>
#include <string>

#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>

#include "vantry/Export.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreSAX2Handlers : public XERCES_CPP_NAMESPACE::DefaultHandler,
                                        public XERCES_CPP_NAMESPACE::XMLFormatTarget {
  public:
    // The thrown states; kEndOfPMML is also the state after construction.
    enum HandlerState : std::int32_t {
        kElementFound = 0,
        kFatalError = 1,
        kParseError = 2,
        kEndOfPMML = 4,
    };

    explicit ScoreSAX2Handlers(std::string const& elementName);
    ~ScoreSAX2Handlers() override;

    // Throws kElementFound if the qualified name is the sought element's.
    void startElement(const XMLCh* const uri, const XMLCh* const localname, const XMLCh* const qname,
                      const XERCES_CPP_NAMESPACE::Attributes& attrs) override;
    // Throws kEndOfPMML at the end tag "PMML": the scan never goes beyond the top element.
    void endElement(const XMLCh* const uri, const XMLCh* const localname, const XMLCh* const qname) override;
    void warning(const XERCES_CPP_NAMESPACE::SAXParseException& exc) override;
    void error(const XERCES_CPP_NAMESPACE::SAXParseException& exc) override;
    void fatalError(const XERCES_CPP_NAMESPACE::SAXParseException& exc) override;

    // The handler writes nothing.
    void writeChars(const XMLByte* const toWrite, const XMLSize_t count,
                    XERCES_CPP_NAMESPACE::XMLFormatter* const formatter) override;

    HandlerState fState;
    std::string fElementName;
};

}  // namespace QXVantry_920
