// The outputs of a model ("ResultField" elements) and its "Targets": prior probabilities, categories and
// default values of the target variables.
#include <memory>
#include <string>

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ResultVar.h"
#include "vantry/translate/CategoryRules.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"
#include "vantry/values/ValueProbability.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

DOMNodeList* ResultFieldsOf(DOMNode* node) {
    if (node != nullptr && node->getNodeType() == DOMNode::DOCUMENT_NODE) {
        return BaseTranslator::GetElementsByTagName(static_cast<DOMDocument const*>(node), "ResultField");
    }
    return BaseTranslator::GetElementsByTagName(AsElement(node), "ResultField");
}

}  // namespace

ScoreDictionary* PMMLTranslator::ParseResultDictionary(DOMNode* node) {
    DOMNodeList* fields = ResultFieldsOf(node);
    if (fields->getLength() == 0) {
        return nullptr;
    }
    auto dictionary = std::make_unique<BaseDictionary>();
    for (XMLSize_t i = 0; i < fields->getLength(); ++i) {
        DOMElement const* field = AsElement(fields->item(i));
        XMLCh const* nameText = GetAttributeForced(field, "name");
        if (IsEmptyText(nameText)) {
            ThrowCodedError(260285, {"name", "ResultField"});
        }
        std::string const name = TranscodeText(fTranscoder, nameText);
        // A repeated name leaves the first variable in the dictionary; the new one is filled all the
        // same and then dropped.
        auto owned = std::make_unique<ResultVar>(name, ScoreDictVar::kNUMERIC_VAR);
        ResultVar* variable = owned.get();
        AddToDictionary(dictionary.get(), name, owned);

        XMLCh const* displayName = GetAttribute(field, "displayName");
        variable->SetLabel(TranscodeText(fTranscoder, IsEmptyText(displayName) ? nameText : displayName));

        XMLCh const* optypeText = GetAttribute(field, "optype");
        if (!IsEmptyText(optypeText)) {
            std::string const optype = TranscodeText(fTranscoder, optypeText);
            ScoreDictVar::MeasureLevel level = ScoreDictVar::MEASURE_CONTINUOUS;
            if (!LevelOfOptype(optype, level)) {
                ThrowCodedError(260152, {optype, "optype"});
            }
            variable->SetMLevel(level);
        }
        if (IsEqual(fTranscoder, GetAttribute(field, "dataType"), "string")) {
            variable->SetVarType(ScoreDictVar::STRING_VAR);
        }

        std::string const featureText = TranscodeText(fTranscoder, GetAttributeForced(field, "feature"));
        ScoreResultField::ResultFeature feature{};
        if (!ResultVar::FeatureFromText(featureText, feature)) {
            ThrowCodedError(260153, {featureText, "feature", "ResultField"});
        }
        variable->SetFeature(feature);

        XMLCh const* value = GetAttribute(field, "value");
        if (!IsEmptyText(value)) {
            ReplacePart<ScoreValue>(
                std::make_unique<StringValue>(TranscodeText(fTranscoder, value)),
                [variable] { return variable->GetDefValue(); },
                [variable](ScoreValue* fresh) { variable->SetDefValue(fresh); });
        }
    }
    return dictionary.release();
}

bool PMMLTranslator::HandleTargets(DOMElement* targets, ScoreDictionary* dictionary) {
    if (targets == nullptr) {
        return true;
    }
    try {
        for (DOMNode* child = GetFirstChildElt(targets); child != nullptr; child = GetNextSiblingElt(child)) {
            if (HasName(child, "Target")) {
                HandleTarget(AsElement(child), dictionary);
            }
        }
    } catch (VTException const&) {
        // The targets only refine the dictionary: a bad one is reported as false, and what was
        // applied before it stays.
        return false;
    }
    return true;
}

