// The table-like expressions of a derived field: "Discretize", "MapValues" with its "InlineTable",
// "NormContinuous", "NormDiscrete" and "Lag", and the recoding extensions that go with them. Each reader
// fills the derived variable and returns the name of the source field.
#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/transform/InlineTable.h"
#include "vantry/transform/MapValues.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/translate/CategoryRules.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/translate/TransformReading.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The longest history a "Lag" may keep. The history grows by one value per case scored until it holds
// n values, so a huge n would let a long run of cases use memory without bound; lags of real models
// look back days, weeks or months, far fewer cases than this.
constexpr int kMaxLagCases = 100000;

// The number of a range's end; a missing end counts as unbounded on its side.
double EndOf(ScoreValue const* value, double absent) {
    return value != nullptr ? value->GetDouble() : absent;
}

// Whether two bins share a value: equal ranges, one end of either strictly inside the other, or a
// common end point that both include.
bool Intersect(ScoreValueRange const& a, ScoreValueRange const& b) {
    double const lowA = EndOf(a.GetMin(), -kInfinity);
    double const highA = EndOf(a.GetMax(), kInfinity);
    double const lowB = EndOf(b.GetMin(), -kInfinity);
    double const highB = EndOf(b.GetMax(), kInfinity);
    return (lowA == lowB && highA == highB) || (highB > lowA && lowA > lowB) ||
           (highA > lowB && lowB > lowA) || (highB > highA && highA > lowB) ||
           (lowA == highB && b.GetHighEnd() && a.GetLowEnd()) ||
           (highA == lowB && a.GetHighEnd() && b.GetLowEnd());
}

// The bins of a "Discretize" as they are read: ranges and bin values, either may be null.
struct Bins {
    std::vector<std::unique_ptr<ScoreValueRange>> ranges;
    std::vector<std::unique_ptr<ScoreValue>> values;
};

// The recoding marks that the extensions of one "DiscretizeBin" set.
struct BinMarks {
    bool plain = true;
    bool skipInterval = false;
    bool targetSysmis = false;
    bool copy = false;
};

// A "MapValues" row's cell or extension value: a number for a numeric variable, otherwise text.
std::unique_ptr<ScoreValue> CellValue(ScoreDictVar const* variable, XMLCh const* text,
                                      std::string const& narrow) {
    if (IsNumericVariable(variable)) {
        return std::make_unique<NumericValue>(BaseTranslator::VerifyDouble(text));
    }
    return std::make_unique<StringValue>(narrow);
}

// The source field that every expression reader begins with: the forced "field" attribute, which must
// name a known field (260125 otherwise).
std::string ReadSourceField(VantryTranscoder* transcoder, DOMElement const* element,
                            ScoreDictionary const* dictionary, ScoreDictionary const* transformations,
                            ScoreDictVar const** source = nullptr) {
    std::string field = TranscodeText(transcoder, BaseTranslator::GetAttributeForced(element, "field"));
    ScoreDictVar const* found = RequireVariable(field, dictionary, transformations);
    if (source != nullptr) {
        *source = found;
    }
    return field;
}

}  // namespace

void PMMLTranslator::HandleKROMExtensions(DOMElement* extension, TransformVar* variable) {
    std::string const name = TranscodeText(fTranscoder, GetAttribute(extension, "name"));
    if (name == "recodeElseCopy") {
        if (variable->GetRecodeDefaultValue() != nullptr) {
            ThrowCodedError(260216, {"defaultValue", "recodeElseCopy"});
        }
        variable->SetRecodeElseCopy(true);
    } else if (name == "recodeMissingCopy") {
        if (variable->GetRecodeMissValueRep() != nullptr) {
            ThrowCodedError(260216, {"mapSysmisTo", "recodeMissingCopy"});
        }
        variable->SetRecodeMissingCopy(true);
    } else if (name == "mapSysmisTo") {
        if (variable->GetRecodeSysmisValueRep() != nullptr) {
            ThrowCodedError(260216, {"mapSysmisTo", "mapSysmisTo"});
        }
        variable->SetRecodeSysmisValue(
            CarefullyMakeVarValue(variable, GetAttributeForced(extension, "value")));
    } else if (name == "recodeMissingSysmis") {
        if (variable->GetVarType() != ScoreDictVar::kNUMERIC_VAR) {
            ThrowCodedError(260244, {"recodeMissingSysmis", variable->GetName()});
        }
        if (variable->GetRecodeMissValueRep() != nullptr || variable->IsRecodeMissingCopy() ||
            variable->GetRecodeSysmisValueRep() != nullptr) {
            ThrowCodedError(260216, {"mapSysmisTo, recodeMissingCopy, mapMissingTo", "recodeMissingSysmis"});
        }
        variable->SetRecodeMissValueTo(new NumericValue(NumericValue::GetSysmisValue()));
        variable->SetRecodeMissingCopy(false);
    }
}

