// Pieces shared by the fuzz targets: Xerces-C started once for the process, documents parsed from the
// fuzzer's bytes, the reading of a library call that may refuse its input, and case records filled from
// a data dictionary. Each target defines LLVMFuzzerTestOneInput; under libFuzzer anything but a
// VTException that escapes is a finding, and the replay test runs the same function over kept inputs.
#pragma once

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "vantry/diagnostics/VTException.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace vantry_fuzz {

// Starts Xerces-C on the first call; it stays up for the process, as in a host.
inline void StartXerces() {
    static bool const started = [] {
        XERCES_CPP_NAMESPACE::XMLPlatformUtils::Initialize();
        return true;
    }();
    (void)started;
}

// A document parsed from the bytes, held with its parser, set up as the library sets up its own: no
// external DTD or entity is fetched, so an input cannot reach files, and entity expansion is bounded, so
// a few bytes cannot expand into gigabytes before the reader under test sees them. Null document when
// the text is not well-formed XML.
struct ParsedDocument {
    std::unique_ptr<XERCES_CPP_NAMESPACE::XercesDOMParser> parser;
    XERCES_CPP_NAMESPACE::DOMDocument* document = nullptr;

    ParsedDocument(std::uint8_t const* data, std::size_t size) {
        StartXerces();
        parser = std::make_unique<XERCES_CPP_NAMESPACE::XercesDOMParser>();
        parser->setLoadExternalDTD(false);
        parser->setDisableDefaultEntityResolution(true);
        static XERCES_CPP_NAMESPACE::SecurityManager security;
        security.setEntityExpansionLimit(10000);
        parser->setSecurityManager(&security);
        XERCES_CPP_NAMESPACE::MemBufInputSource source(data, size, "fuzz");
        try {
            parser->parse(source);
            if (parser->getErrorCount() == 0) {
                document = parser->getDocument();
            }
        } catch (XERCES_CPP_NAMESPACE::XMLException const&) {
        } catch (XERCES_CPP_NAMESPACE::DOMException const&) {
        }
    }

    XERCES_CPP_NAMESPACE::DOMElement* Root() const {
        return document != nullptr ? document->getDocumentElement() : nullptr;
    }

    // The element itself when it is named so, else its first descendant of that name; null if none.
    XERCES_CPP_NAMESPACE::DOMElement* Find(char const* name) const {
        XERCES_CPP_NAMESPACE::DOMElement* root = Root();
        if (root == nullptr) {
            return nullptr;
        }
        XMLCh* tag = XERCES_CPP_NAMESPACE::XMLString::transcode(name);
        XERCES_CPP_NAMESPACE::DOMElement* found = root;
        if (!XERCES_CPP_NAMESPACE::XMLString::equals(root->getTagName(), tag)) {
            XERCES_CPP_NAMESPACE::DOMNodeList* list = root->getElementsByTagName(tag);
            found = list->getLength() > 0 ? static_cast<XERCES_CPP_NAMESPACE::DOMElement*>(list->item(0))
                                          : nullptr;
        }
        XERCES_CPP_NAMESPACE::XMLString::release(&tag);
        return found;
    }
};

// Runs a library call; a VTException is the documented answer to a bad document and ends the input.
template <typename Call>
void Refusable(Call call) {
    try {
        call();
    } catch (QXVantry_920::VTException const&) {
    }
}

// The three cases every target scores from a dictionary: each variable at a valid value (its first
// category, or 1 for a number), at a plain number, and missing.
enum class CaseKind { Valid, Number, Missing };
inline constexpr CaseKind kCaseKinds[] = {CaseKind::Valid, CaseKind::Number, CaseKind::Missing};

// Sets every variable of the dictionary that the record holds; the record keeps its own values.
inline void FillCase(QXVantry_920::ScoreCaseRecord& record, QXVantry_920::ScoreDictionary const& dictionary,
                     CaseKind kind) {
    for (QXVantry_920::ScoreDictVar* variable : dictionary.GetScoreDictVars()) {
        std::string const& name = variable->GetName();
        QXVantry_920::ScoreValueLabelSet const* labels = variable->GetValueLabels();
        QXVantry_920::ScoreValue const* category = nullptr;
        if (labels != nullptr && !labels->GetAllValueLabels().empty()) {
            category = labels->GetAllValueLabels().front()->GetValue();
        }
        if (kind == CaseKind::Missing) {
            record.SetMissingValue(name);
        } else if (variable->IsString()) {
            bool const valid = kind == CaseKind::Valid && category != nullptr;
            record.SetValue(name, valid ? QXVantry_920::ScoreValue::TextOf(*category) : std::string("17.5"));
        } else {
            bool const valid = kind == CaseKind::Valid && category != nullptr;
            record.SetValue(name, valid ? category->GetDouble() : 17.5);
        }
    }
}

// Asks every variable what a model asks of a value read from text: the value, whether it is missing,
// its label, and the variable's own description.
inline void ProbeVariables(QXVantry_920::ScoreDictionary const& dictionary) {
    std::ostringstream description;
    for (QXVantry_920::ScoreDictVar* variable : dictionary.GetScoreDictVars()) {
        for (char const* text : {"a", "17.5", "", "1970-01-02"}) {
            std::unique_ptr<QXVantry_920::ScoreValue> value(variable->ToMyValue(text));
            if (value != nullptr) {
                variable->IsMissingValue(value.get());
                variable->GetLabelOfValue(value.get());
            }
        }
        variable->Display(description);
    }
}

}  // namespace vantry_fuzz
