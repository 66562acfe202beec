// The dictionary of the library: an ordered map from name to owned variable for every look-up, and
// beside it the names in the order of their arrival. The two are deliberately not kept in step: the list
// keeps names that were removed or added twice, and tells the order of declaration.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"

namespace QXVantry_920 {

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
