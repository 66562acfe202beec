#include "plugins/common/FamilyModel.h"
