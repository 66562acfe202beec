#include "vantry/host/ReusedResultField.h"

#include "vantry/values/ScoreValue.h"

namespace vantry {

using QXVantry_920::NumericValue;
using QXVantry_920::ScoreValue;
using QXVantry_920::StringValue;

void ReusedResultField::Replace(std::string const& name, ScoreValue* value) {
    // The map shares its value objects: the new map holds the new value, the old one is deleted here.
    ValueMap values = GetMapResultValue();
    ScoreValue*& slot = values[name];
    delete slot;
    slot = value;
    SetMapResultValue(values);
}

bool ReusedResultField::SetResultValue(std::string const& name, ScoreValue const* value) {
    ScoreValue const* held = GetResultValue(name);
    if (value != nullptr && held != nullptr &&
        (ScoreValue::TypeOf(*held) != ScoreValue::TypeOf(*value) ||
         ScoreValue::TypeOf(*value) == ScoreValue::DATETIME_VALUE)) {
        Replace(name, value->Clone());
        return true;
    }
    return ResultField::SetResultValue(name, value);
}

bool ReusedResultField::SetResultValue(std::string const& name, std::string const& text) {
    ScoreValue const* held = GetResultValue(name);
    if (held != nullptr && ScoreValue::TypeOf(*held) != ScoreValue::STRING_VALUE) {
        Replace(name, new StringValue(text));
        return true;
    }
    return ResultField::SetResultValue(name, text);
}

bool ReusedResultField::SetResultValue(std::string const& name, double number) {
    ScoreValue const* held = GetResultValue(name);
    if (held != nullptr && ScoreValue::TypeOf(*held) != ScoreValue::NUMERIC_VALUE) {
        Replace(name, new NumericValue(number));
        return true;
    }
    return ResultField::SetResultValue(name, number);
}

void ReusedResultField::ClearValues() {
    for (auto const& [name, value] : GetMapResultValue()) {
        if (value == nullptr) {
            continue;
        }
        if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
            static_cast<StringValue*>(value)->SetString(std::string());
        } else {
            static_cast<NumericValue*>(value)->SetDoubleValue(NumericValue::GetSysmisValue());
        }
    }
}

}  // namespace vantry
