// Set-up, converters and conversions of the multibyte text layer.
#include "vantry/text/KROMMultiByte.h"

#include <strings.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <type_traits>

#include "vantry/text/KROMMBInternal.h"

namespace QXXML_920 {

using mbinternal::ConverterLease;
using mbinternal::IsSubstitution;
using mbinternal::kIllegalSubstituted;
using mbinternal::kResultCut;
using mbinternal::kResultLossy;
using mbinternal::kResultNoMemory;
using mbinternal::kResultOk;
using mbinternal::kUnassignedSubstituted;

namespace {

std::atomic<int> gUTF8Mode{1};
std::atomic<UConverter*> gDefaultConverter{nullptr};
std::atomic<int> gDefaultConverterID{0};

constexpr char kSubstitute = '?';

// ---- Converter callbacks -------------------------------------------------------------------------------

// Bad input becomes "?" and the conversion carries on; the status left behind says that it happened.
void ToUnicodeCallback(void const* context, UConverterToUnicodeArgs* args, char const* codeUnits,
                       int32_t length, UConverterCallbackReason reason, UErrorCode* status) {
    UCNV_TO_U_CALLBACK_SUBSTITUTE(context, args, codeUnits, length, reason, status);
    if (U_FAILURE(*status) || reason > UCNV_IRREGULAR) {
        return;
    }
    // The substitute went into the target (a full target would have failed), so the unit before the
    // target pointer is ours to overwrite.
    if (args->target != nullptr) {
        args->target[-1] = static_cast<UChar>(kSubstitute);
    }
    *status = reason == UCNV_UNASSIGNED ? kUnassignedSubstituted : kIllegalSubstituted;
}

void FromUnicodeCallback(void const* context, UConverterFromUnicodeArgs* args, UChar const* codeUnits,
                         int32_t length, UChar32 codePoint, UConverterCallbackReason reason,
                         UErrorCode* status) {
    UCNV_FROM_U_CALLBACK_SUBSTITUTE(context, args, codeUnits, length, codePoint, reason, status);
    if (U_FAILURE(*status) || reason > UCNV_IRREGULAR) {
        return;
    }
    *status = reason == UCNV_UNASSIGNED ? kUnassignedSubstituted : kIllegalSubstituted;
}

// ---- Code page numbers ---------------------------------------------------------------------------------

struct CodePageRow {
    unsigned long number;
    char const* name;
};

constexpr CodePageRow kCodePages[] = {
    {932, "windows-31j"}, {936, "GBK"},     {949, "KS_C_5601-1987"}, {950, "Big5"},         {1250, "cp1250"},
    {1251, "cp1251"},     {1252, "cp1252"}, {1253, "cp1253"},        {1254, "cp1254"},      {1255, "cp1255"},
    {1256, "cp1256"},     {1257, "cp1257"}, {1258, "cp1258"},        {28591, "ISO-8859-1"}, {65001, "UTF-8"},
};

constexpr std::size_t kCodePageNameSize = 32;

bool IcuKnows(char const* name) {
    UErrorCode status = U_ZERO_ERROR;
    uint16_t aliases = ucnv_countAliases(name, &status);
    return U_SUCCESS(status) && aliases > 0;
}

// The ICU name of a code page number; false if ICU knows none.
bool CodePageName(unsigned long number, char (&name)[kCodePageNameSize]) {
    name[0] = '\0';
    for (CodePageRow const& row : kCodePages) {
        if (row.number == number) {
            if (IcuKnows(row.name)) {
                std::snprintf(name, sizeof name, "%s", row.name);
            }
            break;
        }
    }
    if (name[0] == '\0') {
        std::snprintf(name, sizeof name, "windows-%03lu", number);
        if (!IcuKnows(name)) {
            std::snprintf(name, sizeof name, "cp%03lu", number);
            if (!IcuKnows(name)) {
                name[0] = '\0';
                return false;
            }
        }
    }
    UErrorCode status = U_ZERO_ERROR;
    char const* standard = ucnv_getStandardName(name, "IANA", &status);
    if (U_SUCCESS(status) && standard != nullptr && standard[0] != '\0') {
        std::snprintf(name, sizeof name, "%s", standard);
    }
    return true;
}

UConverter* OpenByName(char const* name, UErrorCode* status) {
    char* end = nullptr;
    errno = 0;
    unsigned long number = std::strtoul(name, &end, 10);
    if (end != name && *end == '\0' && errno == 0 && number >= 1 && number <= 99999) {
        char codePage[kCodePageNameSize];
        if (!CodePageName(number, codePage)) {
            *status = U_FILE_ACCESS_ERROR;
            return nullptr;
        }
        return ucnv_open(codePage, status);
    }
    UConverter* converter = ucnv_open(name, status);
    if (U_FAILURE(*status) && strcasecmp(name, "windows-28591") == 0) {
        *status = U_ZERO_ERROR;
        converter = ucnv_open("ISO-8859-1", status);
    }
    return converter;
}

}  // namespace

// ---- Set-up --------------------------------------------------------------------------------------------

void EnableLocale() {
    static std::once_flag once;
    std::call_once(once, [] {
        char const* name = std::setlocale(LC_CTYPE, nullptr);
        if (name != nullptr && std::strcmp(name, "C") == 0) {
            std::setlocale(LC_ALL, "en_US");
            setenv("LC_ALL", "en_US", 1);
        }
    });
}

char const* SystemEncoding() {
    static std::string const encoding = [] {
        EnableLocale();
        char const* name = std::setlocale(LC_CTYPE, nullptr);
        char const* dot = name != nullptr ? std::strchr(name, '.') : nullptr;
        if (dot == nullptr || dot[1] == '\0') {
            return std::string("CP1252");
        }
        // A POSIX locale name may carry a modifier behind the code set ("de_DE.ISO-8859-15@euro").
        std::string codeSet(dot + 1);
        codeSet.erase(std::min(codeSet.find('@'), codeSet.size()));
        return codeSet.empty() ? std::string("CP1252") : codeSet;
    }();
    return encoding.c_str();
}

void SetUTF8mode(int on) {
    gUTF8Mode.store(on, std::memory_order_relaxed);
}

int qUTF8mode() {
    return gUTF8Mode.load(std::memory_order_relaxed);
}

UConverter* KROMMBGetDefaultConverter() {
    UConverter* current = gDefaultConverter.load(std::memory_order_acquire);
    if (current != nullptr) {
        return current;
    }
    auto* made = static_cast<UConverter*>(KROMMBConverterNew_C(nullptr));
    if (made == nullptr) {
        return nullptr;
    }
    if (gDefaultConverter.compare_exchange_strong(current, made, std::memory_order_acq_rel)) {
        gDefaultConverterID.fetch_add(1, std::memory_order_acq_rel);
        return made;
    }
    ucnv_close(made);  // another thread was first
    return current;
}

int KROMMBDefaultConverterID() {
    return gDefaultConverterID.load(std::memory_order_acquire);
}

void* KROMMBConverterNew_C(char const* name) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* converter = nullptr;
    if (name == nullptr) {
        UConverter* existing = gDefaultConverter.load(std::memory_order_acquire);
        converter = existing != nullptr ? ucnv_open(ucnv_getName(existing, &status), &status)
                                        : ucnv_open(nullptr, &status);
    } else {
        converter = OpenByName(name, &status);
    }
    if (U_FAILURE(status)) {
        if (converter != nullptr) {
            ucnv_close(converter);
        }
        return nullptr;
    }
    ucnv_setToUCallBack(converter, ToUnicodeCallback, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter, FromUnicodeCallback, nullptr, nullptr, nullptr, &status);
    if (U_FAILURE(status)) {
        ucnv_close(converter);
        return nullptr;
    }
    // An encoding that cannot take a one-byte "?" keeps its own substitute.
    UErrorCode substituteStatus = U_ZERO_ERROR;
    ucnv_setSubstChars(converter, &kSubstitute, 1, &substituteStatus);
    return converter;
}

