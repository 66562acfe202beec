// The named collection of a model's variables. ScoreDictionary is the interface; BaseDictionary
// (vantry/values/BaseDictionary.h) its implementation. A dictionary owns its variables.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {

class ScoreDictVar;

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

}  // namespace QXVantry_920
