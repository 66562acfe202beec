#include "vantry/transform/ApplyPlan.h"

#include <typeinfo>

#include "vantry/transform/FunctionSupport.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

using TD = TransformationDictionary;

bool InRange(int fn, int low, int high) {
    return fn >= low && fn <= high;
}

}  // namespace

unsigned TransformVar::ApplyPlan::Classify(int fn) {
    unsigned classes = 0;
    if (InRange(fn, TD::TF_LOWERCASE, TD::TF_SUBSTRING)) {
        classes |= kString;
    }
    if (InRange(fn, TD::TF_DATE_YEARS_DIFFERENCE, TD::TF_SECOND_FROM_TIME)) {
        classes |= kDate;
    }
    if (InRange(fn, TD::TF_MINUS, TD::TF_DIVIDE) || InRange(fn, TD::TF_PRODUCT, TD::TF_VARIANCE) ||
        fn == TD::TF_IDF_NORMAL || fn == TD::TF_PDF_NORMAL ||
        InRange(fn, TD::TF_LESS_THAN, TD::TF_GREATER_OR_EQUAL) || InRange(fn, TD::TF_AND, TD::TF_NOT) ||
        InRange(fn, TD::TF_NORMAL_CDF, TD::TF_STD_NORMAL_IDF)) {
        classes |= kAccumulating;
    }
    if (fn == TD::TF_EQUAL || fn == TD::TF_NOT_EQUAL) {
        classes |= kPairTest;
    }
    if (fn == TD::TF_IS_IN || fn == TD::TF_IS_NOT_IN) {
        classes |= kSetTest;
    }
    if (fn == TD::TF_VALUE || fn == TD::TF_RECAST_TO_ORDINAL || fn == TD::TF_RECAST_TO_SCALE) {
        classes |= kCopy;
    }
    return classes;
}

// Functions that read nothing of their children but GetDouble: the dates, the tests of values and texts,
// the branches and the copies look at the value objects themselves.
bool TransformVar::ApplyPlan::IsNumbersOnly(int fn, unsigned classes) {
    if ((classes & (kString | kDate | kPairTest | kSetTest | kCopy)) != 0) {
        return false;
    }
    switch (fn) {
        case TD::TF_IS_MISSING:
        case TD::TF_IS_NOT_MISSING:
        case TD::TF_MATCHES:
        case TD::TF_LENGTH:
        case TD::TF_IF:
        case TD::TF_SYSMIS:
        case TD::TF_OUTLIER_HANDLE:
        case TD::TF_IMPUTE_CAT_FIELD_MISSING:
            return false;
        default:
            return true;
    }
}

namespace {

TD::TransformFunction ParentFunction(FunctionTree const* tree) {
    FunctionTree const* parent = tree->GetParent();
    return parent != nullptr ? parent->GetNodeStats().GetTransformFunction() : TD::TF_UNKNOWN;
}

}  // namespace

TransformVar::ApplyPlan::Operator TransformVar::ApplyPlan::BinaryOperator(int fn) {
    switch (fn) {
        case TD::TF_PLUS:
            return kPlus;
        case TD::TF_MINUS:
            return kMinus;
        case TD::TF_MULTIPLY:
            return kMultiply;
        case TD::TF_DIVIDE:
            return kDivide;
        default:
            return kNoOperator;
    }
}

std::unique_ptr<TransformVar::ApplyPlan> TransformVar::ApplyPlan::Build(FunctionTree* root) {
    auto plan = std::make_unique<ApplyPlan>();
    plan->root = root;
    plan->Add(root);
    // Every kNumeric node whose parent is not one roots a region (the root is node 0).
    for (size_t at = 0; at < plan->nodes.size(); ++at) {
        Node const& node = plan->nodes[at];
        for (int i = 0; i < node.count; ++i) {
            int const child = plan->children[static_cast<size_t>(node.first + i)];
            Node& region = plan->nodes[static_cast<size_t>(child)];
            if (region.kind == kNumeric && (node.kind != kNumeric)) {
                plan->Emit(child, region.program);
            }
        }
    }
    if (!plan->nodes.empty() && plan->nodes[0].kind == kNumeric) {
        plan->Emit(0, plan->nodes[0].program);
    }
    for (Node& node : plan->nodes) {
        node.stack.resize(node.program.size());
    }
    return plan;
}

