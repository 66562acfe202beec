// The scratch of one level of a function-tree walk. A derived variable keeps one frame per depth of its
// tree and reuses it from case to case, so that after the first case a numeric walk allocates nothing:
// the vectors keep their capacity and the kept values are overwritten in place.
// Internal to the library.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vantry/transform/TransformVar.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

struct TransformVar::ApplyFrame {
    std::vector<double> numbers;
    // Copies of the compared values; only the first keptCount are in use.
    std::vector<std::unique_ptr<ScoreValue>> kept;
    size_t keptCount = 0;
    std::vector<std::string> texts;
    std::vector<int> widths;
    std::string text;
    StringValue subject;
    bool hasSubject = false;
    DateTimeValue date;
    bool hasDate = false;
    std::unique_ptr<ScoreValue> tested;
    bool hasTested = false;

    void Clear() {
        numbers.clear();
        keptCount = 0;
        texts.clear();
        widths.clear();
        text.clear();
        hasSubject = false;
        hasDate = false;
        hasTested = false;
    }

    // Copies the value into the next kept slot, reusing the slot's object when it is of the same kind.
    void Keep(ScoreValue const& value) {
        if (keptCount == kept.size()) {
            kept.emplace_back();
        }
        Store(kept[keptCount++], value);
    }

    static void Store(std::unique_ptr<ScoreValue>& slot, ScoreValue const& value) {
        if (slot && ScoreValue::TypeOf(*slot) == ScoreValue::TypeOf(value)) {
            slot->SetValue(&value);
        } else {
            slot.reset(value.Clone());
        }
    }
};

}  // namespace QXVantry_920
