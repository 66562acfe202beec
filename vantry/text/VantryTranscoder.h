// Conversion between the XML parser's UTF-16 text and narrow strings in one named encoding.
#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include <string>

#include "vantry/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class XMLTranscoder;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

// Wraps one Xerces-C transcoder. Conversions never throw: a character that cannot be converted ends the
// conversion and what was converted before it is kept. An encoding name unknown to the transcoding
// service leaves the object without a transcoder; its conversions then give empty results. Like every
// Xerces-C object it must be destroyed before XMLPlatformUtils::Terminate.
class VANTRY_EXPORT VantryTranscoder {
  public:
    VantryTranscoder(std::string const& encodingName);
    // A copy makes its own transcoder for the same encoding, so that each object owns exactly one.
    VantryTranscoder(VantryTranscoder const& other);
    VantryTranscoder& operator=(VantryTranscoder const& other);
    virtual ~VantryTranscoder();

    // The text decoded in one transcoder call into a new zero-terminated buffer that the caller owns and
    // releases with XMLString::release(&buffer, XMLPlatformUtils::fgMemoryManager). A text that does not
    // go through in one piece is cut. A null text gives a null buffer.
    char16_t* ChangeChar2XML(char const* text) const;
    // The text encoded in this transcoder's encoding, up to the first character that cannot be
    // represented; a null text gives an empty string.
    std::string transcodeTo(char16_t const* const text);

  private:
    XERCES_CPP_NAMESPACE::XMLTranscoder* transcoder;
};

}  // namespace QXVantry_920
