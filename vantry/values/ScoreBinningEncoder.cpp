#include "vantry/values/ScoreEncoder.h"

#include <ostream>

#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

char const kEncodeName[] = "QXVantry_920::ScoreBinningEncoder::Encode";

// Both marks of Encode say "Exit", at the start as at the end.
void TraceEncodeMark() {
    ScoringLog::GetInstance()->TraceText(1, "Exit:%s", kEncodeName);
}

}  // namespace

ScoreBinningEncoder::ScoreBinningEncoder() : fNumberOfBins(0) {}

ScoreBinningEncoder::ScoreBinningEncoder(std::vector<double> const& cutpoints) : fNumberOfBins(0) {
    SetBinningCutpoints(cutpoints);
}

ScoreBinningEncoder::ScoreBinningEncoder(ScoreBinningEncoder const& other) = default;
ScoreBinningEncoder& ScoreBinningEncoder::operator=(ScoreBinningEncoder const& other) = default;
ScoreBinningEncoder::~ScoreBinningEncoder() = default;

ScoreEncoder::EncoderType ScoreBinningEncoder::GetEncoderType() {
    return BINNING_ENCODER;
}

int ScoreBinningEncoder::GetNumberOfCategories() const {
    return fNumberOfBins;
}

int ScoreBinningEncoder::Encode(ScoreValue const* value) {
    return EncodeConst(value);
}

int ScoreBinningEncoder::Encode(std::string const& text) {
    return EncodeConst(text);
}

int ScoreBinningEncoder::EncodeConst(std::string const& text) const {
    // An empty text is system-missing and a non-numeric one 0.0; both land in a bin.
    return static_cast<int>(Encode(NumericValue(text).GetDouble()));
}

int ScoreBinningEncoder::EncodeConst(ScoreValue const* value) const {
    if (value == nullptr || ScoreValue::TypeOf(*value) != ScoreValue::NUMERIC_VALUE) {
        return -1;
    }
    return static_cast<int>(Encode(value->GetDouble()));
}

std::string ScoreBinningEncoder::Decode(int) {
    return std::string();
}

double ScoreBinningEncoder::DecodeNum(int) const {
    return NumericValue::GetSysmisValue();
}

ScoreEncoder* ScoreBinningEncoder::Clone() const {
    return new ScoreBinningEncoder(*this);
}

void ScoreBinningEncoder::SetValueLabels(std::vector<std::string> const&) {}

void ScoreBinningEncoder::SetValueLabel(int, std::string const&) {}

std::vector<std::string> const* ScoreBinningEncoder::GetValueLabels() const {
    return nullptr;
}

void ScoreBinningEncoder::Display(std::ostream& out) const {
    out << "\tScoreBinningEncoder: number of bins = " << fNumberOfBins << std::endl;
    out << "\t\tCutpoints: ";
    for (double cutpoint : fCutpoints) {
        out << cutpoint << " ";
    }
    out << std::endl;
}

void ScoreBinningEncoder::SetBinningCutpoints(std::vector<double> const& cutpoints) {
    fCutpoints = cutpoints;
    fNumberOfBins = static_cast<int>(fCutpoints.size()) + 1;
}

std::vector<double> const& ScoreBinningEncoder::GetBinningCutpoints() const {
    return fCutpoints;
}

double ScoreBinningEncoder::Encode(double x) const {
    TraceEncodeMark();
    int lo = 0;
    int hi = fNumberOfBins - 2;
    int mid = 0;
    double cut = 0.0;
    int bin = -1;
    while (lo <= hi) {
        mid = (lo + hi) / 2;
        cut = fCutpoints[static_cast<size_t>(mid)];
        if (x == cut) {
            bin = mid;  // a cut point belongs to the bin below it
            break;
        }
        if (cut > x) {
            hi = mid - 1;
        } else {
            lo = mid + 1;
        }
    }
    if (bin < 0) {
        bin = cut > x ? mid : mid + 1;
    }
    TraceEncodeMark();
    return bin;
}

}  // namespace QXVantry_920
