// Derived fields as readable expressions: an "Apply" tree as nested calls (arithmetic written infix), the
// other kinds of derived field by what they do and to which field.
#pragma once

#include <string>

namespace QXVantry_920 {
class FunctionTree;
class TransformVar;
}  // namespace QXVantry_920

namespace vantry_tool {

// "(x * 2)", "if(isMissing(age), 0, age)", "\"north\"".
std::string ExpressionOf(QXVantry_920::FunctionTree const& node);

// The expression of a derived field: "(x * 2)", "FieldRef(age)", "Discretize(age)", "Constant(7)".
std::string ExpressionOf(QXVantry_920::TransformVar const& variable);

}  // namespace vantry_tool
