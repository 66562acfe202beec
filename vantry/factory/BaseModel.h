// The part of a model that every family shares: its three dictionaries, the roles of its variables, the
// missing-value policy, the version record, the algorithm name and mining function, and the fallback
// answer for a case that cannot be scored. A plug-in's model derives from it and supplies the scoring
// slots of ScoreModel.
//
// Ownership: the version record and the result dictionary always belong to the model; the data and
// transformation dictionaries belong to it unless a two-argument setter said otherwise. No setter
// deletes what it replaces.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "vantry/Export.h"
#include "vantry/diagnostics/QXStatus.h"
#include "vantry/factory/ScoreModel.h"

namespace QXVantry_920 {

class VANTRY_EXPORT BaseModel : public ScoreModel {
  public:
    // The mining function of a model, from the document's "functionName" text.
    enum FUNCNAME_TYPE : std::int32_t {
        kOtherFunction = 0,
        kAssociationRules = 1,
        kSequences = 2,
        kClassification = 3,
        kRegression = 4,
        kClustering = 5,
        kTimeSeries = 6,
    };

    BaseModel();
    BaseModel(BaseModel const&) = delete;
    BaseModel& operator=(BaseModel const&) = delete;
    // Deletes the version record, the result dictionary and the dictionaries it owns.
    ~BaseModel() override;

    void SetScoreDictionary(ScoreDictionary* dictionary) override;
    void SetTransformationScoreDictionary(TransformationDictionary* dictionary) override;
    void SetResultScoreDictionary(ScoreDictionary* dictionary) override;
    // False for an empty name, and for a name in neither dictionary while there is a transformation
    // dictionary; without one, the role of a name unknown to the data dictionary is recorded all the
    // same. Role 1 also makes the name the target.
    bool SetVarRole(std::string const& name, VarRole role) override;
    bool SetVarRole(ScoreDictVar const* variable, VarRole role) override;
    void SetMissingValuePolicy(MVPolicy policy) override;
    void SetVersionInfo(ScoreVersionInfo* versionInfo) override;
    int GetVarRole(std::string const& name) const override;
    int GetVarRole(ScoreDictVar const* variable) const override;
    ScoreVersionInfo const* GetVersionInfo() const override;
    // The data dictionary's variable of the last name given role 1; null for a derived target.
    ScoreDictVar const* GetTargetVar() const override;
    ScoreDictionary const* GetDictionary() const override;
    TransformationDictionary* GetTransformationDictionary() const override;
    ScoreDictionary* GetResultDictionary() const override;
    MVPolicy GetMissingValuePolicy() override;

    // slot 22 and 23: the dictionaries with whether the model deletes them.
    virtual void SetScoreDictionary(ScoreDictionary* dictionary, bool owns);
    virtual void SetTransformationScoreDictionary(TransformationDictionary* dictionary, bool owns);

    // Exact and case-sensitive; kOtherFunction for any text not in the table.
    static FUNCNAME_TYPE MiningFunctionFromString(std::string text);
    void SetMiningFunction(FUNCNAME_TYPE function);
    FUNCNAME_TYPE GetMiningFunction();
    void SetAlgorithmName(std::string name);
    std::string GetAlgorithmName();
    // Whether the algorithm is "KM" or "Parametric Distribution Fitting".
    bool isKMorPDF();
    // A regression model whose target is not in the data dictionary.
    bool NeedToMakeupATarget();

  protected:
    // Fills a result for a case that cannot be scored, from what the target carries: the default value
    // of a continuous target, else the most probable of its value probabilities (the first of equals),
    // and, for result codes that take them and a model without its own, every value's probability.
    // Status 90027 (an error) when a continuous target has no default value, or a categorical one no
    // probabilities, or there is no target.
    QXScore::QXStatus HandleMissingValue(ScoreResult* result);

    ScoreDictionary* fDictionary;
    bool fOwnsDictionary;
    TransformationDictionary* fTransformationDictionary;
    bool fOwnsTransformationDictionary;
    ScoreDictionary* fResultDictionary;
    ScoreVersionInfo* fVersionInfo;
    std::map<std::string, VarRole> fVarRoles;
    MVPolicy fMissingValuePolicy;
    std::string fTargetName;
    std::string fAlgorithmName;
    FUNCNAME_TYPE fMiningFunction;
};

}  // namespace QXVantry_920
