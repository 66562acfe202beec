// The special functions under the distributions: the normal law and its quantile, the error functions, the
// log gamma function and the log binomial coefficient.
#include <cmath>

#include "vantry/stats/DistSupport.h"
#include "vantry/stats/QXDistFun.h"

namespace QXMath_920 {

using dist::Missing;

namespace {

// Horner evaluation of c[0] + c[1] x + ... + c[7] x^7.
double Poly8(double const (&c)[8], double x) {
    double sum = c[7];
    for (int i = 6; i >= 0; --i) {
        sum = sum * x + c[i];
    }
    return sum;
}

// Rational approximations of Wichura's PPND16 (Applied Statistics algorithm 241): numerator and
// denominator for the central region, the near tails and the far tails.
double const kCentralNum[8] = {3.3871328727963666080e0, 1.3314166789178437745e2, 1.9715909503065514427e3,
                               1.3731693765509461125e4, 4.5921953931549871457e4, 6.7265770927008700853e4,
                               3.3430575583588128105e4, 2.5090809287301226727e3};
double const kCentralDen[8] = {1.0,
                               4.2313330701600911252e1,
                               6.8718700749205790830e2,
                               5.3941960214247511077e3,
                               2.1213794301586595867e4,
                               3.9307895800092710610e4,
                               2.8729085735721942674e4,
                               5.2264952788528545610e3};
double const kNearNum[8] = {1.42343711074968357734e0,  4.63033784615654529590e0, 5.76949722146069140550e0,
                            3.64784832476320460504e0,  1.27045825245236838258e0, 2.41780725177450611770e-1,
                            2.27238449892691845833e-2, 7.74545014278341407640e-4};
double const kNearDen[8] = {1.0,
                            2.05319162663775882187e0,
                            1.67638483018380384940e0,
                            6.89767334985100004550e-1,
                            1.48103976427480074590e-1,
                            1.51986665636164571966e-2,
                            5.47593808499534494600e-4,
                            1.05075007164441684324e-9};
double const kFarNum[8] = {6.65790464350110377720e0,  5.46378491116411436990e0,  1.78482653991729133580e0,
                           2.96560571828504891230e-1, 2.65321895265761230930e-2, 1.24266094738807843860e-3,
                           2.71155556874348757815e-5, 2.01033439929228813265e-7};
double const kFarDen[8] = {1.0,
                           5.99832206555887937690e-1,
                           1.36929880922735805310e-1,
                           1.48753612908506148525e-2,
                           7.86869131145613259100e-4,
                           1.84631831751005468180e-5,
                           1.42151175831644588870e-7,
                           2.04426310338993978564e-15};

}  // namespace

double QXDistFun::probit(double const& p) {
    if (!(p > 0.0 && p < 1.0)) {
        return Missing();
    }
    double const q = p - 0.5;
    if (std::fabs(q) <= 0.425) {
        double const r = 0.180625 - q * q;
        return q * Poly8(kCentralNum, r) / Poly8(kCentralDen, r);
    }
    double r = std::sqrt(-std::log(q < 0.0 ? p : 1.0 - p));
    double value;
    if (r <= 5.0) {
        r -= 1.6;
        value = Poly8(kNearNum, r) / Poly8(kNearDen, r);
    } else {
        r -= 5.0;
        value = Poly8(kFarNum, r) / Poly8(kFarDen, r);
    }
    return q < 0.0 ? -value : value;
}

double QXDistFun::prbnrm(double const& z) {
    if (std::isnan(z)) {
        return Missing();
    }
    if (z > 0.0) {
        return (derf(z / dist::SqrtTwo()) + 1.0) * 0.5;
    }
    if (z < 0.0) {
        return derfc(-z / dist::SqrtTwo()) * 0.5;
    }
    return 0.5;
}

// The run time's erf serves in place of a table of polynomials: it agrees with the exact function to double
// precision. Beyond 6.9 the value is 1 in any case.
double QXDistFun::derf(double const& x) {
    double const a = std::fabs(x);
    if (!(a > 0.0)) {
        return 0.0;
    }
    double const value = a < 6.9 ? std::erf(a) : 1.0;
    return x < 0.0 ? -value : value;
}

// The complement keeps its underflow rule: a tail whose log lies below -708 is 0.
double QXDistFun::derfc(double const& x) {
    double const a = std::fabs(x);
    if (!(a > 0.0)) {
        return 1.0;
    }
    double tail = std::erfc(a);
    if (!(tail > 0.0) || std::log(tail) < dist::kExpFloor) {
        tail = 0.0;
    }
    return x < 0.0 ? 2.0 - tail : tail;
}

// The run time's log gamma (in its reentrant form, which leaves the global sign alone) serves in place of the
// tables; the exact points stay exact. Zero and negative arguments have no use here and give the failure
// value.
double QXDistFun::dnlgam(double const& x) {
    if (x == 1.0 || x == 2.0) {
        return 0.0;
    }
    if (x == 0.5) {
        return dist::kHalfLogPi;
    }
    if (!(x > 0.0)) {
        return Missing();
    }
    int sign = 0;
    return ::lgamma_r(x, &sign);
}

double QXDistFun::dnlbnc(double const& n, double const& k, long& error) {
    error = 0;
    if (!(n >= 0.0 && k >= 0.0 && k <= n)) {
        error = 1;
        return Missing();
    }
    if (k == 0.0 || k == n) {
        return 0.0;
    }
    if (n <= 33.0 && dist::IsWhole(n) && dist::IsWhole(k)) {
        double const m = std::fmin(k, n - k);
        double product = 1.0;
        for (double i = 0.0; i < m; i += 1.0) {
            product *= (n - i) / (m - i);
        }
        return std::log(product);
    }
    double const value = dnlgam(n + 1.0) - dnlgam(k + 1.0) - dnlgam(n - k + 1.0);
    return value < 0.0 ? 0.0 : value;
}

double QXDistFun::cbtaux(double const& x) {
    if (x == 0.0) {
        return 1.0;
    }
    if (x == 1.0) {
        return 0.0;
    }
    if (x < 0.0) {
        return Missing();
    }
    if (x > dist::SqrtDblMax()) {
        return -1.0;
    }
    double const d = 1.0 - x;
    return (2.0 * x * std::log(x) + 1.0 - x * x) / (d * d);
}

double QXDistFun::kromdnlgam(double const& x) {
    return dnlgam(x);
}

double QXDistFun::CdfStdNorm(double x) {
    return prbnrm(x);
}

double QXDistFun::CdfNorm(double x, double mean, double sd) {
    if (!(sd > 0.0)) {
        return Missing();
    }
    return prbnrm((x - mean) / sd);
}

double QXDistFun::IdfStdNorm(double p) {
    if (!(p > 0.0 && p < 1.0)) {
        return Missing();
    }
    return p == 0.5 ? 0.0 : probit(p);
}

double QXDistFun::IdfNorm(double p, double mean, double sd) {
    if (!(p > 0.0 && p < 1.0) || !(sd > 0.0) || std::isnan(mean)) {
        return Missing();
    }
    if (p == 0.5) {
        return mean;
    }
    double const value = probit(p) * sd + mean;
    return std::isnan(value) ? Missing() : value;  // infinite mean and sd of opposite effect
}

double QXDistFun::PdfNormalStandard(double x) {
    if (std::isnan(x)) {
        return Missing();
    }
    return std::exp(-0.5 * x * x) * 0.3989422804014327;
}

double QXDistFun::PdfNormal(double x, double mean, double sd) {
    double const z = (x - mean) / sd;
    if (sd == 0.0 || std::isnan(z)) {
        return Missing();
    }
    return PdfNormalStandard(z) / sd;
}

}  // namespace QXMath_920
