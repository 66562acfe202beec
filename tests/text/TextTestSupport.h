// Helpers of the text layer's tests: Xerces-C for a suite, the process-wide default converter and UTF-8
// mode.
#pragma once

#include <gtest/gtest.h>
#include <unicode/ucnv.h>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstring>
#include <memory>

#include "vantry/text/KROMMultiByte.h"

namespace mbtest {

// Xerces-C started once for a suite: the UTF-16 strings and transcoders allocate through it.
class XercesSuite : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { xercesc::XMLPlatformUtils::Initialize(); }
    static void TearDownTestSuite() { xercesc::XMLPlatformUtils::Terminate(); }
};

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

inline Converter Open(char const* name) {
    return Converter(static_cast<UConverter*>(QXXML_920::KROMMBConverterNew_C(name)), &ucnv_close);
}

// Whether the library's default converter is one of `encoding`. It is made from ICU's default converter,
// which on Linux and macOS is UTF-8 whatever ucnv_setDefaultName was told.
inline bool DefaultConverterIs(char const* encoding) {
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

#define REQUIRE_DEFAULT_CONVERTER(encoding)                          \
    if (!mbtest::DefaultConverterIs(encoding)) {                     \
        GTEST_SKIP() << "the default converter is not " << encoding; \
    }
