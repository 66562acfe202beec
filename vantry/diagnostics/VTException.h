// The one exception type of the library: a code, the arguments of one or more coded messages and an
// optional detail text. The words are made only when a host asks for them.
#pragma once

#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/diagnostics/VTErrorFormater.h"

namespace QXVantry_920 {

// One coded message: its code and its arguments, copied out of the thrower's pointers.
struct VTErrorItem {
    int code;
    std::vector<std::string> args;
};

// Thrown by value; it has no base class, so a host catches it by name. It keeps a plain pointer to its
// formatter and must not outlive the library that owns that formatter.
class VANTRY_EXPORT VTException {
  public:
    // On the library's global formatter.
    VTException();
    // Code 0, empty detail, no messages.
    explicit VTException(ScoreContext::IErrorFormater* formater);
    VTException(int code, std::string const& detail, ScoreContext::IErrorFormater* formater);
    VTException(VTException const& other);
    VTException& operator=(VTException const& other);
    virtual ~VTException();

    // Adds a message of `code`. Each variable argument is a `char const*`; as many are taken as the
    // pattern has placeholders, and a null pointer ends the list early. The code is kept in any case;
    // without a formatter nothing is added and the result is false.
    bool PutErrorMessage(int code, ...);
    void SetDetailMessage(char const* text);
    std::string GetDetailMessage();
    int GetErrorCode() const;
    // The formatted messages run together, without the detail.
    std::string ConstructMessage();
    // The formatted messages followed directly by the detail; also written to the trace at level 3.
    std::string GetErrorMessage();
    void SetFormater(ScoreContext::IErrorFormater* formater);

  private:
    int code;
    std::string detail;
    ScoreContext::IErrorFormater* formater;
    std::vector<VTErrorItem> items;
};

}  // namespace QXVantry_920
