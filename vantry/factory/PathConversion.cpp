#include "vantry/factory/FactoryInternals.h"

namespace QXVantry_920 {

// The multibyte text layer is not in the build yet: until it is, paths are taken as they come, which
// is right wherever the code page is UTF-8.
std::string CodePagePath(std::string const& utf8Path) {
    return utf8Path;
}

}  // namespace QXVantry_920
