// Codes string categories, numbered in order of first sight. Unless no space trim is set, a text is
// looked up by its key: trailing spaces cut off, and a text of spaces only becomes one space (when the
// empty string is a category of its own) or the empty string.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreEncoder.h"

namespace QXVantry_920 {

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
