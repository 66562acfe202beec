#include "vantry/values/HeldValue.h"

namespace QXVantry_920 {
namespace detail {

bool Relate(ScoreValue const* left, ScoreValue const* right, Relation relation) {
    if (left == nullptr || right == nullptr) {
        return false;
    }
    switch (relation) {
        case Relation::kEqual:
            return *left == *right;
        case Relation::kGreater:
            return *left > *right;
        case Relation::kLess:
            return *left < *right;
        case Relation::kLessOrEqual:
            return *left <= *right;
        case Relation::kGreaterOrEqual:
            return *left >= *right;
    }
    return false;
}

void WriteHeldValue(std::ostream& out, ScoreValue const* value) {
    if (value == nullptr) {
        out << "NULL";
    } else {
        out << ScoreValue::TextOf(*value);
    }
}

bool HoldsValue(ScoreValue const* held, ScoreValue const& value) {
    return held != nullptr && *held == value;
}

}  // namespace detail
}  // namespace QXVantry_920
