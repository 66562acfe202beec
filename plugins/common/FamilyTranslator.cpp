#include "plugins/common/FamilyTranslator.h"

#include <cstdarg>
#include <memory>
#include <utility>

#include <xercesc/dom/DOM.hpp>

#include "plugins/common/FamilyModel.h"
#include "plugins/common/FamilyResult.h"
#include "plugins/common/FamilySupport.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ResultVar.h"
#include "vantry/factory/VersionInfo.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/transform/TransformationDictionary.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

void ThrowFamilyError(int code, std::vector<std::string> const& arguments) {
    VTException error;
    char const* texts[6] = {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
    for (std::size_t i = 0; i < arguments.size() && i < 6; ++i) {
        texts[i] = arguments[i].c_str();
    }
    error.PutErrorMessage(code, texts[0], texts[1], texts[2], texts[3], texts[4], texts[5]);
    throw error;
}

namespace {

// Appends clones of the "DerivedField" children of a container to the wrapper.
void CloneDerivedFields(DOMElement* container, DOMElement* wrapper) {
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(container); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (IsElementNamed(child, "DerivedField")) {
            wrapper->appendChild(child->cloneNode(true));
        }
    }
}

// A plain variable of a derived field's name and kind, for a model that receives derived values as
// inputs.
std::unique_ptr<ScoreDictVar> StandIn(ScoreDictVar const& derived) {
    auto variable = std::make_unique<DictVar>(derived.GetName(), derived.GetVarType());
    variable->SetMLevel(derived.GetMLevel());
    variable->SetDateTimeType(derived.GetDateTimeType());
    return variable;
}

}  // namespace

// ModelContext

ModelContext::ModelContext(FamilyTranslator& translator, DOMElement* modelElement, ScoreDictionary* inputs,
                           TransformationDictionary* derived, BaseModel::FUNCNAME_TYPE function,
                           std::string targetField)
    : fTranslator(translator),
      fModelElement(modelElement),
      fInputs(inputs),
      fDerived(derived),
      fFunction(function),
      fTargetField(std::move(targetField)) {}

ScoreDictVar const* ModelContext::TargetVariable() const {
    return fTargetField.empty() ? nullptr : fInputs->GetVar(fTargetField);
}

ScoreDictVar const* ModelContext::Variable(std::string const& name) const {
    if (fDerived != nullptr) {
        if (ScoreDictVar const* variable = fDerived->GetVar(name)) {
            return variable;
        }
    }
    return fInputs->GetVar(name);
}

FieldHandle ModelContext::Find(std::string const& name) const {
    FieldHandle handle;
    if (fDerived != nullptr) {
        if (ScoreDictVar const* variable = static_cast<ScoreDictionary const*>(fDerived)->GetVar(name)) {
            handle.source = FieldHandle::kDerived;
            handle.index = variable->GetValueIndex();
            handle.variable = variable;
            return handle;
        }
    }
    if (ScoreDictVar const* variable = static_cast<ScoreDictionary const*>(fInputs)->GetVar(name)) {
        handle.source = FieldHandle::kInput;
        handle.index = variable->GetValueIndex();
        handle.variable = variable;
    }
    return handle;
}

FieldHandle ModelContext::Resolve(std::string const& name) const {
    FieldHandle handle = Find(name);
    if (!handle.IsValid()) {
        ThrowFamilyError(260124, {name, "DataDictionary"});
    }
    return handle;
}

ScorePredicate* ModelContext::ParsePredicate(DOMElement* owner) {
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(owner); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (IsElementNamed(child, "SimplePredicate")) {
            return fTranslator.ParsePredicate(child, fInputs, fDerived, false);
        }
        if (IsElementNamed(child, "SimpleSetPredicate")) {
            return fTranslator.ParseSetPredicate(child, fInputs, fDerived);
        }
        if (IsElementNamed(child, "CompoundPredicate")) {
            return fTranslator.ParseCompoundPredicate(child, fInputs, fDerived, false);
        }
        if (IsElementNamed(child, "True")) {
            return new TruePredicate();
        }
        if (IsElementNamed(child, "False")) {
            return new FalsePredicate();
        }
    }
    return nullptr;
}

std::string ModelContext::Attribute(DOMElement const* element, char const* name) {
    return fTranslator.Text(BaseTranslator::GetAttribute(element, name));
}

double ModelContext::Number(DOMElement const* element, char const* name, double fallback) {
    XMLCh const* text = BaseTranslator::GetAttribute(element, name);
    return text == nullptr || *text == 0 ? fallback : BaseTranslator::VerifyDouble(text);
}

