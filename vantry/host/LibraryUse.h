// How hosts start the library and find the catalogue of model names that ships with the plug-ins.
//
// ModelFactory::Initialize and Terminate are process-wide and must not run beside model creation.
// LibraryUse counts its live objects under one lock: the first starts the library, the last stops it.
// Every Scorer holds one, so hosts never call Initialize or Terminate themselves, and any number of
// scorers on any threads are safe. A host that also calls ModelFactory directly calls Initialize before
// its first Scorer and Terminate after its last; the parser counts its starts, so the two nest.
#pragma once

#include <string>
#include <vector>

#include "vantry/Export.h"

namespace vantry {

// The families served when no catalogue is found: TreeModel, RegressionModel, MiningModel.
VANTRY_EXPORT std::vector<std::string> const& FallbackModelNames();

// The catalogue that ships with the plug-ins: "modeldll.txt" in the library's own folder (a build tree),
// in "vantry-plugins" beside it (an installed tree), else in a folder of LD_LIBRARY_PATH; empty when
// there is none.
VANTRY_EXPORT std::string ShippedCatalog();

// The model names of a catalogue file; for an empty path those of the shipped catalogue, or the fallback
// names when there is none. A catalogue that cannot be read throws VTException 260103.
std::vector<std::string> ReadCatalogNames(std::string const& catalogPath);

// One use of the library: the library runs while at least one object lives. Construction may throw
// VTException 260102 when the parser cannot start.
class LibraryUse {
  public:
    LibraryUse();
    ~LibraryUse();
    LibraryUse(LibraryUse const&) = delete;
    LibraryUse& operator=(LibraryUse const&) = delete;
};

}  // namespace vantry