ScoreValueRange* PMMLTranslator::HandleDiscretizeBinInterVal(DOMElement* element, int binsSoFar) {
    std::string const closure = TranscodeText(fTranscoder, GetAttributeForced(element, "closure"));
    bool lowEnd = false;
    bool highEnd = false;
    if (closure == "closedClosed") {
        lowEnd = highEnd = true;
    } else if (closure == "closedOpen") {
        lowEnd = true;
    } else if (closure == "openClosed") {
        highEnd = true;
    } else if (closure != "openOpen") {
        ThrowCodedError(260153, {closure, "closure", "Interval"});
    }
    bool const hasLeft = HasAttribute(element, "leftMargin");
    bool const hasRight = HasAttribute(element, "rightMargin");
    double const left = hasLeft ? VerifyDouble(GetAttribute(element, "leftMargin")) : -kInfinity;
    double const right = hasRight ? VerifyDouble(GetAttribute(element, "rightMargin")) : kInfinity;
    // The first two bins may be unbounded on both sides, later ones may not.
    if (binsSoFar >= 2 && !hasLeft && !hasRight) {
        ThrowCodedError(260175, {"rightMargin", "leftMargin"});
    }
    return new Range(new NumericValue(left), new NumericValue(right), lowEnd, highEnd);
}

std::string PMMLTranslator::HandleDiscritize(DOMElement* element, ScoreDictVar* variable,
                                             ScoreDictionary const* dictionary,
                                             ScoreDictionary const* transformations) {
    TransformVar* derived = AsDerivedVariable(variable);
    std::string const field = ReadSourceField(fTranscoder, element, dictionary, transformations);
    XMLCh const* mapMissingTo = GetAttribute(element, "mapMissingTo");
    if (!IsEmptyText(mapMissingTo)) {
        derived->SetRecodeMissValueTo(CarefullyMakeVarValue(variable, mapMissingTo));
    }
    XMLCh const* defaultValue = GetAttribute(element, "defaultValue");
    if (!IsEmptyText(defaultValue)) {
        derived->SetRecodeDefaultValue(CarefullyMakeVarValue(variable, defaultValue));
    }
    if (GetElementsByTagName(element, "DiscretizeBin")->getLength() == 0) {
        ThrowCodedError(260115, {"DiscretizeBin", "DerivedField"});
    }

    Bins bins;
    for (DOMNode* node = GetFirstChildElt(element); node != nullptr; node = GetNextSiblingElt(node)) {
        DOMElement* child = AsElement(node);
        int const binsSoFar = static_cast<int>(bins.values.size());
        if (HasName(node, "DiscretizeBin")) {
            XMLCh const* binText = GetAttributeForced(child, "binValue");
            std::string const binValue = TranscodeText(fTranscoder, binText);
            if (variable->GetValueLabels() != nullptr && !binValue.empty()) {
                LearnCategory(variable, std::unique_ptr<ScoreValue>(CarefullyMakeVarValue(variable, binText)),
                              binValue);
            }
            BinMarks marks;
            int intervals = 0;
            for (DOMNode* inner = GetFirstChildElt(node); inner != nullptr;
                 inner = GetNextSiblingElt(inner)) {
                DOMElement* innerElement = AsElement(inner);
                if (HasName(inner, "Interval")) {
                    if (++intervals > 1) {
                        ThrowCodedError(260272, {"Interval", "DiscretizeBin"});
                    }
                    std::unique_ptr<ScoreValueRange> range(
                        HandleDiscretizeBinInterVal(innerElement, binsSoFar));
                    if (!marks.skipInterval) {
                        bins.ranges.push_back(std::move(range));
                    }
                } else if (HasName(inner, "Extension")) {
                    marks.plain = false;
                    std::string const name = TranscodeText(fTranscoder, GetAttribute(innerElement, "name"));
                    if (name == "mapSysmisTo" || name == "recodeMissingCopy") {
                        marks.skipInterval = true;
                        HandleKROMExtensions(innerElement, derived);
                    } else if (name == "recodeTargetSysmis") {
                        marks.targetSysmis = true;
                    } else if (name == "recodeIntervalCopy" || name == "recodeElseCopy") {
                        marks.copy = true;
                    }
                } else {
                    ThrowCodedError(260178, {NameOf(inner), "Extension, Interval", "DiscretizeBin"});
                }
            }
            if (intervals == 0) {
                ThrowCodedError(260115, {"Interval", "DiscretizeBin"});
            }
            if (marks.targetSysmis) {
                bins.values.push_back(std::make_unique<NumericValue>(NumericValue::GetSysmisValue()));
            } else if (marks.copy) {
                bins.values.push_back(nullptr);
            } else if (marks.plain) {
                if (variable->GetVarType() != ScoreDictVar::kNUMERIC_VAR) {
                    bins.values.push_back(std::make_unique<StringValue>(binValue));
                } else {
                    bins.values.push_back(std::make_unique<NumericValue>(VerifyDouble(binText)));
                }
            }
        } else if (HasName(node, "Extension")) {
            std::string const name = TranscodeText(fTranscoder, GetAttribute(child, "name"));
            if (name != "recodeTargetSysmis" && name != "recodeIntervalCopy") {
                HandleKROMExtensions(child, derived);
                continue;
            }
            DOMElement* interval = AsElement(GetFirstChildElt(node));
            if (interval == nullptr) {
                ThrowCodedError(260115, {"Interval", "DiscretizeBin"});
            }
            bins.ranges.emplace_back(HandleDiscretizeBinInterVal(interval, binsSoFar));
            if (name == "recodeTargetSysmis") {
                bins.values.push_back(std::make_unique<NumericValue>(NumericValue::GetSysmisValue()));
            } else {
                bins.values.push_back(nullptr);
            }
        } else {
            ThrowCodedError(260178, {NameOf(node), "Extension, DiscretizeBin", "DiscretizeBin"});
        }
    }

    for (std::size_t i = 0; i < bins.ranges.size(); ++i) {
        for (std::size_t j = i + 1; j < bins.ranges.size(); ++j) {
            if (bins.ranges[i] != nullptr && bins.ranges[j] != nullptr &&
                Intersect(*bins.ranges[i], *bins.ranges[j])) {
                ThrowCodedError(260293, {variable->GetName()});
            }
        }
    }
    // A bin whose interval or value was dropped by its extensions leaves its partner alone.
    std::size_t const count = std::max(bins.ranges.size(), bins.values.size());
    for (std::size_t i = 0; i < count; ++i) {
        ScoreValueRange* range = i < bins.ranges.size() ? bins.ranges[i].release() : nullptr;
        ScoreValue* value = i < bins.values.size() ? bins.values[i].release() : nullptr;
        derived->AddBinningValue(range, value, field);
    }
    return field;
}

