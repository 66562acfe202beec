// Built-in functions on text. Texts are bytes; only substring counts UTF-16 code units, and only the
// regular expressions decode UTF-8. Each function writes the declared length of its result to length,
// which the caller keeps in the result's length field; for fixed-width fields it may differ from the
// byte count of the text.
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "vantry/transform/RegexCache.h"
#include "vantry/transform/TransformationDictionary.h"

namespace QXVantry_920 {

namespace {

std::string TextOf(StringValue const* value) {
    return value == nullptr ? std::string() : ScoreValue::TextOf(*value);
}

int DeclaredLength(StringValue const* value) {
    return value == nullptr ? 0 : std::max(value->GetLength(), 0);
}

// The count of a piece that starts at start (from 1) of a text of size units, cut to the text's end;
// -1 when there is no piece (empty text or start outside it).
std::int64_t PieceCount(std::int64_t size, int start, int count) {
    if (size == 0 || start < 1 || start > size) {
        return -1;
    }
    std::int64_t piece = std::max(count, 0);
    if (piece > size || piece - 1 + start > size) {
        piece = size - start + 1;
    }
    return piece;
}

}  // namespace

double TransformationDictionary::Matches(std::vector<std::string> const& texts) {
    return texts.size() >= 2 && detail::RegexFind(texts[0], texts[1]) ? 1.0 : 0.0;
}

// Each text fills exactly its width: cut when longer, padded with blanks when shorter.
std::string TransformationDictionary::Concat(std::vector<std::string> const& texts,
                                             std::vector<int> const& widths, int& length) {
    std::string result;
    length = 0;
    std::size_t const count = std::min(texts.size(), widths.size());
    for (std::size_t i = 0; i < count; ++i) {
        auto const width = static_cast<std::size_t>(std::max(widths[i], 0));
        std::string const& text = texts[i];
        result.append(text, 0, width);
        if (width > text.size()) {
            result.append(width - text.size(), ' ');
        }
    }
    // The declared length of the whole; an int, so a sum beyond its range is held at its largest.
    length = static_cast<int>(std::min<std::size_t>(result.size(), std::numeric_limits<int>::max()));
    return result;
}

// (subject, pattern, replacement); a pattern that does not compile leaves the subject as it is.
std::string TransformationDictionary::Replace(std::vector<std::string> const& texts, int& length) {
    std::string result = texts.empty() ? std::string() : texts[0];
    if (texts.size() >= 3) {
        detail::RegexReplaceAll(texts[0], texts[1], texts[2], result);
    }
    length = static_cast<int>(result.size());
    return result;
}

// Leading blanks and tabs.
std::string TransformationDictionary::Ltrim(StringValue const* value, int& length) {
    std::string const text = TextOf(value);
    std::size_t const first = std::min(text.find_first_not_of(" \t"), text.size());
    length = DeclaredLength(value) - static_cast<int>(first);
    return text.substr(first);
}

// Trailing blanks only: a tab at the end stays, unlike ltrim.
std::string TransformationDictionary::Rtrim(StringValue const* value, int& length) {
    std::string text = TextOf(value);
    std::size_t const last = text.find_last_not_of(' ');
    text.erase(last == std::string::npos ? 0 : last + 1);
    length = static_cast<int>(text.size());
    return text;
}

// The bytes from start (counted from 1) to the end. A start at the last byte or beyond gives empty text,
// and the length is the start, not the count of bytes: both are kept as they are for compatibility.
std::string TransformationDictionary::Substring(StringValue const* value, int start, int& length) {
    std::string const text = TextOf(value);
    if (text.empty()) {
        length = 0;
        return std::string();
    }
    if (start < 1 || static_cast<std::size_t>(start) >= text.size()) {
        length = DeclaredLength(value);
        return std::string();
    }
    length = start;
    return text.substr(static_cast<std::size_t>(start) - 1);
}

// count bytes from start (counted from 1), cut at the end of the text.
std::string TransformationDictionary::Substring(StringValue const* value, int start, int count, int& length) {
    std::string const text = TextOf(value);
    std::int64_t const piece = PieceCount(static_cast<std::int64_t>(text.size()), start, count);
    if (piece < 0) {
        length = 0;
        return std::string();
    }
    length = static_cast<int>(piece);
    return text.substr(static_cast<std::size_t>(start) - 1, static_cast<std::size_t>(piece));
}

// count UTF-16 code units from start (counted from 1), cut at the end of the text.
std::string TransformationDictionary::Substring_unicode(StringValue const* value, int start, int count,
                                                        int& length) {
    icu::UnicodeString const text = icu::UnicodeString::fromUTF8(TextOf(value));
    std::int64_t const piece = PieceCount(text.length(), start, count);
    std::string result;
    if (piece >= 0) {
        text.tempSubString(start - 1, static_cast<int32_t>(piece)).toUTF8String(result);
    }
    length = static_cast<int>(result.size());
    return result;
}

}  // namespace QXVantry_920
