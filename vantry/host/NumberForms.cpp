#include "vantry/host/NumberForms.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "vantry/values/ScoreValue.h"

namespace vantry {

std::string ShortestNumber(double value) {
    // The plain form of to_chars is the shortest of the fixed and exponent forms that round-trips.
    char text[64];
    std::to_chars_result const result = std::to_chars(text, text + sizeof(text), value);
    return std::string(text, result.ptr);
}

std::optional<double> ReadNumber(std::string_view text) {
    auto const blank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && blank(text.back())) {
        text.remove_suffix(1);
    }
    if (text.size() > 1 && text.front() == '+' && text[1] != '-' && text[1] != '+') {
        text.remove_prefix(1);
    }
    double value = 0.0;
    std::from_chars_result const result = std::from_chars(text.data(), text.data() + text.size(), value);
    // A literal too large for a double reads as the infinity of its sign, as strtod gives it.
    if (result.ec == std::errc::result_out_of_range && result.ptr == text.data() + text.size()) {
        return std::strtod(std::string(text).c_str(), nullptr);
    }
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || text.empty() ||
        std::isnan(value)) {
        return std::nullopt;
    }
    return value;
}

std::string ValueText(QXVantry_920::ScoreValue const* value) {
    using QXVantry_920::ScoreValue;
    if (value == nullptr || value->IsSystemMissingValue()) {
        return std::string();
    }
    return ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE ? ScoreValue::TextOf(*value)
                                                                  : ShortestNumber(value->GetDouble());
}

}  // namespace vantry
