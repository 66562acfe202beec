// Scores the records of a table with a model: binds the table's columns to the model's input fields
// once, then turns each input row into a filled case and each scored case into output cells.
#pragma once

#include <string>
#include <vector>

#include "vantry/host/ScoringCase.h"

namespace QXVantry_920 {
class ScoreModel;
class ScoreValue;
}  // namespace QXVantry_920

namespace vantry_tool {

// The output text of a value: a number in its shortest exact form, a text as it stands, a missing value
// (none, system-missing) as the empty text.
std::string CellText(QXVantry_920::ScoreValue const* value);

// Whether an input cell stands for a missing value: empty, "NA" or "N/A".
bool IsMissingCell(std::string const& cell);

class RowScorer {
  public:
    // header names the input columns; a field without a column is missing in every row, and a column
    // that names no field is ignored. The model must outlive the scorer.
    RowScorer(QXVantry_920::ScoreModel& model, std::vector<std::string> const& header);
    RowScorer(RowScorer const&) = delete;
    RowScorer& operator=(RowScorer const&) = delete;

    // The output columns: the model's result variables in order (targets, then the outputs).
    std::vector<std::string> const& OutputNames() const { return fCase.OutputNames(); }

    // Scores one input row (cells by column; a short row lacks its last cells) into one output cell per
    // output column. A cell that does not fit its field reaches the model as an invalid value. Answers
    // false, with the cells empty, when the model failed on the case in a way it should not.
    bool ScoreRow(std::vector<std::string> const& row, std::vector<std::string>& cells);

    // The number of cells so far that did not fit their field and reached the model as invalid values.
    long InvalidCells() const { return fCase.InvalidValues(); }

  private:
    vantry::ScoringCase fCase;
    // The column of each input, or -1.
    std::vector<int> fColumns;
};

}  // namespace vantry_tool
