// The soft outcome of a scoring call: a code, a severity and three discrete and three scale data.
#pragma once

#include "vantry/Export.h"

namespace QXScore {

class VANTRY_EXPORT QXStatus {
  public:
    // Everything zero: OK with code 0.
    QXStatus();
    // Severity 1 for a warning, -1 for an error; all data zero.
    QXStatus(long code, bool warning);
    QXStatus(QXStatus const&) = default;
    QXStatus(QXStatus&&) = default;
    QXStatus& operator=(QXStatus const&);
    QXStatus& operator=(QXStatus&&);

    long GetErrorCode() const;
    bool IsOK() const;
    bool IsError() const;
    bool IsWarning() const;

    // The index is not checked: callers keep to 0, 1 and 2.
    void SetDiscreteDatum(unsigned int index, long value);
    long GetDiscreteDatum(unsigned int index) const;
    void SetScaleDatum(unsigned int index, double value);
    double GetScaleDatum(unsigned int index) const;

    // Field by field; scale data compare as IEEE numbers, so a NaN makes two statuses unequal.
    bool operator==(QXStatus const& other) const;

  private:
    long code;
    short severity;
    long discreteData[3];
    double scaleData[3];
};

}  // namespace QXScore

namespace QXCommon_920 {

// The same record under the common namespace; only its assignments are exported.
class QXStatus {
  public:
    QXStatus() = default;
    QXStatus(QXStatus const&) = default;
    QXStatus(QXStatus&&) = default;
    VANTRY_EXPORT QXStatus& operator=(QXStatus const& other);
    VANTRY_EXPORT QXStatus& operator=(QXStatus&& other);

    long code = 0;
    short severity = 0;
    long discreteData[3] = {0, 0, 0};
    double scaleData[3] = {0.0, 0.0, 0.0};
};

}  // namespace QXCommon_920
