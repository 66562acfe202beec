#include <ostream>

#include "vantry/transform/PredictorReading.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

SetPredicate::SetPredicate() : SetPredicate(nullptr) {}

SetPredicate::SetPredicate(ScoreSplitVar const* split) : fSplit(split), fOperator(SET_IS_IN) {}

SetPredicate::SetPredicate(SetPredicate const& other) = default;

SetPredicate& SetPredicate::operator=(SetPredicate const& other) = default;

SetPredicate::~SetPredicate() = default;

ScorePredicate* SetPredicate::Clone() const {
    return new SetPredicate(*this);
}

// A missing value leaves a set predicate unknown: its split has no missing child.
ScorePredicate::PredicateResult SetPredicate::Evaluate(std::vector<double> const& values) {
    ScoreDictVar const* variable = fSplit.Variable();
    if (variable == nullptr) {
        return PRED_UNKNOWN;
    }
    double x = 0.0;
    if (ReadEncodedPredictor(*variable, values, x)) {
        return PRED_UNKNOWN;
    }
    return ResultOfChild(fSplit.Get()->GetSplitChildIndex(x));
}

ScorePredicate::PredicateResult SetPredicate::Evaluate(ScoreCaseRecord const* input,
                                                       ScoreCaseRecord const* derived) {
    ScoreDictVar const* variable = fSplit.Variable();
    if (variable == nullptr) {
        return PRED_UNKNOWN;
    }
    ScoreValue const* value = GetScoreValue(variable, input, derived);
    double const code = GetScoreEncodeValue(variable, value);
    if (IsMissingPredictor(*variable, value, code)) {
        return PRED_UNKNOWN;
    }
    ScoreSplitVar const* split = fSplit.Get();
    if (variable->GetEncoder() != nullptr) {
        return ResultOfChild(split->GetSplitChildIndex(code));
    }
    return ResultOfChild(split->GetSplitChildIndex(value));
}

ScorePredicate::PredicateType SetPredicate::GetPredType() {
    return SET_PREDICATE;
}

bool SetPredicate::IsDerivedPredictor() const {
    return fSplit.ReadsDerived();
}

void SetPredicate::SetSplit(ScoreSplitVar const* split) {
    fSplit.Set(split);
}

ScoreSplitVar const* SetPredicate::GetSplit() const {
    return fSplit.Get();
}

void SetPredicate::Display(std::ostream& out) const {
    out << "Set Predicate: "
        << "\n";
}

void SetPredicate::SetPredicateOperator(std::string const& text) {
    fOperator = text == "isIn" ? SET_IS_IN : SET_OTHER;
}

void SetPredicate::SetArrayData(std::vector<double> const& data) {
    fArrayData = data;
}

std::vector<double> const& SetPredicate::GetArrayData() const {
    return fArrayData;
}

SetPredicate::SimpleSetPredOperator SetPredicate::GetPredicateOperator() const {
    return fOperator;
}

ScoreValue const* SetPredicate::GetScoreValue(ScoreDictVar const* variable, ScoreCaseRecord const* input,
                                              ScoreCaseRecord const* derived) const {
    return ReadPredictorValue(*variable, input, derived);
}

double SetPredicate::GetScoreEncodeValue(ScoreDictVar const* variable, ScoreValue const* value) const {
    return EncodePredictorValue(*variable, value);
}

}  // namespace QXVantry_920
