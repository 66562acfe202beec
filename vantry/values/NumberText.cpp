#include "vantry/values/NumberText.h"

#include <locale.h>

#include <charconv>
#include <cstdlib>
#include <limits>

namespace QXVantry_920 {
namespace numbertext {

namespace {

bool IsCSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// The "C" locale, created once and never freed: it lives as long as the library.
locale_t ClassicCLocale() {
    static locale_t const classic = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return classic;
}

}  // namespace

int LeadingInt(std::string const& text) {
    std::size_t i = 0;
    while (i < text.size() && IsCSpace(text[i])) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    // Accumulate the magnitude as a negative number, so that the most negative long is reachable.
    std::int64_t const lowest = std::numeric_limits<std::int64_t>::min();
    std::int64_t acc = 0;
    bool saturated = false;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        int const digit = text[i] - '0';
        if (saturated || acc < (lowest + digit) / 10) {
            saturated = true;
            continue;
        }
        acc = acc * 10 - digit;
    }
    std::int64_t result;
    if (saturated) {
        result = negative ? lowest : std::numeric_limits<std::int64_t>::max();
    } else if (negative) {
        result = acc;
    } else {
        result = acc == lowest ? std::numeric_limits<std::int64_t>::max() : -acc;
    }
    // The conversion of a long to int keeps the low 32 bits.
    auto const low = static_cast<std::uint32_t>(static_cast<std::uint64_t>(result));
    return low <= 0x7FFFFFFFu ? static_cast<int>(low) : static_cast<int>(low - 0x80000000u) - 0x7FFFFFFF - 1;
}

bool WholeDecimal(std::string const& text, double& x) {
    char const* begin = text.data();
    char const* const end = begin + text.size();
    if (text.empty() || text.find_first_not_of("0123456789+-.eE") != std::string::npos) {
        return false;
    }
    // from_chars takes no plus sign; a second sign after it is no number.
    if (*begin == '+') {
        ++begin;
        if (begin == end || *begin == '+' || *begin == '-') {
            return false;
        }
    }
    double value = 0.0;
    std::from_chars_result const read = std::from_chars(begin, end, value, std::chars_format::general);
    if (read.ec != std::errc() || read.ptr != end) {
        return false;
    }
    x = value;
    return true;
}

double LeadingDouble(std::string const& text) {
    locale_t const classic = ClassicCLocale();
    if (classic == static_cast<locale_t>(nullptr)) {
        return std::strtod(text.c_str(), nullptr);
    }
    return strtod_l(text.c_str(), nullptr, classic);
}

std::int32_t TruncateToInt32(double value) {
    if (value > -2147483649.0 && value < 2147483648.0) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

std::int64_t TruncateToInt64(double value) {
    // 2^63 is exact as a double; every double below it and at or above -2^63 fits.
    if (value >= -9223372036854775808.0 && value < 9223372036854775808.0) {
        return static_cast<std::int64_t>(value);
    }
    return std::numeric_limits<std::int64_t>::min();
}

}  // namespace numbertext
}  // namespace QXVantry_920
