#include "plugins/common/FamilyCase.h"
