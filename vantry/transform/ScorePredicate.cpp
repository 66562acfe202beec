// The predicate interface, and the two constant predicates: one always holds, the other never does.
#include "vantry/transform/ScorePredicate.h"

#include <ostream>

namespace QXVantry_920 {

ScorePredicate::~ScorePredicate() = default;

TruePredicate::TruePredicate() = default;

TruePredicate::TruePredicate(TruePredicate const& other) = default;

TruePredicate& TruePredicate::operator=(TruePredicate const& other) = default;

TruePredicate::~TruePredicate() = default;

ScorePredicate* TruePredicate::Clone() const {
    return new TruePredicate(*this);
}

ScorePredicate::PredicateResult TruePredicate::Evaluate(std::vector<double> const&) {
    return PRED_TRUE;
}

ScorePredicate::PredicateResult TruePredicate::Evaluate(ScoreCaseRecord const*, ScoreCaseRecord const*) {
    return PRED_TRUE;
}

ScorePredicate::PredicateType TruePredicate::GetPredType() {
    return TRUE_PREDICATE;
}

bool TruePredicate::IsDerivedPredictor() const {
    return false;
}

void TruePredicate::SetSplit(ScoreSplitVar const*) {}

ScoreSplitVar const* TruePredicate::GetSplit() const {
    return nullptr;
}

void TruePredicate::Display(std::ostream& out) const {
    out << "Constant TRUE"
        << "\n";
}

FalsePredicate::FalsePredicate() = default;

FalsePredicate::FalsePredicate(FalsePredicate const& other) = default;

FalsePredicate& FalsePredicate::operator=(FalsePredicate const& other) = default;

FalsePredicate::~FalsePredicate() = default;

ScorePredicate* FalsePredicate::Clone() const {
    return new FalsePredicate(*this);
}

ScorePredicate::PredicateResult FalsePredicate::Evaluate(std::vector<double> const&) {
    return PRED_FALSE;
}

ScorePredicate::PredicateResult FalsePredicate::Evaluate(ScoreCaseRecord const*, ScoreCaseRecord const*) {
    return PRED_FALSE;
}

ScorePredicate::PredicateType FalsePredicate::GetPredType() {
    return FALSE_PREDICATE;
}

bool FalsePredicate::IsDerivedPredictor() const {
    return false;
}

void FalsePredicate::SetSplit(ScoreSplitVar const*) {}

ScoreSplitVar const* FalsePredicate::GetSplit() const {
    return nullptr;
}

void FalsePredicate::Display(std::ostream& out) const {
    out << "Constant FALSE"
        << "\n";
}

}  // namespace QXVantry_920
