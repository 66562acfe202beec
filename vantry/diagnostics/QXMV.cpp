#include "vantry/diagnostics/QXMV.h"

#include <cfloat>

namespace QXCommon_920 {

double const QXMV::gMissingValue = -DBL_MAX;

double QXMV::Missing() {
    return gMissingValue;
}

bool QXMV::IsMissing(double value) {
    return value == gMissingValue;
}

}  // namespace QXCommon_920
