// The missing values of a variable: a set of ranges, each a single value or an interval.
#pragma once

#include <ostream>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/OwnedPointers.h"
#include "vantry/values/Range.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreMissingValueSet {
  public:
    virtual ~ScoreMissingValueSet();
    // A deep copy; the caller owns it.
    virtual ScoreMissingValueSet* Clone() const = 0;
    // True when the range was taken over. A range equal to one already held is refused and stays with
    // the caller.
    virtual bool Add(ScoreValueRange* range) = 0;
    // Deletes every held range equal to the argument; true if there was one.
    virtual bool Remove(ScoreValueRange const* range) = 0;
    virtual int Size() const = 0;
    virtual bool Contains(ScoreValueRange const* range) const = 0;
    // The ranges in order of addition; they stay owned by the set.
    virtual std::vector<ScoreValueRange const*> GetMissingValues() const = 0;
    virtual void Display(std::ostream& out) const = 0;
};

class VANTRY_EXPORT MissingValueSet : public ScoreMissingValueSet {
  public:
    MissingValueSet();
    MissingValueSet(MissingValueSet const& other);
    MissingValueSet& operator=(MissingValueSet const& other);
    ~MissingValueSet() override;

    ScoreMissingValueSet* Clone() const override;
    bool Add(ScoreValueRange* range) override;
    bool Remove(ScoreValueRange const* range) override;
    int Size() const override;
    bool Contains(ScoreValueRange const* range) const override;
    std::vector<ScoreValueRange const*> GetMissingValues() const override;
    void Display(std::ostream& out) const override;

    // True when one of the ranges holds the value. Reads the ranges in place, so that the per-case
    // missing-value test of a variable allocates nothing.
    bool AnyRangeHolds(ScoreValue const* value) const;

  private:
    // Notes which held ranges are the library's own Range, after every change of the ranges.
    void IndexRanges();

    detail::OwnedPointers<ScoreValueRange> fRanges;
    // The held ranges as Range, when every one is; a number is then tested without virtual calls.
    std::vector<Range const*> fOwnRanges;
    bool fAllOwn = true;
};

}  // namespace QXVantry_920
