#include "vantry/translate/BaseTranslator.h"

#include <algorithm>
#include <cstdlib>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/text/VantryTranscoder.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/XMLText.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

constexpr char kDefaultEncoding[] = "CP1252";

DOMNode* FirstElementFrom(DOMNode* node) {
    while (node != nullptr && node->getNodeType() != DOMNode::ELEMENT_NODE)
        node = node->getNextSibling();
    return node;
}

// The first direct element child whose node name is the tag.
DOMNode* FindChildElement(DOMNode* node, XMLCh const* tag) {
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(node); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (XMLString::equals(child->getNodeName(), tag))
            return child;
    }
    return nullptr;
}

// A sign may stand only at index 0 and not alone.
bool ValidIntegerSign(std::string const& text, char sign) {
    const auto count = std::count(text.begin(), text.end(), sign);
    if (count == 0)
        return true;
    return count == 1 && text[0] == sign && text.size() > 1;
}

bool ValidExponentLetter(std::string const& text, char letter) {
    const auto count = std::count(text.begin(), text.end(), letter);
    if (count == 0)
        return true;
    const std::size_t at = text.find(letter);
    return count == 1 && at != 0 && at != text.size() - 1;
}

// Without an exponent a sign stands once, at index 0; with one, only its last occurrence is looked at,
// which must not end the text and, past index 0, must follow the exponent letter.
bool ValidDoubleSign(std::string const& text, char sign, bool hasExponent) {
    const std::size_t last = text.rfind(sign);
    if (last == std::string::npos)
        return true;
    if (!hasExponent && (std::count(text.begin(), text.end(), sign) != 1 || last != 0))
        return false;
    if (last == text.size() - 1)
        return false;
    return last == 0 || text[last - 1] == 'e' || text[last - 1] == 'E';
}

bool IsValidDoubleText(std::string const& text) {
    if (text.empty())
        return false;
    if (!ValidExponentLetter(text, 'e') || !ValidExponentLetter(text, 'E'))
        return false;
    const std::size_t exponent = text.find_first_of("eE");
    const bool hasExponent = exponent != std::string::npos;
    if (hasExponent && text.find_first_of("eE", exponent + 1) != std::string::npos)
        return false;
    if (!ValidDoubleSign(text, '-', hasExponent) || !ValidDoubleSign(text, '+', hasExponent))
        return false;
    if (!hasExponent && text.find('-') != std::string::npos && text.find('+') != std::string::npos)
        return false;

    const auto points = std::count(text.begin(), text.end(), '.');
    if (points > 1)
        return false;
    if (points == 1) {
        const std::size_t point = text.find('.');
        if (point == text.size() - 1)
            return false;
        if (hasExponent && (point > exponent || point + 1 == exponent))
            return false;
    }
    return text.find_first_not_of("0123456789+-.Ee") == std::string::npos;
}

}  // namespace

BaseTranslator::BaseTranslator() : fTranscoder(nullptr) {}

BaseTranslator::BaseTranslator(BaseTranslator const& other)
    : ScoreTranslator(other),
      fTranscoder(other.fTranscoder != nullptr ? new VantryTranscoder(*other.fTranscoder) : nullptr) {}

BaseTranslator& BaseTranslator::operator=(BaseTranslator const& other) {
    if (this != &other) {
        VantryTranscoder* copy =
            other.fTranscoder != nullptr ? new VantryTranscoder(*other.fTranscoder) : nullptr;
        delete fTranscoder;
        fTranscoder = copy;
    }
    return *this;
}

BaseTranslator::~BaseTranslator() {
    delete fTranscoder;
}

ScoreModel* BaseTranslator::ParseFromTree(DOMElement*, DOMElement*, DOMElement*, std::string const&) {
    return nullptr;
}

ScoreModel* BaseTranslator::ParseFromTree(DOMElement*, ScoreModel*, std::string const&) {
    return nullptr;
}

ScoreModel* BaseTranslator::ParseFromTree(DOMElement*, ScoreDictionary*, ScoreDictionary*,
                                          std::string const&) {
    return nullptr;
}

ScoreModel* BaseTranslator::ParseFromTree(std::string const&, std::string const&) {
    return nullptr;
}

ScoreModel* BaseTranslator::ParseFromTree(std::istream&, std::string const&) {
    return nullptr;
}

void BaseTranslator::SetSupportOldParser(bool) {}

ScoreModel* BaseTranslator::ParseFromTree(DOMDocument*, ScoreDictionary*, std::string const&) {
    return nullptr;
}

ScoreModel* BaseTranslator::ParseFromTree(std::istream&, std::string const&, std::string const&) {
    return nullptr;
}

std::string BaseTranslator::TrimBlanks(std::string const& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return text;
    const std::size_t last = text.find_last_not_of(' ');
    return text.substr(first, last + 1);
}

bool BaseTranslator::IsEqual(VantryTranscoder* transcoder, XMLCh const* text, std::string const& other) {
    if (transcoder == nullptr)
        return IsEqual(text, other);
    return transcoder->transcodeTo(text) == other;
}

bool BaseTranslator::IsEqual(XMLCh const* text, std::string const& other) {
    return XMLString::compareString(text, XMLText(other)) == 0;
}

