// Convenience reads of a DOM element for translators: lists of descendants, attributes as numbers or
// text, and named children. Every operation catches the reading helpers' VTException: with `rethrow`
// it passes it on, without it answers a neutral value (null, 0, -1 or an empty text). The same neutral
// value is the answer when there is no translator, no element or no name.
#pragma once

#include <cstdint>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNodeList;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class PMMLTranslator;
class VantryTranscoder;

class VANTRY_EXPORT DOMElemUtility {
  public:
    // Neither pointer is owned.
    DOMElemUtility(PMMLTranslator* translator, VantryTranscoder* transcoder);
    virtual ~DOMElemUtility();

    // All descendants of that name; null for none. Works without a translator.
    XERCES_CPP_NAMESPACE::DOMNodeList* GetDOMNodeList(XERCES_CPP_NAMESPACE::DOMElement* element,
                                                      std::string const& name, bool rethrow);
    // Descendant number `index` of that name; null past the end.
    XERCES_CPP_NAMESPACE::DOMElement* GetElemFromNodeList(XERCES_CPP_NAMESPACE::DOMElement* element,
                                                          std::string const& name, std::uint64_t index,
                                                          bool rethrow);
    std::uint64_t GetNodeListLength(XERCES_CPP_NAMESPACE::DOMElement* element, std::string const& name,
                                    bool rethrow);
    // A required attribute read as a double (-1.0 as the neutral value), an int (-1) or text in the
    // transcoder's encoding (empty, also without a transcoder).
    double GetAttributeToDouble(XERCES_CPP_NAMESPACE::DOMElement* element, std::string const& name,
                                bool rethrow);
    int GetAttributeToInt(XERCES_CPP_NAMESPACE::DOMElement* element, std::string const& name, bool rethrow);
    std::string GetAttributeToString(XERCES_CPP_NAMESPACE::DOMElement* element, std::string const& name,
                                     bool rethrow);
    // A required direct child of that name.
    XERCES_CPP_NAMESPACE::DOMElement* GetChildElemByName(XERCES_CPP_NAMESPACE::DOMElement* element,
                                                         std::string const& name, bool rethrow);

  protected:
    PMMLTranslator* fTranslator;
    VantryTranscoder* fTranscoder;
};

}  // namespace QXVantry_920
