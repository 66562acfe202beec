// Scoring from C++ in a few lines: a model read from a PMML document, scored row by row.
//
//     vantry::Scorer iris = vantry::Scorer::FromFile("iris_regression.pmml");
//     iris.Score({{"petal_length", 4.5}, {"petal_width", 1.5}});
//     std::string species = iris.Text("species");
//     double p = iris.Number("P_versicolor");
//
// A Scorer owns its model, the model's case record and result, and a use of the library: the library
// starts with the first live Scorer and stops after the last (see LibraryUse.h), so a host never calls
// ModelFactory::Initialize or Terminate for it. A refused document throws the library's
// QXVantry_920::VTException, with its six-digit code; a file that cannot be opened throws it with
// 260103. Data never throws: a value that does not fit its field reaches the model as an invalid value,
// and an output the model cannot compute is missing (Number gives the system-missing number, Text "").
//
// Threads: a Scorer is thread-compatible, not thread-safe, since scoring keeps per-case state in the
// model. Give each thread its own instance: Clone makes one from the same document bytes, which the
// instances share read-only.
//
// Costs: by index, Set with a number and Score allocate nothing of their own. By name, each call looks the
// name up in an ordered map (a few string comparisons) and then works as by index. Text allocates its
// answer. Loading and Clone parse the whole document and load its plug-in (once per process).
#pragma once

#include <initializer_list>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {
class ScoreModel;
}

namespace vantry {

// How a Scorer reads its document.
struct LoadOptions {
    // The catalogue of model names that chooses the plug-in; empty: the one shipped with the plug-ins,
    // else TreeModel, RegressionModel and MiningModel.
    std::string catalog;
    // The code page in which the model hands over the document's texts; UTF-8 by default.
    std::string encoding = "UTF-8";
};

class VANTRY_EXPORT Scorer {
  public:
    // One input of a row for Score: a field name with a number, a text, or missing (no value).
    struct Field {
        Field(std::string_view fieldName, double value) : name(fieldName), number(value), kind(kNumber) {}
        Field(std::string_view fieldName, std::string_view value)
            : name(fieldName), text(value), kind(kText) {}
        explicit Field(std::string_view fieldName) : name(fieldName), kind(kMissing) {}

        std::string_view name;
        double number = 0.0;
        std::string_view text;
        enum Kind { kNumber, kText, kMissing } kind;
    };

    static Scorer FromFile(std::string const& path, LoadOptions const& options = LoadOptions());
    static Scorer FromString(std::string_view document, LoadOptions const& options = LoadOptions());
    // Reads the stream to its end.
    static Scorer FromStream(std::istream& stream, LoadOptions const& options = LoadOptions());

    Scorer(Scorer&& other) noexcept;
    Scorer& operator=(Scorer&& other) noexcept;
    ~Scorer();

    // Another instance of the same model for another thread, with all inputs missing: the document is
    // parsed and the model built again from the shared bytes, which costs what the first load cost
    // less the reading of the file.
    Scorer Clone() const;

    // The model's input fields in index order, and its outputs (targets, then output fields).
    std::vector<std::string> const& InputNames() const;
    std::vector<std::string> const& OutputNames() const;
    // The index of a name, or -1.
    int InputIndex(std::string_view name) const;
    int OutputIndex(std::string_view name) const;

    // The inputs of the next case. Each answers false, changing nothing, for a name or index that is no
    // input (a row may carry fields the model does not use). Inputs keep their values from case to case.
    // A number for a text field becomes its shortest text, NaN is missing; a text for a number or date
    // field is read by the field's type, an empty one is missing and an unreadable one invalid.
    bool Set(int input, double number);
    bool Set(int input, std::string_view text);
    bool SetMissing(int input);
    bool Set(std::string_view input, double number);
    bool Set(std::string_view input, std::string_view text);
    bool SetMissing(std::string_view input);
    void SetAllMissing();

    // Scores the case. True when the model scored it without an error status; the outputs are readable
    // in either case. StatusCode gives the model's code (0 when fine, -1 when the model threw).
    bool Score();
    // Sets every input missing, then the fields given (names that are no input are ignored), and scores.
    bool Score(std::initializer_list<Field> fields);
    long StatusCode() const;

    // The outputs of the last case. A name or index that is no output throws std::out_of_range.
    // Number: a numeric output, or a text output that spells a number; otherwise the system-missing
    // number (QXCommon_920::QXMV::Missing()). Text: a text as it stands, a number in its shortest exact
    // form, "" when missing.
    double Number(int output) const;
    double Number(std::string_view output) const;
    std::string Text(int output) const;
    std::string Text(std::string_view output) const;
    bool IsMissing(int output) const;
    bool IsMissing(std::string_view output) const;

    // The model itself, for what this class does not offer; it stays with the Scorer.
    QXVantry_920::ScoreModel& Model() const;

  private:
    struct Impl;
    explicit Scorer(std::unique_ptr<Impl> impl);
    int CheckedOutput(std::string_view name) const;

    std::unique_ptr<Impl> fImpl;
};

}  // namespace vantry
