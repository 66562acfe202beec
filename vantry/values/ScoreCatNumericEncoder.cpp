#include "vantry/values/ScoreEncoder.h"

#include <cmath>
#include <ostream>

#include "vantry/values/EncoderLabels.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

ScoreCatNumericEncoder::ScoreCatNumericEncoder(int capacity) : fLastCode(-1) {
    if (capacity > 0) {
        fValues.reserve(static_cast<size_t>(capacity));
    }
}

ScoreCatNumericEncoder::ScoreCatNumericEncoder(std::vector<double> const& values) : fLastCode(-1) {
    for (double value : values) {
        Encode(value);
    }
}

ScoreCatNumericEncoder::ScoreCatNumericEncoder(ScoreCatNumericEncoder const& other)
    : ScoreEncoder(other), fCodes(other.fCodes), fValues(other.fValues), fLastCode(other.fLastCode) {}

ScoreCatNumericEncoder& ScoreCatNumericEncoder::operator=(ScoreCatNumericEncoder const& other) {
    fCodes = other.fCodes;
    fValues = other.fValues;
    fLastCode = other.fLastCode;
    return *this;
}

ScoreCatNumericEncoder::~ScoreCatNumericEncoder() = default;

ScoreEncoder::EncoderType ScoreCatNumericEncoder::GetEncoderType() {
    return CAT_NUMERIC_ENCODER;
}

int ScoreCatNumericEncoder::GetNumberOfCategories() const {
    return static_cast<int>(fCodes.size());
}

// Neither value form looks at the type or the missing status: the system-missing number is a category
// like any other, and a string contributes what its GetDouble reads.
int ScoreCatNumericEncoder::Encode(ScoreValue const* value) {
    return value == nullptr ? -1 : Encode(value->GetDouble());
}

int ScoreCatNumericEncoder::EncodeConst(ScoreValue const* value) const {
    return value == nullptr ? -1 : EncodeConst(value->GetDouble());
}

int ScoreCatNumericEncoder::Encode(std::string const& text) {
    return Encode(NumericValue(text).GetDouble());
}

int ScoreCatNumericEncoder::EncodeConst(std::string const& text) const {
    return EncodeConst(NumericValue(text).GetDouble());
}

// A NaN equals nothing, itself included, so it can be no category; an ordered map could not hold it
// either, since it compares neither below nor above any key.
int ScoreCatNumericEncoder::Encode(double x) {
    if (std::isnan(x)) {
        return -1;
    }
    auto [entry, inserted] = fCodes.try_emplace(x, fLastCode + 1);
    if (inserted) {
        ++fLastCode;
        fValues.push_back(x);
    }
    return entry->second;
}

int ScoreCatNumericEncoder::EncodeConst(double x) const {
    if (std::isnan(x)) {
        return -1;
    }
    auto found = fCodes.find(x);
    return found == fCodes.end() ? -1 : found->second;
}

std::string ScoreCatNumericEncoder::Decode(int) {
    return std::string();
}

double ScoreCatNumericEncoder::DecodeNum(int code) const {
    if (code < 0 || code >= GetNumberOfCategories()) {
        return NumericValue::GetSysmisValue();
    }
    return fValues[static_cast<size_t>(code)];
}

ScoreEncoder* ScoreCatNumericEncoder::Clone() const {
    return new ScoreCatNumericEncoder(*this);
}

void ScoreCatNumericEncoder::SetValueLabels(std::vector<std::string> const& labels) {
    fValueLabels = labels;
}

void ScoreCatNumericEncoder::SetValueLabel(int code, std::string const& label) {
    SetCodeLabel(fValueLabels, GetNumberOfCategories(), code, label);
}

std::vector<std::string> const* ScoreCatNumericEncoder::GetValueLabels() const {
    return &fValueLabels;
}

void ScoreCatNumericEncoder::Display(std::ostream& out) const {
    out << "\tScoreCatNumericEncoder: "
        << "Last code = " << fLastCode << std::endl;
    out << "\t\tNumeric values of categories: ";
    for (size_t i = 0; i < fValues.size(); ++i) {
        out << fValues[i] << " ";
        if ((i + 1) % 7 == 0) {
            out << std::endl;
        }
    }
    out << std::endl;
}

}  // namespace QXVantry_920
