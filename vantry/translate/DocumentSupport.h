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

// The widest text a field may declare, in bytes. Derived fields pad every text value to its field's
// width, so a declared width is memory that each evaluation allocates.
constexpr int kMaxTextWidth = 32767;

// A declared text width, as it stands when it is at most kMaxTextWidth. A wider one fails 260152
// ("invalid value of attribute"), the code a width that is not a number already gives, with the width
// and the name it was declared under.
int CheckTextWidth(int width, std::string const& attribute);

// The node as an element, or null when it is not one.
XERCES_CPP_NAMESPACE::DOMElement* AsElement(XERCES_CPP_NAMESPACE::DOMNode* node);

// Whether the node's name is exactly the tag.
bool HasName(XERCES_CPP_NAMESPACE::DOMNode const* node, char const* tag);

// The node's name by the parser's default transcoding; empty for null.
std::string NameOf(XERCES_CPP_NAMESPACE::DOMNode const* node);

// Whether a UTF-16 text is empty; null counts as empty.
bool IsEmptyText(XMLCh const* text);

}  // namespace QXVantry_920
