// How the factory reads a document: a DOM parser that fetches nothing from outside the document, bounds
// entity expansion and element nesting, and refuses a document with a fatal error (one cut short, for
// instance) instead of handing on the part it read; and the SAX scan that looks for one element.
#include <memory>
#include <new>
#include <string>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/factory/FactoryInternals.h"
#include "vantry/factory/QXXInputSource.h"
#include "vantry/factory/ScoreSAX2Handlers.h"
#include "vantry/translate/XMLText.h"

XERCES_CPP_NAMESPACE_USE

namespace QXVantry_920 {

namespace {

// The deepest nesting of elements a document may have. Readers of compound predicates and plug-ins
// that read nested elements recurse once per level; at this depth the deepest of those walks stays
// under 1 MB of stack even with AddressSanitizer's larger frames (a nesting of about 10000 levels
// overflows an 8 MB stack there). Real models stay far below: a tree of 2000 levels is deeper than any
// learner grows, and nested models take three elements per level.
constexpr XMLSize_t kMaxElementDepth = 2000;

// Bounds the expansion of entities, so that a document of nested entities is refused quickly instead
// of filling the memory: the limit is far above what a model document uses. Read-only while parsing,
// so one object serves all threads.
class DocumentSecurityManager : public SecurityManager {
  public:
    DocumentSecurityManager() { setEntityExpansionLimit(10000); }

    static SecurityManager* Get() {
        static DocumentSecurityManager manager;
        return &manager;
    }
};

// Keeps the first fatal error of a parse, with where it stands. Without a handler the parser stops at
// a fatal error silently and leaves the part of the DOM it built.
class FirstErrorKeeper : public ErrorHandler {
  public:
    void warning(SAXParseException const&) override {}
    void error(SAXParseException const&) override {}
    void fatalError(SAXParseException const& exception) override {
        if (fText.empty()) {
            fText = "line " + std::to_string(exception.getLineNumber()) + ", column " +
                    std::to_string(exception.getColumnNumber()) + ": " + NarrowText(exception.getMessage());
        }
    }
    void resetErrors() override { fText.clear(); }

    std::string const& Text() const { return fText; }

  private:
    std::string fText;
};

// A DOM parser that counts how deep the element being read stands and refuses a document nested
// deeper than kMaxElementDepth before the DOM below that depth exists.
class DocumentParser : public XercesDOMParser {
  public:
    DocumentParser() : XercesDOMParser(nullptr, XMLPlatformUtils::fgMemoryManager, nullptr) {
        setLoadExternalDTD(false);
        setValidationScheme(XercesDOMParser::Val_Never);
        // No entity is ever fetched from outside the document, and nested entities cannot explode.
        setDisableDefaultEntityResolution(true);
        setSecurityManager(DocumentSecurityManager::Get());
        setErrorHandler(&fErrors);
    }

    std::string const& FirstError() const { return fErrors.Text(); }

    void startDocument() override {
        fDepth = 0;
        XercesDOMParser::startDocument();
    }

    void startElement(XMLElementDecl const& declaration, unsigned int const uriId, XMLCh const* const prefix,
                      RefVectorOf<XMLAttr> const& attributes, XMLSize_t const count, bool const isEmpty,
                      bool const isRoot) override {
        if (fDepth >= kMaxElementDepth) {
            // The parser's own failure code: the document is refused while it is being read.
            ThrowCodedErrorWithDetail(
                260109, "elements nested deeper than " + std::to_string(kMaxElementDepth) + " levels");
        }
        // The base class ends an empty element itself, through endElement below.
        ++fDepth;
        XercesDOMParser::startElement(declaration, uriId, prefix, attributes, count, isEmpty, isRoot);
    }

    void endElement(XMLElementDecl const& declaration, unsigned int const uriId, bool const isRoot,
                    XMLCh const* const prefix) override {
        --fDepth;
        XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
    }

  private:
    FirstErrorKeeper fErrors;
    XMLSize_t fDepth = 0;
};

// The scan's handler, which also gives up at the nesting limit: resolving the names of an element
// costs the scanner a walk down its element stack, so an unbounded nesting would take quadratic time.
// The DOM parse that follows refuses such a document with its code.
class LimitedScanHandlers : public ScoreSAX2Handlers {
  public:
    using ScoreSAX2Handlers::ScoreSAX2Handlers;

    void startElement(XMLCh const* const uri, XMLCh const* const localname, XMLCh const* const qname,
                      Attributes const& attributes) override {
        if (++fDepth > kMaxElementDepth)
            throw kFatalError;
        ScoreSAX2Handlers::startElement(uri, localname, qname, attributes);
    }

    void endElement(XMLCh const* const uri, XMLCh const* const localname, XMLCh const* const qname) override {
        --fDepth;
        ScoreSAX2Handlers::endElement(uri, localname, qname);
    }

  private:
    XMLSize_t fDepth = 0;
};

}  // namespace

XercesDOMParser* CreateDocumentParser() {
    return new DocumentParser();
}

DOMDocument* ParseToDocument(XercesDOMParser* parser, std::istream& stream) {
    QXXML_920::QXXInputSource source(stream);
    try {
        parser->parse(source);
    } catch (VTException const&) {
        throw;
    } catch (OutOfMemoryException const&) {
        // The host's way to learn that memory ran out; the parser frees what it built when deleted.
        throw std::bad_alloc();
    } catch (XMLException const& exception) {
        ThrowCodedErrorWithDetail(260109, NarrowText(exception.getMessage()));
    } catch (DOMException const& exception) {
        ThrowCodedErrorWithDetail(260109, NarrowText(exception.getMessage()));
    } catch (...) {
        ThrowCodedError(260105);
    }
    DOMDocument* document = parser->getDocument();
    if (document == nullptr)
        ThrowCodedError(260107);
    // A document with no root element at all is the callers' 260110; one that breaks off after its
    // root began, or holds any other fatal error, is refused here rather than read in part.
    auto* own = dynamic_cast<DocumentParser*>(parser);
    if (own != nullptr && !own->FirstError().empty() && document->getDocumentElement() != nullptr)
        ThrowCodedErrorWithDetail(260109, own->FirstError());
    return document;
}

bool ScanForElement(std::string const& elementName, std::istream& stream) {
    LimitedScanHandlers handler(elementName);
    std::unique_ptr<SAX2XMLReader> reader(
        XMLReaderFactory::createXMLReader(XMLPlatformUtils::fgMemoryManager));
    reader->setFeature(XMLUni::fgSAX2CoreValidation, false);
    reader->setFeature(XMLUni::fgXercesLoadExternalDTD, false);
    reader->setFeature(XMLUni::fgXercesDynamic, true);
    reader->setFeature(XMLUni::fgSAX2CoreNameSpaces, true);
    reader->setFeature(XMLUni::fgXercesSchema, false);
    reader->setFeature(XMLUni::fgXercesSchemaFullChecking, false);
    reader->setFeature(XMLUni::fgSAX2CoreNameSpacePrefixes, false);
    reader->setFeature(XMLUni::fgXercesDisableDefaultEntityResolution, true);
    reader->setProperty(XMLUni::fgXercesSecurityManager, DocumentSecurityManager::Get());
    reader->setContentHandler(&handler);
    reader->setErrorHandler(&handler);

    QXXML_920::QXXInputSource source(stream);
    try {
        reader->parse(source);
    } catch (ScoreSAX2Handlers::HandlerState state) {
        return state == ScoreSAX2Handlers::kElementFound;
    } catch (OutOfMemoryException const&) {
        return false;
    } catch (XMLException const&) {
        return false;
    }
    return false;
}

}  // namespace QXVantry_920
