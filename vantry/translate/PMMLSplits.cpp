// One-variable predicates ("SimplePredicate", "SimpleSetPredicate") read into split variables whose one
// child, 0, says that the node applies, and the readers of PMML arrays.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/util/XMLStringTokenizer.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/translate/ArrayTokenizer.h"
#include "vantry/translate/CategoryRules.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreSplitVar.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The "operator" of a "SimplePredicate" and its "value", which may be absent (null).
struct PredicateTexts {
    XMLCh const* op = nullptr;
    XMLCh const* value = nullptr;
};

PredicateTexts ReadPredicate(VantryTranscoder* transcoder, DOMElement const* element, std::string& op,
                             std::string& value) {
    PredicateTexts texts;
    texts.op = BaseTranslator::GetAttributeForced(element, "operator");
    op = TranscodeText(transcoder, texts.op);
    try {
        texts.value = BaseTranslator::GetAttributeForced(element, "value");
        value = TranscodeText(transcoder, texts.value);
    } catch (VTException const&) {
        // A predicate without a value is allowed here; the operator decides what it means.
    }
    return texts;
}

void RefuseValueWithMissingTest(bool hasValue, std::string const& op) {
    if (hasValue && (op == "isMissing" || op == "isNotMissing")) {
        ThrowCodedError(260212, {"value", op});
    }
}

void RequireEqualForEmptyValue(std::string const& op) {
    if (op != "equal") {
        ThrowCodedError(260171, {"operator", "equal"});
    }
}

std::unique_ptr<ScoreValue> SplitValue(ScoreDictVar const* variable, std::string const& text) {
    if (variable->IsString()) {
        return std::make_unique<StringValue>(text);
    }
    return std::make_unique<NumericValue>(text);
}

int CountTokens(XMLCh const* text) {
    XMLStringTokenizer tokenizer(text != nullptr ? text : XMLUni::fgZeroLenString);
    return static_cast<int>(tokenizer.countTokens());
}

// The numbers of an "Array" or a basis row, each converted by `convert`.
template <class Number, class Convert>
std::vector<Number> ReadNumberArray(DOMElement* element, int size, Convert convert) {
    if (element == nullptr) {
        ThrowCodedError(260114, {"Array, x-BasisRow,X-BasisRow"});
    }
    bool check = false;
    int expected = 0;
    if (HasName(element, "x-BasisRow") || HasName(element, "X-BasisRow")) {
        expected = size;
        check = true;
    } else if (HasName(element, "Array")) {
        XMLCh const* n = BaseTranslator::GetAttribute(element, "n");
        if (!IsEmptyText(n)) {
            expected = BaseTranslator::VerifyInt(n);
            check = true;
        }
    } else {
        ThrowCodedError(260172, {NameOf(element), "Array"});
    }
    DOMNode* first = element->getFirstChild();
    if (first == nullptr) {
        ThrowCodedError(260283, {"Array"});
    }
    XMLCh const* content = first->getNodeValue();
    XMLStringTokenizer tokenizer(content != nullptr ? content : XMLUni::fgZeroLenString);
    int const count = static_cast<int>(tokenizer.countTokens());
    if (count == 0) {
        ThrowCodedError(260284, {"Value", "Array"});
    }
    if (check && count != expected) {
        ThrowCodedError(260241, {std::to_string(expected), "n", std::to_string(count)});
    }
    std::vector<Number> numbers;
    numbers.reserve(static_cast<std::size_t>(count));
    while (tokenizer.hasMoreTokens()) {
        numbers.push_back(convert(tokenizer.nextToken()));
    }
    return numbers;
}

}  // namespace

void PMMLTranslator::GetScaleSplitValue(XMLCh const* value, XMLCh const* op, double& lower, double& upper,
                                        bool& inclusive) {
    double const number = VerifyDouble(value);
    lower = -kInfinity;
    upper = kInfinity;
    std::string const name = TranscodeText(fTranscoder, op);
    if (name == "greaterThan" || name == "greaterOrEqual") {
        lower = number;
        inclusive = name == "greaterOrEqual";
    } else if (name == "lessThan" || name == "lessOrEqual") {
        upper = number;
        inclusive = name == "lessOrEqual";
    } else if (name == "equal" || name == "notEqual") {
        lower = number;
        upper = number;
        inclusive = name == "equal";
    } else {
        ThrowCodedError(260303, {name, "operator"});
    }
}

