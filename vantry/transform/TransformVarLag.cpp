// The memory of a "Lag" expression: the source's values of the last n cases, and beside them the block
// fields' values of the same cases. The answer is the value of n cases ago, and missing when any block
// field changed over those n cases.
#include "vantry/transform/FieldAccess.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

// What a case without a value contributes to a history: the missing value of the variable's kind.
ScoreValue const& MissingOfKind(ScoreDictVar::VariableType type) {
    static NumericValue const missingNumber(NumericValue::GetSysmisValue());
    static StringValue const missingText{std::string()};
    return type == ScoreDictVar::STRING_VAR ? static_cast<ScoreValue const&>(missingText) : missingNumber;
}

// Moves a history on by one case. Until it holds count values it grows; from then on it is a ring whose
// oldest value, at head, is overwritten in place, so that a full history allocates nothing.
void Push(std::deque<ScoreValue*>& history, size_t& head, size_t count, ScoreValue const& value) {
    if (history.size() < count) {
        history.push_back(value.Clone());
        return;
    }
    ScoreValue*& slot = history[head];
    if (slot != nullptr && ScoreValue::TypeOf(*slot) == ScoreValue::TypeOf(value)) {
        slot->SetValue(&value);
    } else {
        delete slot;
        slot = nullptr;
        slot = value.Clone();
    }
    head = (head + 1) % count;
}

}  // namespace

ScoreValue const* TransformVar::BlockValue(size_t block, ScoreCaseRecord const* record,
                                           ScoreDictionary const* dictionary,
                                           ScoreDictionary const* transformations) {
    if (fBlockVariables[block] == this) {
        return nullptr;
    }
    return ReadField(fBlockVariables[block], fBlockIndexes[block], record, dictionary, transformations);
}

ScoreValue const* TransformVar::GetLagValue(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                            ScoreDictionary const* transformations,
                                            ScoreValue const* current) {
    size_t const count = fLagCount > 0 ? static_cast<size_t>(fLagCount) : 1;
    if (fBlockHistories.size() < fBlockVariables.size()) {
        fBlockHistories.resize(fBlockVariables.size());
    }
    if (fBlockIndexes.size() != fBlockVariables.size()) {
        // First case: bind the block fields by name to the dictionaries evaluated with, so that a copy
        // of this variable uses its own dictionaries' variables.
        fBlockIndexes.assign(fBlockVariables.size(), -1);
        for (size_t i = 0; i < fBlockVariables.size() && i < fBlockNames.size(); ++i) {
            ScoreDictVar const* found = FindVariable(fBlockNames[i], dictionary, transformations);
            if (found != nullptr) {
                fBlockVariables[i] = found;
            }
        }
    }

    if (fBlockHeads.size() != fBlockHistories.size()) {
        fBlockHeads.resize(fBlockHistories.size(), 0);
    }
    bool sameBlock = true;
    for (size_t i = 0; i < fBlockVariables.size(); ++i) {
        if (fBlockVariables[i] == nullptr) {
            continue;
        }
        ScoreValue const* value = BlockValue(i, record, dictionary, transformations);
        ScoreValue const& blockValue = value != nullptr ? *value : MissingOfKind(kNUMERIC_VAR);
        std::deque<ScoreValue*>& history = fBlockHistories[i];
        if (history.size() == count) {
            ScoreValue const* oldest = history[fBlockHeads[i]];
            if (oldest == nullptr || !(*oldest == blockValue)) {
                sameBlock = false;
            }
        }
        Push(history, fBlockHeads[i], count, blockValue);
    }

    VariableType const type = fVarType;
    bool answered = false;
    if (fHistory.size() == count) {
        ScoreValue const* oldest = fHistory[fHistoryHead];
        if (sameBlock && oldest != nullptr) {
            if (type == kNUMERIC_VAR || type == DATETIME_VAR) {
                fNumericScratch->SetDoubleValue(oldest->GetDouble());
            } else {
                fStringScratch->SetString(ScoreValue::TextOf(*oldest));
            }
            answered = true;
        }
    }
    Push(fHistory, fHistoryHead, count, current != nullptr ? *current : MissingOfKind(type));

    if (type == kNUMERIC_VAR || type == DATETIME_VAR) {
        if (!answered) {
            fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
        }
        return fNumericScratch;
    }
    if (!answered) {
        fStringScratch->SetString(std::string());
    }
    return fStringScratch;
}

}  // namespace QXVantry_920
