// The evaluation of an "Apply" function tree: a depth-first walk, one call per node, children in order.
// A node's numeric result lives in the variable's numeric scratch and a text result in its string
// scratch, so a parent reads each child's value before it evaluates the next child. What a node must
// keep across its children (numbers, compared values, texts) goes into the frame of its depth. The walk
// follows the tree's plan (ApplyPlan.h): functions of numbers alone pass plain doubles between them.
#include <cmath>
#include <exception>
#include <typeinfo>

#include "vantry/transform/ApplyFrame.h"
#include "vantry/transform/ApplyPlan.h"
#include "vantry/transform/FieldAccess.h"
#include "vantry/transform/FunctionSupport.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace QXVantry_920 {

namespace {

using TD = TransformationDictionary;

bool IsText(ScoreValue const* value) {
    return value != nullptr && ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE;
}

// The declared length of a value: a text's length field, the text size of anything else.
int LengthOf(ScoreValue const& value) {
    if (ScoreValue::TypeOf(value) == ScoreValue::STRING_VALUE) {
        return static_cast<StringValue const&>(value).GetLength();
    }
    return static_cast<int>(ScoreValue::TextOf(value).size());
}

// The compared values stay with the walk's frame, which reuses them; the exported forms of these tests
// delete their arguments, so the walk applies the same rules in place.
bool SameKindAndEqual(ScoreValue const& left, ScoreValue const& right) {
    return ScoreValue::TypeOf(left) == ScoreValue::TypeOf(right) && left == right;
}

using Kept = std::vector<std::unique_ptr<ScoreValue>>;

double PairTest(int fn, Kept const& kept, size_t count) {
    bool const equal = count == 2 && SameKindAndEqual(*kept[0], *kept[1]);
    if (fn == TD::TF_EQUAL) {
        return equal ? 1.0 : 0.0;
    }
    return equal ? 0.0 : 1.0;
}

// A null tested value is in no list.
double SetTest(int fn, Kept const& kept, size_t count, ScoreValue const* tested) {
    bool found = false;
    for (size_t i = 0; tested != nullptr && i < count && !found; ++i) {
        found = *tested == *kept[i];
    }
    if (fn == TD::TF_IS_IN) {
        return found ? 1.0 : 0.0;
    }
    return found ? 0.0 : 1.0;
}

// The case mapping members read nothing of their dictionary; one shared instance serves every walk.
TransformationDictionary& CaseMapper() {
    static TransformationDictionary mapper;
    return mapper;
}

}  // namespace

ScoreValue const* TransformVar::Traverse(FunctionTree* node, ScoreCaseRecord const* record,
                                         ScoreDictionary const* dictionary,
                                         ScoreDictionary const* transformations, int& /*unused*/) {
    if (node == nullptr) {
        fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
        return fNumericScratch;
    }
    if (!fPlan || fPlan->root != node) {
        fPlan = ApplyPlan::Build(node);
    }
    if (fPlan->nodes[0].kind == ApplyPlan::kNumeric) {
        fNumericScratch->SetDoubleValue(RootNumber(record, dictionary, transformations));
        return fNumericScratch;
    }
    fPlan->values = PlainValues(record);
    return TraverseAt(0, record, dictionary, transformations);
}

bool TransformVar::HasNumericRoot() const {
    return fRoot != nullptr && fPlan && fPlan->root == fRoot && fPlan->nodes[0].kind == ApplyPlan::kNumeric;
}

double TransformVar::RootNumber(ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                ScoreDictionary const* transformations) {
    fPlan->values = PlainValues(record);
    double const number = ComputeNumbers(0, record, dictionary, transformations);
    fNumericScratch->SetDoubleValue(number);
    return number;
}

std::vector<ScoreValue*> const* TransformVar::PlainValues(ScoreCaseRecord const* record) {
    return record != nullptr && typeid(*record) == typeid(CaseRecord)
               ? &static_cast<CaseRecord const*>(record)->CaseRecord::GetAllValues()
               : nullptr;
}

