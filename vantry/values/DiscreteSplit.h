// A split on categories. It keeps two separate tables: value pairs, read by the look-up of a value, and a
// number map, read by the look-up of a number. Each PutSplit form fills one of them.
#pragma once

#include <map>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreSplitVar.h"

namespace QXVantry_920 {

class VANTRY_EXPORT DiscreteSplit : public ScoreSplitVar {
  public:
    explicit DiscreteSplit(ScoreDictVar const* var);
    // Clones the value pairs; the number map starts empty.
    DiscreteSplit(DiscreteSplit const& other);
    // Appends clones of other's value pairs to those held and copies the variable, missing child and band.
    DiscreteSplit& operator=(DiscreteSplit const& other);
    ~DiscreteSplit() override;

    ScoreSplitVar* Clone() const override;
    SplitVarType GetSplitVarType() override;
    // A negative number on a nominal variable counts as missing.
    int GetSplitChildIndex(double x) const override;
    int GetSplitChildIndex(ScoreValue const* value) const override;
    void Display(std::ostream& out) const override;

    // The first child given for a number stays.
    void PutSplit(double x, int childIndex);
    // Takes the value over; repeats are not looked for, and a null value is ignored.
    void PutSplit(ScoreValue* value, int childIndex);
    std::vector<ScoreValue const*> GetSplitValues();
    std::vector<ScoreValue const*> GetSplitValuesForIndex(int childIndex);
    std::vector<ScoreValue const*> GetSplitValuesFirst();
    // The band of the variable's ordered categories that the split covers.
    void SetStartAndEndIndex(int start, int end);
    void GetStartAndEndIndex(int& start, int& end);

  private:
    ChildPairs<ScoreValue> fValuePairs;
    int fStartIndex;
    int fEndIndex;
    std::map<double, int> fNumberMap;
};

}  // namespace QXVantry_920
