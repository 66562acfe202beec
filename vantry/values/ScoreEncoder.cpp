#include "vantry/values/ScoreEncoder.h"

namespace QXVantry_920 {

ScoreEncoder::~ScoreEncoder() = default;

}  // namespace QXVantry_920
