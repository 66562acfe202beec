// Reads a "TreeModel" element into a CompiledTree: the model's strategies, then the nodes breadth-first
// (without recursion, so that a deep document cannot exhaust the stack), each with its condition read
// by the library's predicate readers, its score, record count, score distribution and id.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

#include "plugins/TreeModel/CompiledTree.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ModelContext;

class TreeCompiler {
  public:
    // Conditions are read through the context, over the model's inputs and derived fields. The
    // categories of a classification start with `categories`; scores and distribution values not among
    // them are added in document order. Throws VTException for a document that is not a usable tree;
    // nothing is leaked.
    static std::unique_ptr<CompiledTree> Compile(XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                                 ModelContext& context, bool classification,
                                                 std::vector<std::string> const& categories);
};

}  // namespace QXVantry_920
