// What the inspection command reads from a model document itself rather than from the model object:
// the model family as the factory chooses it, and the model element's mining schema, targets and
// output fields, each element as its attributes in document order.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vantry_tool {

// One element: its "name" or "field" attribute, all its attributes, and its children of interest (a
// target's values).
struct OutlineEntry {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<OutlineEntry> children;
};

struct DocumentOutline {
    std::string family;
    std::vector<OutlineEntry> miningFields;
    std::vector<OutlineEntry> targets;
    std::vector<OutlineEntry> outputs;
};

// Reads the outline of the document file; modelNames is the catalogue that chooses the family. Needs
// the XML parser started (as a scoring session does). An unreadable document gives an empty outline.
DocumentOutline ReadOutline(std::string const& path, std::vector<std::string> const& modelNames);

}  // namespace vantry_tool
