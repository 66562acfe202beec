// Throwing the library's coded failures: a VTException on the global message table, with the message's
// arguments in order, or with the parser's detail text. Internal to the library.
#pragma once

#include <initializer_list>
#include <string>

#include "vantry/diagnostics/VTException.h"

namespace QXVantry_920 {

// Throws the code with these arguments; pass as many as its message has placeholders (at most six).
[[noreturn]] void ThrowCodedError(int code, std::initializer_list<std::string> arguments = {});

// Throws the code with no argument and the detail text behind its message.
[[noreturn]] void ThrowCodedErrorWithDetail(int code, std::string const& detail);

// Adds a further message of the code with these arguments to a copy of the exception, and throws it.
[[noreturn]] void RethrowWithMessage(VTException const& caught, int code,
                                     std::initializer_list<std::string> arguments);

}  // namespace QXVantry_920