void* KROMMBConverterNew_8(char const* name) {
    if (name == nullptr) {
        return KROMMBConverterNew_C(nullptr);
    }
    constexpr int kNameField = 60;
    char codePageName[kNameField];
    int status = kResultOk;
    KROMMB8toCodePage(nullptr, codePageName, kNameField, name, -1, &status);
    return status == kResultOk ? KROMMBConverterNew_C(codePageName) : nullptr;
}

void* KROMMBConverterNew_A(char const* name) {
    return qUTF8mode() ? KROMMBConverterNew_8(name) : KROMMBConverterNew_C(name);
}

namespace mbinternal {

ConverterLease::ConverterLease(void* given) {
    if (given != nullptr) {
        fConverter = static_cast<UConverter*>(given);
        return;
    }
    UConverter* defaultConverter = KROMMBGetDefaultConverter();
    if (defaultConverter == nullptr) {
        return;
    }
    int32_t size = static_cast<int32_t>(sizeof fBuffer);
    UErrorCode status = U_ZERO_ERROR;
    // The one ICU call that clones into a caller's buffer; its replacement always allocates.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    UConverter* clone = ucnv_safeClone(defaultConverter, fBuffer, &size, &status);
#pragma GCC diagnostic pop
    if (U_SUCCESS(status)) {
        fConverter = clone;
        fOwned = true;
    }
}

ConverterLease::~ConverterLease() {
    if (fOwned) {
        ucnv_close(fConverter);
    }
}

}  // namespace mbinternal

