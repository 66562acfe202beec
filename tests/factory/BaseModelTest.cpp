// The shared model base: variable roles, the fallback answer for a case that cannot be scored, and what
// the model deletes with itself.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "FactoryTestSupport.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/factory/VersionInfo.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueProbability.h"

using namespace QXVantry_920;
using vantry_test::TinyModel;

namespace {

// A classification result that records each call as text.
class RecordingResult : public ScoreClsResult {
  public:
    explicit RecordingResult(int code) : code(code) {}
    void SetResultValue(ScoreValue const* value) override {
        calls.push_back("value=" + (value == nullptr ? std::string("null") : ScoreValue::TextOf(*value)));
    }
    ScoreValue const* GetResultValue() const override { return nullptr; }
    void SetResultCode(int newCode) override { code = newCode; }
    void SetResultConfidence(double confidence) override {
        calls.push_back("confidence=" + std::to_string(confidence));
    }
    double GetResultConfidence() const override { return 0.0; }
    int GetResultCode() const override { return code; }
    void AddValueProbability(ScoreValue const* value, double probability) override {
        calls.push_back(ScoreValue::TextOf(*value) + ":" + std::to_string(probability));
    }
    int GetNumberOfValueProbabilities() const override { return 0; }
    double GetProbabilityOfValue(ScoreValue const*) const override { return 0.0; }

    int code;
    std::vector<std::string> calls;
};

using Log = std::vector<std::string>;

// Writes its name in a log when it is deleted.
template <typename Base>
class Counted : public Base {
  public:
    Counted(Log* log, char const* name) : log(log), name(name) {}
    ~Counted() override { log->push_back(name); }
    Log* log;
    char const* name;
};

using Probabilities = std::vector<std::pair<char const*, double>>;

// A model whose data dictionary holds the target "t" of the measure level, with a default value or
// value probabilities.
std::unique_ptr<TinyModel> ModelWithTarget(ScoreDictVar::MeasureLevel level, ScoreValue* defaultValue,
                                           Probabilities const* probabilities) {
    auto* target = new DictVar("t", level == ScoreDictVar::MEASURE_CONTINUOUS ? ScoreDictVar::kNUMERIC_VAR
                                                                              : ScoreDictVar::STRING_VAR);
    target->SetMLevel(level);
    if (defaultValue != nullptr)
        target->SetDefValue(defaultValue);
    if (probabilities != nullptr) {
        auto* set = new ValueProbabilitySet();
        for (auto const& [text, probability] : *probabilities)
            set->Add(new ValueProbability(new StringValue(text), probability));
        target->SetValueProbabilities(set);
    }
    auto* dictionary = new BaseDictionary();
    dictionary->AddVar("t", target);
    auto model = std::make_unique<TinyModel>();
    model->SetScoreDictionary(dictionary);
    EXPECT_TRUE(model->SetVarRole("t", ScoreModel::kTARGET_ROLE));
    return model;
}

std::vector<std::string> Fallback(Probabilities const& probabilities, int code, bool own = false,
                                  long* status = nullptr) {
    auto model = ModelWithTarget(ScoreDictVar::MEASURE_NOMINAL, nullptr, &probabilities);
    model->ownProbabilities = own;
    RecordingResult result(code);
    const QXScore::QXStatus outcome = model->HandleMissingValue(&result);
    if (status != nullptr)
        *status = outcome.GetErrorCode();
    return result.calls;
}

}  // namespace