std::string PMMLTranslator::HandleMapValues(DOMElement* element, ScoreDictVar* variable,
                                            ScoreDictionary const* dictionary,
                                            ScoreDictionary const* transformations) {
    TransformVar* derived = AsDerivedVariable(variable);
    // The variable owns the table from the start, so that a refusal below frees it too.
    auto* table = new MapValues(derived);
    derived->SetMapValues(table);

    XMLCh const* mapMissingTo = GetAttribute(element, "mapMissingTo");
    if (!IsEmptyText(mapMissingTo)) {
        derived->SetRecodeMissValueTo(CarefullyMakeVarValue(variable, mapMissingTo));
        table->SetMapMissingTo(CarefullyMakeVarValue(variable, mapMissingTo));
    }
    XMLCh const* defaultValue = GetAttribute(element, "defaultValue");
    if (!IsEmptyText(defaultValue)) {
        derived->SetRecodeDefaultValue(CarefullyMakeVarValue(variable, defaultValue));
        table->SetDefaultValue(CarefullyMakeVarValue(variable, defaultValue));
    }
    std::string const outputColumn = TranscodeText(fTranscoder, GetAttributeForced(element, "outputColumn"));

    std::string field;
    ScoreDictVar const* source = nullptr;
    // "recodeTargetSysmis": the source value that stands for a system-missing result.
    auto const targetSysmis = [&](DOMElement* extension) {
        if (derived->GetVarType() != ScoreDictVar::kNUMERIC_VAR) {
            ThrowCodedError(260244, {"recodeTargetSysmis", derived->GetName()});
        }
        XMLCh const* text = GetAttribute(extension, "value");
        std::unique_ptr<ScoreValue> value =
            CellValue(source != nullptr ? source : variable, text, TranscodeText(fTranscoder, text));
        auto sysmis = std::make_unique<NumericValue>(NumericValue::GetSysmisValue());
        derived->AddEncodingMap(value.release(), sysmis.release());
    };

    for (DOMNode* node = GetFirstChildElt(element); node != nullptr; node = GetNextSiblingElt(node)) {
        DOMElement* child = AsElement(node);
        if (HasName(node, "FieldColumnPair")) {
            field = TranscodeText(fTranscoder, GetAttributeForced(child, "field"));
            source = RequireVariable(field, dictionary, transformations);
            std::string const column = TranscodeText(fTranscoder, GetAttributeForced(child, "column"));
            table->AddFieldColumnPair(column, field, source);
        } else if (HasName(node, "InlineTable")) {
            if (table->GetColumns().empty()) {
                ThrowCodedError(260122, {"FieldColumnPair", "InlineTable"});
            }
            auto inlineTable = std::make_unique<InlineTable>();
            for (DOMNode* inner = GetFirstChildElt(node); inner != nullptr && HasName(inner, "Extension");
                 inner = GetNextSiblingElt(inner)) {
                DOMElement* extension = AsElement(inner);
                if (TranscodeText(fTranscoder, GetAttribute(extension, "name")) == "recodeTargetSysmis") {
                    targetSysmis(extension);
                } else {
                    HandleKROMExtensions(extension, derived);
                }
            }
            DOMNodeList* rows = GetElementsByTagName(child, "row");
            std::map<std::string, std::string> const& columns = table->GetColumns();
            for (XMLSize_t r = 0; r < rows->getLength(); ++r) {
                std::vector<std::unique_ptr<ScoreValue>> inputs;
                std::unique_ptr<ScoreValue> output;
                for (DOMNode* cell = GetFirstChildElt(rows->item(r)); cell != nullptr;
                     cell = GetNextSiblingElt(cell)) {
                    std::string const column = TranscodeText(fTranscoder, cell->getNodeName());
                    XMLCh const* text = cell->getTextContent();
                    if (column == outputColumn) {
                        output.reset(CarefullyMakeVarValue(variable, text));
                        continue;
                    }
                    auto const pair = columns.find(column);
                    if (pair == columns.end()) {
                        throw VTException(1, column + ": not predefined!", &ScoreContext::gErrorFormater);
                    }
                    ScoreDictVar const* input = RequireVariable(pair->second, dictionary, transformations);
                    if (r == 0) {
                        inlineTable->AppendInputField(input);
                    }
                    inputs.push_back(CellValue(input, text, TranscodeText(fTranscoder, text)));
                }
                std::vector<ScoreValue*> key;
                key.reserve(inputs.size());
                for (std::unique_ptr<ScoreValue>& input : inputs) {
                    key.push_back(input.release());
                }
                inlineTable->AddInputOutput(std::move(key), output.release());
            }
            table->SetInlineTable(inlineTable.release());
        } else if (HasName(node, "Extension")) {
            if (TranscodeText(fTranscoder, GetAttribute(child, "name")) == "recodeTargetSysmis") {
                targetSysmis(child);
            } else {
                HandleKROMExtensions(child, derived);
            }
        } else if (!HasName(node, "TableLocator")) {
            ThrowCodedError(260153, {NameOf(node), "name", "MapValues"});
        }
    }
    return field;
}