// ---- The core conversions ------------------------------------------------------------------------------

namespace {

enum class Form { kUtf8, kCodePage, kUtf16 };

template <Form kForm>
using UnitOf = std::conditional_t<kForm == Form::kUtf16, char16_t, char>;

// What an engine did. Engines write at most their capacity, whole characters wherever they can, and
// neither terminate nor pad.
struct Outcome {
    int32_t written = 0;
    bool overflow = false;
    bool lossy = false;
    bool failed = false;

    void Note(UErrorCode status) {
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            overflow = true;
        } else if (IsSubstitution(status)) {
            lossy = true;
        } else if (U_FAILURE(status)) {
            failed = true;
        }
    }
};

// Source bytes fed to a code page converter per call when a pivot buffer sits in between. Small pieces
// keep the pivot from overflowing, which would hide a substitution status.
constexpr int32_t kSourceChunk = 128;
constexpr int32_t kPivotUnits = 4 * kSourceChunk;

// Bytes of the longest prefix of whole characters of `source` whose UTF-8 form fits in `capacity`.
int32_t Utf8BytesThatFit(char16_t const* source, int32_t length, int32_t capacity) {
    int32_t i = 0;
    int32_t bytes = 0;
    while (i < length) {
        UChar32 c;
        U16_NEXT(source, i, length, c);
        int32_t size = U_IS_SURROGATE(c) ? 1 : U8_LENGTH(c);
        if (bytes + size > capacity) {
            break;
        }
        bytes += size;
    }
    return bytes;
}

// End of a piece of UTF-8 of about `limit` bytes from `begin` that does not split a character.
int32_t Utf8PieceEnd(char const* source, int32_t begin, int32_t length, int32_t limit) {
    int32_t end = std::min(length, begin + limit);
    if (end == length) {
        return end;
    }
    int32_t lead = end;
    while (lead > begin && end - lead < 3 && U8_IS_TRAIL(source[lead])) {
        --lead;
    }
    return (lead > begin && !U8_IS_TRAIL(source[lead])) ? lead : end;
}

Outcome Utf8ToUtf16(char16_t* target, int32_t capacity, char const* source, int32_t length) {
    Outcome outcome;
    if (length == 0) {
        return outcome;
    }
    int32_t needed = 0;
    int32_t substitutions = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(target, capacity, &needed, source, length, kSubstitute, &substitutions, &status);
    outcome.Note(status);
    // On overflow ICU has filled the target to the last unit.
    outcome.written = outcome.overflow ? capacity : outcome.failed ? 0 : needed;
    outcome.lossy = substitutions > 0;
    return outcome;
}

Outcome Utf16ToUtf8(char* target, int32_t capacity, char16_t const* source, int32_t length) {
    Outcome outcome;
    if (length == 0) {
        return outcome;
    }
    int32_t needed = 0;
    int32_t substitutions = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(target, capacity, &needed, source, length, kSubstitute, &substitutions, &status);
    outcome.Note(status);
    // On overflow ICU has written whole characters only, as many as fit.
    outcome.written = outcome.overflow ? Utf8BytesThatFit(source, length, capacity)
                      : outcome.failed ? 0
                                       : needed;
    outcome.lossy = substitutions > 0;
    return outcome;
}

Outcome CodePageToUtf16(UConverter* cnv, char16_t* target, int32_t capacity, char const* source,
                        int32_t length) {
    Outcome outcome;
    ucnv_resetToUnicode(cnv);
    char16_t* out = target;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_toUnicode(cnv, &out, target + capacity, &source, source + length, nullptr, true, &status);
    outcome.Note(status);
    outcome.written = static_cast<int32_t>(out - target);
    return outcome;
}

