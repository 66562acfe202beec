#include "tools/inspect/ExpressionText.h"

#include <map>

#include "tools/score/RowScorer.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreValue.h"

namespace vantry_tool {

using QXVantry_920::TransformationDictionary;

namespace {

using Function = TransformationDictionary::TransformFunction;

// The function texts of "Apply" elements, as the document reader knows them: its name for messages where
// it has one, else the text it reads.
class FunctionNames : private QXVantry_920::PMMLTranslator {
  public:
    std::map<Function, std::string> Table() {
        InitFunctionMap();
        std::map<Function, std::string> table;
        for (auto const& entry : fFunctionMap) {
            table.emplace(entry.second, entry.first);
        }
        for (auto& entry : table) {
            std::string const name = ToString(entry.first);
            if (!name.empty() && name[0] != '<') {
                entry.second = name;
            }
        }
        return table;
    }
};

std::string FunctionName(Function function) {
    // Made once, while the parser is up; the translator that reads the table goes at once.
    static std::map<Function, std::string> const names = FunctionNames().Table();
    auto const found = names.find(function);
    return found != names.end() ? found->second : "function" + std::to_string(static_cast<int>(function));
}

bool IsInfix(TransformationDictionary::TransformFunction function) {
    return function == TransformationDictionary::TF_PLUS || function == TransformationDictionary::TF_MINUS ||
           function == TransformationDictionary::TF_MULTIPLY ||
           function == TransformationDictionary::TF_DIVIDE;
}

std::string Quoted(std::string const& text) {
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') {
            quoted.push_back('\\');
        }
        quoted.push_back(c);
    }
    return quoted + "\"";
}

std::string ConstantText(QXVantry_920::ScoreValue const* value) {
    if (value == nullptr) {
        return "missing";
    }
    std::string const text = CellText(value);
    return QXVantry_920::ScoreValue::TypeOf(*value) == QXVantry_920::ScoreValue::STRING_VALUE ? Quoted(text)
                                                                                              : text;
}

}  // namespace

std::string ExpressionOf(QXVantry_920::FunctionTree const& node) {
    QXVantry_920::ApplyNodeStats const& stats = node.GetNodeStats();
    if (node.IsLeaf() && !node.GetAllowsChildren()) {
        if (stats.IsConstNode() || stats.GetValue() != nullptr) {
            return ConstantText(stats.GetValue());
        }
        return stats.GetParameterName();
    }
    std::string const name = FunctionName(stats.GetTransformFunction());
    std::string text;
    int const count = node.GetChildCount();
    bool const infix = IsInfix(stats.GetTransformFunction()) && count == 2;
    for (int i = 0; i < count; ++i) {
        QXVantry_920::FunctionTree const* child = node.GetChildAt(i);
        if (i > 0) {
            text += infix ? " " + name + " " : ", ";
        }
        text += child != nullptr ? ExpressionOf(*child) : "?";
    }
    return infix ? "(" + text + ")" : name + "(" + text + ")";
}

std::string ExpressionOf(QXVantry_920::TransformVar const& variable) {
    std::string const& field = variable.GetFieldName();
    switch (variable.GetTransExpression()) {
        case TransformationDictionary::TE_APPLY:
            return variable.GetRoot() != nullptr ? ExpressionOf(*variable.GetRoot()) : "Apply()";
        case TransformationDictionary::TE_CONSTANT:
            return "Constant(" + Quoted(variable.GetConstString()) + ")";
        case TransformationDictionary::TE_FIELD_REF:
            return "FieldRef(" + field + ")";
        case TransformationDictionary::TE_NORM_CONTINUOUS:
            return "NormContinuous(" + field + ")";
        case TransformationDictionary::TE_NORM_DISCRETE:
            return "NormDiscrete(" + field + ")";
        case TransformationDictionary::TE_DISCRETIZE:
            return "Discretize(" + field + ")";
        case TransformationDictionary::TE_MAP_VALUES:
            return "MapValues(" + field + ")";
        case TransformationDictionary::TE_LAG:
            return "Lag(" + field + ")";
        default:
            return field.empty() ? std::string() : field;
    }
}

}  // namespace vantry_tool
