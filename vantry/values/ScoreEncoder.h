// Turns a variable's value into a small integer code and back. Categories are numbered from 0 in order
// of first sight; -1 is the unknown code. Encode may give a new code to what it has not seen and so
// changes the encoder; EncodeConst never does, and is the form for concurrent scoring. ScoreEncoder is the
// interface; the binning, numeric and string encoders below implement it.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
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

// Codes a number by the bin of ascending cut points it falls in. Bin i holds the values above cut point
// i - 1 up to and including cut point i; the last bin holds everything above the last cut point.
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

// Codes numeric categories, numbered in order of first sight. Numbers match exactly, with no tolerance;
// a NaN matches nothing and is given no code (-1).
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

// Codes string categories, numbered in order of first sight. Unless no space trim is set, a text is
// looked up by its key: trailing spaces cut off, and a text of spaces only becomes one space (when the
// empty string is a category of its own) or the empty string.
class VANTRY_EXPORT ScoreCatStringEncoder : public ScoreEncoder {
  public:
    // Reserves room for that many categories.
    explicit ScoreCatStringEncoder(int capacity);
    // Encodes the texts in order, with the default flags, so that repeats collapse into one code.
    explicit ScoreCatStringEncoder(std::vector<std::string> const& texts);
    // Copies the codes and both flags, not the value labels.
    ScoreCatStringEncoder(ScoreCatStringEncoder const& other);
    // Copies the codes and keeps this encoder's own flags and value labels.
    ScoreCatStringEncoder& operator=(ScoreCatStringEncoder const& other);
    ~ScoreCatStringEncoder() override;

    EncoderType GetEncoderType() override;
    int GetNumberOfCategories() const override;
    int Encode(ScoreValue const* value) override;
    int Encode(std::string const& text) override;
    int EncodeConst(std::string const& text) const override;
    int EncodeConst(ScoreValue const* value) const override;
    // The key of the code, that is the text as normalised when it was first encoded.
    std::string Decode(int code) override;
    double DecodeNum(int code) const override;
    ScoreEncoder* Clone() const override;
    void SetValueLabels(std::vector<std::string> const& labels) override;
    void SetValueLabel(int code, std::string const& label) override;
    std::vector<std::string> const* GetValueLabels() const override;
    void Display(std::ostream& out) const override;

    void SetNoSpaceTrim(bool noSpaceTrim);
    void SetEmptyStringOK(bool emptyStringOK);
    bool GetNoSpaceTrim() const;
    bool GetEmptyStringOK() const;

  private:
    // Points each code at its key in the map, which never moves its keys.
    void CreateLinks();
    // The key of a text; it views into the text or into a constant.
    std::string_view Normalise(std::string const& text) const;

    std::map<std::string, int, std::less<>> fCodes;
    std::vector<std::string const*> fLinks;
    std::vector<std::string> fValueLabels;
    int fLastCode;
    bool fNoSpaceTrim;
    bool fEmptyStringOK;
};

}  // namespace QXVantry_920
