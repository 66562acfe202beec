#include "vantry/transform/TransformationDictionary.h"

#include <memory>

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
}

bool TransformationDictionary::IsVarValueComputed(ScoreDictVar const* variable) const {
    if (variable == nullptr) {
        return false;
    }
    int index = variable->GetValueIndex();
    return index >= 0 && static_cast<size_t>(index) < fComputed.size() &&
           fComputed[static_cast<size_t>(index)];
}

ScoreValue const* TransformationDictionary::GetVarValue(std::string const& name) const {
    return fDerivedRecord != nullptr ? fDerivedRecord->Get(name) : nullptr;
}

std::vector<std::string> TransformationDictionary::GetDerivedVarNames() {
    return fDerivedNames;
}

void TransformationDictionary::AddDerievedVarName(std::string const& name) {
    fDerivedNames.push_back(name);
}

void TransformationDictionary::Reset() {
    fComputed.assign(fComputed.size(), false);
}

void TransformationDictionary::AddVarCaseValue(ScoreDictVar const* variable, std::string const& name,
                                               ScoreValue const* value) {
    if (variable == nullptr || value == nullptr) {
        if (fDerivedRecord != nullptr) {
            fDerivedRecord->Remove(name);
            fDerivedRecord->Add(name, nullptr);
        }
        return;
    }
    switch (ScoreValue::TypeOf(*value)) {
        case ScoreValue::NUMERIC_VALUE:
            AddVarCaseValue(variable, name, value->GetDouble());
            break;
        case ScoreValue::DATETIME_VALUE:
            AddVarCaseValue(
                variable, name, value->GetDouble(),
                const_cast<DateTimeValue*>(static_cast<DateTimeValue const*>(value))->GetDateTimeType());
            break;
        default:
            AddVarCaseValue(variable, name, ScoreValue::TextOf(*value));
            break;
    }
}

namespace {

void MarkComputed(std::vector<bool>& computed, ScoreDictVar const* variable) {
    if (variable == nullptr) {
        return;
    }
    int index = variable->GetValueIndex();
    if (index >= 0 && static_cast<size_t>(index) < computed.size()) {
        computed[static_cast<size_t>(index)] = true;
    }
}

}  // namespace

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
