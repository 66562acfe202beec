#include "vantry/transform/TransformVar.h"

#include <limits>
#include <ostream>

#include "vantry/transform/ApplyFrame.h"
#include "vantry/transform/ApplyPlan.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/MapValues.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreValue.h"

namespace QXVantry_920 {

namespace {

template <typename T>
T* CloneOrNull(T const* object) {
    return object != nullptr ? static_cast<T*>(object->Clone()) : nullptr;
}

std::deque<ScoreValue*> CloneHistory(std::deque<ScoreValue*> const& history) {
    std::deque<ScoreValue*> copy;
    for (ScoreValue const* value : history) {
        copy.push_back(CloneOrNull(value));
    }
    return copy;
}

void DeleteHistory(std::deque<ScoreValue*>& history) {
    for (ScoreValue* value : history) {
        delete value;
    }
    history.clear();
}

// A copied tree must find its fields afresh: the cached variables belong to the source's dictionaries.
void ForgetLeafCaches(FunctionTree* node) {
    if (node == nullptr) {
        return;
    }
    if (node->IsLeaf() && !node->GetNodeStats().IsConstNode()) {
        ApplyNodeStats stats = node->GetNodeStats();
        stats.SetVariable(nullptr);
        stats.SetVarIndex(-1);
        node->SetNodeStats(stats);
    }
    for (int i = 0; i < node->GetChildCount(); ++i) {
        ForgetLeafCaches(node->GetChildAt(i));
    }
}

// The setters take the new object over and free the one they replace, so that a reader that sets a value
// twice leaks nothing.
template <typename T>
void ReplaceOwned(T*& field, T* object) {
    if (field != object) {
        delete field;
    }
    field = object;
}

bool IsUnbounded(ScoreValue const* bound, double infinity) {
    return bound == nullptr || bound->GetDouble() == infinity;
}

}  // namespace

TransformVar::TransformVar(std::string const& name, VariableType type)
    : DictVar(name, type),
      fExpression(TransformationDictionary::TE_NONE),
      fOutlierTreatment(0),
      fRoot(nullptr),
      fResult(nullptr),
      fResultIsNumber(false),
      fNumericScratch(new NumericValue(NumericValue::GetSysmisValue())),
      fStringScratch(new StringValue()),
      fDateScratch(new DateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL)),
      fStringScratch2(new StringValue()),
      fDateScratch2(new DateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL)),
      fRecodeMissingValue(nullptr),
      fRecodeDefaultValue(nullptr),
      fRecodeSysmisValue(nullptr),
      fRecodeElseCopy(false),
      fRecodeMissingCopy(false),
      fRecodeIntervalCopy(nullptr),
      fSourceIndex(-1),
      fSourceVariable(nullptr),
      fMapValues(nullptr),
      fLagCount(1),
      fSourceDerived(nullptr),
      fSourceResolved(false),
      fAbsentRecord(nullptr),
      fAbsentRecordSize(-1),
      fHistoryHead(0),
      fDepth(0),
      fEvaluating(false) {}

