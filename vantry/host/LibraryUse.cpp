#include "vantry/host/LibraryUse.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <mutex>

#include <xercesc/util/XMLException.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/factory/FactoryInternals.h"
#include "vantry/factory/ModelFactory.h"

namespace vantry {

namespace {

std::mutex gUseLock;
long gUses = 0;

bool IsReadable(std::string const& path) {
    return std::ifstream(path).is_open();
}

// The folder of this library as the loader found it; empty if it cannot tell.
std::string LibraryFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&ShippedCatalog), &info) == 0 || info.dli_fname == nullptr) {
        return std::string();
    }
    std::string const path = info.dli_fname;
    std::string::size_type const slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

}  // namespace

std::vector<std::string> const& FallbackModelNames() {
    static std::vector<std::string> const names{"TreeModel", "RegressionModel", "MiningModel"};
    return names;
}

std::string ShippedCatalog() {
    std::vector<std::string> folders;
    std::string const own = LibraryFolder();
    if (!own.empty()) {
        folders.push_back(own);
        folders.push_back(own + "/vantry-plugins");
    }
    if (char const* loaderPath = std::getenv("LD_LIBRARY_PATH")) {
        std::string const list = loaderPath;
        std::string::size_type start = 0;
        while (start <= list.size()) {
            std::string::size_type const end = std::min(list.find(':', start), list.size());
            if (end > start) {
                folders.push_back(list.substr(start, end - start));
            }
            start = end + 1;
        }
    }
    for (std::string const& folder : folders) {
        std::string const candidate = folder + "/" + QXVantry_920::kDefaultCatalogName;
        if (IsReadable(candidate)) {
            return candidate;
        }
    }
    return std::string();
}

std::vector<std::string> ReadCatalogNames(std::string const& catalogPath) {
    std::string const path = catalogPath.empty() ? ShippedCatalog() : catalogPath;
    if (path.empty()) {
        return FallbackModelNames();
    }
    std::vector<std::string> names;
    QXVantry_920::ReadModelCatalog(path, names);
    return names;
}

LibraryUse::LibraryUse() {
    std::lock_guard<std::mutex> const lock(gUseLock);
    if (gUses == 0) {
        // An empty path starts the parser and leaves the process-wide catalogue alone.
        try {
            QXVantry_920::ModelFactory::Initialize(std::string());
        } catch (XERCES_CPP_NAMESPACE::XMLException const&) {
            QXVantry_920::ThrowCodedError(260102);
        }
    }
    ++gUses;
}

LibraryUse::~LibraryUse() {
    std::lock_guard<std::mutex> const lock(gUseLock);
    if (--gUses == 0) {
        QXVantry_920::ModelFactory::Terminate();
    }
}

}  // namespace vantry
