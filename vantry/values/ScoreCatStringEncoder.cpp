#include "vantry/values/ScoreEncoder.h"

#include <ostream>

#include "vantry/values/EncoderLabels.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

ScoreCatStringEncoder::ScoreCatStringEncoder(int capacity)
    : fLastCode(-1), fNoSpaceTrim(false), fEmptyStringOK(true) {
    if (capacity > 0) {
        fLinks.reserve(static_cast<size_t>(capacity));
    }
}

ScoreCatStringEncoder::ScoreCatStringEncoder(std::vector<std::string> const& texts)
    : fLastCode(-1), fNoSpaceTrim(false), fEmptyStringOK(true) {
    for (std::string const& text : texts) {
        Encode(text);
    }
}

ScoreCatStringEncoder::ScoreCatStringEncoder(ScoreCatStringEncoder const& other)
    : ScoreEncoder(other),
      fCodes(other.fCodes),
      fLastCode(other.fLastCode),
      fNoSpaceTrim(other.fNoSpaceTrim),
      fEmptyStringOK(other.fEmptyStringOK) {
    CreateLinks();
}

ScoreCatStringEncoder& ScoreCatStringEncoder::operator=(ScoreCatStringEncoder const& other) {
    if (this != &other) {
        fCodes = other.fCodes;
        fLastCode = other.fLastCode;
        CreateLinks();
    }
    return *this;
}

ScoreCatStringEncoder::~ScoreCatStringEncoder() = default;

void ScoreCatStringEncoder::CreateLinks() {
    fLinks.clear();
    fLinks.reserve(fCodes.size());
    fLinks.assign(static_cast<size_t>(fLastCode + 1), nullptr);
    for (auto const& [key, code] : fCodes) {
        if (code >= 0 && code <= fLastCode) {
            fLinks[static_cast<size_t>(code)] = &key;
        }
    }
}

std::string_view ScoreCatStringEncoder::Normalise(std::string const& text) const {
    size_t end = text.find_last_not_of(' ');
    if (end != std::string::npos) {
        return std::string_view(text.data(), end + 1);
    }
    if (text.empty() || !fEmptyStringOK) {
        return std::string_view();
    }
    return std::string_view(" ", 1);  // every blank text is one category, apart from the empty one
}

ScoreEncoder::EncoderType ScoreCatStringEncoder::GetEncoderType() {
    return CAT_STRING_ENCODER;
}

int ScoreCatStringEncoder::GetNumberOfCategories() const {
    return fLastCode + 1;
}

int ScoreCatStringEncoder::Encode(ScoreValue const* value) {
    return value == nullptr ? -1 : Encode(ScoreValue::TextOf(*value));
}

int ScoreCatStringEncoder::EncodeConst(ScoreValue const* value) const {
    return value == nullptr ? -1 : EncodeConst(ScoreValue::TextOf(*value));
}

int ScoreCatStringEncoder::Encode(std::string const& text) {
    auto exact = fCodes.find(text);
    if (exact != fCodes.end()) {
        return exact->second;
    }
    std::string_view key = fNoSpaceTrim ? std::string_view(text) : Normalise(text);
    auto found = fCodes.find(key);
    if (found != fCodes.end()) {
        return found->second;
    }
    int code = fLastCode + 1;
    auto entry = fCodes.emplace(std::string(key), code).first;
    fLastCode = code;
    fLinks.push_back(&entry->first);
    return code;
}

int ScoreCatStringEncoder::EncodeConst(std::string const& text) const {
    auto exact = fCodes.find(text);
    if (exact != fCodes.end()) {
        return exact->second;
    }
    if (fNoSpaceTrim) {
        return -1;
    }
    auto found = fCodes.find(Normalise(text));
    return found == fCodes.end() ? -1 : found->second;
}

std::string ScoreCatStringEncoder::Decode(int code) {
    if (code < 0 || code > fLastCode || fLinks[static_cast<size_t>(code)] == nullptr) {
        return std::string();
    }
    return *fLinks[static_cast<size_t>(code)];
}

double ScoreCatStringEncoder::DecodeNum(int) const {
    return NumericValue::GetSysmisValue();
}

ScoreEncoder* ScoreCatStringEncoder::Clone() const {
    return new ScoreCatStringEncoder(*this);
}

void ScoreCatStringEncoder::SetValueLabels(std::vector<std::string> const& labels) {
    fValueLabels = labels;
}

void ScoreCatStringEncoder::SetValueLabel(int code, std::string const& label) {
    SetCodeLabel(fValueLabels, GetNumberOfCategories(), code, label);
}

std::vector<std::string> const* ScoreCatStringEncoder::GetValueLabels() const {
    return &fValueLabels;
}

void ScoreCatStringEncoder::Display(std::ostream& out) const {
    out << "\tScoreCatStringEncoder object:  "
        << "Last code = " << fLastCode << std::endl;
    for (size_t i = 0; i < fLinks.size(); ++i) {
        if (fLinks[i] == nullptr) {
            out << "ERROR\n";
        } else {
            out << "\t\t" << i << "\t\t" << *fLinks[i] << std::endl;
        }
    }
}

void ScoreCatStringEncoder::SetNoSpaceTrim(bool noSpaceTrim) {
    fNoSpaceTrim = noSpaceTrim;
}
void ScoreCatStringEncoder::SetEmptyStringOK(bool emptyStringOK) {
    fEmptyStringOK = emptyStringOK;
}
bool ScoreCatStringEncoder::GetNoSpaceTrim() const {
    return fNoSpaceTrim;
}
bool ScoreCatStringEncoder::GetEmptyStringOK() const {
    return fEmptyStringOK;
}

}  // namespace QXVantry_920
