// A decision tree of the shipped TreeModel plug-in: the common family model around a compiled tree.
// Evaluate walks the tree on the case's prepared and derived records and turns the end node (or the
// blend of several) into the family's prediction.
#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

#include "plugins/TreeModel/CompiledTree.h"
#include "plugins/TreeModel/TreeWalker.h"
#include "plugins/common/FamilyModel.h"

namespace QXVantry_920 {

class TreeModel : public FamilyModel {
  public:
    TreeModel();
    ~TreeModel() override;

    // Takes the tree over. A classification's categories must be set before the first case.
    void SetTree(std::unique_ptr<CompiledTree> tree);
    CompiledTree const& GetTree() const { return *fTree; }

  protected:
    bool Evaluate(FamilyCase const& input, Prediction& prediction) override;
    void DisplayFamily(std::ostream& out) const override;

  private:
    std::unique_ptr<CompiledTree> fTree;
    std::unique_ptr<TreeWalker> fWalker;
    // The model's category index of each of the tree's categories (-1 for one the model lacks),
    // resolved at the first case.
    std::vector<int> fCategoryMap;
    bool fMapped = false;
};

}  // namespace QXVantry_920
