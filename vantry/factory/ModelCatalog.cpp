// The catalogue of model names and the file names of plug-ins.
#include <strings.h>

#include <cstring>
#include <fstream>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/factory/FactoryInternals.h"

namespace QXVantry_920 {

namespace {

constexpr char kCatalogSeparators[] = " ,\t\n";
// Characters of one catalogue line, the terminating zero included. A longer line is cut here, and
// reading stops after it.
constexpr std::streamsize kCatalogLineSize = 32767;
constexpr char kLibraryPrefix[] = "lib";
constexpr char kLibraryExtension[] = ".so";
constexpr char kReleaseSuffix[] = "920r";

}  // namespace

void ReadModelCatalog(std::string const& path, std::vector<std::string>& result) {
    result.clear();
    const std::string fileName = path.empty() ? std::string(kDefaultCatalogName) : path;
    std::ifstream file(fileName);
    if (!file.is_open())
        ThrowCodedError(260103, {fileName});

    char line[kCatalogLineSize];
    while (file.good()) {
        file.getline(line, kCatalogLineSize);
        if (file.gcount() == 0)
            continue;
        // Text mode of the system the catalogue format comes from drops the carriage return of a
        // line end; do the same, so that a catalogue written there reads the same here.
        const std::size_t length = std::strlen(line);
        if (length > 0 && line[length - 1] == '\r')
            line[length - 1] = '\0';
        char* position = nullptr;
        for (char* token = strtok_r(line, kCatalogSeparators, &position); token != nullptr;
             token = strtok_r(nullptr, kCatalogSeparators, &position)) {
            result.emplace_back(token);
        }
    }
}

std::string MakeLibraryFileName(std::string name) {
    const std::size_t extensionLength = sizeof(kLibraryExtension) - 1;
    const bool hasExtension =
        name.size() > extensionLength &&
        strcasecmp(name.c_str() + name.size() - extensionLength, kLibraryExtension) == 0;
    if (!hasExtension)
        name += kLibraryExtension;
    return kLibraryPrefix + name;
}

std::string MakeModelLibraryName(std::string modelName) {
    return MakeLibraryFileName(modelName + kReleaseSuffix);
}

}  // namespace QXVantry_920
