#include "vantry/text/VantryTranscoder.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLString.hpp>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// Bytes out per transcoder call; bounds the stack used by a conversion.
constexpr XMLSize_t kBlockBytes = 1000;
constexpr XMLSize_t kTranscoderBlockSize = 4096;

bool IsHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

// The transcoder for an encoding name; null if the service does not know it (the reason is not needed).
template <typename Name>
XMLTranscoder* MakeTranscoder(Name const* encodingName, XMLSize_t blockSize) {
    if (XMLPlatformUtils::fgTransService == nullptr) {
        return nullptr;
    }
    XMLTransService::Codes failReason = XMLTransService::Ok;
    return XMLPlatformUtils::fgTransService->makeNewTranscoderFor(encodingName, failReason, blockSize,
                                                                  XMLPlatformUtils::fgMemoryManager);
}

// A second transcoder for the encoding of an existing one.
XMLTranscoder* Duplicate(XMLTranscoder const* original) {
    return original == nullptr ? nullptr
                               : MakeTranscoder(original->getEncodingName(), original->getBlockSize());
}

}  // namespace

VantryTranscoder::VantryTranscoder(std::string const& encodingName)
    : transcoder(MakeTranscoder(encodingName.c_str(), kTranscoderBlockSize)) {}

VantryTranscoder::VantryTranscoder(VantryTranscoder const& other) : transcoder(Duplicate(other.transcoder)) {}

VantryTranscoder& VantryTranscoder::operator=(VantryTranscoder const& other) {
    if (this != &other) {
        XMLTranscoder* replacement = Duplicate(other.transcoder);
        delete transcoder;
        transcoder = replacement;
    }
    return *this;
}

VantryTranscoder::~VantryTranscoder() {
    delete transcoder;
}

char16_t* VantryTranscoder::ChangeChar2XML(char const* text) const {
    if (text == nullptr || XMLPlatformUtils::fgMemoryManager == nullptr) {
        return nullptr;
    }
    XMLSize_t const length = std::strlen(text);
    auto* result =
        static_cast<char16_t*>(XMLPlatformUtils::fgMemoryManager->allocate((length + 1) * sizeof(char16_t)));
    XMLSize_t made = 0;
    // A transcoder of a multibyte code page records a source offset for every unit it makes, in an array
    // of its block size: a call that may make more units than that goes to a transcoder of the same
    // encoding with a block as large as the text, or the offsets would run past the array.
    std::unique_ptr<XMLTranscoder> large;
    XMLTranscoder* used = transcoder;
    if (transcoder != nullptr && length > transcoder->getBlockSize()) {
        large.reset(MakeTranscoder(transcoder->getEncodingName(), length));
        used = large.get();
    }
    if (used != nullptr && length > 0) {
        std::vector<unsigned char> sizes(length + 1);
        XMLSize_t eaten = 0;
        try {
            // One call only: whatever does not fit into it is cut.
            made = used->transcodeFrom(reinterpret_cast<XMLByte const*>(text), length, result, length, eaten,
                                       sizes.data());
        } catch (...) {
            made = 0;
        }
    }
    result[made] = 0;
    return result;
}

std::string VantryTranscoder::transcodeTo(char16_t const* const text) {
    std::string result;
    if (text == nullptr || transcoder == nullptr) {
        return result;
    }
    char16_t const* source = text;
    XMLSize_t left = XMLString::stringLen(text);
    // Units offered per call. A transcoder that meets a character it cannot represent throws away the
    // whole call, so after a failure fewer units are offered until the failing character comes first;
    // everything before it is then kept.
    XMLSize_t limit = left;
    XMLByte block[kBlockBytes];
    while (left > 0) {
        XMLSize_t offered = std::min(left, limit);
        if (offered < left && IsHighSurrogate(source[offered - 1])) {
            offered = offered > 1 ? offered - 1 : 2;  // never split a surrogate pair
        }
        XMLSize_t eaten = 0;
        try {
            XMLSize_t const made = transcoder->transcodeTo(source, offered, block, kBlockBytes, eaten,
                                                           XMLTranscoder::UnRep_Throw);
            result.append(reinterpret_cast<char const*>(block), made);
        } catch (...) {
            XMLSize_t const firstCharacter = left > 1 && IsHighSurrogate(source[0]) ? 2 : 1;
            if (offered <= firstCharacter) {
                break;
            }
            limit = offered / 2;
            continue;
        }
        if (eaten == 0) {
            break;  // e.g. a lone high surrogate at the end
        }
        source += eaten;
        left -= eaten;
    }
    return result;
}

}  // namespace QXVantry_920