TEST(BaseModel, RolesFollowTheDictionaries) {
    TinyModel model;
    auto* data = new BaseDictionary();
    data->AddVar("age", new DictVar("age", ScoreDictVar::kNUMERIC_VAR));
    model.SetScoreDictionary(data);

    // Without a transformation dictionary, any non-empty name gets its role.
    EXPECT_FALSE(model.SetVarRole("", ScoreModel::kTARGET_ROLE));
    EXPECT_TRUE(model.SetVarRole("unknown", ScoreModel::VarRole(4)));
    EXPECT_EQ(model.GetVarRole("unknown"), 4);
    EXPECT_EQ(model.GetVarRole(""), -1);
    EXPECT_FALSE(model.SetVarRole(static_cast<ScoreDictVar const*>(nullptr), ScoreModel::kTARGET_ROLE));

    // With one, the name must stand in either dictionary.
    auto* derived = new TransformationDictionary();
    derived->AddVar("ratio", new DictVar("ratio", ScoreDictVar::kNUMERIC_VAR));
    model.SetTransformationScoreDictionary(derived);
    EXPECT_FALSE(model.SetVarRole("nowhere", ScoreModel::VarRole(2)));
    EXPECT_EQ(model.GetVarRole("nowhere"), -1);

    // The last role counts; the target is the last name given role 1, read from the data dictionary.
    EXPECT_TRUE(model.SetVarRole(data->GetVar("age"), ScoreModel::kTARGET_ROLE));
    EXPECT_EQ(model.GetTargetVar(), data->GetVar("age"));
    EXPECT_TRUE(model.SetVarRole("age", ScoreModel::VarRole(3)));
    EXPECT_EQ(model.GetVarRole(data->GetVar("age")), 3);
    EXPECT_EQ(model.GetTargetVar(), data->GetVar("age"));
    // A derived target has no target variable.
    EXPECT_TRUE(model.SetVarRole("ratio", ScoreModel::kTARGET_ROLE));
    EXPECT_EQ(model.GetTargetVar(), nullptr);
    EXPECT_EQ(model.GetVarRole("age"), 3);

    // Only regression without a data-dictionary target needs a made-up target.
    model.SetMiningFunction(BaseModel::kRegression);
    EXPECT_TRUE(model.NeedToMakeupATarget());
    model.SetMiningFunction(BaseModel::kClassification);
    EXPECT_FALSE(model.NeedToMakeupATarget());
    model.SetVarRole("age", ScoreModel::kTARGET_ROLE);
    model.SetMiningFunction(BaseModel::kRegression);
    EXPECT_FALSE(model.NeedToMakeupATarget());
}

TEST(BaseModel, NamesAndDefaults) {
    const std::pair<char const*, BaseModel::FUNCNAME_TYPE> functions[] = {
        {"associationRules", BaseModel::kAssociationRules},
        {"sequences", BaseModel::kSequences},
        {"classification", BaseModel::kClassification},
        {"regression", BaseModel::kRegression},
        {"clustering", BaseModel::kClustering},
        {"timeSeries", BaseModel::kTimeSeries},
        {"Classification", BaseModel::kOtherFunction},
        {"", BaseModel::kOtherFunction},
    };
    for (auto const& [text, function] : functions)
        EXPECT_EQ(BaseModel::MiningFunctionFromString(text), function) << text;

    TinyModel model;
    EXPECT_FALSE(model.isKMorPDF());
    model.SetAlgorithmName("KM");
    EXPECT_TRUE(model.isKMorPDF());
    model.SetAlgorithmName("Parametric Distribution Fitting");
    EXPECT_TRUE(model.isKMorPDF());
    model.SetAlgorithmName("km");
    EXPECT_FALSE(model.isKMorPDF());
    EXPECT_EQ(model.GetMissingValuePolicy(), ScoreModel::kDEFAULT_MV_POLICY);
    EXPECT_EQ(VersionInfo().GetVersionInfo(), "2.1");
}

