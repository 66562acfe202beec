// The abstract answers of a model for one scored case. Plug-ins implement them; the library itself only
// calls the slots that fill a fallback result for a case that cannot be scored (the predicted value, its
// confidence, the result code and, for classification, the probability of each value). The other slots
// keep their places for the plug-ins.
#pragma once

#include "vantry/Export.h"

namespace QXVantry_920 {

class ScoreValue;

class VANTRY_EXPORT ScoreResult {
  public:
    virtual ~ScoreResult();
    // The predicted value; null clears it. The result keeps its own copy.
    virtual void SetResultValue(ScoreValue const* value) = 0;
    virtual ScoreValue const* GetResultValue() const = 0;
    virtual void SetResultCode(int code) = 0;
    // The probability of the predicted value.
    virtual void SetResultConfidence(double confidence) = 0;
    virtual double GetResultConfidence() const = 0;
    // A code of 0 to 27 for the kind of result.
    virtual int GetResultCode() const = 0;

  protected:
    ScoreResult() = default;
    ScoreResult(ScoreResult const&) = default;
    ScoreResult& operator=(ScoreResult const&) = default;
};

class VANTRY_EXPORT ScoreClsResult : public ScoreResult {
  public:
    ~ScoreClsResult() override;
    // Adds one value of the target with its probability.
    virtual void AddValueProbability(ScoreValue const* value, double probability) = 0;
    virtual int GetNumberOfValueProbabilities() const = 0;
    virtual double GetProbabilityOfValue(ScoreValue const* value) const = 0;
};

class VANTRY_EXPORT ScoreRegResult : public ScoreResult {
  public:
    ~ScoreRegResult() override;
    virtual void SetStandardError(double standardError) = 0;
    virtual double GetStandardError() const = 0;
};

}  // namespace QXVantry_920
