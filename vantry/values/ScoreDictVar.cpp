#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

ScoreDictVar::~ScoreDictVar() = default;

}  // namespace QXVantry_920
