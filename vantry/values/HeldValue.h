// Helpers for the objects that pair an owned ScoreValue with a datum (value labels and probabilities).
// Internal to the library.
#pragma once

#include <ostream>

#include "vantry/values/OwnedPointers.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {
namespace detail {

enum class Relation { kEqual, kGreater, kLess, kLessOrEqual, kGreaterOrEqual };

// The ScoreValue operator of the relation applied to the two held values, left value on the left;
// false when either is null.
bool Relate(ScoreValue const* left, ScoreValue const* right, Relation relation);

// The value's GetString, or "NULL".
void WriteHeldValue(std::ostream& out, ScoreValue const* value);

// Whether the held value (which may be null) equals the value under the held value's operator==.
bool HoldsValue(ScoreValue const* held, ScoreValue const& value);

// The first element whose held value equals the value, or null (also for a null value).
template <class T>
T* FindHolding(OwnedPointers<T> const& items, ScoreValue const* value) {
    if (value == nullptr) {
        return nullptr;
    }
    return items.FindFirst([value](T const& item) { return HoldsValue(item.GetValue(), *value); });
}

}  // namespace detail
}  // namespace QXVantry_920
