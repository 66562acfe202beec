#include "plugins/common/MiningSchema.h"
