// The interface every model presents to a host, and the version record a model carries.
//
// The slot order of both classes is a contract with the plug-ins, which are built separately and
// call into models through these tables: never reorder, insert or remove a virtual function.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "vantry/Export.h"
#include "vantry/diagnostics/QXStatus.h"

namespace QXVantry_920 {

class ScoreDictionary;
class ScoreDictVar;
class TransformationDictionary;
class ScoreCaseRecord;
class ScoreResult;
class ScoreResultField;

// The version text of a model.
class VANTRY_EXPORT ScoreVersionInfo {
  public:
    virtual ~ScoreVersionInfo();
    virtual void SetVersionInfo(std::string const& version) = 0;
    // A new object of the same text, owned by the caller.
    virtual ScoreVersionInfo* Clone() const = 0;
    virtual bool operator==(ScoreVersionInfo const& other) const = 0;
    virtual std::string const& GetVersionInfo() const = 0;
};

// A live model. Built by a plug-in's translator, handed to the host by ModelFactory, deleted by the
// host. Slots 8, 12, 17, 19 and 21 are the families' own operations, which the library never calls: a
// host makes a record and a result once, then fills the record and calls Score for each case.
class VANTRY_EXPORT ScoreModel {
  public:
    // Role 1 marks the target variable; every other number belongs to the plug-ins.
    enum VarRole : std::int32_t { kTARGET_ROLE = 1 };
    // The library stores a policy and hands it back; the numbers belong to the plug-ins.
    enum MVPolicy : std::int32_t { kDEFAULT_MV_POLICY = 1 };

    virtual ~ScoreModel();                                             // slot 0
    virtual void SetScoreDictionary(ScoreDictionary* dictionary) = 0;  // slot 1
    virtual void SetTransformationScoreDictionary(TransformationDictionary* dictionary) = 0;
    virtual void SetResultScoreDictionary(ScoreDictionary* dictionary) = 0;   // slot 3
    virtual bool SetVarRole(std::string const& name, VarRole role) = 0;       // slot 4
    virtual bool SetVarRole(ScoreDictVar const* variable, VarRole role) = 0;  // slot 5
    virtual void SetMissingValuePolicy(MVPolicy policy) = 0;                  // slot 6
    // Takes ownership of the record.
    virtual void SetVersionInfo(ScoreVersionInfo* versionInfo) = 0;  // slot 7
    // slot 8: scores one case into a result made by MakeResult; a case that cannot be scored gives a
    // failure status or a missing prediction, never an exception.
    virtual QXScore::QXStatus Score(ScoreCaseRecord* record, ScoreResult* result) = 0;
    // The role of a variable, or -1 for a variable without one.
    virtual int GetVarRole(std::string const& name) const = 0;       // slot 9
    virtual int GetVarRole(ScoreDictVar const* variable) const = 0;  // slot 10
    virtual ScoreVersionInfo const* GetVersionInfo() const = 0;      // slot 11
    // slot 12: a new, empty result of the model's kind (classification or regression), owned by the
    // caller.
    virtual ScoreResult* MakeResult() const = 0;
    virtual ScoreDictVar const* GetTargetVar() const = 0;                       // slot 13
    virtual ScoreDictionary const* GetDictionary() const = 0;                   // slot 14
    virtual TransformationDictionary* GetTransformationDictionary() const = 0;  // slot 15
    virtual ScoreDictionary* GetResultDictionary() const = 0;                   // slot 16
    // slot 17: a new case record with one value for each variable of the data dictionary, all missing,
    // owned by the caller.
    virtual ScoreCaseRecord* MakeCaseRecord() const = 0;
    virtual MVPolicy GetMissingValuePolicy() = 0;  // slot 18
    // slot 19: the extra outputs that the result dictionary asks for, from a result that Score filled.
    virtual QXScore::QXStatus FillResultFields(ScoreResult const* result, ScoreResultField* fields) = 0;
    // True for a model that computes its own per-value probabilities.
    virtual bool HasOwnProbabilityOutput() = 0;  // slot 20
    // slot 21: a description of the model, for tracing.
    virtual void Display(std::ostream& out) const = 0;
};

}  // namespace QXVantry_920
