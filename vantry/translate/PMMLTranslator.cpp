#include "vantry/translate/PMMLTranslator.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

PMMLTranslator::PMMLTranslator() : PMMLTranslator(std::string()) {}

PMMLTranslator::PMMLTranslator(std::string const& encoding)
    : fNodeCounter(0), fEncoding(encoding), fPMMLLevel(4.0) {}

PMMLTranslator::PMMLTranslator(PMMLTranslator const& other) = default;

PMMLTranslator& PMMLTranslator::operator=(PMMLTranslator const& other) = default;

PMMLTranslator::~PMMLTranslator() = default;

ScoreModel* PMMLTranslator::ParseFromTree(DOMDocument*, std::string const&) {
    return nullptr;
}

std::string PMMLTranslator::ToString(XMLCh const* text) {
    return NarrowText(text);
}

std::string PMMLTranslator::ToString(ScoreDictVar::MeasureLevel level) {
    switch (static_cast<int>(level)) {
        case 0:
            return "continuous";
        case 1:
            return "ordinal";
        case 2:
            return "categorical";
        default:
            return std::string();
    }
}

XMLCh* PMMLTranslator::ToUTF16(char const* text) {
    return fTranscoder != nullptr ? fTranscoder->ChangeChar2XML(text) : nullptr;
}

bool PMMLTranslator::XStrEqualsUTF8Str(XMLCh const* text, char const* other) {
    XMLCh* converted = ToUTF16(other);
    if (converted == nullptr)
        return false;
    const bool equal = XMLString::equals(text, converted);
    XMLString::release(&converted, XMLPlatformUtils::fgMemoryManager);
    return equal;
}

}  // namespace QXVantry_920
