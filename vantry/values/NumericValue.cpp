#include <cmath>
#include <locale>
#include <sstream>

#include "vantry/values/NumberText.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

ScoreValue::~ScoreValue() = default;

ScoreValue::ValueType ScoreValue::TypeOf(ScoreValue const& value) {
    return const_cast<ScoreValue&>(value).GetType();
}

std::string ScoreValue::TextOf(ScoreValue const& value) {
    return const_cast<ScoreValue&>(value).GetString();
}

// Built by the constexpr default constructor, so SYSMIS is constant-initialised like the doubles it
// copies and does not depend on the order of load-time initialisation.
NumericValue const NumericValue::SYSMIS;

namespace {

// The absolute tolerance of the relational operators, distinct from the relative fEpsilon.
constexpr double kRelationalTolerance = 1e-14;

// The frame of the relational operators: false when either side is system-missing (each asked through
// its own virtual test), otherwise d is the left stored double minus the right's GetDouble. There is no
// type test, so a string contributes its GetDouble and a date-time its scaled double.
bool RelationalDifference(ScoreValue const& left, double leftStored, ScoreValue const& right, double& d) {
    if (left.IsSystemMissingValue() || right.IsSystemMissingValue()) {
        return false;
    }
    d = leftStored - right.GetDouble();
    return true;
}

}  // namespace

NumericValue::NumericValue(double value) : fValue(value) {}

NumericValue::NumericValue(NumericValue const& other) : ScoreValue(other), fValue(other.fValue) {}

NumericValue::NumericValue(std::string const& text) : fValue(gSysmisValue) {
    FromString(text);
}

NumericValue& NumericValue::operator=(NumericValue const& other) {
    fValue = other.fValue;
    return *this;
}

NumericValue::~NumericValue() = default;

void NumericValue::SetValue(ScoreValue const* value) {
    if (value != nullptr && TypeOf(*value) == NUMERIC_VALUE) {
        fValue = value->GetDouble();
    }
}

ScoreValue* NumericValue::GetValue() const {
    return new NumericValue(fValue);
}

ScoreValue* NumericValue::Clone() const {
    return new NumericValue(fValue);
}

bool NumericValue::operator==(ScoreValue const& other) const {
    return TypeOf(other) == NUMERIC_VALUE && IsEqual(fValue, other.GetDouble());
}

bool NumericValue::Equal(ScoreValue const*, bool, bool) const {
    return true;
}

bool NumericValue::operator>(ScoreValue const& other) const {
    double d;
    return RelationalDifference(*this, fValue, other, d) && !(std::fabs(d) < kRelationalTolerance) &&
           !(d < 0.0);
}

bool NumericValue::operator<(ScoreValue const& other) const {
    double d;
    return RelationalDifference(*this, fValue, other, d) && !(std::fabs(d) < kRelationalTolerance) && d < 0.0;
}

bool NumericValue::operator<=(ScoreValue const& other) const {
    double d;
    return RelationalDifference(*this, fValue, other, d) && (std::fabs(d) < kRelationalTolerance || d < 0.0);
}

bool NumericValue::operator>=(ScoreValue const& other) const {
    double d;
    return RelationalDifference(*this, fValue, other, d) &&
           (std::fabs(d) < kRelationalTolerance || !(d < 0.0));
}

bool NumericValue::IsSystemMissingValue() const {
    return fValue == gSysmisValue;
}

int NumericValue::GetInt() const {
    return numbertext::TruncateToInt32(fValue);
}

double NumericValue::GetDouble() const {
    return fValue;
}

std::string NumericValue::GetString() {
    if (fValue <= gSysmisValue) {
        return "Undefined";
    }
    // A fresh stream with default formatting (general, 6 significant digits) in the global locale.
    std::ostringstream out;
    out << fValue;
    return out.str();
}

ScoreValue::ValueType NumericValue::GetType() {
    return NUMERIC_VALUE;
}

void NumericValue::SetDoubleValue(double value) {
    fValue = value;
}

double NumericValue::GetSysmisValue() {
    return gSysmisValue;
}

double NumericValue::GetInfinity() {
    return gInfinity;
}

bool NumericValue::IsSystemMissingValue(double value) {
    return std::fabs(value - gSysmisValue) < fEpsilon;
}

bool NumericValue::IsEqual(double a, double b) {
    static_assert(numbertext::kSysmis == gSysmisValue && numbertext::kRelativeEpsilon == fEpsilon);
    return numbertext::SameNumber(a, b);
}

void NumericValue::FromString(std::string const& text) {
    fValue = gSysmisValue;
    if (text.empty()) {
        return;
    }
    // The usual text, a plain decimal number, without a stream; the stream's read of anything else.
    if (numbertext::WholeDecimal(text, fValue)) {
        return;
    }
    if (numbertext::LeadingDouble(text) == gInfinity) {
        fValue = gInfinity;
        return;
    }
    // A failed extraction stores 0.0; a text of white space only leaves the missing value in place.
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    in >> fValue;
}

}  // namespace QXVantry_920
