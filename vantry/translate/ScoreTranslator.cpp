#include "vantry/translate/ScoreTranslator.h"

namespace QXVantry_920 {

// Out of line, so that the table and type information of the interface live in the library.
ScoreTranslator::~ScoreTranslator() = default;

}  // namespace QXVantry_920
