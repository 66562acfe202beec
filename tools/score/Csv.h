// Comma-separated text as the scoring command reads and writes it: fields separated by commas, records
// by line ends (LF, CRLF or a lone CR), a field in double quotes may hold commas, line ends and doubled
// quotes. UTF-8 throughout; a byte order mark at the start of the input is dropped.
#pragma once

#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace vantry_tool {

// Reads one record at a time from a stream, so that input of any length takes constant memory.
class CsvReader {
  public:
    explicit CsvReader(std::istream& in);
    // Reads a later part of a table whose first record was read elsewhere: no byte order mark is looked
    // for, line numbers start at firstLine, and oneColumn tells whether that first record had one field.
    CsvReader(std::istream& in, long firstLine, bool oneColumn);

    // The next record's fields; false at the end of the input. Empty lines are skipped, except after a
    // first record of one field: in a table of one column an empty line is a record of one empty field
    // (a missing value). Text after a closing quote is kept as it stands, and a quote that is never
    // closed runs to the end of the input.
    bool ReadRecord(std::vector<std::string>& fields);

    // The number of the line on which the last record read began (1 for the first line).
    long RecordLine() const { return fRecordLine; }

    // The number of the line that the reader is on (one more than the line ends read so far).
    long Line() const { return fLine; }

    // Whether the first record had a single field.
    bool OneColumn() const { return fOneColumn; }

  private:
    int Next();
    int Peek();

    std::streambuf* fBuffer;
    bool fAtStart = true;
    bool fOneColumn = false;
    long fRecords = 0;
    long fLine = 1;
    long fRecordLine = 0;
};

// Appends one field to a record line, in double quotes when it holds a comma, a quote or a line end.
void AppendCsvField(std::string& line, std::string_view field);

// Appends the fields separated by commas, and a line end.
void AppendCsvRecord(std::string& line, std::vector<std::string> const& fields);

}  // namespace vantry_tool
