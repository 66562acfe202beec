#include "vantry/diagnostics/VTErrorFormater.h"

#include <unicode/fmtable.h>
#include <unicode/msgfmt.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <cstdarg>
#include <cstring>
#include <memory>
#include <utility>

namespace ScoreContext {

namespace {

// A null pointer among the caller's arguments counts as an empty argument.
std::string ArgumentText(char const* text) {
    return text != nullptr ? std::string(text) : std::string();
}

// Narrow text as UTF-16, by ICU's default conversion; a null text is an empty one.
icu::UnicodeString Widen(char const* text) {
    return text != nullptr ? icu::UnicodeString(text) : icu::UnicodeString();
}

// UTF-16 back to narrow text by ICU's default conversion, into a buffer of the UTF-16 length. A code
// page that needs more than one byte per character loses the end of the text.
std::string Narrow(icu::UnicodeString& text) {
    int32_t const length = text.length();
    if (length == 0) {
        return std::string();
    }
    std::unique_ptr<char[]> buffer(new char[length + 1]());
    u_austrncpy(buffer.get(), text.getTerminatedBuffer(), length);
    return std::string(buffer.get());
}

std::vector<std::string> CollectArguments(int count, va_list args) {
    std::vector<std::string> result;
    for (int i = 0; i < count; ++i) {
        result.push_back(ArgumentText(va_arg(args, char const*)));
    }
    return result;
}

}  // namespace

VTErrorFormater::VTErrorFormater(int count, MessageItem* table) {
    LoadMessages(count, table);
}

VTErrorFormater::VTErrorFormater(VTErrorFormater const& other) = default;

VTErrorFormater::VTErrorFormater(VTErrorFormater&& other) : fMessages(std::move(other.fMessages)) {
    other.fMessages.clear();
}

VTErrorFormater& VTErrorFormater::operator=(VTErrorFormater const& other) = default;

VTErrorFormater& VTErrorFormater::operator=(VTErrorFormater&& other) {
    if (this != &other) {
        fMessages = std::move(other.fMessages);
        other.fMessages.clear();
    }
    return *this;
}

VTErrorFormater::~VTErrorFormater() = default;

std::string VTErrorFormater::FormatV(int code, ...) {
    va_list args;
    va_start(args, code);
    std::vector<std::string> arguments = CollectArguments(1, args);
    va_end(args);
    return Format(code, arguments);
}

std::string VTErrorFormater::VFormatN(int code, int count, char* args) {
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) {
        // The values need not be aligned for a pointer, so each is copied out byte by byte.
        char const* text = nullptr;
        std::memcpy(&text, args + i * sizeof(char const*), sizeof(char const*));
        arguments.push_back(ArgumentText(text));
    }
    return Format(code, arguments);
}

std::string VTErrorFormater::FormatN(int code, int count, ...) {
    va_list args;
    va_start(args, count);
    std::vector<std::string> arguments = CollectArguments(count, args);
    va_end(args);
    return Format(code, arguments);
}

std::string VTErrorFormater::Format(int code, std::vector<std::string> const& args) {
    icu::UnicodeString message = Widen(FindMessageContent(code));
    if (!args.empty()) {
        std::vector<icu::Formattable> arguments;
        arguments.reserve(args.size());
        for (std::string const& arg : args) {
            arguments.emplace_back(icu::UnicodeString(arg.c_str()));
        }
        icu::UnicodeString result;
        UErrorCode status = U_ZERO_ERROR;
        icu::MessageFormat::format(message, arguments.data(), static_cast<int32_t>(arguments.size()), result,
                                   status);
        // A failure inside ICU leaves the raw pattern as the message.
        if (U_SUCCESS(status) && !result.isEmpty()) {
            message = result;
        }
    }
    return Narrow(message);
}

int VTErrorFormater::GetParameterNumber(int code) {
    UErrorCode status = U_ZERO_ERROR;
    icu::MessageFormat format(Widen(FindMessageContent(code)), status);
    int32_t count = 0;
    // A pattern ICU rejects has no placeholders; the failed object must not be asked.
    if (U_SUCCESS(status)) {
        format.getFormats(count);
    }
    return count;
}

bool VTErrorFormater::LoadMessages(int count, MessageItem* table) {
    if (table == nullptr) {
        return false;
    }
    // A table whose first code has a text already counts as loaded.
    if (FindMessageContent(table[0].code) != nullptr) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        fMessages[table[i].code] = table[i].text;
    }
    return true;
}

char* VTErrorFormater::FindMessageContent(int code) {
    // A look-up, not the map's subscript: a code without a text reads as null either way, and reading
    // must not insert, since exceptions with codes outside the table are worded on many threads at once
    // through the one global formatter.
    auto const found = fMessages.find(code);
    return found != fMessages.end() ? const_cast<char*>(found->second) : nullptr;
}

}  // namespace ScoreContext
