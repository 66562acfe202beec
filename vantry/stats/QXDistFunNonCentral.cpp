// The non-central t, F (through the non-central beta ratio) and chi-square laws as Poisson-weighted series
// of central ones, the density of the non-central t, and the searches for a non-centrality parameter.
#include <algorithm>
#include <cmath>

#include "vantry/stats/DistSupport.h"
#include "vantry/stats/QXDistFun.h"
#include "vantry/stats/QXPower.h"

namespace QXMath_920 {

using dist::kExpCeiling;
using dist::kExpFloorTight;
using dist::Missing;

namespace {

constexpr int kSeriesPasses = 60000;
constexpr double kChiErrorBound = 1e-12;
constexpr double kPdfSpan = 10000.0;
constexpr double kPdfTolerance = 1e-10;
// Bisection on doubles is exhausted after some 2100 halvings; the cap only matters when the stop tests
// cannot be met (a root at 0, or a tolerance of 0).
constexpr int kBisectionCap = 2200;

double Clamp01(double v) {
    return std::min(std::max(v, 0.0), 1.0);
}

// exp(t) with the bounds of the series: 0 below -708.39, the missing value (as a number) above 709.
double SeriesExp(double t) {
    return t > kExpCeiling ? Missing() : dist::ExpAbove(t, kExpFloorTight);
}

// The log of the Poisson weight of term k at mean c: -c + k log(c) - log(k!).
template <typename LogGamma>
double LogPoissonWeight(double c, double k, LogGamma lgam) {
    return k > 0.0 ? -c + k * std::log(c) - lgam(k + 1.0) : -c;
}

// Half the largest int: the walks of the searches give up beyond it.
double SearchLimit() {
    static double const limit = 0.4999999 * QXPower::MaxInt();
    return limit;
}

// Bisection between lo, where G is positive, and hi, where it is not. `g(v, out)` answers false when the
// evaluation fails; `done(gm, lo, hi)` is the stop test of the caller, to which the relative closeness of
// the two ends is added.
template <typename G, typename Done>
double Bisect(G g, double lo, double hi, Done done) {
    if (!std::isfinite(lo) || !std::isfinite(hi)) {
        return Missing();
    }
    for (int pass = 0; pass < kBisectionCap; ++pass) {
        double const mid = (lo + hi) / 2.0;
        double gm = 0.0;
        if (!g(mid, gm)) {
            return Missing();
        }
        if (done(gm, lo, hi) || QXPower::AlmostEqual(lo, hi, 8.0)) {
            return mid;
        }
        if (gm > 0.0) {
            lo = mid;
        } else {
            hi = mid;
        }
    }
    return (lo + hi) / 2.0;
}

// From a start where G has the value gStart, halves (G not above 0) or doubles (G above 0) until G changes
// sign; the last two points are the bracket, G positive at lo and not positive at hi. With `limited`, halving
// fails on reaching 0 and doubling on passing the search limit; without, only a bracket that cannot exist at
// all (0 or infinity reached with no change of sign) fails.
template <typename G>
bool BracketByScaling(G g, double start, double gStart, bool limited, double& lo, double& hi) {
    bool const halve = gStart <= 0.0;
    double v = start;
    double gv = gStart;
    double last = v;
    while (halve ? gv <= 0.0 : gv > 0.0) {
        if (halve ? v == 0.0 : !std::isfinite(v)) {
            return false;
        }
        last = v;
        v = halve ? v / 2.0 : v * 2.0;
        if (limited && (halve ? v == 0.0 : v > SearchLimit())) {
            return false;
        }
        if (!g(v, gv)) {
            return false;
        }
    }
    lo = halve ? v : last;
    hi = halve ? last : v;
    return true;
}

// The search for a non-centrality from a start value by halving or doubling, then bisection. `cdf(v)` is the
// cumulative probability at non-centrality v, falling as v grows; at or below p already at 0, the answer is
// 0, for no non-centrality lowers it further.
template <typename Cdf, typename Done>
double ScaledSearch(Cdf cdf, double p, double start, bool limited, Done done) {
    double const central = cdf(0.0);
    if (dist::IsMissing(central)) {
        return Missing();
    }
    if (central <= p) {
        return 0.0;
    }
    auto G = [&](double v, double& out) {
        double const value = cdf(v);
        out = value - p;
        return !dist::IsMissing(value);
    };
    double gStart = 0.0;
    if (!G(start, gStart)) {
        return Missing();
    }
    if (gStart == 0.0) {
        return start;
    }
    double lo = 0.0;
    double hi = 0.0;
    if (!BracketByScaling(G, start, gStart, limited, lo, hi)) {
        return Missing();
    }
    return Bisect(G, lo, hi, done);
}

}  // namespace

double QXDistFun::NonCentralCdfT(double t, double df, double delta, double errmax) {
    if (!(df > 0.0) || std::isnan(t) || std::isnan(delta)) {
        return Missing();
    }
    if (delta == 0.0) {
        return dist::ValueOrMissing([&](long& error) { return kromcdft(t, df, error); });
    }
    if (t == 0.0) {
        return prbnrm(-delta);
    }
    // A negative delta is reflected: F(t; delta) = 1 - F(-t; -delta).
    double const tt = delta < 0.0 ? -t : t;
    if (std::fabs(t) >= dist::SqrtDblMax()) {
        return t >= delta ? 1.0 : 0.0;
    }
    double const x = t * t / (t * t + df);
    if (!(x > 0.0)) {
        return Missing();
    }
    double const lnq = std::log(df) - std::log(t * t + df);

    double const c = delta * delta / 2.0;
    double k = dist::PoissonStart(c);
    double const b = df / 2.0;
    double a = k + 0.5;
    double const lp = (k > 0.0 ? k * std::log(c) : 0.0) - (c + std::log(2.0));
    double p = SeriesExp(lp - dnlgam(k + 1.0));
    double q = SeriesExp(std::log(std::fabs(delta)) + lp - 0.34657359027997264 - dnlgam(k + 1.5));
    if (tt < 0.0) {
        q = -q;
    }
    double s = 0.5 - p;

    long error = 0;
    double xodd = cdfbet(x, a, b, error);
    double const logGodd = dnlgam(a + b) - dnlgam(a + 1.0) - dnlgam(b) + b * lnq + a * std::log(x);
    double xeven = cdfbet(x, a + 0.5, b, error);
    double const logGeven =
        dnlgam(a + 0.5 + b) - dnlgam(a + 1.5) - dnlgam(b) + b * lnq + (a + 0.5) * std::log(x);
    if (logGodd > kExpCeiling || logGeven > kExpCeiling) {
        return Missing();
    }
    double godd = dist::ExpAbove(logGodd, kExpFloorTight);
    double geven = dist::ExpAbove(logGeven, kExpFloorTight);

    double tnc = p * xodd + q * xeven;
    xodd -= godd;
    xeven -= geven;
    double errbd = 1.0;
    for (int pass = 0; errbd > errmax; ++pass) {
        if (pass == kSeriesPasses) {
            return Missing();
        }
        a += 1.0;
        k += 1.0;
        godd *= (a + b - 1.0) * x / a;
        p *= c / k;
        geven *= (a + b - 0.5) * x / (a + 0.5);
        q *= c / (k + 0.5);
        s -= p;
        tnc += p * xodd + q * xeven;
        xodd -= godd;
        xeven -= geven;
        errbd = 2.0 * s * xodd;
    }

    double const n = prbnrm(-std::fabs(delta));
    double value = tt >= 0.0 ? tnc + n : n - tnc;
    if (delta < 0.0) {
        value = 1.0 - value;
    }
    // A delta whose square overflows leaves the series with no number.
    return std::isnan(value) ? Missing() : Clamp01(value);
}

double QXDistFun::ncdbet(double const& x, double const& a, double const& b, double const& lambda, long& error,
                         double const& errmax) {
    error = 0;
    if (!(a > 0.0 && b > 0.0 && lambda >= 0.0) || std::isnan(x)) {
        error = 1;
        return Missing();
    }
    if (x <= 0.0) {
        return 0.0;
    }
    if (x >= 1.0) {
        return 1.0;
    }
    long inner = 0;
    if (lambda == 0.0) {
        double const value = cdfbet(x, a, b, inner);
        if (inner != 0) {
            error = 2;
            return Missing();
        }
        return value;
    }

    double const c = lambda / 2.0;
    double k = dist::PoissonStart(c);
    double const a0 = a + k;
    double const beta = cdfbet(x, a0, b, inner);
    if (inner != 0) {
        error = 2;
        return Missing();
    }
    // g: the step from I_x(a0, b) to I_x(a0 + 1, b).
    double const L =
        b * std::log(1.0 - x) + a0 * std::log(x) - dnlgam(a0) - dnlgam(b) + dnlgam(a0 + b) - std::log(a0);
    if (L > kExpCeiling) {
        return 0.0;
    }
    double g = 0.0;
    if (L < kExpFloorTight) {
        if (beta == 0.0) {
            return 0.0;
        }
    } else {
        g = std::exp(L);
    }
    double temp = beta - g;
    double const Q = LogPoissonWeight(c, k, [](double v) { return dnlgam(v); });
    if (Q > kExpCeiling || Q < kExpFloorTight) {
        return 0.0;
    }
    double q = std::exp(Q);
    double sumq = 1.0 - q;
    double sum = q * beta;
    if (errmax >= 1.0) {
        return Clamp01(sum);
    }
    for (int pass = 0; pass < kSeriesPasses; ++pass) {
        k += 1.0;
        g *= (a + b + k - 1.0) * x / (a + k);
        q *= c / k;
        double const old = temp;
        temp -= g;
        sumq -= q;
        sum += q * old;
        if (sumq * temp <= errmax) {
            return Clamp01(sum);
        }
    }
    error = 2;
    return Missing();
}

double QXDistFun::NonCentralCdfF(double f, double df1, double df2, double lambda, double errmax) {
    if (!(df1 > 0.0 && df2 > 0.0 && lambda >= 0.0) || std::isnan(f)) {
        return Missing();
    }
    if (f <= 0.0) {
        return 0.0;
    }
    double const x = df1 * f / (df1 * f + df2);
    return dist::ValueOrMissing(
        [&](long& error) { return ncdbet(x, df1 / 2.0, df2 / 2.0, lambda, error, errmax); });
}

double QXDistFun::NonCentralCdfChi(double x, double df, double lambda) {
    if (!(df > 0.0 && lambda >= 0.0) || std::isnan(x)) {
        return Missing();
    }
    if (x <= 0.0) {
        return 0.0;
    }
    double const h = x / 2.0;
    double const c = lambda / 2.0;
    double k = dist::PoissonStart(c);
    double const shape = df / 2.0 + k;
    long error = 0;
    double const G = gammad(h, shape, true, error);
    if (error != 0) {
        return Missing();
    }
    if (G == 0.0) {
        return 0.0;
    }
    // g: the step from P(shape, h) to P(shape + 1, h).
    double const L = shape * std::log(h) - dnlgam(shape + 1.0) - h;
    if (L > kExpCeiling) {
        return Missing();
    }
    double g = dist::ExpAbove(L, kExpFloorTight);
    double temp = G - g;
    double const Q = LogPoissonWeight(c, k, [](double v) { return dnlgam(v); });
    if (Q > kExpCeiling) {
        return Missing();
    }
    if (Q < kExpFloorTight) {
        return 0.0;
    }
    double q = std::exp(Q);
    double sumq = 1.0 - q;
    double sum = q * G;
    for (int pass = 0; pass < kSeriesPasses; ++pass) {
        k += 1.0;
        g *= h / (k + df / 2.0);
        q *= c / k;
        double const old = temp;
        temp -= g;
        sumq -= q;
        sum += q * old;
        if (sumq * temp <= kChiErrorBound) {
            return Clamp01(sum);
        }
    }
    return Missing();
}

namespace {

// Walks the terms of the non-central t density away from a start index, carrying log Gamma((df + j + 1) / 2)
// and log j! by their recurrences. `step` is +1 or -1.
struct DensityWalk {
    double j;
    double step;
    double df;
    double lgCurrent;  // log Gamma((df + j + 1) / 2)
    double lgNext;     // the same at j + step
    double lfact;      // log j!

