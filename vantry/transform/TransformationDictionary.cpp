#include "vantry/transform/TransformationDictionary.h"

#include <memory>
#include <typeinfo>

#include "vantry/transform/TransformVar.h"

#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

constexpr int kRecordCapacity = 10;

CaseRecord* CloneRecord(CaseRecord const* record) {
    return record != nullptr ? new CaseRecord(*record) : nullptr;
}

// The value a derived variable holds before its first case: missing, of the variable's own kind.
ScoreValue* MakeInitialValue(ScoreDictVar const& variable) {
    switch (variable.GetVarType()) {
        case ScoreDictVar::kNUMERIC_VAR:
            return new NumericValue(NumericValue::GetSysmisValue());
        case ScoreDictVar::DATETIME_VAR:
            return new DateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL);
        default:
            return new StringValue(std::string());
    }
}

ScoreDictVar::DateTimeType RecordTypeOf(DateTimeValue::DateTimeValType type) {
    switch (type) {
        case DateTimeValue::DATE_VAL:
            return ScoreDictVar::DT_DATE;
        case DateTimeValue::TIME_VAL:
            return ScoreDictVar::DT_TIME;
        default:
            return ScoreDictVar::DT_DATETIME;
    }
}

bool IsComputed(std::vector<bool> const& computed, ScoreDictVar const* variable) {
    int const index = variable->GetValueIndex();
    return index >= 0 && static_cast<size_t>(index) < computed.size() && computed[static_cast<size_t>(index)];
}

void MarkComputed(std::vector<bool>& computed, ScoreDictVar const* variable) {
    if (variable == nullptr) {
        return;
    }
    int index = variable->GetValueIndex();
    if (index >= 0 && static_cast<size_t>(index) < computed.size()) {
        computed[static_cast<size_t>(index)] = true;
    }
}

// Writes a derived value into its slot by the value's kind: a number, a date-time with its kind, or text
// (text only once the record is set up).
bool WriteValue(CaseRecord& record, int slot, ScoreValue const& value, bool textAllowed) {
    if (typeid(value) == typeid(NumericValue)) {
        return record.SetValue(slot, static_cast<NumericValue const&>(value).NumericValue::GetDouble());
    }
    switch (ScoreValue::TypeOf(value)) {
        case ScoreValue::NUMERIC_VALUE:
            return record.SetValue(slot, value.GetDouble());
        case ScoreValue::DATETIME_VALUE: {
            auto& date = const_cast<DateTimeValue&>(static_cast<DateTimeValue const&>(value));
            return record.SetValue(slot, value.GetDouble(), RecordTypeOf(date.GetDateTimeType()));
        }
        default:
            return textAllowed && record.SetValue(slot, ScoreValue::TextOf(value));
    }
}

}  // namespace

TransformationDictionary::TransformationDictionary()
    : fDerivedRecord(nullptr), fInitialRecord(nullptr), fSetUp(false) {}

TransformationDictionary::TransformationDictionary(TransformationDictionary const& other)
    : BaseDictionary(other),
      fDerivedRecord(CloneRecord(other.fDerivedRecord)),
      fInitialRecord(CloneRecord(other.fInitialRecord)),
      fComputed(other.fComputed),
      fDerivedNames(other.fDerivedNames),
      fSetUp(other.fSetUp) {}

// Assignment copies the records as the copy constructor does. Sharing the two record pointers would have
// both dictionaries delete them, so each dictionary keeps records of its own.
TransformationDictionary& TransformationDictionary::operator=(TransformationDictionary const& other) {
    if (this != &other) {
        std::unique_ptr<CaseRecord> derived(CloneRecord(other.fDerivedRecord));
        std::unique_ptr<CaseRecord> initial(CloneRecord(other.fInitialRecord));
        BaseDictionary::operator=(other);
        delete fDerivedRecord;
        delete fInitialRecord;
        fDerivedRecord = derived.release();
        fInitialRecord = initial.release();
        fComputed = other.fComputed;
        fDerivedNames = other.fDerivedNames;
        fSetUp = other.fSetUp;
        fOrder.clear();
        fOrderValid = false;
    }
    return *this;
}

TransformationDictionary::~TransformationDictionary() {
    delete fDerivedRecord;
    delete fInitialRecord;
}

