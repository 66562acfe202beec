// How simple and set predicates read their variable from a case: from the encoded numbers of a model,
// or from an input record and its derived record. Internal to the library.
#pragma once

#include <vector>

#include "vantry/transform/ScorePredicate.h"

namespace QXVantry_920 {

class ScoreCaseRecord;
class ScoreDictVar;
class ScoreValue;

// The variable's value: a derived variable's from the derived record when there is one, any other's
// from the input record. A record with a name map is read at the variable's value index first, then
// by name. Null when neither has a value.
ScoreValue const* ReadPredictorValue(ScoreDictVar const& variable, ScoreCaseRecord const* input,
                                     ScoreCaseRecord const* derived);

// The variable's encoder code of the value as a number; the system-missing number without an encoder
// or a value.
double EncodePredictorValue(ScoreDictVar const& variable, ScoreValue const* value);

// Whether a value read from a record counts as missing. A categorical value must be a declared
// category: a nominal variable's encoder must know it, or without an encoder the variable must accept
// it as valid.
bool IsMissingPredictor(ScoreDictVar const& variable, ScoreValue const* value, double code);

// The variable's element of the encoded numbers, in x; answers whether it is missing. A categorical
// variable starts from -1.0 (not missing) and is missing at -2.0; any other starts from and is missing
// at the system-missing number. An index outside the numbers leaves the start value.
bool ReadEncodedPredictor(ScoreDictVar const& variable, std::vector<double> const& values, double& x);

// A split's child index as a result: no child is false, any child true.
inline ScorePredicate::PredicateResult ResultOfChild(int child) {
    return child == -1 ? ScorePredicate::PRED_FALSE : ScorePredicate::PRED_TRUE;
}

}  // namespace QXVantry_920
