#include "vantry/factory/BaseModel.h"

#include <iterator>

#include "vantry/factory/ScoreResult.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ValueProbability.h"

namespace QXVantry_920 {

namespace {

// Why a case could not be given even a fallback answer.
constexpr long kNoFallbackAnswer = 90027;

// The texts of the mining functions, at the index of their number.
char const* const kMiningFunctionTexts[] = {
    nullptr, "associationRules", "sequences", "classification", "regression", "clustering", "timeSeries",
};

// The result codes whose results list every value of the target with its probability.
bool TakesValueProbabilities(int code) {
    switch (code) {
        case 0:
        case 2:
        case 3:
        case 4:
        case 6:
        case 10:
        case 15:
        case 18:
        case 20:
        case 21:
        case 24:
        case 26:
            return true;
        default:
            return false;
    }
}

}  // namespace

BaseModel::BaseModel()
    : fDictionary(nullptr),
      fOwnsDictionary(true),
      fTransformationDictionary(nullptr),
      fOwnsTransformationDictionary(true),
      fResultDictionary(nullptr),
      fVersionInfo(nullptr),
      fMissingValuePolicy(kDEFAULT_MV_POLICY),
      // No function until the translator reads one; an explicit value keeps the first reads defined.
      fMiningFunction(kOtherFunction) {}

BaseModel::~BaseModel() {
    delete fVersionInfo;
    fVarRoles.clear();
    if (fOwnsDictionary)
        delete fDictionary;
    if (fOwnsTransformationDictionary)
        delete fTransformationDictionary;
    delete fResultDictionary;
}

void BaseModel::SetScoreDictionary(ScoreDictionary* dictionary) {
    fDictionary = dictionary;
}

void BaseModel::SetScoreDictionary(ScoreDictionary* dictionary, bool owns) {
    fDictionary = dictionary;
    fOwnsDictionary = owns;
}

void BaseModel::SetTransformationScoreDictionary(TransformationDictionary* dictionary) {
    fTransformationDictionary = dictionary;
}

void BaseModel::SetTransformationScoreDictionary(TransformationDictionary* dictionary, bool owns) {
    fTransformationDictionary = dictionary;
    fOwnsTransformationDictionary = owns;
}

void BaseModel::SetResultScoreDictionary(ScoreDictionary* dictionary) {
    fResultDictionary = dictionary;
}

bool BaseModel::SetVarRole(std::string const& name, VarRole role) {
    if (name.empty())
        return false;
    const bool inData = fDictionary != nullptr && fDictionary->GetVar(name) != nullptr;
    if (!inData && fTransformationDictionary != nullptr && fTransformationDictionary->GetVar(name) == nullptr)
        return false;
    if (role == kTARGET_ROLE)
        fTargetName = name;
    fVarRoles[name] = role;
    return true;
}

bool BaseModel::SetVarRole(ScoreDictVar const* variable, VarRole role) {
    return variable != nullptr && SetVarRole(variable->GetName(), role);
}

void BaseModel::SetMissingValuePolicy(MVPolicy policy) {
    fMissingValuePolicy = policy;
}

void BaseModel::SetVersionInfo(ScoreVersionInfo* versionInfo) {
    fVersionInfo = versionInfo;
}

int BaseModel::GetVarRole(std::string const& name) const {
    auto found = fVarRoles.find(name);
    return found == fVarRoles.end() ? -1 : found->second;
}

int BaseModel::GetVarRole(ScoreDictVar const* variable) const {
    return variable == nullptr ? -1 : GetVarRole(variable->GetName());
}

ScoreVersionInfo const* BaseModel::GetVersionInfo() const {
    return fVersionInfo;
}

ScoreDictVar const* BaseModel::GetTargetVar() const {
    ScoreDictionary const* dictionary = fDictionary;
    return dictionary == nullptr ? nullptr : dictionary->GetVar(fTargetName);
}

ScoreDictionary const* BaseModel::GetDictionary() const {
    return fDictionary;
}

TransformationDictionary* BaseModel::GetTransformationDictionary() const {
    return fTransformationDictionary;
}

ScoreDictionary* BaseModel::GetResultDictionary() const {
    return fResultDictionary;
}

ScoreModel::MVPolicy BaseModel::GetMissingValuePolicy() {
    return fMissingValuePolicy;
}

BaseModel::FUNCNAME_TYPE BaseModel::MiningFunctionFromString(std::string text) {
    for (std::size_t i = 1; i < std::size(kMiningFunctionTexts); ++i) {
        if (text == kMiningFunctionTexts[i])
            return static_cast<FUNCNAME_TYPE>(i);
    }
    return kOtherFunction;
}

void BaseModel::SetMiningFunction(FUNCNAME_TYPE function) {
    fMiningFunction = function;
}

BaseModel::FUNCNAME_TYPE BaseModel::GetMiningFunction() {
    return fMiningFunction;
}

void BaseModel::SetAlgorithmName(std::string name) {
    fAlgorithmName = std::move(name);
}

std::string BaseModel::GetAlgorithmName() {
    return fAlgorithmName;
}

bool BaseModel::isKMorPDF() {
    return fAlgorithmName == "KM" || fAlgorithmName == "Parametric Distribution Fitting";
}

bool BaseModel::NeedToMakeupATarget() {
    return fMiningFunction == kRegression && GetTargetVar() == nullptr;
}

QXScore::QXStatus BaseModel::HandleMissingValue(ScoreResult* result) {
    const QXScore::QXStatus ok;
    const QXScore::QXStatus noAnswer(kNoFallbackAnswer, false);
    if (result == nullptr)
        return ok;
    ScoreDictVar const* target = GetTargetVar();
    if (target == nullptr)
        return noAnswer;

    if (target->GetMLevel() == ScoreDictVar::MEASURE_CONTINUOUS) {
        ScoreValue const* defaultValue = target->GetDefValue();
        if (defaultValue == nullptr)
            return noAnswer;
        result->SetResultValue(defaultValue);
        return ok;
    }

    ScoreValueProbabilitySet const* probabilities = target->GetValueProbabilities();
    if (probabilities == nullptr) {
        result->SetResultValue(nullptr);
        return noAnswer;
    }
    // Only a classification result takes per-value probabilities.
    auto* classification = dynamic_cast<ScoreClsResult*>(result);
    ScoreValue const* best = nullptr;
    double bestProbability = 0.0;
    for (ScoreValueProbability const* entry : probabilities->GetAllValueProbabilities()) {
        if (entry->GetProbability() > bestProbability) {
            best = entry->GetValue();
            bestProbability = entry->GetProbability();
        }
        if (TakesValueProbabilities(result->GetResultCode()) && !HasOwnProbabilityOutput() &&
            classification != nullptr) {
            classification->AddValueProbability(entry->GetValue(), entry->GetProbability());
        }
    }
    if (best != nullptr) {
        result->SetResultValue(best);
        result->SetResultConfidence(bestProbability);
    }
    return ok;
}

}  // namespace QXVantry_920
