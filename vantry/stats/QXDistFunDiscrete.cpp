// The counting laws: binomial, negative binomial and hypergeometric probabilities and cumulative
// probabilities.
#include <algorithm>
#include <cmath>

#include "vantry/stats/DistSupport.h"
#include "vantry/stats/QXDistFun.h"

namespace QXMath_920 {

using dist::IsWhole;
using dist::kExpCeiling;
using dist::kExpFloor;
using dist::kExpFloorTight;
using dist::Missing;

namespace {

// Hypergeometric tails are summed on a scale of 1e35, so that terms far below the point probability do not
// underflow before they stop mattering.
constexpr double kHyperScale = 1e35;

// Adds the terms of a binomial tail to `sum`, starting from `term` at count `from` and moving one count at a
// time towards `to`; `ratio(i)` turns the term at the previous count into the term at count i. Stops as soon
// as the sum no longer grows. Answers false if the term cap was reached first.
template <typename Ratio>
bool SumBinomialTail(double term, double from, double to, double step, Ratio ratio, double& sum) {
    double steps = 0.0;
    for (double i = from + step; step < 0.0 ? i >= to : i <= to; i += step) {
        if (++steps > dist::kBinomialStepCap) {
            return false;
        }
        term *= ratio(i);
        double const next = sum + term;
        if (next == sum) {
            break;
        }
        sum = next;
    }
    return true;
}

// The normal deviate of Peizer and Pratt's approximation of the binomial cumulative probability at k < n.
double PeizerPrattDeviate(double k, double n, double p, double q) {
    double const d1 = k / n - p;
    double const d = 0.5 / n + d1;
    if (d == 0.0) {
        return 0.0;
    }
    double const s = d + p;
    double const t = 1.0 - s;
    double const h = t * std::log(t / q) + s * std::log(s / p);
    if (!(h > 0.0)) {
        return 0.0;
    }
    double const numerator =
        ((q / (k + 1.0) - p / (n - k)) + (0.5 - p) / (n + 1.0)) / (50.0 * n) + (2.0 - p) / (3.0 * n) + d1;
    return numerator / std::fabs(d) * std::sqrt(2.0 * h) * n / std::sqrt(n + 1.0 / 6.0);
}

}  // namespace

double QXDistFun::CdfBin(double x, double n, double p, long& error) {
    error = 0;
    if (!std::isfinite(n) || !IsWhole(n)) {
        error = 3;
        return Missing();
    }
    if (n < 1.0 || !(p >= 0.0 && p <= 1.0) || std::isnan(x)) {
        error = 1;
        return Missing();
    }
    double const k = std::floor(x);
    double const q = 1.0 - p;
    if (p == 0.0) {
        return k < 0.0 ? 0.0 : 1.0;
    }
    if (p == 1.0) {
        return k < n ? 0.0 : 1.0;
    }
    if (k < 0.0) {
        return 0.0;
    }
    if (k == 0.0) {
        return dist::ExpAbove(n * std::log(q), kExpFloor);
    }
    if (k >= n) {
        return 1.0;
    }

    // Start at the mode, or at k if that lies below it, and sum outwards.
    double const m = std::floor((n + 1.0) * p);
    double const j = std::min(k, m);
    double lp;
    if (j == 0.0) {
        lp = n * std::log(q);
    } else if (j == n) {
        lp = n * std::log(p);
    } else {
        lp = dnlgam(n + 1.0) - dnlgam(j + 1.0) - dnlgam(n + 1.0 - j);
        lp += p == 0.5 ? n * std::log(0.5) : j * std::log(p) + (n - j) * std::log(q);
    }
    if (lp >= kExpFloor) {
        double const start = std::exp(lp);
        double sum = start;
        bool complete = SumBinomialTail(
            start, j, 0.0, -1.0, [&](double i) { return (i + 1.0) / (n - i) * q / p; }, sum);
        if (complete && k > m) {
            complete = SumBinomialTail(
                start, m, k, 1.0, [&](double i) { return (n + 1.0 - i) / i * p / q; }, sum);
        }
        if (complete) {
            return std::min(sum, 1.0);
        }
    }
    return prbnrm(PeizerPrattDeviate(k, n, p, q));
}

double QXDistFun::PdfBin(double x, double n, double p, long& error) {
    error = 0;
    if (!(p >= 0.0 && p <= 1.0) || !(n >= 1.0)) {
        error = 1;
        return Missing();
    }
    if (!IsWhole(x) || x < 0.0 || x > n) {
        return 0.0;
    }
    if (p == 0.0) {
        return x == 0.0 ? 1.0 : 0.0;
    }
    if (p == 1.0) {
        return x == n ? 1.0 : 0.0;
    }
    if (x == n) {
        return std::pow(p, n);
    }
    if (x == 0.0) {
        return std::pow(1.0 - p, n);
    }
    long inner = 0;
    double const L = dnlbnc(n, x, inner) + x * std::log(p) + (n - x) * std::log(1.0 - p);
    if (inner != 0 || !(L <= kExpCeiling)) {  // overflow, or infinite arguments
        error = 2;
        return Missing();
    }
    return dist::ExpAbove(L, kExpFloor);
}

double QXDistFun::PdfNegBin(double x, double r, double p, long& error) {
    error = 0;
    if (!(p > 0.0 && p <= 1.0) || !(r >= 0.0 && std::isfinite(r))) {
        error = 1;
        return Missing();
    }
    if (!IsWhole(x) || x < 0.0) {
        return 0.0;
    }
    if (p == 1.0) {
        return x == 0.0 ? 1.0 : 0.0;
    }
    if (x == 1.0) {
        return r == 1.0 ? (1.0 - p) * p : r * std::pow(p, r) * (1.0 - p);
    }
    if (r == 1.0) {
        return std::pow(1.0 - p, x) * p;
    }
    if (x == 0.0) {
        return std::pow(p, r);
    }
    if (r == 0.0) {
        // No success is needed: all the mass lies at 0.
        return 0.0;
    }
    long inner = 0;
    double const L = dnlbnc(x + r - 1.0, x, inner) + r * std::log(p) + x * std::log(1.0 - p);
    if (inner != 0 || !(L <= kExpCeiling)) {  // overflow, or infinite arguments
        error = 2;
        return Missing();
    }
    return dist::ExpAbove(L, kExpFloor);
}

double QXDistFun::PdfHyper(long x, long total, long sample, long marked) {
    if (sample < 1 || sample > total || marked < 1 || marked > total) {
        return Missing();
    }
    if (x < std::max(sample - total + marked, 0L) || x > std::min(sample, marked)) {
        return Missing();
    }
    long error = 0;
    double const L =
        dnlbnc(marked, x, error) + dnlbnc(total - marked, sample - x, error) - dnlbnc(total, sample, error);
    return dist::ExpAbove(L, kExpFloorTight);
}

double QXDistFun::CDFHyper(double x, double total, double sample, double marked, int& error) {
    error = 0;
    if (!(total <= 2147483647.0) || !IsWhole(total) || !IsWhole(sample) || !IsWhole(marked) ||
        !(std::min(sample, marked) >= 1.0) || !(std::max(sample, marked) <= total) || std::isnan(x)) {
        error = 1;
        return Missing();
    }
    double const k = std::trunc(x);
    if (k < std::max(sample - total + marked, 0.0)) {
        return 0.0;
    }
    if (k >= std::min(sample, marked)) {
        return 1.0;
    }

    if (total > 10000.0) {
        double const r = marked / (total - marked);
        if (16.0 * std::max(r, 1.0 / r) < std::min(sample, total - sample)) {
            double const mean = sample / total * marked;
            double const var = (total - sample) / (total - 1.0) * (total - marked) / total * mean;
            return prbnrm((k - mean + 0.5) / std::sqrt(var));
        }
    }

    // Reduce by the symmetries of the law to a sample and a marked count that are both at most half the
    // total, the sample the smaller. Each complement turns P(X <= k) into 1 - P(X' <= k').
    double N = total;
    double s = sample;
    double m = marked;
    double kk = k;
    bool complement = false;
    if (2.0 * m > N) {
        m = N - m;
        kk = s - kk - 1.0;
        complement = !complement;
    }
    if (2.0 * s > N) {
        s = N - s;
        kk = m - kk - 1.0;
        complement = !complement;
    }
    if (s > m) {
        std::swap(s, m);
    }
    // The reduced count lies in 0 to s; outside it the cumulative probability is 0 or 1.
    if (kk < 0.0) {
        return complement ? 1.0 : 0.0;
    }
    if (kk >= s) {
        return complement ? 0.0 : 1.0;
    }

    double point;
    if (N <= 1000.0) {
        // C(s, k) grows first, then factors not above 1 bring it down: no step under- or overflows.
        point = 1.0;
        for (double i = 0.0; i < kk; i += 1.0) {
            point *= (s - i) / (i + 1.0);
        }
        for (double i = 0.0; i < kk; i += 1.0) {
            point *= (m - i) / (N - i);
        }
        for (double j = 0.0; j < s - kk; j += 1.0) {
            point *= (N - m - j) / (N - kk - j);
        }
    } else {
        long inner = 0;
        double const L = dnlbnc(m, kk, inner) + dnlbnc(N - m, s - kk, inner) - dnlbnc(N, s, inner);
        if (L > kExpCeiling) {
            error = 2;
            return Missing();
        }
        point = dist::ExpAbove(L, kExpFloorTight);
    }

    // Sum the shorter tail: downwards when the mean lies above the point, else upwards.
    bool const downward = s * m / N > kk;
    double lower;
    double upper;
    if (point == 0.0) {
        lower = downward ? 0.0 : 1.0;
        upper = 1.0 - lower;
    } else if (downward) {
        double term = point * kHyperScale;
        double tail = 0.0;
        for (double i = kk; i > 0.0 && term > 0.0; i -= 1.0) {
            term *= i * (N - s - m + i) / ((s - i + 1.0) * (m - i + 1.0));
            tail += term;
        }
        lower = point + tail / kHyperScale;
        upper = 1.0 - lower;
    } else {
        double term = point * kHyperScale;
        double tail = 0.0;
        for (double i = kk; i < s && term > 0.0; i += 1.0) {
            term *= (s - i) * (m - i) / ((i + 1.0) * (N - s - m + i + 1.0));
            tail += term;
        }
        upper = tail / kHyperScale;
        lower = 1.0 - upper;
    }
    return complement ? upper : lower;
}

}  // namespace QXMath_920
