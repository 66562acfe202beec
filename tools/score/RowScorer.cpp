#include "tools/score/RowScorer.h"

#include <cmath>
#include <optional>

#include "tools/score/ShortestNumber.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

namespace vantry_tool {

using QXVantry_920::DateTimeValue;
using QXVantry_920::NumericValue;
using QXVantry_920::ScoreDictVar;
using QXVantry_920::ScoreValue;
using QXVantry_920::StringValue;

std::string CellText(ScoreValue const* value) {
    if (value == nullptr) {
        return std::string();
    }
    switch (ScoreValue::TypeOf(*value)) {
        case ScoreValue::STRING_VALUE:
            return ScoreValue::TextOf(*value);
        case ScoreValue::DATETIME_VALUE:
        case ScoreValue::NUMERIC_VALUE:
            // A date's number is in days since 1970, a time's and a date-time's in seconds.
            return value->IsSystemMissingValue() ? std::string() : ShortestNumber(value->GetDouble());
    }
    return std::string();
}

bool IsMissingCell(std::string const& cell) {
    return cell.empty() || cell == "NA" || cell == "N/A";
}

RowScorer::RowScorer(QXVantry_920::ScoreModel& model, std::vector<std::string> const& header)
    : fModel(model), fRecord(model.MakeCaseRecord()), fResult(model.MakeResult()) {
    QXVantry_920::ScoreDictionary const* dictionary = model.GetDictionary();
    for (std::string const& name : fRecord->GetVarNames(true)) {
        ScoreDictVar const* var = dictionary != nullptr ? dictionary->GetVar(name) : nullptr;
        Input input{name,
                    fRecord->GetIndex(name),
                    -1,
                    ScoreDictVar::kNUMERIC_VAR,
                    ScoreDictVar::DT_NONE,
                    ScoreDictVar::NUMERIC_TYPE_NONE,
                    false};
        if (var != nullptr) {
            input.type = var->GetVarType();
            input.dateType = var->GetDateTimeType();
            input.numberType = var->GetNumericDataType();
        } else if (ScoreValue const* held = fRecord->Get(input.slot)) {
            input.type = ScoreValue::TypeOf(*held) == ScoreValue::STRING_VALUE ? ScoreDictVar::STRING_VAR
                                                                               : ScoreDictVar::kNUMERIC_VAR;
        }
        // The first column of the name wins.
        for (std::size_t column = header.size(); column-- > 0;) {
            if (header[column] == name) {
                input.column = static_cast<int>(column);
            }
        }
        fInputs.push_back(input);
    }
    if (QXVantry_920::ScoreDictionary const* results = model.GetResultDictionary()) {
        for (std::string const& name : results->GetVarNames()) {
            if (results->GetVar(name) != nullptr) {
                fOutputNames.push_back(name);
            }
        }
    }
}

RowScorer::~RowScorer() = default;

void RowScorer::PutMissing(Input& input) {
    if (input.holdsText) {
        input.holdsText = false;
        fRecord->Remove(input.name);
        fRecord->Add(input.name,
                     input.type == ScoreDictVar::DATETIME_VAR ? new DateTimeValue() : new NumericValue());
    }
    fRecord->SetMissingValue(input.slot);
}

void RowScorer::PutNumber(Input& input, double number) {
    if (input.type == ScoreDictVar::DATETIME_VAR) {
        if (input.holdsText || !fRecord->SetValue(input.slot, number, input.dateType)) {
            input.holdsText = false;
            fRecord->Remove(input.name);
            fRecord->Add(input.name, new DateTimeValue(number, input.dateType));
        }
        return;
    }
    if (input.holdsText || !fRecord->SetValue(input.slot, number)) {
        input.holdsText = false;
        fRecord->Remove(input.name);
        fRecord->Add(input.name, new NumericValue(number));
    }
}

void RowScorer::PutInvalidText(Input& input, std::string const& text) {
    ++fInvalidCells;
    if (!input.holdsText || !fRecord->SetValue(input.slot, text)) {
        input.holdsText = true;
        fRecord->Remove(input.name);
        fRecord->Add(input.name, new StringValue(text));
    }
}

void RowScorer::FillInput(Input& input, std::string const* cell) {
    if (cell == nullptr || IsMissingCell(*cell)) {
        if (input.type == ScoreDictVar::STRING_VAR) {
            fRecord->SetMissingValue(input.slot);
        } else {
            PutMissing(input);
        }
        return;
    }
    std::string const& text = *cell;
    switch (input.type) {
        case ScoreDictVar::STRING_VAR:
            if (!fRecord->SetValue(input.slot, text)) {
                fRecord->Remove(input.name);
                fRecord->Add(input.name, new StringValue(text));
            }
            return;
        case ScoreDictVar::DATETIME_VAR: {
            DateTimeValue const parsed(text, input.dateType);
            if (!parsed.IsSystemMissingValue()) {
                PutNumber(input, parsed.GetDoubleValue(input.dateType));
            } else if (std::optional<double> const number = ReadNumber(text)) {
                PutNumber(input, *number);
            } else {
                PutInvalidText(input, text);
            }
            return;
        }
        default:
            break;
    }
    std::optional<double> number = ReadNumber(text);
    // A field declared without a number type (a boolean one, say) takes the truth values as 1 and 0.
    if (!number && input.numberType == ScoreDictVar::NUMERIC_TYPE_NONE &&
        (text == "true" || text == "false")) {
        number = text == "true" ? 1.0 : 0.0;
    }
    bool const integer = input.numberType == ScoreDictVar::NUMERIC_TYPE_INTEGER;
    if (!number || (integer && !(std::isfinite(*number) && std::trunc(*number) == *number))) {
        PutInvalidText(input, text);
        return;
    }
    PutNumber(input, *number);
}

bool RowScorer::ScoreRow(std::vector<std::string> const& row, std::vector<std::string>& cells) {
    cells.assign(fOutputNames.size(), std::string());
    try {
        for (Input& input : fInputs) {
            bool const present = input.column >= 0 && static_cast<std::size_t>(input.column) < row.size();
            FillInput(input, present ? &row[static_cast<std::size_t>(input.column)] : nullptr);
        }
        fModel.Score(fRecord.get(), fResult.get());
        QXVantry_920::ResultField fields;
        fModel.FillResultFields(fResult.get(), &fields);
        for (std::size_t i = 0; i < fOutputNames.size(); ++i) {
            cells[i] = CellText(fields.GetResultValue(fOutputNames[i]));
        }
        return true;
    } catch (...) {
        // Scoring promises not to throw; should it, this row is lost and the run goes on.
        cells.assign(fOutputNames.size(), std::string());
        return false;
    }
}

}  // namespace vantry_tool