Outcome Utf16ToCodePage(UConverter* cnv, char* target, int32_t capacity, char16_t const* source,
                        int32_t length) {
    Outcome outcome;
    ucnv_resetFromUnicode(cnv);
    char* out = target;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_fromUnicode(cnv, &out, target + capacity, &source, source + length, nullptr, true, &status);
    outcome.Note(status);
    outcome.written = static_cast<int32_t>(out - target);
    return outcome;
}

// Code page to UTF-8 through a UTF-16 pivot on the stack, piece by piece.
Outcome CodePageToUtf8(UConverter* cnv, char* target, int32_t capacity, char const* source, int32_t length) {
    Outcome outcome;
    ucnv_resetToUnicode(cnv);
    UChar pivot[kPivotUnits];
    int32_t carried = 0;  // a lead surrogate held back for the next piece
    char const* end = source + length;
    bool done = false;
    while (!done) {
        char const* pieceEnd = end - source > kSourceChunk ? source + kSourceChunk : end;
        bool flush = pieceEnd == end;
        UChar* pivotEnd = pivot + carried;
        UErrorCode status = U_ZERO_ERROR;
        ucnv_toUnicode(cnv, &pivotEnd, pivot + kPivotUnits, &source, pieceEnd, nullptr, flush, &status);
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            status = U_ZERO_ERROR;  // the pivot is full: ICU keeps the rest and hands it out next time
        } else {
            done = flush;
        }
        outcome.Note(status);
        if (outcome.failed) {
            break;
        }
        auto units = static_cast<int32_t>(pivotEnd - pivot);
        carried = (!done && units > 0 && U16_IS_LEAD(pivot[units - 1])) ? 1 : 0;
        Outcome part =
            Utf16ToUtf8(target + outcome.written, capacity - outcome.written, pivot, units - carried);
        outcome.written += part.written;
        outcome.lossy = outcome.lossy || part.lossy;
        if (part.overflow || part.failed) {
            outcome.overflow = part.overflow;
            outcome.failed = part.failed;
            break;
        }
        if (carried != 0) {
            pivot[0] = pivot[units - 1];
        }
    }
    return outcome;
}

// UTF-8 to code page, decoding pieces of whole UTF-8 characters into a UTF-16 pivot on the stack.
Outcome Utf8ToCodePage(UConverter* cnv, char* target, int32_t capacity, char const* source, int32_t length) {
    Outcome outcome;
    ucnv_resetFromUnicode(cnv);
    UChar pivot[kSourceChunk];  // a UTF-8 byte never gives more than one UTF-16 unit
    char* out = target;
    int32_t begin = 0;
    bool flush = false;
    while (!flush) {
        int32_t pieceEnd = Utf8PieceEnd(source, begin, length, kSourceChunk);
        flush = pieceEnd == length;
        int32_t units = 0;
        int32_t substitutions = 0;
        UErrorCode status = U_ZERO_ERROR;
        if (pieceEnd > begin) {
            u_strFromUTF8WithSub(pivot, kSourceChunk, &units, source + begin, pieceEnd - begin, kSubstitute,
                                 &substitutions, &status);
        }
        outcome.lossy = outcome.lossy || substitutions > 0;
        if (U_FAILURE(status)) {
            outcome.failed = true;
            break;
        }
        UChar const* in = pivot;
        status = U_ZERO_ERROR;
        ucnv_fromUnicode(cnv, &out, target + capacity, &in, pivot + units, nullptr, flush, &status);
        outcome.Note(status);
        if (outcome.overflow || outcome.failed) {
            break;
        }
        begin = pieceEnd;
    }
    outcome.written = static_cast<int32_t>(out - target);
    return outcome;
}

// Length of the longest prefix of a code page text that decodes cleanly, character by character.
int32_t CleanCodePagePrefix(UConverter* cnv, char const* text, int32_t length) {
    ucnv_resetToUnicode(cnv);
    char const* next = text;
    char const* clean = text;
    char const* end = text + length;
    while (next < end) {
        UErrorCode status = U_ZERO_ERROR;
        ucnv_getNextUChar(cnv, &next, end, &status);
        if (status != U_ZERO_ERROR) {
            break;
        }
        clean = next;
    }
    ucnv_resetToUnicode(cnv);
    return static_cast<int32_t>(clean - text);
}

