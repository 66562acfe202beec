// A model's "Output": the values a host reads beside the prediction. Features: predictedValue,
// predictedDisplayValue, probability (of the predicted category, or of the category in "value"),
// confidence, entityId and transformedValue, whose expression the derived-field engine evaluates over
// the case's inputs, derived values and the outputs before it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/values/ScoreDictVar.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class BaseDictionary;
class CaseRecord;
class FamilyResult;
class FamilyTranslator;
class ScoreDictionary;
class TransformationDictionary;
struct Prediction;

class ModelOutput {
  public:
    enum class Feature {
        kPredictedValue,
        kPredictedDisplayValue,
        kProbability,
        kConfidence,
        kEntityId,
        kTransformedValue,
        // A feature the shipped families do not compute: always missing.
        kUnsupported,
    };

    struct Field {
        std::string name;
        std::string featureText;
        Feature feature = Feature::kPredictedValue;
        ScoreDictVar::VariableType type = ScoreDictVar::kNUMERIC_VAR;
        ScoreDictVar::MeasureLevel level = ScoreDictVar::MEASURE_CONTINUOUS;
        // The "value" attribute of a probability or confidence; empty for the predicted category.
        std::string value;
        // The category that "value" names, resolved by Resolve; -1 for none.
        int category = -1;
    };

    ModelOutput();
    ModelOutput(ModelOutput const&) = delete;
    ModelOutput& operator=(ModelOutput const&) = delete;
    ~ModelOutput();

    // Reads the "OutputField" children; a field without a name fails 260120.
    void Read(XERCES_CPP_NAMESPACE::DOMElement* output, FamilyTranslator& translator);

    // Resolves the "value" of probability fields against the model's categories, and reads the
    // expressions of transformedValue fields into one derived dictionary over the flat dictionary
    // (inputs and derived fields by name), to which it adds a stand-in per other output field. The
    // element is the "Output" element read before; null for a model without one.
    void Resolve(XERCES_CPP_NAMESPACE::DOMElement* output, std::vector<std::string> const& categories,
                 BaseDictionary& flat, FamilyTranslator& translator);

    std::vector<Field> const& Fields() const { return fFields; }
    bool Empty() const { return fFields.empty(); }
    // Whether an output needs the flat record of the case.
    bool NeedsFlatRecord() const;
    // Whether an output is the display text of the predicted value, which costs a label look-up.
    bool NeedsDisplayText() const;

    // Computes every output of a case into the result, writing non-transformed outputs into the flat
    // record too (when it is given) so that expressions can read them. `display` gives the display
    // text of the predicted value.
    void Compute(Prediction const& prediction, FamilyResult& result, CaseRecord* flat,
                 ScoreDictionary const* flatDictionary, std::string const& display);

  private:
    std::vector<Field> fFields;
    // Per field, its slot in the flat record; -1 for none.
    std::vector<int> fFlatSlots;
    // The transformedValue expressions; null when there are none.
    std::unique_ptr<TransformationDictionary> fExpressions;
};

}  // namespace QXVantry_920
