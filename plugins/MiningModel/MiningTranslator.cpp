// The translator of the MiningModel plug-in: reads the "Segmentation" of a "MiningModel" and builds
// each segment's model through the factory, so that a segment of any catalogued family works (a nested
// MiningModel among them).
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include <xercesc/dom/DOM.hpp>

#include "plugins/MiningModel/MiningModel.h"
#include "plugins/MiningModel/SegmentHost.h"
#include "plugins/common/FamilyResult.h"
#include "plugins/common/FamilyTranslator.h"
#include "vantry/Export.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ModelPlugin.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/transform/ScorePredicate.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ValueLabel.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

using namespace mining;

namespace {

constexpr char const* kPredicateTags[] = {"SimplePredicate", "SimpleSetPredicate", "CompoundPredicate",
                                          "True", "False"};

bool IsPredicateOrExtension(std::string const& tag) {
    for (char const* name : kPredicateTags) {
        if (tag == name)
            return true;
    }
    return tag == "Extension";
}

std::string TagOf(DOMNode const* node) {
    char* text = XMLString::transcode(node->getNodeName());
    std::string tag = text == nullptr ? std::string() : std::string(text);
    XMLString::release(&text);
    return tag;
}

// The declared values of a categorical target, as texts in document order.
std::vector<std::string> CategoriesOf(ScoreDictVar const* target) {
    std::vector<std::string> categories;
    if (target == nullptr || target->GetValueLabels() == nullptr)
        return categories;
    for (ScoreValueLabel const* label : target->GetValueLabels()->GetAllValueLabels()) {
        if (label->GetValue() != nullptr)
            categories.push_back(ScoreValue::TextOf(*label->GetValue()));
    }
    return categories;
}

// A value of the variable's type that is missing, for a record slot.
ScoreValue* MissingValueOf(ScoreDictVar const* variable) {
    if (const_cast<ScoreDictVar*>(variable)->GetVarType() == ScoreDictVar::STRING_VAR)
        return new StringValue("");
    return new NumericValue(NumericValue::SYSMIS);
}

void AddSlots(CaseRecord& record, ScoreDictionary const* dictionary) {
    if (dictionary == nullptr)
        return;
    for (ScoreDictVar* variable : dictionary->GetScoreDictVars()) {
        if (record.GetIndex(variable->GetName()) < 0)
            record.Add(variable->GetName(), MissingValueOf(variable));
    }
}

class MiningTranslator : public FamilyTranslator {
  public:
    MiningTranslator() : FamilyTranslator({"MiningModel"}) {}

    void SetCatalogue(std::vector<std::string> const& catalogue) { fCatalogue = catalogue; }

    using FamilyTranslator::ParseFromTree;
    // A nested mining model finds its segments' families with its parent's catalogue.
    ScoreModel* ParseFromTree(DOMElement* modelElement, ScoreModel* parent,
                              std::string const& encoding) override {
        if (auto* carrier = dynamic_cast<CatalogueCarrier*>(parent))
            fCatalogue = carrier->Catalogue();
        return FamilyTranslator::ParseFromTree(modelElement, parent, encoding);
    }

  protected:
    FamilyModel* BuildFamilyModel(DOMElement* modelElement, ModelContext& context) override;

  private:
    std::unique_ptr<Segment> BuildSegment(DOMElement* element, int position, ModelContext& context,
                                          SegmentHost& host);
    // Makes the outputs of a chain segment fields of the segments after it.
    void ChainOutputs(Segment& segment, ModelContext& context, SegmentHost& host, CaseRecord& chain);

