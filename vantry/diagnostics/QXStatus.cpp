#include "vantry/diagnostics/QXStatus.h"

namespace QXScore {

QXStatus::QXStatus() : code(0), severity(0), discreteData{0, 0, 0}, scaleData{0.0, 0.0, 0.0} {}

QXStatus::QXStatus(long code, bool warning)
    : code(code), severity(warning ? 1 : -1), discreteData{0, 0, 0}, scaleData{0.0, 0.0, 0.0} {}

QXStatus& QXStatus::operator=(QXStatus const&) = default;
QXStatus& QXStatus::operator=(QXStatus&&) = default;

long QXStatus::GetErrorCode() const {
    return code;
}
bool QXStatus::IsOK() const {
    return severity == 0;
}
bool QXStatus::IsError() const {
    return severity < 0;
}
bool QXStatus::IsWarning() const {
    return severity > 0;
}

void QXStatus::SetDiscreteDatum(unsigned int index, long value) {
    discreteData[index] = value;
}
long QXStatus::GetDiscreteDatum(unsigned int index) const {
    return discreteData[index];
}
void QXStatus::SetScaleDatum(unsigned int index, double value) {
    scaleData[index] = value;
}
double QXStatus::GetScaleDatum(unsigned int index) const {
    return scaleData[index];
}

bool QXStatus::operator==(QXStatus const& other) const {
    if (code != other.code || severity != other.severity) {
        return false;
    }
    for (int i = 0; i < 3; ++i) {
        if (discreteData[i] != other.discreteData[i] || scaleData[i] != other.scaleData[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace QXScore

namespace QXCommon_920 {

QXStatus& QXStatus::operator=(QXStatus const& other) = default;
QXStatus& QXStatus::operator=(QXStatus&& other) = default;

}  // namespace QXCommon_920
