#include "vantry/transform/MapValues.h"

#include "vantry/transform/FieldAccess.h"
#include "vantry/transform/InlineTable.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

MapValues::MapValues(TransformVar* owner) : fOwner(owner), fBound(false), fInputIndex(-1) {}

MapValues::~MapValues() = default;

MapValues* MapValues::Clone(TransformVar* owner) const {
    auto copy = std::make_unique<MapValues>(owner);
    copy->fColumns = fColumns;
    copy->fInputVariables = fInputVariables;
    copy->fInputNames = fInputNames;
    if (fInlineTable) {
        copy->fInlineTable = std::make_unique<InlineTable>(*fInlineTable);
    }
    if (fMapMissingTo) {
        copy->fMapMissingTo.reset(fMapMissingTo->Clone());
    }
    if (fDefaultValue) {
        copy->fDefaultValue.reset(fDefaultValue->Clone());
    }
    return copy.release();
}

void MapValues::AddFieldColumnPair(std::string const& column, std::string const& field,
                                   ScoreDictVar const* variable) {
    fColumns[column] = field;
    fInputVariables.push_back(variable);
    fInputNames.push_back(field);
    fBound = false;
    fInputIndex = -1;
}

void MapValues::SetInlineTable(InlineTable* table) {
    fInlineTable.reset(table);
}

InlineTable* MapValues::GetInlineTable() const {
    return fInlineTable.get();
}

void MapValues::SetMapMissingTo(ScoreValue* value) {
    fMapMissingTo.reset(value);
}

void MapValues::SetDefaultValue(ScoreValue* value) {
    fDefaultValue.reset(value);
}

std::map<std::string, std::string> const& MapValues::GetColumns() const {
    return fColumns;
}

std::vector<ScoreDictVar const*> const& MapValues::GetInputVariables() const {
    return fInputVariables;
}

ScoreValue const* MapValues::Lookup(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                    ScoreDictionary const* transformations) {
    if (fInlineTable) {
        ScoreValue const* answer = fInlineTable->getValue(record, dictionary, transformations, fColumns);
        std::int32_t const code = fInlineTable->GetInfoCode();
        if (code == InlineTable::OK) {
            return answer;
        }
        if (code == InlineTable::InputMissing) {
            return fMapMissingTo.get();
        }
        if (code == InlineTable::NoMatches) {
            if (fOwner != nullptr && fOwner->IsRecodeElseCopy()) {
                if (record == nullptr || fColumns.empty()) {
                    return nullptr;
                }
                return record->Get(fColumns.begin()->second);
            }
            return fDefaultValue.get();
        }
        return nullptr;
    }
    if (fInputVariables.size() == 1) {
        if (!fBound) {
            // A copy reads the variable of the dictionaries it is evaluated with.
            if (ScoreDictVar const* found = FindVariable(fInputNames.front(), dictionary, transformations)) {
                fInputVariables.front() = found;
            }
            fBound = true;
        }
        ScoreDictVar const* variable = fInputVariables.front();
        if (variable == nullptr) {
            return fMapMissingTo.get();
        }
        // The variable's value index when it has one, else its slot found by name once.
        int index = variable->GetValueIndex();
        ScoreValue const* value =
            ReadField(variable, index >= 0 ? index : fInputIndex, record, dictionary, transformations);
        return variable->IsMissingValue(value) ? fMapMissingTo.get() : value;
    }
    if (fInputVariables.size() >= 2) {
        return nullptr;
    }
    return fMapMissingTo ? fMapMissingTo.get() : fDefaultValue.get();
}

}  // namespace QXVantry_920
