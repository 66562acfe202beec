// The value of a derived variable for one case: the source lookup, the dispatch on the expression, and
// the table-like expressions (encoding, binning, lookup tables) with their missing-value rules.
#include <cstdlib>

#include "vantry/transform/FieldAccess.h"
#include "vantry/transform/MapValues.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

// Clears the flag on every way out, so that an exception cannot leave the variable marked busy.
class EvaluationGuard {
  public:
    explicit EvaluationGuard(bool& flag) : fFlag(flag) { fFlag = true; }
    ~EvaluationGuard() { fFlag = false; }
    EvaluationGuard(EvaluationGuard const&) = delete;
    EvaluationGuard& operator=(EvaluationGuard const&) = delete;

  private:
    bool& fFlag;
};

bool IsNumberKind(ScoreValue const* value) {
    if (value == nullptr) {
        return false;
    }
    ScoreValue::ValueType type = ScoreValue::TypeOf(*value);
    return type == ScoreValue::NUMERIC_VALUE || type == ScoreValue::DATETIME_VALUE;
}

bool IsUsable(ScoreValue const* value) {
    return value != nullptr && !value->IsSystemMissingValue();
}

ScoreValue* MakeMissingResult(ScoreDictVar::VariableType type) {
    switch (type) {
        case ScoreDictVar::kNUMERIC_VAR:
            return new NumericValue(NumericValue::GetSysmisValue());
        case ScoreDictVar::DATETIME_VAR:
            return new DateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL);
        default:
            return new StringValue(std::string());
    }
}

void SetMissing(ScoreValue& value) {
    if (ScoreValue::TypeOf(value) == ScoreValue::STRING_VALUE) {
        static_cast<StringValue&>(value).SetString(std::string());
    } else {
        static_cast<NumericValue&>(value).SetDoubleValue(NumericValue::GetSysmisValue());
    }
}

}  // namespace

