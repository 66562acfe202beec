// The model base of the shipped families. It owns the mining schema, targets and outputs, the prepared
// record, the flat record and the derived dictionary of one model, and does everything around the
// family's own arithmetic:
//   Score = Prepare inputs -> derived values -> Evaluate (the family) -> targets -> result and outputs.
// A family derives from it, reads its own elements in FamilyTranslator::BuildFamilyModel, and answers
// Evaluate. All per-case state lives in the model instance.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

#include "plugins/common/FamilyCase.h"
#include "plugins/common/MiningSchema.h"
#include "plugins/common/ModelOutput.h"
#include "plugins/common/ModelTargets.h"
#include "vantry/factory/BaseModel.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class FamilyResult;
class FamilyTranslator;
class ModelContext;

class FamilyModel : public BaseModel {
  public:
    FamilyModel();
    ~FamilyModel() override;

    // The host's slots.
    QXScore::QXStatus Score(ScoreCaseRecord* record, ScoreResult* result) override;
    ScoreResult* MakeResult() const override;
    ScoreCaseRecord* MakeCaseRecord() const override;
    QXScore::QXStatus FillResultFields(ScoreResult const* result, ScoreResultField* fields) override;
    bool HasOwnProbabilityOutput() override;
    void Display(std::ostream& out) const override;

    // Scores a case without a result: what a parent asks of its segments. The record holds the model's
    // input fields by name (a parent's flat record). False when the inputs were invalid; the
    // prediction then is not valid. Targets are applied.
    bool Predict(ScoreCaseRecord const* record, Prediction& prediction);

    // What a parent tells its segment: the parent's schema judges the fields of the record it passes
    // (MiningSchema::TakeJudgementFrom).
    void TakeJudgementFrom(MiningSchema const* source, ScoreCaseRecord const* record) {
        fSchema.TakeJudgementFrom(source, record);
    }

    // The categories of a classification, as texts in the model's order; empty for a regression.
    void SetCategories(std::vector<std::string> const& categories);
    std::vector<std::string> const& GetCategories() const { return fCategoryTexts; }
    bool IsClassification() const { return !fCategoryTexts.empty(); }
    // The index of a category text, or -1 (numbers compare as numbers for a numeric target).
    int FindCategory(std::string const& text) const;

    // The first target field's name; empty for a model without one.
    std::string const& GetTargetName() const { return fTargetField; }
    MiningSchema const& GetSchema() const { return fSchema; }
    ModelTargets const& GetTargets() const { return fTargets; }
    ModelOutput const& GetOutput() const { return fOutput; }
    // The dictionary of the flat record: inputs and derived fields, as plain variables.
    ScoreDictionary const* GetFlatDictionary() const { return fFlatDictionary.get(); }

  protected:
    // The family's arithmetic for one case. `prediction` comes reset (categories sized); answer false
    // when no prediction can be made.
    virtual bool Evaluate(FamilyCase const& input, Prediction& prediction) = 0;
    // The family's part of Display.
    virtual void DisplayFamily(std::ostream& out) const;

  private:
    friend class FamilyTranslator;
    friend class FamilyCase;

    // Reads the schema, targets and output of the model element and lays out the records and the
    // result dictionary; the family's model and dictionaries are in place.
    void Install(ModelContext& context, XERCES_CPP_NAMESPACE::DOMElement* schema,
                 FamilyTranslator& translator);

    // Prepare -> derived -> Evaluate -> targets; the status tells an invalid input.
    bool Run(ScoreCaseRecord const* record, Prediction& prediction, QXScore::QXStatus& status);
    void FillResult(Prediction const& prediction, FamilyResult& result);
    // Fills the flat record from the prepared and derived records.
    void FillFlat() const;
    std::string DisplayText(Prediction const& prediction) const;

    MiningSchema fSchema;
    ModelTargets fTargets;
    ModelOutput fOutput;
    std::string fTargetField;
    ScoreDictVar::VariableType fTargetType = ScoreDictVar::kNUMERIC_VAR;
    std::vector<std::string> fCategoryTexts;
    // The categories as values of the target's type, for results.
    std::vector<std::unique_ptr<ScoreValue>> fCategoryValues;
    CaseRecord fPrepared;
    ScoreCaseRecord const* fDerived = nullptr;
    mutable CaseRecord fFlat;
    std::unique_ptr<BaseDictionary> fFlatDictionary;
    // Per flat slot: where its value comes from (prepared slot or derived slot).
    std::vector<FieldHandle> fFlatSources;
    Prediction fPrediction;
    // Per result variable in column order: -1 for the predicted value, else the output's index.
    std::vector<std::pair<std::string, int>> fResultColumns;
};

}  // namespace QXVantry_920
