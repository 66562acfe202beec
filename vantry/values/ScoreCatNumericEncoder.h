// Codes numeric categories, numbered in order of first sight. Numbers match exactly, with no tolerance.
#pragma once

#include <map>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreEncoder.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoreCatNumericEncoder : public ScoreEncoder {
  public:
    // Reserves room for that many categories.
    explicit ScoreCatNumericEncoder(int capacity);
    // Encodes the values in order, so that repeats collapse into one code.
    explicit ScoreCatNumericEncoder(std::vector<double> const& values);
    // Copies the codes, not the value labels.
    ScoreCatNumericEncoder(ScoreCatNumericEncoder const& other);
    // Copies the codes and keeps this encoder's own value labels.
    ScoreCatNumericEncoder& operator=(ScoreCatNumericEncoder const& other);
    ~ScoreCatNumericEncoder() override;

    EncoderType GetEncoderType() override;
    int GetNumberOfCategories() const override;
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

    int Encode(double x);
    int EncodeConst(double x) const;

  private:
    std::map<double, int> fCodes;
    std::vector<double> fValues;  // the value of each code
    std::vector<std::string> fValueLabels;
    int fLastCode;
};

}  // namespace QXVantry_920
