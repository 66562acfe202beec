// The derived fields of a document by the factory's route without plug-ins, then evaluated over a
// valid, a numeric and a missing case of the document's data dictionary.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

#include "tests/fuzz/FuzzSupport.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/transform/TransformationDictionary.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    using namespace QXVantry_920;
    vantry_fuzz::StartXerces();
    std::istringstream stream(std::string(reinterpret_cast<char const*>(data), size));
    // The data dictionary is the caller's as soon as it is read, even when the derived fields are then
    // refused.
    ScoreDictionary* read = nullptr;
    std::unique_ptr<ScoreDictionary> dictionary;
    vantry_fuzz::Refusable([&] {
        std::unique_ptr<TransformationDictionary> derived(
            ModelFactory::GetTransformationDictionaryFromXML(stream, read, "UTF-8"));
        dictionary.reset(read);
        if (derived == nullptr || dictionary == nullptr) {
            return;
        }
        CaseRecord record;
        for (ScoreDictVar* variable : dictionary->GetScoreDictVars()) {
            record.Add(variable->GetName(), variable->IsString()
                                                ? static_cast<ScoreValue*>(new StringValue(""))
                                                : new NumericValue(0.0));
        }
        for (vantry_fuzz::CaseKind kind : vantry_fuzz::kCaseKinds) {
            vantry_fuzz::FillCase(record, *dictionary, kind);
            derived->GetValuesForDerivedVars(&record, dictionary.get());
        }
    });
    if (dictionary == nullptr) {
        delete read;
    }
    return 0;
}
