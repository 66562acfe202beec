// Multibyte-aware C string functions of the text layer, on UTF-8 (`_8`) and on the encoding of the C
// locale (`_C`). The `_C` family steps over characters with the C library's multibyte functions, so that a
// character of the current locale is never split, and decodes characters through the default converter
// where it has to compare them.
#include <unicode/uchar.h>
#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <cwchar>

#include "vantry/text/KROMMBInternal.h"
#include "vantry/text/KROMMultiByte.h"

namespace QXXML_920 {

using mbinternal::ConverterLease;
using mbinternal::IsSubstitution;
using mbinternal::kResultLossy;
using mbinternal::kResultOk;

namespace {

unsigned char Byte(char c) {
    return static_cast<unsigned char>(c);
}

char* Writable(char const* p) {
    return const_cast<char*>(p);
}

std::size_t LengthOf(char const* s) {
    return s != nullptr ? std::strlen(s) : 0;
}

// One character as the comparison and search functions see it: a code point, or for a broken byte the
// byte itself as a signed char, which never equals a decoded character.
struct TextChar {
    int value;
    std::size_t length;
    bool wellFormed;
};

TextChar BrokenByte(char const* s) {
    return {static_cast<signed char>(*s), 1, false};
}

// Reads the UTF-8 character at `s` within `available` (> 0) bytes.
TextChar ReadUtf8Char(char const* s, std::size_t available) {
    int length = KROMMBmblen_8(s, available);
    if (length == 0) {
        return {0, 1, true};  // a zero byte inside a counted text
    }
    if (length < 0) {
        return BrokenByte(s);
    }
    int32_t i = 0;
    UChar32 c;
    U8_NEXT_UNSAFE(s, i, c);
    return {c, static_cast<std::size_t>(length), true};
}

// Reads the character at `s` within `available` (> 0) bytes through `cnv`, a clone of the default
// converter.
TextChar ReadCodePageChar(UConverter* cnv, char const* s, std::size_t available) {
    char const* next = s;
    UErrorCode status = U_ZERO_ERROR;
    UChar32 c = ucnv_getNextUChar(cnv, &next, s + std::min<std::size_t>(available, 4), &status);
    if (U_SUCCESS(status) && !IsSubstitution(status) && next > s) {
        return {c, static_cast<std::size_t>(next - s), true};
    }
    ucnv_resetToUnicode(cnv);
    return BrokenByte(s);
}

struct Utf8Reader {
    TextChar operator()(char const* s, std::size_t available) const { return ReadUtf8Char(s, available); }
};

struct CodePageReader {
    UConverter* converter;
    TextChar operator()(char const* s, std::size_t available) const {
        return ReadCodePageChar(converter, s, available);
    }
};

// Bytes of the character at `s` in the C locale, looking at no more than `available` bytes: at least 1;
// a character cut short by the end of the text takes what is left.
std::size_t StepC(char const* s, std::size_t available) {
    available = std::min<std::size_t>(available, MB_LEN_MAX);
    if (available == 0) {
        return 1;
    }
    std::mbstate_t state{};
    std::size_t length = std::mbrlen(s, available, &state);
    if (length == static_cast<std::size_t>(-2)) {
        return available;
    }
    return (length == 0 || length == static_cast<std::size_t>(-1)) ? 1 : length;
}

std::size_t StepC(char const* s) {
    return StepC(s, strnlen(s, MB_LEN_MAX));
}

// The value of a UTF-8 character of `length` bytes, decoded without any check.
unsigned int LenientUtf8Value(char const* s, std::uint64_t length) {
    if (length == 1) {
        return Byte(*s);
    }
    unsigned int value = Byte(s[0]) & (0x7Fu >> length);
    for (std::uint64_t i = 1; i < length; ++i) {
        value = (value << 6) | (Byte(s[i]) & 0x3Fu);
    }
    return value;
}

template <typename Reader>
int CompareCaseBlind(Reader read, char const* a, std::size_t aLength, char const* b, std::size_t bLength,
                     bool* broken) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < aLength && j < bLength) {
        TextChar ca = read(a + i, aLength - i);
        TextChar cb = read(b + j, bLength - j);
        if (!ca.wellFormed || !cb.wellFormed) {
            *broken = true;
        }
        int va = ca.wellFormed ? u_tolower(ca.value) : ca.value;
        int vb = cb.wellFormed ? u_tolower(cb.value) : cb.value;
        if (va != vb) {
            return va < vb ? -1 : 1;
        }
        i += ca.length;
        j += cb.length;
    }
    if (i < aLength) {
        return 1;
    }
    return j < bLength ? -1 : 0;
}