ScaleSplit* PMMLTranslator::HandleNodeScaleSplit(DOMNode* node, ScoreDictVar const* variable, std::string& op,
                                                 bool& isMissing, std::string& value) {
    auto split = std::make_unique<ScaleSplit>(variable);
    double lower = -kInfinity;
    double upper = kInfinity;
    double excluded = kInfinity;
    bool lowEnd = false;
    bool highEnd = false;
    bool simple = false;
    isMissing = false;

    DOMElement* element = AsElement(node);
    if (element != nullptr && HasName(element, "SimplePredicate")) {
        simple = true;
        PredicateTexts const texts = ReadPredicate(fTranscoder, element, op, value);
        bool const hasValue = texts.value != nullptr;
        RefuseValueWithMissingTest(hasValue, op);
        if (!hasValue && op == "isMissing") {
            split->SetMissvalMap(0);
            isMissing = true;
        } else if (!hasValue && op == "isNotMissing") {
            split->PutSplit(new Range(lower, upper, false, false), 0);
            return split.release();
        } else if (hasValue && IsEmptyText(texts.value)) {
            RequireEqualForEmptyValue(op);
            split->SetMissvalMap(0);
            isMissing = true;
        } else {
            // Without a value this fails in the number check.
            double low = 0.0;
            double high = 0.0;
            bool inclusive = false;
            GetScaleSplitValue(hasValue ? texts.value : XMLUni::fgZeroLenString, texts.op, low, high,
                               inclusive);
            if (low == high && !inclusive && !std::isinf(low) && !std::isinf(high)) {
                excluded = low;
            } else {
                if (low > lower) {
                    lower = low;
                    lowEnd = inclusive;
                }
                if (high < upper) {
                    upper = high;
                    highEnd = inclusive;
                }
            }
        }
    }

    if (lower > upper) {
        ThrowCodedError(260157, {NameOfVariable(variable)});
    }
    if (excluded == kInfinity) {
        if (std::isinf(lower) && std::isinf(upper) && simple) {
            return split.release();
        }
        split->PutSplit(new Range(lower, upper, lowEnd, highEnd), 0);
    } else {
        split->PutSplit(new Range(lower, excluded, lowEnd, false), 0);
        split->PutSplit(new Range(excluded, upper, false, highEnd), 0);
    }
    return split.release();
}

DiscreteSplit* PMMLTranslator::HandleNodeDiscreteSplit(DOMNode* node, ScoreDictVar const* variable,
                                                       std::string& op, bool& isMissing, std::string& value) {
    auto split = std::make_unique<DiscreteSplit>(variable);
    int low = 0;
    int high = variable->GetNumberOfCats() - 1;
    int skip = -1;
    bool expand = true;
    isMissing = false;

    DOMElement* element = AsElement(node);
    if (element != nullptr && HasName(element, "SimplePredicate")) {
        PredicateTexts const texts = ReadPredicate(fTranscoder, element, op, value);
        bool const hasValue = texts.value != nullptr;
        RefuseValueWithMissingTest(hasValue, op);
        auto markMissing = [&split, &isMissing] {
            split->SetMissvalMap(0);
            isMissing = true;
        };
        bool valueInHand = false;
        if (!hasValue && op == "isMissing") {
            markMissing();
            expand = false;
        } else if (!hasValue && op == "isNotMissing") {
            if (variable->GetValueLabels() != nullptr) {
                for (int i = 0; i <= high; ++i) {
                    EnterCategory(variable, split.get(), i);
                }
            }
            expand = false;
        } else if (hasValue && IsEmptyText(texts.value)) {
            RequireEqualForEmptyValue(op);
            if (!variable->IsString()) {
                // Missing; an ordinal variable still has all its categories entered below.
                markMissing();
            } else {
                std::vector<ScoreValueLabel*> const& labels = RequiredLabels(variable);
                valueInHand = std::any_of(labels.begin(), labels.end(), [](ScoreValueLabel const* label) {
                    return label != nullptr && label->GetValue() != nullptr &&
                           ScoreValue::TextOf(*label->GetValue()).empty();
                });
                if (!valueInHand) {
                    markMissing();
                    expand = false;
                }
            }
        } else {
            valueInHand = true;
        }

        if (valueInHand) {
            if (variable->GetMLevel() == ScoreDictVar::MEASURE_NOMINAL) {
                SetDiscreteSplitValue(variable, split.get(), texts.value, 0);
            } else {
                int first = 0;
                int last = 0;
                if (HandleOrdinalVariable(element, variable, first, last) == 2) {
                    skip = first;
                } else {
                    low = std::max(first, low);
                    high = std::min(last, high);
                }
            }
        }
    }

    // An ordinal comparison becomes the explicit list of the categories that satisfy it.
    if (variable->GetMLevel() != ScoreDictVar::MEASURE_ORDINAL || !expand) {
        return split.release();
    }
    RequiredLabels(variable);
    for (int i = low; i <= high; ++i) {
        if (i != skip) {
            EnterCategory(variable, split.get(), i);
        }
    }
    return split.release();
}

