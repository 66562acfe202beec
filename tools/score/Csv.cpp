#include "tools/score/Csv.h"

namespace vantry_tool {

namespace {

constexpr int kEnd = std::char_traits<char>::eof();

}  // namespace

CsvReader::CsvReader(std::istream& in) : fBuffer(in.rdbuf()) {}

CsvReader::CsvReader(std::istream& in, long firstLine, bool oneColumn)
    : fBuffer(in.rdbuf()), fAtStart(false), fOneColumn(oneColumn), fRecords(1), fLine(firstLine) {}

int CsvReader::Next() {
    return fBuffer != nullptr ? fBuffer->sbumpc() : kEnd;
}

int CsvReader::Peek() {
    return fBuffer != nullptr ? fBuffer->sgetc() : kEnd;
}

bool CsvReader::ReadRecord(std::vector<std::string>& fields) {
    fields.clear();
    if (fAtStart) {
        fAtStart = false;
        static constexpr unsigned char kBom[] = {0xEF, 0xBB, 0xBF};
        // A partial mark is data: only the three bytes together are dropped, so read them back if not.
        std::string head;
        for (unsigned char expected : kBom) {
            if (Peek() != expected) {
                break;
            }
            head.push_back(static_cast<char>(Next()));
        }
        if (!head.empty() && head.size() < sizeof(kBom)) {
            for (auto it = head.rbegin(); it != head.rend(); ++it) {
                fBuffer->sputbackc(*it);
            }
        }
    }
    int c = Next();
    // Empty lines carry no record, except in a table of one column.
    while (!fOneColumn && (c == '\n' || c == '\r')) {
        if (c == '\r' && Peek() == '\n') {
            Next();
        }
        ++fLine;
        c = Next();
    }
    if (c == kEnd) {
        return false;
    }
    fRecordLine = fLine;
    std::string field;
    bool quoted = false;
    for (;; c = Next()) {
        if (quoted) {
            if (c == kEnd) {
                break;
            }
            if (c == '"') {
                if (Peek() == '"') {
                    field.push_back('"');
                    Next();
                } else {
                    quoted = false;
                }
                continue;
            }
            if (c == '\n') {
                ++fLine;
            }
            field.push_back(static_cast<char>(c));
            continue;
        }
        if (c == kEnd || c == '\n' || c == '\r') {
            if (c == '\r' && Peek() == '\n') {
                Next();
            }
            if (c != kEnd) {
                ++fLine;
            }
            break;
        }
        if (c == ',') {
            fields.push_back(std::move(field));
            field.clear();
        } else if (c == '"' && field.empty()) {
            quoted = true;
        } else {
            field.push_back(static_cast<char>(c));
        }
    }
    fields.push_back(std::move(field));
    if (++fRecords == 1) {
        fOneColumn = fields.size() == 1;
    }
    return true;
}

void AppendCsvField(std::string& line, std::string_view field) {
    if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
        line.append(field);
        return;
    }
    line.push_back('"');
    for (char c : field) {
        if (c == '"') {
            line.push_back('"');
        }
        line.push_back(c);
    }
    line.push_back('"');
}

void AppendCsvRecord(std::string& line, std::vector<std::string> const& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) {
            line.push_back(',');
        }
        AppendCsvField(line, fields[i]);
    }
    line.push_back('\n');
}

}  // namespace vantry_tool
