// The arithmetic of a segmentation: how the answers of the segments whose predicates hold become one
// answer. It knows nothing of documents or records: the model hands it, case by case, each segment's
// outcome (a number, or a category index with a probability per category) and its weight, and reads the
// combined outcome at the end.
//
// A combiner sizes its buffers when it is made, so that scoring a case allocates nothing.
#pragma once

#include <string>
#include <vector>

namespace QXVantry_920 {
namespace mining {

enum class CombineMethod {
    kMajorityVote,
    kWeightedMajorityVote,
    kAverage,
    kWeightedAverage,
    kMedian,
    kWeightedMedian,
    kMax,
    kSum,
    kWeightedSum,
    kSelectFirst,
    kSelectAll,
    kModelChain,
};

// What a segment whose prediction is missing does to the combined answer.
enum class MissingTreatment { kReturnMissing, kSkipSegment, kContinue };

// The method of a document text; false for an unknown text.
bool CombineMethodFromText(std::string const& text, CombineMethod& method);
bool MissingTreatmentFromText(std::string const& text, MissingTreatment& treatment);
// Whether the method reads segment weights.
bool IsWeighted(CombineMethod method);
// Whether the method only makes sense for a categorical target.
bool IsVote(CombineMethod method);

// One segment's answer for a case.
struct SegmentOutcome {
    bool valid = false;
    // The prediction of a continuous target.
    double number = 0.0;
    // The predicted category of a categorical target: an index into the model's categories, -1 for a
    // prediction outside them (it still counts as a vote, for no category).
    int category = -1;
    // One probability per category, or null when the segment gave none (then its predicted category
    // counts with probability 1).
    double const* probabilities = nullptr;
};

// The combined answer.
struct CombinedOutcome {
    bool valid = false;
    double number = 0.0;
    int category = -1;
    // The segment whose answer was taken (select and chain methods); -1 for a combination.
    int segment = -1;
    // One per category; meaningful for a categorical target only.
    std::vector<double> probabilities;
};

class SegmentCombiner {
  public:
    // categoryCount is 0 for a continuous target.
    SegmentCombiner(CombineMethod method, MissingTreatment treatment, double missingThreshold,
                    int categoryCount, int segmentCount);

    CombineMethod Method() const { return fMethod; }
    bool Categorical() const { return fCategoryCount > 0; }

    // Starts a case.
    void Begin();
    // Adds the outcome of a segment whose predicate holds. False when the rest of the segments cannot
    // change the answer (a first selection made, or a missing prediction that decides the case).
    // `segment` is the segment's position, reported back for the select and chain methods.
    bool Add(SegmentOutcome const& outcome, double weight, int segment);
    // The combined answer of the case; false (and `out.valid` false) for a missing one.
    bool Finish(CombinedOutcome& out);

  private:
    // A missing vote under "continue".
    static constexpr int kMissingVote = -2;

    struct Entry {
        double number;
        double weight;
        int category;
        int segment;
        // Offset of the entry's probabilities in fProbabilities; -1 when the segment gave none.
        int probabilities;
    };

    double ProbabilityOf(Entry const& entry, int category) const;
    void Record(SegmentOutcome const& outcome, double weight, int category, int segment);
    bool SingleAnswer() const;
    bool FinishNumber(CombinedOutcome& out);
    bool FinishCategory(CombinedOutcome& out);
    bool Votes(CombinedOutcome& out) const;
    void Sums(CombinedOutcome& out, bool weighted, bool average) const;
    void Medians(CombinedOutcome& out, bool weighted);
    // The winning category of "max", with the distribution it answers; -1 for none.
    int Maximum(CombinedOutcome& out) const;
    // The median of the pairs in fScratch, by value; the weighted one is the first value at which the
    // running weight reaches half the total.
    double MedianOfScratch(bool weighted);

    CombineMethod fMethod;
    MissingTreatment fTreatment;
    double fMissingThreshold;
    int fCategoryCount;

    // Per case.
    std::vector<Entry> fEntries;
    // The category probabilities of the entries, copied in since segments reuse their buffers.
    std::vector<double> fProbabilities;
    double fMissingWeight = 0.0;
    double fTotalWeight = 0.0;
    bool fDecidedMissing = false;
    bool fStopped = false;
    // Scratch for medians: (value, weight) pairs.
    std::vector<std::pair<double, double>> fScratch;
};

}  // namespace mining
}  // namespace QXVantry_920
