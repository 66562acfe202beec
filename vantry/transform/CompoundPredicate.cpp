#include <ostream>

#include "vantry/transform/ScorePredicate.h"

namespace QXVantry_920 {

namespace {

using Result = ScorePredicate::PredicateResult;

// A surrogate chain from the child at `start`: that child's result unless it is unknown, otherwise the
// first known result of the children after it, where true becomes true through a surrogate.
template <class EvaluateChild>
Result SurrogateChain(std::vector<ScorePredicate*> const& children, std::size_t start,
                      EvaluateChild evaluate) {
    Result const first = evaluate(*children[start]);
    if (first != ScorePredicate::PRED_UNKNOWN) {
        return first;
    }
    for (std::size_t i = start + 1; i < children.size(); ++i) {
        Result const result = evaluate(*children[i]);
        if (result != ScorePredicate::PRED_UNKNOWN) {
            return result == ScorePredicate::PRED_TRUE ? ScorePredicate::PRED_SURROGATE_TRUE : result;
        }
    }
    return ScorePredicate::PRED_UNKNOWN;
}

// The children combined by the operator, each evaluated by `evaluate` in order and only as far as the
// result is open. A surrogate's "true through a surrogate" is neither true, false nor unknown to the
// others: "and" and "or" pass over it and "xor" does not count it.
template <class EvaluateChild>
Result Combine(ScorePredicate::CompoundBoolOperator op, std::vector<ScorePredicate*> const& children,
               EvaluateChild evaluate) {
    bool unknown = false;
    switch (op) {
        case ScorePredicate::BOOL_AND:
            for (ScorePredicate* child : children) {
                Result const result = evaluate(*child);
                if (result == ScorePredicate::PRED_FALSE) {
                    return result;
                }
                unknown = unknown || result == ScorePredicate::PRED_UNKNOWN;
            }
            return unknown ? ScorePredicate::PRED_UNKNOWN : ScorePredicate::PRED_TRUE;
        case ScorePredicate::BOOL_OR:
            for (ScorePredicate* child : children) {
                Result const result = evaluate(*child);
                if (result == ScorePredicate::PRED_TRUE) {
                    return result;
                }
                unknown = unknown || result == ScorePredicate::PRED_UNKNOWN;
            }
            return unknown ? ScorePredicate::PRED_UNKNOWN : ScorePredicate::PRED_FALSE;
        case ScorePredicate::BOOL_XOR: {
            int trueCount = 0;
            for (ScorePredicate* child : children) {
                Result const result = evaluate(*child);
                if (result == ScorePredicate::PRED_UNKNOWN) {
                    return result;
                }
                trueCount += result == ScorePredicate::PRED_TRUE ? 1 : 0;
            }
            return trueCount % 2 == 1 ? ScorePredicate::PRED_TRUE : ScorePredicate::PRED_FALSE;
        }
        case ScorePredicate::BOOL_SURROGATE:
            return children.empty() ? ScorePredicate::PRED_UNKNOWN : SurrogateChain(children, 0, evaluate);
    }
    return ScorePredicate::PRED_UNKNOWN;  // an operator number outside the enumeration
}

}  // namespace

CompoundPredicate::CompoundPredicate() : CompoundPredicate(BOOL_SURROGATE) {}

CompoundPredicate::CompoundPredicate(CompoundBoolOperator op) : fOperator(op) {}

CompoundPredicate::CompoundPredicate(CompoundPredicate const& other) = default;

CompoundPredicate& CompoundPredicate::operator=(CompoundPredicate const& other) = default;

CompoundPredicate::~CompoundPredicate() = default;

ScorePredicate* CompoundPredicate::Clone() const {
    return new CompoundPredicate(*this);
}

ScorePredicate::PredicateResult CompoundPredicate::Evaluate(std::vector<double> const& values) {
    return Combine(fOperator, fPredicates.Items(),
                   [&values](ScorePredicate& child) { return child.Evaluate(values); });
}

ScorePredicate::PredicateResult CompoundPredicate::Evaluate(ScoreCaseRecord const* input,
                                                            ScoreCaseRecord const* derived) {
    return Combine(fOperator, fPredicates.Items(),
                   [input, derived](ScorePredicate& child) { return child.Evaluate(input, derived); });
}

ScorePredicate::PredicateResult CompoundPredicate::EvaluateSurrogate(std::vector<double> const& values,
                                                                     int start) {
    if (fOperator != BOOL_SURROGATE || start < 0 || start >= GetCount()) {
        return PRED_FALSE;
    }
    return SurrogateChain(fPredicates.Items(), static_cast<std::size_t>(start),
                          [&values](ScorePredicate& child) { return child.Evaluate(values); });
}

ScorePredicate::PredicateType CompoundPredicate::GetPredType() {
    return COMPOUND_PREDICATE;
}

bool CompoundPredicate::IsDerivedPredictor() const {
    return fPredicates.FindFirst([](ScorePredicate const& child) { return child.IsDerivedPredictor(); }) !=
           nullptr;
}

void CompoundPredicate::SetSplit(ScoreSplitVar const*) {}

ScoreSplitVar const* CompoundPredicate::GetSplit() const {
    return nullptr;
}

void CompoundPredicate::Display(std::ostream& out) const {
    out << "Compound Predicate: "
        << "\n";
}

void CompoundPredicate::AddPredicate(ScorePredicate* predicate) {
    fPredicates.Append(predicate);
}

bool CompoundPredicate::RemovePredicate(ScorePredicate* predicate) {
    return fPredicates.Release(predicate);
}

std::vector<ScorePredicate*> const& CompoundPredicate::GetPredicates() const {
    return fPredicates.Items();
}

int CompoundPredicate::GetCount() const {
    return static_cast<int>(fPredicates.Size());
}

ScorePredicate::CompoundBoolOperator CompoundPredicate::GetBoolOperator() const {
    return fOperator;
}

void CompoundPredicate::SetBoolOperator(CompoundBoolOperator op) {
    fOperator = op;
}

}  // namespace QXVantry_920
