// The PMML "DataDictionary": each "DataField" with its type, level, extensions, categories, missing
// values and invalid ranges, and the category look-ups that the split readers use.
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/XMLString.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/translate/CategoryRules.h"
#include "vantry/translate/DateTimeTypeNames.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What the children of one "DataField" add up to before the variable takes it over.
struct FieldValues {
    std::unique_ptr<ValueLabelSet> labels = std::make_unique<ValueLabelSet>();
    std::unique_ptr<MissingValueSet> missing = std::make_unique<MissingValueSet>();
    std::vector<XMLCh const*> valid;
    std::vector<XMLCh const*> invalid;
    bool haveLabels = false;
    bool haveMissing = false;
    // The invalid-range extensions: 1 for each lower bound seen, 10 for each upper bound.
    int mask = 0;
    double lower = -kInfinity;
    double upper = kInfinity;
};

// Reads an invalid-range extension into the values; false for any other extension.
bool ReadInvalidRange(std::string const& name, XMLCh const* value, FieldValues& values) {
    if (name == "invalidRangeLower") {
        values.mask += 1;
        values.lower = BaseTranslator::VerifyDouble(value);
        return true;
    }
    if (name == "invalidRangeUpper") {
        values.mask += 10;
        values.upper = BaseTranslator::VerifyDouble(value);
        return true;
    }
    return false;
}

// Adds a single value to the missing set; a value the set holds already is dropped.
void AddMissingValue(FieldValues& values, std::unique_ptr<ScoreValue> value) {
    AddMissingRange(values.missing.get(), std::make_unique<Range>(value.release()));
    values.haveMissing = true;
}

// The first pair of an invalid and a valid text that are equal without regard to case, as indexes.
bool FindValidInvalid(FieldValues const& values, std::size_t& invalidIndex, std::size_t& validIndex) {
    for (invalidIndex = 0; invalidIndex < values.invalid.size(); ++invalidIndex) {
        for (validIndex = 0; validIndex < values.valid.size(); ++validIndex) {
            if (XMLString::compareIString(values.invalid[invalidIndex], values.valid[validIndex]) == 0) {
                return true;
            }
        }
    }
    return false;
}

// Appends a valid category with its label: "displayValue" when given, the value's text otherwise.
void AddFieldCategory(PMMLTranslator& translator, VantryTranscoder* transcoder, ScoreDictVar* variable,
                      DOMElement const* element, XMLCh const* text, FieldValues& values) {
    values.valid.push_back(text);
    std::unique_ptr<ScoreValue> value(translator.CarefullyMakeVarValue(variable, text));
    XMLCh const* display = BaseTranslator::GetAttribute(element, "displayValue");
    std::string const label = TranscodeText(transcoder, IsEmptyText(display) ? text : display);
    values.labels->Add(new ValueLbl(value.release(), label));
    values.haveLabels = true;
}

}  // namespace

ScoreDictionary* PMMLTranslator::ParseDictionary(DOMNode* node, bool encoders) {
    if (node == nullptr) {
        ThrowCodedError(260115, {"DataDictionary", "PMML"});
    }
    if (fTranscoder == nullptr) {
        CreateTranscoder(fEncoding);
    }
    auto dictionary = std::make_unique<BaseDictionary>();
    int fieldCount = 0;
    for (DOMNode* child = GetFirstChildElt(node); child != nullptr; child = GetNextSiblingElt(child)) {
        if (HasName(child, "Extension")) {
            continue;
        }
        if (!HasName(child, "DataField")) {
            ThrowCodedError(260178, {NameOf(child), "DataDictionary", "Extension"});
        }
        std::unique_ptr<ScoreDictVar> variable = ParseDataField(AsElement(child), dictionary.get(), encoders);
        ++fieldCount;
        AddToDictionary(dictionary.get(), variable->GetName(), variable);
    }

    XMLCh const* declared = GetAttributeForced(AsElement(node), "numberOfFields");
    if (IsEmptyText(declared)) {
        ThrowCodedError(260285, {"numberOfFields", "DataDictionary"});
    }
    int const number = ParseIntAttribute(fTranscoder, declared, "numberOfFields");
    if (number != fieldCount) {
        ThrowCodedError(260242, {std::to_string(number), "numberOfFields", std::to_string(fieldCount),
                                 "DataField", "DataDictionary"});
    }
    return dictionary.release();
}

