#include "vantry/translate/KROMTranslator.h"

#include <string>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/translate/CategoryRules.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"
#include "vantry/values/VarStats.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// The words of the dialect: lower case with hyphens, and upper-case values.
constexpr char kRoot[] = "krom-ml";
constexpr char kDictionary[] = "dictionary";
constexpr char kVariable[] = "variable";
constexpr char kCategories[] = "categories";
constexpr char kCategory[] = "category";
constexpr char kMissingValues[] = "missing-values";
constexpr char kRange[] = "range";
constexpr char kVarStats[] = "var-stats";
constexpr char kFormatSpec[] = "format-spec";
constexpr char kName[] = "name";
constexpr char kStorageType[] = "storage-type";
constexpr char kLabel[] = "label";
constexpr char kMeasurementLevel[] = "measurement-level";
constexpr char kValue[] = "value";
constexpr char kDisplayValue[] = "display-value";
constexpr char kMinimum[] = "minimum";
constexpr char kMaximum[] = "maximum";
constexpr char kMean[] = "mean";
constexpr char kStandardDeviation[] = "standard-deviation";
constexpr char kDecimals[] = "decimals";
constexpr char kWidth[] = "width";
constexpr char kString[] = "STRING";
constexpr char kContinuous[] = "CONTINUOUS";
constexpr char kNominal[] = "NOMINAL";
constexpr char kOrdinal[] = "ORDINAL";

// A statistic of "var-stats": system-missing when absent, empty or not a number.
double ReadStatistic(DOMElement const* element, char const* name) {
    XMLCh const* text = BaseTranslator::GetAttribute(element, name);
    if (IsEmptyText(text)) {
        return NumericValue::GetSysmisValue();
    }
    try {
        return BaseTranslator::VerifyDouble(text);
    } catch (VTException const&) {
        return NumericValue::GetSysmisValue();
    }
}

// The "value" of an element of "missing-values"; an empty one fails with the code given.
XMLCh const* RequiredMissingValue(DOMElement const* element, int emptyCode) {
    XMLCh const* text = BaseTranslator::GetAttributeForced(element, kValue);
    if (IsEmptyText(text)) {
        ThrowCodedError(emptyCode, {kValue, kCategory});
    }
    return text;
}

}  // namespace

KROMTranslator::KROMTranslator() = default;

KROMTranslator::KROMTranslator(KROMTranslator const& other) = default;

KROMTranslator& KROMTranslator::operator=(KROMTranslator const& other) = default;

KROMTranslator::~KROMTranslator() = default;

ScoreDictionary* KROMTranslator::ParseDictionary(DOMElement* dictionaryElement) {
    if (dictionaryElement == nullptr) {
        ThrowCodedError(260115, {kDictionary, kRoot});
    }
    auto dictionary = std::make_unique<BaseDictionary>();
    for (DOMNode* child = GetFirstChildElt(dictionaryElement); child != nullptr;
         child = GetNextSiblingElt(child)) {
        if (!HasName(child, kVariable)) {
            ThrowCodedError(260178, {NameOf(child), kVariable, kDictionary});
        }
        std::string name;
        try {
            std::unique_ptr<ScoreDictVar> variable = ParseVariable(AsElement(child), dictionary.get(), name);
            AddToDictionary(dictionary.get(), name, variable);
        } catch (VTException const& caught) {
            // The variable in hand and the dictionary are freed on the way out, and not left behind.
            RethrowWithMessage(caught, 260223, {kVariable, name});
        }
    }
    if (dictionary->Size() == 0) {
        ThrowCodedError(260283, {kDictionary});
    }
    return dictionary.release();
}

