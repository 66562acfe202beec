#include "vantry/transform/FunctionTree.h"

#include <algorithm>
#include <map>
#include <ostream>

#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

// The navigation below works on the abstract node, so that a tree may mix implementations. Slots that
// Remove (int) left empty are passed over.

// The first non-null child from index on, stepping by step; null when there is none.
FunctionTree* ChildFrom(FunctionTree const* node, int index, int step) {
    int const count = node->GetChildCount();
    for (int i = index; i >= 0 && i < count; i += step) {
        FunctionTree const* child = node->GetChildAt(i);
        if (child != nullptr) {
            return const_cast<FunctionTree*>(child);
        }
    }
    return nullptr;
}

FunctionTree* FirstChild(FunctionTree const* node) {
    return ChildFrom(node, 0, 1);
}

FunctionTree* LastChild(FunctionTree const* node) {
    return ChildFrom(node, node->GetChildCount() - 1, -1);
}

// The neighbour of child among node's children in the direction of step; null for an unknown child.
FunctionTree* Neighbour(FunctionTree const* node, FunctionTree const* child, int step) {
    int const index = node->GetIndex(child);
    return index < 0 ? nullptr : ChildFrom(node, index + step, step);
}

FunctionTree* Sibling(FunctionTree const* node, int step) {
    FunctionTree const* parent = node->GetParent();
    return parent == nullptr ? nullptr : Neighbour(parent, node, step);
}

FunctionTree const* FirstLeaf(FunctionTree const* node) {
    for (FunctionTree const* child = FirstChild(node); child != nullptr; child = FirstChild(node)) {
        node = child;
    }
    return node;
}

FunctionTree const* LastLeaf(FunctionTree const* node) {
    for (FunctionTree const* child = LastChild(node); child != nullptr; child = LastChild(node)) {
        node = child;
    }
    return node;
}

char const* FunctionName(TransformationDictionary::TransformFunction function) {
    switch (function) {
        case TransformationDictionary::TF_PLUS:
            return "+";
        case TransformationDictionary::TF_MINUS:
            return "-";
        case TransformationDictionary::TF_MULTIPLY:
            return "*";
        case TransformationDictionary::TF_ABS:
            return "abs";
        case TransformationDictionary::TF_LN:
            return "ln";
        case TransformationDictionary::TF_SQRT:
            return "sqrt";
        default:
            return nullptr;
    }
}

}  // namespace

FunctionTree::~FunctionTree() = default;

FunctionTreeImp::FunctionTreeImp(bool allowsChildren) : fParent(nullptr), fAllowsChildren(allowsChildren) {}

FunctionTreeImp::~FunctionTreeImp() {
    for (FunctionTree* child : fChildren) {
        delete child;
    }
}

bool FunctionTreeImp::operator==(FunctionTree const& other) const {
    return fStats.GetNodeID() == other.GetNodeStats().GetNodeID();
}

FunctionTree* FunctionTreeImp::Clone() const {
    auto clone = std::make_unique<FunctionTreeImp>(fAllowsChildren);
    clone->fStats = fStats;
    // The clone owns copies of this node's values, and its stats point at those copies.
    std::map<ScoreValue const*, ScoreValue*> copies;
    for (std::unique_ptr<ScoreValue> const& value : fOwnedValues) {
        clone->fOwnedValues.emplace_back(value->Clone());
        copies[value.get()] = clone->fOwnedValues.back().get();
    }
    auto const copyOf = [&copies](ScoreValue* value) {
        auto const found = copies.find(value);
        return found == copies.end() ? value : found->second;
    };
    ApplyNodeStats& stats = clone->fStats;
    stats.SetValue(copyOf(stats.GetValue()));
    stats.SetRecodeMissValueTo(copyOf(stats.GetRecodeMissValueRep()));
    stats.SetDefaultValue(copyOf(stats.GetDefaultValue()));
    stats.SetFieldrefRecodeMissValueTo(copyOf(stats.GetFieldrefRecodeMissValueRep()));
    for (FunctionTree const* child : fChildren) {
        if (child != nullptr) {
            std::unique_ptr<FunctionTree> childClone(child->Clone());
            childClone->SetParent(clone.get());
            clone->fChildren.push_back(childClone.release());
        }
    }
    return clone.release();
}

