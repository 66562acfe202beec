// Input cut into blocks of whole records reads as the same records, on the same lines, as read whole.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tools/score/Csv.h"
#include "tools/score/RecordBlocks.h"

namespace {

struct Record {
    std::vector<std::string> fields;
    long line;
    bool operator==(Record const& other) const { return fields == other.fields && line == other.line; }
};

std::vector<Record> ReadWhole(std::string const& text) {
    std::istringstream in(text);
    vantry_tool::CsvReader reader(in);
    std::vector<Record> records;
    std::vector<std::string> fields;
    while (reader.ReadRecord(fields)) {
        records.push_back({fields, reader.RecordLine()});
    }
    return records;
}

// The header read whole, the rest in blocks of about blockBytes, each block read on its own.
std::vector<Record> ReadInBlocks(std::string const& text, std::size_t blockBytes) {
    std::istringstream in(text);
    vantry_tool::CsvReader headerReader(in);
    std::vector<Record> records;
    std::vector<std::string> fields;
    if (!headerReader.ReadRecord(fields)) {
        return records;
    }
    records.push_back({fields, headerReader.RecordLine()});
    long lineBase = headerReader.Line();
    vantry_tool::RecordBlocks blocks(in, blockBytes);
    std::string block;
    while (blocks.Next(block)) {
        vantry_tool::TextStream stream(block);
        vantry_tool::CsvReader reader(stream, 1, headerReader.OneColumn());
        while (reader.ReadRecord(fields)) {
            records.push_back({fields, lineBase + reader.RecordLine() - 1});
        }
        lineBase += reader.Line() - 1;
    }
    return records;
}

TEST(RecordBlocks, ReadAsTheWholeInputReads) {
    std::string const tables[] = {
        "a,b\n1,2\r\n\"x\ny\",3\r4,\"q\"\"\"\n\n\n\"\",\"r\r\ns\"\r\n5,6\r\n\r\n7,\"unclosed,\n8",
        "a,b\r1,2\r3,4\r\"5\r\n6\",7\r",
        "only\n1\n\n\"two\nlines\"\r\n\r\n3",
        "a,b\n1,\"\"\"\n2\",3\nx\"y,\"z\n\"\n",
    };
    for (std::string const& table : tables) {
        std::vector<Record> const whole = ReadWhole(table);
        for (std::size_t blockBytes : {1, 2, 3, 5, 8, 64}) {
            EXPECT_EQ(ReadInBlocks(table, blockBytes), whole) << table << " in blocks of " << blockBytes;
        }
    }
    // Without quotes the cut falls after the last LF; a CR at the end may be half of a CRLF.
    EXPECT_EQ(vantry_tool::WholeRecordsLength("1,2\n3,4\n5"), 8u);
    EXPECT_EQ(vantry_tool::WholeRecordsLength("1,2\r"), 0u);
    EXPECT_EQ(vantry_tool::WholeRecordsLength("\"1\n2\",3"), 0u);
}

}  // namespace
