// The RegressionModel family: linear regression and classification by regression tables, with the
// normalization methods of the document. The plug-in's entry points are at the end.
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <xercesc/dom/DOM.hpp>

#include "plugins/RegressionModel/Normalization.h"
#include "plugins/RegressionModel/RegressionTable.h"
#include "plugins/common/FamilyModel.h"
#include "plugins/common/FamilySupport.h"
#include "plugins/common/FamilyTranslator.h"
#include "vantry/factory/ModelPlugin.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

class RegressionFamilyModel : public FamilyModel {
  public:
    RegressionFamilyModel(Normalization method, bool ordinal) : fMethod(method), fOrdinal(ordinal) {}

    void AddTable(std::unique_ptr<RegressionTable> table) { fTables.push_back(std::move(table)); }
    std::size_t TableCount() const { return fTables.size(); }

  protected:
    bool Evaluate(FamilyCase const& input, Prediction& prediction) override {
        if (!IsClassification()) {
            double y = 0.0;
            if (fTables.empty() || !fTables.front()->Evaluate(input, y)) {
                return false;
            }
            prediction.value = NormalizeRegression(fMethod, y);
            return true;
        }
        std::vector<double>& values = prediction.probabilities;
        values.assign(fTables.size(), 0.0);
        for (std::size_t i = 0; i < fTables.size(); ++i) {
            if (!fTables[i]->Evaluate(input, values[i])) {
                values.assign(fTables.size(), 0.0);
                return false;
            }
        }
        if (!NormalizeClassification(fMethod, fOrdinal, values)) {
            values.assign(fTables.size(), 0.0);
            return false;
        }
        prediction.category = prediction.ArgMax();
        return prediction.category >= 0;
    }

    void DisplayFamily(std::ostream& out) const override {
        out << "RegressionModel tables=" << fTables.size() << "\n";
    }

  private:
    Normalization fMethod;
    bool fOrdinal;
    std::vector<std::unique_ptr<RegressionTable>> fTables;
};

class RegressionTranslator : public FamilyTranslator {
  public:
    RegressionTranslator() : FamilyTranslator({"RegressionModel"}) {}

  protected:
    FamilyModel* BuildFamilyModel(DOMElement* element, ModelContext& context) override {
        std::string const methodText = context.Attribute(element, "normalizationMethod");
        Normalization method = Normalization::kNone;
        if (!NormalizationFromText(methodText, method)) {
            ThrowFamilyError(260152, {methodText, "normalizationMethod"});
        }
        ScoreDictVar const* target = context.TargetVariable();
        bool const ordinal = target != nullptr && target->GetMLevel() == ScoreDictVar::MEASURE_ORDINAL;
        auto model = std::make_unique<RegressionFamilyModel>(method, ordinal);
        std::vector<std::string> categories;
        for (DOMNode* node = GetFirstChildElt(element); node != nullptr; node = GetNextSiblingElt(node)) {
            if (node->getNodeType() == DOMNode::ELEMENT_NODE &&
                IsEqual(node->getNodeName(), "RegressionTable")) {
                auto table = std::make_unique<RegressionTable>(static_cast<DOMElement*>(node), context);
                categories.push_back(table->TargetCategory());
                model->AddTable(std::move(table));
            }
        }
        if (model->TableCount() == 0) {
            ThrowFamilyError(260114, {"RegressionTable"});
        }
        if (context.Function() == BaseModel::kClassification) {
            model->SetCategories(categories);
        }
        return model.release();
    }
};

}  // namespace

}  // namespace QXVantry_920

VANTRY_PLUGIN_EXPORT QXVantry_920::BaseTranslator* GiveMyTranslator() {
    return new QXVantry_920::RegressionTranslator();
}
