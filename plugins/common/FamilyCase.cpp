#include "plugins/common/FamilyCase.h"

#include <cstdio>

#include "plugins/common/FamilyModel.h"
#include "plugins/common/FamilySupport.h"
#include "plugins/common/RecordSlots.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

Prediction::Prediction() : value(NumericValue::GetSysmisValue()) {}

void Prediction::Reset(std::size_t categories) {
    valid = false;
    value = NumericValue::GetSysmisValue();
    category = -1;
    probabilities.assign(categories, 0.0);
    confidences.clear();
    entityId.clear();
}

double Prediction::ProbabilityOf(int index) const {
    bool const inside = index >= 0 && static_cast<std::size_t>(index) < probabilities.size();
    return inside ? probabilities[static_cast<std::size_t>(index)] : 0.0;
}

double Prediction::ConfidenceOf(int index) const {
    bool const inside = index >= 0 && static_cast<std::size_t>(index) < confidences.size();
    return inside ? confidences[static_cast<std::size_t>(index)] : ProbabilityOf(index);
}

int Prediction::ArgMax() const {
    int best = -1;
    double top = 0.0;
    for (std::size_t i = 0; i < probabilities.size(); ++i) {
        if (probabilities[i] > top) {
            top = probabilities[i];
            best = static_cast<int>(i);
        }
    }
    return best;
}

FamilyCase::FamilyCase(ScoreCaseRecord const* input, ScoreCaseRecord const* derived, CaseRecord* flat,
                       FamilyModel const* model)
    : fInput(input), fDerived(derived), fFlat(flat), fModel(model) {}

ScoreValue const* FamilyCase::Value(FieldHandle const& field) const {
    ScoreCaseRecord const* record = field.source == FieldHandle::kDerived ? fDerived : fInput;
    return field.IsValid() && record != nullptr ? record->Get(field.index) : nullptr;
}

bool FamilyCase::IsMissing(FieldHandle const& field) const {
    return !field.IsValid() || IsMissingFor(*field.variable, Value(field));
}

bool FamilyCase::Number(FieldHandle const& field, double& x) const {
    if (IsMissing(field)) {
        return false;
    }
    ScoreValue const* value = Value(field);
    if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
        return ReadWholeNumber(ScoreValue::TextOf(*value), x);
    }
    x = value->GetDouble();
    return true;
}

std::string FamilyCase::Text(FieldHandle const& field) const {
    if (IsMissing(field)) {
        return std::string();
    }
    ScoreValue const* value = Value(field);
    if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
        return ScoreValue::TextOf(*value);
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.17g", value->GetDouble());
    // The shortest form that reads back the same number.
    for (int digits = 1; digits <= 17; ++digits) {
        char candidate[32];
        std::snprintf(candidate, sizeof candidate, "%.*g", digits, value->GetDouble());
        if (std::strtod(candidate, nullptr) == value->GetDouble()) {
            return candidate;
        }
    }
    return buffer;
}

ScoreCaseRecord const* FamilyCase::Flat() const {
    if (!fFlatFilled) {
        fModel->FillFlat();
        fFlatFilled = true;
    }
    return fFlat;
}

}  // namespace QXVantry_920
