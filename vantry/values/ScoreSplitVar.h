// The routing table of a tree node: it names a variable and maps each value of it, or each range of it,
// to the index of a child. The variable is not owned; its dictionary outlives the split.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class ScoreValue;

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

}  // namespace QXVantry_920