std::string PMMLTranslator::HandleNormContinuous(DOMElement* element, ScoreDictVar* variable,
                                                 ScoreDictionary const* dictionary,
                                                 ScoreDictionary const* transformations) {
    TransformVar* derived = AsDerivedVariable(variable);
    if (GetElementsByTagName(element, "LinearNorm")->getLength() < 2) {
        ThrowCodedError(260176, {"LinearNorm", "DerivedField"});
    }
    ScoreDictVar const* source = nullptr;
    std::string const field = ReadSourceField(fTranscoder, element, dictionary, transformations, &source);
    if (source->GetMLevel() != ScoreDictVar::MEASURE_CONTINUOUS) {
        ThrowCodedError(260180, {"continuous", "optype", field});
    }
    std::vector<double> origins;
    std::vector<double> norms;
    for (DOMNode* node = GetFirstChildElt(element); node != nullptr; node = GetNextSiblingElt(node)) {
        DOMElement* child = AsElement(node);
        double const orig = VerifyDouble(GetAttributeForced(child, "orig"));
        double const norm = VerifyDouble(GetAttributeForced(child, "norm"));
        derived->AddLinearNorm(orig, norm);
        origins.push_back(orig);
        norms.push_back(norm);
    }
    for (std::size_t i = 0; i + 1 < origins.size(); ++i) {
        double slope = 1.0;
        double intercept = 0.0;
        if (origins[i] != origins[i + 1]) {
            double const run = origins[i + 1] - origins[i];
            slope = (norms[i + 1] - norms[i]) / run;
            intercept = (origins[i + 1] * norms[i] - origins[i] * norms[i + 1]) / run;
        }
        derived->AddNormInfo(slope, intercept);
    }
    XMLCh const* mapMissingTo = GetAttribute(element, "mapMissingTo");
    if (!IsEmptyText(mapMissingTo)) {
        derived->SetRecodeMissValueTo(CarefullyMakeVarValue(variable, mapMissingTo));
    }
    std::string const outliers = TranscodeText(fTranscoder, GetAttribute(element, "outliers"));
    if (outliers == "asIs") {
        derived->SetOutlierTreatMent(ScoreDictVar::OUTLIER_AS_IS);
    } else if (outliers == "asMissingValues") {
        derived->SetOutlierTreatMent(ScoreDictVar::OUTLIER_AS_MISSING_VALUES);
    } else if (outliers == "asExtremeValues") {
        derived->SetOutlierTreatMent(ScoreDictVar::OUTLIER_AS_EXTREME_VALUES);
    }
    return field;
}

