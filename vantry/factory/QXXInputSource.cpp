#include "vantry/factory/QXXInputSource.h"

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

XERCES_CPP_NAMESPACE_USE

namespace QXXML_920 {

namespace {

// Hands the parser the bytes of a std::istream as they come. The end of the stream, and any failure
// of it, reads as zero bytes, which is how the parser sees the end of the document.
class QXXBinInputStream : public BinInputStream {
  public:
    explicit QXXBinInputStream(std::istream& in) : stream(in) {}
    ~QXXBinInputStream() override = default;

    // The stream's own position, not a count from the start of the parse.
    XMLFilePos curPos() const override { return static_cast<XMLFilePos>(stream.tellg()); }

    XMLSize_t readBytes(XMLByte* const toFill, const XMLSize_t maxToRead) override {
        stream.read(reinterpret_cast<char*>(toFill), static_cast<std::streamsize>(maxToRead));
        return static_cast<XMLSize_t>(stream.gcount());
    }

    const XMLCh* getContentType() const override { return nullptr; }

  private:
    std::istream& stream;
};

}  // namespace

QXXInputSource::QXXInputSource(std::istream& in)
    : InputSource(u"istream", XMLPlatformUtils::fgMemoryManager), stream(in) {}

QXXInputSource::~QXXInputSource() = default;

BinInputStream* QXXInputSource::makeStream() const {
    return new (getMemoryManager()) QXXBinInputStream(stream);
}

}  // namespace QXXML_920
