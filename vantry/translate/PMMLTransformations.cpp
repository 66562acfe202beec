// The "TransformationDictionary": each "DerivedField" with its type, labels, missing values and one
// expression, and the readers of the simple expressions "FieldRef" and "Constant".
#include <memory>
#include <string>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/translate/CategoryRules.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/translate/TransformReading.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

using TD = TransformationDictionary;

namespace {

// The expressions of a derived field, in the order in which a tag is tested.
char const* const kExpressionTags[] = {"Apply",    "Aggregate",      "Discretize",   "MapValues", "FieldRef",
                                       "Constant", "NormContinuous", "NormDiscrete", "Lag"};

bool IsExpressionTag(DOMNode const* node) {
    for (char const* tag : kExpressionTags) {
        if (HasName(node, tag)) {
            return true;
        }
    }
    return false;
}

// The variable's own missing-value set replaced by a new one, the old one deleted.
void ReplaceMissingValues(ScoreDictVar* variable, std::unique_ptr<ScoreMissingValueSet> set) {
    ReplacePart(
        std::move(set), [variable] { return variable->GetMissingValues(); },
        [variable](ScoreMissingValueSet* fresh) { variable->SetMissingValues(fresh); });
}

}  // namespace

TransformationDictionary* PMMLTranslator::HandleTransformationDictionary(DOMElement* element,
                                                                         ScoreDictionary const* dictionary) {
    fNodeCounter = 0;
    InitFunctionMap();
    if (fTranscoder == nullptr) {
        CreateTranscoder(fEncoding);
    }
    DOMNodeList* fields = GetElementsByTagName(element, "DerivedField");
    if (fields->getLength() == 0) {
        return nullptr;
    }

    auto transformations = std::make_unique<TransformationDictionary>();
    for (XMLSize_t i = 0; i < fields->getLength(); ++i) {
        DOMElement* field = AsElement(fields->item(i));
        XMLCh const* nameText = GetAttributeForced(field, "name");
        std::string const name = TranscodeText(fTranscoder, nameText);
        if (name.empty()) {
            ThrowCodedError(260285, {"name", "DerivedField"});
        }
        // A derived field may not shadow a data field nor one above it; both say "DataDictionary".
        if (FindVariable(name, dictionary, transformations.get()) != nullptr) {
            ThrowCodedError(260202, {name, "DataDictionary"});
        }
        auto variable = std::make_unique<TransformVar>(name, ScoreDictVar::kNUMERIC_VAR);

        XMLCh const* displayName = GetAttribute(field, "displayName");
        variable->SetLabel(IsEmptyText(displayName) ? name : TranscodeText(fTranscoder, displayName));

        std::string const optype = TranscodeText(fTranscoder, GetAttribute(field, "optype"));
        if (optype.empty()) {
            ThrowCodedError(260285, {"optype", "DerivedField"});
        }
        ScoreDictVar::MeasureLevel level = ScoreDictVar::MEASURE_CONTINUOUS;
        if (!LevelOfOptype(optype, level)) {
            ThrowCodedError(260152, {optype, "optype"});
        }
        variable->SetMLevel(level);

        XMLCh const* dataTypeText = GetAttributeForced(field, "dataType");
        SetTypeOfDataType(variable.get(), TranscodeText(fTranscoder, dataTypeText),
                          ParseDateTimeType(dataTypeText));
        if (variable->IsString() && level == ScoreDictVar::MEASURE_CONTINUOUS) {
            ThrowCodedError(260211, {"continuous", "optype", "string", "dataType"});
        }

        bool expressionSeen = false;
        bool valueListSeen = false;
        for (DOMNode* node = GetFirstChildElt(field); node != nullptr; node = GetNextSiblingElt(node)) {
            DOMElement* child = AsElement(node);
            TransformVar* derived = variable.get();
            if (HasName(node, "Extension")) {
                std::string const extension = TranscodeText(fTranscoder, GetAttribute(child, "name"));
                if (extension == "MissingValues") {
                    handleDerivedVarMissingValue(child, derived);
                } else if (extension == "width" || extension == "stringLength") {
                    int const width =
                        CheckTextWidth(VerifyInt(GetAttributeForced(child, "value")), extension);
                    if (width > 0) {
                        derived->SetWidth(width);
                    }
                } else {
                    ParseUsageTypeExtension(child, derived);
                }
            } else if (HasName(node, "Value")) {
                if (valueListSeen) {
                    continue;
                }
                HandleValueList(field, derived);
                if (ScoreValueLabelSet const* labels = derived->GetValueLabels()) {
                    for (ScoreValueLabel const* label : labels->GetAllValueLabels()) {
                        if (derived->IsMissingValue(label->GetValue())) {
                            ScoreValue const* value = label->GetValue();
                            ThrowCodedError(
                                260294,
                                {value != nullptr ? ScoreValue::TextOf(*value) : std::string(), name});
                        }
                    }
                }
                valueListSeen = true;
            } else if (!expressionSeen && IsExpressionTag(node)) {
                if (HasName(node, "Apply")) {
                    derived->AddFieldNameAndTransExpression(std::string(), TD::TE_APPLY);
                    derived->SetRoot(HandleApply(child, derived, nullptr, dictionary, transformations.get()));
                } else if (HasName(node, "Aggregate")) {
                    ThrowCodedError(260303, {"Aggregate", "name"});
                } else if (HasName(node, "Discretize")) {
                    std::string const source =
                        HandleDiscritize(child, derived, dictionary, transformations.get());
                    derived->AddFieldNameAndTransExpression(source, TD::TE_DISCRETIZE);
                } else if (HasName(node, "MapValues")) {
                    std::string const source =
                        HandleMapValues(child, derived, dictionary, transformations.get());
                    derived->AddFieldNameAndTransExpression(source, TD::TE_MAP_VALUES);
                } else if (HasName(node, "FieldRef")) {
                    std::string const source =
                        HandleFieldRef(child, dictionary, transformations.get(), derived);
                    derived->AddFieldNameAndTransExpression(source, TD::TE_FIELD_REF);
                } else if (HasName(node, "Constant")) {
                    derived->AddFieldNameAndTransExpression(std::string(), TD::TE_CONSTANT);
                    double number = 0.0;
                    int type = 0;
                    derived->SetConstString(HandelConstant(child, number, type));
                } else if (HasName(node, "NormContinuous")) {
                    std::string const source =
                        HandleNormContinuous(child, derived, dictionary, transformations.get());
                    derived->AddFieldNameAndTransExpression(source, TD::TE_NORM_CONTINUOUS);
                } else if (HasName(node, "NormDiscrete")) {
                    std::string const source =
                        HandleNormDiscrete(child, derived, dictionary, transformations.get());
                    derived->AddFieldNameAndTransExpression(source, TD::TE_NORM_DISCRETE);
                } else {
                    std::string const source = HandleLag(child, derived, dictionary, transformations.get());
                    derived->AddFieldNameAndTransExpression(source, TD::TE_LAG);
                }
                expressionSeen = true;
            } else if (expressionSeen) {
                ThrowCodedError(260274, {"DerivedField"});
            } else if (!valueListSeen) {
                ThrowCodedError(260152, {NameOf(node), "name"});
            }
        }
        AddToDictionary(transformations.get(), name, variable);
        transformations->AddDerievedVarName(name);
    }
    return transformations.release();
}

