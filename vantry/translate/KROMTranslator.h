// The base of translators of the legacy dialect, whose root element is "krom-ml". It reads the dialect's
// "dictionary" into the same dictionaries and variables as the PMML readers. It stays abstract: a
// plug-in derives from it and supplies the document slot. The subclass creates the transcoder before it
// reads the dictionary.
#pragma once

#include <memory>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/Export.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class ScoreDictionary;

class VANTRY_EXPORT KROMTranslator : public BaseTranslator {
  public:
    KROMTranslator();
    KROMTranslator(KROMTranslator const& other);
    KROMTranslator& operator=(KROMTranslator const& other);
    ~KROMTranslator() override;

    // The "dictionary" element as a new dictionary that the caller owns. A failure within a variable
    // carries a further message (260223) that names the variable.
    ScoreDictionary* ParseDictionary(XERCES_CPP_NAMESPACE::DOMElement* dictionaryElement);
    // Gives an ordinal or nominal variable its category encoder, in the order of its categories.
    bool SetupCatEncoder(ScoreDictVar* variable);

  private:
    // One "variable"; `name` holds its name as soon as it is read, for the message of a failure.
    std::unique_ptr<ScoreDictVar> ParseVariable(XERCES_CPP_NAMESPACE::DOMElement* element,
                                                ScoreDictionary* dictionary, std::string& name);
    void ParseCategories(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable);
    void ParseMissingValues(XERCES_CPP_NAMESPACE::DOMElement* element, ScoreDictVar* variable);
};

}  // namespace QXVantry_920
