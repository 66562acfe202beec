// The rows of an "InlineTable" of a "MapValues" expression: a key of input values per row and the
// row's output, with the input fields in the order of the first row's cells.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {

class ScoreCaseRecord;
class ScoreDictionary;
class ScoreDictVar;
class ScoreValue;

class VANTRY_EXPORT InlineTable {
  public:
    // The outcome of the last lookup.
    static const std::int32_t OK;            // 0
    static const std::int32_t InputMissing;  // 1
    static const std::int32_t NoMatches;     // 2

    // Keys compare element by element over the left key's length; numbers and strings by their own
    // operators, date-time elements are passed over.
    struct KeyLess {
        bool operator()(std::vector<ScoreValue*> const& left, std::vector<ScoreValue*> const& right) const;
    };
    using Rows = std::map<std::vector<ScoreValue*>, ScoreValue*, KeyLess>;

    InlineTable();
    // Deep copies: each row's values are cloned, so that a copy and its source are deleted apart.
    InlineTable(InlineTable const& other);
    InlineTable& operator=(InlineTable const& other);
    // Deletes every row's output and inputs.
    ~InlineTable();

    void AppendInputField(ScoreDictVar const* variable);
    // Takes the values over; a key that exists already leaves the table unchanged (and the new values
    // are deleted).
    void AddInputOutput(std::vector<ScoreValue*> inputs, ScoreValue* output);
    std::int32_t GetInfoCode() const;
    // The row's output for the case, or null (info code InputMissing or NoMatches). The map is not read.
    ScoreValue* getValue(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                         ScoreDictionary const* transformations,
                         std::map<std::string, std::string> const& columns);
    void GetInputValuesFromRecord(ScoreCaseRecord const* record, std::vector<ScoreValue*>& inputs,
                                  ScoreDictionary const* dictionary, ScoreDictionary const* transformations);

    std::vector<ScoreDictVar const*> const& GetInputFields() const { return fInputFields; }
    Rows const& GetRows() const { return fRows; }

  private:
    std::vector<ScoreDictVar const*> fInputFields;
    Rows fRows;
    std::int32_t fInfoCode;
    // Scratch of the lookup key, kept so that a lookup allocates nothing after the first case.
    std::vector<ScoreValue*> fKey;
    // The input fields' names, their variables as bound to the dictionaries of the first lookup (a copy
    // binds to its own), and their record slots; -1 until found.
    std::vector<std::string> fInputNames;
    std::vector<ScoreDictVar const*> fBound;
    std::vector<int> fInputIndexes;
};

}  // namespace QXVantry_920
