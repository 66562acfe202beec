// Helpers of the text layer's tests: the process-wide default converter and UTF-8 mode.
#pragma once

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <cstring>
#include <memory>

#include "vantry/text/KROMMultiByte.h"

namespace mbtest {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

inline Converter Open(char const* name) {
    return Converter(static_cast<UConverter*>(QXXML_920::KROMMBConverterNew_C(name)), &ucnv_close);
}

// Makes the library's default converter one of `encoding`, which works only before it is made (every
// test runs in a process of its own). False if it was already made for another encoding.
inline bool UseDefaultConverter(char const* encoding) {
    if (QXXML_920::KROMMBDefaultConverterID() == 0) {
        ucnv_setDefaultName(encoding);
    }
    UErrorCode status = U_ZERO_ERROR;
    UConverter* current = QXXML_920::KROMMBGetDefaultConverter();
    Converter wanted = Open(encoding);
    return current != nullptr && wanted != nullptr &&
           std::strcmp(ucnv_getName(current, &status), ucnv_getName(wanted.get(), &status)) == 0;
}

// Sets UTF-8 mode for one scope.
class Utf8Mode {
  public:
    explicit Utf8Mode(int on) : fSaved(QXXML_920::qUTF8mode()) { QXXML_920::SetUTF8mode(on); }
    ~Utf8Mode() { QXXML_920::SetUTF8mode(fSaved); }

  private:
    int fSaved;
};

}  // namespace mbtest

#define REQUIRE_DEFAULT_CONVERTER(encoding)                                          \
    if (!mbtest::UseDefaultConverter(encoding)) {                                    \
        GTEST_SKIP() << "the default converter was made for another encoding first"; \
    }
