// Rules on the categories of a variable that several readers share: the encoder built from them, the
// checks of a finished label list, a category entered into a split, and replacing an owned part of a
// variable. Internal to the library.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"

namespace QXVantry_920 {

class DiscreteSplit;
class ScoreMissingValueSet;
class ScoreValue;
class ScoreValueLabel;
class ScoreValueRange;

// The measure level of a PMML optype: "continuous", "categorical" or "ordinal"; false for another text.
bool LevelOfOptype(std::string const& optype, ScoreDictVar::MeasureLevel& level);

// The categories of a variable that must have some: 260126 with its name when it has no value labels.
std::vector<ScoreValueLabel*> const& RequiredLabels(ScoreDictVar const* variable);

// Adds a range to a missing-value set; a range equal to one the set holds already is dropped.
void AddMissingRange(ScoreMissingValueSet* set, std::unique_ptr<ScoreValueRange> range);

// Gives an ordinal or nominal variable a category encoder, if it has none, and adds its categories to
// it in declaration order: a string encoder (with the variable's text flags) for a variable of any type
// but numeric, a numeric encoder for a numeric one. False for a null variable or another level.
bool SetupCategoryEncoder(ScoreDictVar* variable);

// Checks the categories of a variable against each other: a category that the variable takes for
// missing fails 260294; two equal categories fail 260203. String categories are compared with the
// variable's text flags, and only when `compareStrings` is set; others by the value's equality.
void CheckCategoryLabels(ScoreDictVar const* variable, bool compareStrings);

// Enters category `index` of the variable into the split for child 0: as the encoder's code or as the
// number when the variable has an encoder, otherwise as a value of its own.
void EnterCategory(ScoreDictVar const* variable, DiscreteSplit* split, int index);

// Adds a category to a variable through AddScoreValueLabel and settles who owns the value whatever the
// answer: the variable, or nobody when it was refused.
bool LearnCategory(ScoreDictVar* variable, std::unique_ptr<ScoreValue> value, std::string const& label);

// A variable's setters of owned parts take the new part over and hand the old one back without
// deleting it; these store the new part and delete the one it replaces.
template <class Part, class Getter, class Setter>
void ReplacePart(std::unique_ptr<Part> part, Getter get, Setter set) {
    Part const* old = get();
    Part* fresh = part.get();
    set(part.release());
    if (old != fresh) {
        delete old;
    }
}

// Adds the variable to the dictionary under the name. The dictionary takes it over unless the name is
// taken already, and then it stays with the caller.
template <class Variable>
void AddToDictionary(ScoreDictionary* dictionary, std::string const& name,
                     std::unique_ptr<Variable>& variable) {
    dictionary->AddVar(name, variable.get());
    if (dictionary->GetVar(name) == variable.get()) {
        variable.release();
    }
}

// Gives a variable the type of a PMML "dataType": "string" text, "integer" and "double" numbers of that
// kind, a date type (given as its number, 0 for none) a date; any other text leaves a plain number.
void SetTypeOfDataType(ScoreDictVar* variable, std::string const& dataType,
                       ScoreDictVar::DateTimeType dateType);

// Whether the variable's numbers are numeric values (and not text or dates).
bool IsNumericVariable(ScoreDictVar const* variable);

// The variable's name, or the empty string for null.
std::string NameOfVariable(ScoreDictVar const* variable);

}  // namespace QXVantry_920
