#include "plugins/common/FamilyTranslator.h"
