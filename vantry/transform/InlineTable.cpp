#include "vantry/transform/InlineTable.h"

#include "vantry/transform/FieldAccess.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

const std::int32_t InlineTable::OK = 0;
const std::int32_t InlineTable::InputMissing = 1;
const std::int32_t InlineTable::NoMatches = 2;

namespace {

void DeleteRow(std::vector<ScoreValue*> const& inputs, ScoreValue* output) {
    delete output;
    for (auto value = inputs.rbegin(); value != inputs.rend(); ++value) {
        delete *value;
    }
}

}  // namespace

bool InlineTable::KeyLess::operator()(std::vector<ScoreValue*> const& left,
                                      std::vector<ScoreValue*> const& right) const {
    for (size_t i = 0; i < left.size(); ++i) {
        if (i >= right.size()) {
            return false;
        }
        ScoreValue const* a = left[i];
        ScoreValue const* b = right[i];
        if (a == nullptr || b == nullptr) {
            continue;
        }
        ScoreValue::ValueType const type = ScoreValue::TypeOf(*a);
        if (type != ScoreValue::NUMERIC_VALUE && type != ScoreValue::STRING_VALUE) {
            continue;  // date-time elements do not order the keys
        }
        if (*a < *b) {
            return true;
        }
        if (*a > *b) {
            return false;
        }
    }
    return false;
}

InlineTable::InlineTable() : fInfoCode(OK) {}

InlineTable::InlineTable(InlineTable const& other)
    : fInputFields(other.fInputFields), fInfoCode(other.fInfoCode), fInputNames(other.fInputNames) {
    for (auto const& [inputs, output] : other.fRows) {
        std::vector<ScoreValue*> copy;
        copy.reserve(inputs.size());
        for (ScoreValue const* value : inputs) {
            copy.push_back(value != nullptr ? value->Clone() : nullptr);
        }
        AddInputOutput(std::move(copy), output != nullptr ? output->Clone() : nullptr);
    }
}

InlineTable& InlineTable::operator=(InlineTable const& other) {
    if (this != &other) {
        InlineTable copy(other);
        std::swap(fInputFields, copy.fInputFields);
        std::swap(fRows, copy.fRows);
        std::swap(fInfoCode, copy.fInfoCode);
        std::swap(fInputNames, copy.fInputNames);
        fBound.clear();
        fInputIndexes.clear();
    }
    return *this;
}

InlineTable::~InlineTable() {
    for (auto row = fRows.rbegin(); row != fRows.rend(); ++row) {
        DeleteRow(row->first, row->second);
    }
}

void InlineTable::AppendInputField(ScoreDictVar const* variable) {
    fInputFields.push_back(variable);
    fInputNames.push_back(variable != nullptr ? variable->GetName() : std::string());
    fBound.clear();
    fInputIndexes.clear();
}

void InlineTable::AddInputOutput(std::vector<ScoreValue*> inputs, ScoreValue* output) {
    if (fRows.find(inputs) != fRows.end()) {
        DeleteRow(inputs, output);
        return;
    }
    try {
        fRows.emplace(inputs, output);
    } catch (...) {
        DeleteRow(inputs, output);
        throw;
    }
}

std::int32_t InlineTable::GetInfoCode() const {
    return fInfoCode;
}

ScoreValue* InlineTable::getValue(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                  ScoreDictionary const* transformations,
                                  std::map<std::string, std::string> const& /*columns*/) {
    fKey.clear();
    GetInputValuesFromRecord(record, fKey, dictionary, transformations);
    if (fInfoCode != OK) {
        return nullptr;
    }
    auto found = fRows.find(fKey);
    if (found == fRows.end()) {
        fInfoCode = NoMatches;
        return nullptr;
    }
    return found->second;
}

void InlineTable::GetInputValuesFromRecord(ScoreCaseRecord const* record, std::vector<ScoreValue*>& inputs,
                                           ScoreDictionary const* dictionary,
                                           ScoreDictionary const* transformations) {
    if (fBound.size() != fInputFields.size()) {
        // Bound by name to the dictionaries of the first lookup, so that a copied table reads the
        // variables of its own dictionaries.
        fBound = fInputFields;
        for (size_t i = 0; i < fBound.size(); ++i) {
            if (ScoreDictVar const* found = FindVariable(fInputNames[i], dictionary, transformations)) {
                fBound[i] = found;
            }
        }
        fInputIndexes.assign(fBound.size(), -1);
    }
    for (size_t i = 0; i < fBound.size(); ++i) {
        ScoreDictVar const* variable = fBound[i];
        ScoreValue const* value = ReadField(variable, fInputIndexes[i], record, dictionary, transformations);
        if (variable == nullptr || variable->IsMissingValue(value)) {
            fInfoCode = InputMissing;
            return;
        }
        // The key only points at the values; nothing is changed through it.
        inputs.push_back(const_cast<ScoreValue*>(value));
    }
    fInfoCode = OK;
}

}  // namespace QXVantry_920
