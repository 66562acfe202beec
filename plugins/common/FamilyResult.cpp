#include "plugins/common/FamilyResult.h"

#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

FamilyResult::FamilyResult() : fConfidence(NumericValue::GetSysmisValue()) {}

FamilyResult::~FamilyResult() = default;

void FamilyResult::StoreNumber(Slot& slot, double number) {
    if (slot.value != nullptr && ScoreValue::TypeOf(*slot.value) == ScoreValue::NUMERIC_VALUE) {
        static_cast<NumericValue*>(slot.value.get())->SetDoubleValue(number);
    } else {
        slot.value = std::make_unique<NumericValue>(number);
    }
    slot.present = true;
}

void FamilyResult::StoreText(Slot& slot, std::string const& text) {
    if (slot.value != nullptr && ScoreValue::TypeOf(*slot.value) == ScoreValue::STRING_VALUE) {
        static_cast<StringValue*>(slot.value.get())->SetString(text);
    } else {
        slot.value = std::make_unique<StringValue>(text);
    }
    slot.present = true;
}

void FamilyResult::SetResultValue(ScoreValue const* value) {
    if (value == nullptr) {
        ClearValue();
    } else if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
        StoreText(fValue, ScoreValue::TextOf(*value));
    } else if (ScoreValue::TypeOf(*value) == ScoreValue::NUMERIC_VALUE) {
        StoreNumber(fValue, value->GetDouble());
    } else {
        fValue.value.reset(value->Clone());
        fValue.present = true;
    }
}

ScoreValue const* FamilyResult::GetResultValue() const {
    return fValue.present ? fValue.value.get() : nullptr;
}

void FamilyResult::SetResultCode(int code) {
    fCode = code;
}

void FamilyResult::SetResultConfidence(double confidence) {
    fConfidence = confidence;
}

double FamilyResult::GetResultConfidence() const {
    return fConfidence;
}

int FamilyResult::GetResultCode() const {
    return fCode;
}

void FamilyResult::AddValueProbability(ScoreValue const* value, double probability) {
    if (value == nullptr) {
        return;
    }
    for (auto& entry : fProbabilities) {
        if (*entry.first == *value && ScoreValue::TypeOf(*entry.first) == ScoreValue::TypeOf(*value)) {
            entry.second = probability;
            return;
        }
    }
    fProbabilities.emplace_back(std::unique_ptr<ScoreValue>(value->Clone()), probability);
}

int FamilyResult::GetNumberOfValueProbabilities() const {
    return static_cast<int>(fProbabilities.size());
}

double FamilyResult::GetProbabilityOfValue(ScoreValue const* value) const {
    if (value == nullptr) {
        return 0.0;
    }
    for (auto const& entry : fProbabilities) {
        if (*entry.first == *value && ScoreValue::TypeOf(*entry.first) == ScoreValue::TypeOf(*value)) {
            return entry.second;
        }
    }
    return 0.0;
}

void FamilyResult::SetNumber(double number) {
    StoreNumber(fValue, number);
}

void FamilyResult::SetText(std::string const& text) {
    StoreText(fValue, text);
}

void FamilyResult::ClearValue() {
    fValue.present = false;
    fConfidence = NumericValue::GetSysmisValue();
}

void FamilyResult::SetCategories(std::vector<ScoreValue const*> const& categories) {
    fProbabilities.clear();
    for (ScoreValue const* category : categories) {
        fProbabilities.emplace_back(std::unique_ptr<ScoreValue>(category->Clone()), 0.0);
    }
}

void FamilyResult::SetProbability(int category, double probability) {
    if (category >= 0 && static_cast<std::size_t>(category) < fProbabilities.size()) {
        fProbabilities[static_cast<std::size_t>(category)].second = probability;
    }
}

ScoreValue const* FamilyResult::CategoryAt(int category) const {
    bool const inside = category >= 0 && static_cast<std::size_t>(category) < fProbabilities.size();
    return inside ? fProbabilities[static_cast<std::size_t>(category)].first.get() : nullptr;
}

double FamilyResult::ProbabilityAt(int category) const {
    bool const inside = category >= 0 && static_cast<std::size_t>(category) < fProbabilities.size();
    return inside ? fProbabilities[static_cast<std::size_t>(category)].second : 0.0;
}

void FamilyResult::ClearProbabilities() {
    for (auto& entry : fProbabilities) {
        entry.second = 0.0;
    }
}

void FamilyResult::SetOutputCount(std::size_t count) {
    fOutputs.resize(count);
}

void FamilyResult::SetOutputNumber(std::size_t index, double number) {
    if (index < fOutputs.size()) {
        StoreNumber(fOutputs[index], number);
    }
}

void FamilyResult::SetOutputText(std::size_t index, std::string const& text) {
    if (index < fOutputs.size()) {
        StoreText(fOutputs[index], text);
    }
}

void FamilyResult::ClearOutput(std::size_t index) {
    if (index < fOutputs.size()) {
        fOutputs[index].present = false;
    }
}

ScoreValue const* FamilyResult::GetOutput(std::size_t index) const {
    return index < fOutputs.size() && fOutputs[index].present ? fOutputs[index].value.get() : nullptr;
}

}  // namespace QXVantry_920
