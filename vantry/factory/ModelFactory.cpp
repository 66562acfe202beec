#include "vantry/factory/ModelFactory.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <vector>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/factory/FactoryInternals.h"
#include "vantry/factory/PluginBoundary.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/translate/PMMLModelTags.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

bool ModelFactory::fInitialized = false;
std::vector<std::string> ModelFactory::fModelNames;
std::recursive_mutex gModelFactoryLock;

namespace {

constexpr char kMakeModelFromXMLName[] = "QXVantry_920::ModelFactory::MakeModelFromXML";

void TraceEnter(char const* function) {
    ScoringLog::GetInstance()->TraceText(1, "Enter:%s", function);
}

// The UTF-16 message of a parser exception as narrow text, without the transcoding service, which
// may be what failed to start.
std::string PlainText(XMLCh const* text) {
    std::string result;
    for (; text != nullptr && *text != 0; ++text)
        result += *text < 0x80 ? static_cast<char>(*text) : '?';
    return result;
}

// Whether Xerces-C runs: a host may have stopped it with Terminate while fInitialized stays true.
bool XercesRuns() {
    return XMLPlatformUtils::fgMemoryManager != nullptr;
}

void AdoptModelNames(std::vector<std::string> const& modelNames) {
    std::lock_guard<std::recursive_mutex> lock(gModelFactoryLock);
    if (ModelFactory::fModelNames.empty())
        ModelFactory::fModelNames = modelNames;
}

// What the root element of a document decides.
enum class RootAction { kSearchName, kKromML, kTreeModel };

struct RootDispatch {
    XMLCh const* tag;
    RootAction action;
};

const RootDispatch kRootDispatch[] = {
    {u"PMML", RootAction::kSearchName},
    {u"krom-ml", RootAction::kKromML},
    {u"Tree", RootAction::kTreeModel},
    {u"AssocLattice", RootAction::kSearchName},
    {u"SequentialAssociationLattice", RootAction::kSearchName},
};

// The document's root element, which must exist and have a name.
DOMElement* DocumentRoot(DOMDocument* document) {
    DOMElement* root = document->getDocumentElement();
    if (root == nullptr)
        ThrowCodedError(260110);
    XMLCh const* tag = root->getTagName();
    if (tag == nullptr || *tag == 0)
        ThrowCodedError(260112);
    return root;
}

RootDispatch const* FindRootDispatch(DOMElement* root) {
    for (RootDispatch const& entry : kRootDispatch) {
        if (XMLString::compareString(root->getTagName(), entry.tag) == 0)
            return &entry;
    }
    return nullptr;
}

// The model of a parsed document, chosen by its root tag.
ScoreModel* DispatchOnRoot(std::vector<std::string> const& modelNames, DOMDocument* document,
                           XercesDOMParser* parser, std::string const& encoding) {
    DOMElement* root = DocumentRoot(document);
    RootDispatch const* entry = FindRootDispatch(root);
    if (entry == nullptr)
        ThrowCodedError(260301, {NarrowText(root->getTagName())});
    switch (entry->action) {
        case RootAction::kSearchName:
            break;
        case RootAction::kKromML: {
            DOMNodeList* regression = root->getElementsByTagName(u"regression-model");
            if (regression != nullptr && regression->getLength() > 0)
                return GetLibraryPath(modelNames, root, true, "GeneralRegressionModel", document, parser,
                                      encoding);
            break;
        }
        case RootAction::kTreeModel:
            return GetLibraryPath(modelNames, root, true, "TreeModel", document, parser, encoding);
    }
    return GetLibraryPath(modelNames, root, false, std::string(), document, parser, encoding);
}

// Whether the stream's bytes may spell an element of the name. False only for a text whose encoding
// writes names as ASCII bytes (no zero byte or UTF-16 mark at its start, not EBCDIC), that holds the name
// nowhere and declares no entity (whose replacement text could spell it with character references).
// Reading the bytes costs a fraction of a second parse, which only a document that may hold the
// element gets. Leaves the stream where it ended.
bool MayHoldName(std::istream& stream, std::string const& name) {
    static char const kEntity[] = "<!ENTITY";
    std::size_t const keep = std::max(name.size(), sizeof(kEntity) - 1) - 1;
    std::string window;
    std::vector<char> chunk(1 << 16);
    bool first = true;
    while (stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || stream.gcount() > 0) {
        std::size_t const got = static_cast<std::size_t>(stream.gcount());
        if (first) {
            first = false;
            unsigned char const* start = reinterpret_cast<unsigned char const*>(chunk.data());
            std::size_t const head = std::min<std::size_t>(got, 4);
            bool const zero = std::find(start, start + head, 0) != start + head;
            bool const utf16Mark = got >= 2 && ((start[0] == 0xFE && start[1] == 0xFF) ||
                                                (start[0] == 0xFF && start[1] == 0xFE));
            bool const ebcdic = got >= 2 && start[0] == 0x4C && start[1] == 0x6F;
            if (zero || utf16Mark || ebcdic) {
                return true;
            }
        }
        window.append(chunk.data(), got);
        if (window.find(name) != std::string::npos || window.find(kEntity) != std::string::npos) {
            return true;
        }
        window.erase(0, window.size() > keep ? window.size() - keep : 0);
    }
    return stream.bad();
}

// Scans the stream for a nearest-neighbour model, then rewinds it for what follows.
bool HoldsNearestNeighborModel(std::istream& stream) {
    bool const possible = MayHoldName(stream, PMMLModelTags::XML_ELE_KNNMODEL);
    if (!stream.bad()) {
        stream.clear();
        stream.seekg(0);
    }
    const bool found = possible && ScanForElement(PMMLModelTags::XML_ELE_KNNMODEL, stream);
    if (!stream.bad()) {
        stream.clear();
        stream.seekg(0);
    }
    return found;
}

// That translator reads the stream itself: no DOM is built, and it gets no encoding.
ScoreModel* MakeNearestNeighborModel(std::vector<std::string> const& modelNames, std::istream& stream,
                                     std::string const& auxiliaryPath) {
    ScoreModel* model = nullptr;
    std::unique_ptr<ScoreTranslator> translator(
        GetTranslatorByName(modelNames, PMMLModelTags::XML_ELE_KNNMODEL));
    if (auto* base = dynamic_cast<BaseTranslator*>(translator.get()))
        model = CallPlugin([&] { return base->ParseFromTree(stream, std::string(), auxiliaryPath); });
    translator.reset();
    ScoringLog::GetInstance()->TraceText(1, "Make Model End");
    return model;
}

// The document route for a caller with a data dictionary. Under a root the dispatch does not know, the
// parser is kept on success: the model may hold pointers into its DOM, and nothing tells when the model
// is done with them.
ScoreModel* MakeModelOverDictionary(std::istream& stream, ScoreDictionary* dictionary,
                                    std::vector<std::string> const& modelNames, std::string const& encoding) {
    std::unique_ptr<XercesDOMParser> parser(CreateDocumentParser());
    parser->setDoSchema(false);
    DOMDocument* document = ParseToDocument(parser.get(), stream);
    DOMElement* root = DocumentRoot(document);
    RootDispatch const* entry = FindRootDispatch(root);
    if (entry != nullptr && XMLString::compareString(entry->tag, u"PMML") != 0)
        return DispatchOnRoot(modelNames, document, parser.get(), encoding);
    ScoreModel* model =
        GetLibraryPath(modelNames, dictionary, root, std::string(), document, parser.get(), encoding);
    if (entry == nullptr)
        static_cast<void>(parser.release());
    return model;
}

// The model of one element of a host's DOM, named by the element. The name is looked up in the
// caller's catalogue, or in the process catalogue if the caller's is empty.
template <typename Parse>
ScoreModel* MakeModelFromHostNode(void* modelElement, std::vector<std::string> const& modelNames,
                                  Parse parse) {
    XercesInitGuard guard;
    TraceEnter(kMakeModelFromXMLName);
    if (modelElement == nullptr)
        return nullptr;
    auto* node = static_cast<DOMNode*>(modelElement);
    std::string modelName = NarrowText(node->getNodeName());
    if (modelName == PMMLModelTags::XML_ELE_DECISIONTREE)
        modelName = PMMLModelTags::XML_ELE_TREEMODEL;
    else if (modelName == PMMLModelTags::XML_ELE_REGRESSION)
        modelName = "RegressionModel";
    ScoringLog::GetInstance()->TraceText(2, "Model name is :%s", modelName.c_str());
    const std::vector<std::string> names = modelNames.empty() ? ModelFactory::fModelNames : modelNames;
    ModelNestingGuard nesting(modelName);
    ScoreModel* model = CallPlugin([&] { return parse(names, modelName, dynamic_cast<DOMElement*>(node)); });
    ScoringLog::GetInstance()->TraceText(1, "Exit:%s", kMakeModelFromXMLName);
    return model;
}

// The translator of a model that shares its dictionaries with the caller. It is not deleted: the model
// may go on using what the translator owns, its transcoder first of all.
ScoreTranslator* TranslatorKeptForModel(std::vector<std::string> const& modelNames,
                                        std::string const& modelName) {
    return GetTranslatorByName(modelNames, modelName);
}

}  // namespace

