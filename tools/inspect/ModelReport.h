// Everything the inspection command tells about a model, gathered once and written either as readable
// text or as one JSON document.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/inspect/DocumentOutline.h"
#include "tools/score/FieldList.h"

namespace QXVantry_920 {
class ScoreModel;
}

namespace vantry_tool {

struct DerivedFacts {
    FieldFacts field;
    std::string expression;
};

struct ModelReport {
    std::string family;
    // The model's own description of itself.
    std::string description;
    std::vector<FieldFacts> dictionary;
    std::vector<DerivedFacts> derived;
    DocumentOutline outline;
};

ModelReport CollectReport(QXVantry_920::ScoreModel const& model, DocumentOutline outline);

void WriteText(ModelReport const& report, std::ostream& out);

void WriteJson(ModelReport const& report, std::ostream& out);

}  // namespace vantry_tool
