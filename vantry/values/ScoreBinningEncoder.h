// Codes a number by the bin of ascending cut points it falls in. Bin i holds the values above cut point
// i - 1 up to and including cut point i; the last bin holds everything above the last cut point.
#pragma once

#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreEncoder.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreBinningEncoder : public ScoreEncoder {
  public:
    ScoreBinningEncoder();
    // The cut points are taken as given, neither sorted nor checked.
    explicit ScoreBinningEncoder(std::vector<double> const& cutpoints);
    ScoreBinningEncoder(ScoreBinningEncoder const& other);
    ScoreBinningEncoder& operator=(ScoreBinningEncoder const& other);
    ~ScoreBinningEncoder() override;

    EncoderType GetEncoderType() override;
    int GetNumberOfCategories() const override;
    // Refuses with -1 anything but a plain number.
    int Encode(ScoreValue const* value) override;
    int Encode(std::string const& text) override;
    int EncodeConst(std::string const& text) const override;
    int EncodeConst(ScoreValue const* value) const override;
    std::string Decode(int code) override;
    double DecodeNum(int code) const override;
    ScoreEncoder* Clone() const override;
    void SetValueLabels(std::vector<std::string> const& labels) override;
    void SetValueLabel(int code, std::string const& label) override;
    std::vector<std::string> const* GetValueLabels() const override;
    void Display(std::ostream& out) const override;

    void SetBinningCutpoints(std::vector<double> const& cutpoints);
    std::vector<double> const& GetBinningCutpoints() const;
    // The bin of x, by binary search with exact comparison; no test for the system-missing number.
    double Encode(double x) const;

  private:
    int fNumberOfBins;
    std::vector<double> fCutpoints;
};

}  // namespace QXVantry_920
