#include "plugins/common/ModelOutput.h"

#include <xercesc/dom/DOM.hpp>

#include "plugins/common/FamilyCase.h"
#include "plugins/common/FamilyResult.h"
#include "plugins/common/FamilySupport.h"
#include "plugins/common/FamilyTranslator.h"
#include "plugins/common/RecordSlots.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

ModelOutput::Feature FeatureOf(std::string const& text) {
    static std::pair<char const*, ModelOutput::Feature> const kFeatures[] = {
        {"", ModelOutput::Feature::kPredictedValue},
        {"predictedValue", ModelOutput::Feature::kPredictedValue},
        {"predictedDisplayValue", ModelOutput::Feature::kPredictedDisplayValue},
        {"probability", ModelOutput::Feature::kProbability},
        {"confidence", ModelOutput::Feature::kConfidence},
        {"entityId", ModelOutput::Feature::kEntityId},
        {"transformedValue", ModelOutput::Feature::kTransformedValue}};
    for (auto const& entry : kFeatures) {
        if (text == entry.first) {
            return entry.second;
        }
    }
    return ModelOutput::Feature::kUnsupported;
}

// The expression of an output field: its first child element other than "Extension" and "Decisions".
DOMNode* ExpressionOf(DOMNode* field) {
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(field); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (!IsElementNamed(child, "Extension") && !IsElementNamed(child, "Decisions")) {
            return child;
        }
    }
    return nullptr;
}

void SetAttribute(DOMElement* element, char const* name, std::string const& value) {
    XMLCh* xmlName = XMLString::transcode(name);
    XMLCh* xmlValue = XMLString::transcode(value.c_str());
    element->setAttribute(xmlName, xmlValue);
    XMLString::release(&xmlName);
    XMLString::release(&xmlValue);
}

}  // namespace

ModelOutput::ModelOutput() = default;
ModelOutput::~ModelOutput() = default;

void ModelOutput::Read(DOMElement* output, FamilyTranslator& translator) {
    fFields.clear();
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(output); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (!IsElementNamed(child, "OutputField")) {
            continue;
        }
        auto* element = static_cast<DOMElement*>(child);
        Field field;
        field.name = translator.Text(BaseTranslator::GetAttributeForced(element, "name"));
        field.featureText = translator.Text(BaseTranslator::GetAttribute(element, "feature"));
        field.feature = FeatureOf(field.featureText);
        field.value = translator.Text(BaseTranslator::GetAttribute(element, "value"));
        std::string const dataType = translator.Text(BaseTranslator::GetAttribute(element, "dataType"));
        std::string const optype = translator.Text(BaseTranslator::GetAttribute(element, "optype"));
        bool const text =
            dataType == "string" || (dataType.empty() && (field.feature == Feature::kPredictedDisplayValue ||
                                                          field.feature == Feature::kEntityId));
        field.type = text ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR;
        field.level = optype == "categorical" ? ScoreDictVar::MEASURE_NOMINAL
                      : optype == "ordinal"   ? ScoreDictVar::MEASURE_ORDINAL
                      : text                  ? ScoreDictVar::MEASURE_NOMINAL
                                              : ScoreDictVar::MEASURE_CONTINUOUS;
        fFields.push_back(std::move(field));
    }
}

