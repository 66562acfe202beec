// A model made of segments: each segment holds a predicate and a model of any catalogued family, and
// the segmentation's method combines the answers of the segments whose predicates hold.
//
// The mining model prepares its inputs and computes its derived fields once per case; every segment
// then scores the same flat record of inputs and derived values (for a model chain, a record that also
// holds the outputs of the segments before). Segment models, their results and the combiner's buffers
// are made at build time, so a case allocates nothing per segment.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "plugins/MiningModel/SegmentCombiner.h"
#include "plugins/common/FamilyModel.h"
#include "vantry/factory/ResultField.h"

namespace QXVantry_920 {

class FamilyResult;
class ScoreClsResult;
class ScorePredicate;
class ScoreResult;
class ScoreValue;

namespace mining {

// An output of a chain segment that the segments after it read: its name in the segment's result
// fields and its slot in the chain record.
struct ChainOutput {
    std::string name;
    int slot = -1;
};

struct Segment {
    std::string id;
    double weight = 1.0;
    // Null for a segment that always applies.
    std::unique_ptr<ScorePredicate> predicate;
    std::unique_ptr<ScoreModel> model;
    std::unique_ptr<ScoreResult> result;
    // The result as a classification result, when it is one.
    ScoreClsResult const* classification = nullptr;
    // The result as the shipped families' result, when it is exactly one; then, per category of the
    // mining model, the index of the same category among the result's (-1 for none), made for a
    // result holding `mappedCount` categories.
    FamilyResult const* familyResult = nullptr;
    std::vector<int> categoryMap;
    int mappedCount = -1;
    // Model chain only: the outputs that later segments read.
    std::vector<ChainOutput> outputs;
};

// Carried by the models of this plug-in that may parent segments: the catalogue with which their
// segments' families are found.
class CatalogueCarrier {
  public:
    virtual ~CatalogueCarrier() = default;
    std::vector<std::string> const& Catalogue() const { return fCatalogue; }
    void SetCatalogue(std::vector<std::string> const& catalogue) { fCatalogue = catalogue; }

  private:
    std::vector<std::string> fCatalogue;
};

}  // namespace mining

class MiningModel : public FamilyModel, public mining::CatalogueCarrier {
  public:
    MiningModel(mining::CombineMethod method, mining::MissingTreatment treatment, double missingThreshold);
    ~MiningModel() override;

    // Takes the segment over; call before Finish.
    void AddSegment(std::unique_ptr<mining::Segment> segment);
    // Model chain only: takes over the record that the segments score, which holds the flat record's
    // fields by name followed by the chain outputs.
    void SetChainRecord(std::unique_ptr<CaseRecord> record);
    // Sizes the combiner once the categories and segments are known; `numericTarget` says whether
    // categories are numbers.
    void Finish(bool numericTarget);

    mining::CombineMethod Method() const { return fMethod; }
    std::size_t SegmentCount() const { return fSegments.size(); }

  protected:
    bool Evaluate(FamilyCase const& input, Prediction& prediction) override;
    void DisplayFamily(std::ostream& out) const override;

  private:
    // The segment's answer for the case it has just scored.
    mining::SegmentOutcome Outcome(mining::Segment& segment);
    // The probabilities of the mining model's categories in a segment's result, into
    // fSegmentProbabilities.
    void ReadProbabilities(mining::Segment& segment);
    // Copies the flat record into the chain record (values in place).
    void FillChainRecord(ScoreCaseRecord const* flat);
    // Copies a chain segment's outputs into the chain record.
    void PassOutputs(mining::Segment& segment);

    mining::CombineMethod fMethod;
    mining::MissingTreatment fTreatment;
    double fMissingThreshold;
    std::vector<std::unique_ptr<mining::Segment>> fSegments;
    std::unique_ptr<mining::SegmentCombiner> fCombiner;
    mining::CombinedOutcome fCombined;
    // The categories as values of the target's type, to ask segment results for probabilities.
    std::vector<std::unique_ptr<ScoreValue>> fCategoryValues;
    // Per case: the probabilities a segment gave, by category.
    std::vector<double> fSegmentProbabilities;
    std::unique_ptr<CaseRecord> fChainRecord;
    // The segments of the shipped families have been told that this model's schema judges the flat
    // record they score.
    bool fJudgementShared = false;
    // Per slot of the flat record: its slot in the chain record (-1 for none), resolved at the first case.
    std::vector<int> fChainSlots;
};

}  // namespace QXVantry_920
