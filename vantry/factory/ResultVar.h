// The dictionary variable that describes one output of a model's result dictionary, with the feature
// that tells what it holds.
#pragma once

#include <string>

#include "vantry/Export.h"
#include "vantry/factory/ResultField.h"
#include "vantry/values/ScoreDictVar.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ResultVar : public DictVar {
  public:
    ResultVar(std::string const& name, ScoreDictVar::VariableType type);
    ResultVar(ResultVar const& other);
    ResultVar& operator=(ResultVar const& other);
    ~ResultVar() override;

    ScoreDictVar* Clone() const override;

    ScoreResultField::ResultFeature GetFeature();
    void SetFeature(ScoreResultField::ResultFeature feature);

    // The feature named by the text of a "feature" attribute: the empty text gives kFeatureNone and
    // "categorical" stands for "predictedDisplayValue". An unknown text answers false and leaves the
    // feature alone.
    static bool FeatureFromText(std::string const& text, ScoreResultField::ResultFeature& feature);

  private:
    ScoreResultField::ResultFeature fFeature;
};

}  // namespace QXVantry_920
