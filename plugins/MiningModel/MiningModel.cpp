#include "plugins/MiningModel/MiningModel.h"

#include <ostream>
#include <typeinfo>

#include "plugins/common/FamilyResult.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

using mining::CombinedOutcome;
using mining::CombineMethod;
using mining::Segment;
using mining::SegmentOutcome;

namespace {

// Whether a value is a prediction: present, and neither the missing number nor an empty text.
bool IsPresent(ScoreValue const* value) {
    if (value == nullptr)
        return false;
    if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE)
        return !ScoreValue::TextOf(*value).empty();
    return !value->IsSystemMissingValue();
}

// Copies a value into a record slot, in place where the slot holds one of the same kind.
void CopyValue(ScoreValue const* value, CaseRecord& record, int slot) {
    if (value == nullptr || value->IsSystemMissingValue()) {
        record.SetMissingValue(slot);
    } else if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
        record.SetValue(slot, ScoreValue::TextOf(*value));
    } else {
        record.SetValue(slot, value->GetDouble());
    }
}

}  // namespace

MiningModel::MiningModel(CombineMethod method, mining::MissingTreatment treatment, double missingThreshold)
    : fMethod(method), fTreatment(treatment), fMissingThreshold(missingThreshold) {}

MiningModel::~MiningModel() = default;

void MiningModel::AddSegment(std::unique_ptr<Segment> segment) {
    fSegments.push_back(std::move(segment));
}

void MiningModel::SetChainRecord(std::unique_ptr<CaseRecord> record) {
    fChainRecord = std::move(record);
}

void MiningModel::Finish(bool numericTarget) {
    std::vector<std::string> const& categories = GetCategories();
    fCategoryValues.clear();
    for (std::string const& text : categories) {
        if (numericTarget)
            fCategoryValues.push_back(std::make_unique<NumericValue>(text));
        else
            fCategoryValues.push_back(std::make_unique<StringValue>(text));
    }
    fSegmentProbabilities.assign(categories.size(), 0.0);
    fCombiner = std::make_unique<mining::SegmentCombiner>(fMethod, fTreatment, fMissingThreshold,
                                                          static_cast<int>(categories.size()),
                                                          static_cast<int>(fSegments.size()));
    fCombined.probabilities.reserve(categories.size());
}

SegmentOutcome MiningModel::Outcome(Segment& segment) {
    SegmentOutcome outcome;
    ScoreValue const* value = segment.result->GetResultValue();
    if (!IsPresent(value))
        return outcome;
    outcome.valid = true;
    if (!IsClassification()) {
        outcome.number = value->GetDouble();
        return outcome;
    }
    outcome.category = FindCategory(ScoreValue::TextOf(*value));
    if (segment.classification != nullptr && segment.classification->GetNumberOfValueProbabilities() > 0) {
        ReadProbabilities(segment);
        outcome.probabilities = fSegmentProbabilities.data();
    }
    return outcome;
}

void MiningModel::ReadProbabilities(Segment& segment) {
    FamilyResult const* own = segment.familyResult;
    if (own == nullptr) {
        for (size_t c = 0; c < fCategoryValues.size(); ++c)
            fSegmentProbabilities[c] =
                segment.classification->GetProbabilityOfValue(fCategoryValues[c].get());
        return;
    }
    // GetProbabilityOfValue's match (the first category of equal value and kind), found once per
    // category instead of once per case.
    int const held = own->GetNumberOfValueProbabilities();
    if (segment.mappedCount != held) {
        segment.categoryMap.assign(fCategoryValues.size(), -1);
        for (size_t c = 0; c < fCategoryValues.size(); ++c) {
            ScoreValue const& wanted = *fCategoryValues[c];
            for (int k = 0; k < held; ++k) {
                ScoreValue const* category = own->CategoryAt(k);
                if (category != nullptr && *category == wanted &&
                    ScoreValue::TypeOf(*category) == ScoreValue::TypeOf(wanted)) {
                    segment.categoryMap[c] = k;
                    break;
                }
            }
        }
        segment.mappedCount = held;
    }
    for (size_t c = 0; c < fCategoryValues.size(); ++c) {
        int const k = segment.categoryMap[c];
        fSegmentProbabilities[c] = k < 0 ? 0.0 : own->ProbabilityAt(k);
    }
}

void MiningModel::FillChainRecord(ScoreCaseRecord const* flat) {
    if (fChainSlots.empty()) {
        for (std::string const& name : flat->GetVarNames(true))
            fChainSlots.push_back(fChainRecord->GetIndex(name));
    }
    for (size_t i = 0; i < fChainSlots.size(); ++i) {
        if (fChainSlots[i] >= 0)
            CopyValue(flat->Get(static_cast<int>(i)), *fChainRecord, fChainSlots[i]);
    }
}

void MiningModel::PassOutputs(Segment& segment) {
    // A fresh field set per case: a result that leaves a missing output out must not leave the value
    // of an earlier case behind.
    ResultField fields;
    segment.model->FillResultFields(segment.result.get(), &fields);
    for (mining::ChainOutput const& output : segment.outputs)
        CopyValue(fields.GetResultValue(output.name), *fChainRecord, output.slot);
}

bool MiningModel::Evaluate(FamilyCase const& input, Prediction& prediction) {
    ScoreCaseRecord const* flat = input.Flat();
    ScoreCaseRecord* record = const_cast<ScoreCaseRecord*>(flat);
    if (fChainRecord) {
        FillChainRecord(flat);
        record = fChainRecord.get();
    } else if (!fJudgementShared) {
        // The flat record starts with this model's prepared fields, and the segments' input variables
        // are copies of this model's: a number this model judged present is present for them too.
        for (auto& segment : fSegments) {
            if (auto* family = dynamic_cast<FamilyModel*>(segment->model.get())) {
                family->TakeJudgementFrom(&GetSchema(), flat);
            }
        }
        fJudgementShared = true;
    }
    fCombiner->Begin();
    for (size_t i = 0; i < fSegments.size(); ++i) {
        Segment& segment = *fSegments[i];
        if (segment.predicate) {
            const ScorePredicate::PredicateResult holds =
                segment.predicate->Evaluate(input.Input(), input.Derived());
            if (holds != ScorePredicate::PRED_TRUE && holds != ScorePredicate::PRED_SURROGATE_TRUE)
                continue;
        }
        segment.model->Score(record, segment.result.get());
        if (fChainRecord)
            PassOutputs(segment);
        if (!fCombiner->Add(Outcome(segment), segment.weight, static_cast<int>(i)))
            break;
    }
    if (!fCombiner->Finish(fCombined))
        return false;
    prediction.valid = true;
    if (fCombined.segment >= 0)
        prediction.entityId = fSegments[static_cast<size_t>(fCombined.segment)]->id;
    if (IsClassification()) {
        prediction.category = fCombined.category;
        prediction.probabilities.assign(fCombined.probabilities.begin(), fCombined.probabilities.end());
    } else {
        prediction.value = fCombined.number;
    }
    return true;
}

void MiningModel::DisplayFamily(std::ostream& out) const {
    out << "MiningModel: " << fSegments.size() << " segments\n";
    for (auto const& segment : fSegments) {
        out << "Segment " << segment->id << " weight " << segment->weight << '\n';
        segment->model->Display(out);
    }
}

}  // namespace QXVantry_920
