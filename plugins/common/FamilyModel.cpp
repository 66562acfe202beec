#include "plugins/common/FamilyModel.h"

#include <ostream>
#include <typeinfo>

#include <xercesc/dom/DOM.hpp>

#include "plugins/common/FamilyResult.h"
#include "plugins/common/FamilySupport.h"
#include "plugins/common/FamilyTranslator.h"
#include "plugins/common/RecordSlots.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ResultVar.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// The status of a case whose inputs were invalid, or that failed inside the model.
constexpr long kCaseFailed = 90027;

std::unique_ptr<ScoreValue> CategoryValue(std::string const& text, ScoreDictVar::VariableType type) {
    if (type != ScoreDictVar::STRING_VAR) {
        double number = 0.0;
        if (ReadWholeNumber(text, number)) {
            return std::make_unique<NumericValue>(number);
        }
    }
    return std::make_unique<StringValue>(text);
}

}  // namespace

FamilyModel::FamilyModel() = default;

FamilyModel::~FamilyModel() = default;

void FamilyModel::SetCategories(std::vector<std::string> const& categories) {
    fCategoryTexts = categories;
}

int FamilyModel::FindCategory(std::string const& text) const {
    for (std::size_t i = 0; i < fCategoryTexts.size(); ++i) {
        if (fCategoryTexts[i] == text) {
            return static_cast<int>(i);
        }
    }
    std::unique_ptr<ScoreValue> const value = CategoryValue(text, fTargetType);
    for (std::size_t i = 0; i < fCategoryValues.size(); ++i) {
        if (ScoreValue::TypeOf(*value) == ScoreValue::NUMERIC_VALUE &&
            ScoreValue::TypeOf(*fCategoryValues[i]) == ScoreValue::NUMERIC_VALUE &&
            *value == *fCategoryValues[i]) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void FamilyModel::Install(ModelContext& context, DOMElement* schema, FamilyTranslator& translator) {
    ScoreDictionary* inputs = fDictionary;
    DOMElement* element = context.ModelElement();
    fSchema.Read(schema, inputs, translator);
    fSchema.LayOut(inputs, fPrepared);

    fTargetField = context.TargetField();
    ScoreDictVar const* target = fTargetField.empty() ? nullptr : inputs->GetVar(fTargetField);
    if (target != nullptr) {
        SetVarRole(fTargetField, kTARGET_ROLE);
        fTargetType = target->GetVarType();
    }
    fTargets.Read(static_cast<DOMElement*>(BaseTranslator::GetChildByTag(element, "Targets")), translator);
    fCategoryValues.clear();
    for (std::string const& text : fCategoryTexts) {
        fCategoryValues.push_back(CategoryValue(text, fTargetType));
    }

    // The flat record: every input, then every derived field, then the outputs.
    fFlatDictionary = std::make_unique<BaseDictionary>();
    fFlatSources.clear();
    for (std::string const& name : MiningSchema::SlotNames(inputs)) {
        ScoreDictVar* variable = inputs->GetVar(name);
        fFlatDictionary->AddVar(name, variable->Clone());
        fFlatSources.push_back(FieldHandle{FieldHandle::kInput, variable->GetValueIndex(), variable});
    }
    if (fTransformationDictionary != nullptr) {
        for (std::string const& name : fTransformationDictionary->GetDerivedVarNames()) {
            ScoreDictVar const* variable =
                static_cast<ScoreDictionary const*>(fTransformationDictionary)->GetVar(name);
            if (variable == nullptr || fFlatDictionary->GetVar(name) != nullptr) {
                continue;
            }
            auto standIn = std::make_unique<DictVar>(name, variable->GetVarType());
            standIn->SetMLevel(variable->GetMLevel());
            fFlatDictionary->AddVar(name, standIn.release());
            fFlatSources.push_back(FieldHandle{FieldHandle::kDerived, variable->GetValueIndex(), variable});
        }
    }
    auto* output = static_cast<DOMElement*>(BaseTranslator::GetChildByTag(element, "Output"));
    fOutput.Read(output, translator);
    fOutput.Resolve(output, fCategoryTexts, *fFlatDictionary, translator);
    std::vector<std::string> const flatNames = MiningSchema::SlotNames(fFlatDictionary.get());
    fFlat.SetUpNameIndexMap(flatNames);
    for (std::string const& name : flatNames) {
        fFlat.Add(name, NewMissing(fFlatDictionary->GetVar(name)->GetVarType()));
    }

    // The result columns: the predicted value under the target's name, then the outputs.
    auto results = std::make_unique<BaseDictionary>();
    fResultColumns.clear();
    if (!fTargetField.empty()) {
        auto variable = std::make_unique<ResultVar>(
            fTargetField, IsClassification() && fTargetType == ScoreDictVar::STRING_VAR
                              ? ScoreDictVar::STRING_VAR
                              : ScoreDictVar::kNUMERIC_VAR);
        variable->SetFeature(ScoreResultField::kPredictedValue);
        if (target != nullptr) {
            variable->SetMLevel(target->GetMLevel());
        }
        results->AddVar(fTargetField, variable.release());
        fResultColumns.emplace_back(fTargetField, -1);
    }
    std::vector<ModelOutput::Field> const& fields = fOutput.Fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (results->GetVar(fields[i].name) != nullptr) {
            continue;
        }
        auto variable = std::make_unique<ResultVar>(fields[i].name, fields[i].type);
        ScoreResultField::ResultFeature feature = ScoreResultField::kFeatureNone;
        if (fields[i].feature == ModelOutput::Feature::kTransformedValue ||
            !ResultVar::FeatureFromText(fields[i].featureText, feature)) {
            feature = ScoreResultField::kFeatureNone;
        }
        if (fields[i].featureText.empty()) {
            feature = ScoreResultField::kPredictedValue;
        }
        variable->SetFeature(feature);
        variable->SetMLevel(fields[i].level);
        results->AddVar(fields[i].name, variable.release());
        fResultColumns.emplace_back(fields[i].name, static_cast<int>(i));
    }
    SetResultScoreDictionary(results.release());
    fPrediction.Reset(fCategoryTexts.size());
}

ScoreCaseRecord* FamilyModel::MakeCaseRecord() const {
    auto record = std::make_unique<CaseRecord>();
    if (fDictionary == nullptr) {
        return record.release();
    }
    std::vector<std::string> const names = MiningSchema::SlotNames(fDictionary);
    record->SetUpNameIndexMap(names);
    for (std::string const& name : names) {
        record->Add(name, NewMissing(fDictionary->GetVar(name)->GetVarType()));
    }
    return record.release();
}

ScoreResult* FamilyModel::MakeResult() const {
    auto result = std::make_unique<FamilyResult>();
    result->SetResultCode(IsClassification() ? FamilyResult::kClassificationCode
                                             : FamilyResult::kRegressionCode);
    std::vector<ScoreValue const*> categories;
    for (auto const& value : fCategoryValues) {
        categories.push_back(value.get());
    }
    result->SetCategories(categories);
    result->SetOutputCount(fOutput.Fields().size());
    return result.release();
}

bool FamilyModel::HasOwnProbabilityOutput() {
    return IsClassification();
}

void FamilyModel::FillFlat() const {
    for (std::size_t i = 0; i < fFlatSources.size(); ++i) {
        FieldHandle const& source = fFlatSources[i];
        ScoreCaseRecord const* record = source.source == FieldHandle::kDerived ? fDerived : &fPrepared;
        ScoreValue const* value = record != nullptr ? record->Get(source.index) : nullptr;
        PutValue(fFlat, static_cast<int>(i), source.variable->GetName(), value,
                 source.variable->GetVarType());
    }
}

bool FamilyModel::Run(ScoreCaseRecord const* record, Prediction& prediction, QXScore::QXStatus& status) {
    prediction.Reset(fCategoryTexts.size());
    if (record == nullptr) {
        return false;
    }
    if (!fSchema.Prepare(record, fPrepared)) {
        status = QXScore::QXStatus(kCaseFailed, false);
        return false;
    }
    fDerived = fTransformationDictionary != nullptr
                   ? fTransformationDictionary->GetValuesForDerivedVars(&fPrepared, fDictionary)
                   : nullptr;
    FamilyCase const input(&fPrepared, fDerived, &fFlat, this);
    prediction.valid = Evaluate(input, prediction);
    if (IsClassification()) {
        if (prediction.valid && prediction.category < 0) {
            prediction.category = prediction.ArgMax();
        }
        prediction.valid = prediction.valid && prediction.category >= 0;
        fTargets.ApplyClassification(fTargetField, fCategoryTexts, prediction);
    } else {
        fTargets.ApplyRegression(fTargetField, prediction);
    }
    return prediction.valid;
}

bool FamilyModel::Predict(ScoreCaseRecord const* record, Prediction& prediction) {
    QXScore::QXStatus status;
    try {
        return Run(record, prediction, status);
    } catch (...) {
        prediction.Reset(fCategoryTexts.size());
        return false;
    }
}

std::string FamilyModel::DisplayText(Prediction const& prediction) const {
    if (!prediction.valid) {
        return std::string();
    }
    if (!IsClassification()) {
        NumericValue number(prediction.value);
        return number.GetString();
    }
    std::string const& text = fCategoryTexts[static_cast<std::size_t>(prediction.category)];
    ScoreDictVar const* target = fDictionary != nullptr ? fDictionary->GetVar(fTargetField) : nullptr;
    if (target != nullptr && target->GetValueLabels() != nullptr) {
        std::string const label =
            target->GetLabelOfValue(fCategoryValues[static_cast<std::size_t>(prediction.category)].get());
        if (!label.empty()) {
            return label;
        }
    }
    return text;
}

void FamilyModel::FillResult(Prediction const& prediction, FamilyResult& result) {
    result.SetResultCode(IsClassification() ? FamilyResult::kClassificationCode
                                            : FamilyResult::kRegressionCode);
    if (IsClassification() &&
        result.GetNumberOfValueProbabilities() != static_cast<int>(fCategoryValues.size())) {
        std::vector<ScoreValue const*> categories;
        for (auto const& value : fCategoryValues) {
            categories.push_back(value.get());
        }
        result.SetCategories(categories);
    }
    result.SetEntityId(prediction.valid ? prediction.entityId : std::string());
    if (!prediction.valid) {
        result.ClearValue();
        result.ClearProbabilities();
    } else if (IsClassification()) {
        result.SetResultValue(fCategoryValues[static_cast<std::size_t>(prediction.category)].get());
        result.SetResultConfidence(prediction.ConfidenceOf(prediction.category));
        for (std::size_t i = 0; i < fCategoryValues.size(); ++i) {
            result.SetProbability(static_cast<int>(i), prediction.ProbabilityOf(static_cast<int>(i)));
        }
    } else {
        result.SetNumber(prediction.value);
        result.SetResultConfidence(NumericValue::GetSysmisValue());
    }
    if (!fOutput.Empty()) {
        CaseRecord* flat = nullptr;
        if (fOutput.NeedsFlatRecord()) {
            FillFlat();
            flat = &fFlat;
        }
        fOutput.Compute(prediction, result, flat, fFlatDictionary.get(),
                        fOutput.NeedsDisplayText() ? DisplayText(prediction) : std::string());
    }
}

QXScore::QXStatus FamilyModel::Score(ScoreCaseRecord* record, ScoreResult* result) {
    QXScore::QXStatus status;
    if (result == nullptr) {
        return QXScore::QXStatus(kCaseFailed, false);
    }
    // The model's own results are the usual case; their exact type is compared before any cast.
    auto* own = typeid(*result) == typeid(FamilyResult) ? static_cast<FamilyResult*>(result)
                                                        : dynamic_cast<FamilyResult*>(result);
    std::unique_ptr<FamilyResult> local;
    if (own == nullptr) {
        local.reset(static_cast<FamilyResult*>(MakeResult()));
        own = local.get();
    }
    try {
        Run(record, fPrediction, status);
        FillResult(fPrediction, *own);
    } catch (...) {
        fPrediction.Reset(fCategoryTexts.size());
        own->ClearValue();
        own->ClearProbabilities();
        status = QXScore::QXStatus(kCaseFailed, false);
    }
    own->SetStatus(status);
    if (local != nullptr) {
        // A result of another kind gets the predicted value and its confidence through its slots.
        result->SetResultValue(own->GetResultValue());
        result->SetResultConfidence(own->GetResultConfidence());
    }
    return status;
}

QXScore::QXStatus FamilyModel::FillResultFields(ScoreResult const* result, ScoreResultField* fields) {
    auto const* own = dynamic_cast<FamilyResult const*>(result);
    if (fields == nullptr || result == nullptr) {
        return QXScore::QXStatus(kCaseFailed, false);
    }
    for (auto const& column : fResultColumns) {
        ScoreValue const* value = nullptr;
        if (column.second < 0) {
            value = result->GetResultValue();
        } else if (own != nullptr) {
            value = own->GetOutput(static_cast<std::size_t>(column.second));
        }
        if (value != nullptr && fields->SetResultValue(column.first, value)) {
            continue;
        }
        // A missing output: a field that held a value of an earlier case is emptied in its own kind.
        if (ScoreValue const* held = fields->GetResultValue(column.first)) {
            if (ScoreValue::TypeOf(*held) == ScoreValue::STRING_VALUE) {
                fields->SetResultValue(column.first, std::string());
            } else {
                fields->SetResultValue(column.first, NumericValue::GetSysmisValue());
            }
        }
    }
    return QXScore::QXStatus();
}

void FamilyModel::DisplayFamily(std::ostream&) const {}

void FamilyModel::Display(std::ostream& out) const {
    out << (fVersionInfo != nullptr ? fVersionInfo->GetVersionInfo() : std::string())
        << " target=" << fTargetField;
    if (IsClassification()) {
        out << " categories=";
        for (std::size_t i = 0; i < fCategoryTexts.size(); ++i) {
            out << (i == 0 ? "" : ",") << fCategoryTexts[i];
        }
    }
    out << " inputs=" << (fDictionary != nullptr ? fDictionary->Size() : 0)
        << " outputs=" << fOutput.Fields().size() << "\n";
    DisplayFamily(out);
}

}  // namespace QXVantry_920
