#include "vantry/translate/DOMElemUtility.h"

#include <xercesc/dom/DOM.hpp>

#include "vantry/diagnostics/VTException.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/PMMLTranslator.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// Runs a read; a VTException from it is passed on or turned into the fallback.
template <typename Result, typename Read>
Result Guarded(bool rethrow, Result fallback, Read read) {
    try {
        return read();
    } catch (VTException const&) {
        if (rethrow)
            throw;
        return fallback;
    }
}

}  // namespace

DOMElemUtility::DOMElemUtility(PMMLTranslator* translator, VantryTranscoder* transcoder)
    : fTranslator(translator), fTranscoder(transcoder) {}

DOMElemUtility::~DOMElemUtility() = default;

DOMNodeList* DOMElemUtility::GetDOMNodeList(DOMElement* element, std::string const& name, bool rethrow) {
    if (element == nullptr || name.empty())
        return nullptr;
    return Guarded<DOMNodeList*>(rethrow, nullptr, [&]() -> DOMNodeList* {
        DOMNodeList* list = BaseTranslator::GetElementsByTagName(element, name);
        return list != nullptr && list->getLength() > 0 ? list : nullptr;
    });
}

DOMElement* DOMElemUtility::GetElemFromNodeList(DOMElement* element, std::string const& name,
                                                std::uint64_t index, bool rethrow) {
    if (fTranslator == nullptr || element == nullptr || name.empty())
        return nullptr;
    return Guarded<DOMElement*>(rethrow, nullptr, [&]() -> DOMElement* {
        DOMNodeList* list = BaseTranslator::GetElementsByTagName(element, name);
        if (list == nullptr || index >= list->getLength())
            return nullptr;
        return static_cast<DOMElement*>(list->item(static_cast<XMLSize_t>(index)));
    });
}

std::uint64_t DOMElemUtility::GetNodeListLength(DOMElement* element, std::string const& name, bool rethrow) {
    if (fTranslator == nullptr || element == nullptr || name.empty())
        return 0;
    return Guarded<std::uint64_t>(rethrow, 0, [&]() -> std::uint64_t {
        DOMNodeList* list = BaseTranslator::GetElementsByTagName(element, name);
        return list != nullptr ? list->getLength() : 0;
    });
}

double DOMElemUtility::GetAttributeToDouble(DOMElement* element, std::string const& name, bool rethrow) {
    if (fTranslator == nullptr || element == nullptr || name.empty())
        return -1.0;
    return Guarded<double>(rethrow, -1.0, [&] {
        return BaseTranslator::VerifyDouble(BaseTranslator::GetAttributeForced(element, name));
    });
}

int DOMElemUtility::GetAttributeToInt(DOMElement* element, std::string const& name, bool rethrow) {
    if (fTranslator == nullptr || element == nullptr || name.empty())
        return -1;
    return Guarded<int>(rethrow, -1, [&] {
        return BaseTranslator::VerifyInt(BaseTranslator::GetAttributeForced(element, name));
    });
}

std::string DOMElemUtility::GetAttributeToString(DOMElement* element, std::string const& name, bool rethrow) {
    if (fTranslator == nullptr || fTranscoder == nullptr || element == nullptr || name.empty()) {
        return std::string();
    }
    return Guarded<std::string>(rethrow, std::string(), [&] {
        return fTranscoder->transcodeTo(BaseTranslator::GetAttributeForced(element, name));
    });
}

DOMElement* DOMElemUtility::GetChildElemByName(DOMElement* element, std::string const& name, bool rethrow) {
    if (fTranslator == nullptr || element == nullptr || name.empty())
        return nullptr;
    return Guarded<DOMElement*>(rethrow, nullptr, [&] {
        return static_cast<DOMElement*>(BaseTranslator::GetChildByTagForced(element, name));
    });
}

}  // namespace QXVantry_920
