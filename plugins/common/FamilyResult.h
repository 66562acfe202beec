// The result of every shipped family: the predicted value, its confidence, the probability of each
// category, the entity that decided, the status of the case and the model's output values. Values are
// kept in place from case to case, so scoring allocates nothing for numbers after the first case.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "vantry/diagnostics/QXStatus.h"
#include "vantry/factory/ScoreResult.h"

namespace QXVantry_920 {

class ScoreValue;

class FamilyResult : public ScoreClsResult {
  public:
    // Result codes: the kind of model that filled the result.
    static constexpr int kClassificationCode = 0;
    static constexpr int kRegressionCode = 1;

    FamilyResult();
    FamilyResult(FamilyResult const&) = delete;
    FamilyResult& operator=(FamilyResult const&) = delete;
    ~FamilyResult() override;

    // ScoreResult and ScoreClsResult slots.
    void SetResultValue(ScoreValue const* value) override;
    ScoreValue const* GetResultValue() const override;
    void SetResultCode(int code) override;
    void SetResultConfidence(double confidence) override;
    double GetResultConfidence() const override;
    int GetResultCode() const override;
    // Sets the probability of a category that the result holds, or adds the category.
    void AddValueProbability(ScoreValue const* value, double probability) override;
    int GetNumberOfValueProbabilities() const override;
    // 0 for a category the result does not hold.
    double GetProbabilityOfValue(ScoreValue const* value) const override;

    // The predicted value, changed in place when its kind stays.
    void SetNumber(double number);
    void SetText(std::string const& text);
    void ClearValue();
    bool HasValue() const { return fValue.present; }

    // The categories, set once by the model; their probabilities are then changed in place.
    void SetCategories(std::vector<ScoreValue const*> const& categories);
    void SetProbability(int category, double probability);
    ScoreValue const* CategoryAt(int category) const;
    double ProbabilityAt(int category) const;
    // Sets every probability to 0.
    void ClearProbabilities();

    void SetEntityId(std::string const& id) { fEntityId = id; }
    std::string const& GetEntityId() const { return fEntityId; }

    void SetStatus(QXScore::QXStatus const& status) { fStatus = status; }
    QXScore::QXStatus const& GetStatus() const { return fStatus; }

    // The model's output values, one per output field; null for a missing output.
    void SetOutputCount(std::size_t count);
    std::size_t GetOutputCount() const { return fOutputs.size(); }
    void SetOutputNumber(std::size_t index, double number);
    void SetOutputText(std::size_t index, std::string const& text);
    void ClearOutput(std::size_t index);
    ScoreValue const* GetOutput(std::size_t index) const;

  private:
    struct Slot {
        std::unique_ptr<ScoreValue> value;
        bool present = false;
    };
    static void StoreNumber(Slot& slot, double number);
    static void StoreText(Slot& slot, std::string const& text);

    Slot fValue;
    double fConfidence;
    int fCode = kClassificationCode;
    std::vector<std::pair<std::unique_ptr<ScoreValue>, double>> fProbabilities;
    std::string fEntityId;
    QXScore::QXStatus fStatus;
    std::vector<Slot> fOutputs;
};

}  // namespace QXVantry_920
