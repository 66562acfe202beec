// The parent that a segment's family sees while it is built: a model that answers only its dictionaries
// (the mining model's input fields, plus the outputs of earlier segments in a chain, and its derived
// fields). The mining model itself is not complete yet while its segments are read, so it cannot be
// that parent. A host scores nothing.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "plugins/MiningModel/MiningModel.h"
#include "vantry/factory/BaseModel.h"

namespace QXVantry_920 {
namespace mining {

class SegmentHost : public BaseModel, public CatalogueCarrier {
  public:
    // The dictionaries stay the caller's.
    SegmentHost(ScoreDictionary* inputs, TransformationDictionary* derived);
    ~SegmentHost() override;

    // Adds a numeric or text field (an output of a chain segment) to the fields segments see; the
    // inputs are copied into a dictionary of the host's own at the first call. False for a name it
    // has already.
    bool AddField(std::string const& name, ScoreDictVar::VariableType type);

    QXScore::QXStatus Score(ScoreCaseRecord* record, ScoreResult* result) override;
    ScoreResult* MakeResult() const override;
    ScoreCaseRecord* MakeCaseRecord() const override;
    QXScore::QXStatus FillResultFields(ScoreResult const* result, ScoreResultField* fields) override;
    bool HasOwnProbabilityOutput() override;
    void Display(std::ostream& out) const override;

  private:
    std::unique_ptr<ScoreDictionary> fOwnInputs;
};

}  // namespace mining
}  // namespace QXVantry_920
