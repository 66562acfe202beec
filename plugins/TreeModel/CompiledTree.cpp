#include "plugins/TreeModel/CompiledTree.h"

#include <ostream>

namespace QXVantry_920 {

namespace {

char const* StrategyText(TreeMissingStrategy strategy) {
    switch (strategy) {
        case TreeMissingStrategy::kLastPrediction:
            return "lastPrediction";
        case TreeMissingStrategy::kNullPrediction:
            return "nullPrediction";
        case TreeMissingStrategy::kDefaultChild:
            return "defaultChild";
        case TreeMissingStrategy::kWeightedConfidence:
            return "weightedConfidence";
        case TreeMissingStrategy::kAggregateNodes:
            return "aggregateNodes";
        default:
            return "none";
    }
}

}  // namespace

CompiledTree::CompiledTree() = default;
CompiledTree::~CompiledTree() = default;

void CompiledTree::Display(std::ostream& out) const {
    out << "Tree: " << (fClassification ? "classification" : "regression") << ", " << (fNodes.size() - 1)
        << " nodes, " << fCategories.size() << " categories, missing value strategy "
        << StrategyText(fMissingStrategy) << ", no true child "
        << (fNoTrueChild == TreeNoTrueChild::kReturnLastPrediction ? "returnLastPrediction"
                                                                   : "returnNullPrediction")
        << ", missing value penalty " << fPenalty << '\n';
}

}  // namespace QXVantry_920
