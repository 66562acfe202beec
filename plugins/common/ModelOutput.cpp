#include "plugins/common/ModelOutput.h"