ScoreValue const* TransformVar::TraverseAt(int at, ScoreCaseRecord const* record,
                                           ScoreDictionary const* dictionary,
                                           ScoreDictionary const* transformations) {
    switch (fPlan->nodes[static_cast<size_t>(at)].kind) {
        case ApplyPlan::kNull:
            fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
            return fNumericScratch;
        case ApplyPlan::kConstant:
        case ApplyPlan::kField:
            return TraverseLeaf(at, record, dictionary, transformations);
        case ApplyPlan::kNumeric:
            fNumericScratch->SetDoubleValue(ComputeNumbers(at, record, dictionary, transformations));
            return fNumericScratch;
        case ApplyPlan::kGeneral:
            break;
    }
    if (fFrames.size() <= fDepth) {
        fFrames.push_back(std::make_unique<ApplyFrame>());
    }
    ApplyFrame& frame = *fFrames[fDepth];
    ++fDepth;
    struct DepthGuard {
        size_t& depth;
        ~DepthGuard() { --depth; }
    } guard{fDepth};
    return TraverseInner(at, frame, record, dictionary, transformations);
}

// A plain numeric field with a value in the record: its number, or the field's missing replacement for the
// system-missing number. False for any other field and when the record has no value there: the general
// leaf handles those.
inline bool TransformVar::ReadPlainNumber(int at, ScoreCaseRecord const* record, double& number) const {
    ApplyPlan::Node const& node = fPlan->nodes[static_cast<size_t>(at)];
    if (!node.plainNumber) {
        return false;
    }
    ScoreValue const* value = nullptr;
    if (std::vector<ScoreValue*> const* values = fPlan->values) {
        if (node.index >= 0 && static_cast<size_t>(node.index) < values->size()) {
            value = (*values)[static_cast<size_t>(node.index)];
        }
    } else if (node.index >= 0 && record != nullptr) {
        value = record->Get(node.index);
    }
    if (value == nullptr) {
        return false;
    }
    bool missing = false;
    if (typeid(*value) == typeid(NumericValue)) {
        number = static_cast<NumericValue const*>(value)->NumericValue::GetDouble();
        missing = detail::IsSysmis(number);
    } else {
        missing = value->IsSystemMissingValue();
        number = missing ? 0.0 : value->GetDouble();
    }
    if (missing) {
        number = node.mapped != nullptr ? node.mapped->GetDouble() : detail::kSysmis;
    }
    return true;
}

// The number of a field leaf as a numeric parent reads it.
inline double TransformVar::FieldNumber(int at, ScoreCaseRecord const* record,
                                        ScoreDictionary const* dictionary,
                                        ScoreDictionary const* transformations) {
    double number = 0.0;
    if (!ReadPlainNumber(at, record, number)) {
        number = TraverseAt(at, record, dictionary, transformations)->GetDouble();
    }
    return number;
}

