// The expression tree of an "Apply" element. Every node carries one ApplyNodeStats record: an inner node
// names a function, a leaf names a field or holds a constant. FunctionTree is the abstract node, whose
// virtual slot order is shared with plug-ins; FunctionTreeImp its one implementation.
//
// Node identity is the node ID alone: two nodes with the same ID are the same node to operator==,
// GetIndex, Remove and IsNodeChild.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "vantry/Export.h"
#include "vantry/transform/TransformationDictionary.h"

namespace QXVantry_920 {

class ScoreValue;
class ScoreDictVar;

// A plain record with no virtual operations. It points at values but owns none of them: copies share
// the pointers. The node that holds the record keeps the values alive (FunctionTreeImp::OwnValue).
class VANTRY_EXPORT ApplyNodeStats {
  public:
    enum InvalidValueTreatmentMethod : std::int32_t {
        IVT_RETURN_INVALID = 0,  // "returnInvalid"
        IVT_AS_IS = 1,           // "asIs"
        IVT_AS_MISSING = 2,      // "asMissing"
        IVT_UNSET = 3,           // no attribute, or any other text
    };

    ApplyNodeStats();

    std::string const& GetNodeID() const { return fNodeID; }
    void SetNodeID(std::string const& id) { fNodeID = id; }
    ScoreValue* GetValue() const { return fValue; }
    void SetValue(ScoreValue* value) { fValue = value; }
    TransformationDictionary::TransformFunction GetTransformFunction() const { return fTransformFunction; }
    void SetTransformFunction(TransformationDictionary::TransformFunction function) {
        fTransformFunction = function;
    }
    std::string const& GetParameterName() const { return fParameterName; }
    void SetParameterName(std::string const& name) { fParameterName = name; }
    ScoreDictVar const* GetVariable() const { return fVariable; }
    void SetVariable(ScoreDictVar const* variable) { fVariable = variable; }
    std::int32_t GetVarIndex() const { return fVarIndex; }
    void SetVarIndex(std::int32_t index) { fVarIndex = index; }
    bool IsConstNode() const { return fConstNode; }
    void SetConstNode(bool constNode) { fConstNode = constNode; }
    ScoreValue* GetRecodeMissValueRep() const { return fRecodeMissingValue; }
    void SetRecodeMissValueTo(ScoreValue* value) { fRecodeMissingValue = value; }
    ScoreValue* GetDefaultValue() const { return fDefaultValue; }
    void SetDefaultValue(ScoreValue* value) { fDefaultValue = value; }
    InvalidValueTreatmentMethod GetInvalidValueTreatmentMethod() const { return fInvalidValueTreatment; }
    void SetInvalidValueTreatmentMethod(InvalidValueTreatmentMethod method) {
        fInvalidValueTreatment = method;
    }
    ScoreValue* GetFieldrefRecodeMissValueRep() const { return fFieldRecodeMissingValue; }
    void SetFieldrefRecodeMissValueTo(ScoreValue* value) { fFieldRecodeMissingValue = value; }

    // The "Array" extensions of the node (means and variances of function 71).
    void AddArray(std::vector<double> const& array);
    void ClearArray();
    // Out of range: an empty array.
    std::vector<double> const& GetArray(int index) const;
    std::uint64_t GetNumberOfArray() const { return fArrays.size(); }