TransformVar::TransformVar(TransformVar const& other)
    : DictVar(other),
      fFieldName(other.fFieldName),
      fExpression(other.fExpression),
      fIntervalTexts(other.fIntervalTexts),
      fBracketTexts(other.fBracketTexts),
      fSlopes(other.fSlopes),
      fIntercepts(other.fIntercepts),
      fOutlierTreatment(other.fOutlierTreatment),
      fNormOrigins(other.fNormOrigins),
      fNormTargets(other.fNormTargets),
      fConstString(other.fConstString),
      fRoot(nullptr),
      fResult(nullptr),
      fResultIsNumber(false),
      fNumericScratch(nullptr),
      fStringScratch(nullptr),
      fDateScratch(nullptr),
      fStringScratch2(nullptr),
      fDateScratch2(nullptr),
      fRecodeMissingValue(nullptr),
      fRecodeDefaultValue(nullptr),
      fRecodeSysmisValue(nullptr),
      fRecodeElseCopy(other.fRecodeElseCopy),
      fRecodeMissingCopy(other.fRecodeMissingCopy),
      fRecodeIntervalCopy(nullptr),
      fSourceIndex(-1),
      fSourceVariable(nullptr),
      fMapValues(nullptr),
      fLagCount(other.fLagCount),
      fBlockVariables(other.fBlockVariables),
      fSourceDerived(nullptr),
      fSourceResolved(false),
      fAbsentRecord(nullptr),
      fAbsentRecordSize(-1),
      fBlockNames(other.fBlockNames),
      fHistoryHead(other.fHistoryHead),
      fBlockHeads(other.fBlockHeads),
      fDepth(0),
      fEvaluating(false) {
    // Everything owned is built first into the fields, so that a failing allocation part way frees
    // what was made through the destructor's own path.
    try {
        fNumericScratch = new NumericValue(NumericValue::GetSysmisValue());
        fStringScratch = new StringValue();
        fDateScratch = new DateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL);
        fStringScratch2 = new StringValue();
        fDateScratch2 = new DateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL);
        for (auto const& [range, value] : other.fBins) {
            fBins.emplace_back(nullptr, nullptr);
            fBins.back().first = CloneOrNull(range);
            fBins.back().second = CloneOrNull(value);
        }
        for (auto const& [value, result] : other.fEncodingMap) {
            fEncodingMap.emplace_back(nullptr, nullptr);
            fEncodingMap.back().first = CloneOrNull(value);
            fEncodingMap.back().second = CloneOrNull(result);
        }
        fRoot = CloneOrNull(other.fRoot);
        ForgetLeafCaches(fRoot);
        fRecodeMissingValue = CloneOrNull(other.fRecodeMissingValue);
        fRecodeDefaultValue = CloneOrNull(other.fRecodeDefaultValue);
        fRecodeSysmisValue = CloneOrNull(other.fRecodeSysmisValue);
        fRecodeIntervalCopy = CloneOrNull(other.fRecodeIntervalCopy);
        if (other.fMapValues != nullptr) {
            fMapValues = other.fMapValues->Clone(this);
        }
        fHistory = CloneHistory(other.fHistory);
        for (auto const& history : other.fBlockHistories) {
            fBlockHistories.push_back(CloneHistory(history));
        }
    } catch (...) {
        FreeOwned();
        throw;
    }
}

TransformVar::~TransformVar() {
    FreeOwned();
}

void TransformVar::FreeOwned() {
    for (auto& [range, value] : fBins) {
        delete range;
        delete value;
    }
    fBins.clear();
    for (auto& [value, result] : fEncodingMap) {
        delete value;
        delete result;
    }
    fEncodingMap.clear();
    fPlan.reset();
    delete fRoot;
    delete fResult;
    delete fNumericScratch;
    delete fStringScratch;
    delete fDateScratch;
    delete fStringScratch2;
    delete fDateScratch2;
    delete fRecodeMissingValue;
    delete fRecodeDefaultValue;
    delete fRecodeSysmisValue;
    delete fRecodeIntervalCopy;
    delete fMapValues;
    fRoot = nullptr;
    fResult = nullptr;
    fResultIsNumber = false;
    fNumericScratch = nullptr;
    fStringScratch = nullptr;
    fDateScratch = nullptr;
    fStringScratch2 = nullptr;
    fDateScratch2 = nullptr;
    fRecodeMissingValue = nullptr;
    fRecodeDefaultValue = nullptr;
    fRecodeSysmisValue = nullptr;
    fRecodeIntervalCopy = nullptr;
    fMapValues = nullptr;
    DeleteHistory(fHistory);
    for (auto& history : fBlockHistories) {
        DeleteHistory(history);
    }
    fBlockHistories.clear();
}

ScoreDictVar* TransformVar::Clone() const {
    return new TransformVar(*this);
}

void TransformVar::Display(std::ostream& out) const {
    DictVar::Display(out);
    out << "Derived Var Expression = " << static_cast<int>(fExpression) << "; Source Field = " << fFieldName
        << "\n";
}

bool TransformVar::IsDerivedVariable() const {
    return true;
}

void TransformVar::AddFieldNameAndTransExpression(std::string const& fieldName, TransExpression expression) {
    fFieldName = fieldName;
    fExpression = expression;
    fSourceIndex = -1;
    fSourceVariable = nullptr;
    fSourceDerived = nullptr;
    fSourceResolved = false;
    fAbsentRecord = nullptr;
}

void TransformVar::SetConstString(std::string const& text) {
    fConstString = text;
}

std::string const& TransformVar::GetConstString() const {
    return fConstString;
}

std::string const& TransformVar::GetFieldName() const {
    return fFieldName;
}

TransformVar::TransExpression TransformVar::GetTransExpression() const {
    return fExpression;
}

void TransformVar::SetRoot(FunctionTree* root) {
    fPlan.reset();
    ReplaceOwned(fRoot, root);
}

FunctionTree const* TransformVar::GetRoot() const {
    return fRoot;
}

