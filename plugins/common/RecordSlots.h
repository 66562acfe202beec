// Writing a value into a slot of a case record in place: the value object of the slot is kept when its
// kind fits, and replaced only when it does not, so that a case of numbers allocates nothing.
#pragma once

#include <string>

#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class ScoreValue;

void PutNumber(CaseRecord& record, int index, std::string const& name, double number);
void PutText(CaseRecord& record, int index, std::string const& name, std::string const& text);
// A copy of the value; a null value stores the missing value of the type.
void PutValue(CaseRecord& record, int index, std::string const& name, ScoreValue const* value,
              ScoreDictVar::VariableType type);
// The missing value of a type: the system-missing number, or the empty text.
void PutMissing(CaseRecord& record, int index, std::string const& name, ScoreDictVar::VariableType type);
// Whether a value is missing for a variable: no value, one of its missing values, the system-missing
// number, or a blank text that is not one of a text variable's categories.
bool IsMissingFor(ScoreDictVar const& variable, ScoreValue const* value);
// A new missing value of a type.
ScoreValue* NewMissing(ScoreDictVar::VariableType type);

}  // namespace QXVantry_920
