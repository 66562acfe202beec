#include <memory>
#include <ostream>
#include <utility>

#include "vantry/transform/PredictorReading.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

// The operator texts in the order of their numbers.
char const* const kOperatorTexts[] = {"equal",       "notEqual",       "lessThan", "lessOrEqual",
                                      "greaterThan", "greaterOrEqual", "isMissing"};

}  // namespace

SimplePredicate::SimplePredicate() : SimplePredicate(nullptr) {}

SimplePredicate::SimplePredicate(ScoreSplitVar const* split)
    : fSplit(split), fIsMissing(false), fValueByDouble(NumericValue::GetSysmisValue()), fOperator(OP_EQUAL) {}

SimplePredicate::SimplePredicate(SimplePredicate const& other) = default;

SimplePredicate& SimplePredicate::operator=(SimplePredicate const& other) = default;

SimplePredicate::~SimplePredicate() = default;

ScorePredicate* SimplePredicate::Clone() const {
    return new SimplePredicate(*this);
}

ScorePredicate::PredicateResult SimplePredicate::Evaluate(std::vector<double> const& values) {
    ScoreSplitVar const* split = fSplit.Get();
    ScoreDictVar const* variable = fSplit.Variable();
    if (variable == nullptr) {
        return PRED_UNKNOWN;
    }
    double x = 0.0;
    if (ReadEncodedPredictor(*variable, values, x)) {
        return split->GetMissvalMap() == -1 ? PRED_UNKNOWN : PRED_TRUE;
    }
    return ResultOfChild(split->GetSplitChildIndex(x));
}

ScorePredicate::PredicateResult SimplePredicate::Evaluate(ScoreCaseRecord const* input,
                                                          ScoreCaseRecord const* derived) {
    ScoreSplitVar const* split = fSplit.Get();
    ScoreDictVar const* variable = fSplit.Variable();
    if (variable == nullptr) {
        return PRED_UNKNOWN;
    }
    ScoreValue const* value = GetScoreValue(variable, input, derived);
    double const code = GetScoreEncodeValue(variable, value);
    if (IsMissingPredictor(*variable, value, code)) {
        return split->GetMissvalMap() == -1 ? PRED_UNKNOWN : PRED_TRUE;
    }
    // A discrete split over an encoded variable holds the codes; any other holds values or ranges.
    if (variable->GetEncoder() != nullptr && fSplit.IsDiscrete()) {
        return ResultOfChild(split->GetSplitChildIndex(code));
    }
    return ResultOfChild(split->GetSplitChildIndex(value));
}

ScorePredicate::PredicateType SimplePredicate::GetPredType() {
    return SIMPLE_PREDICATE;
}

bool SimplePredicate::IsDerivedPredictor() const {
    return fSplit.ReadsDerived();
}

void SimplePredicate::SetSplit(ScoreSplitVar const* split) {
    fSplit.Set(split);
}

ScoreSplitVar const* SimplePredicate::GetSplit() const {
    return fSplit.Get();
}

void SimplePredicate::Display(std::ostream& out) const {
    out << "Simple Predicate: "
        << "\n";
}

void SimplePredicate::SetPredicateOperator(std::string const& text) {
    if (text.empty()) {
        return;
    }
    fOperator = OP_OTHER;
    for (int op = OP_EQUAL; op < OP_OTHER; ++op) {
        if (text == kOperatorTexts[op]) {
            fOperator = static_cast<SimplePredOperator>(op);
            break;
        }
    }
}

void SimplePredicate::SetPredicateValue(std::string const& text) {
    fValueByString = text;
    ScoreDictVar const* variable = fSplit.Variable();
    if (variable == nullptr) {
        return;
    }
    if (ScoreEncoder const* encoder = variable->GetEncoder()) {
        fValueByDouble = static_cast<double>(encoder->EncodeConst(text));
        return;
    }
    std::unique_ptr<ScoreValue> const value(variable->ToMyValue(text));
    if (value) {
        fValueByDouble = value->GetDouble();
    }
}

void SimplePredicate::SetValueToMissing(bool isMissing) {
    fIsMissing = isMissing;
}

SimplePredicate::SimplePredOperator SimplePredicate::GetPredicateOperator() const {
    return fOperator;
}

std::string const& SimplePredicate::GetPredValueByString() const {
    return fValueByString;
}

double SimplePredicate::GetPredValueByDouble() const {
    return fValueByDouble;
}

bool SimplePredicate::IsMissingValue() const {
    return fIsMissing;
}

ScoreValue const* SimplePredicate::GetScoreValue(ScoreDictVar const* variable, ScoreCaseRecord const* input,
                                                 ScoreCaseRecord const* derived) const {
    return ReadPredictorValue(*variable, input, derived);
}

double SimplePredicate::GetScoreEncodeValue(ScoreDictVar const* variable, ScoreValue const* value) const {
    return EncodePredictorValue(*variable, value);
}

}  // namespace QXVantry_920
