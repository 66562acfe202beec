#include "vantry/translate/ArrayTokenizer.h"

#include <cstddef>

namespace QXVantry_920 {

namespace {

// Turns each backslash-quote pair into one quote.
std::string Unescape(std::string const& token) {
    std::string result;
    result.reserve(token.size());
    for (std::size_t i = 0; i < token.size(); ++i) {
        if (token[i] == '\\' && i + 1 < token.size() && token[i + 1] == '"') {
            continue;
        }
        result += token[i];
    }
    return result;
}

}  // namespace

std::vector<std::string> TokenizeArrayText(std::string const& text, bool literalBackslash,
                                           std::function<void(std::string const&)> const& check) {
    std::vector<std::string> tokens;
    long const length = static_cast<long>(text.size());
    long start = -1;
    long end = -1;
    // Once an escaped quote was met inside quotes, every later element has its pairs turned into
    // quotes as well.
    bool hadEscape = false;
    for (long i = 0; i < length; ++i) {
        char const c = text[static_cast<std::size_t>(i)];
        if (c == '\n') {
            continue;
        }
        if (!literalBackslash && c == '\\' && i + 1 < length &&
            text[static_cast<std::size_t>(i + 1)] == '"') {
            // The pair is stepped over; it stays in an element that is being read.
            ++i;
            continue;
        }
        if (c == '"') {
            start = i + 1;
            long close = start;
            for (; close < length; ++close) {
                if (text[static_cast<std::size_t>(close)] != '"') {
                    continue;
                }
                if (literalBackslash || text[static_cast<std::size_t>(close - 1)] != '\\') {
                    break;
                }
                hadEscape = true;
            }
            end = close - 1;
            i = close;
        } else if (c == ' ') {
            if (start == -1) {
                continue;
            }
            end = i - 1;
        } else {
            if (start == -1) {
                start = i;
            }
            if (i == length - 1) {
                end = i;
            }
        }
        if (start != -1 && end != -1) {
            std::string token = end >= start ? text.substr(static_cast<std::size_t>(start),
                                                           static_cast<std::size_t>(end - start + 1))
                                             : std::string();
            check(token);
            tokens.push_back(hadEscape ? Unescape(token) : token);
            start = -1;
            end = -1;
        }
    }
    return tokens;
}

}  // namespace QXVantry_920
