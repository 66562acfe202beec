// Scores a table on several threads with the output in input order. The calling thread cuts the input
// into blocks of whole records and writes the finished blocks in order; each worker owns a model, parses
// a block, scores its rows and formats their results, so that the work that grows with the rows is
// shared out. A bounded number of blocks is in flight, so memory stays flat on input of any length.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "tools/score/TableScoring.h"

namespace QXVantry_920 {
class ScoreModel;
}

namespace vantry_tool {

class FailureReport;
class Progress;

// Makes one more model of the document; a refusal throws as loading does.
using ModelMaker = std::function<std::unique_ptr<QXVantry_920::ScoreModel>()>;

struct TableInput {
    // The columns' names, the line the first record after them starts on, and whether they are one.
    std::vector<std::string> header;
    long firstLine = 1;
    bool oneColumn = false;
    // The rest of the table, read from its current position.
    std::istream* rows = nullptr;
};

// Scores every row with threads workers (2 or more). The first worker scores with model, which the caller
// keeps for the run and uses for nothing else meanwhile; the others make their own. Answers what the rows
// met; an exception of a worker is thrown again here once all have stopped.
ScoreTally ScoreInParallel(int threads, QXVantry_920::ScoreModel& model, ModelMaker const& makeModel,
                           TableInput const& input, std::ostream& out, Progress& progress,
                           FailureReport& failures);

}  // namespace vantry_tool
