#include "tools/score/ModelLoading.h"

#include <fstream>
#include <stdexcept>

#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/host/LibraryUse.h"

namespace vantry_tool {

std::string FindShippedCatalog() {
    return vantry::ShippedCatalog();
}

ScoringSession::ScoringSession(std::string const& catalogPath) {
    QXVantry_920::ModelFactory::Initialize(catalogPath);
    if (catalogPath.empty()) {
        fModelNames = vantry::FallbackModelNames();
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
    // The tables the command reads and writes are UTF-8, so the document's texts are held as UTF-8 too,
    // as a host's Scorer holds them.
    return std::unique_ptr<QXVantry_920::ScoreModel>(
        QXVantry_920::ModelFactory::MakeModelFromXML(document, fModelNames, "UTF-8"));
}

}  // namespace vantry_tool
