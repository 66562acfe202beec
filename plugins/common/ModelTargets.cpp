#include "plugins/common/ModelTargets.h"

#include <algorithm>
#include <cmath>

#include <xercesc/dom/DOM.hpp>

#include "plugins/common/FamilyCase.h"
#include "plugins/common/FamilySupport.h"
#include "plugins/common/FamilyTranslator.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

bool ReadNumber(DOMElement const* element, char const* name, double& number) {
    XMLCh const* text = BaseTranslator::GetAttribute(element, name);
    if (text == nullptr || *text == 0) {
        return false;
    }
    number = BaseTranslator::VerifyDouble(text);
    return true;
}

}  // namespace

void ModelTargets::Read(DOMElement* targets, FamilyTranslator& translator) {
    fTargets.clear();
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(targets); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (!IsElementNamed(child, "Target")) {
            continue;
        }
        auto* element = static_cast<DOMElement*>(child);
        Target target;
        target.field = translator.Text(BaseTranslator::GetAttribute(element, "field"));
        ReadNumber(element, "rescaleFactor", target.rescaleFactor);
        ReadNumber(element, "rescaleConstant", target.rescaleConstant);
        target.hasMin = ReadNumber(element, "min", target.min);
        target.hasMax = ReadNumber(element, "max", target.max);
        std::string const cast = translator.Text(BaseTranslator::GetAttribute(element, "castInteger"));
        if (cast == "round") {
            target.cast = Cast::kRound;
        } else if (cast == "ceiling") {
            target.cast = Cast::kCeiling;
        } else if (cast == "floor") {
            target.cast = Cast::kFloor;
        } else if (!cast.empty()) {
            ThrowFamilyError(260152, {cast, "castInteger"});
        }
        for (DOMNode* node = BaseTranslator::GetFirstChildElt(element); node != nullptr;
             node = BaseTranslator::GetNextSiblingElt(node)) {
            if (!IsElementNamed(node, "TargetValue")) {
                continue;
            }
            auto* value = static_cast<DOMElement*>(node);
            if (ReadNumber(value, "defaultValue", target.defaultValue)) {
                target.hasDefault = true;
            }
            double prior = 0.0;
            if (ReadNumber(value, "priorProbability", prior)) {
                target.priorValues.push_back(translator.Text(BaseTranslator::GetAttribute(value, "value")));
                target.priors.push_back(prior);
            }
        }
        fTargets.push_back(std::move(target));
    }
}

ModelTargets::Target const* ModelTargets::Find(std::string const& field) const {
    for (Target const& target : fTargets) {
        if (target.field == field || target.field.empty()) {
            return &target;
        }
    }
    return nullptr;
}

void ModelTargets::ApplyRegression(std::string const& field, Prediction& prediction) const {
    Target const* target = Find(field);
    if (target == nullptr) {
        return;
    }
    if (!prediction.valid) {
        if (!target->hasDefault) {
            return;
        }
        prediction.valid = true;
        prediction.value = target->defaultValue;
        return;
    }
    double y = prediction.value;
    if (target->hasMin) {
        y = std::max(y, target->min);
    }
    if (target->hasMax) {
        y = std::min(y, target->max);
    }
    y = y * target->rescaleFactor + target->rescaleConstant;
    switch (target->cast) {
        case Cast::kRound:
            y = std::round(y);
            break;
        case Cast::kCeiling:
            y = std::ceil(y);
            break;
        case Cast::kFloor:
            y = std::floor(y);
            break;
        case Cast::kNone:
            break;
    }
    prediction.value = y;
}

void ModelTargets::ApplyClassification(std::string const& field, std::vector<std::string> const& categories,
                                       Prediction& prediction) const {
    Target const* target = Find(field);
    if (prediction.valid || target == nullptr || target->priors.empty()) {
        return;
    }
    prediction.probabilities.assign(categories.size(), 0.0);
    for (std::size_t i = 0; i < target->priors.size(); ++i) {
        for (std::size_t c = 0; c < categories.size(); ++c) {
            if (SameCategory(categories[c], target->priorValues[i])) {
                prediction.probabilities[c] = target->priors[i];
            }
        }
    }
    prediction.confidences.clear();
    prediction.category = prediction.ArgMax();
    prediction.valid = prediction.category >= 0;
}

}  // namespace QXVantry_920