std::unique_ptr<ScoreDictVar> KROMTranslator::ParseVariable(DOMElement* element, ScoreDictionary* dictionary,
                                                            std::string& name) {
    XMLCh const* nameText = GetAttributeForced(element, kName);
    name = ToString(nameText);
    XMLCh const* storageText = GetAttributeForced(element, kStorageType);
    if (IsEmptyText(nameText)) {
        ThrowCodedError(260285, {kName, kVariable});
    }
    if (IsEmptyText(storageText)) {
        ThrowCodedError(260285, {kStorageType, kVariable});
    }
    bool const isString = ToString(storageText) == kString;
    std::unique_ptr<ScoreDictVar> variable =
        std::make_unique<DictVar>(name, isString ? ScoreDictVar::STRING_VAR : ScoreDictVar::kNUMERIC_VAR);
    if (dictionary->GetVar(name) != nullptr) {
        ThrowCodedError(260202, {name, kDictionary});
    }
    XMLCh const* label = GetAttribute(element, kLabel);
    variable->SetLabel(IsEmptyText(label) ? name : ToString(label));

    XMLCh const* levelText = GetAttributeForced(element, kMeasurementLevel);
    if (IsEmptyText(levelText)) {
        ThrowCodedError(260285, {kMeasurementLevel, kVariable});
    }
    std::string const level = ToString(levelText);
    if (level == kContinuous && isString) {
        ThrowCodedError(260211, {kContinuous, kMeasurementLevel, kString, kStorageType});
    } else if (level == kContinuous) {
        variable->SetMLevel(ScoreDictVar::MEASURE_CONTINUOUS);
    } else if (level == kNominal) {
        variable->SetMLevel(ScoreDictVar::MEASURE_NOMINAL);
    } else if (level == kOrdinal) {
        variable->SetMLevel(ScoreDictVar::MEASURE_ORDINAL);
    } else {
        ThrowCodedError(260152, {level, kMeasurementLevel});
    }

    bool categoriesMet = false;
    for (DOMNode* child = GetFirstChildElt(element); child != nullptr; child = GetNextSiblingElt(child)) {
        DOMElement* part = AsElement(child);
        if (HasName(child, kCategories)) {
            categoriesMet = true;
            ParseCategories(part, variable.get());
        } else if (HasName(child, kMissingValues)) {
            ParseMissingValues(part, variable.get());
        } else if (HasName(child, kVarStats)) {
            auto stats = std::make_unique<VarStats>(ReadStatistic(part, kMinimum),
                                                    ReadStatistic(part, kMaximum), ReadStatistic(part, kMean),
                                                    ReadStatistic(part, kStandardDeviation));
            ReplacePart<ScoreVarStats>(
                std::move(stats), [&variable] { return variable->GetVarStats(); },
                [&variable](ScoreVarStats* fresh) { variable->SetVarStats(fresh); });
        } else if (HasName(child, kFormatSpec)) {
            variable->SetDecimal(ParseIntAttribute(fTranscoder, GetAttribute(part, kDecimals), kDecimals));
            variable->SetWidth(
                CheckTextWidth(ParseIntAttribute(fTranscoder, GetAttribute(part, kWidth), kWidth), kWidth));
        } else {
            ThrowCodedError(260154, {NameOf(child)});
        }
    }

    ScoreValueLabelSet const* labels = variable->GetValueLabels();
    if (labels != nullptr && variable->GetMissingValues() != nullptr) {
        if (categoriesMet && labels->Size() == 0) {
            ThrowCodedError(260126, {name});
        }
        int index = 0;
        for (ScoreValueLabel const* category : labels->GetAllValueLabels()) {
            if (variable->IsMissingValue(category->GetValue())) {
                ThrowCodedError(260292, {std::to_string(index), name});
            }
            ++index;
        }
    }
    if (variable->IsString()) {
        SetupCatEncoder(variable.get());
    }
    return variable;
}

void KROMTranslator::ParseCategories(DOMElement* element, ScoreDictVar* variable) {
    auto labels = std::make_unique<ValueLabelSet>();
    for (DOMNode* child = GetFirstChildElt(element); child != nullptr; child = GetNextSiblingElt(child)) {
        if (!HasName(child, kCategory)) {
            ThrowCodedError(260152, {NameOf(child), kCategory});
        }
        DOMElement const* category = AsElement(child);
        XMLCh const* value = GetAttributeForced(category, kValue);
        std::unique_ptr<ScoreValue> made(CarefullyMakeVarValue(variable, value));
        XMLCh const* display = GetAttribute(category, kDisplayValue);
        std::string const label = ToString(IsEmptyText(display) ? value : display);
        labels->Add(new ValueLbl(made.release(), label));
    }
    ReplacePart<ScoreValueLabelSet>(
        std::move(labels), [variable] { return variable->GetValueLabels(); },
        [variable](ScoreValueLabelSet* fresh) { variable->SetValueLabels(fresh); });
}

void KROMTranslator::ParseMissingValues(DOMElement* element, ScoreDictVar* variable) {
    auto missing = std::make_unique<MissingValueSet>();
    for (DOMNode* child = GetFirstChildElt(element); child != nullptr; child = GetNextSiblingElt(child)) {
        if (HasName(child, kCategory)) {
            XMLCh const* value = RequiredMissingValue(AsElement(child), 260285);
            AddMissingRange(missing.get(), std::make_unique<Range>(CarefullyMakeVarValue(variable, value)));
        } else if (HasName(child, kRange)) {
            DOMNode* low = GetFirstChildElt(child);
            if (low == nullptr) {
                ThrowCodedError(260117, {kCategory, kRange});
            }
            DOMNode* high = GetNextSiblingElt(low);
            if (high == nullptr) {
                ThrowCodedError(260118, {kCategory, kRange});
            }
            std::unique_ptr<ScoreValue> lowValue(
                CarefullyMakeVarValue(variable, RequiredMissingValue(AsElement(low), 260120)));
            std::unique_ptr<ScoreValue> highValue(
                CarefullyMakeVarValue(variable, RequiredMissingValue(AsElement(high), 260120)));
            auto range = std::make_unique<Range>(lowValue.get(), highValue.get(), true, true);
            lowValue.release();
            highValue.release();
            AddMissingRange(missing.get(), std::move(range));
        }
    }
    ReplacePart<ScoreMissingValueSet>(
        std::move(missing), [variable] { return variable->GetMissingValues(); },
        [variable](ScoreMissingValueSet* fresh) { variable->SetMissingValues(fresh); });
}

bool KROMTranslator::SetupCatEncoder(ScoreDictVar* variable) {
    return SetupCategoryEncoder(variable);
}

}  // namespace QXVantry_920