std::unique_ptr<ScoreDictVar> PMMLTranslator::ParseDataField(DOMElement* field, ScoreDictionary* dictionary,
                                                             bool encoders) {
    XMLCh const* nameText = GetAttributeForced(field, "name");
    if (IsEmptyText(nameText)) {
        ThrowCodedError(260285, {"name", "DataField"});
    }
    std::string const name = TranscodeText(fTranscoder, nameText);
    if (dictionary->GetVar(name) != nullptr) {
        ThrowCodedError(260202, {name, "DataDictionary"});
    }
    std::unique_ptr<ScoreDictVar> variable = std::make_unique<DictVar>(name, ScoreDictVar::kNUMERIC_VAR);

    XMLCh const* displayName = GetAttribute(field, "displayName");
    variable->SetLabel(TranscodeText(fTranscoder, IsEmptyText(displayName) ? nameText : displayName));

    XMLCh const* optypeText = GetAttributeForced(field, "optype");
    if (IsEmptyText(optypeText)) {
        ThrowCodedError(260285, {"optype", "DataField"});
    }
    std::string const optype = TranscodeText(fTranscoder, optypeText);
    ScoreDictVar::MeasureLevel level = ScoreDictVar::MEASURE_CONTINUOUS;
    if (!LevelOfOptype(optype, level)) {
        ThrowCodedError(260152, {optype, "optype"});
    }
    variable->SetMLevel(level);

    bool typeDeclared = false;
    std::string storageType;
    XMLCh const* storageText = GetAttribute(field, "x-storageType");
    if (!IsEmptyText(storageText)) {
        typeDeclared = true;
        storageType = TranscodeText(fTranscoder, storageText);
    }

    // Extensions at any depth of the field, whatever their extender.
    bool noSpaceTrim = false;
    bool emptyStringOK = true;
    DOMNodeList* extensions = GetElementsByTagName(field, "Extension");
    for (XMLSize_t i = 0; i < extensions->getLength(); ++i) {
        DOMElement* extension = AsElement(extensions->item(i));
        std::string const extName = TranscodeText(fTranscoder, GetAttribute(extension, "name"));
        std::string const extValue = TranscodeText(fTranscoder, GetAttribute(extension, "value"));
        if (extName == "noSpaceTrim" && extValue == "true") {
            noSpaceTrim = true;
        } else if (extName == "emptyStringOk" && extValue == "true") {
            emptyStringOK = true;
        } else if (extName == "x-measure" || extName == "measure") {
            variable->SetXMeasure(extValue);
            if (extValue == "flag") {
                ScoreDictVar::MeasureLevel const current = variable->GetMLevel();
                if (current != ScoreDictVar::MEASURE_NOMINAL && current != ScoreDictVar::MEASURE_ORDINAL) {
                    ThrowCodedError(260282, {"flag", "categorical"});
                }
                variable->SetFlagVariable(true);
            }
        } else if (extName == "x-storageType" && !typeDeclared) {
            storageType = extValue;
            typeDeclared = true;
        }
        ParseUsageTypeExtension(extension, variable.get());
    }

    if (storageType == "string") {
        variable->SetVarType(ScoreDictVar::STRING_VAR);
    } else {
        XMLCh const* dataTypeText = GetAttribute(field, "dataType");
        if (!IsEmptyText(dataTypeText)) {
            typeDeclared = true;
        }
        SetTypeOfDataType(variable.get(), TranscodeText(fTranscoder, dataTypeText),
                          ParseDateTimeType(dataTypeText));
    }
    variable->SetNoSpaceTrim(noSpaceTrim);
    variable->SetEmptyStringOK(emptyStringOK);

    if (level == ScoreDictVar::MEASURE_CONTINUOUS && variable->IsString()) {
        ThrowCodedError(260211, {"continuous", "optype", "string", "dataType"});
    }
    if (level == ScoreDictVar::MEASURE_CONTINUOUS) {
        ParseContinuousValues(field, variable.get(), typeDeclared);
    } else {
        ParseCategoricalValues(field, variable.get(), typeDeclared);
    }
    if (encoders && variable->IsString()) {
        SetupCatEncoder(variable.get());
    }
    return variable;
}

