// The routing table of a tree node: it names a variable and maps each value of it, or each range of it,
// to the index of a child. The variable is not owned; its dictionary outlives the split.
#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class ScoreValue;
class ScoreValueRange;

class VANTRY_EXPORT ScoreSplitVar {
  public:
    enum SplitVarType : int {
        SCALE_SPLIT = 0,
        DISCRETE_SPLIT = 1,
    };

    ScoreSplitVar();
    explicit ScoreSplitVar(ScoreDictVar const* var);
    ScoreSplitVar(ScoreSplitVar const& other);

    virtual ~ScoreSplitVar();
    virtual ScoreSplitVar* Clone() const = 0;
    virtual void SetSplitVar(ScoreDictVar const* var);
    virtual void SetMissvalMap(int childIndex);
    virtual ScoreDictVar const* GetSplitVar() const;
    virtual std::string const& GetSplitName() const;
    virtual std::string const& GetSplitLabel() const;
    virtual int GetSplitType() const;
    virtual SplitVarType GetSplitVarType() = 0;
    virtual int GetSplitMLevel() const;
    // The child for a missing value; -1 when there is none.
    virtual int GetMissvalMap() const;
    // -1 when the value leads to no child.
    virtual int GetSplitChildIndex(double x) const = 0;
    virtual int GetSplitChildIndex(ScoreValue const* value) const = 0;
    virtual void Display(std::ostream& out) const = 0;

  protected:
    ScoreSplitVar& operator=(ScoreSplitVar const& other);

    // A split's pairs of owned value or range and child index, in order of addition.
    template <class T>
    using ChildPairs = std::vector<std::pair<std::unique_ptr<T>, int>>;

    // Copies clone the pairs of their source onto the end of their own.
    template <class T>
    static void AppendClones(ChildPairs<T>& to, ChildPairs<T> const& from) {
        to.reserve(to.size() + from.size());
        for (auto const& [item, child] : from) {
            to.emplace_back(item->Clone(), child);
        }
    }

    ScoreDictVar const* fSplitVar;
    int fMissvalMap;
};

// A split on categories. It keeps two separate tables: value pairs, read by the look-up of a value, and a
// number map, read by the look-up of a number. Each PutSplit form fills one of them.
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

    // The first child given for a number stays. A NaN is not entered: no look-up could match it.
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

// A split on ranges: the first range that holds the value names the child.
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
