#include "vantry/values/MissingValueSet.h"

namespace QXVantry_920 {

ScoreMissingValueSet::~ScoreMissingValueSet() = default;

MissingValueSet::MissingValueSet() = default;

MissingValueSet::MissingValueSet(MissingValueSet const& other) : fRanges(other.fRanges) {
    IndexRanges();
}

MissingValueSet& MissingValueSet::operator=(MissingValueSet const& other) {
    if (this != &other) {
        fRanges = other.fRanges;
        IndexRanges();
    }
    return *this;
}

MissingValueSet::~MissingValueSet() = default;

ScoreMissingValueSet* MissingValueSet::Clone() const {
    return new MissingValueSet(*this);
}

bool MissingValueSet::Add(ScoreValueRange* range) {
    bool const added = !Contains(range) && fRanges.Append(range);
    IndexRanges();
    return added;
}

bool MissingValueSet::Remove(ScoreValueRange const* range) {
    bool const removed = fRanges.RemoveAllEqual(range);
    IndexRanges();
    return removed;
}

void MissingValueSet::IndexRanges() {
    fOwnRanges.clear();
    fAllOwn = true;
    for (ScoreValueRange const* range : fRanges.Items()) {
        auto const* own = dynamic_cast<Range const*>(range);
        fAllOwn = fAllOwn && own != nullptr;
        fOwnRanges.push_back(own);
    }
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
    if (fAllOwn && value != nullptr && ScoreValue::TypeOf(*value) == ScoreValue::NUMERIC_VALUE) {
        double const x = value->GetDouble();
        for (Range const* range : fOwnRanges) {
            if (range->HoldsNumber(x)) {
                return true;
            }
        }
        return false;
    }
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
