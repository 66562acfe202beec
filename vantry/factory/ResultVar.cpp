#include "vantry/factory/ResultVar.h"

namespace QXVantry_920 {

ResultVar::ResultVar(std::string const& name, ScoreDictVar::VariableType type)
    : DictVar(name, type), fFeature(ScoreResultField::kFeatureNone) {}

ResultVar::ResultVar(ResultVar const& other) = default;
ResultVar& ResultVar::operator=(ResultVar const& other) = default;
ResultVar::~ResultVar() = default;

ScoreDictVar* ResultVar::Clone() const {
    return new ResultVar(*this);
}

ScoreResultField::ResultFeature ResultVar::GetFeature() {
    return fFeature;
}

void ResultVar::SetFeature(ScoreResultField::ResultFeature feature) {
    fFeature = feature;
}

bool ResultVar::FeatureFromText(std::string const& text, ScoreResultField::ResultFeature& feature) {
    static struct {
        char const* text;
        ScoreResultField::ResultFeature feature;
    } const kFeatures[] = {
        {"", ScoreResultField::kFeatureNone},
        {"predictedValue", ScoreResultField::kPredictedValue},
        {"predictedDisplayValue", ScoreResultField::kPredictedDisplayValue},
        {"probability", ScoreResultField::kProbability},
        {"residual", ScoreResultField::kResidual},
        {"standardError", ScoreResultField::kStandardError},
        {"clusterId", ScoreResultField::kClusterId},
        {"clusterAffinity", ScoreResultField::kClusterAffinity},
        {"categorical", ScoreResultField::kPredictedDisplayValue},
        {"entityId", ScoreResultField::kEntityId},
        {"entityAffinity", ScoreResultField::kEntityAffinity},
        {"warning", ScoreResultField::kWarning},
        {"ruleValue", ScoreResultField::kRuleValue},
        {"standardDeviation", ScoreResultField::kStandardDeviation},
    };
    for (auto const& entry : kFeatures) {
        if (text == entry.text) {
            feature = entry.feature;
            return true;
        }
    }
    return false;
}

}  // namespace QXVantry_920
