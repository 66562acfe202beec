// The PMML predicates "SimplePredicate", "SimpleSetPredicate" and "CompoundPredicate", with the constant
// children "True" and "False", read into predicates over split variables.
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/translate/DocumentSupport.h"
#include "vantry/translate/PMMLTranslator.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreSplitVar.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// The variable named by the element's "field", from the data dictionary or else the derived fields.
ScoreDictVar const* FieldVariable(VantryTranscoder* transcoder, DOMNode* node,
                                  ScoreDictionary const* dictionary,
                                  ScoreDictionary const* secondDictionary) {
    std::string const field =
        TranscodeText(transcoder, BaseTranslator::GetAttributeForced(AsElement(node), "field"));
    ScoreDictVar const* variable = dictionary != nullptr ? dictionary->GetVar(field) : nullptr;
    if (variable == nullptr && secondDictionary != nullptr) {
        variable = secondDictionary->GetVar(field);
    }
    if (variable == nullptr) {
        ThrowCodedError(260125, {field, "DataDictionary", "TransformationDictionary"});
    }
    return variable;
}

bool ParseBoolOperator(std::string const& text, ScorePredicate::CompoundBoolOperator& op) {
    static std::pair<char const*, ScorePredicate::CompoundBoolOperator> const operators[] = {
        {"and", ScorePredicate::BOOL_AND},
        {"or", ScorePredicate::BOOL_OR},
        {"xor", ScorePredicate::BOOL_XOR},
        {"surrogate", ScorePredicate::BOOL_SURROGATE},
    };
    for (auto const& [name, value] : operators) {
        if (text == name) {
            op = value;
            return true;
        }
    }
    return false;
}

}  // namespace

SimplePredicate* PMMLTranslator::ParsePredicate(DOMNode* node, ScoreDictionary const* dictionary,
                                                ScoreDictionary const* secondDictionary, bool scaleOrdinal) {
    ScoreDictVar const* variable = FieldVariable(fTranscoder, node, dictionary, secondDictionary);
    ScoreDictVar::MeasureLevel const level = variable->GetMLevel();
    bool const categories =
        level == ScoreDictVar::MEASURE_NOMINAL ||
        (level == ScoreDictVar::MEASURE_ORDINAL &&
         (variable->IsString() || (variable->GetVarType() == ScoreDictVar::kNUMERIC_VAR && !scaleOrdinal)));
    std::string op;
    std::string value;
    bool isMissing = false;
    std::unique_ptr<ScoreSplitVar> split;
    if (categories) {
        split.reset(HandleNodeDiscreteSplit(node, variable, op, isMissing, value));
    } else {
        split.reset(HandleNodeScaleSplit(node, variable, op, isMissing, value));
    }
    auto predicate = std::make_unique<SimplePredicate>(split.get());
    split.release();  // now the predicate's
    predicate->SetPredicateValue(value);
    predicate->SetValueToMissing(isMissing);
    predicate->SetPredicateOperator(op);
    return predicate.release();
}

SetPredicate* PMMLTranslator::ParseSetPredicate(DOMNode* node, ScoreDictionary const* dictionary,
                                                ScoreDictionary const* secondDictionary) {
    ScoreDictVar const* variable = FieldVariable(fTranscoder, node, dictionary, secondDictionary);
    ScoreDictVar::MeasureLevel const level = variable->GetMLevel();
    if (level != ScoreDictVar::MEASURE_NOMINAL && level != ScoreDictVar::MEASURE_ORDINAL) {
        return nullptr;
    }
    std::string op;
    std::vector<double> numbers;
    std::unique_ptr<ScoreSplitVar> split(HandleArrayDiscreteSplit(node, variable, op, numbers));
    auto predicate = std::make_unique<SetPredicate>(split.get());
    split.release();  // now the predicate's
    predicate->SetArrayData(numbers);
    predicate->SetPredicateOperator(op);
    return predicate.release();
}

ScorePredicate* PMMLTranslator::ParseCompoundPredicate(DOMNode* node, ScoreDictionary const* dictionary,
                                                       ScoreDictionary const* secondDictionary,
                                                       bool scaleOrdinal) {
    std::string const text = TranscodeText(fTranscoder, GetAttribute(AsElement(node), "booleanOperator"));
    ScorePredicate::CompoundBoolOperator op = ScorePredicate::BOOL_SURROGATE;
    if (!ParseBoolOperator(text, op)) {
        ThrowCodedError(260153, {text, "booleanOperator", "CompoundPredicate"});
    }

    // A "True" under "and" and a "False" under "or" cannot change the result, and are left out.
    std::vector<std::unique_ptr<ScorePredicate>> children;
    bool droppedTrue = false;
    bool droppedFalse = false;
    for (DOMNode* child = GetFirstChildElt(node); child != nullptr; child = GetNextSiblingElt(child)) {
        std::unique_ptr<ScorePredicate> predicate;
        if (HasName(child, "SimplePredicate")) {
            predicate.reset(ParsePredicate(child, dictionary, secondDictionary, scaleOrdinal));
        } else if (HasName(child, "CompoundPredicate")) {
            predicate.reset(ParseCompoundPredicate(child, dictionary, secondDictionary, scaleOrdinal));
        } else if (HasName(child, "SimpleSetPredicate")) {
            predicate.reset(ParseSetPredicate(child, dictionary, secondDictionary));
        } else if (HasName(child, "True")) {
            if (op == ScorePredicate::BOOL_AND) {
                droppedTrue = true;
            } else {
                predicate = std::make_unique<TruePredicate>();
            }
        } else if (HasName(child, "False")) {
            if (op == ScorePredicate::BOOL_OR) {
                droppedFalse = true;
            } else {
                predicate = std::make_unique<FalsePredicate>();
            }
        }
        if (predicate) {
            children.push_back(std::move(predicate));
        }
    }

    if (children.size() == 1) {
        return children.front().release();
    }
    if (children.empty()) {
        if (droppedTrue) {
            return new TruePredicate();
        }
        return droppedFalse ? new FalsePredicate() : nullptr;
    }
    auto compound = std::make_unique<CompoundPredicate>(op);
    for (std::unique_ptr<ScorePredicate>& child : children) {
        compound->AddPredicate(child.release());
    }
    return compound.release();
}

}  // namespace QXVantry_920
