// The evaluation of an "Apply" function tree: a depth-first walk, one call per node, children in order.
// A node's numeric result lives in the variable's numeric scratch and a text result in its string
// scratch, so a parent reads each child's value before it evaluates the next child. What a node must
// keep across its children (numbers, compared values, texts) goes into the frame of its depth.
#include <cmath>
#include <exception>

#include "vantry/transform/ApplyFrame.h"
#include "vantry/transform/FieldAccess.h"
#include "vantry/transform/FunctionTree.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace QXVantry_920 {

namespace {

using TD = TransformationDictionary;

bool InRange(int fn, int low, int high) {
    return fn >= low && fn <= high;
}

bool IsStringFunction(int fn) {
    return InRange(fn, TD::TF_LOWERCASE, TD::TF_SUBSTRING);
}

bool IsDateFunction(int fn) {
    return InRange(fn, TD::TF_DATE_YEARS_DIFFERENCE, TD::TF_SECOND_FROM_TIME);
}

bool IsPairComparison(int fn) {
    return fn == TD::TF_EQUAL || fn == TD::TF_NOT_EQUAL;
}

bool IsSetTest(int fn) {
    return fn == TD::TF_IS_IN || fn == TD::TF_IS_NOT_IN;
}

// Functions that collect all their numbers before computing.
bool IsAccumulating(int fn) {
    return InRange(fn, TD::TF_MINUS, TD::TF_DIVIDE) || InRange(fn, TD::TF_PRODUCT, TD::TF_VARIANCE) ||
           fn == TD::TF_IDF_NORMAL || fn == TD::TF_PDF_NORMAL ||
           InRange(fn, TD::TF_LESS_THAN, TD::TF_GREATER_OR_EQUAL) || InRange(fn, TD::TF_AND, TD::TF_NOT) ||
           InRange(fn, TD::TF_NORMAL_CDF, TD::TF_STD_NORMAL_IDF);
}

bool IsCopyFunction(int fn) {
    return fn == TD::TF_VALUE || fn == TD::TF_RECAST_TO_ORDINAL || fn == TD::TF_RECAST_TO_SCALE;
}

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
    if (node->IsLeaf()) {
        return TraverseLeaf(node, record, dictionary, transformations);
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
    return TraverseInner(node, frame, record, dictionary, transformations);
}

ScoreValue const* TransformVar::TraverseLeaf(FunctionTree* node, ScoreCaseRecord const* record,
                                             ScoreDictionary const* dictionary,
                                             ScoreDictionary const* transformations) {
    FunctionTree const* parent = node->GetParent();
    int const parentFn = parent != nullptr ? parent->GetNodeStats().GetTransformFunction() : TD::TF_UNKNOWN;
    ApplyNodeStats const& cached = node->GetNodeStats();
    if (cached.IsConstNode()) {
        if (cached.GetValue() != nullptr) {
            return cached.GetValue();
        }
        fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
        return fNumericScratch;
    }
    if (cached.GetVariable() == nullptr) {
        ScoreDictVar const* variable = FindVariable(cached.GetParameterName(), dictionary, transformations);
        if (variable == nullptr || record == nullptr) {
            fNumericScratch->SetDoubleValue(NumericValue::GetSysmisValue());
            return fNumericScratch;
        }
        ApplyNodeStats resolved = cached;
        resolved.SetVariable(variable);
        resolved.SetVarIndex(record->GetIndex(cached.GetParameterName()));
        node->SetNodeStats(resolved);
    }
    ApplyNodeStats const& stats = node->GetNodeStats();
    ScoreDictVar const* variable = stats.GetVariable();
    VariableType const type = variable->GetVarType();
    int const index = stats.GetVarIndex();
    ScoreValue const* value = index >= 0 && record != nullptr ? record->Get(index) : nullptr;

    if (value != nullptr) {
        if (parentFn != TD::TF_VALUE && parentFn != TD::TF_SYSMIS && variable->IsMissingValue(value)) {
            ScoreValue const* mapped = stats.GetFieldrefRecodeMissValueRep();
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

ScoreValue const* TransformVar::TraverseInner(FunctionTree* node, ApplyFrame& frame,
                                              ScoreCaseRecord const* record,
                                              ScoreDictionary const* dictionary,
                                              ScoreDictionary const* transformations) {
    ApplyNodeStats const& stats = node->GetNodeStats();
    TransformFunction const fn = stats.GetTransformFunction();
    int const count = node->GetChildCount();
    bool const stringFn = IsStringFunction(fn);
    bool const dateFn = IsDateFunction(fn);
    bool const accumulating = IsAccumulating(fn);

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
        int unused = 0;
        FunctionTree* child = node->GetChildAt(i);
        ScoreValue const* v = Traverse(child, record, dictionary, transformations, unused);
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
        if (i == 0 && IsSetTest(fn)) {
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
        if (IsCopyFunction(fn)) {
            continue;
        }
        if (fn == TD::TF_MATCHES) {
            frame.texts.push_back(ScoreValue::TextOf(*v));
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
        } else if (IsPairComparison(fn) || IsSetTest(fn)) {
            frame.Keep(*v);
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
    if (IsCopyFunction(fn)) {
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
    if (IsPairComparison(fn)) {
        number = PairTest(fn, frame.kept, frame.keptCount);
    } else if (IsSetTest(fn)) {
        number = SetTest(fn, frame.kept, frame.keptCount, frame.hasTested ? frame.tested.get() : nullptr);
    } else if (fn == TD::TF_MATCHES) {
        number = TD::Matches(frame.texts);
    }
    if (stringFn) {
        fStringScratch->SetString(frame.text);
        fStringScratch->SetLength(length);
        return fStringScratch;
    }
    fNumericScratch->SetDoubleValue(number);
    HandleMissingAndInvalidOfApply(numbers, fn, fNumericScratch, stats,
                                   fNumericScratch->IsSystemMissingValue(), !IsValidValue(fNumericScratch));
    return fNumericScratch;
}

bool TransformVar::HandleMissingAndInvalidOfApply(std::vector<double> const& arguments,
                                                  TransformFunction /*fn*/, ScoreValue* result,
                                                  ApplyNodeStats const& stats, bool resultIsMissing,
                                                  bool resultIsInvalid) {
    if (result == nullptr) {
        return false;
    }
    bool argumentMissing = false;
    if (arguments.size() >= 2) {
        for (double argument : arguments) {
            if (std::fabs(argument - NumericValue::GetSysmisValue()) < 2.22045e-14) {
                argumentMissing = true;
                break;
            }
        }
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