    std::vector<std::string> fCatalogue;
};

FamilyModel* MiningTranslator::BuildFamilyModel(DOMElement* modelElement, ModelContext& context) {
    auto* segmentation = static_cast<DOMElement*>(GetChildByTag(modelElement, "Segmentation"));
    if (segmentation == nullptr)
        ThrowFamilyError(260115, {"Segmentation", "MiningModel"});

    const std::string methodText = context.Attribute(segmentation, "multipleModelMethod");
    if (methodText.empty())
        ThrowFamilyError(260120, {"multipleModelMethod", "Segmentation"});
    CombineMethod method;
    if (!CombineMethodFromText(methodText, method))
        ThrowFamilyError(260153, {methodText, "multipleModelMethod", "Segmentation"});
    std::string treatmentText = context.Attribute(segmentation, "missingPredictionTreatment");
    MissingTreatment treatment = MissingTreatment::kContinue;
    if (!treatmentText.empty() && !MissingTreatmentFromText(treatmentText, treatment))
        ThrowFamilyError(260153, {treatmentText, "missingPredictionTreatment", "Segmentation"});
    const double threshold = context.Number(segmentation, "missingThreshold", 1.0);
    if (threshold < 0.0 || threshold > 1.0)
        ThrowFamilyError(260153, {context.Attribute(segmentation, "missingThreshold"), "missingThreshold",
                                  "Segmentation"});

    const bool classification = context.Function() == BaseModel::kClassification;
    if (!classification && IsVote(method))
        ThrowFamilyError(260179, {methodText, "multipleModelMethod", "Segmentation",
                                  "average, weightedAverage, median, weightedMedian, max, sum, weightedSum, "
                                  "selectFirst, selectAll, modelChain"});

    auto model = std::make_unique<MiningModel>(method, treatment, threshold);
    model->SetCatalogue(fCatalogue);
    if (classification) {
        // The answer's categories are fixed at build time: the segments' answers are mapped onto them.
        std::vector<std::string> categories = CategoriesOf(context.TargetVariable());
        if (categories.empty())
            ThrowFamilyError(260126, {context.TargetField()});
        model->SetCategories(categories);
    }

    SegmentHost host(context.Inputs(), context.Derived());
    host.SetCatalogue(fCatalogue);
    std::unique_ptr<CaseRecord> chain;
    if (method == CombineMethod::kModelChain) {
        chain = std::make_unique<CaseRecord>();
        AddSlots(*chain, context.Inputs());
        AddSlots(*chain, context.Derived());
    }
    int position = 0;
    for (DOMNode* child = GetFirstChildElt(segmentation); child != nullptr;
         child = GetNextSiblingElt(child)) {
        if (TagOf(child) != "Segment")
            continue;
        std::unique_ptr<Segment> segment =
            BuildSegment(static_cast<DOMElement*>(child), ++position, context, host);
        if (chain)
            ChainOutputs(*segment, context, host, *chain);
        model->AddSegment(std::move(segment));
    }
    if (model->SegmentCount() == 0)
        ThrowFamilyError(260115, {"Segment", "Segmentation"});
    if (chain)
        model->SetChainRecord(std::move(chain));
    const bool numeric =
        context.TargetVariable() != nullptr &&
        const_cast<ScoreDictVar*>(context.TargetVariable())->GetVarType() != ScoreDictVar::STRING_VAR;
    model->Finish(numeric);
    return model.release();
}

std::unique_ptr<Segment> MiningTranslator::BuildSegment(DOMElement* element, int position,
                                                        ModelContext& context, SegmentHost& host) {
    auto segment = std::make_unique<Segment>();
    segment->id = context.Attribute(element, "id");
    if (segment->id.empty())
        segment->id = std::to_string(position);
    segment->weight = context.Number(element, "weight", 1.0);
    if (segment->weight < 0.0)
        ThrowFamilyError(260183, {context.Attribute(element, "weight"), "weight"});
    segment->predicate.reset(context.ParsePredicate(element));
    if (!segment->predicate)
        ThrowFamilyError(260115, {"True", "Segment"});
    // A segment that always applies needs no evaluation per case.
    if (segment->predicate->GetPredType() == ScorePredicate::TRUE_PREDICATE)
        segment->predicate.reset();

    DOMElement* modelElement = nullptr;
    for (DOMNode* child = GetFirstChildElt(element); child != nullptr; child = GetNextSiblingElt(child)) {
        // A weight read from a field per case is not supported: refused rather than ignored.
        if (TagOf(child) == "VariableWeight")
            ThrowFamilyError(260154, {"VariableWeight"});
        if (!IsPredicateOrExtension(TagOf(child))) {
            modelElement = static_cast<DOMElement*>(child);
            break;
        }
    }
    if (modelElement == nullptr)
        ThrowFamilyError(260115, {"model", "Segment"});
    segment->model.reset(
        ModelFactory::MakeModelFromXML(static_cast<void*>(modelElement), fCatalogue, &host, fEncoding));
    if (!segment->model)
        ThrowFamilyError(260113, {TagOf(modelElement)});
    segment->result.reset(segment->model->MakeResult());
    if (!segment->result)
        ThrowFamilyError(260113, {TagOf(modelElement)});
    segment->classification = dynamic_cast<ScoreClsResult const*>(segment->result.get());
    if (segment->result != nullptr && typeid(*segment->result) == typeid(FamilyResult)) {
        segment->familyResult = static_cast<FamilyResult const*>(segment->result.get());
    }
    return segment;
}

void MiningTranslator::ChainOutputs(Segment& segment, ModelContext& context, SegmentHost& host,
                                    CaseRecord& chain) {
    ScoreDictionary const* results = segment.model->GetResultDictionary();
    if (results == nullptr)
        return;
    for (ScoreDictVar* variable : results->GetScoreDictVars()) {
        std::string const& name = variable->GetName();
        const ScoreDictVar::VariableType type = variable->GetVarType() == ScoreDictVar::STRING_VAR
                                                    ? ScoreDictVar::STRING_VAR
                                                    : ScoreDictVar::kNUMERIC_VAR;
        // The target of a segment is a field of the mining model already; its outputs become fields of
        // the segments after it (a later output of the same name takes the slot over).
        if (context.Variable(name) != nullptr)
            continue;
        host.AddField(name, type);
        if (chain.GetIndex(name) < 0)
            chain.Add(name, MissingValueOf(variable));
        segment.outputs.push_back(ChainOutput{name, chain.GetIndex(name)});
    }
}

}  // namespace

}  // namespace QXVantry_920

VANTRY_PLUGIN_EXPORT QXVantry_920::BaseTranslator* GiveMyTranslator() {
    return new QXVantry_920::MiningTranslator();
}

VANTRY_PLUGIN_EXPORT bool PassModelNames(QXVantry_920::BaseTranslator* translator,
                                         std::vector<std::string> const& modelNames) {
    auto* mining = dynamic_cast<QXVantry_920::MiningTranslator*>(translator);
    if (mining == nullptr)
        return false;
    mining->SetCatalogue(modelNames);
    return true;
}
