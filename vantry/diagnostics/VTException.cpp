#include "vantry/diagnostics/VTException.h"

#include <cstdarg>
#include <utility>

#include "vantry/diagnostics/ScoringLog.h"

namespace QXVantry_920 {

VTException::VTException() : VTException(&ScoreContext::gErrorFormater) {}

VTException::VTException(ScoreContext::IErrorFormater* formater) : VTException(0, std::string(), formater) {}

VTException::VTException(int code, std::string const& detail, ScoreContext::IErrorFormater* formater)
    : code(code), detail(detail), formater(formater) {}

VTException::VTException(VTException const& other) = default;

VTException& VTException::operator=(VTException const& other) = default;

VTException::~VTException() = default;

bool VTException::PutErrorMessage(int code, ...) {
    this->code = code;
    if (formater == nullptr) {
        return false;
    }
    int const wanted = formater->GetParameterNumber(code);
    VTErrorItem item{code, {}};
    va_list args;
    va_start(args, code);
    while (static_cast<int>(item.args.size()) < wanted) {
        char const* text = va_arg(args, char const*);
        if (text == nullptr) {
            break;
        }
        item.args.emplace_back(text);
    }
    va_end(args);
    items.push_back(std::move(item));
    return true;
}

void VTException::SetDetailMessage(char const* text) {
    detail = text != nullptr ? text : "";
}

std::string VTException::GetDetailMessage() {
    return detail;
}

int VTException::GetErrorCode() const {
    return code;
}

std::string VTException::ConstructMessage() {
    std::string message;
    if (formater == nullptr) {
        return message;
    }
    for (VTErrorItem const& item : items) {
        message += formater->Format(item.code, item.args);
    }
    // A code given without messages shows its pattern as it is stored.
    if (items.empty() && code != 0) {
        message += formater->FormatN(code, 0);
    }
    return message;
}

std::string VTException::GetErrorMessage() {
    std::string message = ConstructMessage() + detail;
    ScoringLog::GetInstance()->TraceText(3, "Error message : %s", message.c_str());
    return message;
}

void VTException::SetFormater(ScoreContext::IErrorFormater* formater) {
    this->formater = formater;
}

}  // namespace QXVantry_920
