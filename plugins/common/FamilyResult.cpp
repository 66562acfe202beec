#include "plugins/common/FamilyResult.h"
