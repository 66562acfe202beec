// A model's "Targets": how its raw prediction becomes the answer. For a continuous target: the default
// value when there is no prediction, min and max, rescaling and the cast to an integer; for a
// categorical target: prior probabilities, used when there is no prediction.
#pragma once

#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class FamilyTranslator;
struct Prediction;

class ModelTargets {
  public:
    enum class Cast { kNone, kRound, kCeiling, kFloor };

    struct Target {
        std::string field;
        double rescaleFactor = 1.0;
        double rescaleConstant = 0.0;
        Cast cast = Cast::kNone;
        bool hasMin = false;
        bool hasMax = false;
        double min = 0.0;
        double max = 0.0;
        bool hasDefault = false;
        double defaultValue = 0.0;
        // "TargetValue" values with a prior probability, in document order.
        std::vector<std::string> priorValues;
        std::vector<double> priors;
    };

    // Reads the "Target" children; a bad number fails 260151, a bad castInteger 260152.
    void Read(XERCES_CPP_NAMESPACE::DOMElement* targets, FamilyTranslator& translator);

    // The target of the field, or of the empty field name; null for none.
    Target const* Find(std::string const& field) const;

    // Applies the target of the field to a regression answer: a default value for no prediction, then
    // min/max, rescaling and the cast.
    void ApplyRegression(std::string const& field, Prediction& prediction) const;
    // For a classification without a prediction, gives the prior probabilities over the categories
    // (category texts as the model numbers them) and the most probable of them.
    void ApplyClassification(std::string const& field, std::vector<std::string> const& categories,
                             Prediction& prediction) const;

  private:
    std::vector<Target> fTargets;
};

}  // namespace QXVantry_920
