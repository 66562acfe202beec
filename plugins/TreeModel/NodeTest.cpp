#include "plugins/TreeModel/NodeTest.h"

#include <limits>
#include <typeinfo>

#include "plugins/common/MiningSchema.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreSplitVar.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

// NumericValue's system-missing number.
constexpr double kSysmis = -std::numeric_limits<double>::max();

// The operators the reader turns into exactly one range of a scale split (or none, for a bound that is
// infinite on the open side: such a split is left to the predicate).
bool IsOneRangeOperator(SimplePredicate::SimplePredOperator op) {
    switch (op) {
        case SimplePredicate::OP_EQUAL:
        case SimplePredicate::OP_LESS_THAN:
        case SimplePredicate::OP_LESS_OR_EQUAL:
        case SimplePredicate::OP_GREATER_THAN:
        case SimplePredicate::OP_GREATER_OR_EQUAL:
            return true;
        default:
            return false;
    }
}

// Whether the variable answers IsMissingValue as a DictVar without missing values does (a derived
// variable inherits it unchanged): missing exactly for the system-missing number (and no value).
bool IsPlainNumeric(ScoreDictVar const& variable) {
    std::type_info const& type = typeid(variable);
    return (type == typeid(DictVar) || type == typeid(TransformVar)) &&
           variable.GetVarType() == ScoreDictVar::kNUMERIC_VAR && variable.GetMissingValues() == nullptr;
}

// Range::HoldsNumber on the copied bounds. The relative equality is asked only for a number outside
// the open interval, which is rare.
bool HoldsNumber(NodeTest const& test, double x) {
    if (test.single) {
        return NumericValue::IsEqual(x, test.low);
    }
    if (x == kSysmis) {
        return false;
    }
    if (x > test.low && x < test.high) {
        return true;
    }
    return (test.lowIncluded && NumericValue::IsEqual(x, test.low)) ||
           (test.highIncluded && NumericValue::IsEqual(x, test.high));
}

}  // namespace

NodeTest CompileNodeTest(ScorePredicate* predicate) {
    NodeTest test;
    if (predicate == nullptr) {
        return test;
    }
    std::type_info const& type = typeid(*predicate);
    if (type == typeid(TruePredicate)) {
        test.kind = NodeTest::kTrue;
        return test;
    }
    if (type == typeid(FalsePredicate)) {
        test.kind = NodeTest::kFalse;
        return test;
    }
    if (type != typeid(SimplePredicate)) {
        return test;
    }
    auto const* simple = static_cast<SimplePredicate const*>(predicate);
    ScoreSplitVar const* split = simple->GetSplit();
    if (split == nullptr || typeid(*split) != typeid(ScaleSplit) ||
        !IsOneRangeOperator(simple->GetPredicateOperator())) {
        return test;
    }
    ScoreDictVar const* variable = split->GetSplitVar();
    auto const* range = static_cast<ScaleSplit const*>(split)->GetSplitValueRangeFirst();
    if (variable == nullptr || range == nullptr || typeid(*range) != typeid(Range) ||
        variable->GetVarType() != ScoreDictVar::kNUMERIC_VAR ||
        variable->GetMLevel() == ScoreDictVar::MEASURE_NOMINAL || variable->GetValueIndex() < 0) {
        return test;
    }
    // The bounds as the range tests them. A range of two equal numbers is a single value when both ends
    // are included (the reader's "equal"; an interval of two equal included ends answers the same);
    // other such ranges are left to the predicate. The reader's ranges cache their numbers as given,
    // which differs from the bounds only for a lower bound at the system-missing number, read as
    // negative infinity: no number that is not missing tells the two apart.
    ScoreValue const* low = range->GetMin();
    ScoreValue const* high = range->GetMax();
    if (low == nullptr || high == nullptr || ScoreValue::TypeOf(*low) != ScoreValue::NUMERIC_VALUE ||
        ScoreValue::TypeOf(*high) != ScoreValue::NUMERIC_VALUE) {
        return test;
    }
    test.low = low->GetDouble();
    test.high = high->GetDouble();
    test.lowIncluded = range->GetLowEnd();
    test.highIncluded = range->GetHighEnd();
    if (test.low == test.high) {
        if (!test.lowIncluded || !test.highIncluded) {
            return test;
        }
        test.single = true;
    }
    test.kind = NodeTest::kNumber;
    test.derived = variable->IsDerivedVariable();
    test.plain = IsPlainNumeric(*variable);
    test.missing = split->GetMissvalMap() == -1 ? ScorePredicate::PRED_UNKNOWN : ScorePredicate::PRED_TRUE;
    test.slot = variable->GetValueIndex();
    test.variable = variable;
    return test;
}

namespace {

std::vector<ScoreValue*> const* SlotsOf(ScoreCaseRecord const* record) {
    return record != nullptr && typeid(*record) == typeid(CaseRecord)
               ? &static_cast<CaseRecord const*>(record)->CaseRecord::GetAllValues()
               : nullptr;
}

}  // namespace

CaseSlots::CaseSlots(ScoreCaseRecord const* inputRecord, ScoreCaseRecord const* derivedRecord,
                     MiningSchema const* judgedBy)
    : judged(judgedBy),
      input(SlotsOf(inputRecord)),
      derived(SlotsOf(derivedRecord)),
      hasDerived(derivedRecord != nullptr) {}

int TestNumber(NodeTest const& test, CaseSlots const& slotsOfCase) {
    // As the predicate reads: a derived field from the derived record when the case has one.
    bool const fromDerived = test.derived && slotsOfCase.hasDerived;
    std::vector<ScoreValue*> const* slots = fromDerived ? slotsOfCase.derived : slotsOfCase.input;
    if (slots == nullptr || static_cast<std::size_t>(test.slot) >= slots->size()) {
        return kPredicateNeeded;
    }
    ScoreValue const* value = (*slots)[static_cast<std::size_t>(test.slot)];
    if (value == nullptr || typeid(*value) != typeid(NumericValue)) {
        return kPredicateNeeded;
    }
    double const x = static_cast<NumericValue const*>(value)->NumericValue::GetDouble();
    bool const judged = !fromDerived && slotsOfCase.judged != nullptr &&
                        slotsOfCase.judged->JudgedPresent(test.slot, test.variable);
    bool const missing = !judged && (test.plain ? x == kSysmis : test.variable->IsMissingValue(value));
    if (missing) {
        return test.missing;
    }
    return HoldsNumber(test, x) ? ScorePredicate::PRED_TRUE : ScorePredicate::PRED_FALSE;
}

}  // namespace QXVantry_920
