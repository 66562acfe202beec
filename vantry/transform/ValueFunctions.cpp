// Built-in functions that compare whole values, and the category imputation of a continuous target.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>

#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ValueLabel.h"

namespace QXVantry_920 {

namespace {

// Deletes the values and empties the vector when it goes out of scope, whatever the answer.
class ValuesGuard {
  public:
    explicit ValuesGuard(std::vector<ScoreValue*>& values) : fValues(values) {}
    ~ValuesGuard() {
        for (ScoreValue* value : fValues) {
            delete value;
        }
        fValues.clear();
    }
    ValuesGuard(ValuesGuard const&) = delete;
    ValuesGuard& operator=(ValuesGuard const&) = delete;

  private:
    std::vector<ScoreValue*>& fValues;
};

// Two values of the same kind that are equal by the kind's own operator: so a number never equals a
// date or a text, whatever they hold.
bool SameKindAndEqual(std::vector<ScoreValue*> const& values) {
    ScoreValue const* left = values[0];
    ScoreValue const* right = values[1];
    if (left == nullptr || right == nullptr || ScoreValue::TypeOf(*left) != ScoreValue::TypeOf(*right)) {
        return false;
    }
    return *left == *right;
}

// Whether the tested value equals one of the list's values, by the tested value's operator.
bool Contains(std::vector<ScoreValue*> const& values, ScoreValue const& tested) {
    for (ScoreValue const* value : values) {
        if (value != nullptr && tested == *value) {
            return true;
        }
    }
    return false;
}

}  // namespace

double TransformationDictionary::equal(std::vector<ScoreValue*>& values) {
    ValuesGuard const guard(values);
    return values.size() == 2 && SameKindAndEqual(values) ? 1.0 : 0.0;
}

double TransformationDictionary::notEqual(std::vector<ScoreValue*>& values) {
    ValuesGuard const guard(values);
    return values.size() == 2 && SameKindAndEqual(values) ? 0.0 : 1.0;
}

double TransformationDictionary::isIn(std::vector<ScoreValue*>& values, ScoreValue* tested) {
    ValuesGuard const guard(values);
    std::unique_ptr<ScoreValue> const owned(tested);
    return tested != nullptr && Contains(values, *tested) ? 1.0 : 0.0;
}

double TransformationDictionary::isNotIn(std::vector<ScoreValue*>& values, ScoreValue* tested) {
    ValuesGuard const guard(values);
    std::unique_ptr<ScoreValue> const owned(tested);
    return tested != nullptr && Contains(values, *tested) ? 0.0 : 1.0;
}

// The category whose mean lies nearest to x, measured in its own standard deviations; the earlier one on
// a tie. A category without a label answers null rather than failing, so that bad data can never bring
// the host down: the caller then keeps the missing value.
ScoreValue const* TransformationDictionary::ImputeCatFieldMissingAgainstConTargetHandle(
    double x, std::vector<ScoreValueLabel*> const& labels, std::vector<double> const& means,
    std::vector<double> const& variances) {
    std::size_t const count = std::min(means.size(), variances.size());
    if (count == 0) {
        return nullptr;
    }
    auto const distance = [&](std::size_t i) { return std::fabs((x - means[i]) / std::sqrt(variances[i])); };
    std::size_t chosen = 0;
    double nearest = distance(0);
    for (std::size_t i = 1; i < count; ++i) {
        double const d = distance(i);
        if (d < nearest) {
            nearest = d;
            chosen = i;
        }
    }
    if (chosen >= labels.size() || labels[chosen] == nullptr) {
        return nullptr;
    }
    return labels[chosen]->GetValue();
}

}  // namespace QXVantry_920
