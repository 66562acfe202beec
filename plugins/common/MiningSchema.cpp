#include "plugins/common/MiningSchema.h"

#include <algorithm>
#include <limits>
#include <set>
#include <typeinfo>

#include <xercesc/dom/DOM.hpp>

#include "plugins/common/FamilySupport.h"
#include "plugins/common/FamilyTranslator.h"
#include "plugins/common/RecordSlots.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

template <typename Enum, std::size_t N>
Enum Choose(std::string const& text, std::pair<char const*, Enum> const (&table)[N], Enum fallback,
            char const* attribute) {
    if (text.empty()) {
        return fallback;
    }
    for (auto const& entry : table) {
        if (text == entry.first) {
            return entry.second;
        }
    }
    ThrowFamilyError(260152, {text, attribute});
}

MiningSchema::Usage UsageOf(std::string const& text) {
    if (text.empty() || text == "active") {
        return MiningSchema::Usage::kActive;
    }
    return text == "target" || text == "predicted" ? MiningSchema::Usage::kTarget
                                                   : MiningSchema::Usage::kOther;
}

bool IsNumericKind(ScoreDictVar const* variable) {
    return variable->GetVarType() != ScoreDictVar::STRING_VAR;
}

// NumericValue's system-missing number.
constexpr double kSysmis = -std::numeric_limits<double>::max();

}  // namespace

// DictVar's IsValidValue for a variable without categories: a number or date-time value that is not
// missing. So for a numeric value the one question is IsMissingValue, and without declared missing
// values that is the system-missing number.
MiningSchema::Judge MiningSchema::JudgeOf(ScoreDictVar const& variable) {
    if (typeid(variable) != typeid(DictVar) || variable.GetVarType() != ScoreDictVar::kNUMERIC_VAR ||
        variable.GetValueLabels() != nullptr) {
        return Judge::kGeneral;
    }
    return variable.GetMissingValues() == nullptr ? Judge::kPlainNumeric : Judge::kNumeric;
}

MiningSchema::MiningSchema() = default;
MiningSchema::~MiningSchema() = default;

std::string MiningSchema::FirstTarget(DOMElement* schema, FamilyTranslator& translator) {
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(schema); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        auto* field = static_cast<DOMElement*>(child);
        if (IsElementNamed(child, "MiningField") &&
            UsageOf(translator.Text(BaseTranslator::GetAttribute(field, "usageType"))) == Usage::kTarget) {
            return translator.Text(BaseTranslator::GetAttribute(field, "name"));
        }
    }
    return std::string();
}

std::vector<std::string> MiningSchema::SlotNames(ScoreDictionary const* inputs) {
    std::vector<std::string> names;
    std::set<std::string> seen;
    for (std::string const& name : inputs->GetVarNames()) {
        if (inputs->GetVar(name) != nullptr && seen.insert(name).second) {
            names.push_back(name);
        }
    }
    return names;
}

void MiningSchema::AssignSlots(ScoreDictionary* inputs) {
    std::vector<std::string> const names = SlotNames(inputs);
    for (std::size_t i = 0; i < names.size(); ++i) {
        inputs->GetVar(names[i])->SetValueIndex(static_cast<int>(i));
    }
}