void TransformVar::SetLags(int count, std::vector<ScoreDictVar const*> blockVariables) {
    fLagCount = count;
    fBlockNames.clear();
    for (ScoreDictVar const* variable : blockVariables) {
        fBlockNames.push_back(variable != nullptr ? variable->GetName() : std::string());
    }
    fBlockVariables = std::move(blockVariables);
    fBlockIndexes.clear();
}

void TransformVar::SetMapValues(MapValues* mapValues) {
    if (mapValues != fMapValues) {
        delete fMapValues;
    }
    fMapValues = mapValues;
}

MapValues const* TransformVar::GetMapValues() const {
    return fMapValues;
}

void TransformVar::AddEncodingMap(ScoreValue* value, ScoreValue* result) {
    fEncodingMap.emplace_back(value, result);
}

void TransformVar::AddBinningValue(ScoreValueRange* range, ScoreValue* value, std::string const& fieldName) {
    fBins.emplace_back(range, value);
    if (range == nullptr || value == nullptr) {
        return;
    }
    double const infinity = std::numeric_limits<double>::infinity();
    ScoreValue const* min = range->GetMin();
    ScoreValue const* max = range->GetMax();
    bool const hasMin = !IsUnbounded(min, -infinity);
    bool const hasMax = !IsUnbounded(max, infinity);
    std::string const minText = hasMin ? ScoreValue::TextOf(*min) : std::string();
    std::string const maxText = hasMax ? ScoreValue::TextOf(*max) : std::string();
    bool const lowIn = range->GetLowEnd();
    bool const highIn = range->GetHighEnd();

    std::string interval;
    if (hasMin) {
        interval += minText + (lowIn ? "<=" : "<");
    }
    interval += fieldName;
    if (hasMax) {
        interval += (highIn ? "<=" : "<") + maxText;
    }

    std::string bracket;
    if (hasMin && hasMax) {
        bracket = (lowIn ? "[" : "(") + minText + "," + maxText + (highIn ? "]" : ")");
    } else if (hasMax) {
        bracket = (highIn ? "<=" : "<") + maxText;
    } else if (hasMin) {
        bracket = (lowIn ? ">=" : ">") + minText;
    }

    std::string const key = ScoreValue::TextOf(*value);
    fIntervalTexts[key] = interval;
    fBracketTexts[key] = bracket;
}

std::string TransformVar::GetOrigIntervalForBinningValue(std::string const& key, bool intervalText) const {
    auto const& texts = intervalText ? fIntervalTexts : fBracketTexts;
    auto found = texts.find(key);
    return found != texts.end() ? found->second : key;
}

void TransformVar::AddNormInfo(double slope, double intercept) {
    fSlopes.push_back(slope);
    fIntercepts.push_back(intercept);
}

void TransformVar::AddLinearNorm(double orig, double norm) {
    fNormOrigins.push_back(orig);
    fNormTargets.push_back(norm);
}

void TransformVar::SetOutlierTreatMent(int treatment) {
    fOutlierTreatment = treatment;
}

void TransformVar::SetRecodeMissValueTo(ScoreValue* value) {
    ReplaceOwned(fRecodeMissingValue, value);
}

void TransformVar::SetRecodeDefaultValue(ScoreValue* value) {
    ReplaceOwned(fRecodeDefaultValue, value);
}

void TransformVar::SetRecodeSysmisValue(ScoreValue* value) {
    ReplaceOwned(fRecodeSysmisValue, value);
}

void TransformVar::SetRecodeElseCopy(bool copy) {
    fRecodeElseCopy = copy;
}

void TransformVar::SetRecodeMissingCopy(bool copy) {
    fRecodeMissingCopy = copy;
}

void TransformVar::SetRecodeIntervalCopy(ScoreValueRange* range) {
    ReplaceOwned(fRecodeIntervalCopy, range);
}

ScoreValue const* TransformVar::GetRecodeMissValueRep() const {
    return fRecodeMissingValue;
}

ScoreValue const* TransformVar::GetRecodeDefaultValue() const {
    return fRecodeDefaultValue;
}

ScoreValue const* TransformVar::GetRecodeSysmisValueRep() const {
    return fRecodeSysmisValue;
}

bool TransformVar::IsRecodeElseCopy() const {
    return fRecodeElseCopy;
}

bool TransformVar::IsRecodeMissingCopy() const {
    return fRecodeMissingCopy;
}

std::vector<std::pair<ScoreValue*, ScoreValue*>> const& TransformVar::GetAllEncodedValues() const {
    return fEncodingMap;
}

}  // namespace QXVantry_920
