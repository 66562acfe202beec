// The scoring form of a decision tree: one array of nodes in breadth-first order, so that the children
// of a node are contiguous and are named by their first index and their count. Slot 0 is a virtual node
// without a prediction whose only child is the document's root; a walk starts there, so that the root's
// own condition is tried like any other.
//
// Per-category numbers of the nodes that carry a score distribution are rows of three flat tables
// (probability, confidence, record count), row r starting at r * CategoryCount(). The tree owns its
// predicates; the variables their splits read belong to the model's dictionaries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "plugins/TreeModel/NodeTest.h"
#include "vantry/transform/ScorePredicate.h"

namespace QXVantry_920 {

enum class TreeMissingStrategy : std::uint8_t {
    kNone,  // an unknown condition counts as false
    kLastPrediction,
    kNullPrediction,
    kDefaultChild,
    kWeightedConfidence,
    kAggregateNodes,
};

enum class TreeNoTrueChild : std::uint8_t { kReturnNullPrediction, kReturnLastPrediction };

struct TreeNode {
    // Owned by the tree; a node without a usable condition has null, which evaluates as unknown.
    ScorePredicate* predicate = nullptr;
    // The predicate's fastest form (NodeTest.h).
    NodeTest test;
    std::int32_t firstChild = 0;
    std::int32_t childCount = 0;
    std::int32_t defaultChild = -1;  // node index, -1 for none
    std::int32_t category = -1;      // the score as a category index (classification), -1 for none
    std::int32_t distribution = -1;  // row of the distribution tables, -1 for none
    std::int32_t id = -1;            // entry of the id table, -1 for none
    bool hasScore = false;
    bool hasRecordCount = false;
    double score = 0.0;  // the score as a number (regression)
    double recordCount = 0.0;
};

class CompiledTree {
  public:
    CompiledTree();
    CompiledTree(CompiledTree const&) = delete;
    CompiledTree& operator=(CompiledTree const&) = delete;
    ~CompiledTree();

    std::vector<TreeNode> const& Nodes() const { return fNodes; }
    TreeNode const& Node(std::int32_t index) const { return fNodes[static_cast<std::size_t>(index)]; }
    std::size_t CategoryCount() const { return fCategories.size(); }
    std::vector<std::string> const& Categories() const { return fCategories; }
    // The row of a node's distribution table; null for a node without one.
    double const* Probabilities(TreeNode const& node) const { return Row(fProbabilities, node); }
    double const* Confidences(TreeNode const& node) const { return Row(fConfidences, node); }
    double const* Counts(TreeNode const& node) const { return Row(fCounts, node); }
    std::string const* Id(TreeNode const& node) const {
        return node.id < 0 ? nullptr : &fIds[static_cast<std::size_t>(node.id)];
    }
    // The most children any node has.
    std::size_t MaxChildren() const { return fMaxChildren; }

    bool IsClassification() const { return fClassification; }
    TreeMissingStrategy MissingStrategy() const { return fMissingStrategy; }
    TreeNoTrueChild NoTrueChild() const { return fNoTrueChild; }
    double MissingValuePenalty() const { return fPenalty; }

    void Display(std::ostream& out) const;

  private:
    friend class TreeCompiler;
    friend class TreeBuilder;

    double const* Row(std::vector<double> const& table, TreeNode const& node) const {
        return node.distribution < 0
                   ? nullptr
                   : table.data() + static_cast<std::size_t>(node.distribution) * fCategories.size();
    }

    std::vector<TreeNode> fNodes;
    std::vector<std::unique_ptr<ScorePredicate>> fPredicates;
    std::vector<std::string> fCategories;
    std::vector<double> fProbabilities;
    std::vector<double> fConfidences;
    std::vector<double> fCounts;
    std::vector<std::string> fIds;
    std::size_t fMaxChildren = 0;
    bool fClassification = true;
    TreeMissingStrategy fMissingStrategy = TreeMissingStrategy::kNone;
    TreeNoTrueChild fNoTrueChild = TreeNoTrueChild::kReturnNullPrediction;
    double fPenalty = 1.0;
};

}  // namespace QXVantry_920
