#include "plugins/TreeModel/TreeModel.h"

#include <cstddef>
#include <ostream>

namespace QXVantry_920 {

TreeModel::TreeModel() = default;

TreeModel::~TreeModel() = default;

void TreeModel::SetTree(std::unique_ptr<CompiledTree> tree) {
    fWalker.reset();
    fTree = std::move(tree);
    fWalker = std::make_unique<TreeWalker>(*fTree);
    fMapped = false;
}

bool TreeModel::Evaluate(FamilyCase const& input, Prediction& prediction) {
    TreeAnswer const& answer = fWalker->Walk(input.Input(), input.Derived(), &GetSchema());
    if (!answer.valid) {
        return false;
    }
    if (answer.id != nullptr) {
        prediction.entityId = *answer.id;
    }
    if (!fTree->IsClassification()) {
        prediction.value = answer.number;
        prediction.valid = true;
        return true;
    }
    std::vector<std::string> const& treeCategories = fTree->Categories();
    if (!fMapped) {
        fCategoryMap.clear();
        for (std::string const& text : treeCategories) {
            fCategoryMap.push_back(FindCategory(text));
        }
        fMapped = true;
    }
    int const category = fCategoryMap[static_cast<std::size_t>(answer.category)];
    if (category < 0) {
        return false;
    }
    std::size_t const count = GetCategories().size();
    prediction.probabilities.assign(count, 0.0);
    prediction.confidences.assign(count, 0.0);
    for (std::size_t k = 0; k < treeCategories.size(); ++k) {
        int const to = fCategoryMap[k];
        if (to >= 0) {
            prediction.probabilities[static_cast<std::size_t>(to)] = answer.probabilities[k];
            prediction.confidences[static_cast<std::size_t>(to)] =
                answer.confidences[k] * answer.confidenceScale;
        }
    }
    prediction.category = category;
    prediction.valid = true;
    return true;
}

void TreeModel::DisplayFamily(std::ostream& out) const {
    if (fTree) {
        fTree->Display(out);
    }
}

}  // namespace QXVantry_920
