// The data dictionary reader (with category encoders), the targets applied to it and the result
// dictionary reader, then every variable asked about a few texts as a model would ask.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "tests/fuzz/FuzzSupport.h"
#include "vantry/translate/PMMLTranslator.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    vantry_fuzz::ParsedDocument const parsed(data, size);
    XERCES_CPP_NAMESPACE::DOMElement* fields = parsed.Find("DataDictionary");
    if (fields == nullptr) {
        return 0;
    }
    QXVantry_920::PMMLTranslator translator("UTF-8");
    vantry_fuzz::Refusable([&] {
        std::unique_ptr<QXVantry_920::ScoreDictionary> dictionary(translator.ParseDictionary(fields, true));
        if (XERCES_CPP_NAMESPACE::DOMElement* targets = parsed.Find("Targets")) {
            translator.HandleTargets(targets, dictionary.get());
        }
        vantry_fuzz::ProbeVariables(*dictionary);
        std::unique_ptr<QXVantry_920::ScoreDictionary> results(
            translator.ParseResultDictionary(parsed.document));
        if (results != nullptr) {
            vantry_fuzz::ProbeVariables(*results);
        }
    });
    return 0;
}