void FunctionTreeImp::Insert(FunctionTree* child, int /*index*/) {
    if (!fAllowsChildren || child == nullptr || IsNodeAncestor(child)) {
        return;
    }
    if (FunctionTree* oldParent = child->GetParent()) {
        oldParent->Remove(child);
    }
    child->SetParent(this);
    fChildren.push_back(child);
}

void FunctionTreeImp::Add(FunctionTree* child) {
    int const count = GetChildCount();
    Insert(child, child != nullptr && child->GetParent() == this ? count - 1 : count);
}

// Detaches the child of the same identity. When it is the very node given, the caller keeps it; a
// different node that merely shares the ID belongs to nobody once out of the tree, so it is deleted.
void FunctionTreeImp::Remove(FunctionTree* child) {
    if (child == nullptr) {
        return;
    }
    auto slot = std::find(fChildren.begin(), fChildren.end(), child);
    if (slot == fChildren.end()) {
        int const index = GetIndex(child);
        if (index < 0) {
            return;
        }
        slot = fChildren.begin() + index;
    }
    FunctionTree* removed = *slot;
    fChildren.erase(slot);
    if (removed == child) {
        child->SetParent(nullptr);
    } else {
        delete removed;
    }
}

void FunctionTreeImp::Remove(int index) {
    FunctionTree const* target = GetChildAt(index);
    if (target == nullptr) {
        return;
    }
    std::string const id = target->GetNodeStats().GetNodeID();
    for (FunctionTree*& child : fChildren) {
        if (child != nullptr && child->GetNodeStats().GetNodeID() == id) {
            delete child;
            child = nullptr;
        }
    }
}

void FunctionTreeImp::RemoveFromParent() {
    if (fParent != nullptr) {
        fParent->Remove(this);
    }
}

void FunctionTreeImp::RemoveAllChildren() {
    std::vector<FunctionTree*> children;
    children.swap(fChildren);
    for (FunctionTree* child : children) {
        delete child;
    }
}

bool FunctionTreeImp::IsLeaf() const {
    return fChildren.empty();
}

void FunctionTreeImp::SetNodeStats(ApplyNodeStats const& stats) {
    fStats = stats;
}

void FunctionTreeImp::SetParent(FunctionTree* parent) {
    fParent = parent;
}

ApplyNodeStats const& FunctionTreeImp::GetNodeStats() const {
    return fStats;
}

FunctionTree* FunctionTreeImp::GetChildAt(int index) {
    return index < 0 || index >= GetChildCount() ? nullptr : fChildren[static_cast<std::size_t>(index)];
}

FunctionTree const* FunctionTreeImp::GetChildAt(int index) const {
    return const_cast<FunctionTreeImp*>(this)->GetChildAt(index);
}

int FunctionTreeImp::GetChildCount() const {
    return static_cast<int>(fChildren.size());
}

FunctionTree* FunctionTreeImp::GetParent() const {
    return fParent;
}

