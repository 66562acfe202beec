#include "tools/score/TableScoring.h"

#include <ostream>

#include "tools/score/Csv.h"
#include "tools/score/RowScorer.h"

namespace vantry_tool {

void ScoreTally::Add(ScoreTally const& later, long lineOffset) {
    rows += later.rows;
    invalidCells += later.invalidCells;
    failedRows += later.failedRows;
    for (long line : later.failedLines) {
        if (failedLines.size() < static_cast<std::size_t>(kFailuresTold)) {
            failedLines.push_back(line + lineOffset);
        }
    }
}

bool ScoreRecords(CsvReader& reader, RowScorer& scorer, long limit, std::string& out, ScoreTally& tally) {
    // Kept across calls, so that a row's vectors reuse the capacity of the rows before.
    thread_local std::vector<std::string> row;
    thread_local std::vector<std::string> cells;
    long const invalidBefore = scorer.InvalidCells();
    bool more = true;
    for (long done = 0; limit < 0 || done < limit; ++done) {
        if (!reader.ReadRecord(row)) {
            more = false;
            break;
        }
        ++tally.rows;
        if (!scorer.ScoreRow(row, cells)) {
            ++tally.failedRows;
            if (tally.failedLines.size() < static_cast<std::size_t>(kFailuresTold)) {
                tally.failedLines.push_back(reader.RecordLine());
            }
        }
        AppendCsvRecord(out, cells);
    }
    tally.invalidCells += scorer.InvalidCells() - invalidBefore;
    return more;
}

void FailureReport::Tell(ScoreTally const& tally, long lineOffset) {
    for (long line : tally.failedLines) {
        if (fTold++ < kFailuresTold) {
            fErr << "vantry-score: line " << line + lineOffset
                 << ": the model failed on this row; its results are empty\n";
        }
    }
}

void FailureReport::Finish(long failedRows) {
    if (failedRows > kFailuresTold) {
        fErr << "vantry-score: " << failedRows << " rows failed in all\n";
    }
}

}  // namespace vantry_tool
