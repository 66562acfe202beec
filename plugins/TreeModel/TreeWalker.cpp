#include "plugins/TreeModel/TreeWalker.h"

#include <algorithm>
#include <cmath>

namespace QXVantry_920 {

namespace {

// The first index of the largest entry; -1 when every entry is 0 or less.
std::int32_t Winner(double const* values, std::size_t count) {
    std::int32_t winner = -1;
    double best = 0.0;
    for (std::size_t k = 0; k < count; ++k) {
        if (values[k] > best) {
            best = values[k];
            winner = static_cast<std::int32_t>(k);
        }
    }
    return winner;
}

}  // namespace

TreeWalker::TreeWalker(CompiledTree const& tree) : fTree(tree) {
    fStack.reserve(tree.Nodes().size());
    fCandidates.reserve(tree.MaxChildren());
    fConfidenceSum.assign(tree.CategoryCount(), 0.0);
    fProbabilitySum.assign(tree.CategoryCount(), 0.0);
    fSingle.assign(tree.CategoryCount(), 0.0);
}

ScorePredicate::PredicateResult TreeWalker::Evaluate(std::int32_t node) {
    TreeNode const& current = fTree.Node(node);
    switch (current.test.kind) {
        case NodeTest::kTrue:
            return ScorePredicate::PRED_TRUE;
        case NodeTest::kFalse:
            return ScorePredicate::PRED_FALSE;
        case NodeTest::kNumber: {
            int const result = TestNumber(current.test, fSlots);
            if (result != kPredicateNeeded) {
                return static_cast<ScorePredicate::PredicateResult>(result);
            }
            break;
        }
        case NodeTest::kPredicate:
            break;
    }
    ScorePredicate* predicate = current.predicate;
    if (predicate == nullptr) {
        return ScorePredicate::PRED_UNKNOWN;
    }
    ScorePredicate::PredicateResult const result = predicate->Evaluate(fInput, fDerived);
    return result == ScorePredicate::PRED_SURROGATE_TRUE ? ScorePredicate::PRED_TRUE : result;
}

TreeAnswer const& TreeWalker::Walk(ScoreCaseRecord const* input, ScoreCaseRecord const* derived,
                                   MiningSchema const* judged) {
    fInput = input;
    fDerived = derived;
    fSlots = CaseSlots(input, derived, judged);
    fAnswer = TreeAnswer();
    TreeMissingStrategy const strategy = fTree.MissingStrategy();
    int penalties = 0;
    std::int32_t node = 0;
    for (;;) {
        TreeNode const& current = fTree.Node(node);
        if (current.childCount == 0) {
            Finish(node, penalties);
            return fAnswer;
        }
        std::int32_t chosen = -1;
        std::int32_t const end = current.firstChild + current.childCount;
        for (std::int32_t child = current.firstChild; child < end; ++child) {
            ScorePredicate::PredicateResult const result = Evaluate(child);
            if (result == ScorePredicate::PRED_TRUE) {
                chosen = child;
                break;
            }
            if (result != ScorePredicate::PRED_UNKNOWN || strategy == TreeMissingStrategy::kNone) {
                continue;
            }
            switch (strategy) {
                case TreeMissingStrategy::kLastPrediction:
                    Finish(node, penalties + 1);
                    return fAnswer;
                case TreeMissingStrategy::kWeightedConfidence:
                case TreeMissingStrategy::kAggregateNodes:
                    Blend(node, child);
                    return fAnswer;
                case TreeMissingStrategy::kDefaultChild:
                    chosen = current.defaultChild;
                    penalties += chosen >= 0 ? 1 : 0;
                    break;
                default:  // nullPrediction
                    return fAnswer;
            }
            break;
        }
        if (chosen < 0) {
            if (fTree.NoTrueChild() == TreeNoTrueChild::kReturnLastPrediction) {
                Finish(node, penalties);
            }
            return fAnswer;
        }
        node = chosen;
    }
}

// The prediction of one node, its confidence lowered once by the penalty for each missing value
// handled on the way. The virtual node above the root predicts nothing.
void TreeWalker::Finish(std::int32_t node, int penalties) {
    if (node == 0) {
        return;
    }
    TreeNode const& end = fTree.Node(node);
    if (!fTree.IsClassification()) {
        if (end.hasScore) {
            fAnswer.valid = true;
            fAnswer.number = end.score;
            fAnswer.node = node;
            fAnswer.id = fTree.Id(end);
        }
        return;
    }
    double const* probabilities = fTree.Probabilities(end);
    std::int32_t category = end.category;
    if (category < 0 && probabilities != nullptr) {
        category = Winner(probabilities, fTree.CategoryCount());
    }
    if (category < 0) {
        return;
    }
    double const* confidences = fTree.Confidences(end);
    if (probabilities == nullptr) {
        std::fill(fSingle.begin(), fSingle.end(), 0.0);
        fSingle[static_cast<std::size_t>(category)] = 1.0;
        probabilities = fSingle.data();
        confidences = fSingle.data();
    }
    double const scale = penalties > 0 ? std::pow(fTree.MissingValuePenalty(), penalties) : 1.0;
    fAnswer.valid = true;
    fAnswer.node = node;
    fAnswer.category = category;
    fAnswer.confidence = confidences[category] * scale;
    fAnswer.probabilities = probabilities;
    fAnswer.confidences = confidences;
    fAnswer.confidenceScale = scale;
    fAnswer.id = fTree.Id(end);
}

// weightedConfidence and aggregateNodes: from the first unknown child of `parent` on, every child that
// is not false (up to the first true one) is followed, and so on below wherever a condition is unknown.
// The end nodes reached are summed: their confidences and probabilities weighted by their share of the
// records, or their record counts.
void TreeWalker::Blend(std::int32_t parent, std::int32_t firstUnknown) {
    std::fill(fConfidenceSum.begin(), fConfidenceSum.end(), 0.0);
    std::fill(fProbabilitySum.begin(), fProbabilitySum.end(), 0.0);
    fWeightSum = 0.0;
    fScoreSum = 0.0;
    fStack.clear();
    PushCandidates(parent, firstUnknown, 1.0);
    while (!fStack.empty()) {
        Frame const frame = fStack.back();
        fStack.pop_back();
        std::int32_t node = frame.node;
        for (;;) {
            TreeNode const& current = fTree.Node(node);
            if (current.childCount == 0) {
                Accumulate(node, frame.weight);
                break;
            }
            std::int32_t next = -1;
            ScorePredicate::PredicateResult result = ScorePredicate::PRED_FALSE;
            std::int32_t const end = current.firstChild + current.childCount;
            for (std::int32_t child = current.firstChild; child < end && next < 0; ++child) {
                result = Evaluate(child);
                next = result == ScorePredicate::PRED_FALSE ? -1 : child;
            }
            if (next >= 0 && result == ScorePredicate::PRED_TRUE) {
                node = next;
                continue;
            }
            if (next >= 0) {
                PushCandidates(node, next, frame.weight);
            } else if (fTree.NoTrueChild() == TreeNoTrueChild::kReturnLastPrediction) {
                Accumulate(node, frame.weight);
            }
            break;
        }
    }
    FinishBlend();
}

// Each candidate gets its share of the parent's records (of the candidates' records when the parent
// has no count, equal shares when a candidate has none).
void TreeWalker::PushCandidates(std::int32_t parent, std::int32_t firstUnknown, double weight) {
    TreeNode const& node = fTree.Node(parent);
    fCandidates.clear();
    fCandidates.push_back(firstUnknown);
    std::int32_t const end = node.firstChild + node.childCount;
    for (std::int32_t child = firstUnknown + 1; child < end; ++child) {
        ScorePredicate::PredicateResult const result = Evaluate(child);
        if (result != ScorePredicate::PRED_FALSE) {
            fCandidates.push_back(child);
        }
        if (result == ScorePredicate::PRED_TRUE) {
            break;
        }
    }
    bool counted = true;
    double sum = 0.0;
    for (std::int32_t candidate : fCandidates) {
        counted = counted && fTree.Node(candidate).hasRecordCount;
        sum += fTree.Node(candidate).recordCount;
    }
    double const total = node.hasRecordCount && node.recordCount > 0.0 ? node.recordCount : sum;
    for (std::int32_t candidate : fCandidates) {
        double const share = counted && total > 0.0 ? fTree.Node(candidate).recordCount / total
                                                    : 1.0 / static_cast<double>(fCandidates.size());
        fStack.push_back({candidate, weight * share});
    }
}

void TreeWalker::Accumulate(std::int32_t node, double weight) {
    TreeNode const& end = fTree.Node(node);
    bool const aggregate = fTree.MissingStrategy() == TreeMissingStrategy::kAggregateNodes;
    if (!fTree.IsClassification()) {
        if (end.hasScore) {
            double const w = aggregate ? (end.hasRecordCount ? end.recordCount : 1.0) : weight;
            fWeightSum += w;
            fScoreSum += w * end.score;
        }
        return;
    }
    std::size_t const count = fTree.CategoryCount();
    if (aggregate) {
        if (double const* counts = fTree.Counts(end)) {
            for (std::size_t k = 0; k < count; ++k) {
                fConfidenceSum[k] += counts[k];
            }
        } else if (end.category >= 0 && end.hasRecordCount) {
            fConfidenceSum[static_cast<std::size_t>(end.category)] += end.recordCount;
        }
        return;
    }
    if (double const* probabilities = fTree.Probabilities(end)) {
        double const* confidences = fTree.Confidences(end);
        for (std::size_t k = 0; k < count; ++k) {
            fConfidenceSum[k] += weight * confidences[k];
            fProbabilitySum[k] += weight * probabilities[k];
        }
    } else if (end.category >= 0) {
        fConfidenceSum[static_cast<std::size_t>(end.category)] += weight;
        fProbabilitySum[static_cast<std::size_t>(end.category)] += weight;
    }
}

// aggregateNodes predicts the value of the largest summed record count, with its share as both
// probability and confidence; weightedConfidence the value of the largest summed confidence, with the
// summed probabilities scaled to 1.
void TreeWalker::FinishBlend() {
    if (!fTree.IsClassification()) {
        if (fWeightSum > 0.0) {
            fAnswer.valid = true;
            fAnswer.number = fScoreSum / fWeightSum;
        }
        return;
    }
    std::size_t const count = fTree.CategoryCount();
    bool const aggregate = fTree.MissingStrategy() == TreeMissingStrategy::kAggregateNodes;
    double* scaled = aggregate ? fConfidenceSum.data() : fProbabilitySum.data();
    double total = 0.0;
    for (std::size_t k = 0; k < count; ++k) {
        total += scaled[k];
    }
    std::int32_t const winner = Winner(fConfidenceSum.data(), count);
    if (winner < 0 || total <= 0.0) {
        return;
    }
    for (std::size_t k = 0; k < count; ++k) {
        scaled[k] /= total;
    }
    fAnswer.valid = true;
    fAnswer.category = winner;
    fAnswer.confidence = fConfidenceSum[static_cast<std::size_t>(winner)];
    fAnswer.probabilities = aggregate ? fConfidenceSum.data() : fProbabilitySum.data();
    fAnswer.confidences = fConfidenceSum.data();
}

}  // namespace QXVantry_920