void PMMLTranslator::SetDiscreteSplitValue(ScoreDictVar const* variable, DiscreteSplit* split,
                                           XMLCh const* text, int child) {
    if (text == nullptr) {
        ThrowCodedError(260119, {"value"});
    }
    std::string const narrow = TranscodeText(fTranscoder, text);
    std::unique_ptr<ScoreValue> value = SplitValue(variable, narrow);
    RequiredLabels(variable);
    if (!variable->IsValidValue(value.get())) {
        bool learned = false;
        if (variable->IsEmptyCateValues()) {
            // A variable that declared no categories learns them from the predicates.
            std::unique_ptr<ScoreValue> category(CarefullyMakeVarValue(variable, text));
            if (!narrow.empty()) {
                LearnCategory(const_cast<ScoreDictVar*>(variable), std::move(category), narrow);
            }
            learned = variable->IsValidValue(value.get());
        }
        if (!learned) {
            ThrowCodedError(260291, {variable->GetName()});
        }
    }
    if (ScoreEncoder const* encoder = variable->GetEncoder()) {
        split->PutSplit(static_cast<double>(encoder->EncodeConst(value.get())), child);
    } else {
        split->PutSplit(value.release(), child);
    }
}

DiscreteSplit* PMMLTranslator::HandleArrayDiscreteSplit(DOMNode* node, ScoreDictVar const* variable,
                                                        std::string& op, std::vector<double>& numbers) {
    auto split = std::make_unique<DiscreteSplit>(variable);
    std::vector<std::string> list;
    XMLCh const* typeText = XMLUni::fgZeroLenString;
    DOMElement* element = AsElement(node);
    if (element != nullptr && HasName(element, "SimpleSetPredicate")) {
        op = TranscodeText(fTranscoder, GetAttributeForced(element, "booleanOperator"));
        DOMNode* array = GetArrayNode(node);
        typeText = GetAttribute(AsElement(array), "type");
        list = GetArrayElements(array, typeText, variable);
    }
    std::string const type = TranscodeText(fTranscoder, typeText);
    bool const string = variable->IsString();
    bool const typeFits =
        type == "string" || (string && type.empty()) || (!string && (type == "real" || type == "int"));
    if (!typeFits) {
        ThrowCodedError(260222, {type, "type"});
    }

    bool const numeric = IsNumericVariable(variable);
    if (variable->IsEmptyCateValues()) {
        // The array's elements are the categories of a variable that declared none.
        if (numeric && !list.empty()) {
            VerifyDouble(list.front());
        }
        auto* learner = const_cast<ScoreDictVar*>(variable);
        for (std::string const& text : list) {
            LearnCategory(learner, std::unique_ptr<ScoreValue>(variable->ToMyValue(text)), text);
        }
    }
    if (op != "isIn" && op != "isNotIn") {
        ThrowCodedError(260153, {op, "operator", variable->GetName()});
    }
    if (op == "isNotIn") {
        list = Remove(variable, list);
    }
    ScoreEncoder const* encoder = variable->GetEncoder();
    for (std::string const& text : list) {
        std::unique_ptr<ScoreValue> value = SplitValue(variable, text);
        if (!variable->IsValidValue(value.get())) {
            ThrowCodedError(260152, {text, "value"});
        }
        if (numeric) {
            numbers.push_back(value->GetDouble());
        }
        if (encoder != nullptr) {
            split->PutSplit(
                numeric ? value->GetDouble() : static_cast<double>(encoder->EncodeConst(value.get())), 0);
        } else {
            split->PutSplit(value.release(), 0);
        }
    }
    return split.release();
}