void PMMLTranslator::ParseCategoricalValues(DOMElement* field, ScoreDictVar* variable, bool typeDeclared) {
    FieldValues values;
    bool const numeric = IsNumericVariable(variable);
    for (DOMNode* child = GetFirstChildElt(field); child != nullptr; child = GetNextSiblingElt(child)) {
        DOMElement* element = AsElement(child);
        if (HasName(child, "Extension")) {
            std::string const name = TranscodeText(fTranscoder, GetAttribute(element, "name"));
            XMLCh const* value = GetAttribute(element, "value");
            if (name == "format") {
                VerifyInt(value);
            } else if (name == "width" || name == "stringLength") {
                int const width = CheckedTextWidth(VerifyInt(value), "value", "Extension");
                if (width > 0) {
                    variable->SetWidth(width);
                }
            } else if (name == "decimals") {
                int const decimals = VerifyInt(value);
                if (decimals >= 0) {
                    variable->SetDecimal(decimals);
                }
            } else if (!ReadInvalidRange(name, value, values) && name == "flagTypeTrueValue") {
                variable->SetFalgTypeTrueValue(TranscodeText(fTranscoder, value));
            }
        } else if (HasName(child, "Value")) {
            std::string const property = TranscodeText(fTranscoder, GetAttribute(element, "property"));
            XMLCh const* text = GetAttributeForced(element, "value");
            if (property == "invalid" || property == "missing") {
                if (numeric && IsEmptyText(text)) {
                    ThrowCodedError(260153, {TranscodeText(fTranscoder, text), "value", "MapValues"});
                }
                values.invalid.push_back(text);
                AddMissingValue(values, std::unique_ptr<ScoreValue>(CarefullyMakeVarValue(variable, text)));
            } else if (!property.empty() && property != "valid") {
                ThrowCodedError(260153, {property, "property", "Value"});
            } else {
                if (IsEmptyText(text) &&
                    ((numeric && typeDeclared) || (variable->IsString() && !variable->GetEmptyStringOK()))) {
                    ThrowCodedError(260153, {TranscodeText(fTranscoder, text), "value", "MapValues"});
                }
                if (numeric) {
                    VerifyDouble(text);
                    typeDeclared = true;
                }
                AddFieldCategory(*this, fTranscoder, variable, element, text, values);
            }
        } else {
            ThrowCodedError(260172, {NameOf(child), "Extension, Value"});
        }
    }

    if (values.mask != 0) {
        values.haveMissing =
            HandleKROMMissingInterval(values.missing.get(), values.mask, values.lower, values.upper);
    }
    std::size_t invalidIndex = 0;
    std::size_t validIndex = 0;
    if (FindValidInvalid(values, invalidIndex, validIndex)) {
        ThrowCodedError(260213, {TranscodeText(fTranscoder, values.invalid[invalidIndex])});
    }
    if (values.haveLabels) {
        variable->SetValueLabels(values.labels.release());
        if (variable->IsFlagVariable() && variable->GetNumberOfCats() > 2) {
            ThrowCodedError(260271, {"categorical", "flag"});
        }
        CheckCategoryLabels(variable, true);
    } else {
        variable->SetEmptyCateValues(true);
    }
    if (values.haveMissing) {
        variable->SetMissingValues(values.missing.release());
    }
}

void PMMLTranslator::ParseContinuousValues(DOMElement* field, ScoreDictVar* variable, bool typeDeclared) {
    FieldValues values;
    bool const numeric = IsNumericVariable(variable);
    int intervals = 0;
    for (DOMNode* child = GetFirstChildElt(field); child != nullptr; child = GetNextSiblingElt(child)) {
        DOMElement* element = AsElement(child);
        if (HasName(child, "Extension")) {
            std::string const name = TranscodeText(fTranscoder, GetAttribute(element, "name"));
            XMLCh const* value = GetAttribute(element, "value");
            if (name == "width" || name == "stringLength") {
                variable->SetWidth(CheckedTextWidth(VerifyInt(value), "value", "Extension"));
            } else if (name == "decimals") {
                variable->SetDecimal(VerifyInt(value));
            } else if (name != "format" && !ReadInvalidRange(name, value, values)) {
                // Any other extension may carry an invalid interval of its own.
                DOMNode* inner = GetFirstChildElt(child);
                if (inner != nullptr && IsEqual(fTranscoder, inner->getNodeName(), "X-DataField")) {
                    handleTreeInterval(GetFirstChildElt(inner), values.missing.get());
                    values.haveMissing = true;
                }
            }
        } else if (HasName(child, "Interval")) {
            if (++intervals > 1) {
                ThrowCodedError(260272, {"Interval", "DataField"});
            }
            handleInterval(variable, child, values.missing.get(), intervals);
            values.haveMissing = true;
        } else if (HasName(child, "Value")) {
            std::string const property = TranscodeText(fTranscoder, GetAttribute(element, "property"));
            if (property == "invalid" || property == "missing") {
                XMLCh const* text = GetAttributeForced(element, "value");
                values.invalid.push_back(text);
                if (variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR ||
                    variable->GetVarType() == ScoreDictVar::DATETIME_VAR) {
                    AddMissingValue(values,
                                    std::unique_ptr<ScoreValue>(CarefullyMakeVarValue(variable, text)));
                }
                values.haveMissing = true;
            } else if (property == "valid") {
                XMLCh const* text = GetAttributeForced(element, "value");
                if (IsEmptyText(text) && numeric && typeDeclared) {
                    ThrowCodedError(260285, {"value", "Value"});
                }
                if (numeric) {
                    VerifyDouble(text);
                    typeDeclared = true;
                }
                AddFieldCategory(*this, fTranscoder, variable, element, text, values);
            }
        }
    }

    std::size_t invalidIndex = 0;
    std::size_t validIndex = 0;
    if (FindValidInvalid(values, invalidIndex, validIndex)) {
        ThrowCodedError(260294, {TranscodeText(fTranscoder, values.valid[validIndex]), variable->GetName()});
    }
    if (values.haveLabels) {
        variable->SetValueLabels(values.labels.release());
        CheckCategoryLabels(variable, false);
    } else {
        variable->SetEmptyCateValues(true);
    }
    if (values.mask != 0) {
        values.haveMissing =
            HandleKROMMissingInterval(values.missing.get(), values.mask, values.lower, values.upper);
    }
    if (values.haveMissing) {
        variable->SetMissingValues(values.missing.release());
    }
}