// A numeric region: its program pushes the numbers of the leaves and of the other nodes below it, and
// each function replaces its children's numbers on the stack by its result.
double TransformVar::ComputeNumbers(int at, ScoreCaseRecord const* record, ScoreDictionary const* dictionary,
                                    ScoreDictionary const* transformations) {
    ApplyPlan::Node& region = fPlan->nodes[static_cast<size_t>(at)];
    double* top = region.stack.data();
    for (ApplyPlan::Step const& step : region.program) {
        switch (step.op) {
            case ApplyPlan::kPushConstant:
                *top++ = step.constant;
                break;
            case ApplyPlan::kPushField:
                *top++ = FieldNumber(step.at, record, dictionary, transformations);
                break;
            case ApplyPlan::kPushOther:
                *top++ = TraverseAt(step.at, record, dictionary, transformations)->GetDouble();
                break;
            case ApplyPlan::kPlusStack:
                --top;
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kPlus>(top[-1], top[0]);
                break;
            case ApplyPlan::kPlusConstant:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kPlus>(top[-1], step.constant);
                break;
            case ApplyPlan::kPlusField:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kPlus>(
                    top[-1], FieldNumber(step.at, record, dictionary, transformations));
                break;
            case ApplyPlan::kPlusFieldConstant:
                *top++ = ApplyPlan::Arithmetic<ApplyPlan::kPlus>(
                    FieldNumber(step.at, record, dictionary, transformations), step.constant);
                break;
            case ApplyPlan::kMinusStack:
                --top;
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kMinus>(top[-1], top[0]);
                break;
            case ApplyPlan::kMinusConstant:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kMinus>(top[-1], step.constant);
                break;
            case ApplyPlan::kMinusField:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kMinus>(
                    top[-1], FieldNumber(step.at, record, dictionary, transformations));
                break;
            case ApplyPlan::kMinusFieldConstant:
                *top++ = ApplyPlan::Arithmetic<ApplyPlan::kMinus>(
                    FieldNumber(step.at, record, dictionary, transformations), step.constant);
                break;
            case ApplyPlan::kMultiplyStack:
                --top;
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kMultiply>(top[-1], top[0]);
                break;
            case ApplyPlan::kMultiplyConstant:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kMultiply>(top[-1], step.constant);
                break;
            case ApplyPlan::kMultiplyField:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kMultiply>(
                    top[-1], FieldNumber(step.at, record, dictionary, transformations));
                break;
            case ApplyPlan::kMultiplyFieldConstant:
                *top++ = ApplyPlan::Arithmetic<ApplyPlan::kMultiply>(
                    FieldNumber(step.at, record, dictionary, transformations), step.constant);
                break;
            case ApplyPlan::kDivideStack:
                --top;
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kDivide>(top[-1], top[0]);
                break;
            case ApplyPlan::kDivideConstant:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kDivide>(top[-1], step.constant);
                break;
            case ApplyPlan::kDivideField:
                top[-1] = ApplyPlan::Arithmetic<ApplyPlan::kDivide>(
                    top[-1], FieldNumber(step.at, record, dictionary, transformations));
                break;
            case ApplyPlan::kDivideFieldConstant:
                *top++ = ApplyPlan::Arithmetic<ApplyPlan::kDivide>(
                    FieldNumber(step.at, record, dictionary, transformations), step.constant);
                break;
            case ApplyPlan::kApply: {
                int const count = fPlan->nodes[static_cast<size_t>(step.at)].count;
                top -= count;
                *top = ApplyNumbers(step.at, top);
                ++top;
                break;
            }
        }
    }
    return top[-1];
}

// A function of numbers alone, as the general walk computes it: the first number starts the result, a
// single child goes through the one-argument form, the accumulating functions see all numbers at the end
// and the others fold from the left. The four arithmetic operators on two numbers are written out.
double TransformVar::ApplyNumbers(int at, double const* arguments) {
    ApplyPlan::Node& node = fPlan->nodes[static_cast<size_t>(at)];
    TransformFunction const fn = node.fn;
    std::vector<double>& numbers = node.numbers;
    numbers.clear();
    double number = 0.0;
    if (node.binary != ApplyPlan::kNoOperator) {
        double const a = arguments[0];
        double const b = arguments[1];
        number = ApplyPlan::Arithmetic(node.binary, a, b);
        if (!node.asMissing && !(node.mapsMissing && detail::IsSysmis(number))) {
            return number;
        }
        // "+" folds and collects nothing; the others collect both numbers.
        if (node.binary != ApplyPlan::kPlus) {
            numbers.assign(arguments, arguments + 2);
        }
        return SettleNumber(number, numbers, fn, *node.stats);
    }
    bool const accumulating = (node.classes & ApplyPlan::kAccumulating) != 0;
    for (int i = 0; i < node.count; ++i) {
        double const x = arguments[i];
        if (i == 0) {
            number = node.count == 1 ? ApplyTransFunction(x, 0.0, fn) : x;
        }
        if (accumulating) {
            numbers.push_back(x);
        } else if (i > 0) {
            number = ApplyTransFunction(number, x, fn);
        }
    }
    if (accumulating) {
        number = ApplyAccumulateFunction(numbers, fn);
    }
    if (!node.asMissing && !(node.mapsMissing && detail::IsSysmis(number))) {
        return number;
    }
    return SettleNumber(number, numbers, fn, *node.stats);
}

