#include "vantry/values/ScoreSplitVar.h"

#include <cmath>
#include <ostream>

#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

DiscreteSplit::DiscreteSplit(ScoreDictVar const* var) : ScoreSplitVar(var), fStartIndex(-1), fEndIndex(-1) {}

DiscreteSplit::DiscreteSplit(DiscreteSplit const& other)
    : ScoreSplitVar(other), fStartIndex(other.fStartIndex), fEndIndex(other.fEndIndex) {
    AppendClones(fValuePairs, other.fValuePairs);
}

DiscreteSplit& DiscreteSplit::operator=(DiscreteSplit const& other) {
    if (this != &other) {
        AppendClones(fValuePairs, other.fValuePairs);
        ScoreSplitVar::operator=(other);
        fStartIndex = other.fStartIndex;
        fEndIndex = other.fEndIndex;
    }
    return *this;
}

DiscreteSplit::~DiscreteSplit() = default;

ScoreSplitVar* DiscreteSplit::Clone() const {
    return new DiscreteSplit(*this);
}

ScoreSplitVar::SplitVarType DiscreteSplit::GetSplitVarType() {
    return DISCRETE_SPLIT;
}

int DiscreteSplit::GetSplitChildIndex(double x) const {
    if (x < 0.0 && GetSplitMLevel() == ScoreDictVar::MEASURE_NOMINAL) {
        return fMissvalMap;
    }
    if (std::isnan(x)) {
        return -1;  // equal to no number of the map, and not comparable with its keys
    }
    auto found = fNumberMap.find(x);
    return found == fNumberMap.end() ? -1 : found->second;
}

int DiscreteSplit::GetSplitChildIndex(ScoreValue const* value) const {
    if (value == nullptr) {
        return fMissvalMap;
    }
    bool isString = GetSplitType() == ScoreDictVar::STRING_VAR;
    bool noSpaceTrim = isString && fSplitVar->GetNoSpaceTrim();
    bool emptyStringOK = isString && fSplitVar->GetEmptyStringOK();
    for (auto const& [category, child] : fValuePairs) {
        bool match = isString ? category->Equal(value, noSpaceTrim, emptyStringOK) : *category == *value;
        if (match) {
            return child;
        }
    }
    return -1;
}

void DiscreteSplit::Display(std::ostream& out) const {
    out << "SplitVarName = " << GetSplitName();
    if (GetSplitMLevel() == ScoreDictVar::MEASURE_NOMINAL) {
        out << "; Var type: Categorical\n";
    } else {
        out << "; Var type: Ordinal\n";
    }
    out << "Missing Value index: " << fMissvalMap << "\n";
    if (fStartIndex >= 0 && fEndIndex >= 0) {
        out << "Split value index starts from  " << fStartIndex << " to " << fEndIndex << "\n";
    }
    for (auto const& [value, child] : fValuePairs) {
        out << "Value = " << ScoreValue::TextOf(*value) << "; "
            << "Index = " << child << "\n";
    }
    out << "\n";
}

void DiscreteSplit::PutSplit(double x, int childIndex) {
    if (!std::isnan(x)) {  // no number would ever find it
        fNumberMap.emplace(x, childIndex);
    }
}

void DiscreteSplit::PutSplit(ScoreValue* value, int childIndex) {
    if (value != nullptr) {
        fValuePairs.emplace_back(value, childIndex);
    }
}

std::vector<ScoreValue const*> DiscreteSplit::GetSplitValues() {
    std::vector<ScoreValue const*> values;
    values.reserve(fValuePairs.size());
    for (auto const& pair : fValuePairs) {
        values.push_back(pair.first.get());
    }
    return values;
}

std::vector<ScoreValue const*> DiscreteSplit::GetSplitValuesForIndex(int childIndex) {
    std::vector<ScoreValue const*> values;
    for (auto const& [value, child] : fValuePairs) {
        if (child == childIndex) {
            values.push_back(value.get());
        }
    }
    return values;
}

std::vector<ScoreValue const*> DiscreteSplit::GetSplitValuesFirst() {
    std::vector<ScoreValue const*> values;
    if (!fValuePairs.empty()) {
        values.push_back(fValuePairs.front().first.get());
    }
    return values;
}

void DiscreteSplit::SetStartAndEndIndex(int start, int end) {
    fStartIndex = start;
    fEndIndex = end;
}

void DiscreteSplit::GetStartAndEndIndex(int& start, int& end) {
    start = fStartIndex;
    end = fEndIndex;
}

}  // namespace QXVantry_920
