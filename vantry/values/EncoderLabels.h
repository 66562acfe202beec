// Value labels of the categorical encoders, indexed by code. Internal to the library.
#pragma once

#include <string>
#include <vector>

namespace QXVantry_920 {

// Stores the text of one code; the vector first grows to the number of categories, and a code outside
// 0 .. categories - 1 is ignored.
inline void SetCodeLabel(std::vector<std::string>& labels, int categories, int code,
                         std::string const& text) {
    if (categories > 0 && labels.size() < static_cast<size_t>(categories)) {
        labels.resize(static_cast<size_t>(categories));
    }
    if (code >= 0 && code < categories) {
        labels[static_cast<size_t>(code)] = text;
    }
}

}  // namespace QXVantry_920