template <Form kFrom, Form kTo>
Outcome RunEngine(UConverter* cnv, UnitOf<kTo>* target, int32_t capacity, UnitOf<kFrom> const* source,
                  int32_t length) {
    if constexpr (kFrom == Form::kUtf8 && kTo == Form::kUtf16) {
        return Utf8ToUtf16(target, capacity, source, length);
    } else if constexpr (kFrom == Form::kUtf16 && kTo == Form::kUtf8) {
        return Utf16ToUtf8(target, capacity, source, length);
    } else if constexpr (kFrom == Form::kCodePage && kTo == Form::kUtf16) {
        return CodePageToUtf16(cnv, target, capacity, source, length);
    } else if constexpr (kFrom == Form::kUtf16 && kTo == Form::kCodePage) {
        return Utf16ToCodePage(cnv, target, capacity, source, length);
    } else if constexpr (kFrom == Form::kCodePage && kTo == Form::kUtf8) {
        return CodePageToUtf8(cnv, target, capacity, source, length);
    } else {
        static_assert(kFrom == Form::kUtf8 && kTo == Form::kCodePage, "no such conversion");
        return Utf8ToCodePage(cnv, target, capacity, source, length);
    }
}

int32_t TextLength(char const* text) {
    return static_cast<int32_t>(std::strlen(text));
}
int32_t TextLength(char16_t const* text) {
    return static_cast<int32_t>(std::char_traits<char16_t>::length(text));
}

// Applies the field rules to what an engine left in the target and sets the result code.
template <Form kTo>
int32_t FinishField(UConverter* cnv, UnitOf<kTo>* target, int32_t size, bool terminated,
                    Outcome const& outcome, int* status) {
    int32_t capacity = terminated ? size - 1 : size;
    int32_t written = outcome.written;
    if (outcome.overflow) {
        if constexpr (kTo == Form::kUtf16) {
            if (written > 0 && U16_IS_LEAD(target[written - 1])) {
                target[--written] = u' ';
            }
        } else {
            if constexpr (kTo == Form::kCodePage) {
                written = CleanCodePagePrefix(cnv, target, written);
            }
            std::fill(target + written, target + capacity, ' ');
        }
    }
    if (terminated) {
        target[written] = 0;
    } else if (written < size) {
        target[written] = ' ';
    }
    *status = outcome.overflow ? kResultCut : (outcome.failed || outcome.lossy) ? kResultLossy : kResultOk;
    return written;
}

template <Form kFrom, Form kTo>
int Convert(void* converter, UnitOf<kTo>* target, int targetSize, UnitOf<kFrom> const* source,
            int sourceLength, int* status) {
    int ignored = kResultOk;
    if (status == nullptr) {
        status = &ignored;
    }
    static constexpr UnitOf<kFrom> kEmpty[1] = {0};
    bool terminated = sourceLength < 0;
    int32_t length = source == nullptr ? 0 : terminated ? TextLength(source) : sourceLength;
    if (source == nullptr) {
        source = kEmpty;
    }
    if (target == nullptr || targetSize <= 0) {
        *status = length > 0 ? kResultCut : kResultOk;
        return 0;
    }
    int32_t capacity = terminated ? targetSize - 1 : targetSize;
    if constexpr (kFrom == Form::kCodePage || kTo == Form::kCodePage) {
        ConverterLease lease(converter);
        Outcome outcome;
        if (lease.get() == nullptr) {
            outcome.failed = true;
        } else {
            outcome = RunEngine<kFrom, kTo>(lease.get(), target, capacity, source, length);
        }
        return FinishField<kTo>(lease.get(), target, targetSize, terminated, outcome, status);
    } else {
        Outcome outcome = RunEngine<kFrom, kTo>(nullptr, target, capacity, source, length);
        return FinishField<kTo>(nullptr, target, targetSize, terminated, outcome, status);
    }
}

// Generic text that is in the same encoding as the other side is copied as it stands.
int PlainCopy(char* target, int targetSize, char const* source, int sourceLength, int* status) {
    if (status != nullptr) {
        *status = kResultOk;
    }
    if (target == nullptr || targetSize <= 0 || source == nullptr) {
        return 0;
    }
    std::size_t length = sourceLength < 0 ? std::strlen(source) : static_cast<std::size_t>(sourceLength);
    std::size_t copied = std::min(length, static_cast<std::size_t>(targetSize));
    std::memmove(target, source, copied);
    if (sourceLength < 0 && copied < static_cast<std::size_t>(targetSize)) {
        target[copied] = '\0';
    }
    return static_cast<int>(copied);
}

}  // namespace

// ---- Buffer conversions --------------------------------------------------------------------------------

