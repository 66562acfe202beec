#include "tools/inspect/DocumentOutline.h"

#include <memory>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLString.hpp>

XERCES_CPP_NAMESPACE_USE

namespace vantry_tool {

namespace {

std::string Narrow(XMLCh const* text) {
    if (text == nullptr) {
        return std::string();
    }
    char* narrow = XMLString::transcode(text);
    std::string result = narrow != nullptr ? narrow : "";
    XMLString::release(&narrow);
    return result;
}

// An element's name without its namespace prefix.
std::string LocalName(DOMNode const* node) {
    std::string const name = Narrow(node->getNodeName());
    std::string::size_type const colon = name.find(':');
    return colon == std::string::npos ? name : name.substr(colon + 1);
}

std::vector<DOMElement*> ChildElements(DOMNode const* parent, char const* name) {
    std::vector<DOMElement*> found;
    if (parent == nullptr) {
        return found;
    }
    for (DOMNode* child = parent->getFirstChild(); child != nullptr; child = child->getNextSibling()) {
        if (child->getNodeType() == DOMNode::ELEMENT_NODE && LocalName(child) == name) {
            found.push_back(static_cast<DOMElement*>(child));
        }
    }
    return found;
}

OutlineEntry EntryOf(DOMElement const* element, char const* nameAttribute) {
    OutlineEntry entry;
    DOMNamedNodeMap const* attributes = element->getAttributes();
    for (XMLSize_t i = 0; attributes != nullptr && i < attributes->getLength(); ++i) {
        DOMNode const* attribute = attributes->item(i);
        std::string const key = Narrow(attribute->getNodeName());
        std::string const value = Narrow(attribute->getNodeValue());
        if (key == nameAttribute) {
            entry.name = value;
        } else if (key.rfind("xmlns", 0) != 0) {
            entry.attributes.emplace_back(key, value);
        }
    }
    return entry;
}

// The entries of the list element's items, e.g. the "MiningField"s of a "MiningSchema".
std::vector<OutlineEntry> Entries(DOMElement const* model, char const* list, char const* item,
                                  char const* nameAttribute) {
    std::vector<OutlineEntry> entries;
    for (DOMElement* holder : ChildElements(model, list)) {
        for (DOMElement* element : ChildElements(holder, item)) {
            entries.push_back(EntryOf(element, nameAttribute));
            if (std::string(item) == "Target") {
                for (DOMElement* value : ChildElements(element, "TargetValue")) {
                    entries.back().children.push_back(EntryOf(value, "value"));
                }
            }
        }
    }
    return entries;
}

// The family as the factory chooses it: by the root for "Tree" and for a legacy document with a
// "regression-model", else the first catalogue name that occurs as an element anywhere in the document.
DOMElement* FindModel(DOMElement* root, std::vector<std::string> const& modelNames, std::string& family) {
    std::string const rootName = Narrow(root->getTagName());
    if (rootName == "Tree") {
        family = "TreeModel";
        return root;
    }
    if (rootName == "krom-ml" && root->getElementsByTagName(u"regression-model")->getLength() > 0) {
        family = "GeneralRegressionModel";
        return root;
    }
    for (std::string const& name : modelNames) {
        XMLCh* tag = XMLString::transcode(name.c_str());
        DOMNodeList* elements = root->getElementsByTagName(tag);
        XMLString::release(&tag);
        if (elements != nullptr && elements->getLength() > 0) {
            family = name;
            return static_cast<DOMElement*>(elements->item(0));
        }
    }
    family = rootName;
    return nullptr;
}

}  // namespace

DocumentOutline ReadOutline(std::string const& path, std::vector<std::string> const& modelNames) {
    DocumentOutline outline;
    // The document was read once already by the library, which fetches nothing from outside it; this
    // second reading of the same file must not either, nor expand entities without bound.
    SecurityManager security;
    security.setEntityExpansionLimit(10000);
    auto parser = std::make_unique<XercesDOMParser>();
    parser->setValidationScheme(XercesDOMParser::Val_Never);
    parser->setDoNamespaces(false);
    parser->setLoadExternalDTD(false);
    parser->setDisableDefaultEntityResolution(true);
    parser->setSecurityManager(&security);
    try {
        parser->parse(path.c_str());
    } catch (...) {
        return outline;
    }
    DOMDocument* document = parser->getDocument();
    DOMElement* root = document != nullptr ? document->getDocumentElement() : nullptr;
    if (root == nullptr) {
        return outline;
    }
    DOMElement const* model = FindModel(root, modelNames, outline.family);
    outline.miningFields = Entries(model, "MiningSchema", "MiningField", "name");
    outline.targets = Entries(model, "Targets", "Target", "field");
    outline.outputs = Entries(model, "Output", "OutputField", "name");
    return outline;
}

}  // namespace vantry_tool
