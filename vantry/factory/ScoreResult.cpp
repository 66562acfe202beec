#include "vantry/factory/ScoreResult.h"

namespace QXVantry_920 {

ScoreResult::~ScoreResult() = default;
ScoreClsResult::~ScoreClsResult() = default;
ScoreRegResult::~ScoreRegResult() = default;

}  // namespace QXVantry_920
