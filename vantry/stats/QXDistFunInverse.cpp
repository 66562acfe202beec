// Quantiles: the inverse incomplete beta ratio and the t, F, chi-square, gamma, beta and binomial quantiles
// built on it and on the incomplete gamma ratio.
#include <algorithm>
#include <cmath>

#include "vantry/stats/DistSupport.h"
#include "vantry/stats/QXDistFun.h"

namespace QXMath_920 {

using dist::kExpCeiling;
using dist::kExpFloor;
using dist::Missing;

namespace {

constexpr int kBetaInversePasses = 50;
// Each Newton step of the beta inverse is shortened by thirds until it is acceptable; a step that is still
// refused after this many shortenings (its length has long underflowed) ends the iteration.
constexpr int kStepShortenings = 1100;
constexpr int kChiRefinePasses = 20;
constexpr int kChiBisectionPasses = 40;
// The first-guess iteration for very small degrees of freedom settles within a handful of passes.
constexpr int kSmallDfStartPasses = 1000;

// The chi-square quantile's constants, as the single-precision values of its published form.
constexpr double kC124 = 1.2400000095367432;
constexpr double kC032 = 0.3199999928474426;
constexpr double kC0222 = 0.2222220003604889;
constexpr double kC666 = 6.659999847412109;
constexpr double kC467 = 4.670000076293945;
constexpr double kC1332 = 13.319999694824219;
constexpr double kC673 = 6.730000019073486;
constexpr double kC001 = 0.009999999776482582;
constexpr double kC22 = 2.200000047683716;
constexpr double kC04 = 0.4000000059604645;
constexpr double kChiExpCeiling = 141.8;
constexpr double kChiTolerance = 5e-7;

double const kLog2 = 0.6931471805599453;

// The tolerances the public quantiles hand to the beta inverse.
constexpr double kBetaEps1 = 1e-20;
constexpr double kBetaEps2 = 1e-12;

// Moves a trial point that lies within eps of an end of the unit interval to eps inside it.
double ClipToUnit(double x, double eps) {
    if (std::fabs(x) <= eps) {
        return eps;
    }
    if (std::fabs(1.0 - x) <= eps) {
        return 1.0 - eps;
    }
    return x;
}

}  // namespace

double QXDistFun::betinv(double const& p, double const& a, double const& b, double const& eps1,
                         double const& eps2) {
    if (p == 0.0) {
        return 0.0;
    }
    if (p == 1.0) {
        return 1.0;
    }
    if (!(p > 0.0 && p < 1.0) || !(a > 0.0) || !(b > 0.0)) {
        return -1.0;
    }
    if (a == b) {
        if (p == 0.5) {
            return 0.5;
        }
        if (a == 0.5) {
            double const s = std::sin(p * dist::kPi / 2.0);
            return s * s;
        }
    }
    if (a == 1.0) {
        if (1.0 - p <= 0.0) {
            return 1.0;
        }
        double const e = std::log(1.0 - p) / b;
        return e < kExpFloor ? 1.0 : 1.0 - std::exp(e);
    }
    if (b == 1.0) {
        return dist::ExpAbove(std::log(p) / a, kExpFloor);
    }
    if (a * 1e-20 >= b) {
        return 1.0;
    }

    // Work on the lower half: solve I_x(P, Q) = A with A at most one half, y the upper normal deviate of A.
    double y = probit(p);
    if (dist::IsMissing(y)) {
        return -1.0;
    }
    bool const upperHalf = p > 0.5;
    double const P = upperHalf ? b : a;
    double const Q = upperHalf ? a : b;
    double const A = upperHalf ? 1.0 - p : p;
    if (!upperHalf) {
        y = -y;
    }
    double const lnB = dnlgam(P) + dnlgam(Q) - dnlgam(P + Q);

    double x;
    if (P > 1.0 && Q > 1.0) {
        double const r = (y * y - 3.0) / 6.0;
        double const s = 1.0 / (2.0 * P - 1.0);
        double const t = 1.0 / (2.0 * Q - 1.0);
        double const h = 2.0 / (s + t);
        double const w = y * std::sqrt(h + r) / h - (t - s) * (r + 5.0 / 6.0 - 2.0 / (3.0 * h));
        x = P / (P + Q * std::exp(2.0 * w));
    } else {
        double const t = 1.0 / (9.0 * Q);
        double const base = 1.0 - t + y * std::sqrt(t);
        double c = 2.0 * Q * base * base * base;
        if (c <= 0.0) {
            double const e = (std::log((1.0 - A) * Q) + lnB) / Q;
            if (e > kExpCeiling) {
                return a / (a + b);
            }
            x = e < kExpFloor ? 1.0 : 1.0 - std::exp(e);
        } else {
            c = (4.0 * P + 2.0 * Q - 2.0) / c;
            if (c <= 1.0) {
                double const e = (std::log(A * P) + lnB) / P;
                if (e > kExpCeiling) {
                    return a / (a + b);
                }
                x = dist::ExpAbove(e, kExpFloor);
            } else {
                x = 1.0 - 2.0 / (c + 1.0);
            }
        }
    }
    x = std::min(std::max(x, 1e-8), 0.9999999);

    // Newton's method on the ratio, each step shortened by thirds until it stays inside the unit interval and
    // below the bound set by the last change of sign.
    double prev = 0.0;
    double sq = 1.0;
    double bound = 1.0;
    for (int pass = 0; pass < kBetaInversePasses; ++pass) {
        long error = 0;
        double const z = cdfbet(x, P, Q, error);
        if (error != 0) {
            return -1.0;
        }
        double const L = (1.0 - Q) * std::log(1.0 - x) + (1.0 - P) * std::log(x) + lnB;
        if (L > kExpCeiling) {
            return a / (a + b);
        }
        double const w = L < kExpFloor ? 0.0 : (z - A) * std::exp(L);
        if (prev * w <= 0.0) {
            bound = sq;
        }
        double g = 1.0;
        double tx = x;
        bool accepted = false;
        for (int shorten = 0; shorten < kStepShortenings && !accepted; ++shorten, g /= 3.0) {
            double const t = g * w;
            sq = t * t;
            if (sq < bound) {
                tx = ClipToUnit(x - t, eps2);
                accepted = tx > 0.0 && tx < 1.0;
            }
        }
        if (!accepted || eps1 >= bound || eps1 >= w * w || std::fabs(tx - x) < eps2) {
            break;
        }
        x = tx;
        prev = w;
    }
    return upperHalf ? 1.0 - x : x;
}

double QXDistFun::kromidft(double const& p, double const& df, long& error, double const& eps1,
                           double const& eps2) {
    error = 0;
    if (!(p > 0.0 && p < 1.0) || !(df > 0.0)) {
        error = 1;
        return Missing();
    }
    if (p == 0.5) {
        return 0.0;
    }
    if (df >= 1e8) {
        return probit(p);
    }
    // Both tails together: P(|T| > t) = I_c(df / 2, 1 / 2) with c = df / (df + t t).
    double const q = p < 0.5 ? 2.0 * p : 2.0 - 2.0 * p;
    double const c = betinv(q, df / 2.0, 0.5, eps1, eps2);
    if (c == -1.0) {
        error = 2;
        return Missing();
    }
    double const v = (1.0 / c - 1.0) * df;
    if (v < 0.0) {
        error = 2;
        return Missing();
    }
    double const t = std::sqrt(v);
    return p < 0.5 ? -t : t;
}

double QXDistFun::kromidff(double const& p, double const& df1, double const& df2, long& error) {
    error = 0;
    if (!(p >= 0.0 && p < 1.0) || !(df1 > 0.0) || !(df2 > 0.0)) {
        error = 1;
        return Missing();
    }
    if (p == 0.0) {
        return 0.0;
    }
    if (df1 == 1.0) {
        long inner = 0;
        double const t = kromidft(p / 2.0 + 0.5, df2, inner, kBetaEps1, kBetaEps2);
        if (inner != 0) {
            error = 2;
            return Missing();
        }
        return t * t;
    }
    double const c = betinv(p, df1 / 2.0, df2 / 2.0, kBetaEps1, kBetaEps2);
    if (!(c >= 0.0 && c < 1.0)) {
        error = 2;
        return Missing();
    }
    return c / (1.0 - c) * df2 / df1;
}

double QXDistFun::kromidfchi(double const& p, double const& df, long& error) {
    error = 0;
    if (!(p >= 0.0 && p < 1.0) || !(df > 0.0)) {
        error = 1;
        return Missing();
    }
    if (p == 0.0) {
        return 0.0;
    }
    double const xx = df / 2.0;
    double const g = dnlgam(xx);
    double const c = xx - 1.0;
    double const lp = std::log(p);

    // First guess: the small-p form, the iteration for very small degrees of freedom, or Wilson and
    // Hilferty's, with the large-quantile correction.
    double ch;
    if (df < -kC124 * lp) {
        double const e = (std::log(xx) + lp + g + xx * kLog2) / xx;
        if (e < kExpFloor) {
            return 0.0;
        }
        if (e > kChiExpCeiling) {
            error = 2;
            return Missing();
        }
        ch = std::exp(e);
        if (ch < kChiTolerance) {
            return ch;
        }
    } else if (df <= kC032) {
        ch = kC04;
        double const a = std::log(1.0 - p);
        for (int pass = 0; pass < kSmallDfStartPasses; ++pass) {
            double const q = ch;
            double const p1 = 1.0 + ch * (kC467 + ch);
            double const p2 = ch * (kC673 + ch * (kC666 + ch));
            double const t = -0.5 + (kC467 + 2.0 * ch) / p1 - (kC673 + ch * (kC1332 + 3.0 * ch)) / p2;
            double const e = a + g + 0.5 * ch + c * kLog2 + std::log(p2) - std::log(p1);
            if (e > kChiExpCeiling) {
                error = 2;
                return Missing();
            }
            ch -= (1.0 - dist::ExpAbove(e, kExpFloor)) / t;
            if (std::fabs(q / ch - 1.0) <= kC001) {
                break;
            }
        }
    } else {
        double const x = probit(p);
        if (dist::IsMissing(x)) {
            error = 2;
            return Missing();
        }
        double const t = kC0222 / df;
        double const v = x * std::sqrt(t) + 1.0 - t;
        ch = 0.0;
        if (v > 0.0) {
            double const e = std::log(df) + 3.0 * std::log(v);
            if (e > kChiExpCeiling) {
                error = 2;
                return Missing();
            }
            ch = dist::ExpAbove(e, kExpFloor);
        }
        if (ch > kC22 * df + 6.0) {
            ch = -2.0 * (std::log(1.0 - p) - c * std::log(ch / 2.0) + g);
        }
    }

    // Refinement by the seven-term Taylor step on the incomplete gamma ratio.
    double const start = ch;
    for (int pass = 0; pass < kChiRefinePasses; ++pass) {
        if (!(ch > 0.0)) {
            break;
        }
        double const q = ch;
        double const p1 = 0.5 * ch;
        long inner = 0;
        double const s = gammad(p1, xx, true, inner);
        if (inner != 0) {
            break;
        }
        double const t = xx * kLog2 + g + p1 - c * std::log(ch);
        if (t > kChiExpCeiling) {
            break;
        }
        double const w = t < kExpFloor ? 0.0 : std::exp(t) * (p - s);
        double const b = w / ch;
        double const a = 0.5 * w - b * c;
        double const s1 = (210.0 + a * (140.0 + a * (105.0 + a * (84.0 + a * (70.0 + 60.0 * a))))) / 420.0;
        double const s2 = (420.0 + a * (735.0 + a * (966.0 + a * (1141.0 + 1278.0 * a)))) / 2520.0;
        double const s3 = (210.0 + a * (462.0 + a * (707.0 + 932.0 * a))) / 2520.0;
        double const s4 =
            (252.0 + a * (672.0 + 1182.0 * a) + c * (294.0 + a * (889.0 + 1740.0 * a))) / 5040.0;
        double const s5 = (84.0 + 264.0 * a + c * (175.0 + 606.0 * a)) / 2520.0;
        double const s6 = (120.0 + c * (346.0 + 127.0 * c)) / 5040.0;
        ch += w * (1.0 + 0.5 * w * s1 - b * c * (s1 - b * (s2 - b * (s3 - b * (s4 - b * (s5 - b * s6))))));
        if (std::fabs(q - ch) <= kChiTolerance * ch) {
            return ch;
        }
    }
    return idfchb(p, df, start, error);
}

double QXDistFun::idfchb(double const& p, double const& df, double const& start, long& error) {
    error = 0;
    if (!(start > 0.0)) {
        error = 1;
        return Missing();
    }
    // Bisection on the gamma scale, between a quarter and the whole of the start value.
    double const shape = df / 2.0;
    double lo = start / 4.0;
    double hi = start;
    long inner = 0;
    double const atLo = gammad(lo, shape, true, inner);
    if (inner != 0 || atLo > p) {
        error = 2;
        return Missing();
    }
    double atHi = gammad(hi, shape, true, inner);
    if (inner == 0 && atHi < p) {
        hi *= 2.0;
        atHi = gammad(hi, shape, true, inner);
    }
    if (inner != 0 || atHi < p) {
        error = 2;
        return Missing();
    }
    double mid = (hi + lo) / 2.0;
    for (int pass = 0; pass < kChiBisectionPasses && hi - lo > 1e-8 * mid; ++pass) {
        double const atMid = gammad(mid, shape, true, inner);
        if (inner != 0) {
            error = 2;
            return Missing();
        }
        if (atMid > p) {
            hi = mid;
        } else {
            lo = mid;
        }
        mid = (hi + lo) / 2.0;
    }
    return 2.0 * mid;
}

double QXDistFun::IdfT(double p, double df, double eps1, double eps2) {
    return dist::ValueOrMissing([&](long& error) { return kromidft(p, df, error, eps1, eps2); });
}

double QXDistFun::IdfF(double p, double df1, double df2) {
    return dist::ValueOrMissing([&](long& error) { return kromidff(p, df1, df2, error); });
}

double QXDistFun::IdfChi(double p, double df) {
    return dist::ValueOrMissing([&](long& error) { return kromidfchi(p, df, error); });
}

double QXDistFun::IdfGam(double const& p, double const& shape, double const& rate) {
    if (!(p >= 0.0 && p < 1.0) || !(shape >= 0.0) || !(rate > 0.0)) {
        return Missing();
    }
    if (p == 0.0) {
        return 0.0;
    }
    double const value = dist::ValueOrMissing([&](long& error) { return kromidfchi(p, 2.0 * shape, error); });
    return dist::IsMissing(value) ? value : value * 0.5 / rate;
}

double QXDistFun::IdfBeta(double const& p, double const& a, double const& b) {
    double const value = betinv(p, a, b, kBetaEps1, kBetaEps2);
    return value == -1.0 ? Missing() : value;
}

double QXDistFun::IdfBin(double p, double n, double prob, long& error) {
    error = 0;
    if (!std::isfinite(n) || !dist::IsWhole(n)) {
        error = 1;
        return Missing();
    }
    if (n < 1.0 || !(p >= 0.0 && p <= 1.0) || !(prob >= 0.0 && prob <= 1.0)) {
        error = 2;
        return Missing();
    }
    if (p == 0.0) {
        return prob == 1.0 ? n - 1.0 : -1.0;
    }
    if (p == 1.0) {
        return prob == 0.0 ? 0.0 : n;
    }
    if (prob == 1.0) {
        // All the mass lies at n, so n - 1 is the last count below any p; the walk's ratio would be 0 / 0.
        return n - 1.0;
    }

    // Start from the normal approximation and walk to the last count whose cumulative probability does not
    // exceed p, carrying the single probability along by its ratio.
    double k = std::floor(probit(p) * std::sqrt(n * prob * (1.0 - prob)) + n * prob - 0.5);
    k = std::min(std::max(k, 0.0), n);
    long inner = 0;
    double c = CdfBin(k, n, prob, inner);
    if (std::fabs(c - p) < 2.842170943040401e-14) {
        return k;
    }
    double mass = PdfBin(k, n, prob, inner);
    bool const down = c > p;
    for (double steps = 0.0; steps < dist::kBinomialStepCap; steps += 1.0) {
        if (down) {
            if (!(c > p && k > 0.0)) {
                return k;
            }
            c -= mass;
            mass *= k / (n - k + 1.0) * (1.0 - prob) / prob;
            k -= 1.0;
        } else {
            mass *= (n - k) / (k + 1.0) * prob / (1.0 - prob);
            c += mass;
            if (c > p || k > n) {
                return k;
            }
            k += 1.0;
        }
    }
    // Counts beyond 2^53 do not step by one, and a walk through mass lost to underflow would run to n.
    error = 2;
    return Missing();
}

}  // namespace QXMath_920