void MiningSchema::Read(DOMElement* schema, ScoreDictionary* inputs, FamilyTranslator& translator) {
    static std::pair<char const*, InvalidTreatment> const kInvalid[] = {
        {"returnInvalid", InvalidTreatment::kReturnInvalid},
        {"asIs", InvalidTreatment::kAsIs},
        {"asMissing", InvalidTreatment::kAsMissing},
        {"asValue", InvalidTreatment::kAsValue}};
    static std::pair<char const*, Outliers> const kOutliers[] = {
        {"asIs", Outliers::kAsIs},
        {"asMissingValues", Outliers::kAsMissingValues},
        {"asExtremeValues", Outliers::kAsExtremeValues}};
    fFields.clear();
    for (DOMNode* child = BaseTranslator::GetFirstChildElt(schema); child != nullptr;
         child = BaseTranslator::GetNextSiblingElt(child)) {
        if (!IsElementNamed(child, "MiningField")) {
            continue;
        }
        auto* element = static_cast<DOMElement*>(child);
        auto text = [&](char const* name) {
            return translator.Text(BaseTranslator::GetAttribute(element, name));
        };
        Field field;
        field.name = translator.Text(BaseTranslator::GetAttributeForced(element, "name"));
        field.usage = UsageOf(text("usageType"));
        field.invalid = Choose(text("invalidValueTreatment"), kInvalid, InvalidTreatment::kReturnInvalid,
                               "invalidValueTreatment");
        field.outliers = Choose(text("outliers"), kOutliers, Outliers::kAsIs, "outliers");
        field.variable = inputs->GetVar(field.name);
        if (field.variable == nullptr) {
            if (field.usage == Usage::kActive) {
                ThrowFamilyError(260124, {field.name, "DataDictionary"});
            }
            fFields.push_back(std::move(field));
            continue;
        }
        field.slot = field.variable->GetValueIndex();
        if (field.outliers != Outliers::kAsIs) {
            field.lowValue =
                BaseTranslator::VerifyDouble(BaseTranslator::GetAttributeForced(element, "lowValue"));
            field.highValue =
                BaseTranslator::VerifyDouble(BaseTranslator::GetAttributeForced(element, "highValue"));
        }
        std::string const missing = text("missingValueReplacement");
        if (!missing.empty()) {
            if (IsNumericKind(field.variable)) {
                BaseTranslator::VerifyDouble(missing);
            }
            field.missingReplacement.reset(field.variable->ToMyValue(missing));
        }
        std::string const invalid = text("invalidValueReplacement");
        if (!invalid.empty()) {
            if (IsNumericKind(field.variable)) {
                BaseTranslator::VerifyDouble(invalid);
            }
            field.invalidReplacement.reset(field.variable->ToMyValue(invalid));
        }
        if (field.invalid == InvalidTreatment::kAsValue && field.invalidReplacement == nullptr) {
            ThrowFamilyError(260120, {"invalidValueReplacement", "MiningField"});
        }
        fFields.push_back(std::move(field));
    }
}

void MiningSchema::TakeJudgementFrom(MiningSchema const* source, ScoreCaseRecord const* record) {
    fSource = nullptr;
    fSourceRecord = nullptr;
    if (source == nullptr || record == nullptr || source == this) {
        return;
    }
    for (std::size_t k = 0; k < source->fSlots.size(); ++k) {
        if (record->GetIndex(source->fSlots[k].variable->GetName()) != static_cast<int>(k)) {
            return;
        }
    }
    fSource = source;
    fSourceRecord = record;
}

MiningSchema::Field const* MiningSchema::Find(std::string const& name) const {
    auto found = std::find_if(fFields.begin(), fFields.end(), [&](Field const& f) { return f.name == name; });
    return found == fFields.end() ? nullptr : &*found;
}

std::vector<std::string> MiningSchema::TargetNames() const {
    std::vector<std::string> names;
    for (Field const& field : fFields) {
        if (field.usage == Usage::kTarget) {
            names.push_back(field.name);
        }
    }
    return names;
}

void MiningSchema::LayOut(ScoreDictionary* inputs, CaseRecord& prepared) {
    std::vector<std::string> const names = SlotNames(inputs);
    prepared.SetUpNameIndexMap(names);
    fSlots.clear();
    for (std::string const& name : names) {
        ScoreDictVar* variable = inputs->GetVar(name);
        variable->SetValueIndex(static_cast<int>(fSlots.size()));
        prepared.Add(name, NewMissing(variable->GetVarType()));
        Field const* field = Find(name);
        // A target is the model's answer, never an input it reads.
        if (field != nullptr && field->usage == Usage::kTarget) {
            field = nullptr;
        }
        fSlots.push_back(Slot{variable, field, -1, JudgeOf(*variable)});
    }
    fPresent.assign(fSlots.size(), 0);
    fLastInput = nullptr;
    fLastInputSize = -1;
}

