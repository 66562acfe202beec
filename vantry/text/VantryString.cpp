#include "vantry/text/VantryString.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUTF8Transcoder.hpp>

#include <algorithm>
#include <cstring>
#include <new>

#include "vantry/text/VantryTranscoder.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// Units per transcoder call when reading UTF-8; bounds the stack used by a conversion.
constexpr XMLSize_t kUTF8BlockUnits = 1000;

// Every buffer of a VantryString comes from Xerces-C's memory manager and goes back to it. After
// Terminate the manager is gone; the default manager allocates with the global operator new, so a buffer
// that outlives it goes back to the global operator delete.
void ReleaseBuffer(char16_t*& buffer) {
    if (buffer == nullptr) {
        return;
    }
    if (XMLPlatformUtils::fgMemoryManager != nullptr) {
        XMLString::release(&buffer, XMLPlatformUtils::fgMemoryManager);
    } else {
        ::operator delete(buffer);
        buffer = nullptr;
    }
}

// A new buffer with room for count units and the terminator, which is set; null without a manager.
char16_t* AllocateUnits(XMLSize_t count) {
    if (XMLPlatformUtils::fgMemoryManager == nullptr) {
        return nullptr;
    }
    auto* buffer =
        static_cast<char16_t*>(XMLPlatformUtils::fgMemoryManager->allocate((count + 1) * sizeof(char16_t)));
    buffer[count] = 0;
    return buffer;
}

// A new zero-terminated buffer holding the first count units of source.
char16_t* CopyUnits(char16_t const* source, XMLSize_t count) {
    char16_t* copy = AllocateUnits(count);
    if (copy != nullptr) {
        std::memcpy(copy, source, count * sizeof(char16_t));
    }
    return copy;
}

char16_t* Replicate(char16_t const* source) {
    return source == nullptr ? nullptr : CopyUnits(source, XMLString::stringLen(source));
}

// Local code page to UTF-16; null without a transcoding service.
char16_t* TranscodeLocal(char const* source) {
    if (source == nullptr || XMLPlatformUtils::fgTransService == nullptr) {
        return nullptr;
    }
    return XMLString::transcode(source, XMLPlatformUtils::fgMemoryManager);
}

}  // namespace

VantryString::VantryString() : text(nullptr) {}

VantryString::VantryString(char const* source) : text(TranscodeLocal(source)) {}

VantryString::VantryString(char16_t const* source) : text(Replicate(source)) {}

VantryString::VantryString(VantryString const& other) : text(Replicate(other.text)) {}

VantryString::~VantryString() {
    ReleaseBuffer(text);
}

VantryString& VantryString::operator=(char const* source) {
    return assign(source);
}

VantryString& VantryString::operator=(char16_t const* source) {
    return assign(source);
}

VantryString& VantryString::operator=(VantryString const& other) {
    return assign(other);
}

VantryString& VantryString::assign(char const* source) {
    ReleaseBuffer(text);
    text = TranscodeLocal(source);
    return *this;
}

VantryString& VantryString::assign(char16_t const* source) {
    // Copy first: source may point into this string's own buffer.
    char16_t* copy = Replicate(source);
    ReleaseBuffer(text);
    text = copy;
    return *this;
}

VantryString& VantryString::assign(VantryString const& other) {
    return assign(other.text);
}

VantryString& VantryString::assign(char16_t unit) {
    char16_t const single[2] = {unit, 0};
    return assign(single);
}

VantryString& VantryString::assignUTF8(std::string const& source) {
    ReleaseBuffer(text);
    if (source.empty() || XMLPlatformUtils::fgMemoryManager == nullptr) {
        return *this;
    }
    std::u16string converted;
    try {
        XMLUTF8Transcoder utf8(u"UTF-8", kUTF8BlockUnits);
        auto const* input = reinterpret_cast<XMLByte const*>(source.data());
        XMLSize_t left = source.size();
        char16_t block[kUTF8BlockUnits + 1];
        unsigned char sizes[kUTF8BlockUnits];
        while (left > 0) {
            XMLSize_t eaten = 0;
            XMLSize_t const made = utf8.transcodeFrom(input, left, block, kUTF8BlockUnits, eaten, sizes);
            if (made == 0 && eaten == 0) {
                // An incomplete sequence at the end: nothing more can be read.
                break;
            }
            if (made > 0) {
                block[made] = 0;
                converted.append(block);  // as a zero-terminated block
            }
            input += eaten;
            left -= eaten;
        }
    } catch (...) {
        // A malformed sequence ends the conversion; the blocks read before it stay.
    }
    if (!converted.empty()) {
        text = CopyUnits(converted.data(), converted.size());
    }
    return *this;
}

