#include "plugins/common/RecordSlots.h"

#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

void Replace(CaseRecord& record, std::string const& name, ScoreValue* value) {
    record.Remove(name);
    record.Add(name, value);
}

}  // namespace

void PutNumber(CaseRecord& record, int index, std::string const& name, double number) {
    if (!record.SetValue(index, number)) {
        Replace(record, name, new NumericValue(number));
    }
}

void PutText(CaseRecord& record, int index, std::string const& name, std::string const& text) {
    if (!record.SetValue(index, text)) {
        Replace(record, name, new StringValue(text));
    }
}

void PutValue(CaseRecord& record, int index, std::string const& name, ScoreValue const* value,
              ScoreDictVar::VariableType type) {
    if (value == nullptr) {
        PutMissing(record, index, name, type);
        return;
    }
    switch (ScoreValue::TypeOf(*value)) {
        case ScoreValue::NUMERIC_VALUE:
            PutNumber(record, index, name, value->GetDouble());
            return;
        case ScoreValue::STRING_VALUE:
            PutText(record, index, name, ScoreValue::TextOf(*value));
            return;
        default:
            Replace(record, name, value->Clone());
            return;
    }
}

void PutMissing(CaseRecord& record, int index, std::string const& name, ScoreDictVar::VariableType type) {
    if (type == ScoreDictVar::STRING_VAR) {
        PutText(record, index, name, std::string());
    } else {
        PutNumber(record, index, name, NumericValue::GetSysmisValue());
    }
}

bool IsMissingFor(ScoreDictVar const& variable, ScoreValue const* value) {
    if (value == nullptr || variable.IsMissingValue(value)) {
        return true;
    }
    if (ScoreValue::TypeOf(*value) != ScoreValue::STRING_VALUE) {
        return value->IsSystemMissingValue();
    }
    // A blank text is how a host leaves a text field unset; it counts as a value only where it is one
    // of the field's categories.
    return variable.IsString() && ScoreValue::TextOf(*value).find_first_not_of(' ') == std::string::npos &&
           !variable.IsValidValue(value);
}

ScoreValue* NewMissing(ScoreDictVar::VariableType type) {
    if (type == ScoreDictVar::STRING_VAR) {
        return new StringValue(std::string());
    }
    return new NumericValue();
}

}  // namespace QXVantry_920
