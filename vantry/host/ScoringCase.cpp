#include "vantry/host/ScoringCase.h"

#include <cmath>
#include <optional>
#include <stdexcept>

#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/host/NumberForms.h"
#include "vantry/host/ReusedResultField.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

namespace vantry {

using QXVantry_920::DateTimeValue;
using QXVantry_920::NumericValue;
using QXVantry_920::ScoreDictVar;
using QXVantry_920::ScoreValue;
using QXVantry_920::StringValue;

ScoringCase::ScoringCase(QXVantry_920::ScoreModel& model)
    : fModel(model),
      fRecord(model.MakeCaseRecord()),
      fResult(model.MakeResult()),
      fFields(std::make_unique<ReusedResultField>()) {
    QXVantry_920::ScoreDictionary const* dictionary = model.GetDictionary();
    if (fRecord != nullptr) {
        fInputNames = fRecord->GetVarNames(true);
    }
    for (std::string const& name : fInputNames) {
        ScoreDictVar const* var = dictionary != nullptr ? dictionary->GetVar(name) : nullptr;
        Input input{name,
                    fRecord->GetIndex(name),
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
        fInputs.push_back(input);
    }
    if (QXVantry_920::ScoreDictionary const* results = model.GetResultDictionary()) {
        for (std::string const& name : results->GetVarNames()) {
            if (results->GetVar(name) != nullptr) {
                fOutputNames.push_back(name);
            }
        }
    }
    SetAllMissing();
}

ScoringCase::~ScoringCase() = default;

void ScoringCase::PutMissing(Input& input) {
    if (input.holdsText) {
        input.holdsText = false;
        fRecord->Remove(input.name);
        fRecord->Add(input.name,
                     input.type == ScoreDictVar::DATETIME_VAR ? new DateTimeValue() : new NumericValue());
    }
    fRecord->SetMissingValue(input.slot);
}

void ScoringCase::PutNumber(Input& input, double number) {
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

void ScoringCase::PutInvalidText(Input& input, std::string const& text) {
    ++fInvalidValues;
    if (!input.holdsText || !fRecord->SetValue(input.slot, text)) {
        input.holdsText = true;
        fRecord->Remove(input.name);
        fRecord->Add(input.name, new StringValue(text));
    }
}

void ScoringCase::PutText(Input& input, std::string const& text) {
    if (!fRecord->SetValue(input.slot, text)) {
        fRecord->Remove(input.name);
        fRecord->Add(input.name, new StringValue(text));
    }
}

bool ScoringCase::FitsField(Input const& input, double number) {
    bool const integer =
        input.type == ScoreDictVar::kNUMERIC_VAR && input.numberType == ScoreDictVar::NUMERIC_TYPE_INTEGER;
    return !integer || (std::isfinite(number) && std::trunc(number) == number);
}

bool ScoringCase::SetNumber(int index, double number) {
    if (index < 0 || static_cast<std::size_t>(index) >= fInputs.size()) {
        return false;
    }
    Input& input = fInputs[static_cast<std::size_t>(index)];
    if (std::isnan(number)) {
        PutMissing(input);
    } else if (input.type == ScoreDictVar::STRING_VAR) {
        PutText(input, ShortestNumber(number));
    } else if (FitsField(input, number)) {
        PutNumber(input, number);
    } else {
        PutInvalidText(input, ShortestNumber(number));
    }
    return true;
}

bool ScoringCase::SetText(int index, std::string const& text) {
    if (index < 0 || static_cast<std::size_t>(index) >= fInputs.size()) {
        return false;
    }
    Input& input = fInputs[static_cast<std::size_t>(index)];
    if (input.type == ScoreDictVar::STRING_VAR) {
        PutText(input, text);
        return true;
    }
    if (text.empty()) {
        PutMissing(input);
        return true;
    }
    std::optional<double> number;
    if (input.type == ScoreDictVar::DATETIME_VAR) {
        DateTimeValue const parsed(text, input.dateType);
        number = parsed.IsSystemMissingValue() ? ReadNumber(text)
                                               : std::optional<double>(parsed.GetDoubleValue(input.dateType));
    } else {
        number = ReadNumber(text);
        // A field declared without a number type (a boolean one, say) takes the truth values as 1 and 0.
        if (!number && input.numberType == ScoreDictVar::NUMERIC_TYPE_NONE &&
            (text == "true" || text == "false")) {
            number = text == "true" ? 1.0 : 0.0;
        }
    }
    if (number && FitsField(input, *number)) {
        PutNumber(input, *number);
    } else {
        PutInvalidText(input, text);
    }
    return true;
}

bool ScoringCase::SetMissing(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= fInputs.size()) {
        return false;
    }
    PutMissing(fInputs[static_cast<std::size_t>(index)]);
    return true;
}

void ScoringCase::SetAllMissing() {
    for (Input& input : fInputs) {
        PutMissing(input);
    }
}

bool ScoringCase::Score() {
    fFields->ClearValues();
    try {
        QXScore::QXStatus const status = fModel.Score(fRecord.get(), fResult.get());
        fStatusCode = status.GetErrorCode();
        fModel.FillResultFields(fResult.get(), fFields.get());
        return !status.IsError();
    } catch (...) {
        // Scoring promises not to throw; should a model do so, this case has no outputs.
        fFields->ClearValues();
        fStatusCode = kModelThrew;
        return false;
    }
}

ScoreValue const* ScoringCase::Output(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= fOutputNames.size()) {
        throw std::out_of_range("no output " + std::to_string(index));
    }
    return fFields->GetResultValue(fOutputNames[static_cast<std::size_t>(index)]);
}

}  // namespace vantry