    void Advance() {
        double const after = step > 0.0 ? lgCurrent + std::log((df + j + 1.0) / 2.0)   // at j + 2
                                        : lgCurrent - std::log((df + j - 1.0) / 2.0);  // at j - 2
        lfact += step > 0.0 ? std::log(j + 1.0) : -std::log(j);
        lgCurrent = lgNext;
        lgNext = after;
        j += step;
    }
};

}  // namespace

double QXDistFun::NonCentralPdfT(double t, double df, double delta, long& error) {
    error = 0;
    if (!(df > 0.0) || std::isnan(t) || std::isnan(delta)) {
        error = 1;
        return Missing();
    }
    if (delta == 0.0) {
        double const value = PdfT(t, df, error);
        return error == 0 ? std::max(value, 0.0) : Missing();
    }
    if (t == 0.0) {
        double const L = dnlgam(df / 2.0 + 0.5) - delta * delta / 2.0 - dnlgam(df / 2.0) - dist::kHalfLogPi -
                         std::log(df) / 2.0;
        if (!(L <= kExpCeiling)) {  // overflow, or infinite degrees of freedom
            error = 2;
            return Missing();
        }
        return dist::ExpAbove(L, kExpFloorTight);
    }

    double const tt = t * t;
    double const v = delta * delta * tt / (tt + df);
    double const m = (std::sqrt((v - 2.0 + 4.0 * df) * v + 1.0) + v - 3.0) / 2.0;
    if (!(m + kPdfSpan < 2147483647.0)) {
        error = 2;
        return Missing();
    }
    double const j0 = std::floor(m) + 1.0;
    double const first = std::max(j0 - kPdfSpan, 0.0);
    double const last = j0 + kPdfSpan;
    double const w =
        std::log(std::fabs(delta) * dist::SqrtTwo()) + std::log(std::fabs(t)) - std::log(tt + df) / 2.0;
    double const common =
        -dnlgam(df / 2.0) -
        (2.0 * dist::kHalfLogPi - df * std::log(df) + (df + 1.0) * std::log(tt + df) + delta * delta) / 2.0;
    // With t and delta of opposite signs the odd terms count negative.
    bool const alternate = (t < 0.0) != (delta < 0.0);

    bool overflow = false;
    auto term = [&](DensityWalk const& walk) {
        double const e = walk.lgCurrent + common - walk.lfact + walk.j * w;
        if (e > kExpCeiling) {
            overflow = true;
            return 0.0;
        }
        double const value = dist::ExpAbove(e, kExpFloorTight);
        return alternate && std::fmod(walk.j, 2.0) == 1.0 ? -value : value;
    };

    DensityWalk down{j0, -1.0, df, dnlgam((df + j0 + 1.0) / 2.0), dnlgam((df + j0) / 2.0), dnlgam(j0 + 1.0)};
    DensityWalk up{j0 + 1.0,        1.0, df, dnlgam((df + j0 + 2.0) / 2.0), dnlgam((df + j0 + 3.0) / 2.0),
                   dnlgam(j0 + 2.0)};
    double total = 0.0;
    for (int pass = 0; pass <= kPdfSpan; ++pass) {
        double termDown = 0.0;
        double termUp = 0.0;
        if (down.j >= first) {
            termDown = term(down);
            down.Advance();
        }
        if (up.j <= last) {
            termUp = term(up);
            up.Advance();
        }
        if (overflow) {
            error = 2;
            return Missing();
        }
        total += termDown + termUp;
        if ((std::fabs(termDown) + std::fabs(termUp)) / std::fabs(total) <= kPdfTolerance) {
            break;
        }
    }
    return std::max(total, 0.0);
}

double QXDistFun::FindNCParamT(double t, double df, double p, double eps, double errmax) {
    // A negative t is refused, so the reflection it would need never runs.
    if (!(t >= 0.0) || !(p >= 0.0 && p <= 1.0) || !(df > 0.0) || !(eps >= 0.0)) {
        return Missing();
    }
    auto F = [&](double delta, double& out) {
        double const value = NonCentralCdfT(t, df, delta, errmax);
        out = value - p;
        return !dist::IsMissing(value);
    };
    double f0 = 0.0;
    if (!F(0.0, f0)) {
        return Missing();
    }
    if (f0 == 0.0) {
        return 0.0;
    }
    double const s = t > 1.0 ? t : 1.0;
    double fs = 0.0;
    if (!F(s, fs)) {
        return Missing();
    }
    if (fs == 0.0) {
        return s;
    }
    auto done = [&](double gm, double lo, double hi) {
        return std::fabs(gm) <= eps && std::fabs(hi - lo) <= eps;
    };
    // The probability falls as delta grows: walk upward from s while it stays above p, else downward from -s
    // while it stays below.
    bool const upward = f0 > 0.0;
    double prev = 0.0;
    double delta = upward ? s : -s;
    double fd = fs;
    if (!upward && !F(delta, fd)) {
        return Missing();
    }
    while (upward ? fd > 0.0 : fd < 0.0) {
        prev = delta;
        delta += upward ? s : -s;
        if (std::fabs(delta) > SearchLimit() || !F(delta, fd)) {
            return Missing();
        }
    }
    return upward ? Bisect(F, prev, delta, done) : Bisect(F, delta, prev, done);
}

double QXDistFun::FindNCParamF(double f, double df1, double df2, double p, double errmax) {
    if (!(df1 > 0.0 && df2 > 0.0) || !(p >= 0.0 && p <= 1.0) || !(errmax >= 0.0)) {
        return Missing();
    }
    auto cdf = [&](double lambda) { return NonCentralCdfF(f, df1, df2, lambda, errmax); };
    return ScaledSearch(cdf, p, f * df1, true, [&](double gm, double lo, double hi) {
        double const scale = std::max({std::fabs(hi), std::fabs(lo), 1.0});
        return std::fabs(gm) <= errmax && std::fabs(hi - lo) / scale <= errmax;
    });
}

double QXDistFun::FindNCParamChi(double x, double df, double p, double eps) {
    if (!(df > 0.0) || !(p >= 0.0 && p <= 1.0) || !(eps >= 0.0)) {
        return Missing();
    }
    auto cdf = [&](double lambda) { return NonCentralCdfChi(x, df, lambda); };
    return ScaledSearch(cdf, p, x, false, [&](double gm, double lo, double hi) {
        return std::fabs(gm) <= eps && std::fabs(hi - lo) <= eps;
    });
}

}  // namespace QXMath_920
