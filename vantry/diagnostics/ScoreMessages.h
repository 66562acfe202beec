// The library's message table: every error code the library throws, with its pattern.
#pragma once

#include "vantry/Export.h"
#include "vantry/diagnostics/VTErrorFormater.h"

namespace ScoreContext {

// Rows in gScoreMessages.
constexpr int kScoreMessageCount = 135;

// The rows in their fixed order, not sorted by code. Doubled apostrophes are ICU's quoting of one
// apostrophe and are stored that way.
VANTRY_EXPORT extern MessageItem gScoreMessages[kScoreMessageCount];

}  // namespace ScoreContext
