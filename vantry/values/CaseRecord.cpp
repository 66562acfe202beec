#include <ostream>

#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueSlot.h"

namespace QXVantry_920 {

ScoreCaseRecord::~ScoreCaseRecord() = default;

CaseRecord::CaseRecord(int capacity) {
    if (capacity > 0) {
        fValues.reserve(static_cast<size_t>(capacity));
    }
}

CaseRecord::CaseRecord(CaseRecord const& other) : ScoreCaseRecord(other) {
    CopyFrom(other);
}

CaseRecord& CaseRecord::operator=(CaseRecord const& other) {
    if (this != &other) {
        DeleteValues();
        fNameIndex.clear();
        CopyFrom(other);
    }
    return *this;
}

CaseRecord::~CaseRecord() {
    DeleteValues();
}

void CaseRecord::CopyFrom(CaseRecord const& other) {
    fNameIndex = other.fNameIndex;
    fValues.reserve(other.fValues.size());
    for (ScoreValue const* value : other.fValues) {
        fValues.push_back(value != nullptr ? value->Clone() : nullptr);
    }
}

void CaseRecord::DeleteValues() {
    for (ScoreValue* value : fValues) {
        delete value;
    }
    fValues.clear();
}

void CaseRecord::Add(std::string const& name, ScoreValue* value) {
    auto [entry, inserted] = fNameIndex.try_emplace(name, static_cast<int>(fValues.size()));
    if (inserted) {
        fValues.push_back(value);
    } else {
        // The value that stood here is the caller's to have dealt with.
        fValues[static_cast<size_t>(entry->second)] = value;
    }
}

bool CaseRecord::SetValue(int index, std::string const& text) {
    return InRange(index) && StoreText(fValues[static_cast<size_t>(index)], text);
}

bool CaseRecord::SetValue(int index, double number, ScoreDictVar::DateTimeType type) {
    if (!InRange(index)) {
        return false;
    }
    ScoreValue*& slot = fValues[static_cast<size_t>(index)];
    if (slot == nullptr) {
        slot = new DateTimeValue(number, type);
        return true;
    }
    if (slot->GetType() != ScoreValue::DATETIME_VALUE) {
        return false;
    }
    static_cast<DateTimeValue*>(slot)->SetDateTimeValue(number, type);
    return true;
}

bool CaseRecord::SetValue(int index, double number) {
    return InRange(index) && StoreNumber(fValues[static_cast<size_t>(index)], number);
}

// The forms by name create nothing for an unknown name: it fails the bounds test of the index form.
bool CaseRecord::SetValue(std::string const& name, std::string const& text) {
    return SetValue(GetIndex(name), text);
}

bool CaseRecord::SetValue(std::string const& name, double number, ScoreDictVar::DateTimeType type) {
    return SetValue(GetIndex(name), number, type);
}

bool CaseRecord::SetValue(std::string const& name, double number) {
    return SetValue(GetIndex(name), number);
}

bool CaseRecord::SetMissingValue(int index) {
    if (!InRange(index) || fValues[static_cast<size_t>(index)] == nullptr) {
        return false;
    }
    ScoreValue* slot = fValues[static_cast<size_t>(index)];
    switch (slot->GetType()) {
        case ScoreValue::NUMERIC_VALUE:
        case ScoreValue::DATETIME_VALUE:
            static_cast<NumericValue*>(slot)->SetDoubleValue(NumericValue::GetSysmisValue());
            return true;
        case ScoreValue::STRING_VALUE:
            static_cast<StringValue*>(slot)->SetString(std::string());
            return true;
        default:
            return false;
    }
}

bool CaseRecord::SetMissingValue(std::string const& name) {
    return SetMissingValue(GetIndex(name));
}

void CaseRecord::Remove(std::string const& name) {
    auto found = fNameIndex.find(name);
    if (found == fNameIndex.end()) {
        return;
    }
    ScoreValue*& slot = fValues[static_cast<size_t>(found->second)];
    delete slot;
    slot = nullptr;
}

ScoreValue const* CaseRecord::Get(int index) const {
    return InRange(index) ? fValues[static_cast<size_t>(index)] : nullptr;
}

ScoreValue const* CaseRecord::Get(std::string const& name) const {
    return Get(GetIndex(name));
}

void CaseRecord::SetUpNameIndexMap(std::vector<std::string> const& names) {
    fValues.reserve(names.size());
}

void CaseRecord::SetUpNameIndexMap(std::vector<ScoreDictVar*> const& vars) {
    fValues.reserve(vars.size());
}

bool CaseRecord::HasMap() const {
    return true;
}

int CaseRecord::GetIndex(std::string const& name) const {
    auto found = fNameIndex.find(name);
    return found == fNameIndex.end() ? -1 : found->second;
}

int CaseRecord::Size() const {
    return static_cast<int>(fValues.size());
}

std::vector<std::string> CaseRecord::GetVarNames(bool byIndex) const {
    std::vector<std::string> names(fValues.size());
    size_t position = 0;
    for (auto const& [name, index] : fNameIndex) {
        size_t target = byIndex ? static_cast<size_t>(index) : position++;
        if (target < names.size()) {
            names[target] = name;
        }
    }
    return names;
}

std::vector<ScoreValue*> const& CaseRecord::GetAllValues() const {
    return fValues;
}

void CaseRecord::Display(std::ostream& out) const {
    out << "Start ScoreCaseRecord Display:\n";
    for (auto const& [name, index] : fNameIndex) {
        out << "Var Name: " << name;
        ScoreValue* value = fValues[static_cast<size_t>(index)];
        if (value != nullptr) {
            out << "; Var Value: " << ScoreValue::TextOf(*value);
        }
        out << "\n";
    }
    out << "End of ScoreCaseRecord Display.\n\n";
}

}  // namespace QXVantry_920
