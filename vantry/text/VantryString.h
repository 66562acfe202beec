// An owning UTF-16 string for the text that the XML parser delivers, with the conversions and simple
// edits that model plug-ins need.
#pragma once

#include <string>

#include "vantry/Export.h"

namespace QXVantry_920 {

// Owns one zero-terminated UTF-16 buffer, or nothing: a null buffer and an empty string are different
// states, and operator== tells them apart. Buffers are allocated from Xerces-C's memory manager
// (XMLPlatformUtils::fgMemoryManager) and given back to it, so Xerces-C must be initialised while
// strings are built. A string may still be destroyed after Terminate.
class VANTRY_EXPORT VantryString {
  public:
    VantryString();
    // Null stays null; otherwise the text is transcoded from the local code page.
    VantryString(char const* source);
    // Null stays null; otherwise a copy.
    VantryString(char16_t const* source);
    VantryString(VantryString const& other);
    ~VantryString();

    VantryString& operator=(char const* source);
    VantryString& operator=(char16_t const* source);
    // Self-assignment leaves the string as it is.
    VantryString& operator=(VantryString const& other);
    VantryString& assign(char const* source);
    VantryString& assign(char16_t const* source);
    VantryString& assign(VantryString const& other);
    // A string of that one character.
    VantryString& assign(char16_t unit);
    // Replaces the text by the UTF-8 source. An empty source leaves a null buffer; a malformed sequence
    // ends the conversion and keeps what was converted before it.
    VantryString& assignUTF8(std::string const& source);
    // Frees the buffer and leaves a null one.
    VantryString& clear();

    char16_t const* xc_str() const;
    // Number of UTF-16 units; 0 for a null buffer.
    unsigned int length() const;
    // True for a null buffer and for an empty string.
    bool empty() const;
    // False whenever either side is null, even when both are; otherwise unit by unit.
    bool operator==(VantryString const& other) const;
    bool equals(VantryString const& other) const;
    // Here null and empty count as equal.
    bool equals(char16_t const* other) const;
    // True if find occurs anywhere in the text; an empty find is found at position 0.
    bool ContainsString(char16_t const* find) const;
    // The decimal digits read as a 32-bit unsigned number that wraps on overflow; 0 for a null or empty
    // string and for any string holding a unit that is no digit (a sign included).
    unsigned int convertToInteger();
    // The text as UTF-8; a null buffer gives an empty string.
    std::string toUTF8();

    // Null or empty arguments and the zero character change nothing.
    VantryString& append(char16_t const* tail);
    VantryString& append(char const* tail);
    VantryString& append(char16_t unit);
    VantryString& append(VantryString const& tail);
    // Takes count units off the end (at most all of them) by overwriting them with zero; the buffer
    // keeps its size and a null buffer is left alone.
    VantryString& truncateString(unsigned int count);
    // Replaces each occurrence of find by replacement and answers the number of replacements. After a
    // match the scan moves on by the length of the replacement plus one, not by the length of find, so
    // only a replacement one unit shorter than find continues right behind the match; plug-ins rely on
    // this stepping. A result without any unit leaves a null buffer.
    unsigned int replaceSubstring(char16_t const* find, char16_t const* replacement);

  private:
    char16_t* text;
};

}  // namespace QXVantry_920
