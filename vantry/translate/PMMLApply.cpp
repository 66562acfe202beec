// "Apply" elements as function trees: one inner node per "Apply", one leaf per "FieldRef" or
// "Constant", checked against the function catalogue as each node is completed.
#include <memory>
#include <string>
#include <vector>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/translate/TransformReading.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

using TD = TransformationDictionary;

namespace {

// The deepest nesting of "Apply" elements that is read. Each level is one frame of recursion here and
// again in every walk of the finished tree, so a hostile document could otherwise exhaust the stack;
// real documents stay far below this.
constexpr int kMaxApplyDepth = 200;

// The kinds of children that the catalogue's checks tell apart.
constexpr int kApplyChild = 0;
constexpr int kFieldChild = 1;
constexpr int kConstantChild = 2;

int DepthOf(FunctionTree const* node) {
    int depth = 0;
    for (; node != nullptr; node = node->GetParent()) {
        ++depth;
    }
    return depth;
}

ApplyNodeStats::InvalidValueTreatmentMethod TreatmentOf(std::string const& text) {
    if (text == "returnInvalid") {
        return ApplyNodeStats::IVT_RETURN_INVALID;
    }
    if (text == "asIs") {
        return ApplyNodeStats::IVT_AS_IS;
    }
    if (text == "asMissing") {
        return ApplyNodeStats::IVT_AS_MISSING;
    }
    return ApplyNodeStats::IVT_UNSET;
}

// Hands a value to the node that keeps it alive; nothing for null.
void Keep(FunctionTreeImp* node, std::unique_ptr<ScoreValue>& value) {
    if (value != nullptr) {
        node->OwnValue(value.release());
    }
}

// Inserts a node into its parent; the node stays with the caller when the parent does not take it.
void AttachTo(FunctionTree* parent, std::unique_ptr<FunctionTreeImp>& node, int index) {
    if (parent == nullptr) {
        return;
    }
    parent->Insert(node.get(), index);
    if (node->GetParent() == parent) {
        node.release();
    }
}

}  // namespace

