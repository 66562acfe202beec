// A model's "MiningSchema": which fields it uses and how it treats their missing, invalid and outlying
// values before the model sees them.
//
// Prepare copies the used fields of an input record into the model's own prepared record, applying the
// treatments. Slot indexes are resolved by name once per input layout; numbers are then copied in place.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class FamilyTranslator;
class CaseRecord;
class ScoreCaseRecord;
class ScoreDictionary;
class ScoreDictVar;
class ScoreValue;

class MiningSchema {
  public:
    enum class Usage { kActive, kTarget, kOther };
    enum class InvalidTreatment { kReturnInvalid, kAsIs, kAsMissing, kAsValue };
    enum class Outliers { kAsIs, kAsMissingValues, kAsExtremeValues };

    struct Field {
        std::string name;
        Usage usage = Usage::kActive;
        InvalidTreatment invalid = InvalidTreatment::kReturnInvalid;
        Outliers outliers = Outliers::kAsIs;
        double lowValue = 0.0;
        double highValue = 0.0;
        // Replacements in the field's own type; null for none.
        std::unique_ptr<ScoreValue> missingReplacement;
        std::unique_ptr<ScoreValue> invalidReplacement;
        // The model's input variable of the field; null for a field the inputs lack (a target).
        ScoreDictVar* variable = nullptr;
        // The field's slot in the prepared record; -1 for none.
        int slot = -1;
    };

    MiningSchema();
    MiningSchema(MiningSchema const&) = delete;
    MiningSchema& operator=(MiningSchema const&) = delete;
    ~MiningSchema();

    // Reads the "MiningField" children of the element against the model's input variables. An active
    // field that the inputs lack fails 260124; a bad treatment text 260152.
    void Read(XERCES_CPP_NAMESPACE::DOMElement* schema, ScoreDictionary* inputs,
              FamilyTranslator& translator);
    // The name of the first target field of a "MiningSchema" element; empty for none.
    static std::string FirstTarget(XERCES_CPP_NAMESPACE::DOMElement* schema, FamilyTranslator& translator);
    // The names of the prepared slots, in slot order: the inputs' variables in declaration order, once
    // each. AssignSlots sets each variable's value index to its slot.
    static std::vector<std::string> SlotNames(ScoreDictionary const* inputs);
    static void AssignSlots(ScoreDictionary* inputs);

    std::vector<Field> const& Fields() const { return fFields; }
    Field const* Find(std::string const& name) const;
    // The names of the target fields (usageType "target" or "predicted"), in document order.
    std::vector<std::string> TargetNames() const;

    // Lays out the prepared record: one slot per variable of the inputs, in their declaration order,
    // each holding a missing value of the variable's type. Sets each variable's value index to its slot.
    void LayOut(ScoreDictionary* inputs, CaseRecord& prepared);

    // Copies the input record into the prepared one with the treatments. False when an active field
    // held an invalid value under "returnInvalid": the case then has no prediction.
    bool Prepare(ScoreCaseRecord const* input, CaseRecord& prepared);

    // Whether the last Prepare put into `slot` a number that `variable`, the slot's own variable, judged
    // not missing: a reader of that slot need not ask the variable again.
    bool JudgedPresent(int slot, ScoreDictVar const* variable) const {
        auto const at = static_cast<std::size_t>(slot);
        return at < fPresent.size() && fPresent[at] != 0 && fSlots[at].variable == variable;
    }

    // Names a schema that judges, case by case, the values that `record` holds: the record's slot k
    // holds what the source prepared in its slot k (a mining model's flat record, for its segments,
    // whose input variables are copies of the mining model's). Prepare of that record then takes the
    // source's judgement of a present number instead of asking its own variable again. The names are
    // checked here; a record whose layout differs is not taken. Null for none.
    void TakeJudgementFrom(MiningSchema const* source, ScoreCaseRecord const* record);

  private:
    // How a slot's value is judged missing and valid.
    enum class Judge : unsigned char {
        // Through the variable's virtual tests.
        kGeneral,
        // A numeric DictVar without categories: a number is valid exactly when it is not missing, and
        // the variable's IsMissingValue is asked once.
        kNumeric,
        // As kNumeric, and without declared missing values: a number is missing exactly when it is the
        // system-missing number.
        kPlainNumeric,
    };
    struct Slot {
        ScoreDictVar* variable;
        Field const* field;
        // The slot of the variable in the input layout last seen; -1 for none.
        int input;
        Judge judge;
    };
    static Judge JudgeOf(ScoreDictVar const& variable);
    // The treated value of one slot.
    bool PrepareSlot(Slot const& slot, int index, ScoreValue const* value, CaseRecord& prepared, bool shared);
    // A number for a kNumeric or kPlainNumeric slot; false when the general path must judge it.
    bool PrepareNumber(Slot const& slot, int index, ScoreValue const* value, CaseRecord& prepared,
                       bool shared);
    // The rest of a value judged present and valid: outliers, then the copy.
    void PutPresent(Slot const& slot, int index, ScoreValue const* value, CaseRecord& prepared) const;

    std::vector<Field> fFields;
    // Per prepared slot: its variable, its field (or null) and the input slot resolved for the layout
    // last seen.
    std::vector<Slot> fSlots;
    // Per prepared slot, for the last case: 1 when JudgedPresent holds.
    std::vector<unsigned char> fPresent;
    ScoreCaseRecord const* fLastInput = nullptr;
    int fLastInputSize = -1;
    // TakeJudgementFrom's schema and record.
    MiningSchema const* fSource = nullptr;
    ScoreCaseRecord const* fSourceRecord = nullptr;
};

}  // namespace QXVantry_920
