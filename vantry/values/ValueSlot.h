// Writing into a slot that owns a value: an empty slot gets a new value object, a slot of the same kind
// has its object changed in place, and a slot of another kind refuses. Once a slot holds a value nothing
// is allocated, which is what lets records and result fields be refilled case after case.
// Internal to the library.
#pragma once

#include <string>

#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

inline bool StoreText(ScoreValue*& slot, std::string const& text) {
    if (slot == nullptr) {
        slot = new StringValue(text);
        return true;
    }
    if (slot->GetType() != ScoreValue::STRING_VALUE) {
        return false;
    }
    static_cast<StringValue*>(slot)->SetString(text);
    return true;
}

inline bool StoreNumber(ScoreValue*& slot, double number) {
    if (slot == nullptr) {
        slot = new NumericValue(number);
        return true;
    }
    if (slot->GetType() != ScoreValue::NUMERIC_VALUE) {
        return false;
    }
    static_cast<NumericValue*>(slot)->SetDoubleValue(number);
    return true;
}

}  // namespace QXVantry_920
