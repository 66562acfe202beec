#include "plugins/RegressionModel/RegressionTable.h"

#include <cmath>
#include <cstdlib>

#include <xercesc/dom/DOM.hpp>

#include "plugins/common/FamilySupport.h"
#include "plugins/common/FamilyTranslator.h"
#include "vantry/values/ScoreValue.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

double RequiredNumber(DOMElement const* element, char const* name) {
    return BaseTranslator::VerifyDouble(BaseTranslator::GetAttributeForced(element, name));
}

}  // namespace

RegressionTable::RegressionTable(DOMElement* table, ModelContext& context)
    : fTargetCategory(context.Attribute(table, "targetCategory")),
      fIntercept(RequiredNumber(table, "intercept")) {
    for (DOMNode* node = BaseTranslator::GetFirstChildElt(table); node != nullptr;
         node = BaseTranslator::GetNextSiblingElt(node)) {
        auto* child = static_cast<DOMElement*>(node);
        if (IsElementNamed(node, "NumericPredictor")) {
            fNumeric.push_back(Numeric{context.Resolve(context.Attribute(child, "name")),
                                       context.Number(child, "exponent", 1.0),
                                       RequiredNumber(child, "coefficient")});
        } else if (IsElementNamed(node, "CategoricalPredictor")) {
            Categorical predictor{context.Resolve(context.Attribute(child, "name")),
                                  context.Attribute(child, "value"), false, 0.0,
                                  RequiredNumber(child, "coefficient")};
            predictor.isNumber = ReadWholeNumber(predictor.value, predictor.number);
            fCategorical.push_back(std::move(predictor));
        } else if (IsElementNamed(node, "PredictorTerm")) {
            Term term{{}, RequiredNumber(child, "coefficient")};
            for (DOMNode* ref = BaseTranslator::GetFirstChildElt(child); ref != nullptr;
                 ref = BaseTranslator::GetNextSiblingElt(ref)) {
                if (IsElementNamed(ref, "FieldRef")) {
                    term.fields.push_back(
                        context.Resolve(context.Attribute(static_cast<DOMElement*>(ref), "field")));
                }
            }
            fTerms.push_back(std::move(term));
        }
    }
}

bool RegressionTable::Evaluate(FamilyCase const& input, double& y) const {
    double sum = fIntercept;
    for (Numeric const& predictor : fNumeric) {
        double x = 0.0;
        if (!input.Number(predictor.field, x)) {
            return false;
        }
        sum += predictor.coefficient * (predictor.exponent == 1.0 ? x : std::pow(x, predictor.exponent));
    }
    for (Categorical const& predictor : fCategorical) {
        if (input.IsMissing(predictor.field)) {
            continue;
        }
        ScoreValue const* value = input.Value(predictor.field);
        bool match = false;
        if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
            // Trailing blanks do not count in the library's texts.
            std::string text = ScoreValue::TextOf(*value);
            text.erase(text.find_last_not_of(' ') + 1);
            match = text == predictor.value;
        } else {
            match = predictor.isNumber && NumericValue::IsEqual(value->GetDouble(), predictor.number);
        }
        if (match) {
            sum += predictor.coefficient;
        }
    }
    for (Term const& term : fTerms) {
        double product = term.coefficient;
        for (FieldHandle const& field : term.fields) {
            double x = 0.0;
            if (!input.Number(field, x)) {
                return false;
            }
            product *= x;
        }
        sum += product;
    }
    y = sum;
    return true;
}

}  // namespace QXVantry_920
