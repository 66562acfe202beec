// One "RegressionTable": an intercept plus numeric predictors (with exponents), categorical predictors
// (indicator of one value) and predictor terms (products of fields), each with its coefficient.
#pragma once

#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

#include "plugins/common/FamilyCase.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ModelContext;

class RegressionTable {
  public:
    // Reads the table; an unknown field fails 260124, a bad number 260151.
    RegressionTable(XERCES_CPP_NAMESPACE::DOMElement* table, ModelContext& context);

    std::string const& TargetCategory() const { return fTargetCategory; }

    // The linear value of the case; false when a numeric predictor or a factor of a term is missing.
    // A missing categorical field matches none of its values.
    bool Evaluate(FamilyCase const& input, double& y) const;

  private:
    struct Numeric {
        FieldHandle field;
        double exponent;
        double coefficient;
    };
    struct Categorical {
        FieldHandle field;
        std::string value;
        bool isNumber;
        double number;
        double coefficient;
    };
    struct Term {
        std::vector<FieldHandle> fields;
        double coefficient;
    };

    std::string fTargetCategory;
    double fIntercept;
    std::vector<Numeric> fNumeric;
    std::vector<Categorical> fCategorical;
    std::vector<Term> fTerms;
};

}  // namespace QXVantry_920
