#include "plugins/common/FamilySupport.h"

#include <cstdlib>

#include <xercesc/dom/DOMNode.hpp>

#include "vantry/translate/BaseTranslator.h"

namespace QXVantry_920 {

bool IsElementNamed(XERCES_CPP_NAMESPACE::DOMNode const* node, char const* name) {
    return node != nullptr && node->getNodeType() == XERCES_CPP_NAMESPACE::DOMNode::ELEMENT_NODE &&
           BaseTranslator::IsEqual(node->getNodeName(), name);
}

void ReleaseNode::operator()(XERCES_CPP_NAMESPACE::DOMNode* node) const {
    node->release();
}

bool ReadWholeNumber(std::string const& text, double& number) {
    char* end = nullptr;
    double const value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != 0) {
        return false;
    }
    number = value;
    return true;
}

bool SameCategory(std::string const& a, std::string const& b) {
    double x = 0.0;
    double y = 0.0;
    return a == b || (ReadWholeNumber(a, x) && ReadWholeNumber(b, y) && x == y);
}

}  // namespace QXVantry_920
