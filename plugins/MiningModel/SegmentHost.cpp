#include "plugins/MiningModel/SegmentHost.h"

#include <ostream>

#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"

namespace QXVantry_920 {
namespace mining {

SegmentHost::SegmentHost(ScoreDictionary* inputs, TransformationDictionary* derived) {
    SetScoreDictionary(inputs, false);
    SetTransformationScoreDictionary(derived, false);
}

SegmentHost::~SegmentHost() = default;

bool SegmentHost::AddField(std::string const& name, ScoreDictVar::VariableType type) {
    if (fDictionary != nullptr && fDictionary->GetVar(name) != nullptr)
        return false;
    if (fTransformationDictionary != nullptr && fTransformationDictionary->GetVar(name) != nullptr)
        return false;
    if (!fOwnInputs) {
        fOwnInputs.reset(fDictionary != nullptr ? fDictionary->Clone() : new BaseDictionary());
        SetScoreDictionary(fOwnInputs.get(), false);
    }
    return fOwnInputs->AddVar(name, new DictVar(name, type));
}

QXScore::QXStatus SegmentHost::Score(ScoreCaseRecord*, ScoreResult*) {
    return QXScore::QXStatus();
}

ScoreResult* SegmentHost::MakeResult() const {
    return nullptr;
}

ScoreCaseRecord* SegmentHost::MakeCaseRecord() const {
    return nullptr;
}

QXScore::QXStatus SegmentHost::FillResultFields(ScoreResult const*, ScoreResultField*) {
    return QXScore::QXStatus();
}

bool SegmentHost::HasOwnProbabilityOutput() {
    return false;
}

void SegmentHost::Display(std::ostream& out) const {
    out << "Segment host\n";
}

}  // namespace mining
}  // namespace QXVantry_920
