#include "vantry/values/VarStats.h"

namespace QXVantry_920 {

ScoreVarStats::~ScoreVarStats() = default;

VarStats::VarStats() : VarStats(NumericValue::GetSysmisValue(), -NumericValue::GetSysmisValue(), 0.0, 1.0) {}

VarStats::VarStats(double min, double max, double mean, double stddev)
    : fMin(min), fMax(max), fMean(mean), fStddev(stddev) {}

VarStats::VarStats(VarStats const& other)
    : ScoreVarStats(other),
      fMin(other.fMin),
      fMax(other.fMax),
      fMean(other.fMean),
      fStddev(other.fStddev),
      fMissingReplacement(other.fMissingReplacement ? other.fMissingReplacement->Clone() : nullptr) {}

VarStats& VarStats::operator=(VarStats const& other) {
    if (this != &other) {
        fMin = other.fMin;
        fMax = other.fMax;
        fMean = other.fMean;
        fStddev = other.fStddev;
        SetMissingReplacement(other.fMissingReplacement.get());
    }
    return *this;
}

VarStats::~VarStats() = default;

ScoreVarStats* VarStats::Clone() const {
    return new VarStats(*this);
}

void VarStats::SetMin(double min) {
    fMin = min;
}

void VarStats::SetMax(double max) {
    fMax = max;
}

void VarStats::SetStddev(double stddev) {
    fStddev = stddev;
}

void VarStats::SetMean(double mean) {
    fMean = mean;
}

void VarStats::SetMissingReplacement(ScoreValue const* value) {
    fMissingReplacement.reset(value != nullptr ? value->Clone() : nullptr);
}

double VarStats::GetMin() const {
    return fMin;
}

double VarStats::GetMax() const {
    return fMax;
}

double VarStats::GetStddev() const {
    return fStddev;
}

double VarStats::GetMean() const {
    return fMean;
}

ScoreValue const* VarStats::GetMissingReplacement() const {
    return fMissingReplacement.get();
}

}  // namespace QXVantry_920
