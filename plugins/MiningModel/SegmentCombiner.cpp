#include "plugins/MiningModel/SegmentCombiner.h"

#include <algorithm>
#include <utility>

namespace QXVantry_920 {
namespace mining {

namespace {

struct MethodName {
    char const* text;
    CombineMethod method;
};

constexpr MethodName kMethods[] = {
    {"majorityVote", CombineMethod::kMajorityVote},
    {"weightedMajorityVote", CombineMethod::kWeightedMajorityVote},
    {"average", CombineMethod::kAverage},
    {"weightedAverage", CombineMethod::kWeightedAverage},
    {"median", CombineMethod::kMedian},
    {"weightedMedian", CombineMethod::kWeightedMedian},
    {"max", CombineMethod::kMax},
    {"sum", CombineMethod::kSum},
    {"weightedSum", CombineMethod::kWeightedSum},
    {"selectFirst", CombineMethod::kSelectFirst},
    {"selectAll", CombineMethod::kSelectAll},
    {"modelChain", CombineMethod::kModelChain},
};

// The index of the largest value, the first of equals; -1 for none.
int ArgMax(std::vector<double> const& values) {
    int best = -1;
    for (size_t i = 0; i < values.size(); ++i) {
        if (best < 0 || values[i] > values[static_cast<size_t>(best)])
            best = static_cast<int>(i);
    }
    return best;
}

}  // namespace

bool CombineMethodFromText(std::string const& text, CombineMethod& method) {
    for (MethodName const& entry : kMethods) {
        if (text == entry.text) {
            method = entry.method;
            return true;
        }
    }
    return false;
}

bool MissingTreatmentFromText(std::string const& text, MissingTreatment& treatment) {
    if (text == "returnMissing")
        treatment = MissingTreatment::kReturnMissing;
    else if (text == "skipSegment")
        treatment = MissingTreatment::kSkipSegment;
    else if (text == "continue")
        treatment = MissingTreatment::kContinue;
    else
        return false;
    return true;
}

bool IsWeighted(CombineMethod method) {
    return method == CombineMethod::kWeightedMajorityVote || method == CombineMethod::kWeightedAverage ||
           method == CombineMethod::kWeightedMedian || method == CombineMethod::kWeightedSum;
}

bool IsVote(CombineMethod method) {
    return method == CombineMethod::kMajorityVote || method == CombineMethod::kWeightedMajorityVote;
}

SegmentCombiner::SegmentCombiner(CombineMethod method, MissingTreatment treatment, double missingThreshold,
                                 int categoryCount, int segmentCount)
    : fMethod(method),
      fTreatment(treatment),
      fMissingThreshold(missingThreshold),
      fCategoryCount(std::max(categoryCount, 0)) {
    const size_t segments = static_cast<size_t>(std::max(segmentCount, 1));
    fEntries.reserve(segments);
    fProbabilities.reserve(segments * static_cast<size_t>(fCategoryCount));
    fScratch.reserve(segments);
}

void SegmentCombiner::Begin() {
    fEntries.clear();
    fProbabilities.clear();
    fMissingWeight = 0.0;
    fTotalWeight = 0.0;
    fDecidedMissing = false;
    fStopped = false;
}

bool SegmentCombiner::SingleAnswer() const {
    return fMethod == CombineMethod::kSelectFirst || fMethod == CombineMethod::kSelectAll ||
           fMethod == CombineMethod::kModelChain;
}

void SegmentCombiner::Record(SegmentOutcome const& outcome, double weight, int category, int segment) {
    // A chain answers with its last segment: earlier answers only fed the later segments.
    if (fMethod == CombineMethod::kModelChain) {
        fEntries.clear();
        fProbabilities.clear();
    }
    int offset = -1;
    if (outcome.valid && outcome.probabilities != nullptr && fCategoryCount > 0) {
        offset = static_cast<int>(fProbabilities.size());
        fProbabilities.insert(fProbabilities.end(), outcome.probabilities,
                              outcome.probabilities + fCategoryCount);
    }
    fEntries.push_back(Entry{outcome.number, weight, category, segment, offset});
}

bool SegmentCombiner::Add(SegmentOutcome const& outcome, double weight, int segment) {
    if (fStopped)
        return false;
    const double counted = IsWeighted(fMethod) ? weight : 1.0;
    fTotalWeight += counted;
    if (!outcome.valid) {
        fMissingWeight += counted;
        switch (fTreatment) {
            case MissingTreatment::kReturnMissing:
                fDecidedMissing = true;
                fStopped = true;
                return false;
            case MissingTreatment::kSkipSegment:
                return true;
            case MissingTreatment::kContinue:
                if (IsVote(fMethod)) {
                    // A missing prediction is a vote of its own, which may win.
                    Record(outcome, counted, kMissingVote, segment);
                    return true;
                }
                if (fMethod == CombineMethod::kModelChain) {
                    Record(outcome, counted, kMissingVote, segment);
                    return true;
                }
                // Any other method takes the missing prediction as its answer.
                fDecidedMissing = true;
                fStopped = true;
                return false;
        }
    }
    Record(outcome, counted, outcome.category, segment);
    if (fMethod == CombineMethod::kSelectFirst || fMethod == CombineMethod::kSelectAll) {
        fStopped = true;
        return false;
    }
    return true;
}

bool SegmentCombiner::Finish(CombinedOutcome& out) {
    out.valid = false;
    out.number = 0.0;
    out.category = -1;
    out.segment = -1;
    out.probabilities.assign(static_cast<size_t>(fCategoryCount), 0.0);
    if (fDecidedMissing || fEntries.empty())
        return false;
    if (!SingleAnswer() && fTotalWeight > 0.0 && fMissingWeight / fTotalWeight > fMissingThreshold)
        return false;
    if (SingleAnswer()) {
        if (fEntries.back().category == kMissingVote)
            return false;
        out.segment = fEntries.back().segment;
    }
    out.valid = Categorical() ? FinishCategory(out) : FinishNumber(out);
    return out.valid;
}

double SegmentCombiner::ProbabilityOf(Entry const& entry, int category) const {
    if (entry.probabilities >= 0)
        return fProbabilities[static_cast<size_t>(entry.probabilities + category)];
    return entry.category == category ? 1.0 : 0.0;
}

bool SegmentCombiner::FinishNumber(CombinedOutcome& out) {
    double total = 0.0;
    double weights = 0.0;
    for (Entry const& entry : fEntries) {
        total += entry.weight * entry.number;
        weights += entry.weight;
    }
    switch (fMethod) {
        case CombineMethod::kSelectFirst:
        case CombineMethod::kSelectAll:
        case CombineMethod::kModelChain:
            out.number = fEntries.back().number;
            return true;
        case CombineMethod::kAverage:
        case CombineMethod::kWeightedAverage:
            if (weights == 0.0)
                return false;
            out.number = total / weights;
            return true;
        case CombineMethod::kSum:
        case CombineMethod::kWeightedSum:
            out.number = total;
            return true;
        case CombineMethod::kMedian:
        case CombineMethod::kWeightedMedian:
            fScratch.clear();
            for (Entry const& entry : fEntries)
                fScratch.emplace_back(entry.number, entry.weight);
            out.number = MedianOfScratch(fMethod == CombineMethod::kWeightedMedian);
            return true;
        case CombineMethod::kMax:
            out.number = fEntries.front().number;
            for (Entry const& entry : fEntries)
                out.number = std::max(out.number, entry.number);
            return true;
        case CombineMethod::kMajorityVote:
        case CombineMethod::kWeightedMajorityVote:
            break;
    }
    // Votes need categories; the translator refuses them for a continuous target.
    return false;
}

double SegmentCombiner::MedianOfScratch(bool weighted) {
    std::sort(fScratch.begin(), fScratch.end(),
              [](std::pair<double, double> const& a, std::pair<double, double> const& b) {
                  return a.first < b.first;
              });
    const size_t n = fScratch.size();
    if (!weighted) {
        return n % 2 == 1 ? fScratch[n / 2].first : (fScratch[n / 2 - 1].first + fScratch[n / 2].first) / 2.0;
    }
    double total = 0.0;
    for (auto const& pair : fScratch)
        total += pair.second;
    double running = 0.0;
    for (auto const& pair : fScratch) {
        running += pair.second;
        if (running >= total / 2.0)
            return pair.first;
    }
    return fScratch.back().first;
}

bool SegmentCombiner::FinishCategory(CombinedOutcome& out) {
    switch (fMethod) {
        case CombineMethod::kSelectFirst:
        case CombineMethod::kSelectAll:
        case CombineMethod::kModelChain: {
            Entry const& entry = fEntries.back();
            for (int c = 0; c < fCategoryCount; ++c)
                out.probabilities[static_cast<size_t>(c)] = ProbabilityOf(entry, c);
            out.category = entry.category;
            return entry.category >= 0;
        }
        case CombineMethod::kMajorityVote:
        case CombineMethod::kWeightedMajorityVote:
            return Votes(out);
        case CombineMethod::kAverage:
        case CombineMethod::kWeightedAverage:
            Sums(out, fMethod == CombineMethod::kWeightedAverage, true);
            break;
        case CombineMethod::kSum:
        case CombineMethod::kWeightedSum:
            Sums(out, fMethod == CombineMethod::kWeightedSum, false);
            break;
        case CombineMethod::kMedian:
        case CombineMethod::kWeightedMedian:
            Medians(out, fMethod == CombineMethod::kWeightedMedian);
            break;
        case CombineMethod::kMax:
            out.category = Maximum(out);
            return out.category >= 0;
    }
    out.category = ArgMax(out.probabilities);
    return out.category >= 0;
}

bool SegmentCombiner::Votes(CombinedOutcome& out) const {
    double total = 0.0;
    double missing = 0.0;
    for (Entry const& entry : fEntries) {
        total += entry.weight;
        if (entry.category == kMissingVote)
            missing += entry.weight;
        else if (entry.category >= 0)
            out.probabilities[static_cast<size_t>(entry.category)] += entry.weight;
    }
    out.category = ArgMax(out.probabilities);
    if (out.category < 0 || total <= 0.0 || missing > out.probabilities[static_cast<size_t>(out.category)])
        return false;
    for (double& share : out.probabilities)
        share /= total;
    return true;
}

void SegmentCombiner::Sums(CombinedOutcome& out, bool weighted, bool average) const {
    double weights = 0.0;
    for (Entry const& entry : fEntries) {
        const double weight = weighted ? entry.weight : 1.0;
        weights += weight;
        for (int c = 0; c < fCategoryCount; ++c)
            out.probabilities[static_cast<size_t>(c)] += weight * ProbabilityOf(entry, c);
    }
    if (average && weights > 0.0) {
        for (double& probability : out.probabilities)
            probability /= weights;
    }
}

void SegmentCombiner::Medians(CombinedOutcome& out, bool weighted) {
    for (int c = 0; c < fCategoryCount; ++c) {
        fScratch.clear();
        for (Entry const& entry : fEntries)
            fScratch.emplace_back(ProbabilityOf(entry, c), entry.weight);
        out.probabilities[static_cast<size_t>(c)] = MedianOfScratch(weighted);
    }
}

int SegmentCombiner::Maximum(CombinedOutcome& out) const {
    // The category that some segment predicts with the highest probability wins; the answer averages
    // the distributions of the segments that predict it with that probability.
    int winner = -1;
    double best = -1.0;
    for (Entry const& entry : fEntries) {
        if (entry.category < 0)
            continue;
        const double probability = ProbabilityOf(entry, entry.category);
        if (probability > best) {
            best = probability;
            winner = entry.category;
        }
    }
    if (winner < 0)
        return -1;
    int count = 0;
    for (Entry const& entry : fEntries) {
        if (entry.category != winner || ProbabilityOf(entry, winner) < best)
            continue;
        ++count;
        for (int c = 0; c < fCategoryCount; ++c)
            out.probabilities[static_cast<size_t>(c)] += ProbabilityOf(entry, c);
    }
    for (double& probability : out.probabilities)
        probability /= count;
    return winner;
}

}  // namespace mining
}  // namespace QXVantry_920