// FamilyTranslator

FamilyTranslator::FamilyTranslator(std::vector<std::string> elementNames)
    : fElementNames(std::move(elementNames)) {}

FamilyTranslator::~FamilyTranslator() = default;

ScoreModel* FamilyTranslator::ParseFromTree(DOMDocument* document, std::string const& encoding) {
    if (fTranscoder == nullptr) {
        CreateTranscoder(encoding.empty() ? fEncoding : encoding);
    }
    DOMElement* root = document->getDocumentElement();
    std::unique_ptr<ScoreDictionary> inputs(
        ParseDictionary(GetChildByTagForced(root, "DataDictionary"), true));
    for (DOMNode* child = GetFirstChildElt(root); child != nullptr; child = GetNextSiblingElt(child)) {
        for (std::string const& name : fElementNames) {
            if (IsElementNamed(child, name.c_str())) {
                auto* transformations =
                    static_cast<DOMElement*>(GetChildByTag(root, "TransformationDictionary"));
                return Build(static_cast<DOMElement*>(child), std::move(inputs), transformations, encoding);
            }
        }
    }
    ThrowFamilyError(260114, {fElementNames.empty() ? std::string() : fElementNames.front()});
}

ScoreModel* FamilyTranslator::ParseFromTree(DOMElement* modelElement, ScoreModel* parent,
                                            std::string const& encoding) {
    if (fTranscoder == nullptr) {
        CreateTranscoder(encoding.empty() ? fEncoding : encoding);
    }
    std::unique_ptr<ScoreDictionary> inputs;
    ScoreDictionary const* parentInputs = parent != nullptr ? parent->GetDictionary() : nullptr;
    inputs.reset(parentInputs != nullptr ? parentInputs->Clone() : new BaseDictionary());
    if (TransformationDictionary* derived =
            parent != nullptr ? parent->GetTransformationDictionary() : nullptr) {
        for (std::string const& name : derived->GetDerivedVarNames()) {
            ScoreDictVar const* variable = static_cast<ScoreDictionary const*>(derived)->GetVar(name);
            if (variable != nullptr && inputs->GetVar(name) == nullptr) {
                inputs->AddVar(name, StandIn(*variable).release());
            }
        }
    }
    return Build(modelElement, std::move(inputs), nullptr, encoding);
}

FamilyModel* FamilyTranslator::Build(DOMElement* modelElement, std::unique_ptr<ScoreDictionary> inputs,
                                     DOMElement* documentTransformations, std::string const& encoding) {
    static_cast<void>(encoding);
    DOMElement* schemaElement = static_cast<DOMElement*>(GetChildByTagForced(modelElement, "MiningSchema"));
    MiningSchema::AssignSlots(inputs.get());

    // One derived dictionary per model: the document's derived fields (top-level models only), then
    // the model's local ones, read together from a wrapper of clones.
    std::unique_ptr<TransformationDictionary> derived;
    auto* local = static_cast<DOMElement*>(GetChildByTag(modelElement, "LocalTransformations"));
    if (documentTransformations != nullptr || local != nullptr) {
        std::unique_ptr<DOMElement, ReleaseNode> wrapper(
            modelElement->getOwnerDocument()->createElement(modelElement->getNodeName()));
        CloneDerivedFields(documentTransformations, wrapper.get());
        CloneDerivedFields(local, wrapper.get());
        derived.reset(HandleTransformationDictionary(wrapper.get(), inputs.get()));
        if (derived != nullptr) {
            derived->SetUpDerivedCaseRecord();
        }
    }

    BaseModel::FUNCNAME_TYPE const function =
        BaseModel::MiningFunctionFromString(ToString(GetAttribute(modelElement, "functionName")));
    ModelContext context(*this, modelElement, inputs.get(), derived.get(), function,
                         MiningSchema::FirstTarget(schemaElement, *this));
    std::unique_ptr<FamilyModel> model(BuildFamilyModel(modelElement, context));
    if (model == nullptr) {
        return nullptr;
    }
    model->SetScoreDictionary(inputs.release(), true);
    model->SetTransformationScoreDictionary(derived.release(), true);
    model->SetMiningFunction(function);
    model->SetAlgorithmName(ToString(GetAttribute(modelElement, "algorithmName")));
    model->SetVersionInfo(new VersionInfo(ToString(modelElement->getNodeName()) + "|" +
                                          ToString(GetAttribute(modelElement, "modelName"))));
    model->Install(context, schemaElement, *this);
    return model.release();
}

}  // namespace QXVantry_920