VantryString& VantryString::clear() {
    ReleaseBuffer(text);
    return *this;
}

char16_t const* VantryString::xc_str() const {
    return text;
}

unsigned int VantryString::length() const {
    return static_cast<unsigned int>(XMLString::stringLen(text));
}

bool VantryString::empty() const {
    return text == nullptr || text[0] == 0;
}

bool VantryString::operator==(VantryString const& other) const {
    return text != nullptr && other.text != nullptr && XMLString::equals(text, other.text);
}

bool VantryString::equals(VantryString const& other) const {
    return *this == other;
}

bool VantryString::equals(char16_t const* other) const {
    return XMLString::equals(text, other);
}

bool VantryString::ContainsString(char16_t const* find) const {
    if (find == nullptr || text == nullptr) {
        return false;
    }
    XMLSize_t const textLength = XMLString::stringLen(text);
    XMLSize_t const findLength = XMLString::stringLen(find);
    if (findLength > textLength) {
        return false;
    }
    for (XMLSize_t position = 0; position <= textLength - findLength; ++position) {
        if (XMLString::startsWith(text + position, find)) {
            return true;
        }
    }
    return false;
}

unsigned int VantryString::convertToInteger() {
    unsigned int value = 0;
    if (text == nullptr) {
        return value;
    }
    for (char16_t const* unit = text; *unit != 0; ++unit) {
        if (!XMLString::isDigit(*unit)) {
            return 0;
        }
        value = value * 10u + static_cast<unsigned int>(*unit - u'0');
    }
    return value;
}

std::string VantryString::toUTF8() {
    if (text == nullptr) {
        return std::string();
    }
    return VantryTranscoder("UTF-8").transcodeTo(text);
}

VantryString& VantryString::append(char16_t const* tail) {
    if (tail == nullptr || tail[0] == 0) {
        return *this;
    }
    if (text == nullptr) {
        text = Replicate(tail);
        return *this;
    }
    XMLSize_t const headLength = XMLString::stringLen(text);
    XMLSize_t const tailLength = XMLString::stringLen(tail);
    // The tail may lie inside this string's own buffer: copy it before the old buffer goes.
    char16_t* joined = AllocateUnits(headLength + tailLength);
    if (joined == nullptr) {
        return *this;
    }
    std::memcpy(joined, text, headLength * sizeof(char16_t));
    std::memcpy(joined + headLength, tail, tailLength * sizeof(char16_t));
    ReleaseBuffer(text);
    text = joined;
    return *this;
}

VantryString& VantryString::append(char const* tail) {
    if (tail == nullptr || tail[0] == 0) {
        return *this;
    }
    char16_t* converted = TranscodeLocal(tail);
    append(converted);
    ReleaseBuffer(converted);
    return *this;
}

VantryString& VantryString::append(char16_t unit) {
    char16_t const single[2] = {unit, 0};
    return append(single);
}

VantryString& VantryString::append(VantryString const& tail) {
    return append(tail.text);
}

VantryString& VantryString::truncateString(unsigned int count) {
    if (text == nullptr) {
        return *this;
    }
    XMLSize_t const currentLength = XMLString::stringLen(text);
    XMLSize_t const removed = std::min<XMLSize_t>(count, currentLength);
    std::fill(text + (currentLength - removed), text + currentLength, u'\0');
    return *this;
}

unsigned int VantryString::replaceSubstring(char16_t const* find, char16_t const* replacement) {
    if (!ContainsString(find)) {
        return 0;
    }
    XMLSize_t const textLength = XMLString::stringLen(text);
    XMLSize_t const replacementLength = XMLString::stringLen(replacement);
    std::u16string output;
    unsigned int replaced = 0;
    // The terminator's position is visited too, so that an empty find also matches at the end.
    for (XMLSize_t position = 0; position <= textLength; ++position) {
        if (XMLString::startsWith(text + position, find)) {
            if (replacementLength > 0) {
                output.append(replacement, replacementLength);
            }
            ++replaced;
            position += replacementLength;
        } else if (text[position] != 0) {
            output.push_back(text[position]);
        }
    }
    ReleaseBuffer(text);
    if (!output.empty()) {
        text = CopyUnits(output.data(), output.size());
    }
    return replaced;
}

}  // namespace QXVantry_920