ScoreValue const* TransformVar::GetTransformedValue(ScoreCaseRecord const* record,
                                                    ScoreDictionary const* dictionary,
                                                    ScoreDictionary const* transformations) {
    VariableType const type = fVarType;
    // The steady state of a numeric function tree headed by functions of numbers: its number goes
    // straight into the result, as the steps below would put it there.
    if (fResult != nullptr && fResultIsNumber && fExpression == TransformationDictionary::TE_APPLY &&
        !fEvaluating && fFieldName.empty() && HasNumericRoot()) {
        EvaluationGuard guard(fEvaluating);
        static_cast<NumericValue*>(fResult)->SetDoubleValue(RootNumber(record, dictionary, transformations));
        return fResult;
    }
    if (fResult != nullptr) {
        if (fExpression == TransformationDictionary::TE_CONSTANT) {
            return fResult;
        }
        if (fResultIsNumber) {
            static_cast<NumericValue*>(fResult)->SetDoubleValue(NumericValue::GetSysmisValue());
        } else {
            SetMissing(*fResult);
        }
    } else {
        fResult = MakeMissingResult(type);
        fResultIsNumber = type == kNUMERIC_VAR;
        if (fExpression == TransformationDictionary::TE_CONSTANT) {
            if (type == kNUMERIC_VAR) {
                static_cast<NumericValue*>(fResult)->SetDoubleValue(NumericValue(fConstString).GetDouble());
            } else if (type == DATETIME_VAR) {
                // The text is the number of the variable's own date type (seconds when it has none).
                double number = NumericValue(fConstString).GetDouble();
                auto* date = static_cast<DateTimeValue*>(fResult);
                if (fDateTimeType == DT_NONE || NumericValue::IsSystemMissingValue(number)) {
                    date->SetDateTimeValue(number, DateTimeValue::DATETIME_VAL);
                } else {
                    date->SetDateTimeValue(number, fDateTimeType);
                }
            } else {
                static_cast<StringValue*>(fResult)->SetString(fConstString);
            }
            if (ScoreValue::TypeOf(*fResult) == ScoreValue::STRING_VALUE) {
                auto* text = static_cast<StringValue*>(fResult);
                std::string content = text->GetString();
                if (fWidth >= 0) {
                    if (content.size() > static_cast<size_t>(fWidth)) {
                        text->SetString(content.substr(0, static_cast<size_t>(fWidth)));
                    }
                    text->SetLength(fWidth);
                }
            }
            return fResult;
        }
    }
    // A variable reached again while it is being computed (only a broken document can do that) stays
    // missing instead of recursing without end.
    if (fEvaluating) {
        return fResult;
    }
    EvaluationGuard guard(fEvaluating);

    // Both find nothing for an empty field name, which function trees have.
    ScoreValue const* value = nullptr;
    if (!fFieldName.empty()) {
        value = ReadSource(record);
        ResolveSource(dictionary, transformations);
    }
    if (fExpression != TransformationDictionary::TE_APPLY && fSourceDerived != nullptr && value == nullptr) {
        value = fSourceDerived->GetTransformedValue(record, dictionary, transformations);
    }

    ScoreDictVar const* judge = fSourceVariable != nullptr ? fSourceVariable : this;
    ScoreValue const* answer = nullptr;
    switch (fExpression) {
        case TransformationDictionary::TE_FIELD_REF:
            if (fSourceVariable != nullptr && fRecodeMissingValue != nullptr &&
                fSourceVariable->IsMissingValue(value)) {
                fResult->SetValue(fRecodeMissingValue);
            } else if (value != nullptr) {
                fResult->SetValue(value);
            }
            break;
        case TransformationDictionary::TE_NORM_CONTINUOUS:
            if (type == kNUMERIC_VAR) {
                double number = NumericValue::GetSysmisValue();
                if (!judge->IsMissingValue(value)) {
                    number = GetNormValue(value->GetDouble());
                } else if (fRecodeMissingValue != nullptr) {
                    number = fRecodeMissingValue->GetDouble();
                }
                static_cast<NumericValue*>(fResult)->SetDoubleValue(number);
            }
            break;
        case TransformationDictionary::TE_NORM_DISCRETE:
            answer = GetEncodedValue(fSourceVariable, value);
            break;
        case TransformationDictionary::TE_DISCRETIZE:
            answer = GetBinningValue(fSourceVariable, value);
            break;
        case TransformationDictionary::TE_MAP_VALUES:
            answer = GetMappedValue(record, dictionary, transformations, value);
            break;
        case TransformationDictionary::TE_APPLY: {
            int unused = 0;
            answer =
                fRoot != nullptr ? Traverse(fRoot, record, dictionary, transformations, unused) : nullptr;
            break;
        }
        case TransformationDictionary::TE_LAG:
            answer = GetLagValue(record, dictionary, transformations, value);
            break;
        default:
            break;
    }
    if (answer == fNumericScratch && fResultIsNumber) {
        // A number into a number: what SetValue does, without asking either for its kind.
        static_cast<NumericValue*>(fResult)->SetDoubleValue(fNumericScratch->NumericValue::GetDouble());
    } else if (answer != nullptr && answer != fResult) {
        fResult->SetValue(answer);
    }
    if (!fResultIsNumber && ScoreValue::TypeOf(*fResult) == ScoreValue::STRING_VALUE && fWidth >= 0) {
        auto* text = static_cast<StringValue*>(fResult);
        if (text->GetString().size() > static_cast<size_t>(fWidth)) {
            text->SetString(text->GetString().substr(0, static_cast<size_t>(fWidth)));
        }
        text->SetLength(fWidth);
    }
    return fResult;
}

// The source's slot is found once and kept. A record that lacks the field is remembered with its size:
// slots never move and names are only added, so the same record at the same size still lacks it.
ScoreValue const* TransformVar::ReadSource(ScoreCaseRecord const* record) {
    if (fFieldName.empty() || record == nullptr) {
        return nullptr;
    }
    if (fSourceIndex == -1) {
        int const size = record->Size();
        if (record == fAbsentRecord && size == fAbsentRecordSize) {
            return nullptr;
        }
        fSourceIndex = record->GetIndex(fFieldName);
        if (fSourceIndex == -1) {
            fAbsentRecord = record;
            fAbsentRecordSize = size;
            return nullptr;
        }
    }
    return record->Get(fSourceIndex);
}

void TransformVar::ResolveSource(ScoreDictionary const* dictionary, ScoreDictionary const* transformations) {
    if (fSourceResolved || fFieldName.empty()) {
        return;
    }
    if (fSourceVariable == nullptr && dictionary != nullptr) {
        fSourceVariable = dictionary->GetVar(fFieldName);
    }
    if (fSourceVariable == nullptr && transformations != nullptr &&
        fExpression != TransformationDictionary::TE_APPLY) {
        fSourceVariable = transformations->GetVar(fFieldName);
    }
    if (fSourceVariable == nullptr) {
        return;  // looked up again at the next case
    }
    fSourceResolved = true;
    TransformVar* derived = AsDerived(fSourceVariable);
    fSourceDerived = derived != this ? derived : nullptr;
}

