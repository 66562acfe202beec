#include "plugins/TreeModel/TreeCompiler.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <utility>

#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "plugins/common/FamilyTranslator.h"
#include "vantry/transform/ScorePredicate.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

DOMElement* FirstElement(DOMNode* parent) {
    return static_cast<DOMElement*>(BaseTranslator::GetFirstChildElt(parent));
}

DOMElement* NextElement(DOMNode* node) {
    return static_cast<DOMElement*>(BaseTranslator::GetNextSiblingElt(node));
}

bool IsTag(DOMNode const* node, char const* tag) {
    return BaseTranslator::IsEqual(node->getNodeName(), tag);
}

bool HasAttribute(DOMElement const* element, char const* name) {
    XMLCh const* value = BaseTranslator::GetAttribute(element, name);
    return value != nullptr && *value != 0;
}

// The text of an enumerated attribute as its position in `names`; `fallback` when absent.
template <typename Enum>
Enum ReadChoice(DOMElement const* element, char const* attribute, ModelContext& context,
                std::initializer_list<std::pair<char const*, Enum>> names, Enum fallback) {
    if (!HasAttribute(element, attribute)) {
        return fallback;
    }
    std::string const text = context.Attribute(element, attribute);
    for (auto const& [name, value] : names) {
        if (text == name) {
            return value;
        }
    }
    ThrowFamilyError(260153, {text, attribute, "TreeModel"});
}

// Whether two category texts name the same value: the same text, or the same number.
bool SameCategory(std::string const& a, std::string const& b) {
    if (a == b) {
        return true;
    }
    char* endA = nullptr;
    char* endB = nullptr;
    double const x = std::strtod(a.c_str(), &endA);
    double const y = std::strtod(b.c_str(), &endB);
    return !a.empty() && !b.empty() && *endA == 0 && *endB == 0 && x == y;
}

}  // namespace

// Reads the nodes of one tree into it.
class TreeBuilder {
  public:
    TreeBuilder(ModelContext& context, CompiledTree& tree) : fContext(context), fTree(tree) {}

    void Run(DOMElement* modelElement);

  private:
    void ReadNode(DOMElement* element, std::size_t index);
    void ReadDistribution(DOMElement* element, TreeNode& node);
    void FillTables();
    std::int32_t CategoryOf(std::string const& text);
    double Number(DOMElement const* element, char const* attribute) {
        return fContext.Number(element, attribute, 0.0);
    }

    ModelContext& fContext;
    CompiledTree& fTree;
    // The element of each node; 0 is the virtual node above the root.
    std::vector<DOMElement*> fElements;
    // The numbers of every distribution entry read, by row and category.
    struct Cell {
        std::int32_t row;
        std::int32_t category;
        double probability;
        double confidence;
        double count;
    };
    std::vector<Cell> fCells;
    std::int32_t fRowCount = 0;
};

void TreeBuilder::Run(DOMElement* modelElement) {
    DOMElement* root = static_cast<DOMElement*>(BaseTranslator::GetChildByTagForced(modelElement, "Node"));
    fElements.push_back(nullptr);
    fElements.push_back(root);
    fTree.fNodes.resize(2);
    fTree.fNodes[0].firstChild = 1;
    fTree.fNodes[0].childCount = 1;
    fTree.fMaxChildren = 1;
    // Breadth first: the children of each node are appended together, so they sit side by side.
    for (std::size_t index = 1; index < fElements.size(); ++index) {
        ReadNode(fElements[index], index);
        auto const first = static_cast<std::int32_t>(fElements.size());
        for (DOMElement* child = FirstElement(fElements[index]); child != nullptr;
             child = NextElement(child)) {
            if (IsTag(child, "Node")) {
                fElements.push_back(child);
            }
        }
        auto const count = static_cast<std::int32_t>(fElements.size()) - first;
        fTree.fNodes.resize(fElements.size());
        fTree.fNodes[index].firstChild = first;
        fTree.fNodes[index].childCount = count;
        fTree.fMaxChildren = std::max(fTree.fMaxChildren, static_cast<std::size_t>(count));
    }
    // A default child names one of the node's own children by id.
    for (std::size_t index = 1; index < fElements.size(); ++index) {
        TreeNode& node = fTree.fNodes[index];
        if (!HasAttribute(fElements[index], "defaultChild")) {
            continue;
        }
        std::string const wanted = fContext.Attribute(fElements[index], "defaultChild");
        for (std::int32_t child = node.firstChild; child < node.firstChild + node.childCount; ++child) {
            std::string const* id = fTree.Id(fTree.Node(child));
            if (id != nullptr && *id == wanted) {
                node.defaultChild = child;
                break;
            }
        }
    }
    FillTables();
}

