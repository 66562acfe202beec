// The table of a "MapValues" expression: its field-column pairs, input variables, inline table and its
// own copies of "mapMissingTo" and "defaultValue". Owned by its TransformVar.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {

class InlineTable;
class ScoreCaseRecord;
class ScoreDictionary;
class ScoreDictVar;
class ScoreValue;
class TransformVar;

class VANTRY_EXPORT MapValues {
  public:
    explicit MapValues(TransformVar* owner);
    MapValues(MapValues const&) = delete;
    MapValues& operator=(MapValues const&) = delete;
    ~MapValues();

    // A deep copy for another owner.
    MapValues* Clone(TransformVar* owner) const;

    void AddFieldColumnPair(std::string const& column, std::string const& field,
                            ScoreDictVar const* variable);
    // Takes the table over, deleting one set before.
    void SetInlineTable(InlineTable* table);
    InlineTable* GetInlineTable() const;
    void SetMapMissingTo(ScoreValue* value);
    void SetDefaultValue(ScoreValue* value);
    std::map<std::string, std::string> const& GetColumns() const;
    std::vector<ScoreDictVar const*> const& GetInputVariables() const;

    // The mapped value for the case, or null.
    ScoreValue const* Lookup(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                             ScoreDictionary const* transformations);

  private:
    std::map<std::string, std::string> fColumns;
    std::vector<ScoreDictVar const*> fInputVariables;
    std::unique_ptr<InlineTable> fInlineTable;
    TransformVar* fOwner;
    std::unique_ptr<ScoreValue> fMapMissingTo;
    std::unique_ptr<ScoreValue> fDefaultValue;
    // The input fields' names in pair order, bound to the dictionaries of the first lookup, and the
    // record slot of a single input found by name.
    std::vector<std::string> fInputNames;
    bool fBound;
    int fInputIndex;
};

}  // namespace QXVantry_920
