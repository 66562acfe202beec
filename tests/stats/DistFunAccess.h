// Test access to the working core of QXDistFun: the class names this one as a friend, so the tests can call
// the private functions (and read their error codes) that the public functions hide.
#pragma once

#include <gtest/gtest.h>

#include "vantry/diagnostics/QXMV.h"
#include "vantry/stats/QXDistFun.h"

namespace QXMath_920 {

class QXDistFunTestAccess {
  public:
    static double probit(double p) { return QXDistFun::probit(p); }
    static double prbnrm(double z) { return QXDistFun::prbnrm(z); }
    static double derf(double x) { return QXDistFun::derf(x); }
    static double derfc(double x) { return QXDistFun::derfc(x); }
    static double dnlgam(double x) { return QXDistFun::dnlgam(x); }
    static double dnlbnc(double n, double k, long& error) { return QXDistFun::dnlbnc(n, k, error); }
    static double gammad(double x, double shape, bool lower, long& error) {
        return QXDistFun::gammad(x, shape, lower, error);
    }
    static double cdfexp(double x, double rate, long& error) { return QXDistFun::cdfexp(x, rate, error); }
    static double cdfbet(double x, double a, double b, long& error) {
        return QXDistFun::cdfbet(x, a, b, error);
    }
    static double cbtaux(double x) { return QXDistFun::cbtaux(x); }
    static double kromcdft(double x, double df, long& error) { return QXDistFun::kromcdft(x, df, error); }
    static double kromcdff(double x, double df1, double df2, long& error) {
        return QXDistFun::kromcdff(x, df1, df2, error);
    }
    static double betinv(double p, double a, double b, double eps1, double eps2) {
        return QXDistFun::betinv(p, a, b, eps1, eps2);
    }
    static double idfchb(double p, double df, double start, long& error) {
        return QXDistFun::idfchb(p, df, start, error);
    }
    static double kromidft(double p, double df, long& error) {
        return QXDistFun::kromidft(p, df, error, 1e-20, 1e-12);
    }
    static double kromidff(double p, double df1, double df2, long& error) {
        return QXDistFun::kromidff(p, df1, df2, error);
    }
    static double kromidfchi(double p, double df, long& error) { return QXDistFun::kromidfchi(p, df, error); }
    static double ncdbet(double x, double a, double b, double lambda, long& error, double errmax) {
        return QXDistFun::ncdbet(x, a, b, lambda, error, errmax);
    }
};

}  // namespace QXMath_920

namespace statstest {

using Core = QXMath_920::QXDistFunTestAccess;
using QXMath_920::QXDistFun;

inline bool Missing(double v) {
    return QXCommon_920::QXMV::IsMissing(v);
}

// The missing value, with the error code that the call left in `error` (read after the call).
template <typename Code>
testing::AssertionResult MissingWith(double value, Code const& error, long expected) {
    if (Missing(value) && error == expected) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "value " << value << ", error " << error << ", not " << expected;
}

}  // namespace statstest