// The missing and invalid rules change a result only when it is missing and the node maps missing values,
// or when the node treats invalid results as missing; validity is judged only then.
double TransformVar::SettleNumber(double number, std::vector<double> const& arguments,
                                  TransformFunction function, ApplyNodeStats const& stats) {
    bool const missing = detail::IsSysmis(number);
    bool const asMissing = stats.GetInvalidValueTreatmentMethod() == ApplyNodeStats::IVT_AS_MISSING;
    bool const mapsMissing = stats.GetRecodeMissValueRep() != nullptr || stats.GetDefaultValue() != nullptr;
    if (!asMissing && !(missing && mapsMissing)) {
        return number;
    }
    fNumericScratch->SetDoubleValue(number);
    HandleMissingAndInvalidOfApply(arguments, function, fNumericScratch, stats, missing,
                                   asMissing && !IsValidValue(fNumericScratch));
    return fNumericScratch->GetDouble();
}

ScoreValue const* TransformVar::TraverseLeaf(int at, ScoreCaseRecord const* record,
                                             ScoreDictionary const* dictionary,
                                             ScoreDictionary const* transformations) {
    ApplyPlan::Node& node = fPlan->nodes[static_cast<size_t>(at)];
    if (node.kind == ApplyPlan::kConstant) {
        ScoreValue const* constant = node.tree->GetNodeStats().GetValue();
        if (constant != nullptr) {
            return constant;
        }
        fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
        return fNumericScratch;
    }
    if (!node.resolved) {
        ApplyNodeStats const& cached = node.tree->GetNodeStats();
        if (cached.GetVariable() == nullptr) {
            ScoreDictVar const* variable =
                FindVariable(cached.GetParameterName(), dictionary, transformations);
            if (variable == nullptr || record == nullptr) {
                fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
                return fNumericScratch;
            }
            ApplyNodeStats resolved = cached;
            resolved.SetVariable(variable);
            resolved.SetVarIndex(record->GetIndex(cached.GetParameterName()));
            node.tree->SetNodeStats(resolved);
        }
        ApplyPlan::Resolve(node);
    }
    ScoreDictVar const* variable = node.variable;
    VariableType const type = variable->GetVarType();
    int const index = node.index;
    ScoreValue const* value = index >= 0 && record != nullptr ? record->Get(index) : nullptr;

    if (value != nullptr) {
        if (node.parentFn != TD::TF_VALUE && node.parentFn != TD::TF_SYSMIS &&
            (node.plainNumber ? value->IsSystemMissingValue() : variable->IsMissingValue(value))) {
            ScoreValue const* mapped = node.mapped;
            ScoreValue::ValueType const valueType = ScoreValue::TypeOf(*value);
            if (type == kNUMERIC_VAR) {
                fNumericScratch->SetDoubleValue(mapped != nullptr ? mapped->GetDouble()
                                                                  : NumericValue::GetSysmisValue());
                return fNumericScratch;
            }
            if (type == DATETIME_VAR && mapped != nullptr && valueType == ScoreValue::DATETIME_VALUE) {
                fDateScratch2->SetValue(mapped);
                return fDateScratch2;
            }
            if (type == STRING_VAR && mapped != nullptr && valueType == ScoreValue::STRING_VALUE) {
                fStringScratch2->SetLength(variable->GetWidth());
                fStringScratch2->SetString(ScoreValue::TextOf(*mapped));
                return fStringScratch2;
            }
        }
    } else if (variable->IsDerivedVariable()) {
        auto const* derived = dynamic_cast<TransformationDictionary const*>(transformations);
        if (derived != nullptr && derived->IsVarValueComputed(variable)) {
            // The variable's slot in the derived record is its value index.
            ScoreCaseRecord const* values =
                const_cast<TransformationDictionary*>(derived)->GetValuesForDerivedVars(nullptr, nullptr);
            value = values != nullptr ? values->Get(variable->GetValueIndex()) : nullptr;
        } else if (TransformVar* source = AsDerived(variable); source != nullptr && source != this) {
            value = source->GetTransformedValue(record, dictionary, transformations);
        }
    }
    if (value == nullptr) {
        if (type == kNUMERIC_VAR) {
            fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
            return fNumericScratch;
        }
        if (type == DATETIME_VAR) {
            fDateScratch->SetDateTimeValue(NumericValue::GetSysmisValue(), DateTimeValue::DATETIME_VAL);
            return fDateScratch;
        }
        fStringScratch->SetString(std::string());
        fStringScratch->SetLength(variable->GetWidth());
        return fStringScratch;
    }
    if (type == STRING_VAR && IsText(value)) {
        // The declared length of a field's text is its variable's width; the record's object carries it.
        const_cast<StringValue*>(static_cast<StringValue const*>(value))->SetLength(variable->GetWidth());
    }
    return value;
}

