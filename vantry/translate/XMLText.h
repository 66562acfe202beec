// Conversions between narrow text in the local code page and the parser's UTF-16, by Xerces-C's
// default transcoder. Internal to the library; Xerces-C must be started.
#pragma once

#include <string>

#include <xercesc/util/XercesDefs.hpp>

namespace QXVantry_920 {

// A UTF-16 copy of a narrow text, released when the object goes.
class XMLText {
  public:
    explicit XMLText(char const* text);
    explicit XMLText(std::string const& text) : XMLText(text.c_str()) {}
    ~XMLText();
    XMLText(XMLText const&) = delete;
    XMLText& operator=(XMLText const&) = delete;

    XMLCh const* get() const { return fText; }
    operator XMLCh const*() const { return fText; }

  private:
    XMLCh* fText;
};

// The narrow text of a UTF-16 string; empty for null.
std::string NarrowText(XMLCh const* text);

}  // namespace QXVantry_920
