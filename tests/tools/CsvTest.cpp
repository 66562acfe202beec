// The scoring command's text formats: CSV records in and out, numbers in and out.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "tools/score/Csv.h"
#include "vantry/host/NumberForms.h"

using vantry::ReadNumber;
using vantry::ShortestNumber;
using vantry_tool::AppendCsvRecord;
using vantry_tool::CsvReader;

namespace {

using Records = std::vector<std::vector<std::string>>;

Records ReadAll(std::string const& text) {
    std::istringstream in(text);
    CsvReader reader(in);
    Records records;
    std::vector<std::string> fields;
    while (reader.ReadRecord(fields)) {
        records.push_back(fields);
    }
    return records;
}

TEST(Csv, ReadsQuotedFieldsLineEndsAndByteOrderMark) {
    struct Case {
        char const* text;
        Records expected;
    };
    Case const cases[] = {
        {"a,b\n1,2\n", {{"a", "b"}, {"1", "2"}}},
        {"\xEF\xBB\xBF"
         "a,b\r\n1,2",
         {{"a", "b"}, {"1", "2"}}},
        {"\"x,y\",\"say \"\"hi\"\"\"\n", {{"x,y", "say \"hi\""}}},
        {"\"two\nlines\",z\r\nnext\r", {{"two\nlines", "z"}, {"next"}}},
        {",,\n\n\r\n\"\"\n", {{"", "", ""}, {""}}},
        {"\n\none\n\n2\r\n\r\n", {{"one"}, {""}, {"2"}, {""}}},
        {"\xEF\xBB"
         "x\n",
         {{"\xEF\xBB"
           "x"}}},
        {"a\"b,\"c\"d,\"open\n", {{"a\"b", "cd", "open\n"}}},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(ReadAll(c.text), c.expected) << c.text;
    }
    std::istringstream in("h,k\n\n\"multi\nline\",1\nlast\n");
    CsvReader reader(in);
    std::vector<std::string> fields;
    std::vector<long> lines;
    while (reader.ReadRecord(fields)) {
        lines.push_back(reader.RecordLine());
    }
    EXPECT_EQ(lines, (std::vector<long>{1, 3, 5}));
}

TEST(Csv, WrittenRecordsReadBackAndQuoteOnlyWhenNeeded) {
    Records const records{{"plain", "with,comma", "with \"quote\"", "two\nlines", "cr\r", "", " spaced "}};
    std::string text;
    AppendCsvRecord(text, records[0]);
    EXPECT_EQ(text, "plain,\"with,comma\",\"with \"\"quote\"\"\",\"two\nlines\",\"cr\r\",, spaced \n");
    EXPECT_EQ(ReadAll(text), records);
}

TEST(Numbers, ShortestTextReadsBackExactly) {
    EXPECT_EQ(ShortestNumber(0.1), "0.1");
    EXPECT_EQ(ShortestNumber(609.4), "609.4");
    EXPECT_EQ(ShortestNumber(3.0), "3");
    EXPECT_EQ(ShortestNumber(1e300), "1e+300");
    EXPECT_EQ(ShortestNumber(-0.0), "-0");
    double const values[] = {1.0 / 3,
                             0.1 + 0.2,
                             5e-324,
                             std::numeric_limits<double>::max(),
                             -2.5e-10,
                             123456789012345680.0,
                             0.10000000000000009};
    for (double value : values) {
        std::optional<double> back = ReadNumber(ShortestNumber(value));
        ASSERT_TRUE(back.has_value()) << value;
        EXPECT_EQ(*back, value) << ShortestNumber(value);
        EXPECT_LE(ShortestNumber(value).size(), 24u);
    }
}

TEST(Numbers, ReadingTakesTheWholeTextOnly) {
    EXPECT_EQ(ReadNumber(" 2.5 "), 2.5);
    EXPECT_EQ(ReadNumber("+3"), 3.0);
    EXPECT_EQ(ReadNumber("-1E3"), -1000.0);
    EXPECT_EQ(ReadNumber("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(ReadNumber("-inf"), -std::numeric_limits<double>::infinity());
    for (char const* text : {"", " ", "abc", "1,5", "1.2.3", "+-1", "++1", "nan", "NaN", "12abc", "0x10"}) {
        EXPECT_FALSE(ReadNumber(text).has_value()) << text;
    }
}

}  // namespace
