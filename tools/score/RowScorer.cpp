#include "tools/score/RowScorer.h"

#include "vantry/host/NumberForms.h"

namespace vantry_tool {

std::string CellText(QXVantry_920::ScoreValue const* value) {
    return vantry::ValueText(value);
}

bool IsMissingCell(std::string const& cell) {
    return cell.empty() || cell == "NA" || cell == "N/A";
}

RowScorer::RowScorer(QXVantry_920::ScoreModel& model, std::vector<std::string> const& header) : fCase(model) {
    for (std::string const& name : fCase.InputNames()) {
        // The first column of the name wins.
        int column = -1;
        for (std::size_t i = header.size(); i-- > 0;) {
            if (header[i] == name) {
                column = static_cast<int>(i);
            }
        }
        fColumns.push_back(column);
    }
}

bool RowScorer::ScoreRow(std::vector<std::string> const& row, std::vector<std::string>& cells) {
    cells.assign(fCase.OutputNames().size(), std::string());
    for (std::size_t input = 0; input < fColumns.size(); ++input) {
        int const column = fColumns[input];
        bool const present = column >= 0 && static_cast<std::size_t>(column) < row.size();
        if (!present || IsMissingCell(row[static_cast<std::size_t>(column)])) {
            fCase.SetMissing(static_cast<int>(input));
        } else {
            fCase.SetText(static_cast<int>(input), row[static_cast<std::size_t>(column)]);
        }
    }
    if (!fCase.Score() && fCase.StatusCode() == vantry::ScoringCase::kModelThrew) {
        return false;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        cells[i] = CellText(fCase.Output(static_cast<int>(i)));
    }
    return true;
}

}  // namespace vantry_tool