int KROMMB8to16(char16_t* target, int targetSize, char const* source, int sourceLength, int* status) {
    return Convert<Form::kUtf8, Form::kUtf16>(nullptr, target, targetSize, source, sourceLength, status);
}

int KROMMB16to8(char* target, int targetSize, char16_t const* source, int sourceLength, int* status) {
    return Convert<Form::kUtf16, Form::kUtf8>(nullptr, target, targetSize, source, sourceLength, status);
}

int KROMMBCodePageto8(void* converter, char* target, int targetSize, char const* source, int sourceLength,
                      int* status) {
    return Convert<Form::kCodePage, Form::kUtf8>(converter, target, targetSize, source, sourceLength, status);
}

int KROMMB8toCodePage(void* converter, char* target, int targetSize, char const* source, int sourceLength,
                      int* status) {
    return Convert<Form::kUtf8, Form::kCodePage>(converter, target, targetSize, source, sourceLength, status);
}

int KROMMBCodePageto16(void* converter, char16_t* target, int targetSize, char const* source,
                       int sourceLength, int* status) {
    return Convert<Form::kCodePage, Form::kUtf16>(converter, target, targetSize, source, sourceLength,
                                                  status);
}

int KROMMB16toCodePage(void* converter, char* target, int targetSize, char16_t const* source,
                       int sourceLength, int* status) {
    return Convert<Form::kUtf16, Form::kCodePage>(converter, target, targetSize, source, sourceLength,
                                                  status);
}

int KROMMBCodePagetoGeneric(void* converter, char* target, int targetSize, char const* source,
                            int sourceLength, int* status) {
    return qUTF8mode() ? KROMMBCodePageto8(converter, target, targetSize, source, sourceLength, status)
                       : PlainCopy(target, targetSize, source, sourceLength, status);
}

int KROMMBGenerictoCodePage(void* converter, char* target, int targetSize, char const* source,
                            int sourceLength, int* status) {
    return qUTF8mode() ? KROMMB8toCodePage(converter, target, targetSize, source, sourceLength, status)
                       : PlainCopy(target, targetSize, source, sourceLength, status);
}

int KROMMBGenericto8(char* target, int targetSize, char const* source, int sourceLength, int* status) {
    return qUTF8mode() ? PlainCopy(target, targetSize, source, sourceLength, status)
                       : KROMMBCodePageto8(nullptr, target, targetSize, source, sourceLength, status);
}

int KROMMB8toGeneric(char* target, int targetSize, char const* source, int sourceLength, int* status) {
    return qUTF8mode() ? PlainCopy(target, targetSize, source, sourceLength, status)
                       : KROMMB8toCodePage(nullptr, target, targetSize, source, sourceLength, status);
}

int KROMMBGenericto16(char16_t* target, int targetSize, char const* source, int sourceLength, int* status) {
    return qUTF8mode() ? KROMMB8to16(target, targetSize, source, sourceLength, status)
                       : KROMMBCodePageto16(nullptr, target, targetSize, source, sourceLength, status);
}

int KROMMB16toGeneric(char* target, int targetSize, char16_t const* source, int sourceLength, int* status) {
    return qUTF8mode() ? KROMMB16to8(target, targetSize, source, sourceLength, status)
                       : KROMMB16toCodePage(nullptr, target, targetSize, source, sourceLength, status);
}

// ---- String and allocating conversions ------------------------------------------------------------------

namespace {

// A work area on the stack up to `kStackUnits`, on the heap beyond; null data if the heap said no.
template <typename Unit, std::size_t kStackUnits>
class WorkArea {
  public:
    explicit WorkArea(std::size_t units) {
        if (units <= kStackUnits) {
            fData = fStack;
        } else {
            fHeap.reset(new (std::nothrow) Unit[units]);
            fData = fHeap.get();
        }
    }
    WorkArea(WorkArea const&) = delete;
    WorkArea& operator=(WorkArea const&) = delete;

    Unit* data() { return fData; }