void PMMLTranslator::ParseUsageTypeExtension(DOMElement* extension, ScoreDictVar* variable) {
    if (extension == nullptr) {
        return;
    }
    for (DOMNode* child = GetFirstChildElt(extension); child != nullptr; child = GetNextSiblingElt(child)) {
        if (IsEqual(fTranscoder, child->getNodeName(), "UsageType") &&
            IsEqual(fTranscoder, GetAttribute(AsElement(child), "value"), "disable")) {
            variable->SetUsageType(false);
        }
    }
}

ScoreDictVar::DateTimeType PMMLTranslator::ParseDateTimeType(XMLCh const* text) {
    if (text == nullptr) {
        return ScoreDictVar::DT_NONE;
    }
    for (int number = ScoreDictVar::DT_DATE; number <= ScoreDictVar::DT_DATETIME_SECONDS_SINCE_1980;
         ++number) {
        auto const type = static_cast<ScoreDictVar::DateTimeType>(number);
        if (IsEqual(fTranscoder, text, DateTimeTypeName(type))) {
            return type;
        }
    }
    return ScoreDictVar::DT_NONE;
}

namespace {

// A margin of an "Interval": the number, or the infinity of its side when absent or empty.
double ReadMargin(DOMElement const* element, char const* name, double absent) {
    XMLCh const* text = BaseTranslator::GetAttribute(element, name);
    return IsEmptyText(text) ? absent : BaseTranslator::VerifyDouble(text);
}

// The closure of an "Interval" as whether each end is closed.
void ReadClosure(DOMElement const* element, bool& leftClosed, bool& rightClosed) {
    XMLCh const* closure = BaseTranslator::GetAttribute(element, "closure");
    leftClosed =
        BaseTranslator::IsEqual(closure, "closedClosed") || BaseTranslator::IsEqual(closure, "closedOpen");
    rightClosed =
        BaseTranslator::IsEqual(closure, "closedClosed") || BaseTranslator::IsEqual(closure, "openClosed");
}

std::unique_ptr<Range> NumericRange(double low, double high, bool lowEnd, bool highEnd) {
    return std::make_unique<Range>(new NumericValue(low), new NumericValue(high), lowEnd, highEnd);
}

}  // namespace

