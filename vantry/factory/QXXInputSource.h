// A Xerces-C input source that reads a standard stream of char.
//
// The stream is not owned and must outlive the parse. Nothing about the document's encoding is told
// to the parser: it detects the encoding from the bytes, so a UTF-16 stream with a byte order mark
// parses as such.
#pragma once

#include <istream>

#include <xercesc/sax/InputSource.hpp>

#include "vantry/Export.h"

namespace QXXML_920 {

class VANTRY_EXPORT QXXInputSource : public XERCES_CPP_NAMESPACE::InputSource {
  public:
    // The system id is "istream"; no public id and no encoding are set.
    explicit QXXInputSource(std::istream& stream);
    ~QXXInputSource() override;

    // A new binary stream on the same std::istream, allocated through the parser's memory manager;
    // the parser owns and deletes it.
    XERCES_CPP_NAMESPACE::BinInputStream* makeStream() const override;

    std::istream& stream;
};

}  // namespace QXXML_920
