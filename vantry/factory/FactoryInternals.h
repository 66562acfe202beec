// The factory's internal operations, shared by its routes. None of them is exported.
#pragma once

#include <istream>
#include <mutex>
#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMElement;
class XercesDOMParser;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ScoreDictionary;
class ScoreModel;
class ScoreTranslator;

// The one lock of the library. Recursive, because the guard below is nested on the file and stream
// routes.
extern std::recursive_mutex gModelFactoryLock;

// Keeps Xerces-C started for one factory call when the host has not called ModelFactory::Initialize:
// then it holds gModelFactoryLock from construction to destruction, so such calls run one at a time.
// Throws VTException 260102 if Xerces-C cannot start.
class XercesInitGuard {
  public:
    XercesInitGuard();
    ~XercesInitGuard();
    XercesInitGuard(XercesInitGuard const&) = delete;
    XercesInitGuard& operator=(XercesInitGuard const&) = delete;

  private:
    bool fEntered;
    bool fWasInitialized;
};

// "lib<name>.so" unless the name already ends in ".so" (any case).
std::string MakeLibraryFileName(std::string name);
// The plug-in file of a model: the model name, "920", "r", then MakeLibraryFileName.
std::string MakeModelLibraryName(std::string modelName);

// The catalogue's file name: read from the working directory when no path is given, and the name of
// the one that ships with the plug-ins.
inline constexpr char kDefaultCatalogName[] = "modeldll.txt";

// Reads the catalogue of model names (kDefaultCatalogName for an empty path). 260103 if it cannot be
// opened.
void ReadModelCatalog(std::string const& path, std::vector<std::string>& result);

// The translator of a plug-in, for a name that must stand in modelNames; 260113 otherwise, or if the
// plug-in cannot be loaded or has no GiveMyTranslator. May answer null.
ScoreTranslator* GetTranslatorByName(std::vector<std::string> const& modelNames,
                                     std::string const& modelName);

// Builds a model from a whole document: finds the model name (unless given), loads the plug-in, has
// its translator read the document, deletes the translator, returns the model. The parser, which owns
// the document, stays with the caller.
ScoreModel* GetLibraryPath(std::vector<std::string> const& modelNames, XERCES_CPP_NAMESPACE::DOMElement* root,
                           bool nameGiven, std::string modelName, XERCES_CPP_NAMESPACE::DOMDocument* document,
                           XERCES_CPP_NAMESPACE::XercesDOMParser* parser, std::string const& encoding);
// The same for a caller that has read the data dictionary: the model name is always searched for.
ScoreModel* GetLibraryPath(std::vector<std::string> const& modelNames, ScoreDictionary* dictionary,
                           XERCES_CPP_NAMESPACE::DOMElement* root, std::string modelName,
                           XERCES_CPP_NAMESPACE::DOMDocument* document,
                           XERCES_CPP_NAMESPACE::XercesDOMParser* parser, std::string const& encoding);
// A model from one element of a DOM, named by the element's node name, with two dictionaries.
ScoreModel* GetLibraryPath(XERCES_CPP_NAMESPACE::DOMElement* modelElement, ScoreDictionary* dictionary,
                           ScoreDictionary* secondDictionary, std::vector<std::string> modelNames,
                           std::string encoding, bool supportOldParser);
// A model from three elements of a DOM, named by the last one's node name.
ScoreModel* GetLibraryPath(std::vector<std::string> const& modelNames,
                           XERCES_CPP_NAMESPACE::DOMElement* first, XERCES_CPP_NAMESPACE::DOMElement* second,
                           XERCES_CPP_NAMESPACE::DOMElement* modelElement, std::string encoding,
                           bool supportOldParser);

// Parses a stream into the parser's DOM; throws 260105, 260107 or 260109 (260109 also for a document
// with a fatal error after its root began, such as one cut short, and for nesting beyond the limit of
// a parser from CreateDocumentParser), std::bad_alloc when memory runs out.
XERCES_CPP_NAMESPACE::DOMDocument* ParseToDocument(XERCES_CPP_NAMESPACE::XercesDOMParser* parser,
                                                   std::istream& stream);

// A path given in UTF-8, in the code page that the file functions expect; the path itself if it has
// no such form.
std::string CodePagePath(std::string const& utf8Path);

// Whether the stream holds the element before the end of its "PMML" element, by a SAX scan; false
// also once the scan meets an error or nesting beyond the parser's limit.
bool ScanForElement(std::string const& elementName, std::istream& stream);

// A new parser set up for reading documents safely: no validation, no external DTD, no external
// entities, bounded entity expansion and element nesting, and fatal errors kept for ParseToDocument.
XERCES_CPP_NAMESPACE::XercesDOMParser* CreateDocumentParser();

}  // namespace QXVantry_920
