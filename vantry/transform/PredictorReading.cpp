#include "vantry/transform/PredictorReading.h"

#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

ScoreValue const* ReadRecord(ScoreCaseRecord const* record, ScoreDictVar const& variable) {
    if (record == nullptr) {
        return nullptr;
    }
    // The index is the fast way; the name serves records filled in another order.
    if (record->HasMap()) {
        if (ScoreValue const* value = record->Get(variable.GetValueIndex())) {
            return value;
        }
    }
    return record->Get(variable.GetName());
}

bool IsCategorical(ScoreDictVar const& variable) {
    ScoreDictVar::MeasureLevel const level = variable.GetMLevel();
    return level == ScoreDictVar::MEASURE_NOMINAL || level == ScoreDictVar::MEASURE_ORDINAL;
}

}  // namespace

ScoreValue const* ReadPredictorValue(ScoreDictVar const& variable, ScoreCaseRecord const* input,
                                     ScoreCaseRecord const* derived) {
    if (derived == nullptr || !variable.IsDerivedVariable()) {
        return ReadRecord(input, variable);
    }
    return ReadRecord(derived, variable);
}

double EncodePredictorValue(ScoreDictVar const& variable, ScoreValue const* value) {
    ScoreEncoder const* encoder = variable.GetEncoder();
    if (value == nullptr || encoder == nullptr) {
        return NumericValue::GetSysmisValue();
    }
    return static_cast<double>(encoder->EncodeConst(value));
}

bool IsMissingPredictor(ScoreDictVar const& variable, ScoreValue const* value, double code) {
    if (value == nullptr) {
        return true;
    }
    if (variable.GetMLevel() != ScoreDictVar::MEASURE_NOMINAL) {
        return variable.IsMissingValue(value);
    }
    if (variable.GetEncoder() == nullptr) {
        return !variable.IsValidValue(value);
    }
    return code == -1.0 || variable.IsMissingValue(value);
}

bool ReadEncodedPredictor(ScoreDictVar const& variable, std::vector<double> const& values, double& x) {
    bool const categorical = IsCategorical(variable);
    x = categorical ? -1.0 : NumericValue::GetSysmisValue();
    int const index = variable.GetEncodedValueIndex();
    if (index >= 0 && static_cast<std::size_t>(index) < values.size()) {
        x = values[static_cast<std::size_t>(index)];
    }
    return categorical ? x == -2.0 : NumericValue::IsSystemMissingValue(x);
}

}  // namespace QXVantry_920
