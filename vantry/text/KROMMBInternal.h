// Pieces shared by the sources of the multibyte text layer. Not part of the library's interface.
#pragma once

#include <unicode/ucnv.h>

#include <cstddef>

namespace QXXML_920::mbinternal {

// Result codes of the conversions.
constexpr int kResultOk = 0;
constexpr int kResultCut = 1;
constexpr int kResultNoMemory = 2;
constexpr int kResultLossy = 3;

// Statuses that the converter callbacks leave behind after writing "?" for a bad character. Being below
// zero, ICU takes them as warnings and carries on with the conversion.
constexpr UErrorCode kUnassignedSubstituted = static_cast<UErrorCode>(-100);
constexpr UErrorCode kIllegalSubstituted = static_cast<UErrorCode>(-101);

inline bool IsSubstitution(UErrorCode status) {
    return status == kUnassignedSubstituted || status == kIllegalSubstituted;
}

// The converter of one call: the caller's own, or a clone of the default converter kept on the stack, so
// that no thread shares the default converter's state and no heap is touched.
class ConverterLease {
  public:
    explicit ConverterLease(void* given);
    ~ConverterLease();
    ConverterLease(ConverterLease const&) = delete;
    ConverterLease& operator=(ConverterLease const&) = delete;

    // Null if there was no converter to be had.
    UConverter* get() const { return fConverter; }

  private:
    static constexpr std::size_t kCloneBufferSize = 1040;
    alignas(16) char fBuffer[kCloneBufferSize];
    UConverter* fConverter = nullptr;
    bool fOwned = false;
};

}  // namespace QXXML_920::mbinternal
