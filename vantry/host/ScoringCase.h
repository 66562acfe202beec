// One case of a model, reused from case to case: the model's case record and result, filled by input
// index from numbers and texts by the rules of each input's declared type, scored, and read back by
// output index. Scorer is built on it; a host that builds its models through ModelFactory itself can use
// it alone.
//
// Inputs are the model's data fields in record order; outputs are its result variables (targets, then
// output fields). Nothing here throws on data: a value that does not fit its field reaches the model as
// an invalid value, and what the model cannot compute reads back as missing.
//
// Cost: setting a number by index and scoring allocate nothing of their own (the model's own work
// aside); a text, or a number for a field that last held a text, copies it into the record.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {
class ScoreCaseRecord;
class ScoreModel;
class ScoreResult;
class ScoreValue;
}  // namespace QXVantry_920

namespace vantry {

class ReusedResultField;

class VANTRY_EXPORT ScoringCase {
  public:
    // StatusCode after a model that threw while scoring.
    static constexpr long kModelThrew = -1;

    // The model must outlive the case. All inputs start missing.
    explicit ScoringCase(QXVantry_920::ScoreModel& model);
    ~ScoringCase();
    ScoringCase(ScoringCase const&) = delete;
    ScoringCase& operator=(ScoringCase const&) = delete;

    std::vector<std::string> const& InputNames() const { return fInputNames; }
    std::vector<std::string> const& OutputNames() const { return fOutputNames; }

    // Each setter answers false, changing nothing, for an index out of range.
    // A number: a date field takes it as the date's own number (days since 1970, seconds for times), a
    // text field as its shortest text; a fraction in an integer field is invalid; NaN is missing.
    bool SetNumber(int input, double number);
    // A text, read by the field's type: a text field takes it as it stands; a number field reads the
    // whole text as a number ("true" and "false" as 1 and 0 when no number type is declared), a date
    // field as a date or its number; an empty text is missing there, another unreadable one invalid.
    bool SetText(int input, std::string const& text);
    bool SetMissing(int input);
    void SetAllMissing();

    // Scores the case and fills the outputs. True when the model scored it without an error status;
    // false otherwise, and then the outputs hold what the model gave, all missing if it threw.
    bool Score();
    // The model's status code for the last case (0 when fine), or kModelThrew.
    long StatusCode() const { return fStatusCode; }
    // How many values so far did not fit their field and reached the model as invalid values.
    long InvalidValues() const { return fInvalidValues; }

    // The output value of the last case; null when the model gave none. Throws std::out_of_range for an
    // index out of range.
    QXVantry_920::ScoreValue const* Output(int output) const;

  private:
    // One input: its record slot and how numbers and texts become values.
    struct Input {
        std::string name;
        int slot;
        QXVantry_920::ScoreDictVar::VariableType type;
        QXVantry_920::ScoreDictVar::DateTimeType dateType;
        QXVantry_920::ScoreDictVar::NumericDataType numberType;
        // The slot holds a text standing in for a value that did not fit the field's type.
        bool holdsText;
    };

    // Whether the number is a value of the field: an integer field takes whole numbers only.
    static bool FitsField(Input const& input, double number);
    void PutNumber(Input& input, double number);
    void PutInvalidText(Input& input, std::string const& text);
    void PutMissing(Input& input);
    void PutText(Input& input, std::string const& text);

    QXVantry_920::ScoreModel& fModel;
    std::unique_ptr<QXVantry_920::ScoreCaseRecord> fRecord;
    std::unique_ptr<QXVantry_920::ScoreResult> fResult;
    std::unique_ptr<ReusedResultField> fFields;
    std::vector<Input> fInputs;
    std::vector<std::string> fInputNames;
    std::vector<std::string> fOutputNames;
    long fStatusCode = 0;
    long fInvalidValues = 0;
};

}  // namespace vantry