void TransformationDictionary::SetUpDerivedCaseRecord() {
    if (fSetUp) {
        return;
    }
    auto derived = std::make_unique<CaseRecord>(kRecordCapacity);
    auto initial = std::make_unique<CaseRecord>(kRecordCapacity);
    std::vector<ScoreDictVar*> variables = GetScoreDictVars();
    derived->SetUpNameIndexMap(variables);
    initial->SetUpNameIndexMap(variables);
    fComputed.assign(fDerivedNames.size(), false);
    for (std::string const& name : fDerivedNames) {
        ScoreDictVar* variable = GetVar(name);
        if (variable == nullptr) {
            continue;
        }
        std::unique_ptr<ScoreValue> value(MakeInitialValue(*variable));
        std::unique_ptr<ScoreValue> copy(value->Clone());
        derived->Add(name, value.release());
        initial->Add(name, copy.release());
        variable->SetValueIndex(derived->GetIndex(name));
    }
    // A name listed twice has one slot; flags cover every slot.
    if (static_cast<size_t>(derived->Size()) > fComputed.size()) {
        fComputed.resize(static_cast<size_t>(derived->Size()), false);
    }
    fDerivedRecord = derived.release();
    fInitialRecord = initial.release();
    fSetUp = true;
    fOrderValid = false;
}

ScoreCaseRecord const* TransformationDictionary::GetValuesForDerivedVars(ScoreCaseRecord const* record,
                                                                         ScoreDictionary const* dictionary) {
    if (record == nullptr) {
        return fDerivedRecord;
    }
    Reset();
    if (!fOrderValid) {
        // Resolved by name once; any change of the variables or names resolves again.
        fOrder.clear();
        for (std::string const& name : fDerivedNames) {
            // A variable of another kind than TransformVar has no expression and is passed over.
            auto* variable = dynamic_cast<TransformVar*>(GetVar(name));
            fOrder.emplace_back(variable, fDerivedRecord != nullptr ? fDerivedRecord->GetIndex(name) : -1);
        }
        fOrderValid = true;
    }
    for (size_t i = 0; i < fOrder.size(); ++i) {
        TransformVar* variable = fOrder[i].first;
        if (variable == nullptr || IsComputed(fComputed, variable)) {
            continue;
        }
        ScoreValue const* value = variable->GetTransformedValue(record, dictionary, this);
        if (value == nullptr || fDerivedRecord == nullptr) {
            AddVarCaseValue(variable, fDerivedNames[i], value);
        } else if (WriteValue(*fDerivedRecord, fOrder[i].second, *value, fSetUp)) {
            MarkComputed(fComputed, variable);
        }
    }
    return fDerivedRecord;
}

bool TransformationDictionary::IsVarValueComputed(ScoreDictVar const* variable) const {
    return variable != nullptr && IsComputed(fComputed, variable);
}

ScoreValue const* TransformationDictionary::GetVarValue(std::string const& name) const {
    return fDerivedRecord != nullptr ? fDerivedRecord->Get(name) : nullptr;
}

std::vector<std::string> TransformationDictionary::GetDerivedVarNames() {
    return fDerivedNames;
}

void TransformationDictionary::AddDerievedVarName(std::string const& name) {
    fDerivedNames.push_back(name);
    fOrderValid = false;
}

bool TransformationDictionary::AddVar(ScoreDictionary const* other) {
    fOrderValid = false;
    return BaseDictionary::AddVar(other);
}

bool TransformationDictionary::AddVar(std::string const& name, ScoreDictVar* var) {
    fOrderValid = false;
    return BaseDictionary::AddVar(name, var);
}

bool TransformationDictionary::RemoveVar(std::string const& name) {
    fOrderValid = false;
    return BaseDictionary::RemoveVar(name);
}

void TransformationDictionary::Reset() {
    fComputed.assign(fComputed.size(), false);
}

void TransformationDictionary::AddVarCaseValue(ScoreDictVar const* variable, std::string const& name,
                                               ScoreValue const* value) {
    if (fDerivedRecord == nullptr) {
        return;
    }
    if (variable == nullptr || value == nullptr) {
        fDerivedRecord->Remove(name);
        fDerivedRecord->Add(name, nullptr);
        return;
    }
    if (WriteValue(*fDerivedRecord, fDerivedRecord->GetIndex(name), *value, fSetUp)) {
        MarkComputed(fComputed, variable);
    }
}

void TransformationDictionary::AddVarCaseValue(ScoreDictVar const* variable, std::string const& name,
                                               double number) {
    if (fDerivedRecord != nullptr && fDerivedRecord->SetValue(name, number)) {
        MarkComputed(fComputed, variable);
    }
}

void TransformationDictionary::AddVarCaseValue(ScoreDictVar const* variable, std::string const& name,
                                               double number, DateTimeValue::DateTimeValType type) {
    if (fDerivedRecord != nullptr && fDerivedRecord->SetValue(name, number, RecordTypeOf(type))) {
        MarkComputed(fComputed, variable);
    }
}

void TransformationDictionary::AddVarCaseValue(ScoreDictVar const* variable, std::string const& name,
                                               std::string const& text) {
    if (fSetUp && fDerivedRecord != nullptr && fDerivedRecord->SetValue(name, text)) {
        MarkComputed(fComputed, variable);
    }
}

}  // namespace QXVantry_920
