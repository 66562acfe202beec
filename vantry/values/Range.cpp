#include "vantry/values/Range.h"

#include <limits>

#include "vantry/values/NumberText.h"

namespace QXVantry_920 {

namespace {

double const kInfinity = std::numeric_limits<double>::infinity();

bool IsNumeric(ScoreValue const& value) {
    return ScoreValue::TypeOf(value) == ScoreValue::NUMERIC_VALUE;
}

bool IsNumberOrDateTime(ScoreValue const& value) {
    ScoreValue::ValueType const type = ScoreValue::TypeOf(value);
    return type == ScoreValue::NUMERIC_VALUE || type == ScoreValue::DATETIME_VALUE;
}

// A range bound as Display writes it: as text, or as the double of GetDouble.
void WriteBound(std::ostream& out, ScoreValue const& bound, bool asText) {
    if (asText) {
        out << ScoreValue::TextOf(bound);
    } else {
        out << bound.GetDouble();
    }
}

}  // namespace

ScoreValueRange::~ScoreValueRange() = default;

Range::Range(Range const& other)
    : ScoreValueRange(other),
      fMinValue(other.fMinValue->Clone()),
      fMaxValue(other.fMaxValue->Clone()),
      fHighEnd(other.fHighEnd),
      fLowEnd(other.fLowEnd),
      fSingle(other.fSingle),
      fMinNumber(other.fMinNumber),
      fMaxNumber(other.fMaxNumber) {}

Range::Range(double min, double max, bool lowEnd, bool highEnd)
    : fMinValue(new NumericValue(min == NumericValue::GetSysmisValue() ? -kInfinity : min)),
      fMaxValue(new NumericValue(max)),
      fHighEnd(highEnd),
      fLowEnd(lowEnd),
      fSingle(min == max),
      fMinNumber(min),
      fMaxNumber(max) {}

Range::Range(ScoreValue* min, ScoreValue* max, bool lowEnd, bool highEnd)
    : fHighEnd(highEnd), fLowEnd(lowEnd), fSingle(false), fMinNumber(-kInfinity), fMaxNumber(kInfinity) {
    if (min == nullptr) {
        fMinValue.reset(new NumericValue(-kInfinity));
    } else {
        AdoptMin(min);
    }
    if (max != nullptr && max == min) {
        fMaxValue.reset(min->Clone());
    } else if (max == nullptr) {
        fMaxValue.reset(new NumericValue(kInfinity));
    } else {
        AdoptMax(max);
    }
    fSingle = *fMinValue == *fMaxValue;
}

Range::Range(ScoreValue* value)
    : fHighEnd(true), fLowEnd(true), fSingle(true), fMinNumber(-kInfinity), fMaxNumber(kInfinity) {
    if (value == nullptr) {
        fMinValue.reset(new NumericValue(-kInfinity));
        fMaxValue.reset(new NumericValue(kInfinity));
        return;
    }
    // The upper bound is cloned before a missing lower bound becomes negative infinity.
    fMaxValue.reset(value->Clone());
    AdoptMin(value);
    fMinNumber = fMinValue->GetDouble();
    fMaxNumber = fMaxValue->GetDouble();
}

Range& Range::operator=(Range const& other) {
    if (this != &other) {
        fMinValue.reset(other.fMinValue->Clone());
        fMaxValue.reset(other.fMaxValue->Clone());
        fHighEnd = other.fHighEnd;
        fLowEnd = other.fLowEnd;
        fSingle = other.fSingle;
        fMinNumber = other.fMinNumber;
        fMaxNumber = other.fMaxNumber;
    }
    return *this;
}

Range::~Range() = default;

bool Range::operator==(ScoreValueRange const& other) const {
    ScoreValue const* const otherMin = other.GetMin();
    ScoreValue const* const otherMax = other.GetMax();
    return otherMin != nullptr && otherMax != nullptr && *fMinValue == *otherMin && *fMaxValue == *otherMax &&
           fHighEnd == other.GetHighEnd() && fLowEnd == other.GetLowEnd();
}

ScoreValueRange* Range::Clone() const {
    return new Range(*this);
}

void Range::SetMin(ScoreValue* value) {
    if (value == nullptr) {
        return;
    }
    // The bound replaced is released, not deleted. The upper bound's own object would be owned twice,
    // so a clone of it is taken instead.
    static_cast<void>(fMinValue.release());
    AdoptMin(value == fMaxValue.get() ? value->Clone() : value);
    fSingle = *fMinValue == *fMaxValue;
}

void Range::SetMax(ScoreValue* value) {
    if (value == nullptr) {
        return;
    }
    static_cast<void>(fMaxValue.release());
    AdoptMax(value == fMinValue.get() ? value->Clone() : value);
    fSingle = *fMinValue == *fMaxValue;
}

bool Range::IsInRange(double value) const {
    if (fSingle) {
        return NumericValue::IsEqual(value, fMinNumber);
    }
    if (NumericValue::IsSystemMissingValue(value)) {
        return false;
    }
    return IsInInterval(value);
}

bool Range::IsInRange(ScoreValue const* value) const {
    if (value == nullptr) {
        return false;
    }
    if (fSingle) {
        return *value == *fMinValue;
    }
    if (!IsNumberOrDateTime(*value) || value->IsSystemMissingValue()) {
        return false;
    }
    return IsInInterval(value->GetDouble());
}

bool Range::HoldsNumber(double x) const {
    if (fSingle) {
        // A number equals only a numeric single value.
        return ScoreValue::TypeOf(*fMinValue) == ScoreValue::NUMERIC_VALUE &&
               NumericValue::IsEqual(x, fMinValue->GetDouble());
    }
    return x != numbertext::kSysmis && IsInInterval(x);
}

ScoreValue const* Range::GetMin() const {
    return fMinValue.get();
}

ScoreValue const* Range::GetMax() const {
    return fMaxValue.get();
}

bool Range::GetHighEnd() const {
    return fHighEnd;
}

bool Range::GetLowEnd() const {
    return fLowEnd;
}

void Range::Display(std::ostream& out) const {
    // The lower bound's kind decides how both bounds are written.
    bool const asText = !IsNumberOrDateTime(*fMinValue);
    out << "  Start Range Display   \n"
        << "MinValue: ";
    WriteBound(out, *fMinValue, asText);
    out << ";  MaxValue: ";
    WriteBound(out, *fMaxValue, asText);
    out << (fHighEnd ? "; High End included" : "; High End not included");
    out << (fLowEnd ? "; lower End included" : "; lower End not included");
    out << "\n End of Range Display\n\n";
}

void Range::AdoptMin(ScoreValue* value) {
    fMinValue.reset(value);
    if (IsNumeric(*value)) {
        if (value->IsSystemMissingValue()) {
            NumericValue const negativeInfinity(-kInfinity);
            value->SetValue(&negativeInfinity);
        }
        fMinNumber = value->GetDouble();
    }
}

void Range::AdoptMax(ScoreValue* value) {
    fMaxValue.reset(value);
    if (IsNumeric(*value)) {
        fMaxNumber = value->GetDouble();
    }
}

bool Range::IsInInterval(double value) const {
    if (fLowEnd && numbertext::SameNumber(value, fMinNumber)) {
        return true;
    }
    if (fHighEnd && numbertext::SameNumber(value, fMaxNumber)) {
        return true;
    }
    return value > fMinNumber && value < fMaxNumber;
}

}  // namespace QXVantry_920
