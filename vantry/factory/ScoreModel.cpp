#include "vantry/factory/ScoreModel.h"

namespace QXVantry_920 {

// Out of line, so that the tables and type information of both interfaces live in the library.
ScoreVersionInfo::~ScoreVersionInfo() = default;
ScoreModel::~ScoreModel() = default;

}  // namespace QXVantry_920
