// A node's condition in the form a walk tests it fastest, chosen once when the tree is read:
//   - the constants True and False;
//   - a number test: a SimplePredicate on a numeric field with one of the operators lessThan,
//     lessOrEqual, greaterThan, greaterOrEqual or equal, which the reader turns into one Range of the
//     field. It is tested on the number in the field's slot of the record, without the predicate's
//     virtual calls: the field is missing exactly when its variable says so (for a variable without
//     declared missing values, when it holds the system-missing number), and otherwise the condition
//     holds when the range holds the number, by the range's own rule (Range::HoldsNumber) on the
//     range's bounds copied into the test: a single value by the relative equality, an interval
//     strictly between its bounds or at an included bound by the relative equality;
//   - anything else (compound and set predicates, categorical tests, notEqual, isMissing, a record
//     without the value in its slot, a value that is not a number) through the predicate object.
// A number test gives exactly the predicate's answer.
#pragma once

#include <cstdint>
#include <vector>

#include "vantry/transform/ScorePredicate.h"

namespace QXVantry_920 {

class MiningSchema;
class ScoreCaseRecord;
class ScoreDictVar;
class ScoreValue;

struct NodeTest {
    enum Kind : std::uint8_t { kPredicate, kTrue, kFalse, kNumber };

    Kind kind = kPredicate;
    // Number tests: the field reads the derived record (when the case has one), else the input record.
    bool derived = false;
    // The variable has no declared missing values: missing exactly at the system-missing number.
    bool plain = false;
    // The range: one value (low), or an interval from low to high with its ends included or not.
    bool single = false;
    bool lowIncluded = false;
    bool highIncluded = false;
    // The answer for a missing value: unknown, or true for a predicate whose split sends missing values
    // to its child.
    ScorePredicate::PredicateResult missing = ScorePredicate::PRED_UNKNOWN;
    std::int32_t slot = -1;
    double low = 0.0;
    double high = 0.0;
    ScoreDictVar const* variable = nullptr;
};

// The fastest form of a predicate that gives its answers; kPredicate for a null predicate too.
NodeTest CompileNodeTest(ScorePredicate* predicate);

// The slots of a case's two records, read once per walk: null for a record that is not a plain
// CaseRecord (the predicate objects then read it their own way).
struct CaseSlots {
    CaseSlots() = default;
    // `judged`, when not null, is the schema that has just prepared the input record.
    CaseSlots(ScoreCaseRecord const* inputRecord, ScoreCaseRecord const* derivedRecord,
              MiningSchema const* judged);

    MiningSchema const* judged = nullptr;
    std::vector<ScoreValue*> const* input = nullptr;
    std::vector<ScoreValue*> const* derived = nullptr;
    bool hasDerived = false;
};

// The answer of a number test on the case's slots; kPredicateNeeded when the value is absent from its
// slot or not a number, so that the predicate object must answer.
constexpr int kPredicateNeeded = -1;
int TestNumber(NodeTest const& test, CaseSlots const& slots);

}  // namespace QXVantry_920