void PMMLTranslator::HandleTarget(DOMElement* target, ScoreDictionary* dictionary) {
    XMLCh const* fieldText = GetAttributeForced(target, "field");
    if (IsEmptyText(fieldText)) {
        ThrowCodedError(260285, {"field", "Target"});
    }
    std::string const field = TranscodeText(fTranscoder, fieldText);
    ScoreDictVar* variable = dictionary != nullptr ? dictionary->GetVar(field) : nullptr;
    if (variable == nullptr) {
        ThrowCodedError(260124, {field, "DataDictionary"});
    }
    std::string const optype = TranscodeText(fTranscoder, GetAttributeForced(target, "optype"));
    if (!optype.empty()) {
        ScoreDictVar::MeasureLevel level = ScoreDictVar::MEASURE_CONTINUOUS;
        if (!LevelOfOptype(optype, level)) {
            ThrowCodedError(260152, {optype, "optype"});
        }
        if (level != variable->GetMLevel()) {
            ThrowCodedError(260214, {optype, "optype", "DataDictionary", ToString(variable->GetMLevel()),
                                     "optype", "Target"});
        }
    }
    switch (variable->GetMLevel()) {
        case ScoreDictVar::MEASURE_CONTINUOUS: {
            DOMElement const* value = AsElement(GetChildByTag(target, "TargetValue"));
            XMLCh const* defaultValue = GetAttribute(value, "defaultValue");
            if (!IsEmptyText(defaultValue)) {
                ReplacePart<ScoreValue>(
                    std::make_unique<NumericValue>(VerifyDouble(defaultValue)),
                    [variable] { return variable->GetDefValue(); },
                    [variable](ScoreValue* fresh) { variable->SetDefValue(fresh); });
            }
            return;
        }
        case ScoreDictVar::MEASURE_NOMINAL:
        case ScoreDictVar::MEASURE_ORDINAL:
            HandleCategoricalTarget(target, variable);
            return;
        default:
            ThrowCodedError(260152, {"", "optype"});
    }
}

void PMMLTranslator::HandleCategoricalTarget(DOMElement* target, ScoreDictVar* variable) {
    // New categories join the variable's own list in place; only a variable without one gets a new
    // list, which it takes over once a "TargetValue" was met.
    std::unique_ptr<ValueLabelSet> newLabels;
    ScoreValueLabelSet* labels = const_cast<ScoreValueLabelSet*>(variable->GetValueLabels());
    if (labels == nullptr) {
        newLabels = std::make_unique<ValueLabelSet>();
        labels = newLabels.get();
    }
    auto probabilities = std::make_unique<ValueProbabilitySet>();
    bool const numeric = IsNumericVariable(variable);
    bool metValue = false;
    for (DOMNode* child = GetFirstChildElt(target); child != nullptr; child = GetNextSiblingElt(child)) {
        if (!HasName(child, "TargetValue")) {
            continue;
        }
        metValue = true;
        DOMElement const* element = AsElement(child);
        XMLCh const* text = GetAttributeForced(element, "value");
        if (IsEmptyText(text) && (numeric || (variable->IsString() && !variable->GetEmptyStringOK()))) {
            ThrowCodedError(260285, {"value", "Value"});
        }
        if (numeric) {
            VerifyDouble(text);
        }
        std::unique_ptr<ScoreValue> value(CarefullyMakeVarValue(variable, text));
        ScoreValue const* valueRef = value.get();
        XMLCh const* display = GetAttribute(element, "displayValue");
        std::string const label = TranscodeText(fTranscoder, IsEmptyText(display) ? text : display);
        if (newLabels != nullptr || !labels->Contains(valueRef)) {
            labels->Add(new ValueLbl(value.release(), label));
        }
        XMLCh const* prior = GetAttribute(element, "priorProbability");
        if (!IsEmptyText(prior)) {
            double const probability = VerifyDouble(prior);
            probabilities->Add(new ValueProbability(valueRef->Clone(), probability));
        }
    }
    if (metValue) {
        if (newLabels != nullptr) {
            variable->SetValueLabels(newLabels.release());
        }
        if (variable->IsFlagVariable() && variable->GetNumberOfCats() > 2) {
            ThrowCodedError(260271, {"categorical", "flag"});
        }
        CheckCategoryLabels(variable, true);
    }
    if (probabilities->Size() > 0) {
        ReplacePart<ScoreValueProbabilitySet>(
            std::move(probabilities), [variable] { return variable->GetValueProbabilities(); },
            [variable](ScoreValueProbabilitySet* fresh) { variable->SetValueProbabilities(fresh); });
    }
}

}  // namespace QXVantry_920
