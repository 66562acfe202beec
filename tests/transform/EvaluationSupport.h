// Hand-built derived variables, dictionaries, records and function trees for the evaluation tests.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

namespace evaltest {

using namespace QXVantry_920;
using TD = TransformationDictionary;

inline double const kSysmis = NumericValue::GetSysmisValue();

inline NumericValue* Num(double x) {
    return new NumericValue(x);
}

inline StringValue* Text(std::string const& text) {
    return new StringValue(text);
}

// An input record whose values are given by name, in order.
inline std::unique_ptr<CaseRecord> Record(std::initializer_list<std::pair<char const*, ScoreValue*>> values) {
    auto record = std::make_unique<CaseRecord>();
    for (auto const& [name, value] : values) {
        record->Add(name, value);
    }
    return record;
}

// A data dictionary of plain variables.
inline std::unique_ptr<BaseDictionary> Inputs(
    std::initializer_list<std::pair<char const*, ScoreDictVar::VariableType>> vars) {
    auto dictionary = std::make_unique<BaseDictionary>();
    for (auto const& [name, type] : vars) {
        dictionary->AddVar(name, new DictVar(name, type));
    }
    return dictionary;
}

inline TransformVar* Derived(std::string const& name, ScoreDictVar::VariableType type,
                             TD::TransExpression expr, std::string const& field = std::string()) {
    auto* variable = new TransformVar(name, type);
    variable->AddFieldNameAndTransExpression(field, expr);
    return variable;
}

// A derived variable computed by a function tree.
inline std::unique_ptr<TransformVar> Applied(FunctionTree* root,
                                             ScoreDictVar::VariableType type = ScoreDictVar::kNUMERIC_VAR) {
    std::unique_ptr<TransformVar> variable(Derived("a", type, TD::TE_APPLY));
    variable->SetRoot(root);
    return variable;
}

// Adds the variables in document order and fixes the record layout.
inline void Fill(TD& dictionary, std::initializer_list<TransformVar*> vars) {
    for (TransformVar* variable : vars) {
        dictionary.AddVar(variable->GetName(), variable);
        dictionary.AddDerievedVarName(variable->GetName());
    }
    dictionary.SetUpDerivedCaseRecord();
}

inline double NumberOf(ScoreValue const* value) {
    return value != nullptr ? value->GetDouble() : -1.0;
}

inline std::string TextOf(ScoreValue const* value) {
    return value != nullptr ? ScoreValue::TextOf(*value) : std::string("<null>");
}

// Function-tree nodes; every node gets its own ID, since nodes are told apart by ID alone.
inline std::string NextID() {
    static int next = 0;
    return "n" + std::to_string(++next);
}

inline FunctionTreeImp* Leaf(std::string const& field, ScoreValue* fieldMapMissing = nullptr) {
    auto* node = new FunctionTreeImp(false);
    ApplyNodeStats stats;
    stats.SetNodeID(NextID());
    stats.SetParameterName(field);
    stats.SetFieldrefRecodeMissValueTo(fieldMapMissing);
    node->OwnValue(fieldMapMissing);
    node->SetNodeStats(stats);
    return node;
}

inline FunctionTreeImp* Const(ScoreValue* value) {
    auto* node = new FunctionTreeImp(false);
    ApplyNodeStats stats;
    stats.SetNodeID(NextID());
    stats.SetValue(value);
    stats.SetConstNode(true);
    node->OwnValue(value);
    node->SetNodeStats(stats);
    return node;
}

struct ApplyOptions {
    ScoreValue* mapMissingTo = nullptr;
    ScoreValue* defaultValue = nullptr;
    ApplyNodeStats::InvalidValueTreatmentMethod invalid = ApplyNodeStats::IVT_UNSET;
};

inline FunctionTreeImp* Fn(TD::TransformFunction function, std::initializer_list<FunctionTree*> children,
                           ApplyOptions options = {}) {
    auto* node = new FunctionTreeImp(true);
    ApplyNodeStats stats;
    stats.SetNodeID(NextID());
    stats.SetTransformFunction(function);
    stats.SetRecodeMissValueTo(options.mapMissingTo);
    stats.SetDefaultValue(options.defaultValue);
    stats.SetInvalidValueTreatmentMethod(options.invalid);
    node->OwnValue(options.mapMissingTo);
    node->OwnValue(options.defaultValue);
    node->SetNodeStats(stats);
    for (FunctionTree* child : children) {
        node->Add(child);
    }
    return node;
}

}  // namespace evaltest