void ModelOutput::Resolve(DOMElement* output, std::vector<std::string> const& categories,
                          BaseDictionary& flat, FamilyTranslator& translator) {
    for (Field& field : fFields) {
        field.category = -1;
        for (std::size_t c = 0; c < categories.size() && !field.value.empty(); ++c) {
            if (SameCategory(categories[c], field.value)) {
                field.category = static_cast<int>(c);
                break;
            }
        }
    }
    if (output == nullptr) {
        return;
    }
    // Every output but the expressions is a plain field of the flat record; the expressions are derived
    // fields over it, read from a wrapper of synthetic "DerivedField" elements.
    std::unique_ptr<DOMElement, ReleaseNode> wrapper(
        output->getOwnerDocument()->createElement(output->getNodeName()));
    std::size_t index = 0;
    bool expressions = false;
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(output); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (!IsElementNamed(child, "OutputField")) {
            continue;
        }
        Field const& field = fFields[index++];
        if (field.feature != Feature::kTransformedValue) {
            if (flat.GetVar(field.name) == nullptr) {
                auto variable = std::make_unique<DictVar>(field.name, field.type);
                variable->SetMLevel(field.level);
                flat.AddVar(field.name, variable.release());
            }
            continue;
        }
        DOMNode* expression = ExpressionOf(child);
        if (expression == nullptr) {
            ThrowFamilyError(260114, {"Expression"});
        }
        XMLCh* tag = XMLString::transcode("DerivedField");
        DOMElement* derived = output->getOwnerDocument()->createElement(tag);
        XMLString::release(&tag);
        wrapper->appendChild(derived);
        XMLCh* nameTag = XMLString::transcode("name");
        derived->setAttribute(nameTag, BaseTranslator::GetAttribute(static_cast<DOMElement*>(child), "name"));
        XMLString::release(&nameTag);
        SetAttribute(derived, "optype",
                     field.level == ScoreDictVar::MEASURE_CONTINUOUS ? "continuous"
                     : field.level == ScoreDictVar::MEASURE_ORDINAL  ? "ordinal"
                                                                     : "categorical");
        SetAttribute(derived, "dataType", field.type == ScoreDictVar::STRING_VAR ? "string" : "double");
        derived->appendChild(expression->cloneNode(true));
        expressions = true;
    }
    if (expressions) {
        fExpressions.reset(translator.HandleTransformationDictionary(wrapper.get(), &flat));
        if (fExpressions != nullptr) {
            fExpressions->SetUpDerivedCaseRecord();
        }
    }
}

bool ModelOutput::NeedsFlatRecord() const {
    return fExpressions != nullptr;
}

bool ModelOutput::NeedsDisplayText() const {
    for (Field const& field : fFields) {
        if (field.feature == Feature::kPredictedDisplayValue) {
            return true;
        }
    }
    return false;
}

void ModelOutput::Compute(Prediction const& prediction, FamilyResult& result, CaseRecord* flat,
                          ScoreDictionary const* flatDictionary, std::string const& display) {
    result.SetOutputCount(fFields.size());
    if (flat != nullptr && fFlatSlots.size() != fFields.size()) {
        fFlatSlots.clear();
        for (Field const& field : fFields) {
            fFlatSlots.push_back(field.feature == Feature::kTransformedValue ? -1
                                                                             : flat->GetIndex(field.name));
        }
    }
    for (std::size_t i = 0; i < fFields.size(); ++i) {
        Field const& field = fFields[i];
        result.ClearOutput(i);
        switch (field.feature) {
            case Feature::kPredictedValue:
                if (ScoreValue const* value = result.GetResultValue()) {
                    if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
                        result.SetOutputText(i, ScoreValue::TextOf(*value));
                    } else {
                        result.SetOutputNumber(i, value->GetDouble());
                    }
                }
                break;
            case Feature::kPredictedDisplayValue:
                if (prediction.valid) {
                    result.SetOutputText(i, display);
                }
                break;
            case Feature::kProbability:
            case Feature::kConfidence: {
                int const category = field.value.empty() ? prediction.category : field.category;
                if (prediction.valid && !prediction.probabilities.empty()) {
                    result.SetOutputNumber(i, field.feature == Feature::kProbability
                                                  ? prediction.ProbabilityOf(category)
                                                  : prediction.ConfidenceOf(category));
                }
                break;
            }
            case Feature::kEntityId:
                if (prediction.valid && !prediction.entityId.empty()) {
                    result.SetOutputText(i, prediction.entityId);
                }
                break;
            case Feature::kTransformedValue:
            case Feature::kUnsupported:
                break;
        }
        if (flat != nullptr && fFlatSlots[i] >= 0) {
            PutValue(*flat, fFlatSlots[i], field.name, result.GetOutput(i), field.type);
        }
    }
    if (fExpressions == nullptr || flat == nullptr) {
        return;
    }
    ScoreCaseRecord const* values = fExpressions->GetValuesForDerivedVars(flat, flatDictionary);
    for (std::size_t i = 0; i < fFields.size(); ++i) {
        if (fFields[i].feature != Feature::kTransformedValue) {
            continue;
        }
        ScoreDictVar const* variable =
            static_cast<ScoreDictionary const*>(fExpressions.get())->GetVar(fFields[i].name);
        ScoreValue const* value = variable != nullptr ? values->Get(variable->GetValueIndex()) : nullptr;
        if (value == nullptr || variable->IsMissingValue(value)) {
            continue;
        }
        if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
            result.SetOutputText(i, ScoreValue::TextOf(*value));
        } else if (!value->IsSystemMissingValue()) {
            result.SetOutputNumber(i, value->GetDouble());
        }
    }
}

}  // namespace QXVantry_920
