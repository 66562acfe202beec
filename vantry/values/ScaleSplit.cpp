#include "vantry/values/ScoreSplitVar.h"

#include <cmath>
#include <ostream>

#include "vantry/values/Range.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

ScaleSplit::ScaleSplit(ScoreDictVar const* var) : ScoreSplitVar(var) {}

ScaleSplit::ScaleSplit(ScaleSplit const& other) : ScoreSplitVar(other) {
    AppendClones(fRangePairs, other.fRangePairs);
}

ScaleSplit& ScaleSplit::operator=(ScaleSplit const& other) {
    if (this != &other) {
        AppendClones(fRangePairs, other.fRangePairs);
        ScoreSplitVar::operator=(other);
    }
    return *this;
}

ScaleSplit::~ScaleSplit() = default;

ScoreSplitVar* ScaleSplit::Clone() const {
    return new ScaleSplit(*this);
}

ScoreSplitVar::SplitVarType ScaleSplit::GetSplitVarType() {
    return SCALE_SPLIT;
}

int ScaleSplit::GetSplitChildIndex(double x) const {
    if (std::fabs(x - NumericValue::GetSysmisValue()) < 2.22045e-14) {
        return fMissvalMap;
    }
    for (auto const& [range, child] : fRangePairs) {
        if (range->IsInRange(x)) {
            return child;
        }
    }
    return -1;
}

int ScaleSplit::GetSplitChildIndex(ScoreValue const* value) const {
    if (value == nullptr || (fSplitVar != nullptr && fSplitVar->IsMissingValue(value))) {
        return fMissvalMap;
    }
    for (auto const& [range, child] : fRangePairs) {
        if (range->IsInRange(value)) {
            return child;
        }
    }
    return -1;
}

void ScaleSplit::Display(std::ostream& out) const {
    out << "SplitVarName = " << GetSplitName() << "\n"
        << "Missing Value index: " << fMissvalMap << "\n";
    for (auto const& [range, child] : fRangePairs) {
        out << "Index = " << child << "\n";
        range->Display(out);
    }
    out << "\n";
}

void ScaleSplit::PutSplit(ScoreValueRange* range, int childIndex) {
    if (range != nullptr) {
        fRangePairs.emplace_back(range, childIndex);
    }
}

ScoreValueRange const* ScaleSplit::GetSplitValueRangeFirst() const {
    return fRangePairs.empty() ? nullptr : fRangePairs.front().first.get();
}

ScoreValueRange const* ScaleSplit::GetSplitValueRangeForIndex(int childIndex) const {
    for (auto const& [range, child] : fRangePairs) {
        if (child == childIndex) {
            return range.get();
        }
    }
    return nullptr;
}

}  // namespace QXVantry_920
