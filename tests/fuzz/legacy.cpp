// The dictionary reader of the legacy "krom-ml" dialect, then every variable asked about a few texts.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "tests/fuzz/FuzzSupport.h"
#include "vantry/translate/KROMTranslator.h"

namespace {

// The dialect's translator with the document slot that a plug-in would supply.
class LegacyTranslator : public QXVantry_920::KROMTranslator {
  public:
    using BaseTranslator::ParseFromTree;
    QXVantry_920::ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument*, std::string const&) override {
        return nullptr;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    vantry_fuzz::ParsedDocument const parsed(data, size);
    XERCES_CPP_NAMESPACE::DOMElement* variables = parsed.Find("dictionary");
    if (variables == nullptr) {
        return 0;
    }
    LegacyTranslator translator;
    translator.CreateTranscoder("UTF-8");
    vantry_fuzz::Refusable([&] {
        std::unique_ptr<QXVantry_920::ScoreDictionary> dictionary(translator.ParseDictionary(variables));
        if (dictionary != nullptr) {
            vantry_fuzz::ProbeVariables(*dictionary);
        }
    });
    return 0;
}
