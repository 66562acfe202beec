// Finding a model family's plug-in and having its translator build the model.
#include <algorithm>
#include <memory>

#include <xercesc/dom/DOM.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/factory/FactoryInternals.h"
#include "vantry/factory/ModelPlugin.h"
#include "vantry/factory/PluginBoundary.h"
#include "vantry/factory/VTDynamicLoadedLibrary.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

constexpr char kGetLibraryPathName[] = "QXVantry_920::GetLibraryPath";
constexpr char kGiveMyTranslator[] = "GiveMyTranslator";
constexpr char kPassModelNames[] = "PassModelNames";

// Loads the plug-in of a model name and calls its GiveMyTranslator; 260113 with reportedName if the
// library cannot be loaded or lacks the function. Also calls PassModelNames, if asked and exported.
// The library stays loaded.
ScoreTranslator* CallGiveMyTranslator(std::string const& libraryModelName, std::string const& reportedName,
                                      std::vector<std::string> const* modelNamesToPass) {
    VTDynamicLoadedLibrary library(MakeModelLibraryName(libraryModelName));
    auto give = reinterpret_cast<GiveMyTranslatorFunction>(library.GetSymbolAddress(kGiveMyTranslator));
    if (give == nullptr)
        ThrowCodedError(260113, {reportedName});
    std::unique_ptr<BaseTranslator> translator(CallPlugin(give));
    if (translator != nullptr && modelNamesToPass != nullptr) {
        auto pass = reinterpret_cast<PassModelNamesFunction>(library.GetSymbolAddress(kPassModelNames));
        if (pass != nullptr)
            CallPlugin([&] { return pass(translator.get(), *modelNamesToPass); });
    }
    return translator.release();
}

// The translator for a document route, once the model name is known. One library serves both the
// "AssociationModel" and the "AssociationModelLattice" elements.
std::unique_ptr<ScoreTranslator> ObtainTranslator(std::vector<std::string> const& modelNames,
                                                  std::string const& modelName) {
    const std::string libraryModelName =
        modelName == "AssociationModelLattice" ? std::string("AssociationModel") : modelName;
    return std::unique_ptr<ScoreTranslator>(CallGiveMyTranslator(libraryModelName, modelName, &modelNames));
}

// The node name of the first element, anywhere under the root, whose name is in the catalogue; the
// catalogue's order decides, not the document's. 260301 if none occurs.
std::string FindModelName(std::vector<std::string> const& modelNames, DOMElement* root) {
    for (std::string const& name : modelNames) {
        DOMNodeList* elements = root->getElementsByTagName(XMLText(name));
        if (elements == nullptr || elements->getLength() == 0)
            continue;
        DOMNode* element = elements->item(0);
        if (element == nullptr)
            ThrowCodedError(260283, {NarrowText(root->getTagName())});
        return NarrowText(element->getNodeName());
    }
    ThrowCodedError(260301, {""});
}

void TraceGetLibraryPath() {
    ScoringLog::GetInstance()->TraceText(1, "Enter:%s", kGetLibraryPathName);
}

// The common end of the document and element routes: the family's translator builds the model with
// the call given and is deleted, also when the call throws.
template <typename Call>
ScoreModel* BuildModel(std::vector<std::string> const& modelNames, std::string const& modelName, Call call) {
    ScoreModel* model = nullptr;
    if (std::unique_ptr<ScoreTranslator> translator = ObtainTranslator(modelNames, modelName))
        model = CallPlugin([&] { return call(*translator); });
    ScoringLog::GetInstance()->TraceText(1, "Make Model End.");
    return model;
}

// The element routes: the element's node name is the model name, as it stands, and the translator is
// told first whether it may read the older layout. A null element loads nothing.
template <typename Call>
ScoreModel* BuildFromElement(std::vector<std::string> const& modelNames, DOMElement* modelElement,
                             bool supportOldParser, Call call) {
    TraceGetLibraryPath();
    if (modelElement == nullptr)
        return nullptr;
    const std::string modelName = NarrowText(modelElement->getNodeName());
    ModelNestingGuard nesting(modelName);
    return BuildModel(modelNames, modelName, [&](ScoreTranslator& translator) {
        translator.SetSupportOldParser(supportOldParser);
        return call(translator);
    });
}

}  // namespace

ScoreTranslator* GetTranslatorByName(std::vector<std::string> const& modelNames,
                                     std::string const& modelName) {
    if (std::find(modelNames.begin(), modelNames.end(), modelName) == modelNames.end()) {
        ThrowCodedError(260113, {modelName});
    }
    return CallGiveMyTranslator(modelName, modelName, nullptr);
}

ScoreModel* GetLibraryPath(std::vector<std::string> const& modelNames, DOMElement* root, bool nameGiven,
                           std::string modelName, DOMDocument* document, XercesDOMParser*,
                           std::string const& encoding) {
    TraceGetLibraryPath();
    if (!nameGiven)
        modelName = FindModelName(modelNames, root);
    return BuildModel(modelNames, modelName, [&](ScoreTranslator& translator) {
        return translator.ParseFromTree(document, encoding);
    });
}

ScoreModel* GetLibraryPath(std::vector<std::string> const& modelNames, ScoreDictionary* dictionary,
                           DOMElement* root, std::string, DOMDocument* document, XercesDOMParser*,
                           std::string const& encoding) {
    TraceGetLibraryPath();
    return BuildModel(modelNames, FindModelName(modelNames, root), [&](ScoreTranslator& translator) {
        // The slot exists from BaseTranslator on, and every plug-in's translator derives from it.
        auto* base = dynamic_cast<BaseTranslator*>(&translator);
        return base == nullptr ? nullptr : base->ParseFromTree(document, dictionary, encoding);
    });
}

ScoreModel* GetLibraryPath(DOMElement* modelElement, ScoreDictionary* dictionary,
                           ScoreDictionary* secondDictionary, std::vector<std::string> modelNames,
                           std::string encoding, bool supportOldParser) {
    return BuildFromElement(modelNames, modelElement, supportOldParser, [&](ScoreTranslator& translator) {
        return translator.ParseFromTree(modelElement, dictionary, secondDictionary, encoding);
    });
}

ScoreModel* GetLibraryPath(std::vector<std::string> const& modelNames, DOMElement* first, DOMElement* second,
                           DOMElement* modelElement, std::string encoding, bool supportOldParser) {
    return BuildFromElement(modelNames, modelElement, supportOldParser, [&](ScoreTranslator& translator) {
        return translator.ParseFromTree(first, second, modelElement, encoding);
    });
}

}  // namespace QXVantry_920
