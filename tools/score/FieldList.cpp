#include "tools/score/FieldList.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <ostream>

#include "tools/score/Csv.h"
#include "tools/score/RowScorer.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/translate/DateTimeTypeNames.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace vantry_tool {

using QXVantry_920::ScoreDictVar;
using QXVantry_920::ScoreValueRange;

namespace {

std::string TypeName(ScoreDictVar const& variable) {
    switch (variable.GetVarType()) {
        case ScoreDictVar::STRING_VAR:
            return "string";
        case ScoreDictVar::DATETIME_VAR: {
            char const* name = QXVantry_920::DateTimeTypeName(variable.GetDateTimeType());
            return name != nullptr ? name : "dateTime";
        }
        default:
            break;
    }
    switch (variable.GetNumericDataType()) {
        case ScoreDictVar::NUMERIC_TYPE_INTEGER:
            return "integer";
        case ScoreDictVar::NUMERIC_TYPE_DOUBLE:
            return "double";
        default:
            return "number";
    }
}

char const* MeasureName(ScoreDictVar::MeasureLevel level) {
    switch (level) {
        case ScoreDictVar::MEASURE_ORDINAL:
            return "ordinal";
        case ScoreDictVar::MEASURE_NOMINAL:
            return "nominal";
        default:
            return "continuous";
    }
}

// A margin as the document wrote it: the reader widens a closed margin by a relative 1e-15, which fourteen
// digits drop again.
double Margin(double stored) {
    char text[40];
    std::snprintf(text, sizeof(text), "%.14g", stored);
    return std::strtod(text, nullptr);
}

std::string MarginText(double margin) {
    if (std::isinf(margin)) {
        return margin < 0 ? "-inf" : "inf";
    }
    char text[40];
    std::snprintf(text, sizeof(text), "%.14g", margin);
    return text;
}

// The valid interval is kept as the missing ranges around it; each margin is closed when its range
// leaves the margin itself out.
std::string IntervalText(std::vector<ScoreValueRange const*> const& ranges) {
    double low = -INFINITY;
    double high = INFINITY;
    bool lowClosed = false;
    bool highClosed = false;
    bool bounded = false;
    for (ScoreValueRange const* range : ranges) {
        double const min = range->GetMin() != nullptr ? range->GetMin()->GetDouble() : 0;
        double const max = range->GetMax() != nullptr ? range->GetMax()->GetDouble() : 0;
        if (min == -INFINITY && std::isfinite(max)) {
            low = Margin(max);
            lowClosed = !range->IsInRange(low);
            bounded = true;
        } else if (max == INFINITY && std::isfinite(min)) {
            high = Margin(min);
            highClosed = !range->IsInRange(high);
            bounded = true;
        }
    }
    if (!bounded) {
        return std::string();
    }
    return (lowClosed ? "[" : "(") + MarginText(low) + ", " + MarginText(high) + (highClosed ? "]" : ")");
}

std::string JoinCells(std::vector<std::string> const& texts) {
    std::string joined;
    for (std::string const& text : texts) {
        if (!joined.empty()) {
            joined += ", ";
        }
        AppendCsvField(joined, text);
    }
    return joined;
}

}  // namespace

FieldFacts DescribeField(ScoreDictVar const& variable) {
    FieldFacts facts{variable.GetName(), TypeName(variable), MeasureName(variable.GetMLevel()), {}, {}, {}};
    if (QXVantry_920::ScoreValueLabelSet const* labels = variable.GetValueLabels()) {
        for (QXVantry_920::ScoreValueLabel const* label : labels->GetAllValueLabels()) {
            facts.values.push_back(CellText(label->GetValue()));
        }
    }
    if (QXVantry_920::ScoreMissingValueSet const* missing = variable.GetMissingValues()) {
        std::vector<ScoreValueRange const*> const ranges = missing->GetMissingValues();
        facts.interval = IntervalText(ranges);
        for (ScoreValueRange const* range : ranges) {
            QXVantry_920::ScoreValue const* min = range->GetMin();
            QXVantry_920::ScoreValue const* max = range->GetMax();
            if (min != nullptr && max != nullptr && std::isfinite(min->GetDouble()) &&
                min->GetDouble() == max->GetDouble()) {
                facts.excluded.push_back(CellText(min));
            }
        }
    }
    return facts;
}

std::vector<std::string> InputFieldNames(QXVantry_920::ScoreModel const& model) {
    std::unique_ptr<QXVantry_920::ScoreCaseRecord> record(model.MakeCaseRecord());
    std::vector<std::string> names;
    ScoreDictVar const* target = model.GetTargetVar();
    for (std::string const& name : record != nullptr ? record->GetVarNames(true) : names) {
        // The record has a slot for the target too, which scoring does not read.
        if ((target == nullptr || name != target->GetName()) &&
            model.GetVarRole(name) != QXVantry_920::ScoreModel::kTARGET_ROLE) {
            names.push_back(name);
        }
    }
    return names;
}

void PrintFields(QXVantry_920::ScoreModel const& model, std::ostream& out) {
    QXVantry_920::ScoreDictionary const* dictionary = model.GetDictionary();
    for (std::string const& name : InputFieldNames(model)) {
        ScoreDictVar const* variable = dictionary != nullptr ? dictionary->GetVar(name) : nullptr;
        if (variable == nullptr) {
            out << name << "\tnumber\tcontinuous\n";
            continue;
        }
        FieldFacts const facts = DescribeField(*variable);
        out << facts.name << '\t' << facts.type << '\t' << facts.measure;
        if (!facts.values.empty()) {
            out << "\tvalues " << JoinCells(facts.values);
        }
        if (!facts.interval.empty()) {
            out << "\tinterval " << facts.interval;
        }
        if (!facts.excluded.empty()) {
            out << "\tmissing or invalid " << JoinCells(facts.excluded);
        }
        out << '\n';
    }
}

}  // namespace vantry_tool
