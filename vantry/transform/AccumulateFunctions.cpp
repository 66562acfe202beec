// Built-in functions over collected numbers. The missing number is skipped by the aggregates and makes
// the fixed-arity functions missing; the comparisons and logic treat it as the number it is.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "vantry/stats/QXDistFun.h"
#include "vantry/transform/FunctionSupport.h"
#include "vantry/transform/TransformationDictionary.h"

namespace QXVantry_920 {

using detail::IsSysmis;
using detail::kSysmis;
using QXMath_920::QXDistFun;

namespace {

using Numbers = std::vector<double>;

bool AnySysmis(Numbers const& numbers) {
    return std::any_of(numbers.begin(), numbers.end(), IsSysmis);
}

// The two numbers of a binary operation, or false when there are not exactly two or either is missing.
bool TwoPresent(Numbers const& numbers) {
    return numbers.size() == 2 && !AnySysmis(numbers);
}

bool ThreePresent(Numbers const& numbers) {
    return numbers.size() == 3 && !AnySysmis(numbers);
}

bool OnePresent(Numbers const& numbers) {
    return numbers.size() == 1 && !IsSysmis(numbers[0]);
}

// 1.0 or 0.0 by the relation of the two numbers, 0.0 unless there are exactly two.
template <class Relation>
double Compare(Numbers const& numbers, Relation relation) {
    return numbers.size() == 2 && relation(numbers[0], numbers[1]) ? 1.0 : 0.0;
}

// The normal density at z of a law of spread sd, written out with the given circle constant.
double Density(double z, double sd, double twoPi) {
    return std::exp(z * -0.5 * z) / std::sqrt(twoPi) / sd;
}

}  // namespace

double TransformationDictionary::Minus(Numbers const& numbers) {
    return TwoPresent(numbers) ? numbers[0] - numbers[1] : kSysmis;
}

double TransformationDictionary::Multiply(Numbers const& numbers) {
    return TwoPresent(numbers) ? numbers[0] * numbers[1] : kSysmis;
}

double TransformationDictionary::Divided(Numbers const& numbers) {
    return TwoPresent(numbers) && numbers[1] != 0.0 ? numbers[0] / numbers[1] : kSysmis;
}

double TransformationDictionary::ProductOperator(Numbers const& numbers) {
    double product = 1.0;
    bool any = false;
    for (double const x : numbers) {
        if (!IsSysmis(x)) {
            product *= x;
            any = true;
        }
    }
    return any ? product : kSysmis;
}

// Starts from the largest finite double, so that a list holding only that number counts as empty.
double TransformationDictionary::Min(Numbers const& numbers) {
    double const start = std::numeric_limits<double>::max();
    double smallest = start;
    for (double const x : numbers) {
        if (!IsSysmis(x) && x < smallest) {
            smallest = x;
        }
    }
    return smallest == start ? kSysmis : smallest;
}

double TransformationDictionary::Max(Numbers const& numbers) {
    double largest = kSysmis;
    for (double const x : numbers) {
        if (!IsSysmis(x) && (IsSysmis(largest) || x > largest)) {
            largest = x;
        }
    }
    return largest;
}

double TransformationDictionary::Sum(Numbers const& numbers) {
    double sum = 0.0;
    bool any = false;
    for (double const x : numbers) {
        if (!IsSysmis(x)) {
            sum += x;
            any = true;
        }
    }
    return any ? sum : kSysmis;
}

double TransformationDictionary::Mean(Numbers const& numbers) {
    double sum = 0.0;
    int count = 0;
    for (double const x : numbers) {
        if (!IsSysmis(x)) {
            sum += x;
            ++count;
        }
    }
    return count == 0 ? kSysmis : sum / count;
}

double TransformationDictionary::MedianOperator(Numbers const& numbers) {
    // A per-thread scratch list, so that a median per record allocates only while its size grows.
    thread_local Numbers present;
    present.clear();
    std::copy_if(numbers.begin(), numbers.end(), std::back_inserter(present),
                 [](double x) { return !IsSysmis(x); });
    if (present.empty()) {
        return kSysmis;
    }
    std::sort(present.begin(), present.end());
    std::size_t const middle = present.size() / 2;
    return present.size() % 2 == 1 ? present[middle] : (present[middle - 1] + present[middle]) * 0.5;
}

// The sample standard deviation through a scaled sum of squares: each deviation is divided by the largest
// one seen so far, so that squaring large deviations cannot overflow.
double TransformationDictionary::Sd(Numbers const& numbers) {
    double const mean = Mean(numbers);
    if (IsSysmis(mean)) {
        return kSysmis;
    }
    int count = 0;
    double scale = 0.0;
    double sum = 1.0;
    for (double const x : numbers) {
        if (IsSysmis(x)) {
            continue;
        }
        ++count;
        double const d = std::fabs(x - mean);
        if (d == 0.0) {
            continue;
        }
        if (d > scale) {
            sum = sum * (scale / d) * (scale / d) + 1.0;
            scale = d;
        } else {
            sum += (d / scale) * (d / scale);
        }
    }
    return count > 1 ? std::sqrt(sum / (count - 1)) * scale : kSysmis;
}

double TransformationDictionary::Variance(Numbers const& numbers) {
    double const sd = Sd(numbers);
    return IsSysmis(sd) ? kSysmis : std::pow(sd, 2.0);
}

double TransformationDictionary::AndOperator(Numbers const& numbers) {
    bool const all = std::all_of(numbers.begin(), numbers.end(), [](double x) { return x != 0.0; });
    return !numbers.empty() && all ? 1.0 : 0.0;
}

double TransformationDictionary::OrOperator(Numbers const& numbers) {
    return std::any_of(numbers.begin(), numbers.end(), [](double x) { return x != 0.0; }) ? 1.0 : 0.0;
}

double TransformationDictionary::NotOperator(Numbers const& numbers) {
    return numbers.size() == 1 && numbers[0] == 0.0 ? 1.0 : 0.0;
}

double TransformationDictionary::lessThan(Numbers const& numbers) {
    return Compare(numbers, [](double a, double b) { return a < b; });
}

double TransformationDictionary::lessOrEqual(Numbers const& numbers) {
    return Compare(numbers, [](double a, double b) { return a <= b; });
}

double TransformationDictionary::greaterThan(Numbers const& numbers) {
    return Compare(numbers, [](double a, double b) { return a > b; });
}

double TransformationDictionary::greaterOrEqual(Numbers const& numbers) {
    return Compare(numbers, [](double a, double b) { return a >= b; });
}

// (x, mean, sd). A spread not above 0 gives the lowest double, which is the missing number.
double TransformationDictionary::CdfNormal(Numbers const& numbers) {
    if (!ThreePresent(numbers)) {
        return kSysmis;
    }
    double const sd = numbers[2];
    if (!(sd > 0.0)) {
        return std::numeric_limits<double>::lowest();
    }
    return QXDistFun::prbnrm((numbers[0] - numbers[1]) / sd);
}

// (p, mean, sd).
double TransformationDictionary::IdfNormal(Numbers const& numbers) {
    return ThreePresent(numbers) ? QXDistFun::IdfNorm(numbers[0], numbers[1], numbers[2]) : kSysmis;
}

// (x, mean, sd). The circle constant here is the full double; stdNormalPDF keeps its shorter one.
double TransformationDictionary::PdfNormal(Numbers const& numbers) {
    if (!ThreePresent(numbers) || !(numbers[2] > 0.0)) {
        return kSysmis;
    }
    double const twoPi = 6.283185307179586;
    double const sd = numbers[2];
    double const z = (numbers[0] - numbers[1]) / sd;
    if (z == 0.0) {
        return (1.0 / std::sqrt(twoPi)) / sd;
    }
    return std::fabs(z) > 37.61 ? 0.0 : Density(z, sd, twoPi);
}

double TransformationDictionary::stdNormalCDF(Numbers const& numbers) {
    return OnePresent(numbers) ? QXDistFun::prbnrm(numbers[0]) : kSysmis;
}

double TransformationDictionary::stdNormalPDF(Numbers const& numbers) {
    return OnePresent(numbers) ? Density(numbers[0], 1.0, 6.2831853) : kSysmis;
}

double TransformationDictionary::Erf(Numbers const& numbers) {
    return OnePresent(numbers) ? 2.0 * QXDistFun::prbnrm(std::sqrt(2.0) * numbers[0]) - 1.0 : kSysmis;
}

// A probability not strictly between 0 and 1 gives the lowest double, which is the missing number.
double TransformationDictionary::stdNormalIDF(Numbers const& numbers) {
    if (!OnePresent(numbers)) {
        return kSysmis;
    }
    double const p = numbers[0];
    if (p == 0.5) {
        return 0.0;
    }
    if (!(p > 0.0 && p < 1.0)) {
        return std::numeric_limits<double>::lowest();
    }
    return QXDistFun::probit(p);
}

}  // namespace QXVantry_920