std::string PMMLTranslator::HandleNormDiscrete(DOMElement* element, ScoreDictVar* variable,
                                               ScoreDictionary const* dictionary,
                                               ScoreDictionary const* transformations) {
    TransformVar* derived = AsDerivedVariable(variable);
    ScoreDictVar const* source = nullptr;
    std::string const field = ReadSourceField(fTranscoder, element, dictionary, transformations, &source);
    if (source->GetMLevel() == ScoreDictVar::MEASURE_CONTINUOUS) {
        ThrowCodedError(260214, {"continuous", "optype", field, "NormDiscrete", "name", variable->GetName()});
    }
    XMLCh const* valueText = GetAttributeForced(element, "value");
    if (!IsEmptyText(valueText)) {
        std::string const text = TranscodeText(fTranscoder, valueText);
        double constant = 0.0;
        if (source->IsEmptyCateValues()) {
            // A source without categories learns this one, as the reader of the data dictionary would.
            std::unique_ptr<ScoreValue> value(CarefullyMakeVarValue(source, valueText));
            if (value != nullptr) {
                LearnCategory(const_cast<ScoreDictVar*>(source), std::move(value), text);
                constant = 1.0;
            }
        } else {
            std::unique_ptr<ScoreValue> const value(source->ToMyValue(text));
            constant = source->IsValidValue(value.get()) ? 1.0 : 0.0;
        }
        derived->SetRecodeDefaultValue(new NumericValue(constant));
        derived->SetRecodeElseCopy(false);
    }
    XMLCh const* mapMissingTo = GetAttribute(element, "mapMissingTo");
    if (!IsEmptyText(mapMissingTo)) {
        derived->SetRecodeMissValueTo(CarefullyMakeVarValue(variable, mapMissingTo));
        derived->SetRecodeMissingCopy(false);
    }
    return field;
}

std::string PMMLTranslator::HandleLag(DOMElement* element, ScoreDictVar* variable,
                                      ScoreDictionary const* dictionary,
                                      ScoreDictionary const* transformations) {
    TransformVar* derived = AsDerivedVariable(variable);
    std::string const field = ReadSourceField(fTranscoder, element, dictionary, transformations);
    int count = 1;
    XMLCh const* countText = GetAttribute(element, "n");
    if (!IsEmptyText(countText)) {
        count = VerifyInt(countText);
        if (count < 1) {
            ThrowCodedError(260151, {TranscodeText(fTranscoder, countText), "positiveInteger"});
        }
        if (count > kMaxLagCases) {
            // A valid number that this attribute cannot take, as for a text width beyond its limit.
            ThrowCodedError(260153, {TranscodeText(fTranscoder, countText), "n", "Lag"});
        }
    }
    std::vector<ScoreDictVar const*> blocks;
    for (DOMNode* node = GetFirstChildElt(element); node != nullptr; node = GetNextSiblingElt(node)) {
        std::string const block = TranscodeText(fTranscoder, GetAttributeForced(AsElement(node), "field"));
        blocks.push_back(RequireVariable(block, dictionary, transformations));
    }
    derived->SetLags(count, blocks);
    return field;
}

}  // namespace QXVantry_920