void PMMLTranslator::handleInterval(ScoreDictVar* /*variable*/, DOMNode* interval, ScoreMissingValueSet* set,
                                    int /*count*/) {
    DOMElement const* element = AsElement(interval);
    double left = ReadMargin(element, "leftMargin", -kInfinity);
    double right = ReadMargin(element, "rightMargin", kInfinity);
    bool leftClosed = false;
    bool rightClosed = false;
    ReadClosure(element, leftClosed, rightClosed);
    // A closed margin moves outward a little, so that the margin itself stays out of the complement.
    if (std::isfinite(left) && leftClosed) {
        left -= std::abs(left) * 1e-15;
    }
    if (std::isfinite(right) && rightClosed) {
        right += std::abs(right) * 1e-15;
    }
    bool const leftOpen = !leftClosed;
    bool const rightOpen = !rightClosed;
    // The set holds missing values, so the complement of the valid interval goes in.
    if (left == -kInfinity) {
        AddMissingRange(set, NumericRange(right, kInfinity, rightOpen, true));
    } else if (right == kInfinity) {
        AddMissingRange(set, NumericRange(-kInfinity, left, rightOpen, true));
    } else {
        std::unique_ptr<Range> below = NumericRange(-kInfinity, left, true, leftOpen);
        std::unique_ptr<Range> above = NumericRange(right, kInfinity, rightOpen, true);
        AddMissingRange(set, std::move(below));
        AddMissingRange(set, std::move(above));
    }
}

void PMMLTranslator::handleTreeInterval(DOMNode* interval, ScoreMissingValueSet* set) {
    DOMElement const* element = AsElement(interval);
    if (element == nullptr) {
        return;
    }
    double const left = ReadMargin(element, "leftMargin", -kInfinity);
    double const right = ReadMargin(element, "rightMargin", kInfinity);
    bool leftClosed = false;
    bool rightClosed = false;
    ReadClosure(element, leftClosed, rightClosed);
    AddMissingRange(set, NumericRange(left, right, leftClosed, rightClosed));
}

bool PMMLTranslator::HandleKROMMissingInterval(ScoreMissingValueSet* set, int mask, double lower,
                                               double upper) {
    switch (mask) {
        case 0:
            return false;
        case 1:
        case 10:
        case 11:
            AddMissingRange(set, std::make_unique<Range>(lower, upper, true, true));
            return true;
        default:
            ThrowCodedError(260272, {"invalidRangeLower, invalidRangeUpper", "Value"});
    }
}

bool PMMLTranslator::SetupCatEncoder(ScoreDictVar* variable) {
    return SetupCategoryEncoder(variable);
}

bool PMMLTranslator::IsValidScoreValue(ScoreDictVar const* variable, std::string const& text) {
    if (variable == nullptr) {
        return false;
    }
    std::vector<ScoreValueLabel*> const& labels = RequiredLabels(variable);
    bool const numeric = IsNumericVariable(variable);
    double const number = numeric ? NumericValue(text).GetDouble() : 0.0;
    for (ScoreValueLabel const* label : labels) {
        ScoreValue const* value = label != nullptr ? label->GetValue() : nullptr;
        if (value == nullptr) {
            continue;
        }
        if (numeric ? value->GetDouble() == number : ScoreValue::TextOf(*value) == text) {
            return true;
        }
    }
    return false;
}

int PMMLTranslator::GetIndexOfOrdinalValue(std::string const& text, ScoreDictVar const* variable) {
    std::vector<ScoreValueLabel*> const& labels = RequiredLabels(variable);
    // Numbers match under the relative tolerance of the value's equality, texts byte for byte.
    std::unique_ptr<ScoreValue> const number =
        IsNumericVariable(variable) ? std::make_unique<NumericValue>(text) : nullptr;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        ScoreValue const* value = labels[i] != nullptr ? labels[i]->GetValue() : nullptr;
        if (value == nullptr) {
            continue;
        }
        if (number != nullptr ? *value == *number : ScoreValue::TextOf(*value) == text) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int PMMLTranslator::HandleOrdinalVariable(DOMElement* element, ScoreDictVar const* variable, int& low,
                                          int& high) {
    std::string const value = TranscodeText(fTranscoder, GetAttributeForced(element, "value"));
    std::string const op = TranscodeText(fTranscoder, GetAttributeForced(element, "operator"));
    int const index = GetIndexOfOrdinalValue(value, variable);
    int const count = variable->GetNumberOfCats();
    if (index < 0) {
        ThrowCodedError(260153, {value, "value", variable->GetName()});
    }
    if (op == "greaterThan" || op == "greaterOrEqual") {
        low = op == "greaterThan" ? index + 1 : index;
        high = count - 1;
        return 1;
    }
    if (op == "lessThan" || op == "lessOrEqual") {
        low = 0;
        high = op == "lessThan" ? index - 1 : index;
        return 1;
    }
    if (op == "equal" || op == "notEqual") {
        low = index;
        high = index;
        return op == "equal" ? 0 : 2;
    }
    ThrowCodedError(260153, {op, "operator", variable->GetName()});
}

}  // namespace QXVantry_920
