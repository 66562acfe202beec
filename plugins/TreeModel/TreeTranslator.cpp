// The translator of the TreeModel plug-in and the plug-in's entry point.
#include <memory>
#include <string>
#include <vector>

#include "plugins/TreeModel/TreeCompiler.h"
#include "plugins/TreeModel/TreeModel.h"
#include "plugins/common/FamilyTranslator.h"
#include "vantry/Export.h"
#include "vantry/factory/ModelPlugin.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"
#include "vantry/values/ValueLabel.h"

namespace QXVantry_920 {

namespace {

// The values a categorical target declares, in the dictionary's order.
std::vector<std::string> DeclaredCategories(ScoreDictVar const* target) {
    std::vector<std::string> texts;
    ScoreValueLabelSet const* labels = target != nullptr ? target->GetValueLabels() : nullptr;
    if (labels != nullptr) {
        for (ScoreValueLabel const* label : labels->GetAllValueLabels()) {
            if (label != nullptr && label->GetValue() != nullptr) {
                texts.push_back(ScoreValue::TextOf(*label->GetValue()));
            }
        }
    }
    return texts;
}

class TreeTranslator : public FamilyTranslator {
  public:
    TreeTranslator() : FamilyTranslator({"TreeModel"}) {}

  protected:
    FamilyModel* BuildFamilyModel(XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                  ModelContext& context) override {
        bool const classification = context.Function() == BaseModel::kClassification;
        std::vector<std::string> const declared =
            classification ? DeclaredCategories(context.TargetVariable()) : std::vector<std::string>();
        std::unique_ptr<CompiledTree> tree =
            TreeCompiler::Compile(modelElement, context, classification, declared);
        auto model = std::make_unique<TreeModel>();
        if (classification) {
            model->SetCategories(tree->Categories());
        }
        model->SetTree(std::move(tree));
        return model.release();
    }
};

}  // namespace

}  // namespace QXVantry_920

VANTRY_PLUGIN_EXPORT QXVantry_920::BaseTranslator* GiveMyTranslator() {
    return new QXVantry_920::TreeTranslator();
}
