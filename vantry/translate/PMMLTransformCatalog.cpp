// The vocabulary of "Apply" elements: the function texts, their names in messages, the classes of
// functions, and the checks that a parsed "Apply" passes before it is accepted.
//
// The classes are range tests on the fixed function numbers. greaterOrEqual (47) and substring (62) fall
// outside every class they might be expected in: usable at the top of a tree, refused nested as a child.
#include <string>
#include <utility>
#include <vector>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/transform/TransformVar.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/translate/TransformReading.h"
#include "vantry/values/ScoreDictionary.h"

namespace QXVantry_920 {

using TD = TransformationDictionary;

namespace {

// Every document text of a function; 7 and 60 have two each.
std::pair<char const*, TD::TransformFunction> const kFunctionTexts[] = {
    {"+", TD::TF_PLUS},
    {"-", TD::TF_MINUS},
    {"*", TD::TF_MULTIPLY},
    {"/", TD::TF_DIVIDE},
    {"pow", TD::TF_POW},
    {"abs", TD::TF_ABS},
    {"exp", TD::TF_EXP},
    {"log10", TD::TF_LOG10},
    {"lg10", TD::TF_LOG10},
    {"ln", TD::TF_LN},
    {"mod", TD::TF_MOD},
    {"round", TD::TF_ROUND},
    {"sqrt", TD::TF_SQRT},
    {"trunc", TD::TF_TRUNC},
    {"floor", TD::TF_FLOOR},
    {"ceil", TD::TF_CEIL},
    {"product", TD::TF_PRODUCT},
    {"min", TD::TF_MIN},
    {"max", TD::TF_MAX},
    {"mean", TD::TF_MEAN},
    {"avg", TD::TF_AVG},
    {"median", TD::TF_MEDIAN},
    {"sum", TD::TF_SUM},
    {"sd", TD::TF_SD},
    {"variance", TD::TF_VARIANCE},
    {"cdf.normal", TD::TF_CDF_NORMAL},
    {"cdfnorm", TD::TF_CDFNORM},
    {"idf.normal", TD::TF_IDF_NORMAL},
    {"pdf.normal", TD::TF_PDF_NORMAL},
    {"date_years_difference", TD::TF_DATE_YEARS_DIFFERENCE},
    {"date_months_difference", TD::TF_DATE_MONTHS_DIFFERENCE},
    {"date_days_difference", TD::TF_DATE_DAYS_DIFFERENCE},
    {"year-from-date", TD::TF_YEAR_FROM_DATE},
    {"month-from-date", TD::TF_MONTH_FROM_DATE},
    {"day-from-date", TD::TF_DAY_FROM_DATE},
    {"time_hours_difference", TD::TF_TIME_HOURS_DIFFERENCE},
    {"time_minutes_difference", TD::TF_TIME_MINUTES_DIFFERENCE},
    {"time_seconds_difference", TD::TF_TIME_SECONDS_DIFFERENCE},
    {"hour-from-time", TD::TF_HOUR_FROM_TIME},
    {"minute-from-time", TD::TF_MINUTE_FROM_TIME},
    {"second-from-time", TD::TF_SECOND_FROM_TIME},
    {"isMissing", TD::TF_IS_MISSING},
    {"isNotMissing", TD::TF_IS_NOT_MISSING},
    {"equal", TD::TF_EQUAL},
    {"notEqual", TD::TF_NOT_EQUAL},
    {"lessThan", TD::TF_LESS_THAN},
    {"lessOrEqual", TD::TF_LESS_OR_EQUAL},
    {"greaterThan", TD::TF_GREATER_THAN},
    {"greaterOrEqual", TD::TF_GREATER_OR_EQUAL},
    {"isIn", TD::TF_IS_IN},
    {"isNotIn", TD::TF_IS_NOT_IN},
    {"and", TD::TF_AND},
    {"or", TD::TF_OR},
    {"not", TD::TF_NOT},
    {"matches", TD::TF_MATCHES},
    {"lowercase", TD::TF_LOWERCASE},
    {"uppercase", TD::TF_UPPERCASE},
    {"lower", TD::TF_LOWER},
    {"concat", TD::TF_CONCAT},
    {"replace", TD::TF_REPLACE},
    {"ltrim", TD::TF_LTRIM},
    {"rtrim", TD::TF_RTRIM},
    {"trimend", TD::TF_RTRIM},
    {"substr", TD::TF_SUBSTR},
    {"substring", TD::TF_SUBSTRING},
    {"length", TD::TF_LENGTH},
    {"if", TD::TF_IF},
    {"value", TD::TF_VALUE},
    {"threshold", TD::TF_THRESHOLD},
    {"sysmis", TD::TF_SYSMIS},
    {"recast_to_ordinal", TD::TF_RECAST_TO_ORDINAL},
    {"recast_to_scale", TD::TF_RECAST_TO_SCALE},
    {"outlierHandle", TD::TF_OUTLIER_HANDLE},
    {"imputeCatFieldMissingAgainstConTarget", TD::TF_IMPUTE_CAT_FIELD_MISSING},
    {"normalCDF", TD::TF_NORMAL_CDF},
    {"normalPDF", TD::TF_NORMAL_PDF},
    {"stdNormalCDF", TD::TF_STD_NORMAL_CDF},
    {"stdNormalPDF", TD::TF_STD_NORMAL_PDF},
    {"erf", TD::TF_ERF},
    {"normalIDF", TD::TF_NORMAL_IDF},
    {"stdNormalIDF", TD::TF_STD_NORMAL_IDF},
};

bool In(int value, int low, int high) {
    return value >= low && value <= high;
}

// Logic functions: 40 to 53 without greaterOrEqual.
bool IsLogicRange(int f) {
    return In(f, 40, 46) || In(f, 48, 53);
}

bool IsMixFunction(int f) {
    return f == TD::TF_IF || f == TD::TF_VALUE;
}

// The rule of one child in VerifyApplyFunction.
enum class ChildRule { kNone, kNumeric, kString, kStringThenNumeric };

// How many children a function takes (-1: any number) and how each is checked.
struct Arity {
    int count;
    ChildRule rule;
};

Arity ArityOf(int f) {
    if (In(f, 0, 4) || f == TD::TF_MOD) {
        return {2, ChildRule::kNumeric};
    }
    switch (f) {
        case TD::TF_MATCHES:
            return {2, ChildRule::kString};
        case TD::TF_SUBSTR:
            return {2, ChildRule::kStringThenNumeric};
        case TD::TF_ABS:
        case TD::TF_EXP:
        case TD::TF_LOG10:
        case TD::TF_LN:
        case TD::TF_ROUND:
        case TD::TF_SQRT:
        case TD::TF_TRUNC:
        case TD::TF_CDFNORM:
        case TD::TF_STD_NORMAL_CDF:
        case TD::TF_STD_NORMAL_PDF:
        case TD::TF_ERF:
        case TD::TF_STD_NORMAL_IDF:
            return {1, ChildRule::kNumeric};
        case TD::TF_LOWERCASE:
        case TD::TF_UPPERCASE:
        case TD::TF_LOWER:
        case TD::TF_LTRIM:
        case TD::TF_RTRIM:
        case TD::TF_LENGTH:
            return {1, ChildRule::kString};
        case TD::TF_CDF_NORMAL:
        case TD::TF_IDF_NORMAL:
        case TD::TF_PDF_NORMAL:
        case TD::TF_NORMAL_CDF:
        case TD::TF_NORMAL_PDF:
        case TD::TF_NORMAL_IDF:
            return {3, ChildRule::kNumeric};
        case TD::TF_DATE_YEARS_DIFFERENCE:
        case TD::TF_DATE_MONTHS_DIFFERENCE:
        case TD::TF_DATE_DAYS_DIFFERENCE:
        case TD::TF_TIME_HOURS_DIFFERENCE:
        case TD::TF_TIME_MINUTES_DIFFERENCE:
        case TD::TF_TIME_SECONDS_DIFFERENCE:
            return {2, ChildRule::kNone};
        case TD::TF_YEAR_FROM_DATE:
        case TD::TF_MONTH_FROM_DATE:
        case TD::TF_DAY_FROM_DATE:
        case TD::TF_HOUR_FROM_TIME:
        case TD::TF_MINUTE_FROM_TIME:
        case TD::TF_SECOND_FROM_TIME:
            return {1, ChildRule::kNone};
        case TD::TF_CONCAT:
            return {-1, ChildRule::kString};
        case TD::TF_REPLACE:
            return {3, ChildRule::kString};
        case TD::TF_SUBSTRING:
            return {3, ChildRule::kStringThenNumeric};
        case TD::TF_OUTLIER_HANDLE:
            return {6, ChildRule::kNone};
        default:
            break;
    }
    if (In(f, 15, 23)) {
        return {-1, ChildRule::kNumeric};
    }
    return {-1, ChildRule::kNone};
}

}  // namespace

void PMMLTranslator::InitFunctionMap() {
    fFunctionMap.clear();
    for (auto const& entry : kFunctionTexts) {
        fFunctionMap.emplace(entry.first, entry.second);
    }
}

PMMLTranslator::TransformFunction PMMLTranslator::GetTransFunction(std::string const& text) {
    // A plug-in may read an "Apply" of its own before any transformation dictionary filled the map.
    if (fFunctionMap.empty()) {
        InitFunctionMap();
    }
    auto const found = fFunctionMap.find(text);
    return found != fFunctionMap.end() ? found->second : TD::TF_UNKNOWN;
}

std::string PMMLTranslator::ToString(TransformFunction function) {
    int const f = function;
    // Some functions have no name here, and messages then show "<not defined>".
    if (f < 0 || f == TD::TF_MEDIAN || f == TD::TF_SUM || f == TD::TF_MONTH_FROM_DATE ||
        f == TD::TF_DAY_FROM_DATE || f >= TD::TF_NORMAL_CDF) {
        return "<not defined>";
    }
    // The first text of each function is its name: "log10" before "lg10", "rtrim" before "trimend".
    for (auto const& entry : kFunctionTexts) {
        if (entry.second == function) {
            return entry.first;
        }
    }
    return "<not defined>";
}

bool PMMLTranslator::IsArithmeticFunction(TransformFunction function) {
    return In(function, 0, 3);
}

bool PMMLTranslator::IsMathematicsFunction(TransformFunction function) {
    return In(function, 4, 15) || function == TD::TF_THRESHOLD || function == TD::TF_SYSMIS;
}

bool PMMLTranslator::IsStatisticFunction(TransformFunction function) {
    return In(function, 16, 27) || In(function, 72, 78);
}

bool PMMLTranslator::IsDateTimeFunction(TransformFunction function) {
    return In(function, 28, 39);
}

bool PMMLTranslator::IsLogicFunction(TransformFunction function) {
    return IsLogicRange(function);
}

bool PMMLTranslator::IsStringFunction(TransformFunction function) {
    return In(function, 54, 61);
}

bool PMMLTranslator::IsNumericFunction(TransformFunction function) {
    return In(function, 0, 39) || function == TD::TF_THRESHOLD || function == TD::TF_SYSMIS ||
           In(function, 70, 78);
}

bool PMMLTranslator::IsInputNumericFunction(TransformFunction function) {
    return IsNumericFunction(function);
}

bool PMMLTranslator::IsInputStringFunction(TransformFunction function) {
    return In(function, 54, 61) || function == TD::TF_LENGTH;
}

bool PMMLTranslator::IsMixInputFunction(TransformFunction function) {
    return IsLogicRange(function) || function == TD::TF_IF || function == TD::TF_VALUE ||
           function == TD::TF_RECAST_TO_ORDINAL || function == TD::TF_RECAST_TO_SCALE;
}

bool PMMLTranslator::IsOutputNumericFunction(TransformFunction function) {
    return In(function, 0, 46) || In(function, 48, 53) || function == TD::TF_LENGTH ||
           function == TD::TF_THRESHOLD || function == TD::TF_SYSMIS || In(function, 70, 78);
}

bool PMMLTranslator::IsOutputStringFunction(TransformFunction function) {
    return In(function, 54, 61);
}

bool PMMLTranslator::IsMixOutputFunction(TransformFunction function) {
    return IsMixFunction(function);
}

void PMMLTranslator::VerifyOneElem(TransformFunction function, bool numeric, bool constant,
                                   std::string const& name, ScoreDictionary const* dictionary,
                                   ScoreDictionary const* transformations) {
    bool elementNumeric = false;
    if (constant) {
        // "Constant_D_", "Constant_S_" or "Constant_T_": only a plain number is numeric, not a date.
        elementNumeric = name.size() > 9 && name[9] == 'D';
    } else {
        ScoreDictVar const* variable = FindVariable(name, dictionary, transformations);
        if (variable == nullptr) {
            // An unknown field was refused when it was read; here it passes only where a number is wanted.
            if (numeric) {
                return;
            }
            ThrowCodedError(260245, {ToString(function), name});
        } else {
            elementNumeric = variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR;
        }
    }
    if (elementNumeric != numeric) {
        ThrowCodedError(260245, {ToString(function), name});
    }
}

void PMMLTranslator::VerifyApplyFunction(std::vector<std::string> const& names, std::vector<int> const& kinds,
                                         ScoreDictionary const* dictionary,
                                         ScoreDictionary const* transformations, TransformFunction function,
                                         std::vector<TransformFunction> childFunctions,
                                         TransformVar const* variable) {
    std::size_t const count = names.size();
    auto const requireCount = [count](std::size_t wanted) {
        if (count != wanted) {
            ThrowCodedError(260173, {std::to_string(wanted)});
        }
    };
    auto const kindOf = [&kinds](std::size_t i) { return i < kinds.size() ? kinds[i] : 1; };
    auto const childFunctionOf = [&childFunctions](std::size_t i) {
        return i < childFunctions.size() ? childFunctions[i] : TD::TF_UNKNOWN;
    };

    // The field-only functions: value, sysmis and the two recasts.
    if (function == TD::TF_VALUE || function == TD::TF_SYSMIS || function == TD::TF_RECAST_TO_ORDINAL ||
        function == TD::TF_RECAST_TO_SCALE) {
        requireCount(1);
        if (kindOf(0) != 1) {
            ThrowCodedError(260174, {"FieldRef", "Apply"});
        }
        ScoreDictVar const* field = FindVariable(names[0], dictionary, transformations);
        if (field != nullptr) {
            if (function == TD::TF_SYSMIS) {
                if (field->GetVarType() != ScoreDictVar::kNUMERIC_VAR) {
                    ThrowCodedError(260245, {"sysmis", field->GetName()});
                }
            } else if (variable != nullptr && field->GetVarType() != variable->GetVarType()) {
                ThrowCodedError(260215, {variable->GetName(), field->GetName()});
            }
        }
        if (function == TD::TF_SYSMIS) {
            VerifyOneElem(function, true, false, names[0], dictionary, transformations);
        }
        return;
    }

    Arity const arity = ArityOf(function);
    if (arity.count >= 0) {
        requireCount(static_cast<std::size_t>(arity.count));
    }
    if (arity.rule == ChildRule::kNone) {
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        int const kind = kindOf(i);
        if (kind == 0) {
            VerifyParentAndChildFunction(function, childFunctionOf(i));
            continue;
        }
        bool const numeric =
            arity.rule == ChildRule::kNumeric || (arity.rule == ChildRule::kStringThenNumeric && i > 0);
        VerifyOneElem(function, numeric, kind == 2, names[i], dictionary, transformations);
    }
}

void PMMLTranslator::VerifyParentAndChildFunction(TransformFunction parent, TransformFunction child) {
    int const p = parent;
    bool accepted = false;
    if (In(p, 0, 39) || p == TD::TF_THRESHOLD || p == TD::TF_SYSMIS || In(p, 70, 78)) {
        accepted = IsMixFunction(child) || IsOutputNumericFunction(child);
    } else if (In(p, 54, 61) || p == TD::TF_LENGTH) {
        accepted = IsMixFunction(child) || In(child, 54, 61);
    }
    if (!accepted) {
        ThrowCodedError(260243, {ToString(parent), ToString(child)});
    }
}

}  // namespace QXVantry_920
