#include "tools/score/ModelCommand.h"

#include <iostream>
#include <stdexcept>

#include "tools/score/ModelLoading.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ScoreModel.h"

namespace vantry_tool {

int RunWithModel(std::string const& catalog, std::string const& document,
                 std::function<int(std::string const&)> const& badArguments, ModelWork const& work) {
    try {
        ScoringSession session(catalog.empty() ? FindShippedCatalog() : catalog);
        std::unique_ptr<QXVantry_920::ScoreModel> model;
        try {
            model = session.LoadModel(document);
        } catch (std::runtime_error const& error) {
            return badArguments(error.what());
        }
        if (model == nullptr) {
            std::cerr << "error: no model of the catalogue's families in " << document << "\n";
            return kRefusedDocument;
        }
        return work(session, std::move(model));
    } catch (QXVantry_920::VTException& error) {
        std::cerr << "error " << error.GetErrorCode() << ": " << error.GetErrorMessage() << "\n";
        return kRefusedDocument;
    } catch (std::exception const& error) {
        std::cerr << "error: " << error.what() << "\n";
        return kRefusedDocument;
    }
}

}  // namespace vantry_tool
