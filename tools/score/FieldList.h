// What a model's fields accept, in words: the scoring command's --fields list, and the field facts that
// the inspection command prints.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace QXVantry_920 {
class ScoreDictVar;
class ScoreModel;
}  // namespace QXVantry_920

namespace vantry_tool {

struct FieldFacts {
    std::string name;
    // "string", "integer", "double", "number", or a date or time type ("date", "dateDaysSince[1970]").
    std::string type;
    // "continuous", "ordinal" or "nominal".
    std::string measure;
    // The declared values, as input cells spell them.
    std::vector<std::string> values;
    // The valid interval, "[0, 120]", "(0, inf)"; empty when there is none.
    std::string interval;
    // Single values that count as missing or invalid.
    std::vector<std::string> excluded;
};

FieldFacts DescribeField(QXVantry_920::ScoreDictVar const& variable);

// The fields the model reads from each case, in the order of its case record; targets left out.
std::vector<std::string> InputFieldNames(QXVantry_920::ScoreModel const& model);

// One line per input field: name, type, measurement level, then what it allows.
void PrintFields(QXVantry_920::ScoreModel const& model, std::ostream& out);

}  // namespace vantry_tool