template <typename Reader>
int StrNICmp(Reader read, char const* a, char const* b, std::uint64_t n) {
    bool broken = false;
    std::size_t aLength = a != nullptr ? strnlen(a, n) : 0;
    std::size_t bLength = b != nullptr ? strnlen(b, n) : 0;
    return CompareCaseBlind(read, a, aLength, b, bLength, &broken);
}

template <typename Reader>
int QStrICmp(Reader read, char const* a, int aLength, char const* b, int bLength, int* status) {
    bool broken = false;
    std::size_t aSize = (a == nullptr || aLength < 0) ? LengthOf(a) : static_cast<std::size_t>(aLength);
    std::size_t bSize = (b == nullptr || bLength < 0) ? LengthOf(b) : static_cast<std::size_t>(bLength);
    int order = CompareCaseBlind(read, a, aSize, b, bSize, &broken);
    if (status != nullptr) {
        *status = broken ? kResultLossy : kResultOk;
    }
    return order == 0 ? 1 : 0;
}

// Byte offset of the first character of `s` that occurs in `reject`. The first characters of `reject`
// are decoded once; the rest of a long `reject` is read again for every character of `s`.
template <typename Reader>
std::uint64_t SpanWithout(Reader read, char const* s, char const* reject) {
    std::size_t length = LengthOf(s);
    std::size_t rejectLength = LengthOf(reject);
    if (rejectLength == 0) {
        return length;
    }
    constexpr int kKept = 64;
    int kept[kKept];
    int keptCount = 0;
    std::size_t rest = 0;
    while (rest < rejectLength && keptCount < kKept) {
        TextChar c = read(reject + rest, rejectLength - rest);
        kept[keptCount++] = c.value;
        rest += c.length;
    }
    for (std::size_t i = 0; i < length;) {
        TextChar c = read(s + i, length - i);
        if (std::find(kept, kept + keptCount, c.value) != kept + keptCount) {
            return i;
        }
        for (std::size_t k = rest; k < rejectLength;) {
            TextChar r = read(reject + k, rejectLength - k);
            if (r.value == c.value) {
                return i;
            }
            k += r.length;
        }
        i += c.length;
    }
    return length;
}

// Copies the first `length` bytes of `source` and sets the rest of the `n` bytes of `target` to zero.
char* CopyAndZeroFill(char* target, char const* source, std::size_t length, std::uint64_t n) {
    if (length > 0) {
        std::memmove(target, source, length);
    }
    std::memset(target + length, 0, n - length);
    return target;
}

// The first, or with `last` the last, UTF-8 character of `s` whose value is `c` (128 or above).
char const* FindUtf8Char(char const* s, unsigned int c, bool last) {
    char const* found = nullptr;
    for (char const* p = s; *p != '\0';) {
        std::uint64_t length = KROMMBmbclen_8(p);
        if (LenientUtf8Value(p, length) == c) {
            found = p;
            if (!last) {
                break;
            }
        }
        p += length;
    }
    return found;
}