void PMMLTranslator::handleDerivedVarMissingValue(DOMElement* extension, TransformVar* variable) {
    auto set = std::make_unique<MissingValueSet>();
    int intervalCode = 0;
    double lower = -NumericValue::GetInfinity();
    double upper = NumericValue::GetInfinity();
    for (DOMNode* node = GetFirstChildElt(extension); node != nullptr; node = GetNextSiblingElt(node)) {
        DOMElement* child = AsElement(node);
        if (HasName(node, "Value")) {
            std::unique_ptr<ScoreValue> value(
                CarefullyMakeVarValue(variable, GetAttributeForced(child, "value")));
            AddMissingRange(set.get(), std::make_unique<Range>(value.release()));
        } else if (HasName(node, "Interval")) {
            if (variable->GetVarType() != ScoreDictVar::kNUMERIC_VAR) {
                ThrowCodedError(260216, {"Interval", "categorical,ordinal"});
            }
            handleInterval(variable, child, set.get(), 1);
        } else if (HasName(node, "Extension")) {
            std::string const name = TranscodeText(fTranscoder, GetAttribute(child, "name"));
            if (name == "invalidRangeLower") {
                intervalCode += 1;
                lower = VerifyDouble(GetAttribute(child, "value"));
            } else if (name == "invalidRangeUpper") {
                intervalCode += 10;
                upper = VerifyDouble(GetAttribute(child, "value"));
            }
        }
    }
    if (intervalCode != 0) {
        HandleKROMMissingInterval(set.get(), intervalCode, lower, upper);
    }
    ReplaceMissingValues(variable, std::unique_ptr<ScoreMissingValueSet>(std::move(set)));
}

