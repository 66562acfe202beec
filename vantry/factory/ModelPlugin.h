// The entry points of a model plug-in.
//
// A plug-in of the model M is the shared library libM920r.so, found by the platform's library search
// (LD_LIBRARY_PATH, the run path of the host, the system folders). It exports, without C++ name
// decoration:
//   GiveMyTranslator  required: a new translator, a class derived from BaseTranslator, for each call;
//                     the factory deletes it after one use.
//   PassModelNames    optional: called with that translator and the catalogue of model names the
//                     factory works with; its result is ignored.
// Define them with VANTRY_PLUGIN_EXPORT; the declarations below make the compiler check them.
#pragma once

#include <string>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {
class BaseTranslator;
}

extern "C" {
VANTRY_EXPORT QXVantry_920::BaseTranslator* GiveMyTranslator();
VANTRY_EXPORT bool PassModelNames(QXVantry_920::BaseTranslator* translator,
                                  std::vector<std::string> const& modelNames);
}

namespace QXVantry_920 {
using GiveMyTranslatorFunction = decltype(&::GiveMyTranslator);
using PassModelNamesFunction = decltype(&::PassModelNames);
}  // namespace QXVantry_920
