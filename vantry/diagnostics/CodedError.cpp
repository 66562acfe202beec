#include "vantry/diagnostics/CodedError.h"

#include <array>
#include <cstddef>

namespace QXVantry_920 {

namespace {

// The longest message of the table has six placeholders.
constexpr std::size_t kMaxArguments = 6;

void PutMessage(VTException& exception, int code, std::initializer_list<std::string> arguments) {
    // One pointer more than the arguments, so that the list always ends in a null pointer.
    std::array<char const*, kMaxArguments + 1> pointers{};
    std::size_t i = 0;
    for (std::string const& argument : arguments) {
        if (i == kMaxArguments) {
            break;
        }
        pointers[i++] = argument.c_str();
    }
    exception.PutErrorMessage(code, pointers[0], pointers[1], pointers[2], pointers[3], pointers[4],
                              pointers[5], pointers[6]);
}

}  // namespace

void ThrowCodedError(int code, std::initializer_list<std::string> arguments) {
    VTException exception;
    PutMessage(exception, code, arguments);
    throw exception;
}

void ThrowCodedErrorWithDetail(int code, std::string const& detail) {
    VTException exception;
    PutMessage(exception, code, {});
    exception.SetDetailMessage(detail.c_str());
    throw exception;
}

void RethrowWithMessage(VTException const& caught, int code, std::initializer_list<std::string> arguments) {
    VTException exception(caught);
    PutMessage(exception, code, arguments);
    throw exception;
}

}  // namespace QXVantry_920
