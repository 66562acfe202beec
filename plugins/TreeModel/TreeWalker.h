// Scores one case on a CompiledTree. A walk starts above the root and, at each node, tries the children
// in order: the first whose condition holds (directly or through a surrogate) is followed. An unknown
// condition hands the decision to the tree's missing value strategy; a node none of whose children holds
// ends the walk by the no-true-child strategy.
//
// The walker keeps its scratch space (the blend's stack and sums) from construction on, so that a walk
// allocates nothing. One walker belongs to one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "plugins/TreeModel/CompiledTree.h"

namespace QXVantry_920 {

class ScoreCaseRecord;

struct TreeAnswer {
    bool valid = false;
    // The node whose prediction this is; -1 for a blend of several nodes or no prediction.
    std::int32_t node = -1;
    double number = 0.0;         // regression
    std::int32_t category = -1;  // classification
    // The predicted category's confidence, with the missing value penalty applied.
    double confidence = 0.0;
    // CategoryCount() probabilities and confidences (classification with a prediction), owned by the
    // tree or the walker; the confidences are to be multiplied by confidenceScale (the penalty).
    double const* probabilities = nullptr;
    double const* confidences = nullptr;
    double confidenceScale = 1.0;
    // The end node's id; null when it has none.
    std::string const* id = nullptr;
};

class TreeWalker {
  public:
    // The tree must outlive the walker.
    explicit TreeWalker(CompiledTree const& tree);

    // The answer stays valid until the next walk.
    // `judged`, when not null, is the mining schema that has just prepared `input`.
    TreeAnswer const& Walk(ScoreCaseRecord const* input, ScoreCaseRecord const* derived,
                           MiningSchema const* judged = nullptr);

  private:
    struct Frame {
        std::int32_t node;
        double weight;
    };

    ScorePredicate::PredicateResult Evaluate(std::int32_t node);
    void Finish(std::int32_t node, int penalties);
    void Blend(std::int32_t parent, std::int32_t firstUnknown);
    void PushCandidates(std::int32_t parent, std::int32_t firstUnknown, double weight);
    void Accumulate(std::int32_t node, double weight);
    void FinishBlend();

    CompiledTree const& fTree;
    ScoreCaseRecord const* fInput = nullptr;
    ScoreCaseRecord const* fDerived = nullptr;
    CaseSlots fSlots;
    TreeAnswer fAnswer;
    // Scratch of blends: the nodes still to descend, the candidates of one node, and the sums.
    std::vector<Frame> fStack;
    std::vector<std::int32_t> fCandidates;
    std::vector<double> fConfidenceSum;
    std::vector<double> fProbabilitySum;
    double fWeightSum = 0.0;
    double fScoreSum = 0.0;
    // The probabilities of a node that has a score but no distribution: all on its category.
    std::vector<double> fSingle;
};

}  // namespace QXVantry_920
