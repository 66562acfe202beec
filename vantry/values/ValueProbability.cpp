#include "vantry/values/ValueProbability.h"

#include "vantry/values/HeldValue.h"

namespace QXVantry_920 {

using detail::Relate;
using detail::Relation;

namespace {

// From 0 to 1 inclusive; NaN fails both comparisons.
bool IsProbability(double p) {
    return p >= 0.0 && p <= 1.0;
}

}  // namespace

ScoreValueProbability::~ScoreValueProbability() = default;

ValueProbability::ValueProbability() : fProbability(0.0) {}

ValueProbability::ValueProbability(ScoreValue* value, double probability)
    : fValue(value), fProbability(probability) {}

ValueProbability::ValueProbability(ValueProbability const& other)
    : ScoreValueProbability(other),
      fValue(other.fValue ? other.fValue->Clone() : nullptr),
      fProbability(other.fProbability) {}

ValueProbability& ValueProbability::operator=(ValueProbability const& other) {
    fValue.reset();
    fProbability = other.fProbability;
    return *this;
}

ValueProbability::~ValueProbability() = default;

bool ValueProbability::SetValueProbability(ScoreValue* value, double probability) {
    if (value == nullptr || !IsProbability(probability)) {
        return false;
    }
    static_cast<void>(fValue.release());
    fValue.reset(value);
    fProbability = probability;
    return true;
}

bool ValueProbability::SetProbability(double probability) {
    if (!IsProbability(probability)) {
        return false;
    }
    fProbability = probability;
    return true;
}

ScoreValueProbability* ValueProbability::Clone() const {
    return new ValueProbability(*this);
}

bool ValueProbability::operator==(ScoreValueProbability const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kEqual);
}

bool ValueProbability::operator>(ScoreValueProbability const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kGreater);
}

bool ValueProbability::operator<(ScoreValueProbability const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kLess);
}

bool ValueProbability::operator<=(ScoreValueProbability const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kLessOrEqual);
}

bool ValueProbability::operator>=(ScoreValueProbability const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kGreaterOrEqual);
}

double ValueProbability::GetProbability() const {
    return fProbability;
}

ScoreValue const* ValueProbability::GetValue() const {
    return fValue.get();
}

void ValueProbability::Display(std::ostream& out) const {
    out << "Value: ";
    detail::WriteHeldValue(out, fValue.get());
    out << ";  "
        << "Probability: " << fProbability << "\n";
}

ScoreValueProbabilitySet::~ScoreValueProbabilitySet() = default;

ValueProbabilitySet::ValueProbabilitySet() = default;

ValueProbabilitySet::ValueProbabilitySet(ValueProbabilitySet const& other) = default;

ValueProbabilitySet& ValueProbabilitySet::operator=(ValueProbabilitySet const& other) = default;

ValueProbabilitySet::~ValueProbabilitySet() = default;

ScoreValueProbabilitySet* ValueProbabilitySet::Clone() const {
    return new ValueProbabilitySet(*this);
}

bool ValueProbabilitySet::Add(ScoreValueProbability* probability) {
    return fProbabilities.Append(probability);
}

bool ValueProbabilitySet::Remove(ScoreValueProbability const* probability) {
    return fProbabilities.RemoveFirstEqual(probability);
}

int ValueProbabilitySet::Size() const {
    return static_cast<int>(fProbabilities.Size());
}

std::vector<ScoreValueProbability*> const& ValueProbabilitySet::GetAllValueProbabilities() const {
    return fProbabilities.Items();
}

double ValueProbabilitySet::GetProbabilityOfValue(ScoreValue const* value) const {
    ScoreValueProbability const* const match = detail::FindHolding(fProbabilities, value);
    return match != nullptr ? match->GetProbability() : 0.0;
}

bool ValueProbabilitySet::Contains(ScoreValue const* value) const {
    return detail::FindHolding(fProbabilities, value) != nullptr;
}

void ValueProbabilitySet::Display(std::ostream& out) const {
    out << "Start ScoreValueProbabilitySet Display:\n";
    fProbabilities.DisplayEach(out);
    out << "End of ScoreValueProbabilitySet Display.\n\n";
}

}  // namespace QXVantry_920
