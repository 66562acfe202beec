// Finding a model family's plug-in and having its translator build the model.
#include <algorithm>
#include <memory>

#include <xercesc/dom/DOM.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/factory/FactoryInternals.h"
#include "vantry/factory/ModelPlugin.h"
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
    BaseTranslator* translator = give();
    if (translator != nullptr && modelNamesToPass != nullptr) {
        auto pass = reinterpret_cast<PassModelNamesFunction>(library.GetSymbolAddress(kPassModelNames));
        if (pass != nullptr)
            pass(translator, *modelNamesToPass);
    }
    return translator;
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
    ScoringLog::GetInstance()->TraceText(1, "Enter:%s", kGetLibraryPathName);
    if (!nameGiven)
        modelName = FindModelName(modelNames, root);
    ScoreModel* model = nullptr;
    if (std::unique_ptr<ScoreTranslator> translator = ObtainTranslator(modelNames, modelName)) {
        model = translator->ParseFromTree(document, encoding);
    }
    ScoringLog::GetInstance()->TraceText(1, "Make Model End.");
    return model;
}

}  // namespace QXVantry_920
