#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "vantry/diagnostics/ScoreMessages.h"
#include "vantry/diagnostics/VTErrorFormater.h"

using ScoreContext::gErrorFormater;
using ScoreContext::gScoreMessages;
using ScoreContext::MessageItem;

namespace {

// FNV-1a over "<code>\t<pattern>\n" of every row in table order. The expected value was taken from the
// reference wording of the 135 rows; a change of one character or of the order changes it.
constexpr std::uint64_t kTableDigest = 0x966a5645e36f1ec6ull;

std::uint64_t Digest(MessageItem const* rows, std::size_t count) {
    std::uint64_t hash = 0xcbf29ce484222325ull;
    for (std::size_t i = 0; i < count; ++i) {
        for (unsigned char const c : std::to_string(rows[i].code) + "\t" + rows[i].text + "\n") {
            hash = (hash ^ c) * 0x100000001b3ull;
        }
    }
    return hash;
}

// The words a pattern gives for `args`, made without ICU: each {i} is replaced by args[i] and each
// doubled apostrophe becomes one. `count` receives the number of placeholders.
std::string Expand(std::string const& pattern, std::vector<std::string> const& args, int* count) {
    std::string out;
    *count = 0;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern.compare(i, 2, "''") == 0) {
            out += '\'';
            ++i;
        } else if (pattern[i] == '{') {
            std::size_t const close = pattern.find('}', i);
            std::size_t const index = std::stoul(pattern.substr(i + 1, close - i - 1));
            out += index < args.size() ? args[index] : "?";
            ++*count;
            i = close;
        } else {
            out += pattern[i];
        }
    }
    return out;
}

}  // namespace

TEST(MessageTable, HoldsEveryRowVerbatimInItsOrder) {
    ASSERT_EQ(std::size(gScoreMessages), 135u);
    for (MessageItem const& row : gScoreMessages) {
        ASSERT_NE(row.text, nullptr) << row.code;
    }
    EXPECT_EQ(Digest(gScoreMessages, std::size(gScoreMessages)), kTableDigest);
    // The table is in its own order, not sorted by code.
    EXPECT_EQ(gScoreMessages[0].code, 260101);
    EXPECT_EQ(gScoreMessages[100].code, 260260);
    EXPECT_EQ(gScoreMessages[101].code, 260251);
    EXPECT_EQ(gScoreMessages[134].code, 260306);
}

TEST(MessageTable, GlobalFormatterWordsEveryCodeWithItsArguments) {
    std::vector<std::string> const args{"a0", "a1", "a2", "a3", "a4", "a5"};
    for (MessageItem const& row : gScoreMessages) {
        SCOPED_TRACE(row.code);
        int placeholders = 0;
        Expand(row.text, args, &placeholders);
        ASSERT_LE(placeholders, 6);
        std::vector<std::string> const used(args.begin(), args.begin() + placeholders);
        std::string const expected = Expand(row.text, used, &placeholders);

        EXPECT_EQ(gErrorFormater.GetParameterNumber(row.code), placeholders);
        EXPECT_EQ(gErrorFormater.FormatN(row.code, 0), row.text);
        if (placeholders > 0) {
            EXPECT_EQ(gErrorFormater.Format(row.code, used), expected);
            std::vector<char const*> pointers;
            for (std::string const& arg : used) {
                pointers.push_back(arg.c_str());
            }
            EXPECT_EQ(
                gErrorFormater.VFormatN(row.code, placeholders, reinterpret_cast<char*>(pointers.data())),
                expected);
        }
    }
}
