// The interface of a translator: the object that a plug-in hands to the factory and that turns a
// document, or parts of one, into a model. A translator serves one call and is then deleted.
//
// The slot order is a contract with the plug-ins: never reorder, insert or remove a virtual function.
// The last string of each ParseFromTree is the name of the encoding in which document text is to be
// transcoded.
#pragma once

#include <iosfwd>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ScoreModel;
class ScoreDictionary;

class VANTRY_EXPORT ScoreTranslator {
  public:
    virtual ~ScoreTranslator();  // slot 0
    // slot 1: three elements, as the three-element route hands them on.
    virtual ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* first,
                                      XERCES_CPP_NAMESPACE::DOMElement* second,
                                      XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                      std::string const& encoding) = 0;
    // slot 2: one model element that shares a parent model's dictionaries.
    virtual ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* modelElement, ScoreModel* parentModel,
                                      std::string const& encoding) = 0;
    // slot 3: one model element with dictionaries given directly.
    virtual ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                      ScoreDictionary* dictionary, ScoreDictionary* secondDictionary,
                                      std::string const& encoding) = 0;
    // slot 4
    virtual ScoreModel* ParseFromTree(std::string const& path, std::string const& encoding) = 0;
    // slot 5
    virtual ScoreModel* ParseFromTree(std::istream& stream, std::string const& encoding) = 0;
    // slot 6: a whole parsed document.
    virtual ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument* document,
                                      std::string const& encoding) = 0;
    // slot 7: comes before ParseFromTree, if at all.
    virtual void SetSupportOldParser(bool support) = 0;
};

}  // namespace QXVantry_920
