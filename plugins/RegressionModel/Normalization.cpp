#include "plugins/RegressionModel/Normalization.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace QXVantry_920 {

namespace {

constexpr double kPi = 3.14159265358979323846;

// The inverse link of the methods that map one value to a probability.
double InverseLink(Normalization method, double y) {
    switch (method) {
        case Normalization::kSoftmax:
        case Normalization::kLogit:
            return 1.0 / (1.0 + std::exp(-y));
        case Normalization::kProbit:
            return 0.5 * std::erfc(-y / std::sqrt(2.0));
        case Normalization::kCloglog:
            return 1.0 - std::exp(-std::exp(y));
        case Normalization::kLoglog:
            return std::exp(-std::exp(-y));
        case Normalization::kCauchit:
            return 0.5 + std::atan(y) / kPi;
        case Normalization::kExp:
            return std::exp(y);
        case Normalization::kNone:
        case Normalization::kSimplemax:
            return y;
    }
    return y;
}

}  // namespace

bool NormalizationFromText(std::string const& text, Normalization& method) {
    static std::pair<char const*, Normalization> const kMethods[] = {{"", Normalization::kNone},
                                                                     {"none", Normalization::kNone},
                                                                     {"simplemax", Normalization::kSimplemax},
                                                                     {"softmax", Normalization::kSoftmax},
                                                                     {"logit", Normalization::kLogit},
                                                                     {"probit", Normalization::kProbit},
                                                                     {"cloglog", Normalization::kCloglog},
                                                                     {"exp", Normalization::kExp},
                                                                     {"loglog", Normalization::kLoglog},
                                                                     {"cauchit", Normalization::kCauchit}};
    for (auto const& entry : kMethods) {
        if (text == entry.first) {
            method = entry.second;
            return true;
        }
    }
    return false;
}

double NormalizeRegression(Normalization method, double y) {
    return InverseLink(method, y);
}

bool NormalizeClassification(Normalization method, bool ordinal, std::vector<double>& values) {
    std::size_t const n = values.size();
    if (n == 0) {
        return false;
    }
    if (method == Normalization::kSoftmax) {
        double const top = *std::max_element(values.begin(), values.end());
        double sum = 0.0;
        for (double& value : values) {
            value = std::exp(value - top);
            sum += value;
        }
        for (double& value : values) {
            value /= sum;
        }
        return true;
    }
    if (method == Normalization::kSimplemax) {
        double sum = 0.0;
        for (double value : values) {
            sum += value;
        }
        if (sum == 0.0) {
            return false;
        }
        for (double& value : values) {
            value /= sum;
        }
        return true;
    }
    if (ordinal && n > 2 && method != Normalization::kNone) {
        // Cumulative: each table gives P(category <= j); the last category takes the rest.
        double previous = 0.0;
        for (std::size_t j = 0; j + 1 < n; ++j) {
            double const cumulative = InverseLink(method, values[j]);
            values[j] = cumulative - previous;
            previous = cumulative;
        }
        values[n - 1] = 1.0 - previous;
        return true;
    }
    // Every category but the last by the inverse link; the last takes the rest.
    double sum = 0.0;
    for (std::size_t j = 0; j + 1 < n; ++j) {
        values[j] = InverseLink(method, values[j]);
        sum += values[j];
    }
    values[n - 1] = 1.0 - sum;
    return true;
}

}  // namespace QXVantry_920
