#include "vantry/values/ValueLabel.h"

#include "vantry/values/HeldValue.h"

namespace QXVantry_920 {

using detail::Relate;
using detail::Relation;

ScoreValueLabel::~ScoreValueLabel() = default;

ValueLbl::ValueLbl() = default;

ValueLbl::ValueLbl(ScoreValue* value, std::string const& label) : fValue(value), fLabel(label) {}

ValueLbl::ValueLbl(ValueLbl const& other)
    : ScoreValueLabel(other), fValue(other.fValue ? other.fValue->Clone() : nullptr), fLabel(other.fLabel) {}

ValueLbl& ValueLbl::operator=(ValueLbl const& other) {
    fValue.reset();
    fLabel = other.fLabel;
    return *this;
}

ValueLbl::~ValueLbl() = default;

bool ValueLbl::SetValueLabel(ScoreValue* value, std::string const& label) {
    if (value == nullptr || label.empty()) {
        return false;
    }
    static_cast<void>(fValue.release());
    fValue.reset(value);
    fLabel = label;
    return true;
}

bool ValueLbl::SetLabel(std::string const& label) {
    if (label.empty()) {
        return false;
    }
    fLabel = label;
    return true;
}

ScoreValueLabel* ValueLbl::Clone() const {
    return new ValueLbl(*this);
}

bool ValueLbl::operator==(ScoreValueLabel const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kEqual);
}

bool ValueLbl::operator>(ScoreValueLabel const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kGreater);
}

bool ValueLbl::operator<(ScoreValueLabel const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kLess);
}

bool ValueLbl::operator<=(ScoreValueLabel const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kLessOrEqual);
}

bool ValueLbl::operator>=(ScoreValueLabel const& other) const {
    return Relate(fValue.get(), other.GetValue(), Relation::kGreaterOrEqual);
}

std::string ValueLbl::GetLabel() {
    return fLabel;
}

ScoreValue const* ValueLbl::GetValue() const {
    return fValue.get();
}

void ValueLbl::Display(std::ostream& out) const {
    out << "Value: ";
    detail::WriteHeldValue(out, fValue.get());
    out << ";  "
        << "Label: " << fLabel << "\n";
}

ScoreValueLabelSet::~ScoreValueLabelSet() = default;

ValueLabelSet::ValueLabelSet() = default;

ValueLabelSet::ValueLabelSet(ValueLabelSet const& other) = default;

ValueLabelSet& ValueLabelSet::operator=(ValueLabelSet const& other) = default;

ValueLabelSet::~ValueLabelSet() = default;

ScoreValueLabelSet* ValueLabelSet::Clone() const {
    return new ValueLabelSet(*this);
}

bool ValueLabelSet::Add(ScoreValueLabel* label) {
    return fLabels.Append(label);
}

bool ValueLabelSet::Remove(ScoreValueLabel const* label) {
    return fLabels.RemoveFirstEqual(label);
}

int ValueLabelSet::Size() const {
    return static_cast<int>(fLabels.Size());
}

std::vector<ScoreValueLabel*> const& ValueLabelSet::GetAllValueLabels() const {
    return fLabels.Items();
}

std::string ValueLabelSet::GetLabelOfValue(ScoreValue const* value) {
    ScoreValueLabel* const label = detail::FindHolding(fLabels, value);
    return label != nullptr ? label->GetLabel() : std::string();
}

bool ValueLabelSet::Contains(ScoreValue const* value) const {
    return detail::FindHolding(fLabels, value) != nullptr;
}

void ValueLabelSet::Display(std::ostream& out) const {
    out << "Start ScoreValueLabelSet Display:\n";
    fLabels.DisplayEach(out);
    out << "End of ScoreValueLabelSet Display.\n\n";
}

}  // namespace QXVantry_920
