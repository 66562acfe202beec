#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "vantry/transform/FunctionTree.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;
using TD = TransformationDictionary;

namespace {

FunctionTreeImp* Node(std::string const& id, TD::TransformFunction function = TD::TF_UNKNOWN,
                      bool allowsChildren = true, std::string const& parameter = "") {
    auto* node = new FunctionTreeImp(allowsChildren);
    ApplyNodeStats stats;
    stats.SetNodeID(id);
    stats.SetTransformFunction(function);
    stats.SetParameterName(parameter);
    node->SetNodeStats(stats);
    return node;
}

std::string IdAt(FunctionTree const& node, int index) {
    FunctionTree const* child = node.GetChildAt(index);
    return child == nullptr ? "null" : child->GetNodeStats().GetNodeID();
}

}  // namespace

TEST(ApplyNodeStatsTest, DefaultsAndArrays) {
    ApplyNodeStats stats;
    EXPECT_EQ(stats.GetTransformFunction(), TD::TF_UNKNOWN);
    EXPECT_EQ(stats.GetVarIndex(), -1);
    EXPECT_EQ(stats.GetInvalidValueTreatmentMethod(), ApplyNodeStats::IVT_UNSET);
    EXPECT_EQ(stats.GetValue(), nullptr);
    EXPECT_FALSE(stats.IsConstNode());
    stats.AddArray({1.0, 2.0});
    EXPECT_EQ(stats.GetNumberOfArray(), 1u);
    EXPECT_EQ(stats.GetArray(0).size(), 2u);
    EXPECT_TRUE(stats.GetArray(1).empty());
    EXPECT_TRUE(stats.GetArray(-1).empty());
}

TEST(FunctionTreeTest, InsertAppendsAndRefusesWhatWouldBreakTheTree) {
    std::unique_ptr<FunctionTreeImp> root(Node("0", TD::TF_PLUS));
    FunctionTreeImp* a = Node("1");
    FunctionTreeImp* b = Node("2");
    root->Insert(a, 0);
    root->Insert(b, 0);  // the index does not choose the place
    EXPECT_EQ(IdAt(*root, 0), "1");
    EXPECT_EQ(IdAt(*root, 1), "2");
    EXPECT_EQ(b->GetParent(), root.get());
    EXPECT_EQ(b->GetLevel(), 1);
    EXPECT_EQ(b->GetRoot(), root.get());

    root->Insert(nullptr, 0);
    a->Insert(root.get(), 0);  // an ancestor
    a->Insert(a, 0);           // itself
    std::unique_ptr<FunctionTreeImp> leaf(Node("9", TD::TF_UNKNOWN, false));
    std::unique_ptr<FunctionTreeImp> orphan(Node("10"));
    leaf->Insert(orphan.get(), 0);
    EXPECT_EQ(root->GetChildCount(), 2);
    EXPECT_EQ(a->GetChildCount(), 0);
    EXPECT_TRUE(leaf->IsLeaf());

    // Add of a present child moves it to the end; Insert into another node detaches it first.
    root->Add(a);
    EXPECT_EQ(IdAt(*root, 0), "2");
    EXPECT_EQ(IdAt(*root, 1), "1");
    b->Insert(a, 0);
    EXPECT_EQ(root->GetChildCount(), 1);
    EXPECT_EQ(a->GetParent(), b);
    EXPECT_EQ(a->GetLevel(), 2);
}

TEST(FunctionTreeTest, IdentityIsTheNodeId) {
    std::unique_ptr<FunctionTreeImp> root(Node("0"));
    root->Add(Node("1"));
    root->Add(Node("2"));
    std::unique_ptr<FunctionTreeImp> twin(Node("2"));
    EXPECT_TRUE(*twin == *root->GetChildAt(1));
    EXPECT_EQ(root->GetIndex(twin.get()), 1);
    EXPECT_TRUE(root->IsNodeChild(twin.get()));
    EXPECT_EQ(root->GetIndex(nullptr), -1);
    EXPECT_EQ(root->GetChildAt(2), nullptr);
    EXPECT_EQ(root->GetChildAt(-1), nullptr);

    // Removing by a twin drops the tree's own node (which nobody else holds) and keeps the twin.
    root->Remove(twin.get());
    EXPECT_EQ(root->GetChildCount(), 1);
    EXPECT_EQ(root->GetIndex(twin.get()), -1);
}