XercesInitGuard::XercesInitGuard()
    : fEntered(false), fWasInitialized(ModelFactory::fInitialized && XercesRuns()) {
    if (!fWasInitialized) {
        gModelFactoryLock.lock();
        try {
            XMLPlatformUtils::Initialize();
        } catch (XMLException const& exception) {
            const std::string message = PlainText(exception.getMessage());
            XMLPlatformUtils::Terminate();
            gModelFactoryLock.unlock();
            ThrowCodedErrorWithDetail(260102, message);
        }
    }
    fEntered = true;
}

XercesInitGuard::~XercesInitGuard() {
    if (!fWasInitialized) {
        XMLPlatformUtils::Terminate();
        gModelFactoryLock.unlock();
    }
}

void ModelFactory::Initialize(std::string catalogPath) {
    XMLPlatformUtils::Initialize();
    if (!catalogPath.empty()) {
        std::vector<std::string> names;
        ReadModelCatalog(CodePagePath(catalogPath), names);
        fModelNames = std::move(names);
    }
    fInitialized = true;
}

void ModelFactory::Terminate() {
    XMLPlatformUtils::Terminate();
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& stream, std::vector<std::string> const& modelNames,
                                           std::string const& encoding, std::string const& auxiliaryPath) {
    TraceEnter(kMakeModelFromXMLName);
    XercesInitGuard guard;
    AdoptModelNames(modelNames);

    if (HoldsNearestNeighborModel(stream))
        return MakeNearestNeighborModel(modelNames, stream, auxiliaryPath);

    // The parser owns the document; it goes, with the DOM, on every way out of this scope.
    std::unique_ptr<XercesDOMParser> parser(CreateDocumentParser());
    DOMDocument* document = ParseToDocument(parser.get(), stream);
    return DispatchOnRoot(modelNames, document, parser.get(), encoding);
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& stream, std::vector<std::string> const& modelNames,
                                           std::string const& encoding) {
    return MakeModelFromXML(stream, modelNames, encoding, std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& stream, std::string& catalogPath) {
    std::vector<std::string> names;
    ReadModelCatalog(catalogPath, names);
    return MakeModelFromXML(stream, names, std::string(), std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& stream, std::string const& modelName) {
    return MakeModelFromXML(stream, std::vector<std::string>{modelName}, std::string(), std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::string const& pmmlPath, std::string const& catalogPath,
                                           std::string const& encoding, std::string const& auxiliaryPath) {
    XercesInitGuard guard;
    TraceEnter(kMakeModelFromXMLName);
    const std::string pmmlFile = CodePagePath(pmmlPath);
    std::vector<std::string> names;
    ReadModelCatalog(CodePagePath(catalogPath), names);
    AdoptModelNames(names);

    std::ifstream file(pmmlFile);
    if (!file.is_open())
        ThrowCodedError(260104, {pmmlFile});
    return MakeModelFromXML(file, names, encoding, CodePagePath(auxiliaryPath));
}

ScoreModel* ModelFactory::MakeModelFromXML(std::string const& pmmlPath, std::string const& catalogPath,
                                           std::string const& encoding) {
    return MakeModelFromXML(pmmlPath, catalogPath, encoding, std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& stream, ScoreDictionary* dictionary,
                                           std::vector<std::string> const& modelNames,
                                           std::string const& encoding) {
    TraceEnter(kMakeModelFromXMLName);
    XercesInitGuard guard;
    AdoptModelNames(modelNames);
    if (HoldsNearestNeighborModel(stream))
        return MakeNearestNeighborModel(modelNames, stream, std::string());
    return MakeModelOverDictionary(stream, dictionary, modelNames, encoding);
}

ScoreModel* ModelFactory::MakeModelFromXML(void* modelElement, std::vector<std::string> const& modelNames,
                                           ScoreModel* parentModel, std::string const& encoding) {
    return MakeModelFromHostNode(
        modelElement, modelNames,
        [&](std::vector<std::string> const& names, std::string const& modelName,
            DOMElement* element) -> ScoreModel* {
            std::unique_ptr<ScoreTranslator> translator(GetTranslatorByName(names, modelName));
            if (!translator)
                return nullptr;
            return translator->ParseFromTree(element, parentModel, encoding);
        });
}

ScoreModel* ModelFactory::MakeModelFromXML(void* modelElement, std::vector<std::string> const& modelNames,
                                           ScoreDictionary* dictionary, ScoreDictionary* secondDictionary,
                                           std::string const& encoding) {
    return MakeModelFromHostNode(modelElement, modelNames,
                                 [&](std::vector<std::string> const& names, std::string const& modelName,
                                     DOMElement* element) -> ScoreModel* {
                                     ScoreTranslator* translator = TranslatorKeptForModel(names, modelName);
                                     if (translator == nullptr)
                                         return nullptr;
                                     return translator->ParseFromTree(element, dictionary, secondDictionary,
                                                                      encoding);
                                 });
}

ScoreModel* ModelFactory::MakeModelFromXML(ScoreModel* parentModel, DOMElement* modelElement,
                                           std::vector<std::string> const& modelNames,
                                           std::string const& encoding, bool supportOldParser) {
    TransformationDictionary* transformation = nullptr;
    ScoreDictionary const* dictionary = nullptr;
    if (parentModel != nullptr) {
        transformation = parentModel->GetTransformationDictionary();
        dictionary = parentModel->GetDictionary();
    }
    // The parent's data dictionary is handed on as the translator's slot takes it; the sub-model only
    // reads it.
    return GetLibraryPath(modelElement, const_cast<ScoreDictionary*>(dictionary), transformation, modelNames,
                          encoding, supportOldParser);
}

ScoreModel* ModelFactory::MakeModelFromXML(DOMElement* first, DOMElement* second, DOMElement* modelElement,
                                           std::vector<std::string> const& modelNames,
                                           std::string const& encoding, bool supportOldParser) {
    return GetLibraryPath(modelNames, first, second, modelElement, encoding, supportOldParser);
}

}  // namespace QXVantry_920