int FunctionTreeImp::GetIndex(FunctionTree const* child) const {
    if (child == nullptr) {
        return -1;
    }
    std::string const& id = child->GetNodeStats().GetNodeID();
    for (std::size_t i = 0; i < fChildren.size(); ++i) {
        if (fChildren[i] != nullptr && fChildren[i]->GetNodeStats().GetNodeID() == id) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool FunctionTreeImp::GetAllowsChildren() const {
    return fAllowsChildren;
}

void FunctionTreeImp::Display(std::ostream& out) const {
    out << "Start FunctionTree Display:\n";
    out << "Node ID = " << fStats.GetNodeID() << "\n";
    TransformationDictionary::TransformFunction const function = fStats.GetTransformFunction();
    if (function < TransformationDictionary::TF_UNKNOWN) {
        out << "Transformation function: ";
        if (char const* name = FunctionName(function)) {
            out << name;
        } else {
            out << "code =" << static_cast<int>(function);
        }
    }
    out << "\n";
    if (!fStats.GetParameterName().empty()) {
        out << "  Parameter Name: " << fStats.GetParameterName() << "\n";
    }
    out << "  Level = " << GetLevel() << "\n\n";
    if (!fChildren.empty()) {
        out << "Number of children = " << GetChildCount() << "\n";
        for (FunctionTree const* child : fChildren) {
            if (child != nullptr) {
                child->Display(out);
            }
        }
    }
    out << "End FunctionTree Display. \n\n";
}

std::vector<FunctionTree*> FunctionTreeImp::Children() const {
    return fChildren;
}

FunctionTree const* FunctionTreeImp::GetRoot() const {
    FunctionTree const* node = this;
    while (node->GetParent() != nullptr) {
        node = node->GetParent();
    }
    return node;
}

void FunctionTreeImp::OwnValue(ScoreValue* value) {
    if (value == nullptr) {
        return;
    }
    for (std::unique_ptr<ScoreValue> const& owned : fOwnedValues) {
        if (owned.get() == value) {
            return;
        }
    }
    fOwnedValues.emplace_back(value);
}

void FunctionTreeImp::SetAllowsChildren(bool allowsChildren) {
    fAllowsChildren = allowsChildren;
}

FunctionTree* FunctionTreeImp::GetFirstChild() const {
    return FirstChild(this);
}

FunctionTree* FunctionTreeImp::GetLastChild() const {
    return LastChild(this);
}

FunctionTree* FunctionTreeImp::GetChildBefore(FunctionTree const* child) const {
    return Neighbour(this, child, -1);
}

FunctionTree* FunctionTreeImp::GetChildAfter(FunctionTree const* child) const {
    return Neighbour(this, child, 1);
}

FunctionTree* FunctionTreeImp::GetNextSibling() const {
    return Sibling(this, 1);
}

FunctionTree* FunctionTreeImp::GetPreviousSibling() const {
    return Sibling(this, -1);
}

int FunctionTreeImp::GetSiblingCount() const {
    return fParent == nullptr ? 1 : fParent->GetChildCount();
}

FunctionTree const* FunctionTreeImp::GetFirstLeaf() const {
    return FirstLeaf(this);
}

FunctionTree const* FunctionTreeImp::GetLastLeaf() const {
    return LastLeaf(this);
}

FunctionTree const* FunctionTreeImp::GetNextLeaf() const {
    for (FunctionTree const* node = this; node->GetParent() != nullptr; node = node->GetParent()) {
        if (FunctionTree const* sibling = Sibling(node, 1)) {
            return FirstLeaf(sibling);
        }
    }
    return nullptr;
}

FunctionTree const* FunctionTreeImp::GetPreviousLeaf() const {
    for (FunctionTree const* node = this; node->GetParent() != nullptr; node = node->GetParent()) {
        if (FunctionTree const* sibling = Sibling(node, -1)) {
            return LastLeaf(sibling);
        }
    }
    return nullptr;
}

// Pre-order: the first child, else the next sibling of this node or of its nearest ancestor that has one.
FunctionTree const* FunctionTreeImp::GetNextNode() const {
    if (FunctionTree const* child = FirstChild(this)) {
        return child;
    }
    for (FunctionTree const* node = this; node->GetParent() != nullptr; node = node->GetParent()) {
        if (FunctionTree const* sibling = Sibling(node, 1)) {
            return sibling;
        }
    }
    return nullptr;
}

FunctionTree const* FunctionTreeImp::GetPreviousNode() const {
    if (fParent == nullptr) {
        return nullptr;
    }
    if (FunctionTree const* sibling = Sibling(this, -1)) {
        return LastLeaf(sibling);
    }
    return fParent;
}

int FunctionTreeImp::GetLevel() const {
    int level = 0;
    for (FunctionTree const* node = fParent; node != nullptr; node = node->GetParent()) {
        ++level;
    }
    return level;
}

bool FunctionTreeImp::IsRoot() const {
    return fParent == nullptr;
}

bool FunctionTreeImp::IsNodeChild(FunctionTree const* node) const {
    return GetIndex(node) >= 0;
}

bool FunctionTreeImp::IsNodeSibling(FunctionTree const* node) const {
    if (node == nullptr) {
        return false;
    }
    return node == this || (fParent != nullptr && node->GetParent() == fParent);
}

// This node itself counts as its own ancestor, so that a node cannot be inserted below itself.
bool FunctionTreeImp::IsNodeAncestor(FunctionTree const* node) const {
    if (node == nullptr) {
        return false;
    }
    for (FunctionTree const* ancestor = this; ancestor != nullptr; ancestor = ancestor->GetParent()) {
        if (ancestor == node) {
            return true;
        }
    }
    return false;
}

bool FunctionTreeImp::IsNodeDescendant(FunctionTree const* node) const {
    for (FunctionTree const* ancestor = node; ancestor != nullptr; ancestor = ancestor->GetParent()) {
        if (ancestor == this) {
            return true;
        }
    }
    return false;
}

}  // namespace QXVantry_920
