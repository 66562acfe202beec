// The system-missing number shared by every numeric part of the library.
#pragma once

#include "vantry/Export.h"

namespace QXCommon_920 {

// The most negative finite double (bit pattern FFEFFFFFFFFFFFFF), used as "no value". It is an ordinary
// number, not a NaN: a NaN is never taken for missing.
class VANTRY_EXPORT QXMV {
  public:
    static double Missing();
    static bool IsMissing(double value);

  private:
    static double const gMissingValue;
};

}  // namespace QXCommon_920