void PMMLTranslator::HandleValueList(DOMElement* element, TransformVar* variable) {
    auto labels = std::make_unique<ValueLabelSet>();
    bool const numeric = variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR;
    for (DOMNode* node = GetFirstChildElt(element); node != nullptr; node = GetNextSiblingElt(node)) {
        if (!HasName(node, "Value")) {
            continue;
        }
        DOMElement* child = AsElement(node);
        std::string const property = TranscodeText(fTranscoder, GetAttributeForced(child, "property"));
        XMLCh const* text = GetAttributeForced(child, "value");
        if (property != "valid") {
            ThrowCodedError(260153, {property, "property", "Value"});
        }
        if (numeric) {
            VerifyDouble(text);
        }
        std::unique_ptr<ScoreValue> value(CarefullyMakeVarValue(variable, text));
        std::string const label = TranscodeText(fTranscoder, GetAttribute(child, "displayValue"));
        labels->Add(new ValueLbl(value.release(), label));
    }
    ReplacePart(
        std::unique_ptr<ScoreValueLabelSet>(std::move(labels)),
        [variable] { return variable->GetValueLabels(); },
        [variable](ScoreValueLabelSet* fresh) { variable->SetValueLabels(fresh); });
}

std::string PMMLTranslator::HandleFieldRef(DOMElement* element, ScoreDictionary const* dictionary,
                                           ScoreDictionary const* transformations, TransformVar* variable) {
    std::string const field = TranscodeText(fTranscoder, GetAttributeForced(element, "field"));
    ScoreDictVar const* source = RequireVariable(field, dictionary, transformations);
    if (variable == nullptr) {
        return field;
    }
    if (source->GetVarType() != variable->GetVarType()) {
        ThrowCodedError(260215, {field, variable->GetName()});
    }
    XMLCh const* mapMissingTo = GetAttribute(element, "mapMissingTo");
    if (!IsEmptyText(mapMissingTo)) {
        variable->SetRecodeMissValueTo(CarefullyMakeVarValue(variable, mapMissingTo));
        variable->SetRecodeMissingCopy(false);
    }
    return field;
}

ScoreValue* PMMLTranslator::HandelConstant(DOMElement* element) {
    XMLCh const* dataTypeText = GetAttribute(element, "dataType");
    XMLCh const* content = FirstChildText(element);
    if (content == nullptr) {
        ThrowCodedError(260114, {"Constant"});
    }
    std::string const text = TranscodeText(fTranscoder, content);
    if (IsEqual(fTranscoder, dataTypeText, "string")) {
        auto value = std::make_unique<StringValue>(text);
        value->SetLength(static_cast<int>(text.size()));
        return value.release();
    }
    if (ScoreDictVar::DateTimeType const dateType = ParseDateTimeType(dataTypeText)) {
        // The number goes out in the type's own scale and back, so that it is held as a plain number of
        // the date-time kind.
        DateTimeValue dated(VerifyDouble(content), dateType);
        NumericValue const number(dated.GetNumericString());
        return new DateTimeValue(number.GetDouble(), DateTimeValue::DATETIME_VAL);
    }
    return new NumericValue(VerifyDouble(content));
}

std::string PMMLTranslator::HandelConstant(DOMElement* element, double& number, int& type) {
    number = NumericValue::GetSysmisValue();
    XMLCh const* content = FirstChildText(element);
    if (content == nullptr) {
        ThrowCodedError(260114, {"Constant"});
    }
    std::string text = TranscodeText(fTranscoder, content);
    XMLCh const* dataTypeText = GetAttribute(element, "dataType");
    if (IsEqual(fTranscoder, dataTypeText, "string")) {
        type = 1;
    } else if (ScoreDictVar::DateTimeType const dateType = ParseDateTimeType(dataTypeText)) {
        number = VerifyDouble(content);
        text = DateTimeValue(number, dateType).GetNumericString();
        type = 5;
    } else {
        number = VerifyDouble(content);
        type = 0;
    }
    return text;
}

ScoreValue* PMMLTranslator::HandelConstantDefaultStringType(DOMElement* element) {
    XMLCh const* dataTypeText = GetAttribute(element, "dataType");
    if (!IsEmptyText(dataTypeText) && !IsEqual(fTranscoder, dataTypeText, "string")) {
        ThrowCodedError(260153, {TranscodeText(fTranscoder, dataTypeText), "dataType", "Constant"});
    }
    XMLCh const* content = FirstChildText(element);
    if (content == nullptr) {
        ThrowCodedError(260114, {"Constant"});
    }
    return new StringValue(TranscodeText(fTranscoder, content));
}

}  // namespace QXVantry_920