// The step of the search functions: the length of the character at `s` as the C library's mblen gives it
// within five bytes, where anything below 1 counts as 1. Unlike StepC, a character cut short by the
// terminator is no character here, so that each of its bytes is looked at.
std::size_t SearchStepC(char const* s) {
    constexpr std::size_t kSearchSpan = 5;
    std::mbstate_t state{};
    std::size_t length = std::mbrlen(s, strnlen(s, kSearchSpan), &state);
    return (length == 0 || length > kSearchSpan) ? 1 : length;
}

// The first, or with `last` the last, character of `s` in the C locale that begins with the byte `c`;
// the terminator for a zero `c`.
char const* FindCodePageChar(char const* s, unsigned int c, bool last) {
    char const* found = nullptr;
    char const* p = s;
    for (; *p != '\0'; p += SearchStepC(p)) {
        if (Byte(*p) == c) {
            found = p;
            if (!last) {
                break;
            }
        }
    }
    return c == 0 ? p : found;
}

// The last character ending at `end` is whole and well-formed, and not a noncharacter.
bool EndsInValidUtf8(char const* s, std::size_t end) {
    std::size_t start = KROMMBPreviousIndex_8(s, end);
    return KROMMBmblen_8(s + start, end - start) == static_cast<int>(end - start);
}

}  // namespace

// ---- UTF-8 ---------------------------------------------------------------------------------------------

int KROMMBmblen_8(char const* s, std::uint64_t n) {
    if (s == nullptr || n == 0 || *s == '\0') {
        return 0;
    }
    unsigned char lead = Byte(s[0]);
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return -1;
    }
    int length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (n < static_cast<std::uint64_t>(length)) {
        return -1;
    }
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead == 0xE0) {
        low = 0xA0;
    } else if (lead == 0xED) {
        high = 0x9F;
    } else if (lead == 0xF0) {
        low = 0x90;
    } else if (lead == 0xF4) {
        high = 0x8F;
    }
    if (Byte(s[1]) < low || Byte(s[1]) > high) {
        return -1;
    }
    for (int i = 2; i < length; ++i) {
        if (!U8_IS_TRAIL(s[i])) {
            return -1;
        }
    }
    return length;
}

std::uint64_t KROMMBmbclen_8(char const* s) {
    if (s == nullptr) {
        return 0;
    }
    unsigned char lead = Byte(*s);
    if (lead < 0xC2 || lead > 0xF4) {
        return 1;
    }
    std::uint64_t promised = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint64_t length = 1;
    while (length < promised && s[length] != '\0') {
        ++length;
    }
    return length;
}

std::uint64_t KROMMBPreviousIndex_8(char const* s, std::uint64_t index) {
    if (s == nullptr || index < 1) {
        return index;
    }
    std::uint64_t last = index - 1;
    if (Byte(s[last]) <= 0x7F) {
        return last;
    }
    // A character is at most four bytes long, so the look-back never needs more than three bytes.
    std::uint64_t base = last >= 3 ? last - 3 : 0;
    auto i = static_cast<int32_t>(last - base);
    UChar32 c = utf8_prevCharSafeBody(reinterpret_cast<uint8_t const*>(s + base), 0, &i, Byte(s[last]), 1);
    if (U_IS_SURROGATE(c) || c > 0x10FFFF || U_IS_UNICODE_NONCHAR(c)) {
        return last;
    }
    return base + static_cast<std::uint64_t>(i);
}

char* KROMMBstrinc_8(char const* s) {
    return s != nullptr ? Writable(s + KROMMBmbclen_8(s)) : nullptr;
}

char* KROMMBAnsiPrev_8(char const* start, char const* pos) {
    if (start == nullptr || pos == nullptr || pos <= start) {
        return Writable(pos);
    }
    return Writable(start + KROMMBPreviousIndex_8(start, static_cast<std::uint64_t>(pos - start)));
}

std::uint64_t KROMMBstrcspn_8(char const* s, char const* reject) {
    return SpanWithout(Utf8Reader{}, s, reject);
}

