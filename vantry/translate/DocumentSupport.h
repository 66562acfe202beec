// Small pieces shared by the document readers: coded failures with any number of arguments, document
// text through a translator's transcoder, and element tests. Internal to the library.
#pragma once

#include <initializer_list>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class VantryTranscoder;
class VTException;

// Document text as a narrow string: through the transcoder when there is one, otherwise by the
// parser's default transcoding. Null gives the empty string.
std::string TranscodeText(VantryTranscoder* transcoder, XMLCh const* text);

// An integer attribute read by the parser's own rules (XMLString::parseInt). A text that the parser
// refuses, the empty one included, fails 260152 with the text and the attribute's name, so that no
// parser exception reaches the host.
int ParseIntAttribute(VantryTranscoder* transcoder, XMLCh const* text, char const* attribute);

// A text width declared by a document, checked before anything is sized by it: a string value is
// padded to its field's width on every case. Wider than kMaxTextWidth fails 260153 with the width, the
// attribute's and the element's names.
int CheckedTextWidth(int width, char const* attribute, char const* element);

// The node as an element, or null when it is not one.
XERCES_CPP_NAMESPACE::DOMElement* AsElement(XERCES_CPP_NAMESPACE::DOMNode* node);

// Whether the node's name is exactly the tag.
bool HasName(XERCES_CPP_NAMESPACE::DOMNode const* node, char const* tag);

// The node's name by the parser's default transcoding; empty for null.
std::string NameOf(XERCES_CPP_NAMESPACE::DOMNode const* node);

// Whether a UTF-16 text is empty; null counts as empty.
bool IsEmptyText(XMLCh const* text);

}  // namespace QXVantry_920
