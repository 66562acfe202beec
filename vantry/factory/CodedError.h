// Throwing the library's coded failures: a VTException on the global message table, with the
// message's arguments or the parser's detail text.
#pragma once

#include <string>

namespace QXVantry_920 {

// The code with up to two arguments; pass as many as the message has placeholders.
[[noreturn]] void ThrowCodedError(int code, char const* argument0 = nullptr, char const* argument1 = nullptr);
[[noreturn]] inline void ThrowCodedError(int code, std::string const& argument) {
    ThrowCodedError(code, argument.c_str());
}
// The code with no argument and a detail text behind the message.
[[noreturn]] void ThrowCodedErrorWithDetail(int code, std::string const& detail);

}  // namespace QXVantry_920
