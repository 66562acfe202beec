// The implementation base of every translator, with the static DOM and number helpers through which
// all document reading goes. Plug-ins derive their translators from it (or from PMMLTranslator) and
// override the ParseFromTree slots that their family supports; the others answer null.
//
// Tags and attribute names are compared as the parser's UTF-16 text, exactly and case-sensitively.
// Failures are VTException: 260114 for a missing node, 260120 for a missing attribute, 260151 for a
// text that is not a valid number or date.
#pragma once

#include <iosfwd>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/Export.h"
#include "vantry/translate/ScoreTranslator.h"
#include "vantry/values/ScoreDictVar.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
class DOMNodeList;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ScoreValue;
class VantryTranscoder;

class VANTRY_EXPORT BaseTranslator : public ScoreTranslator {
  public:
    BaseTranslator();
    // A copy gets a transcoder of its own for the same encoding.
    BaseTranslator(BaseTranslator const& other);
    BaseTranslator& operator=(BaseTranslator const& other);
    ~BaseTranslator() override;

    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* first,
                              XERCES_CPP_NAMESPACE::DOMElement* second,
                              XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                              std::string const& encoding) override;
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* modelElement, ScoreModel* parentModel,
                              std::string const& encoding) override;
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* modelElement, ScoreDictionary* dictionary,
                              ScoreDictionary* secondDictionary, std::string const& encoding) override;
    ScoreModel* ParseFromTree(std::string const& path, std::string const& encoding) override;
    ScoreModel* ParseFromTree(std::istream& stream, std::string const& encoding) override;
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument* document,
                              std::string const& encoding) override = 0;
    void SetSupportOldParser(bool support) override;
    // slot 8: a whole document whose data dictionary the caller has read already.
    virtual ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument* document,
                                      ScoreDictionary* dictionary, std::string const& encoding);
    // slot 9: a stream that the translator parses itself, with the auxiliary path of the host.
    virtual ScoreModel* ParseFromTree(std::istream& stream, std::string const& encoding,
                                      std::string const& auxiliaryPath);

    // Removes leading blanks, and trailing blanks only when there were no leading ones: the length
    // kept is counted from the start of the text. Only the blank counts, not tabs or line ends.
    static std::string TrimBlanks(std::string const& text);

    // Exact comparisons of document text with a narrow text: through the transcoder, or by Xerces-C's
    // default transcoding.
    static bool IsEqual(VantryTranscoder* transcoder, XMLCh const* text, std::string const& other);
    static bool IsEqual(XMLCh const* text, std::string const& other);

    // The first element child of a node, and the next element sibling; null for a null node or none.
    static XERCES_CPP_NAMESPACE::DOMNode* GetFirstChildElt(XERCES_CPP_NAMESPACE::DOMNode* node);
    static XERCES_CPP_NAMESPACE::DOMNode* GetNextSiblingElt(XERCES_CPP_NAMESPACE::DOMNode* node);
    // The first direct element child with that name, or null; the Forced form throws 260114.
    static XERCES_CPP_NAMESPACE::DOMNode* GetChildByTag(XERCES_CPP_NAMESPACE::DOMNode* node,
                                                        std::string const& tag);
    static XERCES_CPP_NAMESPACE::DOMNode* GetChildByTagForced(XERCES_CPP_NAMESPACE::DOMNode* node,
                                                              std::string const& tag);
    // As GetChildByTag, with a tag made by XMLString::transcode; takes the buffer over and releases it.
    static XERCES_CPP_NAMESPACE::DOMNode* GetChildTag(XERCES_CPP_NAMESPACE::DOMNode* node, XMLCh* tag);
    static XERCES_CPP_NAMESPACE::DOMNode* GetChildTagForced(XERCES_CPP_NAMESPACE::DOMNode* node, XMLCh* tag);
    // The attribute's value; an empty text, never null, for an absent one. The Forced form throws
    // 260120 for an absent attribute.
    static XMLCh const* GetAttribute(XERCES_CPP_NAMESPACE::DOMElement const* element,
                                     std::string const& name);
    static XMLCh const* GetAttributeForced(XERCES_CPP_NAMESPACE::DOMElement const* element,
                                           std::string const& name);
    // The live list of all descendant elements of that name, owned by the DOM; 260114 for null.
    static XERCES_CPP_NAMESPACE::DOMNodeList* GetElementsByTagName(
        XERCES_CPP_NAMESPACE::DOMDocument const* document, std::string const& name);
    static XERCES_CPP_NAMESPACE::DOMNodeList* GetElementsByTagName(
        XERCES_CPP_NAMESPACE::DOMElement const* element, std::string const& name);

    // Optional sign and decimal digits, read as atoi does; 260151 with "integer" otherwise.
    static int VerifyInt(std::string const& text);
    static int VerifyInt(XMLCh const* text);
    // A decimal number with optional sign, fraction and exponent, after TrimBlanks; 260151 with
    // "double" otherwise.
    static double VerifyDouble(std::string const& text);
    static double VerifyDouble(XMLCh const* text);
    // The number of a date or time text of the type; 260151 with "dateTime" if it is not valid.
    static double VerifyDateTime(std::string const& text, ScoreDictVar::DateTimeType type);
    static double VerifyDateTime(XMLCh const* text, ScoreDictVar::DateTimeType type);

    // A transcoder for the encoding, "CP1252" for an empty name. One held before is replaced but not
    // freed, since objects given it may still use it: a subclass that calls this twice frees the old one.
    void CreateTranscoder(std::string const& encoding);
    // A new value of the variable's type from a text, owned by the caller; null for an unknown type.
    // Numbers and dates must be numeric text: 260151 with "double" otherwise.
    ScoreValue* CarefullyMakeVarValue(ScoreDictVar const* variable, std::string const& text);
    ScoreValue* CarefullyMakeVarValue(ScoreDictVar const* variable, XMLCh const* text);

  protected:
    // Document text as a narrow string: through fTranscoder if there is one; empty for null.
    std::string ToString(XMLCh const* text);

    // Owned; null until CreateTranscoder.
    VantryTranscoder* fTranscoder;
};

}  // namespace QXVantry_920
