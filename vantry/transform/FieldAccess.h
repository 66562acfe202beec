// Finding a field's variable and its value for a case, shared by the derived expressions that read
// other fields (lag blocks, lookup-table inputs). Internal to the library.
#pragma once

#include <string>

namespace QXVantry_920 {

class ScoreCaseRecord;
class ScoreDictionary;
class ScoreDictVar;
class ScoreValue;
class TransformVar;

// The variable of the name in the dictionary, else in the transformations; either may be null.
ScoreDictVar const* FindVariable(std::string const& name, ScoreDictionary const* dictionary,
                                 ScoreDictionary const* transformations);

// The derived variable behind a variable, or null. Evaluation changes a derived variable's own state,
// which the dictionary that holds it lets its user do.
TransformVar* AsDerived(ScoreDictVar const* variable);

// A derived variable's value for the case, or the record's value of the field. The slot index is found
// once and kept in the caller's cache; it stays -1 while the record lacks the field.
ScoreValue const* ReadField(ScoreDictVar const* variable, int& index, ScoreCaseRecord const* record,
                            ScoreDictionary const* dictionary, ScoreDictionary const* transformations);

}  // namespace QXVantry_920
