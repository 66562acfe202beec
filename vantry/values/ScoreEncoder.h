// Turns a variable's value into a small integer code and back. Categories are numbered from 0 in order
// of first sight; -1 is the unknown code. Encode may give a new code to what it has not seen and so
// changes the encoder; EncodeConst never does, and is the form for concurrent scoring.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {

class ScoreValue;

class VANTRY_EXPORT ScoreEncoder {
  public:
    enum EncoderType : int {
        BINNING_ENCODER = 1,
        CAT_NUMERIC_ENCODER = 2,
        CAT_STRING_ENCODER = 3,
    };

    virtual ~ScoreEncoder();
    virtual EncoderType GetEncoderType() = 0;
    virtual int GetNumberOfCategories() const = 0;
    virtual int Encode(ScoreValue const* value) = 0;
    virtual int Encode(std::string const& text) = 0;
    virtual int EncodeConst(std::string const& text) const = 0;
    virtual int EncodeConst(ScoreValue const* value) const = 0;
    virtual std::string Decode(int code) = 0;
    virtual double DecodeNum(int code) const = 0;
    virtual ScoreEncoder* Clone() const = 0;
    virtual void SetValueLabels(std::vector<std::string> const& labels) = 0;
    virtual void SetValueLabel(int code, std::string const& label) = 0;
    virtual std::vector<std::string> const* GetValueLabels() const = 0;
    virtual void Display(std::ostream& out) const = 0;

  protected:
    ScoreEncoder() = default;
    ScoreEncoder(ScoreEncoder const&) = default;
    ScoreEncoder& operator=(ScoreEncoder const&) = default;
};

}  // namespace QXVantry_920
