#include "vantry/translate/CategoryRules.h"

#include <cstddef>
#include <vector>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/values/MissingValueSet.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreSplitVar.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace QXVantry_920 {

namespace {

bool IsCategorical(ScoreDictVar const* variable) {
    ScoreDictVar::MeasureLevel const level = variable->GetMLevel();
    return level == ScoreDictVar::MEASURE_NOMINAL || level == ScoreDictVar::MEASURE_ORDINAL;
}

}  // namespace

bool LevelOfOptype(std::string const& optype, ScoreDictVar::MeasureLevel& level) {
    if (optype == "continuous") {
        level = ScoreDictVar::MEASURE_CONTINUOUS;
    } else if (optype == "categorical") {
        level = ScoreDictVar::MEASURE_NOMINAL;
    } else if (optype == "ordinal") {
        level = ScoreDictVar::MEASURE_ORDINAL;
    } else {
        return false;
    }
    return true;
}

std::vector<ScoreValueLabel*> const& RequiredLabels(ScoreDictVar const* variable) {
    ScoreValueLabelSet const* labels = variable->GetValueLabels();
    if (labels == nullptr) {
        ThrowCodedError(260126, {variable->GetName()});
    }
    return labels->GetAllValueLabels();
}

void AddMissingRange(ScoreMissingValueSet* set, std::unique_ptr<ScoreValueRange> range) {
    if (set->Add(range.get())) {
        range.release();
    }
}

void SetTypeOfDataType(ScoreDictVar* variable, std::string const& dataType,
                       ScoreDictVar::DateTimeType dateType) {
    if (dataType == "string") {
        variable->SetVarType(ScoreDictVar::STRING_VAR);
    } else if (dataType == "integer") {
        variable->SetNumericDataType(ScoreDictVar::NUMERIC_TYPE_INTEGER);
    } else if (dataType == "double") {
        variable->SetNumericDataType(ScoreDictVar::NUMERIC_TYPE_DOUBLE);
    } else if (dateType != ScoreDictVar::DT_NONE) {
        variable->SetVarType(ScoreDictVar::DATETIME_VAR);
        variable->SetDateTimeType(dateType);
    }
}

bool IsNumericVariable(ScoreDictVar const* variable) {
    return variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR;
}

std::string NameOfVariable(ScoreDictVar const* variable) {
    return variable != nullptr ? variable->GetName() : std::string();
}

bool SetupCategoryEncoder(ScoreDictVar* variable) {
    if (variable == nullptr || !IsCategorical(variable)) {
        return false;
    }
    if (variable->GetEncoder() == nullptr) {
        if (IsNumericVariable(variable)) {
            variable->SetEncoder(new ScoreCatNumericEncoder(2));
        } else {
            auto encoder = std::make_unique<ScoreCatStringEncoder>(2);
            encoder->SetEmptyStringOK(variable->GetEmptyStringOK());
            encoder->SetNoSpaceTrim(variable->GetNoSpaceTrim());
            variable->SetEncoder(encoder.release());
        }
    }
    ScoreValueLabelSet const* labels = variable->GetValueLabels();
    if (labels == nullptr) {
        return true;
    }
    ScoreEncoder* encoder = variable->GetEncoder();
    for (ScoreValueLabel const* label : labels->GetAllValueLabels()) {
        if (label != nullptr && label->GetValue() != nullptr) {
            encoder->Encode(label->GetValue());
        }
    }
    return true;
}

void CheckCategoryLabels(ScoreDictVar const* variable, bool compareStrings) {
    ScoreValueLabelSet const* labels = variable->GetValueLabels();
    if (labels == nullptr) {
        return;
    }
    std::vector<ScoreValueLabel*> const& all = labels->GetAllValueLabels();
    bool const isString = variable->IsString();
    for (std::size_t i = 0; i < all.size(); ++i) {
        ScoreValueLabel* label = all[i];
        if (variable->IsMissingValue(label->GetValue())) {
            ThrowCodedError(260294, {label->GetLabel(), variable->GetName()});
        }
        if (isString && !compareStrings) {
            continue;
        }
        for (std::size_t j = 0; j < all.size(); ++j) {
            if (j == i) {
                continue;
            }
            bool const same = isString
                                  ? label->GetValue()->Equal(all[j]->GetValue(), variable->GetNoSpaceTrim(),
                                                             variable->GetEmptyStringOK())
                                  : *label == *all[j];
            if (same) {
                ThrowCodedError(260203, {"value", ScoreValue::TextOf(*label->GetValue()), "DataDictionary"});
            }
        }
    }
}

void EnterCategory(ScoreDictVar const* variable, DiscreteSplit* split, int index) {
    ScoreValueLabelSet const* labels = variable->GetValueLabels();
    if (labels == nullptr || index < 0 || index >= labels->Size()) {
        return;
    }
    ScoreValueLabel const* label = labels->GetAllValueLabels()[static_cast<std::size_t>(index)];
    ScoreValue const* value = label != nullptr ? label->GetValue() : nullptr;
    if (value == nullptr) {
        return;
    }
    bool const numeric = IsNumericVariable(variable);
    if (ScoreEncoder const* encoder = variable->GetEncoder()) {
        split->PutSplit(numeric ? value->GetDouble() : static_cast<double>(encoder->EncodeConst(value)), 0);
    } else if (numeric) {
        split->PutSplit(new NumericValue(value->GetDouble()), 0);
    } else {
        split->PutSplit(new StringValue(ScoreValue::TextOf(*value)), 0);
    }
}

bool LearnCategory(ScoreDictVar* variable, std::unique_ptr<ScoreValue> value, std::string const& label) {
    // The variable refuses a null value or an empty label and leaves the value with the caller; it
    // deletes a value that it holds already.
    bool const keptByCaller = value == nullptr || label.empty();
    ScoreValue* raw = value.release();
    bool const added = variable->AddScoreValueLabel(raw, label);
    if (!added && keptByCaller) {
        delete raw;
    }
    return added;
}

}  // namespace QXVantry_920
