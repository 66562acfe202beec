#include "vantry/values/MissingValueSet.h"

namespace QXVantry_920 {

ScoreMissingValueSet::~ScoreMissingValueSet() = default;

MissingValueSet::MissingValueSet() = default;

MissingValueSet::MissingValueSet(MissingValueSet const& other) = default;

MissingValueSet& MissingValueSet::operator=(MissingValueSet const& other) = default;

MissingValueSet::~MissingValueSet() = default;

ScoreMissingValueSet* MissingValueSet::Clone() const {
    return new MissingValueSet(*this);
}

bool MissingValueSet::Add(ScoreValueRange* range) {
    return !Contains(range) && fRanges.Append(range);
}

bool MissingValueSet::Remove(ScoreValueRange const* range) {
    return fRanges.RemoveAllEqual(range);
}

int MissingValueSet::Size() const {
    return static_cast<int>(fRanges.Size());
}

bool MissingValueSet::Contains(ScoreValueRange const* range) const {
    return fRanges.ContainsEqual(range);
}

std::vector<ScoreValueRange const*> MissingValueSet::GetMissingValues() const {
    return std::vector<ScoreValueRange const*>(fRanges.Items().begin(), fRanges.Items().end());
}

bool MissingValueSet::AnyRangeHolds(ScoreValue const* value) const {
    for (ScoreValueRange const* range : fRanges.Items()) {
        if (range->IsInRange(value)) {
            return true;
        }
    }
    return false;
}

void MissingValueSet::Display(std::ostream& out) const {
    out << " Begin MissingValueSet Display:\n";
    fRanges.DisplayEach(out);
    out << "End MissingValueSet Display.\n";
}

}  // namespace QXVantry_920
