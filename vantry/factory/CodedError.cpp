#include "vantry/factory/CodedError.h"

#include "vantry/diagnostics/VTException.h"

namespace QXVantry_920 {

void ThrowCodedError(int code, char const* argument0, char const* argument1) {
    VTException exception;
    exception.PutErrorMessage(code, argument0, argument1, static_cast<char const*>(nullptr));
    throw exception;
}

void ThrowCodedErrorWithDetail(int code, std::string const& detail) {
    VTException exception;
    exception.PutErrorMessage(code, static_cast<char const*>(nullptr));
    exception.SetDetailMessage(detail.c_str());
    throw exception;
}

}  // namespace QXVantry_920