TEST(BaseModel, FallbackPicksTheFirstMostProbableValue) {
    const Probabilities probabilities = {{"a", 0.2}, {"b", 0.4}, {"c", 0.4}, {"d", 0.0}};
    // Result codes that list probabilities get every value, in order, then the best value.
    const std::vector<std::string> listed = {"a:0.200000", "b:0.400000", "c:0.400000",
                                             "d:0.000000", "value=b",    "confidence=0.400000"};
    for (int code : {0, 2, 3, 4, 6, 10, 15, 18, 20, 21, 24, 26})
        EXPECT_EQ(Fallback(probabilities, code), listed) << code;
    const std::vector<std::string> bestOnly = {"value=b", "confidence=0.400000"};
    for (int code : {-1, 1, 5, 27, 28})
        EXPECT_EQ(Fallback(probabilities, code), bestOnly) << code;
    // A model with its own probabilities gets none from the fallback.
    EXPECT_EQ(Fallback(probabilities, 0, true), bestOnly);

    // Zero probabilities, or none at all, choose nothing and still answer OK.
    long status = -1;
    EXPECT_EQ(Fallback({{"a", 0.0}}, 1, false, &status), std::vector<std::string>{});
    EXPECT_EQ(status, 0);
    EXPECT_EQ(Fallback({}, 0, false, &status), std::vector<std::string>{});
    EXPECT_EQ(status, 0);
}

TEST(BaseModel, FallbackFailsWithoutSomethingToAnswer) {
    RecordingResult result(0);
    // A continuous target answers its default value, or fails without touching the result.
    auto withDefault = ModelWithTarget(ScoreDictVar::MEASURE_CONTINUOUS, new StringValue("7"), nullptr);
    EXPECT_TRUE(withDefault->HandleMissingValue(&result).IsOK());
    EXPECT_EQ(result.calls, std::vector<std::string>{"value=7"});
    result.calls.clear();
    auto noDefault = ModelWithTarget(ScoreDictVar::MEASURE_CONTINUOUS, nullptr, nullptr);
    QXScore::QXStatus status = noDefault->HandleMissingValue(&result);
    EXPECT_EQ(status, QXScore::QXStatus(90027, false));
    EXPECT_TRUE(result.calls.empty());
    EXPECT_TRUE(noDefault->HandleMissingValue(nullptr).IsOK());

    // A categorical target without probabilities clears the prediction and fails.
    auto noProbabilities = ModelWithTarget(ScoreDictVar::MEASURE_ORDINAL, nullptr, nullptr);
    EXPECT_EQ(noProbabilities->HandleMissingValue(&result), QXScore::QXStatus(90027, false));
    EXPECT_EQ(result.calls, std::vector<std::string>{"value=null"});

    // Without a target there is nothing to answer from.
    TinyModel noTarget;
    EXPECT_EQ(noTarget.HandleMissingValue(&result).GetErrorCode(), 90027);
}

TEST(BaseModel, DeletesWhatItOwns) {
    Log deleted;
    {
        TinyModel model;
        model.SetScoreDictionary(new Counted<BaseDictionary>(&deleted, "data"));
        model.SetTransformationScoreDictionary(new Counted<TransformationDictionary>(&deleted, "derived"));
        model.SetResultScoreDictionary(new Counted<BaseDictionary>(&deleted, "results"));
        model.SetVersionInfo(new Counted<VersionInfo>(&deleted, "version"));
    }
    EXPECT_EQ(deleted, (Log{"version", "data", "derived", "results"}));

    // Shared dictionaries stay with their owner; the one-argument setters keep the flag as it was.
    deleted.clear();
    Counted<BaseDictionary> sharedData(&deleted, "shared data");
    Counted<TransformationDictionary> sharedDerived(&deleted, "shared derived");
    {
        TinyModel model;
        model.SetScoreDictionary(&sharedData, false);
        model.SetTransformationScoreDictionary(&sharedDerived, false);
        model.SetScoreDictionary(&sharedData);
        model.SetTransformationScoreDictionary(&sharedDerived);
        EXPECT_EQ(model.GetDictionary(), &sharedData);
        EXPECT_EQ(model.GetTransformationDictionary(), &sharedDerived);
        // A setter does not delete what it replaces.
        std::unique_ptr<VersionInfo> first(new Counted<VersionInfo>(&deleted, "first version"));
        model.SetVersionInfo(first.get());
        model.SetVersionInfo(new Counted<VersionInfo>(&deleted, "second version"));
        EXPECT_TRUE(deleted.empty());
    }
    EXPECT_EQ(deleted, (Log{"first version", "second version"}));
}
