// Every public header of the library.
#pragma once

#include "vantry/Export.h"
#include "vantry/diagnostics/QXMV.h"
#include "vantry/diagnostics/QXStatus.h"
#include "vantry/diagnostics/ScoreMessages.h"
#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/diagnostics/VTErrorFormater.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/text/VantryString.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/PMMLModelTags.h"