ScoreValue const* TransformVar::TraverseInner(int at, ApplyFrame& frame, ScoreCaseRecord const* record,
                                              ScoreDictionary const* dictionary,
                                              ScoreDictionary const* transformations) {
    ApplyPlan::Node const& node = fPlan->nodes[static_cast<size_t>(at)];
    ApplyNodeStats const& stats = *node.stats;
    TransformFunction const fn = node.fn;
    int const count = node.count;
    bool const stringFn = (node.classes & ApplyPlan::kString) != 0;
    bool const dateFn = (node.classes & ApplyPlan::kDate) != 0;
    bool const accumulating = (node.classes & ApplyPlan::kAccumulating) != 0;
    bool const pairTest = (node.classes & ApplyPlan::kPairTest) != 0;
    bool const setTest = (node.classes & ApplyPlan::kSetTest) != 0;
    bool const copy = (node.classes & ApplyPlan::kCopy) != 0;

    frame.Clear();
    double number = 0.0;
    int length = 0;
    int method = 0;
    int start = 0;
    int pieceLength = 0;
    bool condition = false;
    double imputeX = NumericValue::GetSysmisValue();
    ScoreValue const* last = nullptr;

    for (int i = 0; i < count; ++i) {
        int const childAt = fPlan->children[static_cast<size_t>(node.first + i)];
        FunctionTree const* child = fPlan->nodes[static_cast<size_t>(childAt)].tree;
        ScoreValue const* v = TraverseAt(childAt, record, dictionary, transformations);
        last = v;

        if (fn == TD::TF_IMPUTE_CAT_FIELD_MISSING) {
            if (i == 1) {
                imputeX = v->GetDouble();
            }
            continue;
        }
        if (i == 0 && (fn == TD::TF_IS_MISSING || fn == TD::TF_IS_NOT_MISSING) && child != nullptr &&
            child->GetNodeStats().GetVariable() != nullptr) {
            bool const missing = child->GetNodeStats().GetVariable()->IsMissingValue(v);
            fNumericScratch->SetDoubleValue((fn == TD::TF_IS_MISSING) == missing ? 1.0 : 0.0);
            return fNumericScratch;
        }
        if (fn == TD::TF_IF) {
            if (i == 0) {
                condition = NumericValue::IsEqual(v->GetDouble(), 1.0);
            } else if ((i == 1 && condition) || (i == 2 && !condition)) {
                if (IsText(v)) {
                    std::string const text = ScoreValue::TextOf(*v);
                    fStringScratch->SetString(text);
                    fStringScratch->SetLength(0);
                    return fStringScratch;
                }
                fNumericScratch->SetDoubleValue(v->GetDouble());
                return fNumericScratch;
            }
        }
        if (i == 0 && setTest) {
            ApplyFrame::Store(frame.tested, *v);
            frame.hasTested = true;
            continue;
        }
        if (stringFn) {
            auto const* text = IsText(v) ? static_cast<StringValue const*>(v) : nullptr;
            if (i == 0) {
                switch (fn) {
                    case TD::TF_LOWERCASE:
                    case TD::TF_LOWER:
                        frame.text += CaseMapper().ToLowerCase(text, length);
                        break;
                    case TD::TF_UPPERCASE:
                        frame.text += CaseMapper().ToUpperCase(text, length);
                        break;
                    case TD::TF_LTRIM:
                        frame.text += TD::Ltrim(text, length);
                        break;
                    case TD::TF_RTRIM:
                        frame.text += TD::Rtrim(text, length);
                        break;
                    case TD::TF_SUBSTR:
                    case TD::TF_SUBSTRING:
                        frame.hasSubject = text != nullptr;
                        if (text != nullptr) {
                            frame.subject = *text;
                        }
                        break;
                    default:
                        break;
                }
            } else if (fn == TD::TF_SUBSTR) {
                frame.text += TD::Substring(frame.hasSubject ? &frame.subject : nullptr,
                                            static_cast<int>(v->GetDouble()), length);
            } else if (fn == TD::TF_SUBSTRING) {
                (i == 1 ? start : pieceLength) = static_cast<int>(v->GetDouble());
            }
            if (fn == TD::TF_CONCAT || fn == TD::TF_REPLACE) {
                frame.texts.push_back(ScoreValue::TextOf(*v));
                frame.widths.push_back(LengthOf(*v));
            }
            continue;
        }
        if (fn == TD::TF_LENGTH) {
            if (i == 0) {
                number = static_cast<double>(LengthOf(*v));
            }
            continue;
        }
        if (fn == TD::TF_SYSMIS) {
            if (i == 0) {
                number = v->IsSystemMissingValue() ? 1.0 : 0.0;
            }
            continue;
        }
        if (copy) {
            continue;
        }
        if (fn == TD::TF_MATCHES) {
            frame.texts.push_back(ScoreValue::TextOf(*v));
            continue;
        }

        if (pairTest || setTest) {
            // The compared values decide; their numbers are not read.
            frame.Keep(*v);
            continue;
        }
        double const x = v->GetDouble();
        if (i == 0) {
            number = x;
            if (dateFn) {
                frame.hasDate = ScoreValue::TypeOf(*v) == ScoreValue::DATETIME_VALUE;
                if (frame.hasDate) {
                    frame.date.SetValue(v);
                }
            }
            if (count == 1) {
                number = dateFn ? ApplyDateTimeFunction(frame.hasDate ? &frame.date : nullptr, 0.0, fn)
                                : ApplyTransFunction(x, 0.0, fn);
            }
        }
        if (accumulating || fn == TD::TF_OUTLIER_HANDLE) {
            if (fn == TD::TF_OUTLIER_HANDLE && i == 1) {
                method = v->GetInt();
            } else {
                frame.numbers.push_back(x);
            }
        } else if (i > 0) {
            number = dateFn ? ApplyDateTimeFunction(frame.hasDate ? &frame.date : nullptr, x, fn)
                            : ApplyTransFunction(number, x, fn);
        }
    }

    std::vector<double> const& numbers = frame.numbers;
    if (fn == TD::TF_OUTLIER_HANDLE) {
        number = numbers.size() == 5
                     ? TD::OutlierHandle(numbers[0], method, numbers[1], numbers[2], numbers[3], numbers[4])
                     : NumericValue::GetSysmisValue();
    } else if (accumulating) {
        number = ApplyAccumulateFunction(numbers, fn);
    }
    if (fn == TD::TF_SUBSTRING || fn == TD::TF_CONCAT || fn == TD::TF_REPLACE) {
        std::string text;
        if (fn == TD::TF_SUBSTRING) {
            text = TD::Substring_unicode(frame.hasSubject ? &frame.subject : nullptr, start, pieceLength,
                                         length);
        } else if (fn == TD::TF_CONCAT) {
            text = TD::Concat(frame.texts, frame.widths, length);
        } else {
            text = TD::Replace(frame.texts, length);
        }
        fStringScratch->SetString(text);
        fStringScratch->SetLength(length);
        return fStringScratch;
    }
    if (copy) {
        if (last == nullptr) {
            fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
            return fNumericScratch;
        }
        if (ScoreValue::TypeOf(*last) == ScoreValue::NUMERIC_VALUE) {
            fNumericScratch->SetDoubleValue(last->GetDouble());
            return fNumericScratch;
        }
        int const lastLength = LengthOf(*last);
        std::string const text = ScoreValue::TextOf(*last);
        fStringScratch->SetString(text);
        fStringScratch->SetLength(lastLength);
        return fStringScratch;
    }
    if (fn == TD::TF_IMPUTE_CAT_FIELD_MISSING) {
        ScoreValue const* chosen = nullptr;
        // A label list shorter than the chosen category is a broken document: the value stays missing.
        try {
            static std::vector<ScoreValueLabel*> const noLabels;
            ScoreValueLabelSet const* labels = GetValueLabels();
            chosen = TD::ImputeCatFieldMissingAgainstConTargetHandle(
                imputeX, labels != nullptr ? labels->GetAllValueLabels() : noLabels, stats.GetArray(0),
                stats.GetArray(1));
        } catch (std::exception const&) {
            chosen = nullptr;
        }
        if (chosen != nullptr) {
            return chosen;
        }
        fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
        return fNumericScratch;
    }
    if (pairTest) {
        number = PairTest(fn, frame.kept, frame.keptCount);
    } else if (setTest) {
        number = SetTest(fn, frame.kept, frame.keptCount, frame.hasTested ? frame.tested.get() : nullptr);
    } else if (fn == TD::TF_MATCHES) {
        number = TD::Matches(frame.texts);
    }
    if (stringFn) {
        fStringScratch->SetString(frame.text);
        fStringScratch->SetLength(length);
        return fStringScratch;
    }
    fNumericScratch->SetDoubleValue(SettleNumber(number, numbers, fn, stats));
    return fNumericScratch;
}