int KROMMBstrnicmp_8(char const* a, char const* b, std::uint64_t n) {
    return StrNICmp(Utf8Reader{}, a, b, n);
}

int KROMMBqstricmp_8(char const* a, int aLength, char const* b, int bLength, int* status) {
    return QStrICmp(Utf8Reader{}, a, aLength, b, bLength, status);
}

char* KROMMBstrncpy_8(char* target, char const* source, std::uint64_t n) {
    if (target == nullptr || n == 0) {
        return target;
    }
    std::size_t length = source != nullptr ? strnlen(source, n) : 0;
    while (length > 0 && !EndsInValidUtf8(source, length)) {
        length = KROMMBPreviousIndex_8(source, length);
    }
    return CopyAndZeroFill(target, source, length, n);
}

char* KROMMBstrchr_8(char const* s, unsigned int c) {
    if (s == nullptr) {
        return nullptr;
    }
    return Writable(c < 0x80 ? std::strchr(s, static_cast<int>(c)) : FindUtf8Char(s, c, false));
}

char* KROMMBstrrchr_8(char const* s, unsigned int c) {
    if (s == nullptr) {
        return nullptr;
    }
    return Writable(c < 0x80 ? std::strrchr(s, static_cast<int>(c)) : FindUtf8Char(s, c, true));
}

// ---- The C locale's encoding -----------------------------------------------------------------------------

int KROMMBmblen_C(char const* s, std::uint64_t n) {
    if (s == nullptr) {
        return 0;  // no encoding of a C locale here keeps a shift state
    }
    std::mbstate_t state{};
    std::size_t length = std::mbrlen(s, n, &state);
    if (length == static_cast<std::size_t>(-1) || length == static_cast<std::size_t>(-2)) {
        return -1;
    }
    return static_cast<int>(length);
}

std::uint64_t KROMMBmbclen_C(char const* s) {
    return s != nullptr ? StepC(s) : 0;
}

int KROMMBIsLeadByte_C(unsigned int c) {
    if (c > UCHAR_MAX) {
        return 0;
    }
    char byte = static_cast<char>(c);
    std::mbstate_t state{};
    return std::mbrlen(&byte, 1, &state) == static_cast<std::size_t>(-2) ? 1 : 0;
}

std::uint64_t KROMMBFindStart_C(char const* s, std::uint64_t index) {
    if (s == nullptr) {
        return 0;
    }
    std::size_t length = std::strlen(s);
    if (index >= length) {
        return length;
    }
    std::size_t at = 0;
    for (;;) {
        std::size_t step = StepC(s + at, length - at);
        if (at + step > index) {
            return at;
        }
        at += step;
    }
}

int KROMMBU32Get_C(int* codePoint, char const* s, int offset, int length) {
    int ignored = 0;
    if (codePoint == nullptr) {
        codePoint = &ignored;
    }
    *codePoint = 0;
    if (s == nullptr || offset < 0) {
        return s == nullptr ? 0 : -1;
    }
    std::size_t end = length < 0 ? std::strlen(s) : static_cast<std::size_t>(length);
    if (static_cast<std::size_t>(offset) >= end) {
        return 0;
    }
    ConverterLease lease(nullptr);
    if (lease.get() == nullptr) {
        return -1;
    }
    TextChar c = ReadCodePageChar(lease.get(), s + offset, end - static_cast<std::size_t>(offset));
    if (!c.wellFormed) {
        return -1;
    }
    *codePoint = c.value;
    return static_cast<int>(c.length);
}

char* KROMMBstrinc_C(char const* s) {
    return s != nullptr ? Writable(s + StepC(s)) : nullptr;
}

char* KROMMBAnsiPrev_C(char const* start, char const* pos) {
    if (start == nullptr || pos == nullptr || pos <= start) {
        return Writable(pos);
    }
    return Writable(start + KROMMBFindStart_C(start, static_cast<std::uint64_t>(pos - start - 1)));
}

