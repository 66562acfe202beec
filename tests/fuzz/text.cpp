// The multibyte text layer: the first byte picks a code page and a target size, the rest is the text,
// sent through the string, buffer and allocating conversions and walked by the character functions.
#include <unicode/ucnv.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tests/fuzz/FuzzSupport.h"
#include "vantry/text/KROMMultiByte.h"
#include "vantry/text/VantryTranscoder.h"

namespace {

using namespace QXXML_920;

char const* const kCodePages[] = {"UTF-8",   "ISO-8859-1", "windows-1252", "Shift_JIS",
                                  "GB18030", "UTF-16LE",   "EUC-KR",       "Big5"};

struct ConverterCloser {
    void operator()(void* converter) const { ucnv_close(static_cast<UConverter*>(converter)); }
};

// Walks the text character by character, forward then back, as the string functions' callers do.
void WalkCharacters(std::string const& text) {
    char const* const start = text.c_str();
    char const* end = start;
    for (std::size_t steps = 0; *end != '\0' && steps <= text.size(); ++steps) {
        end = KROMMBstrinc_8(end);
    }
    for (char const* at = end; at > start;) {
        char const* previous = KROMMBAnsiPrev_8(start, at);
        if (previous >= at) {
            break;
        }
        at = previous;
    }
    KROMMBstrcspn_8(start, "\xc3\xa9 ,");
    KROMMBstrnicmp_8(start, "ABC\xc3\x89", text.size());
    int status = 0;
    KROMMBqstricmp_8(start, static_cast<int>(text.size()), "abc", -1, &status);
    std::vector<char> copy(text.size() / 2 + 1);
    KROMMBstrncpy_8(copy.data(), start, copy.size());
    KROMMBstrchr_8(start, 0xe9);
    KROMMBstrrchr_8(start, 'a');
}

void Convert(void* converter, std::string const& text, int targetSize) {
    std::u16string wide;
    std::string narrow;
    KROMMBU8ToU16(wide, text);
    KROMMBU16ToU8(narrow, wide);
    KROMMBCodePageToU8(converter, narrow, text);
    KROMMBU8ToCodePage(converter, narrow, text);
    KROMMBCodePageToU16(converter, wide, text);
    KROMMBU16ToCodePage(converter, narrow, wide);
    // The same bytes taken as UTF-16 units, unpaired surrogates and all.
    std::u16string const units(reinterpret_cast<char16_t const*>(text.data()), text.size() / 2);
    KROMMBU16ToU8(narrow, units);
    KROMMBU16ToCodePage(converter, narrow, units);

    // Buffer conversions, zero-terminated and as fixed fields, into a target of the size picked.
    int const length = static_cast<int>(text.size());
    std::vector<char> bytes(static_cast<std::size_t>(targetSize) + 1);
    std::vector<char16_t> wideBytes(static_cast<std::size_t>(targetSize) + 1);
    for (int sourceLength : {-1, length}) {
        int status = 0;
        KROMMBCodePageto8(converter, bytes.data(), targetSize, text.c_str(), sourceLength, &status);
        KROMMB8toCodePage(converter, bytes.data(), targetSize, text.c_str(), sourceLength, &status);
        KROMMBCodePageto16(converter, wideBytes.data(), targetSize, text.c_str(), sourceLength, &status);
        KROMMB8to16(wideBytes.data(), targetSize, text.c_str(), sourceLength, &status);
        KROMMBGenericto8(bytes.data(), targetSize, text.c_str(), sourceLength, &status);
    }
    std::u16string const terminated(units.c_str());
    int status = 0;
    KROMMB16to8(bytes.data(), targetSize, terminated.c_str(), -1, &status);
    KROMMB16toCodePage(converter, bytes.data(), targetSize, units.data(), static_cast<int>(units.size()),
                       &status);

    std::unique_ptr<char16_t[]> allocated(KROMMBTranscodeU8(text.c_str()));
    std::unique_ptr<char[]> back(KROMMBTranscodeU8(terminated.c_str()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    char const* const codePage = kCodePages[data[0] % (sizeof kCodePages / sizeof kCodePages[0])];
    int const targetSize = data[0] >> 3;
    std::string const text(reinterpret_cast<char const*>(data + 1), size - 1);

    std::unique_ptr<void, ConverterCloser> converter(KROMMBConverterNew_8(codePage));
    if (converter != nullptr) {
        Convert(converter.get(), text, targetSize);
    }
    WalkCharacters(text);

    vantry_fuzz::StartXerces();
    QXVantry_920::VantryTranscoder transcoder(codePage);
    char16_t* decoded = transcoder.ChangeChar2XML(text.c_str());
    if (decoded != nullptr) {
        transcoder.transcodeTo(decoded);
        XERCES_CPP_NAMESPACE::XMLString::release(&decoded,
                                                 XERCES_CPP_NAMESPACE::XMLPlatformUtils::fgMemoryManager);
    }
    return 0;
}
