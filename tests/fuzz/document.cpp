// A whole document through the factory with the shipped plug-ins, as a host reads it: the model, if one
// is made, scores a valid, a numeric and a missing case built from its own data dictionary, fills its
// result fields and describes itself.
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/fuzz/FuzzSupport.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/ScoreResult.h"

namespace {

using namespace QXVantry_920;

// The shipped catalogue, read once; its path is fixed by the build.
std::vector<std::string> const& Catalogue() {
    static std::vector<std::string> const names = [] {
        ModelFactory::Initialize(VANTRY_FUZZ_CATALOG);
        return ModelFactory::fModelNames;
    }();
    return names;
}

void ScoreCases(ScoreModel& model) {
    std::unique_ptr<ScoreCaseRecord> record(model.MakeCaseRecord());
    std::unique_ptr<ScoreResult> result(model.MakeResult());
    ScoreDictionary const* dictionary = model.GetDictionary();
    if (record == nullptr || result == nullptr || dictionary == nullptr) {
        return;
    }
    for (vantry_fuzz::CaseKind kind : vantry_fuzz::kCaseKinds) {
        vantry_fuzz::FillCase(*record, *dictionary, kind);
        model.Score(record.get(), result.get());
        ResultField fields;
        model.FillResultFields(result.get(), &fields);
    }
    std::ostringstream description;
    model.Display(description);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::vector<std::string> const& names = Catalogue();
    std::istringstream stream(std::string(reinterpret_cast<char const*>(data), size));
    vantry_fuzz::Refusable([&] {
        std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML(stream, names, "UTF-8"));
        if (model != nullptr) {
            ScoreCases(*model);
        }
    });
    return 0;
}