TEST(FunctionTreeTest, RemoveByIndexLeavesNullSlots) {
    std::unique_ptr<FunctionTreeImp> root(Node("0"));
    root->Add(Node("1"));
    root->Add(Node("2"));
    root->Add(Node("3"));
    root->Remove(1);
    EXPECT_EQ(root->GetChildCount(), 3);
    EXPECT_EQ(IdAt(*root, 1), "null");
    EXPECT_EQ(root->GetChildAfter(root->GetChildAt(0)), root->GetChildAt(2));
    root->Remove(1);  // already empty: nothing happens
    root->Remove(7);

    FunctionTree* last = root->GetChildAt(2);
    last->RemoveFromParent();
    EXPECT_EQ(last->GetParent(), nullptr);
    EXPECT_EQ(root->GetChildCount(), 2);
    delete last;

    root->RemoveAllChildren();
    EXPECT_EQ(root->GetChildCount(), 0);
}

TEST(FunctionTreeTest, NavigatesInPreOrder) {
    std::unique_ptr<FunctionTreeImp> root(Node("0"));
    FunctionTreeImp* inner = Node("1");
    FunctionTreeImp* x = Node("2");
    FunctionTreeImp* y = Node("3");
    FunctionTreeImp* z = Node("4");
    root->Add(inner);
    inner->Add(x);
    inner->Add(y);
    root->Add(z);
    EXPECT_EQ(root->GetFirstLeaf(), x);
    EXPECT_EQ(root->GetLastLeaf(), z);
    EXPECT_EQ(y->GetNextLeaf(), z);
    EXPECT_EQ(z->GetPreviousLeaf(), y);
    EXPECT_EQ(y->GetNextNode(), z);
    EXPECT_EQ(z->GetPreviousNode(), y);
    EXPECT_EQ(x->GetPreviousNode(), inner);
    EXPECT_EQ(x->GetNextSibling(), y);
    EXPECT_EQ(x->GetPreviousSibling(), nullptr);
    EXPECT_EQ(x->GetSiblingCount(), 2);
    EXPECT_TRUE(x->IsNodeSibling(y));
    EXPECT_FALSE(x->IsNodeSibling(z));
    EXPECT_TRUE(root->IsNodeDescendant(y));
    EXPECT_TRUE(y->IsNodeAncestor(root.get()));
    EXPECT_FALSE(inner->IsNodeDescendant(z));
}

TEST(FunctionTreeTest, DisplayText) {
    std::unique_ptr<FunctionTreeImp> root(Node("0", TD::TF_SQRT));
    root->Add(Node("1", TD::TF_ROUND));
    root->Add(Node("2", TD::TF_UNKNOWN, false, "age"));
    std::ostringstream out;
    root->Display(out);
    EXPECT_EQ(out.str(),
              "Start FunctionTree Display:\nNode ID = 0\nTransformation function: sqrt\n  Level = 0\n\n"
              "Number of children = 2\n"
              "Start FunctionTree Display:\nNode ID = 1\nTransformation function: code =10\n  Level = 1\n\n"
              "End FunctionTree Display. \n\n"
              "Start FunctionTree Display:\nNode ID = 2\n\n  Parameter Name: age\n  Level = 1\n\n"
              "End FunctionTree Display. \n\n"
              "End FunctionTree Display. \n\n");
}

TEST(FunctionTreeTest, CloneIsIndependentAndCopiesOwnedValues) {
    std::unique_ptr<FunctionTreeImp> root(Node("0", TD::TF_PLUS));
    FunctionTreeImp* constant = Node("1", TD::TF_UNKNOWN, false);
    auto* value = new NumericValue(4.0);
    auto* fallback = new NumericValue(-1.0);
    ApplyNodeStats stats = constant->GetNodeStats();
    stats.SetValue(value);
    stats.SetDefaultValue(fallback);
    constant->SetNodeStats(stats);
    constant->OwnValue(value);
    constant->OwnValue(fallback);
    constant->OwnValue(value);  // owning twice must not free twice
    root->Add(constant);
    root->Add(Node("2"));
    root->Remove(1);  // a null slot is not cloned

    std::unique_ptr<FunctionTree> clone(root->Clone());
    root.reset();  // the clone must not point into the freed tree (the sanitizer would tell)
    ASSERT_EQ(clone->GetChildCount(), 1);
    FunctionTree const* copied = clone->GetChildAt(0);
    EXPECT_EQ(copied->GetParent(), clone.get());
    EXPECT_FALSE(copied->GetAllowsChildren());
    EXPECT_EQ(clone->GetNodeStats().GetTransformFunction(), TD::TF_PLUS);
    ASSERT_NE(copied->GetNodeStats().GetValue(), nullptr);
    EXPECT_DOUBLE_EQ(copied->GetNodeStats().GetValue()->GetDouble(), 4.0);
    EXPECT_DOUBLE_EQ(copied->GetNodeStats().GetDefaultValue()->GetDouble(), -1.0);
}