void TransformVar::ApplyPlan::Emit(int at, std::vector<Step>& program) const {
    Node const& node = nodes[static_cast<size_t>(at)];
    switch (node.kind) {
        case kNull:
            program.push_back({kPushConstant, at, detail::kSysmis});
            return;
        case kConstant:
            program.push_back({kPushConstant, at, node.constant});
            return;
        case kField:
            program.push_back({kPushField, at, 0.0});
            return;
        case kGeneral:
            program.push_back({kPushOther, at, 0.0});
            return;
        case kNumeric:
            break;
    }
    bool const arithmetic = node.binary != kNoOperator && !node.asMissing && !node.mapsMissing;
    if (arithmetic) {
        // A constant or field second operand is read by the operator's step itself, and so is a field
        // first operand with a constant second one.
        int const first = children[static_cast<size_t>(node.first)];
        int const second = children[static_cast<size_t>(node.first + 1)];
        Node const& operand = nodes[static_cast<size_t>(second)];
        if (nodes[static_cast<size_t>(first)].kind == kField && operand.kind == kConstant) {
            program.push_back({ArithmeticStep(node.binary, kFieldAndConstant), first, operand.constant});
            return;
        }
        Emit(first, program);
        if (operand.kind == kConstant) {
            program.push_back({ArithmeticStep(node.binary, kConstantOperand), second, operand.constant});
        } else if (operand.kind == kField) {
            program.push_back({ArithmeticStep(node.binary, kFieldOperand), second, 0.0});
        } else {
            Emit(second, program);
            program.push_back({ArithmeticStep(node.binary, kOnStack), at, 0.0});
        }
        return;
    }
    for (int i = 0; i < node.count; ++i) {
        Emit(children[static_cast<size_t>(node.first + i)], program);
    }
    program.push_back({kApply, at, 0.0});
}

int TransformVar::ApplyPlan::Add(FunctionTree* tree) {
    int const at = static_cast<int>(nodes.size());
    nodes.emplace_back();
    if (tree == nullptr) {
        return at;
    }
    // Filled in a local: adding the children moves the nodes.
    Node node;
    node.tree = tree;
    node.parentFn = ParentFunction(tree);
    ApplyNodeStats const& stats = tree->GetNodeStats();
    if (tree->IsLeaf()) {
        node.kind = stats.IsConstNode() ? kConstant : kField;
        if (node.kind == kConstant) {
            node.constant = stats.GetValue() != nullptr ? stats.GetValue()->GetDouble() : detail::kSysmis;
        } else if (stats.GetVariable() != nullptr) {
            Resolve(node);
        }
        nodes[static_cast<size_t>(at)] = std::move(node);
        return at;
    }
    node.fn = stats.GetTransformFunction();
    node.classes = Classify(node.fn);
    node.kind = IsNumbersOnly(node.fn, node.classes) ? kNumeric : kGeneral;
    node.stats = &stats;
    node.count = tree->GetChildCount();
    node.first = static_cast<int>(children.size());
    if (node.kind == kNumeric) {
        node.numbers.reserve(static_cast<size_t>(node.count));
        node.asMissing = stats.GetInvalidValueTreatmentMethod() == ApplyNodeStats::IVT_AS_MISSING;
        node.mapsMissing = stats.GetRecodeMissValueRep() != nullptr || stats.GetDefaultValue() != nullptr;
        node.binary = node.count == 2 ? BinaryOperator(node.fn) : kNoOperator;
    }
    children.resize(children.size() + static_cast<size_t>(node.count));
    for (int i = 0; i < node.count; ++i) {
        int const child = Add(tree->GetChildAt(i));
        children[static_cast<size_t>(node.first + i)] = child;
    }
    nodes[static_cast<size_t>(at)] = std::move(node);
    return at;
}

void TransformVar::ApplyPlan::Resolve(Node& node) {
    ApplyNodeStats const& stats = node.tree->GetNodeStats();
    ScoreDictVar const* variable = stats.GetVariable();
    if (variable == nullptr) {
        return;
    }
    node.resolved = true;
    node.variable = variable;
    node.index = stats.GetVarIndex();
    node.mapped = stats.GetFieldrefRecodeMissValueRep();
    // Only the plain class is known to judge a number by its missing-value set alone.
    node.plainNumber = typeid(*variable) == typeid(DictVar) &&
                       variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR &&
                       variable->GetMissingValues() == nullptr;
}

}  // namespace QXVantry_920
