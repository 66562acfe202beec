// A split on ranges: the first range that holds the value names the child.
#pragma once

#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreSplitVar.h"

namespace QXVantry_920 {

class ScoreValueRange;

class VANTRY_EXPORT ScaleSplit : public ScoreSplitVar {
  public:
    explicit ScaleSplit(ScoreDictVar const* var);
    ScaleSplit(ScaleSplit const& other);
    // Appends clones of other's ranges to those held and copies the variable and missing child.
    ScaleSplit& operator=(ScaleSplit const& other);
    ~ScaleSplit() override;

    ScoreSplitVar* Clone() const override;
    SplitVarType GetSplitVarType() override;
    int GetSplitChildIndex(double x) const override;
    // A value that the variable declares missing goes to the missing child.
    int GetSplitChildIndex(ScoreValue const* value) const override;
    void Display(std::ostream& out) const override;

    // Takes the range over; a null range is ignored.
    void PutSplit(ScoreValueRange* range, int childIndex);
    ScoreValueRange const* GetSplitValueRangeFirst() const;
    ScoreValueRange const* GetSplitValueRangeForIndex(int childIndex) const;

  private:
    ChildPairs<ScoreValueRange> fRangePairs;
};

}  // namespace QXVantry_920