DOMNode* PMMLTranslator::GetArrayNode(DOMNode* node) {
    for (DOMNode* child = node != nullptr ? node->getFirstChild() : nullptr; child != nullptr;
         child = child->getNextSibling()) {
        if (HasName(child, "Array")) {
            return child;
        }
    }
    ThrowCodedError(260115, {"Array", "SimpleSetPredicate"});
}

std::vector<std::string> PMMLTranslator::GetArrayElements(DOMNode* array, XMLCh const* type,
                                                          ScoreDictVar const* variable) {
    // A category that is one backslash makes the backslash an ordinary character.
    bool literalBackslash = false;
    if (variable != nullptr && variable->GetEncoder() != nullptr) {
        auto* encoder = const_cast<ScoreEncoder*>(variable->GetEncoder());
        for (int code = 0; code < encoder->GetNumberOfCategories() && !literalBackslash; ++code) {
            literalBackslash = encoder->Decode(code) == "\\";
        }
    }
    int expected = 0;
    XMLCh const* n = GetAttribute(AsElement(array), "n");
    if (!IsEmptyText(n)) {
        expected = VerifyInt(n);
    }
    DOMNode* first = array != nullptr ? array->getFirstChild() : nullptr;
    if (first == nullptr) {
        ThrowCodedError(260115, {"Array", "SimpleSetPredicate"});
    }
    XMLCh const* content = first->getNodeValue();
    if (CountTokens(content) == 0) {
        ThrowCodedError(260284, {"Value", "Array"});
    }
    bool const real = IsEqual(fTranscoder, type, "real");
    bool const integer = IsEqual(fTranscoder, type, "int");
    std::vector<std::string> elements = TokenizeArrayText(
        TranscodeText(fTranscoder, content), literalBackslash, [real, integer](std::string const& token) {
            if (real) {
                VerifyDouble(token);
            } else if (integer) {
                VerifyInt(token);
            }
        });
    int const count = static_cast<int>(elements.size());
    if (expected != 0 && count != expected) {
        ThrowCodedError(260241, {std::to_string(expected), "n", std::to_string(count)});
    }
    return elements;
}

std::vector<std::string> PMMLTranslator::Remove(ScoreDictVar const* variable, std::vector<std::string> list) {
    for (std::string const& element : list) {
        if (!IsValidScoreValue(variable, element)) {
            ThrowCodedError(260158, {element, NameOfVariable(variable)});
        }
    }
    std::vector<std::string> entries;
    for (ScoreValueLabel const* label : RequiredLabels(variable)) {
        if (label != nullptr && label->GetValue() != nullptr) {
            entries.push_back(ScoreValue::TextOf(*label->GetValue()));
        }
    }
    // The complement: every category that the list does not name.
    for (std::string const& element : list) {
        auto const found = std::find(entries.begin(), entries.end(), element);
        if (found != entries.end()) {
            found->clear();
        }
    }
    entries.erase(
        std::remove_if(entries.begin(), entries.end(), [](std::string const& e) { return e.empty(); }),
        entries.end());
    return entries;
}

std::vector<std::string> PMMLTranslator::ParseStrArray(DOMElement* element) {
    if (element == nullptr) {
        return {};
    }
    return GetArrayElements(element, GetAttribute(element, "type"), nullptr);
}

std::vector<int> PMMLTranslator::VerifyIntArray(DOMElement* element, int size) {
    return ReadNumberArray<int>(element, size, [](XMLCh const* token) { return VerifyInt(token); });
}

std::vector<double> PMMLTranslator::VerifyDoubleArray(DOMElement* element, int size) {
    return ReadNumberArray<double>(element, size, [](XMLCh const* token) { return VerifyDouble(token); });
}

}  // namespace QXVantry_920
