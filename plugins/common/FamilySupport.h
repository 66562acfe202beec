// Small helpers the family readers share.
#pragma once

#include <string>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

// Whether the node is an element of that name.
bool IsElementNamed(XERCES_CPP_NAMESPACE::DOMNode const* node, char const* name);

// The whole text read as a number; false for an empty text or one with anything after the number.
bool ReadWholeNumber(std::string const& text, double& number);

// Releases a node created for a reading alone (a wrapper element), whatever happens.
struct ReleaseNode {
    void operator()(XERCES_CPP_NAMESPACE::DOMNode* node) const;
};

// Category texts match exactly, or as numbers when both read as numbers ("1" and "1.0").
bool SameCategory(std::string const& a, std::string const& b);

}  // namespace QXVantry_920
