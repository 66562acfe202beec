// The translator base of the shipped families. It reads what every model shares (data dictionary,
// mining schema, derived fields, targets, output) and leaves the family's own elements to
// BuildFamilyModel.
//
// Two routes: a whole document (the factory's main route), whose first model element of the family is
// built; and a segment of a parent model (ParseFromTree with a parent), whose input fields are the
// parent's data dictionary plus a plain stand-in per derived field of the parent, since the parent
// passes the values of both in one flat record.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vantry/factory/BaseModel.h"
#include "vantry/translate/PMMLTranslator.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class FamilyModel;
class FamilyTranslator;
class ScorePredicate;
class TransformationDictionary;
struct FieldHandle;

// What a family needs while it reads its elements.
class ModelContext {
  public:
    ModelContext(FamilyTranslator& translator, XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                 ScoreDictionary* inputs, TransformationDictionary* derived,
                 BaseModel::FUNCNAME_TYPE function, std::string targetField);

    FamilyTranslator& Translator() { return fTranslator; }
    XERCES_CPP_NAMESPACE::DOMElement* ModelElement() const { return fModelElement; }
    // The model's input variables and derived variables (the latter may be null).
    ScoreDictionary* Inputs() const { return fInputs; }
    TransformationDictionary* Derived() const { return fDerived; }
    BaseModel::FUNCNAME_TYPE Function() const { return fFunction; }
    // The first target field of the mining schema; empty for none.
    std::string const& TargetField() const { return fTargetField; }
    // The target's variable among the inputs; null when the inputs lack it.
    ScoreDictVar const* TargetVariable() const;

    // The handle of a field: a derived field first, then an input. An unknown field fails 260124.
    FieldHandle Resolve(std::string const& name) const;
    // As Resolve, with an invalid handle for an unknown field.
    FieldHandle Find(std::string const& name) const;
    // The variable of a field (derived first), or null.
    ScoreDictVar const* Variable(std::string const& name) const;

    // The predicate child of an element ("SimplePredicate", "SimpleSetPredicate", "CompoundPredicate",
    // "True", "False"), as a new object that the caller owns; null for an element without one.
    ScorePredicate* ParsePredicate(XERCES_CPP_NAMESPACE::DOMElement* owner);
    // The text of an attribute through the translator's encoding; empty for an absent one.
    std::string Attribute(XERCES_CPP_NAMESPACE::DOMElement const* element, char const* name);
    // A number attribute: the fallback when absent; 260151 when not a number.
    double Number(XERCES_CPP_NAMESPACE::DOMElement const* element, char const* name, double fallback);

  private:
    FamilyTranslator& fTranslator;
    XERCES_CPP_NAMESPACE::DOMElement* fModelElement;
    ScoreDictionary* fInputs;
    TransformationDictionary* fDerived;
    BaseModel::FUNCNAME_TYPE fFunction;
    std::string fTargetField;
};

class FamilyTranslator : public PMMLTranslator {
  public:
    // The model element names the family builds (for instance "RegressionModel").
    explicit FamilyTranslator(std::vector<std::string> elementNames);
    ~FamilyTranslator() override;

    using PMMLTranslator::ParseFromTree;
    // The document route: the first element of the family below the root.
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMDocument* document,
                              std::string const& encoding) override;
    // The segment route.
    ScoreModel* ParseFromTree(XERCES_CPP_NAMESPACE::DOMElement* modelElement, ScoreModel* parent,
                              std::string const& encoding) override;

    // The text of document text in the translator's encoding (public for ModelContext).
    std::string Text(XMLCh const* text) { return ToString(text); }

  protected:
    // The family's model from its element, with the family's own elements read. The translator then
    // installs the schema, derived fields, targets and outputs and builds the result dictionary.
    virtual FamilyModel* BuildFamilyModel(XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                          ModelContext& context) = 0;

  private:
    // Builds a model from its element over input variables it takes over.
    FamilyModel* Build(XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                       std::unique_ptr<ScoreDictionary> inputs,
                       XERCES_CPP_NAMESPACE::DOMElement* documentTransformations,
                       std::string const& encoding);

    std::vector<std::string> fElementNames;
};

// Throws the library's coded failure with these arguments.
[[noreturn]] void ThrowFamilyError(int code, std::vector<std::string> const& arguments);

}  // namespace QXVantry_920