void TreeBuilder::ReadNode(DOMElement* element, std::size_t index) {
    TreeNode node;
    std::unique_ptr<ScorePredicate> predicate(fContext.ParsePredicate(element));
    node.predicate = predicate.get();
    node.test = CompileNodeTest(predicate.get());
    if (predicate) {
        fTree.fPredicates.push_back(std::move(predicate));
    }
    if (HasAttribute(element, "id")) {
        node.id = static_cast<std::int32_t>(fTree.fIds.size());
        fTree.fIds.push_back(fContext.Attribute(element, "id"));
    }
    if (HasAttribute(element, "recordCount")) {
        node.hasRecordCount = true;
        node.recordCount = Number(element, "recordCount");
    }
    if (HasAttribute(element, "score")) {
        node.hasScore = true;
        if (fTree.fClassification) {
            node.category = CategoryOf(fContext.Attribute(element, "score"));
        } else {
            node.score = Number(element, "score");
        }
    }
    ReadDistribution(element, node);
    fTree.fNodes[index] = node;
}

// The node's "ScoreDistribution" children as one row of each table. A probability not given is the
// value's share of the distribution's record counts; a confidence not given is the probability.
void TreeBuilder::ReadDistribution(DOMElement* element, TreeNode& node) {
    if (!fTree.fClassification) {
        return;
    }
    struct Entry {
        std::int32_t category;
        double count;
        double probability;
        double confidence;
        bool hasProbability;
        bool hasConfidence;
    };
    std::vector<Entry> entries;
    double total = 0.0;
    for (DOMElement* child = FirstElement(element); child != nullptr; child = NextElement(child)) {
        if (!IsTag(child, "ScoreDistribution")) {
            continue;
        }
        Entry entry{};
        BaseTranslator::GetAttributeForced(child, "value");  // required: 260120 when absent
        entry.category = CategoryOf(fContext.Attribute(child, "value"));
        entry.count = HasAttribute(child, "recordCount") ? Number(child, "recordCount") : 0.0;
        entry.hasProbability = HasAttribute(child, "probability");
        entry.probability = entry.hasProbability ? Number(child, "probability") : 0.0;
        entry.hasConfidence = HasAttribute(child, "confidence");
        entry.confidence = entry.hasConfidence ? Number(child, "confidence") : 0.0;
        total += entry.count;
        entries.push_back(entry);
    }
    if (entries.empty()) {
        return;
    }
    // The tables are laid out once every category is known (FillTables).
    node.distribution = fRowCount++;
    for (Entry const& entry : entries) {
        double const probability = entry.hasProbability ? entry.probability
                                   : total > 0.0        ? entry.count / total
                                                        : 0.0;
        fCells.push_back({node.distribution, entry.category, probability,
                          entry.hasConfidence ? entry.confidence : probability, entry.count});
    }
}

void TreeBuilder::FillTables() {
    std::size_t const size = static_cast<std::size_t>(fRowCount) * fTree.fCategories.size();
    fTree.fProbabilities.assign(size, 0.0);
    fTree.fConfidences.assign(size, 0.0);
    fTree.fCounts.assign(size, 0.0);
    for (Cell const& cell : fCells) {
        std::size_t const at = static_cast<std::size_t>(cell.row) * fTree.fCategories.size() +
                               static_cast<std::size_t>(cell.category);
        fTree.fProbabilities[at] = cell.probability;
        fTree.fConfidences[at] = cell.confidence;
        fTree.fCounts[at] = cell.count;
    }
}

std::int32_t TreeBuilder::CategoryOf(std::string const& text) {
    std::vector<std::string>& categories = fTree.fCategories;
    for (std::size_t i = 0; i < categories.size(); ++i) {
        if (SameCategory(categories[i], text)) {
            return static_cast<std::int32_t>(i);
        }
    }
    categories.push_back(text);
    return static_cast<std::int32_t>(categories.size() - 1);
}

std::unique_ptr<CompiledTree> TreeCompiler::Compile(DOMElement* modelElement, ModelContext& context,
                                                    bool classification,
                                                    std::vector<std::string> const& categories) {
    auto tree = std::make_unique<CompiledTree>();
    tree->fClassification = classification;
    tree->fCategories = categories;
    tree->fMissingStrategy =
        ReadChoice<TreeMissingStrategy>(modelElement, "missingValueStrategy", context,
                                        {{"none", TreeMissingStrategy::kNone},
                                         {"lastPrediction", TreeMissingStrategy::kLastPrediction},
                                         {"nullPrediction", TreeMissingStrategy::kNullPrediction},
                                         {"defaultChild", TreeMissingStrategy::kDefaultChild},
                                         {"weightedConfidence", TreeMissingStrategy::kWeightedConfidence},
                                         {"aggregateNodes", TreeMissingStrategy::kAggregateNodes}},
                                        TreeMissingStrategy::kNone);
    tree->fNoTrueChild =
        ReadChoice<TreeNoTrueChild>(modelElement, "noTrueChildStrategy", context,
                                    {{"returnNullPrediction", TreeNoTrueChild::kReturnNullPrediction},
                                     {"returnLastPrediction", TreeNoTrueChild::kReturnLastPrediction}},
                                    TreeNoTrueChild::kReturnNullPrediction);
    tree->fPenalty = context.Number(modelElement, "missingValuePenalty", 1.0);
    TreeBuilder(context, *tree).Run(modelElement);
    return tree;
}

}  // namespace QXVantry_920
