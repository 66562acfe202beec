// Estimators on grouped data: a distribution-free confidence interval of the median and a percentile of
// grouped frequencies.
#include <cstddef>
#include <vector>

#include "vantry/stats/DistSupport.h"
#include "vantry/stats/QXDistFun.h"

namespace QXMath_920 {

using dist::Missing;

void QXDistFun::Mednci(long n, std::vector<double> const& values, std::vector<double> const& weights,
                       double total, double confidence, bool wantCoverage, double& lower, double& upper,
                       double& coverage) {
    lower = Missing();
    upper = Missing();
    coverage = Missing();
    if (n < 1 || values.size() < static_cast<std::size_t>(n) ||
        weights.size() < static_cast<std::size_t>(n)) {
        return;
    }
    std::size_t const last = static_cast<std::size_t>(n) - 1;
    if (total == 2.0) {
        lower = values[0];
        upper = values[last];
        coverage = 100.0;
    }
    if (!(total > 2.0)) {
        return;
    }
    // r: the largest count of the binomial law of half the cases below the median with tail (100 -
    // confidence) / 200; the interval runs from order statistic r + 1 to total - r.
    long error = 0;
    double const r = IdfBin(0.5 - confidence / 200.0, total, 0.5, error);
    if (error != 0) {
        return;
    }
    if (r < 0.0) {
        lower = values[0];
        upper = values[last];
        coverage = 100.0;
        return;
    }

    double rl = r + 1.0;
    if (rl < total) {
        double sum = 0.0;
        std::size_t i = 0;
        for (; i < last; ++i) {
            sum += weights[i];
            if (sum >= rl) {
                break;
            }
        }
        lower = values[i];
    } else {
        rl = total;
        lower = values[last];
    }

    double ru = total - r;
    if (ru > 1.0) {
        double remaining = total;
        std::size_t i = last;
        for (; i > 0; --i) {
            remaining -= weights[i];
            if (ru > remaining) {
                break;
            }
        }
        upper = values[i];
    } else {
        ru = 1.0;
        upper = values[0];
    }

    if (wantCoverage) {
        long inner = 0;
        double const c = (cdfbet(0.5, rl, ru, inner) - 0.5) * 200.0;
        coverage = inner != 0 ? Missing() : (c < 0.0 ? 0.0 : c);
    }
}

namespace {

// The class in which a percentile falls: its bounds and the cumulative frequencies at them.
struct Bracket {
    bool found = false;
    double lo = 0.0;
    double hi = 0.0;
    double prev = 0.0;
    double cum = 0.0;

    void Set(double lower, double upper, double atLower, double atUpper) {
        found = true;
        lo = lower;
        hi = upper;
        prev = atLower;
        cum = atUpper;
    }
};

// Linear interpolation of the percentile T inside its class. A bound that is missing may only carry a
// weight of 0.
double Interpolate(double T, Bracket const& b) {
    double const d = b.cum - b.prev;
    if (d == 0.0) {
        return Missing();
    }
    double const f = (T - b.prev) / d;
    if (f == 0.0) {
        return b.lo;
    }
    if ((f != 1.0 && dist::IsMissing(b.lo)) || dist::IsMissing(b.hi)) {
        return Missing();
    }
    return f == 1.0 ? b.hi : (1.0 - f) * b.lo + f * b.hi;
}

}  // namespace

void QXDistFun::GPTile(long n, double percent, std::vector<double> const& values,
                       std::vector<double> const& counts, std::vector<double> const& limits, long limitCount,
                       double& result, long& status) {
    result = Missing();
    status = -1;
    std::size_t const size = n > 0 ? static_cast<std::size_t>(n) : 0;
    if (n < 2 || values.size() < size || counts.size() < size) {
        return;
    }
    if (limitCount > 0 && limits.size() < static_cast<std::size_t>(limitCount)) {
        return;
    }
    status = 0;
    double sum = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        sum += counts[i];
    }
    double const T = sum * percent / 100.0;
    Bracket bracket;

    if (limitCount <= 0) {
        // Each class is a point at the cumulative frequency of its centre.
        std::vector<double> centre(size);
        double cum = 0.0;
        for (std::size_t i = 0; i < size; ++i) {
            centre[i] = cum + counts[i] / 2.0;
            cum += counts[i];
        }
        if (T < centre[0]) {
            status = 1;
            return;
        }
        if (T > centre[size - 1]) {
            status = 2;
            return;
        }
        for (std::size_t i = 1; i < size && !bracket.found; ++i) {
            if (T == centre[i - 1] && T == centre[i]) {
                // Two centres in a row at T: step one class back.
                bool const before = i >= 2;
                bracket.Set(before ? values[i - 2] : Missing(), values[i - 1], before ? centre[i - 2] : 0.0,
                            centre[i - 1]);
            } else if (centre[i - 1] <= T && T < centre[i]) {
                bracket.Set(values[i - 1], values[i], centre[i - 1], centre[i]);
            }
        }
        if (!bracket.found) {
            result = values[size - 1];  // T is the last centre
            return;
        }
    } else if (limitCount == 1) {
        // Classes of a fixed width around their values.
        double const half = limits[0] / 2.0;
        double prev = 0.0;
        double cum = 0.0;
        for (std::size_t i = 0; i < size && !bracket.found; ++i) {
            prev = cum;
            cum += counts[i];
            if (i > 0 && T == prev && T == cum) {
                bracket.Set(values[i - 1] - half, values[i - 1] + half, 0.0, T);
            } else if (prev <= T && T < cum) {
                bracket.Set(values[i] - half, values[i] + half, prev, cum);
            }
        }
        if (!bracket.found) {
            if (T == cum) {
                result = values[size - 1] + half;
            }
            return;
        }
    } else {
        // Explicit boundaries; the last class reaches as far above its lower bound as the first value above
        // that bound lies.
        std::size_t const classes = static_cast<std::size_t>(limitCount);
        double lo = limits[0];
        double loBefore = lo;
        double prev = 0.0;
        double prevBefore = 0.0;
        for (std::size_t j = 1; j <= classes && !bracket.found; ++j) {
            double hi = Missing();
            if (j < classes) {
                hi = limits[j];
            } else {
                for (std::size_t i = 0; i < size; ++i) {
                    if (values[i] > lo) {
                        hi = 2.0 * values[i] - lo;
                        break;
                    }
                }
            }
            double cum = 0.0;
            for (std::size_t i = 0; i < size; ++i) {
                if (values[i] < hi) {
                    cum += counts[i];
                }
            }
            if (T == 0.0 && cum == 0.0) {
                result = limits[0];
                return;
            }
            if (j == classes && T == cum && prev != T) {
                result = hi;
                return;
            }
            if (j >= 2 && T == prev && T == cum) {
                bracket.Set(loBefore, lo, prevBefore, prev);
            } else if (prev <= T && T <= cum) {
                bracket.Set(lo, hi, prev, cum);
            }
            prevBefore = prev;
            prev = cum;
            loBefore = lo;
            lo = hi;
        }
        if (!bracket.found) {
            return;
        }
    }
    result = Interpolate(T, bracket);
}

}  // namespace QXMath_920
