// The normalization methods of regression models: how the linear values of the tables become a
// predicted number (regression) or the probabilities of the categories (classification).
#pragma once

#include <string>
#include <vector>

namespace QXVantry_920 {

enum class Normalization { kNone, kSimplemax, kSoftmax, kLogit, kProbit, kCloglog, kExp, kLoglog, kCauchit };

// False for a text that names no method.
bool NormalizationFromText(std::string const& text, Normalization& method);

// The predicted number of a regression from its one linear value.
double NormalizeRegression(Normalization method, double y);

// The probabilities of the categories from one linear value per category, in place. `ordinal` selects
// cumulative probabilities for the link functions when there are more than two categories. False when
// the values give no probabilities (simplemax over a zero sum).
bool NormalizeClassification(Normalization method, bool ordinal, std::vector<double>& values);

}  // namespace QXVantry_920
