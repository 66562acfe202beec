#include "tools/score/ModelLoading.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ScoreModel.h"

namespace vantry_tool {

char const kCatalogFileName[] = "modeldll.txt";

namespace {

bool IsReadable(std::string const& path) {
    return std::ifstream(path).is_open();
}

std::string FolderOf(std::string const& path) {
    std::string::size_type const slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

std::string RunningProgram() {
    char path[4096];
    ssize_t const length = readlink("/proc/self/exe", path, sizeof(path) - 1);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

}  // namespace

std::vector<std::string> const& FallbackModelNames() {
    static std::vector<std::string> const names{"TreeModel", "RegressionModel", "MiningModel"};
    return names;
}

std::string FindShippedCatalog() {
    std::vector<std::string> folders;
    std::string const program = RunningProgram();
    if (!program.empty()) {
        // The build tree's lib/, then an installed tree's plug-in folder.
        std::string const prefix = FolderOf(FolderOf(program));
        folders.push_back(prefix + "/lib");
        folders.push_back(prefix + "/lib/vantry-plugins");
        folders.push_back(prefix + "/lib64/vantry-plugins");
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
        std::string const candidate = folder + "/" + kCatalogFileName;
        if (IsReadable(candidate)) {
            return candidate;
        }
    }
    return std::string();
}

ScoringSession::ScoringSession(std::string const& catalogPath) {
    QXVantry_920::ModelFactory::Initialize(catalogPath);
    if (catalogPath.empty()) {
        fModelNames = FallbackModelNames();
    } else {
        fModelNames = QXVantry_920::ModelFactory::fModelNames;
    }
}

ScoringSession::~ScoringSession() {
    QXVantry_920::ModelFactory::Terminate();
}

std::unique_ptr<QXVantry_920::ScoreModel> ScoringSession::LoadModel(std::string const& pmmlPath) const {
    std::ifstream document(pmmlPath, std::ios::binary);
    if (!document.is_open()) {
        throw std::runtime_error("cannot open " + pmmlPath);
    }
    return std::unique_ptr<QXVantry_920::ScoreModel>(
        QXVantry_920::ModelFactory::MakeModelFromXML(document, fModelNames, std::string()));
}

}  // namespace vantry_tool