bool TransformVar::HandleMissingAndInvalidOfApply(std::vector<double> const& arguments,
                                                  TransformFunction /*fn*/, ScoreValue* result,
                                                  ApplyNodeStats const& stats, bool resultIsMissing,
                                                  bool resultIsInvalid) {
    if (result == nullptr) {
        return false;
    }
    // Arguments are looked at only for a missing result, and only when there are two or more.
    bool argumentMissing = false;
    for (size_t i = 0; resultIsMissing && arguments.size() >= 2 && !argumentMissing && i < arguments.size();
         ++i) {
        argumentMissing = std::fabs(arguments[i] - NumericValue::GetSysmisValue()) < 2.22045e-14;
    }
    if (resultIsMissing && argumentMissing) {
        ScoreValue const* mapped = stats.GetRecodeMissValueRep();
        if (mapped != nullptr && !mapped->IsSystemMissingValue()) {
            result->SetValue(mapped);
            return true;
        }
        if (stats.GetDefaultValue() != nullptr) {
            result->SetValue(stats.GetDefaultValue());
            return true;
        }
    }
    if (!resultIsInvalid) {
        return true;
    }
    if (stats.GetInvalidValueTreatmentMethod() != ApplyNodeStats::IVT_AS_MISSING) {
        return false;
    }
    if (stats.GetDefaultValue() != nullptr) {
        result->SetValue(stats.GetDefaultValue());
    } else if (ScoreValue::TypeOf(*result) == ScoreValue::STRING_VALUE) {
        auto* text = static_cast<StringValue*>(result);
        text->SetString(std::string());
        text->SetLength(0);
    } else {
        static_cast<NumericValue*>(result)->SetDoubleValue(NumericValue::GetSysmisValue());
    }
    return true;
}

}  // namespace QXVantry_920