  private:
    Unit fStack[kStackUnits];
    std::unique_ptr<Unit[]> fHeap;
    Unit* fData = nullptr;
};

// Runs `convert` (area, size, status) -> units in a work area of `units`, and once more in one of
// `roomyUnits` if the text did not fit (an encoding that needs more bytes than usual); `take` (text,
// length, status) -> result code receives the text.
template <typename Unit, std::size_t kStackUnits, typename Convert, typename Take>
int ConvertInWorkArea(std::size_t units, std::size_t roomyUnits, Convert convert, Take take) {
    for (std::size_t size : {units, roomyUnits}) {
        if (size > static_cast<std::size_t>(INT_MAX)) {
            return kResultNoMemory;
        }
        WorkArea<Unit, kStackUnits> area(size);
        if (area.data() == nullptr) {
            return kResultNoMemory;
        }
        int status = kResultOk;
        int32_t length = convert(area.data(), static_cast<int>(size), &status);
        if (status != kResultCut || roomyUnits <= size) {
            return take(area.data(), length, status);
        }
    }
    return kResultNoMemory;  // not reached: the second round always takes
}

// Room for any code page text made from `units` units, however wide its characters.
std::size_t RoomyCodePageUnits(std::size_t units) {
    return 8 * units + 16;
}

template <typename Unit, std::size_t kStackUnits, typename Convert>
int ConvertToString(std::basic_string<Unit>& out, std::size_t units, std::size_t roomyUnits,
                    Convert convert) {
    int result = ConvertInWorkArea<Unit, kStackUnits>(
        units, roomyUnits, convert, [&out](Unit const* text, int32_t length, int status) {
            try {
                out.assign(text, static_cast<std::size_t>(length));
            } catch (std::bad_alloc const&) {
                return kResultNoMemory;
            }
            return status;
        });
    if (result == kResultNoMemory) {
        out.clear();
    }
    return result;
}

template <typename Unit, std::size_t kStackUnits, typename Convert>
Unit* ConvertToBuffer(std::size_t units, std::size_t roomyUnits, Convert convert) {
    Unit* buffer = nullptr;
    ConvertInWorkArea<Unit, kStackUnits>(units, roomyUnits, convert,
                                         [&buffer](Unit const* text, int32_t length, int status) {
                                             buffer = new (std::nothrow) Unit[length + 1];
                                             if (buffer == nullptr) {
                                                 return kResultNoMemory;
                                             }
                                             std::copy(text, text + length, buffer);
                                             buffer[length] = 0;
                                             return status;
                                         });
    return buffer;
}

int CopyString(std::string& out, std::string const& in) {
    try {
        out = in;
    } catch (std::bad_alloc const&) {
        out.clear();
        return kResultNoMemory;
    }
    return kResultOk;
}

// The work areas of the conversions, with the stack limits that keep everyday names off the heap.
constexpr std::size_t kUtf16StackUnits = 1025;      // UTF-8 or code page to UTF-16: one unit per byte, + 1
constexpr std::size_t kFromUtf16StackBytes = 4097;  // UTF-16 to UTF-8 or code page: four bytes per unit, + 1
constexpr std::size_t kCodePageToUtf8StackBytes = 3073;  // three bytes per code page byte, + 1
constexpr std::size_t kUtf8ToCodePageStackBytes = 1025;  // one byte per UTF-8 byte, + 1

template <Form kFrom, Form kTo>
auto MakeConversion(void* converter, UnitOf<kFrom> const* source, std::size_t length) {
    return [converter, source, length](UnitOf<kTo>* area, int size, int* status) {
        return Convert<kFrom, kTo>(converter, area, size, source, static_cast<int>(length), status);
    };
}

}  // namespace

int KROMMBU8ToU16(std::u16string& out, std::string const& in) {
    return ConvertToString<char16_t, kUtf16StackUnits>(
        out, in.size() + 1, in.size() + 1,
        MakeConversion<Form::kUtf8, Form::kUtf16>(nullptr, in.data(), in.size()));
}

int KROMMBU16ToU8(std::string& out, std::u16string const& in) {
    return ConvertToString<char, kFromUtf16StackBytes>(
        out, 4 * in.size() + 1, 4 * in.size() + 1,
        MakeConversion<Form::kUtf16, Form::kUtf8>(nullptr, in.data(), in.size()));
}

int KROMMBCodePageToU8(void* converter, std::string& out, std::string const& in) {
    return ConvertToString<char, kCodePageToUtf8StackBytes>(
        out, 3 * in.size() + 1, RoomyCodePageUnits(in.size()),
        MakeConversion<Form::kCodePage, Form::kUtf8>(converter, in.data(), in.size()));
}

int KROMMBU8ToCodePage(void* converter, std::string& out, std::string const& in) {
    return ConvertToString<char, kUtf8ToCodePageStackBytes>(
        out, in.size() + 1, RoomyCodePageUnits(in.size()),
        MakeConversion<Form::kUtf8, Form::kCodePage>(converter, in.data(), in.size()));
}