std::uint64_t KROMMBstrcspn_C(char const* s, char const* reject) {
    ConverterLease lease(nullptr);
    if (lease.get() == nullptr) {
        return std::strcspn(s != nullptr ? s : "", reject != nullptr ? reject : "");
    }
    return SpanWithout(CodePageReader{lease.get()}, s, reject);
}

int KROMMBstrnicmp_C(char const* a, char const* b, std::uint64_t n) {
    ConverterLease lease(nullptr);
    if (lease.get() == nullptr) {
        return StrNICmp(Utf8Reader{}, a, b, n);
    }
    return StrNICmp(CodePageReader{lease.get()}, a, b, n);
}

int KROMMBqstricmp_C(char const* a, int aLength, char const* b, int bLength, int* status) {
    ConverterLease lease(nullptr);
    if (lease.get() == nullptr) {
        return QStrICmp(Utf8Reader{}, a, aLength, b, bLength, status);
    }
    return QStrICmp(CodePageReader{lease.get()}, a, aLength, b, bLength, status);
}

char* KROMMBstrncpy_C(char* target, char const* source, std::uint64_t n) {
    if (target == nullptr || n == 0) {
        return target;
    }
    std::size_t length = source != nullptr ? strnlen(source, n) : 0;
    std::size_t taken = 0;
    while (taken < length) {
        std::mbstate_t state{};
        std::size_t step = std::mbrlen(source + taken, length - taken, &state);
        if (step == static_cast<std::size_t>(-2)) {
            break;  // a character cut by the limit
        }
        taken += (step == 0 || step == static_cast<std::size_t>(-1)) ? 1 : step;
    }
    return CopyAndZeroFill(target, source, taken, n);
}

char* KROMMBstrchr_C(char const* s, unsigned int c) {
    if (s == nullptr) {
        return nullptr;
    }
    return Writable(FindCodePageChar(s, c, false));
}

char* KROMMBstrrchr_C(char const* s, unsigned int c) {
    if (s == nullptr) {
        return nullptr;
    }
    return Writable(FindCodePageChar(s, c, true));
}

// ---- Chosen by UTF-8 mode -------------------------------------------------------------------------------

char* KROMMBstrinc_A(char const* s) {
    return qUTF8mode() ? KROMMBstrinc_8(s) : KROMMBstrinc_C(s);
}

char* KROMMBAnsiPrev_A(char const* start, char const* pos) {
    return qUTF8mode() ? KROMMBAnsiPrev_8(start, pos) : KROMMBAnsiPrev_C(start, pos);
}

std::uint64_t KROMMBstrcspn_A(char const* s, char const* reject) {
    return qUTF8mode() ? KROMMBstrcspn_8(s, reject) : KROMMBstrcspn_C(s, reject);
}

int KROMMBstrnicmp_A(char const* a, char const* b, std::uint64_t n) {
    return qUTF8mode() ? KROMMBstrnicmp_8(a, b, n) : KROMMBstrnicmp_C(a, b, n);
}

int KROMMBqstricmp_A(char const* a, int aLength, char const* b, int bLength, int* status) {
    return qUTF8mode() ? KROMMBqstricmp_8(a, aLength, b, bLength, status)
                       : KROMMBqstricmp_C(a, aLength, b, bLength, status);
}

char* KROMMBstrncpy_A(char* target, char const* source, std::uint64_t n) {
    return qUTF8mode() ? KROMMBstrncpy_8(target, source, n) : KROMMBstrncpy_C(target, source, n);
}

char* KROMMBstrchr_A(char const* s, unsigned int c) {
    return qUTF8mode() ? KROMMBstrchr_8(s, c) : KROMMBstrchr_C(s, c);
}

char* KROMMBstrrchr_A(char const* s, unsigned int c) {
    return qUTF8mode() ? KROMMBstrrchr_8(s, c) : KROMMBstrrchr_C(s, c);
}

}  // namespace QXXML_920