FunctionTree* PMMLTranslator::HandleApply(DOMElement* element, ScoreDictVar const* variable,
                                          FunctionTree* parent, ScoreDictionary const* dictionary,
                                          ScoreDictionary const* transformations) {
    if (DepthOf(parent) >= kMaxApplyDepth) {
        // No code speaks of nesting; this one names the element whose processing was given up.
        ThrowCodedError(260221, {"Apply"});
    }
    std::string const functionText = TranscodeText(fTranscoder, GetAttributeForced(element, "function"));
    TransformFunction const function = GetTransFunction(functionText);
    if (function == TD::TF_UNKNOWN) {
        ThrowCodedError(260303, {functionText, "function"});
    }

    std::unique_ptr<ScoreValue> mapMissingTo;
    XMLCh const* mapMissingText = GetAttribute(element, "mapMissingTo");
    if (!IsEmptyText(mapMissingText)) {
        mapMissingTo.reset(CarefullyMakeVarValue(variable, mapMissingText));
    }
    std::unique_ptr<ScoreValue> defaultValue;
    XMLCh const* defaultText = GetAttribute(element, "defaultValue");
    if (!IsEmptyText(defaultText)) {
        defaultValue.reset(CarefullyMakeVarValue(variable, defaultText));
    }

    ApplyNodeStats stats;
    stats.SetRecodeMissValueTo(mapMissingTo.get());
    stats.SetDefaultValue(defaultValue.get());
    stats.SetInvalidValueTreatmentMethod(
        TreatmentOf(TranscodeText(fTranscoder, GetAttribute(element, "invalidValueTreatment"))));
    stats.SetTransformFunction(function);
    stats.SetNodeID(std::to_string(fNodeCounter++));

    auto owned = std::make_unique<FunctionTreeImp>(true);
    FunctionTreeImp* node = owned.get();
    node->SetNodeStats(stats);
    Keep(node, mapMissingTo);
    Keep(node, defaultValue);
    // Under a parent the node is the parent's; a root is freed here if anything below fails.
    if (parent != nullptr) {
        parent->Add(node);
        if (node->GetParent() == parent) {
            owned.release();
        }
    }

    std::vector<std::string> names;
    std::vector<int> kinds;
    std::vector<TransformFunction> childFunctions;
    int index = 0;
    for (DOMNode* child = GetFirstChildElt(element); child != nullptr; child = GetNextSiblingElt(child)) {
        DOMElement* childElement = AsElement(child);
        if (HasName(child, "Apply")) {
            HandleApply(childElement, variable, node, dictionary, transformations);
            childFunctions.push_back(
                GetTransFunction(TranscodeText(fTranscoder, GetAttributeForced(childElement, "function"))));
            names.push_back("APPLY");
            kinds.push_back(kApplyChild);
            ++index;
        } else if (HasName(child, "FieldRef")) {
            std::string const name = HandleFieldRef(childElement, dictionary, transformations, nullptr);
            ScoreDictVar const* field = FindVariable(name, dictionary, transformations);
            std::unique_ptr<ScoreValue> fieldMissingTo;
            XMLCh const* fieldMissingText = GetAttribute(childElement, "mapMissingTo");
            if (field != nullptr && !IsEmptyText(fieldMissingText)) {
                fieldMissingTo.reset(CarefullyMakeVarValue(field, fieldMissingText));
            }
            SetLeafNodeStats(name, node, index, false, fieldMissingTo.release());
            names.push_back(name);
            kinds.push_back(kFieldChild);
            childFunctions.push_back(TD::TF_UNKNOWN);
            ++index;
        } else if (HasName(child, "Constant")) {
            std::unique_ptr<ScoreValue> value;
            int type = 0;
            if (function == TD::TF_MATCHES || function == TD::TF_CONCAT || function == TD::TF_REPLACE) {
                // Text functions take their constants as text whatever the declared type.
                value.reset(HandelConstantDefaultStringType(childElement));
                type = 1;
            } else {
                double number = 0.0;
                std::string const text = HandelConstant(childElement, number, type);
                if (function == TD::TF_OUTLIER_HANDLE && type == 1) {
                    // The method of outlierHandle, as its number.
                    double method = 0.0;
                    if (text == "asMissingValues") {
                        method = 1.0;
                    } else if (text == "asExtremeValues") {
                        method = 2.0;
                    } else if (text != "asIs") {
                        ThrowCodedError(260303, {text, "string"});
                    }
                    value = std::make_unique<NumericValue>(method);
                } else {
                    value.reset(HandelConstant(childElement));
                }
            }
            ApplyNodeStats constant;
            constant.SetNodeID(std::to_string(fNodeCounter++));
            constant.SetValue(value.get());
            constant.SetConstNode(true);
            auto leaf = std::make_unique<FunctionTreeImp>(false);
            leaf->SetNodeStats(constant);
            Keep(leaf.get(), value);
            AttachTo(node, leaf, index);
            names.push_back(type == 0 ? "Constant_D_" : type == 5 ? "Constant_T_" : "Constant_S_");
            kinds.push_back(kConstantChild);
            childFunctions.push_back(TD::TF_UNKNOWN);
            ++index;
        } else if (HasName(child, "Extension")) {
            DOMElement* array = AsElement(GetChildByTag(child, "Array"));
            if (array != nullptr) {
                ApplyNodeStats withArray = node->GetNodeStats();
                withArray.AddArray(VerifyDoubleArray(array, 0));
                node->SetNodeStats(withArray);
            }
        }
    }

    if (function == TD::TF_IMPUTE_CAT_FIELD_MISSING) {
        // Means and variances of the categories, one array each and of the same length.
        ApplyNodeStats const& own = node->GetNodeStats();
        if (node->GetChildCount() != 2 || own.GetNumberOfArray() < 2 ||
            own.GetArray(0).size() != own.GetArray(1).size()) {
            ThrowCodedError(260221, {"imputeCatFieldMissingAgainstConTarget"});
        }
    }
    VerifyApplyFunction(names, kinds, dictionary, transformations, function, childFunctions,
                        dynamic_cast<TransformVar const*>(variable));
    owned.release();
    return node;
}

void PMMLTranslator::SetLeafNodeStats(std::string const& name, FunctionTree* parent, int index,
                                      bool constNode, ScoreValue* fieldRecodeMissingValue) {
    std::unique_ptr<ScoreValue> value(fieldRecodeMissingValue);
    ApplyNodeStats stats;
    stats.SetNodeID(std::to_string(fNodeCounter++));
    stats.SetParameterName(name);
    stats.SetConstNode(constNode);
    if (value != nullptr) {
        stats.SetFieldrefRecodeMissValueTo(value.get());
    }
    auto leaf = std::make_unique<FunctionTreeImp>(false);
    leaf->SetNodeStats(stats);
    Keep(leaf.get(), value);
    AttachTo(parent, leaf, index);
}

}  // namespace QXVantry_920
