// The named output values of a scored case beyond the prediction: one value per result variable of the
// model's result dictionary. The first value set under a name decides its type; later settings change
// that value in place.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "vantry/Export.h"

namespace QXVantry_920 {

class ScoreValue;

class VANTRY_EXPORT ScoreResultField {
  public:
    // What a result variable holds, keyed by the text of its "feature".
    enum ResultFeature : int {
        kFeatureNone = 0,
        kPredictedValue = 1,
        kPredictedDisplayValue = 2,
        kProbability = 3,
        kResidual = 4,
        kStandardError = 5,
        kClusterId = 6,
        kClusterAffinity = 7,
        kEntityId = 8,
        kEntityAffinity = 9,
        kWarning = 10,
        kRuleValue = 11,
        kStandardDeviation = 12,
    };

    using ValueMap = std::map<std::string, ScoreValue*>;

    virtual ~ScoreResultField();
    virtual void SetMapResultValue(ValueMap const& values) = 0;
    virtual ValueMap const& GetMapResultValue() const = 0;
    virtual ScoreValue const* GetResultValue(std::string const& name) const = 0;
    virtual bool SetResultValue(std::string const& name, ScoreValue const* value) = 0;
    virtual bool SetResultValue(std::string const& name, std::string const& text) = 0;
    virtual bool SetResultValue(std::string const& name, double number) = 0;
    virtual ResultFeature GetResultType(std::string const& name) = 0;
    virtual void AddResultField(std::string const& name, ScoreValue* value) = 0;
    virtual std::vector<std::string> GetResultFields() = 0;
    virtual int GetResultSize() const = 0;

  protected:
    ScoreResultField() = default;
    ScoreResultField(ScoreResultField const&) = default;
    ScoreResultField& operator=(ScoreResultField const&) = default;
};

// Owns its values. A copy shares the value objects with its source, so only one of the two may be
// destroyed with its values in place; SetMapResultValue shares them likewise.
class VANTRY_EXPORT ResultField : public ScoreResultField {
  public:
    ResultField();
    ResultField(ResultField const& other);
    // Shares other's values; the values replaced are not deleted.
    ResultField& operator=(ResultField const& other);
    ~ResultField() override;

    void SetMapResultValue(ValueMap const& values) override;
    ValueMap const& GetMapResultValue() const override;
    ScoreValue const* GetResultValue(std::string const& name) const override;
    // Keeps a clone of a new value; changes a held value of the same type in place.
    bool SetResultValue(std::string const& name, ScoreValue const* value) override;
    bool SetResultValue(std::string const& name, std::string const& text) override;
    bool SetResultValue(std::string const& name, double number) override;
    ResultFeature GetResultType(std::string const& name) override;
    // Takes the value over; a name already held keeps its value and the caller keeps the new one.
    void AddResultField(std::string const& name, ScoreValue* value) override;
    std::vector<std::string> GetResultFields() override;
    int GetResultSize() const override;

  private:
    ValueMap fValues;
};

}  // namespace QXVantry_920
