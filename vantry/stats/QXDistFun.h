// Distribution functions of the statistics layer: cumulative probabilities, quantiles and densities, and the
// special functions beneath them, all in double precision.
//
// Every function answers the system-missing number of QXCommon_920::QXMV when it cannot give a value; none
// throws. Functions with an `error` argument set it to 0 on entry, to 1 for an argument outside the domain
// and to 2 for a computation that failed. The class keeps no state, so every function is reentrant.
#pragma once

#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {
class TransformationDictionary;
class TransformVar;
}  // namespace QXVantry_920

namespace QXMath_920 {

class QXDistFunTestAccess;

class VANTRY_EXPORT QXDistFun {
  public:
    // Cumulative probabilities.
    static double CdfStdNorm(double x);
    static double CdfNorm(double x, double mean, double sd);
    static double CdfT(double x, double df);
    static double CdfF(double x, double df1, double df2);
    static double CdfChi(double x, double df);
    static double CdfGam(double x, double shape, double rate);
    static double CdfBeta(double x, double a, double b);
    // `error` 3 marks a size that is no whole number.
    static double CdfBin(double x, double n, double p, long& error);
    static double CDFHyper(double x, double total, double sample, double marked, int& error);

    // Upper tails.
    static double SigT(double x, double df);
    static double SigF(double x, double df1, double df2);
    static double SigChi(double x, double df);

    // Quantiles.
    static double IdfStdNorm(double p);
    static double IdfNorm(double p, double mean, double sd);
    static double IdfT(double p, double df, double eps1, double eps2);
    static double IdfF(double p, double df1, double df2);
    static double IdfChi(double p, double df);
    static double IdfGam(double const& p, double const& shape, double const& rate);
    static double IdfBeta(double const& p, double const& a, double const& b);
    // The largest count whose cumulative probability does not exceed p.
    static double IdfBin(double p, double n, double prob, long& error);

    // Densities and probabilities of single counts.
    static double PdfNormalStandard(double x);
    static double PdfNormal(double x, double mean, double sd);
    static double PdfT(double x, double df, long& error);
    static double PdfGamma(double x, double shape, double rate);
    static double PdfBin(double x, double n, double p, long& error);
    static double PdfNegBin(double x, double r, double p, long& error);
    static double PdfHyper(long x, long total, long sample, long marked);

    // The log of the gamma function.
    static double kromdnlgam(double const& x);

    // Non-central laws. `errmax` bounds the truncation error of the Poisson-weighted series.
    static double NonCentralCdfT(double t, double df, double delta, double errmax);
    static double NonCentralPdfT(double t, double df, double delta, long& error);
    static double NonCentralCdfF(double f, double df1, double df2, double lambda, double errmax);
    static double NonCentralCdfChi(double x, double df, double lambda);

    // The non-centrality at which the non-central cumulative probability equals p, for power analysis.
    static double FindNCParamT(double t, double df, double p, double eps, double errmax);
    static double FindNCParamF(double f, double df1, double df2, double p, double errmax);
    static double FindNCParamChi(double x, double df, double p, double eps);

    // A distribution-free confidence interval of the median from the order statistics of `n` sorted values
    // with frequency weights; `coverage` is in percent. Outputs stay missing where no interval is found.
    static void Mednci(long n, std::vector<double> const& values, std::vector<double> const& weights,
                       double total, double confidence, bool wantCoverage, double& lower, double& upper,
                       double& coverage);
    // A percentile of grouped data: class values with their counts, the classes taken as points between
    // midpoints (limitCount 0 or below), of a fixed width limits[0] (limitCount 1), or between the explicit
    // boundaries in limits (limitCount 2 or more). `status` is -1 for too few classes, 1 and 2 for a
    // percentile below the first or above the last class centre, 0 otherwise.
    static void GPTile(long n, double percent, std::vector<double> const& values,
                       std::vector<double> const& counts, std::vector<double> const& limits, long limitCount,
                       double& result, long& status);

  private:
    friend class QXVantry_920::TransformationDictionary;
    friend class QXVantry_920::TransformVar;
    friend class QXDistFunTestAccess;

    static double probit(double const& p);
    static double prbnrm(double const& z);
    static double derf(double const& x);
    static double derfc(double const& x);
    static double dnlgam(double const& x);
    static double dnlbnc(double const& n, double const& k, long& error);
    static double gammad(double const& x, double const& shape, bool const& lower, long& error);
    static double cdfexp(double const& x, double const& rate, long& error);
    static double cdfbet(double const& x, double const& a, double const& b, long& error);
    static double cbtaux(double const& x);
    static double kromcdft(double const& x, double const& df, long& error);
    static double kromcdff(double const& x, double const& df1, double const& df2, long& error);
    // Inverse of the incomplete beta ratio; -1 means failure.
    static double betinv(double const& p, double const& a, double const& b, double const& eps1,
                         double const& eps2);
    static double idfchb(double const& p, double const& df, double const& start, long& error);
    static double kromidft(double const& p, double const& df, long& error, double const& eps1,
                           double const& eps2);
    static double kromidff(double const& p, double const& df1, double const& df2, long& error);
    static double kromidfchi(double const& p, double const& df, long& error);
    // Non-central incomplete beta ratio.
    static double ncdbet(double const& x, double const& a, double const& b, double const& lambda, long& error,
                         double const& errmax);
};

}  // namespace QXMath_920
