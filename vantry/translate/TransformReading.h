// Small pieces shared by the readers of derived fields. Internal to the library.
#pragma once

#include <memory>
#include <string>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/transform/FieldAccess.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ScoreDictionary;
class ScoreDictVar;
class ScoreValue;
class TransformVar;

// As FindVariable (vantry/transform/FieldAccess.h), the data dictionary before the derived fields read
// so far; a field in neither fails 260125 with its name.
ScoreDictVar const* RequireVariable(std::string const& name, ScoreDictionary const* dictionary,
                                    ScoreDictionary const* transformations);

// The derived variable that an expression reader fills. The readers take a ScoreDictVar for the
// plug-ins' sake, but only a derived variable can hold an expression: anything else fails 260221.
TransformVar* AsDerivedVariable(ScoreDictVar* variable);

// Whether the element has the attribute at all (an empty value counts as present).
bool HasAttribute(XERCES_CPP_NAMESPACE::DOMElement const* element, char const* name);

// The text of an element's first child node, or null when it has no child node.
XMLCh const* FirstChildText(XERCES_CPP_NAMESPACE::DOMElement const* element);

}  // namespace QXVantry_920