DOMNode* BaseTranslator::GetFirstChildElt(DOMNode* node) {
    return node != nullptr ? FirstElementFrom(node->getFirstChild()) : nullptr;
}

DOMNode* BaseTranslator::GetNextSiblingElt(DOMNode* node) {
    return node != nullptr ? FirstElementFrom(node->getNextSibling()) : nullptr;
}

DOMNode* BaseTranslator::GetChildByTag(DOMNode* node, std::string const& tag) {
    if (node == nullptr)
        return nullptr;
    return FindChildElement(node, XMLText(tag));
}

DOMNode* BaseTranslator::GetChildByTagForced(DOMNode* node, std::string const& tag) {
    DOMNode* child = GetChildByTag(node, tag);
    if (child == nullptr)
        ThrowCodedError(260114, {tag});
    return child;
}

DOMNode* BaseTranslator::GetChildTag(DOMNode* node, XMLCh* tag) {
    DOMNode* child = FindChildElement(node, tag);
    XMLString::release(&tag);
    return child;
}

DOMNode* BaseTranslator::GetChildTagForced(DOMNode* node, XMLCh* tag) {
    const std::string name = NarrowText(tag);
    DOMNode* child = GetChildTag(node, tag);
    if (child == nullptr)
        ThrowCodedError(260114, {name});
    return child;
}

XMLCh const* BaseTranslator::GetAttribute(DOMElement const* element, std::string const& name) {
    if (element == nullptr)
        return XMLUni::fgZeroLenString;
    return element->getAttribute(XMLText(name));
}

XMLCh const* BaseTranslator::GetAttributeForced(DOMElement const* element, std::string const& name) {
    const XMLText attribute(name);
    if (element == nullptr || !element->hasAttribute(attribute)) {
        ThrowCodedError(260120,
                        {name.c_str(), element != nullptr ? NarrowText(element->getTagName()).c_str() : ""});
    }
    return element->getAttribute(attribute);
}

DOMNodeList* BaseTranslator::GetElementsByTagName(DOMDocument const* document, std::string const& name) {
    if (document == nullptr)
        ThrowCodedError(260114, {name});
    return document->getElementsByTagName(XMLText(name));
}

DOMNodeList* BaseTranslator::GetElementsByTagName(DOMElement const* element, std::string const& name) {
    if (element == nullptr)
        ThrowCodedError(260114, {name});
    return element->getElementsByTagName(XMLText(name));
}

int BaseTranslator::VerifyInt(std::string const& text) {
    const bool valid = !text.empty() && ValidIntegerSign(text, '-') && ValidIntegerSign(text, '+') &&
                       text.find_first_not_of("0123456789+-") == std::string::npos;
    if (!valid)
        ThrowCodedError(260151, {text.c_str(), "integer"});
    // What atoi gives, without its undefined behaviour on overflow.
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

int BaseTranslator::VerifyInt(XMLCh const* text) {
    return VerifyInt(NarrowText(text));
}

double BaseTranslator::VerifyDouble(std::string const& text) {
    const std::string trimmed = TrimBlanks(text);
    if (!IsValidDoubleText(trimmed))
        ThrowCodedError(260151, {trimmed.c_str(), "double"});
    return NumericValue(trimmed).GetDouble();
}

double BaseTranslator::VerifyDouble(XMLCh const* text) {
    return VerifyDouble(NarrowText(text));
}

double BaseTranslator::VerifyDateTime(std::string const& text, ScoreDictVar::DateTimeType type) {
    if (!DateTimeValue::IsValidDateTime(text, type))
        ThrowCodedError(260151, {text.c_str(), "dateTime"});
    // The text of the type, held as a date, a time or a date-time as the type says.
    return DateTimeValue(text, type).GetDouble();
}

double BaseTranslator::VerifyDateTime(XMLCh const* text, ScoreDictVar::DateTimeType type) {
    return VerifyDateTime(NarrowText(text), type);
}

ScoreValue* BaseTranslator::CarefullyMakeVarValue(ScoreDictVar const* variable, std::string const& text) {
    if (variable == nullptr)
        return nullptr;
    switch (variable->GetVarType()) {
        case ScoreDictVar::STRING_VAR:
            return new StringValue(text);
        case ScoreDictVar::kNUMERIC_VAR:
            return new NumericValue(VerifyDouble(text));
        case ScoreDictVar::DATETIME_VAR:
            // A date variable's value comes as the number of its type, never as a date text.
            return new DateTimeValue(VerifyDouble(text), variable->GetDateTimeType());
    }
    return nullptr;
}

ScoreValue* BaseTranslator::CarefullyMakeVarValue(ScoreDictVar const* variable, XMLCh const* text) {
    if (variable != nullptr && variable->GetVarType() == ScoreDictVar::STRING_VAR) {
        return new StringValue(ToString(text));
    }
    return CarefullyMakeVarValue(variable, NarrowText(text));
}

void BaseTranslator::CreateTranscoder(std::string const& encoding) {
    // A transcoder held before is not freed: a DOMElemUtility or a plug-in's reader that was given it
    // may still use it.
    fTranscoder = new VantryTranscoder(encoding.empty() ? std::string(kDefaultEncoding) : encoding);
}

std::string BaseTranslator::ToString(XMLCh const* text) {
    return TranscodeText(fTranscoder, text);
}

}  // namespace QXVantry_920
