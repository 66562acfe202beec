// The named collection of a model's variables. ScoreDictionary is the interface; BaseDictionary, below,
// its implementation. A dictionary owns its variables.
#pragma once

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreDictionary {
  public:
    virtual ~ScoreDictionary();
    virtual ScoreDictionary* Clone() const = 0;
    // Merges clones of other's variables in; answers false even when it worked.
    virtual bool AddVar(ScoreDictionary const* other) = 0;
    // Takes the variable over unless the name is taken; duplicates are the caller's to prevent.
    virtual bool AddVar(std::string const& name, ScoreDictVar* var) = 0;
    virtual bool RemoveVar(std::string const& name) = 0;
    virtual ScoreDictVar* GetVar(std::string const& name) = 0;
    virtual ScoreDictVar const* GetVar(std::string const& name) const = 0;
    virtual int Size() const = 0;
    // Sorted by name; the dictionary keeps the pointers.
    virtual std::vector<ScoreDictVar*> GetScoreDictVars() const = 0;
    // In order of declaration, with repeated and removed names.
    virtual std::vector<std::string> GetVarNames() const = 0;
    virtual void Display(std::ostream& out) const = 0;

  protected:
    ScoreDictionary() = default;
    ScoreDictionary(ScoreDictionary const&) = default;
    ScoreDictionary& operator=(ScoreDictionary const&) = default;
};

// The dictionary of the library: an ordered map from name to owned variable for every look-up, and
// beside it the names in the order of their arrival. The two are deliberately not kept in step: the list
// keeps names that were removed or added twice, and tells the order of declaration.
class VANTRY_EXPORT BaseDictionary : public ScoreDictionary {
  public:
    BaseDictionary();
    BaseDictionary(BaseDictionary const& other);
    // Replaces the variables by clones of other's; the name list stays as it was.
    BaseDictionary& operator=(BaseDictionary const& other);
    ~BaseDictionary() override;

    ScoreDictionary* Clone() const override;
    bool AddVar(ScoreDictionary const* other) override;
    bool AddVar(std::string const& name, ScoreDictVar* var) override;
    bool RemoveVar(std::string const& name) override;
    ScoreDictVar* GetVar(std::string const& name) override;
    ScoreDictVar const* GetVar(std::string const& name) const override;
    int Size() const override;
    std::vector<ScoreDictVar*> GetScoreDictVars() const override;
    std::vector<std::string> GetVarNames() const override;
    void Display(std::ostream& out) const override;

  protected:
    using VarMap = std::map<std::string, std::unique_ptr<ScoreDictVar>, std::less<>>;

    // Adds a clone of each of other's variables, in other's map order.
    void CloneVarsOf(BaseDictionary const& other);

    VarMap fVars;
    std::vector<std::string> fVarNames;
};

}  // namespace QXVantry_920
