#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "vantry/factory/ResultVar.h"

using namespace QXVantry_920;

TEST(ResultVar, CloneKeepsFeatureAndVariable) {
    ResultVar var("p", ScoreDictVar::STRING_VAR);
    EXPECT_EQ(var.GetFeature(), ScoreResultField::kFeatureNone);
    var.SetFeature(ScoreResultField::kProbability);

    std::unique_ptr<ScoreDictVar> clone(var.Clone());
    auto* copy = dynamic_cast<ResultVar*>(clone.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->GetFeature(), ScoreResultField::kProbability);
    EXPECT_EQ(copy->GetVarType(), ScoreDictVar::STRING_VAR);

    ResultVar assigned("q", ScoreDictVar::kNUMERIC_VAR);
    assigned = var;
    EXPECT_EQ(assigned.GetName(), "p");
    EXPECT_EQ(assigned.GetFeature(), ScoreResultField::kProbability);
}

TEST(ResultVar, FeatureTextsMapToTheirNumbers) {
    struct {
        char const* text;
        int feature;
    } const known[] = {{"", 0},
                       {"predictedValue", 1},
                       {"predictedDisplayValue", 2},
                       {"categorical", 2},
                       {"probability", 3},
                       {"residual", 4},
                       {"standardError", 5},
                       {"clusterId", 6},
                       {"clusterAffinity", 7},
                       {"entityId", 8},
                       {"entityAffinity", 9},
                       {"warning", 10},
                       {"ruleValue", 11},
                       {"standardDeviation", 12}};
    for (auto const& entry : known) {
        ScoreResultField::ResultFeature feature = ScoreResultField::kWarning;
        EXPECT_TRUE(ResultVar::FeatureFromText(entry.text, feature)) << entry.text;
        EXPECT_EQ(feature, entry.feature) << entry.text;
    }
    for (char const* unknown : {"Probability", "reasonCode", "probability "}) {
        ScoreResultField::ResultFeature feature = ScoreResultField::kResidual;
        EXPECT_FALSE(ResultVar::FeatureFromText(unknown, feature)) << unknown;
        EXPECT_EQ(feature, ScoreResultField::kResidual);
    }
}
