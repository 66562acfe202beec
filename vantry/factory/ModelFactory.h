// The entry of the library: a host starts it, then asks for models built from PMML or legacy
// documents, and stops it at the end.
//
// Each model family is a plug-in library, found by file name through the catalogue of model names
// (by default "modeldll.txt"): the model "TreeModel" is served by libTreeModel920r.so, found by the
// platform's library search. The plug-in hands back a translator that builds the model.
//
// Failures are QXVantry_920::VTException with a six-digit code. The model returned belongs to the
// caller.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include <xercesc/util/XercesDefs.hpp>

#include "vantry/Export.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace QXVantry_920 {

class ScoreDictionary;
class ScoreModel;
class TransformationDictionary;

class VANTRY_EXPORT ModelFactory {
  public:
    // Starts Xerces-C and, for a non-empty path (UTF-8), reads the catalogue into fModelNames.
    // Not guarded by the lock: do not run it beside model creation.
    static void Initialize(std::string catalogPath);
    // Stops Xerces-C, nothing more: fInitialized and fModelNames keep their values.
    static void Terminate();

    // The main route: a model from a document on a seekable stream. modelNames is the catalogue to
    // search; encoding names the code page for document text (empty: the default); auxiliaryPath is
    // handed untouched to a nearest-neighbour translator.
    static ScoreModel* MakeModelFromXML(std::istream& stream, std::vector<std::string> const& modelNames,
                                        std::string const& encoding, std::string const& auxiliaryPath);
    static ScoreModel* MakeModelFromXML(std::istream& stream, std::vector<std::string> const& modelNames,
                                        std::string const& encoding);
    // Beware: the non-const string is the path of a catalogue ("modeldll.txt" if empty), the const
    // string below is a single model name.
    static ScoreModel* MakeModelFromXML(std::istream& stream, std::string& catalogPath);
    static ScoreModel* MakeModelFromXML(std::istream& stream, std::string const& modelName);

    // From a file: paths in UTF-8; the catalogue is read from catalogPath ("modeldll.txt" if empty).
    static ScoreModel* MakeModelFromXML(std::string const& pmmlPath, std::string const& catalogPath,
                                        std::string const& encoding, std::string const& auxiliaryPath);
    static ScoreModel* MakeModelFromXML(std::string const& pmmlPath, std::string const& catalogPath,
                                        std::string const& encoding);

    // As the main route, handing the translator a data dictionary already read; the nearest-neighbour
    // translator gets no encoding. Under a root that is not one of the known ones, the first catalogue
    // name found in the document decides, and the document stays alive for the model's use.
    static ScoreModel* MakeModelFromXML(std::istream& stream, ScoreDictionary* dictionary,
                                        std::vector<std::string> const& modelNames,
                                        std::string const& encoding);

    // Routes for a host that holds the DOM, which stays the host's. The model name is the element's node
    // name ("DecisionTree" serves "TreeModel", "Regression" "RegressionModel" on the void* routes),
    // looked up in modelNames or, if that is empty, in fModelNames. modelElement is a
    // xercesc::DOMNode*; a null one gives null. The second form's translator is not deleted, since its
    // model may go on using it.
    static ScoreModel* MakeModelFromXML(void* modelElement, std::vector<std::string> const& modelNames,
                                        ScoreModel* parentModel, std::string const& encoding);
    static ScoreModel* MakeModelFromXML(void* modelElement, std::vector<std::string> const& modelNames,
                                        ScoreDictionary* dictionary, ScoreDictionary* secondDictionary,
                                        std::string const& encoding);
    // A sub-model sharing the parent's data and transformation dictionaries, and a model from three
    // elements; the element's node name is the model name as it stands, without a catalogue test.
    static ScoreModel* MakeModelFromXML(ScoreModel* parentModel,
                                        XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                        std::vector<std::string> const& modelNames,
                                        std::string const& encoding, bool supportOldParser);
    static ScoreModel* MakeModelFromXML(XERCES_CPP_NAMESPACE::DOMElement* first,
                                        XERCES_CPP_NAMESPACE::DOMElement* second,
                                        XERCES_CPP_NAMESPACE::DOMElement* modelElement,
                                        std::vector<std::string> const& modelNames,
                                        std::string const& encoding, bool supportOldParser);

    // Set by Initialize; never cleared.
    static bool fInitialized;
    // The process-wide catalogue, in catalogue order, duplicates kept.
    static std::vector<std::string> fModelNames;

    // The derived fields of a PMML document, with no plug-in: the data dictionary goes to `dictionary`
    // as soon as it is read, the transformation dictionary is returned, set up for evaluation; both
    // belong to the caller. Null, with `dictionary` untouched, for a root other than "PMML"; null too
    // when there is no "DerivedField". 260114 without a "DataDictionary" or "TransformationDictionary".
    static TransformationDictionary* GetTransformationDictionaryFromXML(std::istream& stream,
                                                                        ScoreDictionary*& dictionary,
                                                                        std::string const& encoding);
    // The same from a file; 260103 when it cannot be opened.
    static TransformationDictionary* GetTransformationDictionaryFromXML(std::string const& pmmlPath,
                                                                        ScoreDictionary*& dictionary,
                                                                        std::string const& encoding);
};

}  // namespace QXVantry_920