int KROMMBCodePageToU16(void* converter, std::u16string& out, std::string const& in) {
    return ConvertToString<char16_t, kUtf16StackUnits>(
        out, in.size() + 1, RoomyCodePageUnits(in.size()),
        MakeConversion<Form::kCodePage, Form::kUtf16>(converter, in.data(), in.size()));
}

int KROMMBU16ToCodePage(void* converter, std::string& out, std::u16string const& in) {
    return ConvertToString<char, kFromUtf16StackBytes>(
        out, 4 * in.size() + 1, RoomyCodePageUnits(in.size()),
        MakeConversion<Form::kUtf16, Form::kCodePage>(converter, in.data(), in.size()));
}

int KROMMBGenericToU8(void* converter, std::string& out, std::string const& in) {
    return qUTF8mode() ? CopyString(out, in) : KROMMBCodePageToU8(converter, out, in);
}

int KROMMBGenericToU8(std::string& out, std::string const& in) {
    return KROMMBGenericToU8(nullptr, out, in);
}

int KROMMBU8ToGeneric(void* converter, std::string& out, std::string const& in) {
    return qUTF8mode() ? CopyString(out, in) : KROMMBU8ToCodePage(converter, out, in);
}

int KROMMBU8ToGeneric(std::string& out, std::string const& in) {
    return KROMMBU8ToGeneric(nullptr, out, in);
}

int KROMMBGenericToU16(void* converter, std::u16string& out, std::string const& in) {
    return qUTF8mode() ? KROMMBU8ToU16(out, in) : KROMMBCodePageToU16(converter, out, in);
}

int KROMMBGenericToU16(std::u16string& out, std::string const& in) {
    return KROMMBGenericToU16(nullptr, out, in);
}

int KROMMBU16ToGeneric(void* converter, std::string& out, std::u16string const& in) {
    return qUTF8mode() ? KROMMBU16ToU8(out, in) : KROMMBU16ToCodePage(converter, out, in);
}

int KROMMBU16ToGeneric(std::string& out, std::u16string const& in) {
    return KROMMBU16ToGeneric(nullptr, out, in);
}

int KROMMBGenericToCodePage(void* converter, std::string& out, std::string const& in) {
    return qUTF8mode() ? KROMMBU8ToCodePage(converter, out, in) : CopyString(out, in);
}

int KROMMBCodePageToGeneric(void* converter, std::string& out, std::string const& in) {
    return qUTF8mode() ? KROMMBCodePageToU8(converter, out, in) : CopyString(out, in);
}

char16_t* KROMMBTranscodeU8(char const* source) {
    std::size_t length = source != nullptr ? std::strlen(source) : 0;
    return ConvertToBuffer<char16_t, kUtf16StackUnits>(
        length + 1, length + 1, MakeConversion<Form::kUtf8, Form::kUtf16>(nullptr, source, length));
}

char* KROMMBTranscodeU8(char16_t const* source) {
    std::size_t length = source != nullptr ? std::char_traits<char16_t>::length(source) : 0;
    return ConvertToBuffer<char, kFromUtf16StackBytes>(
        4 * length + 1, 4 * length + 1, MakeConversion<Form::kUtf16, Form::kUtf8>(nullptr, source, length));
}

char16_t* KROMMBTranscodeCodePage(char const* source) {
    std::size_t length = source != nullptr ? std::strlen(source) : 0;
    return ConvertToBuffer<char16_t, kUtf16StackUnits>(
        length + 1, RoomyCodePageUnits(length),
        MakeConversion<Form::kCodePage, Form::kUtf16>(nullptr, source, length));
}

char* KROMMBTranscodeCodePage(char16_t const* source) {
    std::size_t length = source != nullptr ? std::char_traits<char16_t>::length(source) : 0;
    return ConvertToBuffer<char, kFromUtf16StackBytes>(
        4 * length + 1, RoomyCodePageUnits(length),
        MakeConversion<Form::kUtf16, Form::kCodePage>(nullptr, source, length));
}

char16_t* KROMMBTranscodeGeneric(char const* source) {
    return qUTF8mode() ? KROMMBTranscodeU8(source) : KROMMBTranscodeCodePage(source);
}

char* KROMMBTranscodeGeneric(char16_t const* source) {
    return qUTF8mode() ? KROMMBTranscodeU8(source) : KROMMBTranscodeCodePage(source);
}

}  // namespace QXXML_920
