#include "vantry/factory/FactoryInternals.h"
#include "vantry/text/ExtNameStr.h"

namespace QXVantry_920 {

std::string CodePagePath(std::string const& utf8Path) {
    QXXML_920::ExtNameStr name;
    name.SetU8(utf8Path);
    std::string const& codePage = name.GetCP();
    return codePage.empty() ? utf8Path : codePage;
}

}  // namespace QXVantry_920
