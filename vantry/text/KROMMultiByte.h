// The multibyte text layer that model code links against. A `char` string comes in three forms: UTF-8,
// the code page of a converter, and "generic", which is UTF-8 in UTF-8 mode and the code page of the
// default converter otherwise. Wide strings are UTF-16.
//
// Result codes of every conversion (as the result or through `status`):
//   0 success, 1 the target was too small and the text is cut at a character boundary,
//   2 no memory, 3 any other failure, or a character that had to be replaced by "?".
//
// Buffer conversions follow one set of field rules. A negative source length means a zero-terminated
// source: one unit of the target is kept for the terminator and the result is zero-terminated. A source
// length of 0 or more means a fixed field: the target is not terminated, and if the text is shorter than
// the target, one blank is written behind it. A text that does not fit is cut at a character boundary and
// the rest of the field is filled with blanks. The result is the number of text units written.
//
// Converters handed out by the `KROMMBConverterNew_*` functions belong to the caller (close them with
// `ucnv_close`); a null converter argument means the default converter. A converter passed in must not be
// used by two threads at once; the default converter is cloned for every call, so it may be.
#pragma once

#include <cstdint>
#include <string>

#include "vantry/Export.h"

struct UConverter;

namespace QXXML_920 {

// ---- Set-up -------------------------------------------------------------------------------------------

// Once per process: if the C library's LC_CTYPE locale is "C", switches the process to "en_US" and
// places LC_ALL=en_US in the environment.
VANTRY_EXPORT void EnableLocale();
// The encoding part of the LC_CTYPE locale name ("UTF-8" for "en_US.UTF-8"); "CP1252" if the name
// carries none. Made once per process.
VANTRY_EXPORT char const* SystemEncoding();
// UTF-8 mode (on from the start): while it is on, "generic" text is UTF-8.
VANTRY_EXPORT void SetUTF8mode(int on);
VANTRY_EXPORT int qUTF8mode();

// The process-wide default converter, made at the first call. Not owned by the caller.
VANTRY_EXPORT UConverter* KROMMBGetDefaultConverter();
// 0 until the default converter is made, raised by one each time it is made.
VANTRY_EXPORT int KROMMBDefaultConverterID();
// Opens a converter by a name in the code page (`_C`), in UTF-8 (`_8`), or in the generic form (`_A`).
// A name made of the digits of a number from 1 to 99999 is a code page number. A null name opens a
// converter of the default converter's encoding. Null on failure.
VANTRY_EXPORT void* KROMMBConverterNew_C(char const* name);
VANTRY_EXPORT void* KROMMBConverterNew_8(char const* name);
VANTRY_EXPORT void* KROMMBConverterNew_A(char const* name);

// ---- Buffer conversions: the number of units written --------------------------------------------------

VANTRY_EXPORT int KROMMBCodePagetoGeneric(void* converter, char* target, int targetSize, char const* source,
                                          int sourceLength, int* status);
VANTRY_EXPORT int KROMMBGenerictoCodePage(void* converter, char* target, int targetSize, char const* source,
                                          int sourceLength, int* status);
VANTRY_EXPORT int KROMMBGenericto8(char* target, int targetSize, char const* source, int sourceLength,
                                   int* status);
VANTRY_EXPORT int KROMMB8toGeneric(char* target, int targetSize, char const* source, int sourceLength,
                                   int* status);
VANTRY_EXPORT int KROMMBGenericto16(char16_t* target, int targetSize, char const* source, int sourceLength,
                                    int* status);
VANTRY_EXPORT int KROMMB16toGeneric(char* target, int targetSize, char16_t const* source, int sourceLength,
                                    int* status);
VANTRY_EXPORT int KROMMB8to16(char16_t* target, int targetSize, char const* source, int sourceLength,
                              int* status);
VANTRY_EXPORT int KROMMB16to8(char* target, int targetSize, char16_t const* source, int sourceLength,
                              int* status);
VANTRY_EXPORT int KROMMBCodePageto8(void* converter, char* target, int targetSize, char const* source,
                                    int sourceLength, int* status);
VANTRY_EXPORT int KROMMB8toCodePage(void* converter, char* target, int targetSize, char const* source,
                                    int sourceLength, int* status);
VANTRY_EXPORT int KROMMBCodePageto16(void* converter, char16_t* target, int targetSize, char const* source,
                                     int sourceLength, int* status);
VANTRY_EXPORT int KROMMB16toCodePage(void* converter, char* target, int targetSize, char16_t const* source,
                                     int sourceLength, int* status);

// ---- String conversions: a result code; `out` receives the text ---------------------------------------

VANTRY_EXPORT int KROMMBU8ToU16(std::u16string& out, std::string const& in);
VANTRY_EXPORT int KROMMBU16ToU8(std::string& out, std::u16string const& in);
VANTRY_EXPORT int KROMMBCodePageToU8(void* converter, std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBU8ToCodePage(void* converter, std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBCodePageToU16(void* converter, std::u16string& out, std::string const& in);
VANTRY_EXPORT int KROMMBU16ToCodePage(void* converter, std::string& out, std::u16string const& in);
VANTRY_EXPORT int KROMMBGenericToU8(void* converter, std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBGenericToU8(std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBU8ToGeneric(void* converter, std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBU8ToGeneric(std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBGenericToU16(void* converter, std::u16string& out, std::string const& in);
VANTRY_EXPORT int KROMMBGenericToU16(std::u16string& out, std::string const& in);
VANTRY_EXPORT int KROMMBU16ToGeneric(void* converter, std::string& out, std::u16string const& in);
VANTRY_EXPORT int KROMMBU16ToGeneric(std::string& out, std::u16string const& in);
VANTRY_EXPORT int KROMMBGenericToCodePage(void* converter, std::string& out, std::string const& in);
VANTRY_EXPORT int KROMMBCodePageToGeneric(void* converter, std::string& out, std::string const& in);

// ---- Allocating conversions: a new zero-terminated buffer (free it with delete[]), null without memory

VANTRY_EXPORT char16_t* KROMMBTranscodeU8(char const* source);
VANTRY_EXPORT char* KROMMBTranscodeU8(char16_t const* source);
VANTRY_EXPORT char16_t* KROMMBTranscodeCodePage(char const* source);
VANTRY_EXPORT char* KROMMBTranscodeCodePage(char16_t const* source);
VANTRY_EXPORT char16_t* KROMMBTranscodeGeneric(char const* source);
VANTRY_EXPORT char* KROMMBTranscodeGeneric(char16_t const* source);

// ---- String functions -----------------------------------------------------------------------------------
// `_8` works on UTF-8, `_C` on the multibyte encoding of the process's C locale, `_A` picks one of the two
// by UTF-8 mode.

// The pointer behind the character at `s`.
VANTRY_EXPORT char* KROMMBstrinc_8(char const* s);
VANTRY_EXPORT char* KROMMBstrinc_C(char const* s);
VANTRY_EXPORT char* KROMMBstrinc_A(char const* s);
// The start of the character before `pos`; `pos` itself at `start`.
VANTRY_EXPORT char* KROMMBAnsiPrev_8(char const* start, char const* pos);
VANTRY_EXPORT char* KROMMBAnsiPrev_C(char const* start, char const* pos);
VANTRY_EXPORT char* KROMMBAnsiPrev_A(char const* start, char const* pos);
// Byte offset of the first character of `s` that stands in `reject`, else the length of `s`.
VANTRY_EXPORT std::uint64_t KROMMBstrcspn_8(char const* s, char const* reject);
VANTRY_EXPORT std::uint64_t KROMMBstrcspn_C(char const* s, char const* reject);
VANTRY_EXPORT std::uint64_t KROMMBstrcspn_A(char const* s, char const* reject);
// Case-blind comparison of at most `n` bytes of each text: -1, 0 or 1.
VANTRY_EXPORT int KROMMBstrnicmp_8(char const* a, char const* b, std::uint64_t n);
VANTRY_EXPORT int KROMMBstrnicmp_C(char const* a, char const* b, std::uint64_t n);
VANTRY_EXPORT int KROMMBstrnicmp_A(char const* a, char const* b, std::uint64_t n);
// 1 if the texts are case-blind equal, else 0. A negative length means zero-terminated. `status` becomes 3
// if a broken character was met, else 0.
VANTRY_EXPORT int KROMMBqstricmp_8(char const* a, int aLength, char const* b, int bLength, int* status);
VANTRY_EXPORT int KROMMBqstricmp_C(char const* a, int aLength, char const* b, int bLength, int* status);
VANTRY_EXPORT int KROMMBqstricmp_A(char const* a, int aLength, char const* b, int bLength, int* status);
// Copies whole characters of at most `n` bytes, then fills the rest of the `n` bytes with zeros.
VANTRY_EXPORT char* KROMMBstrncpy_8(char* target, char const* source, std::uint64_t n);
VANTRY_EXPORT char* KROMMBstrncpy_C(char* target, char const* source, std::uint64_t n);
VANTRY_EXPORT char* KROMMBstrncpy_A(char* target, char const* source, std::uint64_t n);
// First and last place of the character `c`, null if it does not occur.
VANTRY_EXPORT char* KROMMBstrchr_8(char const* s, unsigned int c);
VANTRY_EXPORT char* KROMMBstrchr_C(char const* s, unsigned int c);
VANTRY_EXPORT char* KROMMBstrchr_A(char const* s, unsigned int c);
VANTRY_EXPORT char* KROMMBstrrchr_8(char const* s, unsigned int c);
VANTRY_EXPORT char* KROMMBstrrchr_C(char const* s, unsigned int c);
VANTRY_EXPORT char* KROMMBstrrchr_A(char const* s, unsigned int c);
// Bytes of the well-formed character at `s` within `n` bytes; 0 for a null, empty or zero-sized input,
// -1 for a broken one.
VANTRY_EXPORT int KROMMBmblen_8(char const* s, std::uint64_t n);
VANTRY_EXPORT int KROMMBmblen_C(char const* s, std::uint64_t n);
// Bytes of the character at `s`, at least 1, never beyond a terminator.
VANTRY_EXPORT std::uint64_t KROMMBmbclen_8(char const* s);
VANTRY_EXPORT std::uint64_t KROMMBmbclen_C(char const* s);
// Index of the character before `index`.
VANTRY_EXPORT std::uint64_t KROMMBPreviousIndex_8(char const* s, std::uint64_t index);
// Whether the byte `c` begins a character of more than one byte in the C locale.
VANTRY_EXPORT int KROMMBIsLeadByte_C(unsigned int c);
// Start of the character that holds the byte at `index`; the length of `s` from the length on.
VANTRY_EXPORT std::uint64_t KROMMBFindStart_C(char const* s, std::uint64_t index);
// Reads the character at `offset` through the default converter: its byte count, 0 at the end of the text
// (a negative `length` means zero-terminated), -1 for a broken one; `codePoint` is 0 unless one was read.
VANTRY_EXPORT int KROMMBU32Get_C(int* codePoint, char const* s, int offset, int length);

}  // namespace QXXML_920