bool MiningSchema::Prepare(ScoreCaseRecord const* input, CaseRecord& prepared) {
    if (input != fLastInput || input->Size() != fLastInputSize) {
        for (Slot& slot : fSlots) {
            slot.input = input->GetIndex(slot.variable->GetName());
        }
        fLastInput = input;
        fLastInputSize = input->Size();
    }
    bool const shared = fSource != nullptr && input == fSourceRecord;
    bool valid = true;
    for (std::size_t i = 0; i < fSlots.size(); ++i) {
        Slot const& slot = fSlots[i];
        ScoreValue const* value = slot.input >= 0 ? input->Get(slot.input) : nullptr;
        fPresent[i] = 0;
        valid = PrepareSlot(slot, static_cast<int>(i), value, prepared, shared) && valid;
    }
    return valid;
}

bool MiningSchema::PrepareSlot(Slot const& slot, int index, ScoreValue const* value, CaseRecord& prepared,
                               bool shared) {
    ScoreDictVar* variable = slot.variable;
    std::string const& name = variable->GetName();
    ScoreDictVar::VariableType const type = variable->GetVarType();
    Field const* field = slot.field;
    if (field == nullptr) {
        PutValue(prepared, index, name, value, type);
        return true;
    }
    if (slot.judge != Judge::kGeneral && PrepareNumber(slot, index, value, prepared, shared)) {
        return true;
    }
    bool const text = value != nullptr && ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE;
    bool const mismatch = text && IsNumericKind(variable);
    bool missing = !mismatch && IsMissingFor(*variable, value);
    bool valid = true;
    if (!missing && (mismatch || !variable->IsValidValue(value))) {
        switch (field->invalid) {
            case InvalidTreatment::kReturnInvalid:
                valid = false;
                missing = true;
                break;
            case InvalidTreatment::kAsIs:
                PutValue(prepared, index, name, value, mismatch ? ScoreDictVar::STRING_VAR : type);
                return true;
            case InvalidTreatment::kAsMissing:
                missing = true;
                break;
            case InvalidTreatment::kAsValue:
                PutValue(prepared, index, name, field->invalidReplacement.get(), type);
                return true;
        }
    }
    if (missing) {
        PutValue(prepared, index, name, valid ? field->missingReplacement.get() : nullptr, type);
        return valid;
    }
    PutPresent(slot, index, value, prepared);
    return true;
}

bool MiningSchema::PrepareNumber(Slot const& slot, int index, ScoreValue const* value, CaseRecord& prepared,
                                 bool shared) {
    if (value == nullptr || typeid(*value) != typeid(NumericValue)) {
        return false;
    }
    double const x = static_cast<NumericValue const*>(value)->NumericValue::GetDouble();
    // A number the source has judged present this case is present for a copy of its variable too.
    auto const at = static_cast<std::size_t>(slot.input);
    bool const judged = shared && at < fSource->fPresent.size() && fSource->fPresent[at] != 0;
    bool const missing =
        !judged && (slot.judge == Judge::kPlainNumeric ? x == kSysmis : slot.variable->IsMissingValue(value));
    if (missing) {
        return false;
    }
    if (slot.field->outliers == Outliers::kAsIs) {
        PutNumber(prepared, index, slot.variable->GetName(), x);
        fPresent[static_cast<std::size_t>(index)] = 1;
    } else {
        PutPresent(slot, index, value, prepared);
    }
    return true;
}

void MiningSchema::PutPresent(Slot const& slot, int index, ScoreValue const* value,
                              CaseRecord& prepared) const {
    ScoreDictVar const* variable = slot.variable;
    Field const* field = slot.field;
    std::string const& name = variable->GetName();
    bool const number = ScoreValue::TypeOf(*value) != ScoreValue::STRING_VALUE;
    if (field->outliers != Outliers::kAsIs && number &&
        variable->GetMLevel() == ScoreDictVar::MEASURE_CONTINUOUS) {
        double const x = value->GetDouble();
        if (x < field->lowValue || x > field->highValue) {
            if (field->outliers == Outliers::kAsMissingValues) {
                PutValue(prepared, index, name, field->missingReplacement.get(), variable->GetVarType());
            } else {
                PutNumber(prepared, index, name, std::min(std::max(x, field->lowValue), field->highValue));
            }
            return;
        }
    }
    PutValue(prepared, index, name, value, variable->GetVarType());
}

}  // namespace QXVantry_920
