// The row loop of the scoring command, shared by its single-threaded run and its worker threads: reads
// records, scores them and appends the result rows as CSV text, keeping count of what happened.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace vantry_tool {

class CsvReader;
class RowScorer;

// Rows whose failure is told one by one; after that only the count.
constexpr long kFailuresTold = 10;

// What scoring a run of rows met.
struct ScoreTally {
    long rows = 0;
    // Cells that did not fit their field.
    long invalidCells = 0;
    long failedRows = 0;
    // The lines on which the first failed rows began (at most kFailuresTold), in the reader's numbering.
    std::vector<long> failedLines;

    // Adds a later run's counts; its failed lines are moved by lineOffset.
    void Add(ScoreTally const& later, long lineOffset);
};

// Scores up to limit records (all when limit is negative) and appends one result row per record to out.
// Answers false when the reader has no more records.
bool ScoreRecords(CsvReader& reader, RowScorer& scorer, long limit, std::string& out, ScoreTally& tally);

// Tells the failed rows on standard error in input order: the first ones one by one, then the count.
class FailureReport {
  public:
    explicit FailureReport(std::ostream& err) : fErr(err) {}
    // Tells the failures of a run scored after every run given before.
    void Tell(ScoreTally const& tally, long lineOffset);
    // The count, when there were more failures than were told one by one.
    void Finish(long failedRows);

  private:
    std::ostream& fErr;
    long fTold = 0;
};

}  // namespace vantry_tool
