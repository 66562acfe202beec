// Value ranges: an interval of numbers with open or closed ends, or one single value of any kind.
// Missing-value sets are built from them.
#pragma once

#include <memory>
#include <ostream>

#include "vantry/Export.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreValueRange {
  public:
    virtual ~ScoreValueRange();
    virtual bool operator==(ScoreValueRange const& other) const = 0;
    // A deep copy; the caller owns it.
    virtual ScoreValueRange* Clone() const = 0;
    // Both setters take the value over. The bound they replace is not deleted: it passes back to the
    // caller, who deletes it unless it is held elsewhere.
    virtual void SetMin(ScoreValue* value) = 0;
    virtual void SetMax(ScoreValue* value) = 0;
    virtual bool IsInRange(double value) const = 0;
    virtual bool IsInRange(ScoreValue const* value) const = 0;
    // Owned by the range.
    virtual ScoreValue const* GetMin() const = 0;
    virtual ScoreValue const* GetMax() const = 0;
    virtual bool GetHighEnd() const = 0;
    virtual bool GetLowEnd() const = 0;
    virtual void Display(std::ostream& out) const = 0;
};

// Owns both bounds, which are never null. A system-missing numeric lower bound means no lower bound and
// is replaced by negative infinity; the numeric bounds are cached as doubles, and a bound of another
// kind leaves its cached number at infinity, so that such a range only works as a single value.
class VANTRY_EXPORT Range : public ScoreValueRange {
  public:
    Range(Range const& other);
    // Single when the two numbers are exactly equal. The cached bounds are the arguments as given.
    Range(double min, double max, bool lowEnd, bool highEnd);
    // Takes both values over; a null bound is unbounded on its side. The same pointer for both makes
    // the upper bound a clone of it.
    Range(ScoreValue* min, ScoreValue* max, bool lowEnd, bool highEnd);
    // A single value with both ends included; takes the value over. Null gives the whole line.
    explicit Range(ScoreValue* value);
    Range& operator=(Range const& other);
    ~Range() override;

    // Bounds by the left bound's operator==, then both end flags.
    bool operator==(ScoreValueRange const& other) const override;
    ScoreValueRange* Clone() const override;
    // A null value is ignored.
    void SetMin(ScoreValue* value) override;
    // A null value is ignored.
    void SetMax(ScoreValue* value) override;
    // A single range asks IsEqual against its cached lower number; otherwise the missing number is out,
    // an included end is in under IsEqual, and the rest must lie strictly between the cached numbers.
    bool IsInRange(double value) const override;
    // A single range compares with the value's own operator== (the path of string missing values);
    // otherwise only a non-missing number or date-time can be in, through its GetDouble.
    bool IsInRange(ScoreValue const* value) const override;
    ScoreValue const* GetMin() const override;
    ScoreValue const* GetMax() const override;
    bool GetHighEnd() const override;
    bool GetLowEnd() const override;
    void Display(std::ostream& out) const override;

    // The answer of IsInRange for a numeric value holding x, read without a value and without a
    // virtual call: missing-value sets ask it of every number they test.
    bool HoldsNumber(double x) const;

  private:
    // Stores a new lower bound, replacing a system-missing number by negative infinity, and caches its
    // number when it is a number.
    void AdoptMin(ScoreValue* value);
    void AdoptMax(ScoreValue* value);
    bool IsInInterval(double value) const;

    std::unique_ptr<ScoreValue> fMinValue;
    std::unique_ptr<ScoreValue> fMaxValue;
    bool fHighEnd;
    bool fLowEnd;
    bool fSingle;
    double fMinNumber;
    double fMaxNumber;
};

}  // namespace QXVantry_920
