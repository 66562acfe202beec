#include "vantry/values/ScoreDictVar.h"

#include <ostream>
#include <typeinfo>

#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"
#include "vantry/values/ValueProbability.h"
#include "vantry/values/VarStats.h"

namespace QXVantry_920 {

namespace {

// A deep copy through the object's own Clone; null stays null.
template <typename T>
std::unique_ptr<T> CloneOrNull(std::unique_ptr<T> const& source) {
    return source ? std::unique_ptr<T>(source->Clone()) : nullptr;
}

// The setters take the new object over without deleting the one they replace.
template <typename T>
void StoreWithoutDeleting(std::unique_ptr<T>& slot, T* object) {
    (void)slot.release();
    slot.reset(object);
}

}  // namespace

DictVar::DictVar(std::string const& name, VariableType type)
    : fName(name),
      fVarType(type),
      fDateTimeType(DT_NONE),
      fNumericDataType(NUMERIC_TYPE_NONE),
      fMLevel(MEASURE_CONTINUOUS),
      fDecimal(-1),
      fWidth(-1),
      fValueIndex(-1),
      fEncodedValueIndex(-1),
      fNoSpaceTrim(false),
      fEmptyStringOK(false),
      fFlagVariable(false),
      fUsageTypeEnabled(true),
      fOutlierHandleMethod(0),
      fEmptyCateValues(false) {}

DictVar::DictVar(DictVar const& other)
    : ScoreDictVar(other),
      fName(other.fName),
      fLabel(other.fLabel),
      fVarType(other.fVarType),
      fDateTimeType(other.fDateTimeType),
      fNumericDataType(other.fNumericDataType),
      fMLevel(other.fMLevel),
      fDecimal(other.fDecimal),
      fWidth(other.fWidth),
      fMissingValues(CloneOrNull(other.fMissingValues)),
      fValueLabels(CloneOrNull(other.fValueLabels)),
      fVarStats(CloneOrNull(other.fVarStats)),
      fValueIndex(other.fValueIndex),
      fEncodedValueIndex(other.fEncodedValueIndex),
      fNoSpaceTrim(other.fNoSpaceTrim),
      fEmptyStringOK(other.fEmptyStringOK),
      fXMeasure(other.fXMeasure),
      fFlagVariable(other.fFlagVariable),
      fUsageTypeEnabled(other.fUsageTypeEnabled),
      fOutlierHandleMethod(other.fOutlierHandleMethod),
      fDefValue(CloneOrNull(other.fDefValue)),
      fValueProbabilities(CloneOrNull(other.fValueProbabilities)),
      fEncoder(CloneOrNull(other.fEncoder)),
      fEmptyCateValues(other.fEmptyCateValues),
      fFlagTrueValue(other.fFlagTrueValue) {}

DictVar& DictVar::operator=(DictVar const& other) {
    if (this != &other) {
        DictVar copy(other);
        // Field by field, so that a derived class's own fields stay its own business.
        fName = std::move(copy.fName);
        fLabel = std::move(copy.fLabel);
        fVarType = copy.fVarType;
        fDateTimeType = copy.fDateTimeType;
        fNumericDataType = copy.fNumericDataType;
        fMLevel = copy.fMLevel;
        fDecimal = copy.fDecimal;
        fWidth = copy.fWidth;
        fMissingValues = std::move(copy.fMissingValues);
        fValueLabels = std::move(copy.fValueLabels);
        fVarStats = std::move(copy.fVarStats);
        fValueIndex = copy.fValueIndex;
        fEncodedValueIndex = copy.fEncodedValueIndex;
        fNoSpaceTrim = copy.fNoSpaceTrim;
        fEmptyStringOK = copy.fEmptyStringOK;
        fXMeasure = std::move(copy.fXMeasure);
        fFlagVariable = copy.fFlagVariable;
        fUsageTypeEnabled = copy.fUsageTypeEnabled;
        fOutlierHandleMethod = copy.fOutlierHandleMethod;
        fDefValue = std::move(copy.fDefValue);
        fValueProbabilities = std::move(copy.fValueProbabilities);
        fEncoder = std::move(copy.fEncoder);
        fEmptyCateValues = copy.fEmptyCateValues;
        fFlagTrueValue = std::move(copy.fFlagTrueValue);
    }
    return *this;
}

DictVar::~DictVar() {
    // The owned objects go in this order.
    fMissingValues.reset();
    fValueLabels.reset();
    fVarStats.reset();
    fDefValue.reset();
    fValueProbabilities.reset();
    fEncoder.reset();
}

ScoreDictVar* DictVar::Clone() const {
    return new DictVar(*this);
}

bool DictVar::operator==(ScoreDictVar const& other) const {
    return fName == other.GetName();
}

namespace {

// The library's own set is read in place; another implementation through its interface. The exact
// type is compared rather than cast to, since this runs for every value a case tests.
bool InMissingRange(ScoreMissingValueSet const& set, ScoreValue const* value) {
    if (typeid(set) == typeid(MissingValueSet)) {
        return static_cast<MissingValueSet const&>(set).AnyRangeHolds(value);
    }
    if (auto const* own = dynamic_cast<MissingValueSet const*>(&set)) {
        return own->AnyRangeHolds(value);
    }
    for (ScoreValueRange const* range : set.GetMissingValues()) {
        if (range->IsInRange(value)) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool DictVar::IsMissingValue(ScoreValue const* value) const {
    if (value == nullptr) {
        return true;
    }
    if (IsNumericKind() && value->IsSystemMissingValue()) {
        return true;
    }
    if (!fMissingValues) {
        return false;
    }
    if (!InMissingRange(*fMissingValues, value)) {
        return false;
    }
    // A declared numeric category outranks a missing range that covers it.
    if (fValueLabels && IsNumericKind()) {
        for (ScoreValueLabel const* label : fValueLabels->GetAllValueLabels()) {
            ScoreValue const* category = label != nullptr ? label->GetValue() : nullptr;
            if (category != nullptr && *value == *category) {
                return false;
            }
        }
    }
    return true;
}

bool DictVar::IsValidValue(ScoreValue const* value) const {
    if (IsMissingValue(value)) {
        return false;
    }
    if (!fValueLabels) {
        if (fVarType != kNUMERIC_VAR) {
            return true;
        }
        ScoreValue::ValueType type = ScoreValue::TypeOf(*value);
        return type == ScoreValue::NUMERIC_VALUE || type == ScoreValue::DATETIME_VALUE;
    }
    if (fMLevel != MEASURE_ORDINAL && fMLevel != MEASURE_NOMINAL) {
        return true;
    }
    for (ScoreValueLabel const* label : fValueLabels->GetAllValueLabels()) {
        ScoreValue const* category = label != nullptr ? label->GetValue() : nullptr;
        if (category == nullptr) {
            continue;  // a label that has lost its value names no category
        }
        bool match = fVarType == STRING_VAR ? category->Equal(value, fNoSpaceTrim, fEmptyStringOK)
                                            : *value == *category;
        if (match) {
            return true;
        }
    }
    return false;
}

bool DictVar::SetName(std::string const& name) {
    if (name.empty()) {
        return false;
    }
    fName = name;
    return true;
}

void DictVar::SetLabel(std::string const& label) {
    fLabel = label;
}
void DictVar::SetVarType(VariableType type) {
    fVarType = type;
}
void DictVar::SetMLevel(MeasureLevel level) {
    fMLevel = level;
}

void DictVar::SetFormat(int decimal, int width) {
    fDecimal = decimal;
    fWidth = width;
}

void DictVar::SetDecimal(int decimal) {
    fDecimal = decimal;
}
void DictVar::SetWidth(int width) {
    fWidth = width;
}
std::string const& DictVar::GetName() const {
    return fName;
}
std::string const& DictVar::GetLabel() const {
    return fLabel;
}
ScoreDictVar::VariableType DictVar::GetVarType() {
    return fVarType;
}
ScoreDictVar::MeasureLevel DictVar::GetMLevel() {
    return fMLevel;
}
int DictVar::GetDecimal() const {
    return fDecimal;
}
int DictVar::GetWidth() const {
    return fWidth;
}
ScoreVarStats const* DictVar::GetVarStats() const {
    return fVarStats.get();
}
void DictVar::SetVarStats(ScoreVarStats* stats) {
    StoreWithoutDeleting(fVarStats, stats);
}
ScoreValueLabelSet const* DictVar::GetValueLabels() const {
    return fValueLabels.get();
}

std::string DictVar::GetLabelOfValue(ScoreValue const* value) {
    return fValueLabels ? fValueLabels->GetLabelOfValue(value) : std::string();
}

ScoreMissingValueSet const* DictVar::GetMissingValues() const {
    return fMissingValues.get();
}

void DictVar::SetMissingValues(ScoreMissingValueSet* missingValues) {
    StoreWithoutDeleting(fMissingValues, missingValues);
}

void DictVar::SetValueLabels(ScoreValueLabelSet* labels) {
    StoreWithoutDeleting(fValueLabels, labels);
}

ScoreValue* DictVar::ToMyValue(std::string const& text) const {
    switch (fVarType) {
        case kNUMERIC_VAR:
            return new NumericValue(text);
        case STRING_VAR:
            return new StringValue(text);
        default:
            return nullptr;
    }
}

void DictVar::Display(std::ostream& out) const {
    out << "Start ScoreDictVar Display:\n";
    out << "Var Name = " << fName << "; "
        << "Var Lable = " << fLabel << "; ";
    if (fVarType == STRING_VAR) {
        out << "Var Type = STRING_VAR; ";
    } else if (fVarType == kNUMERIC_VAR) {
        out << "Var Type = kNUMERIC_VAR; ";
    }
    switch (fMLevel) {
        case MEASURE_CONTINUOUS:
            out << "Var level =  Continuous; ";
            break;
        case MEASURE_ORDINAL:
            out << "Var level =  Ordinal; ";
            break;
        case MEASURE_NOMINAL:
            out << "Var level =  Nominal; ";
            break;
        default:
            out << "Var level = unknown;";
            break;
    }
    out << "\n";
    if (fValueLabels) {
        fValueLabels->Display(out);
    }
    if (fMissingValues) {
        fMissingValues->Display(out);
    }
    if (!fXMeasure.empty()) {
        out << "x-Measure: " << fXMeasure << "\n";
    }
    out << "End of ScoreDictVar Display.\n\n";
}

int DictVar::GetNumberOfCats() const {
    if (fMLevel == MEASURE_CONTINUOUS) {
        return 1;
    }
    return fValueLabels ? fValueLabels->Size() : 0;
}

void DictVar::SetValueIndex(int index) {
    fValueIndex = index;
}
void DictVar::SetEncodedValueIndex(int index) {
    fEncodedValueIndex = index;
}
int DictVar::GetValueIndex() const {
    return fValueIndex;
}
int DictVar::GetEncodedValueIndex() const {
    return fEncodedValueIndex;
}

void DictVar::SetNoSpaceTrim(bool noSpaceTrim) {
    if (fVarType == STRING_VAR) {
        fNoSpaceTrim = noSpaceTrim;
    }
}

bool DictVar::GetNoSpaceTrim() const {
    return fNoSpaceTrim;
}

void DictVar::SetEmptyStringOK(bool emptyStringOK) {
    if (fVarType == STRING_VAR) {
        fEmptyStringOK = emptyStringOK;
    }
}

bool DictVar::GetEmptyStringOK() const {
    return fEmptyStringOK;
}
std::string const& DictVar::GetXMeasure() const {
    return fXMeasure;
}
void DictVar::SetXMeasure(std::string const& xMeasure) {
    fXMeasure = xMeasure;
}

bool DictVar::SetFlagVariable(bool flag) {
    if (fMLevel != MEASURE_ORDINAL && fMLevel != MEASURE_NOMINAL) {
        return false;
    }
    fFlagVariable = flag;
    return true;
}

bool DictVar::IsFlagVariable() const {
    return fFlagVariable;
}
void DictVar::SetOutlierHandleMethod(OutlierHandleMethod method) {
    fOutlierHandleMethod = method;
}
int DictVar::GetOutlierHandleMethod() const {
    return fOutlierHandleMethod;
}
bool DictVar::IsDerivedVariable() const {
    return false;
}
void DictVar::SetDateTimeType(DateTimeType type) {
    fDateTimeType = type;
}
ScoreDictVar::DateTimeType DictVar::GetDateTimeType() {
    return fDateTimeType;
}
void DictVar::SetDefValue(ScoreValue* value) {
    StoreWithoutDeleting(fDefValue, value);
}
ScoreValue const* DictVar::GetDefValue() const {
    return fDefValue.get();
}

void DictVar::SetValueProbabilities(ScoreValueProbabilitySet* probabilities) {
    StoreWithoutDeleting(fValueProbabilities, probabilities);
}

ScoreValueProbabilitySet const* DictVar::GetValueProbabilities() const {
    return fValueProbabilities.get();
}
ScoreEncoder* DictVar::GetEncoder() {
    return fEncoder.get();
}
ScoreEncoder const* DictVar::GetEncoder() const {
    return fEncoder.get();
}
void DictVar::SetEncoder(ScoreEncoder* encoder) {
    StoreWithoutDeleting(fEncoder, encoder);
}
void DictVar::SetEmptyCateValues(bool empty) {
    fEmptyCateValues = empty;
}
bool DictVar::IsEmptyCateValues() const {
    return fEmptyCateValues;
}

bool DictVar::AddScoreValueLabel(ScoreValue* value, std::string const& label) {
    if (!fValueLabels) {
        fValueLabels = std::make_unique<ValueLabelSet>();
    }
    if (value == nullptr || label.empty()) {
        return false;
    }
    if (fValueLabels->Contains(value)) {
        delete value;
        return false;
    }
    fValueLabels->Add(new ValueLbl(value, label));
    return true;
}

void DictVar::SetNumericDataType(NumericDataType type) {
    fNumericDataType = type;
}
ScoreDictVar::NumericDataType DictVar::GetNumericDataType() {
    return fNumericDataType;
}
bool DictVar::IsUsageTypeEnable() const {
    return fUsageTypeEnabled;
}
void DictVar::SetUsageType(bool enabled) {
    fUsageTypeEnabled = enabled;
}
void DictVar::SetFalgTypeTrueValue(std::string const& value) {
    fFlagTrueValue = value;
}
std::string DictVar::GetFalgTypeTrueValue() {
    return fFlagTrueValue;
}

}  // namespace QXVantry_920
