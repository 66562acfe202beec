// The piecewise linear normalisation of a "NormContinuous" expression, with its treatment of values
// outside the origins.
#include <algorithm>
#include <cmath>

#include "vantry/transform/TransformVar.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

double TransformVar::GetNormValue(double x) {
    if (!IsOutOfContRange(x)) {
        return CalculateNormValue(x);
    }
    if (fOutlierTreatment == 2) {
        return CalculateNormAsExtremeValues(x);
    }
    // "asMissingValues" ends here too: outside the origins it extends the nearest line exactly as "asIs"
    // does. Models depend on that result.
    return CalculateNormAsIs(x);
}

bool TransformVar::IsOutOfContRange(double x) {
    if (fNormOrigins.size() < 2) {
        return false;
    }
    auto const [low, high] = std::minmax_element(fNormOrigins.begin(), fNormOrigins.end());
    return x > *high || x < *low;
}

double TransformVar::CalculateNormValue(double x) {
    if (fNormOrigins.empty() || fSlopes.empty() || fSlopes.size() != fIntercepts.size()) {
        return x;
    }
    if (fNormOrigins.size() < 2 || fSlopes.size() < 2) {
        return x * fSlopes.front() + fIntercepts.front();
    }
    size_t segment = fNormOrigins.size() - 1;
    for (size_t i = 0; i + 1 < fNormOrigins.size(); ++i) {
        if (fNormOrigins[i] <= x && x <= fNormOrigins[i + 1]) {
            segment = i;
            break;
        }
    }
    if (segment >= fSlopes.size()) {
        return x;
    }
    return x * fSlopes[segment] + fIntercepts[segment];
}

double TransformVar::CalculateNormAsIs(double x) {
    if (fNormOrigins.empty() || fSlopes.empty() || fSlopes.size() != fIntercepts.size()) {
        return x;
    }
    size_t segment = 0;
    if (fNormOrigins.size() >= 2 && fSlopes.size() >= 2) {
        auto const [low, high] = std::minmax_element(fNormOrigins.begin(), fNormOrigins.end());
        if (std::fabs(x - *low) > std::fabs(x - *high)) {
            segment = fSlopes.size() - 1;
        }
    }
    return x * fSlopes[segment] + fIntercepts[segment];
}

double TransformVar::CalculateNormAsExtremeValues(double x) {
    if (fNormOrigins.empty() || fNormTargets.empty() || fNormOrigins.size() != fNormTargets.size()) {
        return x;
    }
    auto const [low, high] = std::minmax_element(fNormOrigins.begin(), fNormOrigins.end());
    return std::fabs(x - *low) > std::fabs(x - *high) ? fNormTargets.back() : fNormTargets.front();
}

// Not reached from GetNormValue: outside values keep their extended line (see there).
double TransformVar::CalculateNormAsMissingValues(double /*x*/) {
    return fRecodeMissingValue != nullptr ? fRecodeMissingValue->GetDouble() : NumericValue::GetSysmisValue();
}

}  // namespace QXVantry_920
