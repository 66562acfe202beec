#include "plugins/common/ModelTargets.h"
