// Every public header of the library.
#pragma once

#include "vantry/Export.h"
#include "vantry/diagnostics/QXMV.h"
#include "vantry/diagnostics/QXStatus.h"