void TransformVar::ResetScratch(VariableType type) {
    if (type == kNUMERIC_VAR) {
        fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
    } else {
        fStringScratch->SetString(std::string());
    }
}

ScoreValue const* TransformVar::GetEncodedValue(ScoreDictVar const* source, ScoreValue const* value) {
    VariableType const type = fVarType;
    ResetScratch(type);
    if (value == nullptr) {
        if (type == kNUMERIC_VAR) {
            if (IsUsable(fRecodeMissingValue)) {
                fNumericScratch->SetDoubleValue(fRecodeMissingValue->GetDouble());
            }
            return fNumericScratch;
        }
        return fStringScratch;
    }
    for (auto const& [key, result] : fEncodingMap) {
        if (key != nullptr && *key == *value) {
            return result;
        }
    }
    return HandleMissingAndInvalidValue(source, type, value);
}

ScoreValue const* TransformVar::GetBinningValue(ScoreDictVar const* source, ScoreValue const* value) {
    VariableType const type = fVarType;
    ResetScratch(type);
    if (!IsNumberKind(value)) {
        if (type == kNUMERIC_VAR) {
            if (IsUsable(fRecodeMissingValue)) {
                fNumericScratch->SetDoubleValue(fRecodeMissingValue->GetDouble());
            }
            return fNumericScratch;
        }
        if (fRecodeMissingValue != nullptr) {
            fStringScratch->SetString(ScoreValue::TextOf(*fRecodeMissingValue));
        }
        return fStringScratch;
    }
    // The first bin that holds the value wins, even when later bins hold it too.
    for (auto const& [range, binValue] : fBins) {
        if (range != nullptr && range->IsInRange(value)) {
            return binValue;
        }
    }
    return HandleMissingAndInvalidValue(source, type, value);
}

ScoreValue* TransformVar::HandleMissingAndInvalidValue(ScoreDictVar const* source, VariableType ownType,
                                                       ScoreValue const* value) {
    ScoreDictVar const* judge = source != nullptr ? source : this;
    bool const missing = judge->IsMissingValue(value);
    bool const numericSysmisInput = source != nullptr && source->GetVarType() == kNUMERIC_VAR &&
                                    value != nullptr && value->IsSystemMissingValue();
    bool const copyInput = value != nullptr && (fRecodeElseCopy || (missing && fRecodeMissingCopy));

    if (ownType != kNUMERIC_VAR) {
        ScoreValue const* chosen = nullptr;
        if (!missing) {
            chosen = fRecodeDefaultValue;
        } else if (numericSysmisInput && fRecodeSysmisValue != nullptr) {
            chosen = fRecodeSysmisValue;
        } else {
            chosen = fRecodeMissingValue;
        }
        if (chosen != nullptr) {
            fStringScratch->SetString(ScoreValue::TextOf(*chosen));
        } else if (copyInput) {
            fStringScratch->SetString(ScoreValue::TextOf(*value));
        }
        return fStringScratch;
    }

    ScoreValue const* chosen = nullptr;
    if (!missing) {
        chosen = fRecodeDefaultValue;
    } else if (numericSysmisInput && IsUsable(fRecodeSysmisValue)) {
        chosen = fRecodeSysmisValue;
    } else {
        chosen = fRecodeMissingValue;
    }
    if (chosen != nullptr) {
        // A rule that names the missing number leaves the result missing.
        if (!chosen->IsSystemMissingValue()) {
            fNumericScratch->SetDoubleValue(chosen->GetDouble());
        }
    } else if (copyInput) {
        fNumericScratch->SetDoubleValue(value->GetDouble());
    }
    return fNumericScratch;
}

ScoreValue const* TransformVar::GetMappedValue(ScoreCaseRecord const* record,
                                               ScoreDictionary const* dictionary,
                                               ScoreDictionary const* transformations,
                                               ScoreValue const* current) {
    if (current != nullptr) {
        for (auto const& [key, result] : fEncodingMap) {
            if (key != nullptr && *key == *current) {
                if (result != nullptr) {
                    return result;
                }
                break;
            }
        }
    }
    return fMapValues != nullptr ? fMapValues->Lookup(record, dictionary, transformations) : nullptr;
}

}  // namespace QXVantry_920