  private:
    std::string fNodeID;
    ScoreValue* fValue;
    TransformationDictionary::TransformFunction fTransformFunction;
    std::string fParameterName;
    ScoreDictVar const* fVariable;
    std::int32_t fVarIndex;
    bool fConstNode;
    std::vector<std::vector<double>> fArrays;
    ScoreValue* fRecodeMissingValue;
    ScoreValue* fDefaultValue;
    InvalidValueTreatmentMethod fInvalidValueTreatment;
    ScoreValue* fFieldRecodeMissingValue;
};

class VANTRY_EXPORT FunctionTree {
  public:
    virtual ~FunctionTree();
    virtual bool operator==(FunctionTree const& other) const = 0;
    // A deep copy with the values the node owns; the caller owns it.
    virtual FunctionTree* Clone() const = 0;
    // Appends the child whatever the index (the index does not choose the place); nothing happens for a
    // null child, a child that is an ancestor of this node, or a node that allows no children.
    virtual void Insert(FunctionTree* child, int index) = 0;
    virtual void Add(FunctionTree* child) = 0;
    virtual void Remove(FunctionTree* child) = 0;
    // Deletes the child at the index and every child of the same ID, leaving null in their slots.
    virtual void Remove(int index) = 0;
    virtual void RemoveFromParent() = 0;
    virtual void RemoveAllChildren() = 0;
    virtual bool IsLeaf() const = 0;
    virtual void SetNodeStats(ApplyNodeStats const& stats) = 0;
    virtual void SetParent(FunctionTree* parent) = 0;
    virtual ApplyNodeStats const& GetNodeStats() const = 0;
    virtual FunctionTree* GetChildAt(int index) = 0;
    virtual FunctionTree const* GetChildAt(int index) const = 0;
    virtual int GetChildCount() const = 0;
    virtual FunctionTree* GetParent() const = 0;
    virtual int GetIndex(FunctionTree const* child) const = 0;
    virtual bool GetAllowsChildren() const = 0;
    virtual void Display(std::ostream& out) const = 0;
    virtual std::vector<FunctionTree*> Children() const = 0;
    virtual FunctionTree const* GetRoot() const = 0;

  protected:
    FunctionTree() = default;
    FunctionTree(FunctionTree const&) = default;
    FunctionTree& operator=(FunctionTree const&) = default;
};

class VANTRY_EXPORT FunctionTreeImp : public FunctionTree {
  public:
    explicit FunctionTreeImp(bool allowsChildren);
    // Deletes every child and the values the node owns.
    ~FunctionTreeImp() override;
    FunctionTreeImp(FunctionTreeImp const&) = delete;
    FunctionTreeImp& operator=(FunctionTreeImp const&) = delete;

    bool operator==(FunctionTree const& other) const override;
    FunctionTree* Clone() const override;
    void Insert(FunctionTree* child, int index) override;
    void Add(FunctionTree* child) override;
    void Remove(FunctionTree* child) override;
    void Remove(int index) override;
    void RemoveFromParent() override;
    void RemoveAllChildren() override;
    bool IsLeaf() const override;
    void SetNodeStats(ApplyNodeStats const& stats) override;
    void SetParent(FunctionTree* parent) override;
    ApplyNodeStats const& GetNodeStats() const override;
    FunctionTree* GetChildAt(int index) override;
    FunctionTree const* GetChildAt(int index) const override;
    int GetChildCount() const override;
    FunctionTree* GetParent() const override;
    int GetIndex(FunctionTree const* child) const override;
    bool GetAllowsChildren() const override;
    void Display(std::ostream& out) const override;
    std::vector<FunctionTree*> Children() const override;
    FunctionTree const* GetRoot() const override;

    // The stats of a tree point at values that nothing else frees: the node that the stats belong to
    // takes them over here, and Clone copies them with the node.
    void OwnValue(ScoreValue* value);

    void SetAllowsChildren(bool allowsChildren);
    FunctionTree* GetFirstChild() const;
    FunctionTree* GetLastChild() const;
    FunctionTree* GetChildBefore(FunctionTree const* child) const;
    FunctionTree* GetChildAfter(FunctionTree const* child) const;
    FunctionTree* GetNextSibling() const;
    FunctionTree* GetPreviousSibling() const;
    int GetSiblingCount() const;
    FunctionTree const* GetFirstLeaf() const;
    FunctionTree const* GetLastLeaf() const;
    FunctionTree const* GetNextLeaf() const;
    FunctionTree const* GetPreviousLeaf() const;
    FunctionTree const* GetNextNode() const;
    FunctionTree const* GetPreviousNode() const;
    int GetLevel() const;
    bool IsRoot() const;
    bool IsNodeChild(FunctionTree const* node) const;
    bool IsNodeSibling(FunctionTree const* node) const;
    bool IsNodeAncestor(FunctionTree const* node) const;
    bool IsNodeDescendant(FunctionTree const* node) const;

  private:
    FunctionTree* fParent;
    std::vector<FunctionTree*> fChildren;
    bool fAllowsChildren;
    ApplyNodeStats fStats;
    std::vector<std::unique_ptr<ScoreValue>> fOwnedValues;
};

}  // namespace QXVantry_920
