#include "vantry/factory/ResultField.h"

#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueSlot.h"

namespace QXVantry_920 {

ScoreResultField::~ScoreResultField() = default;

ResultField::ResultField() = default;
ResultField::ResultField(ResultField const& other) = default;
ResultField& ResultField::operator=(ResultField const& other) = default;

ResultField::~ResultField() {
    for (auto& entry : fValues) {
        delete entry.second;
    }
}

void ResultField::SetMapResultValue(ValueMap const& values) {
    if (&values != &fValues) {
        fValues = values;
    }
}

ScoreResultField::ValueMap const& ResultField::GetMapResultValue() const {
    return fValues;
}

ScoreValue const* ResultField::GetResultValue(std::string const& name) const {
    auto found = fValues.find(name);
    return found == fValues.end() ? nullptr : found->second;
}

bool ResultField::SetResultValue(std::string const& name, ScoreValue const* value) {
    if (value == nullptr) {
        return false;
    }
    ScoreValue*& slot = fValues[name];
    if (slot == nullptr) {
        slot = value->Clone();
        return true;
    }
    ScoreValue::ValueType type = ScoreValue::TypeOf(*value);
    if (slot->GetType() != type) {
        return false;
    }
    switch (type) {
        case ScoreValue::STRING_VALUE:
            return StoreText(slot, ScoreValue::TextOf(*value));
        case ScoreValue::NUMERIC_VALUE:
            return StoreNumber(slot, value->GetDouble());
        default:
            return false;
    }
}

bool ResultField::SetResultValue(std::string const& name, std::string const& text) {
    return StoreText(fValues[name], text);
}

bool ResultField::SetResultValue(std::string const& name, double number) {
    return StoreNumber(fValues[name], number);
}

ScoreResultField::ResultFeature ResultField::GetResultType(std::string const&) {
    return kFeatureNone;
}

void ResultField::AddResultField(std::string const& name, ScoreValue* value) {
    fValues.emplace(name, value);
}

std::vector<std::string> ResultField::GetResultFields() {
    std::vector<std::string> names;
    names.reserve(fValues.size());
    for (auto const& entry : fValues) {
        names.push_back(entry.first);
    }
    return names;
}

int ResultField::GetResultSize() const {
    return static_cast<int>(fValues.size());
}

}  // namespace QXVantry_920
