// How documents come in: the stream adapter, the nearest-neighbour scan that bypasses the DOM, and
// documents that try to reach outside themselves.
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

#include <chrono>
#include <cstdlib>
#include <sstream>

#include "FactoryTestSupport.h"
#include "vantry/factory/QXXInputSource.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;
XERCES_CPP_NAMESPACE_USE

namespace {

const Names kCatalogue = {"NearestNeighborModel", "TreeModel"};

std::string ModelOf(std::string const& document) {
    return Describe(FromStream(document, kCatalogue, "CP1252", "aux.bin"));
}

// The shared corpus of real documents, beside the repository unless the environment says otherwise.
std::string ReadCorpus(std::string const& name) {
    const char* corpus = std::getenv("VANTRY_CORPUS");
    const std::string here = __FILE__;
    const std::string directory =
        corpus != nullptr ? corpus : here.substr(0, here.rfind('/')) + "/../../../shared/corpus";
    std::ifstream file(directory + "/malformed/" + name, std::ios::binary);
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

// A stream buffer over a string that cannot seek.
class ForwardOnlyBuffer : public std::stringbuf {
  public:
    explicit ForwardOnlyBuffer(std::string const& text) : std::stringbuf(text) {}

  protected:
    pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
        return pos_type(-1);
    }
    pos_type seekpos(pos_type, std::ios_base::openmode) override { return pos_type(-1); }
};

class XercesRunning : public testing::Test {
  protected:
    void SetUp() override { XMLPlatformUtils::Initialize(); }
    void TearDown() override { XMLPlatformUtils::Terminate(); }
};

}  // namespace

TEST(NearestNeighbourScan, ElementBeforeEndOfPMMLBypassesTheParser) {
    const std::string document = "<PMML><Header/><NearestNeighborModel k=\"3\"/></PMML>";
    // The translator gets the whole stream, rewound, with no encoding and the auxiliary path.
    EXPECT_EQ(ModelOf(document),
              "NearestNeighborModel|stream|" + std::to_string(document.size()) + "||aux.bin");
    // Even a document that would not parse as a whole.
    EXPECT_EQ(ModelOf("<PMML><NearestNeighborModel/><broken"), "NearestNeighborModel|stream|36||aux.bin");
    // Without the name in the catalogue its library is not looked for, although it exists.
    EXPECT_EQ(StreamCode(document, {"TreeModel"}), 260113);
}

TEST(NearestNeighbourScan, ScanStopsAtEndOfPMMLAndAtErrors) {
    // Behind the end of "PMML" the scan looks no further; the DOM route refuses what follows the root.
    EXPECT_EQ(StreamCode("<PMML><TreeModel modelName=\"t\"/></PMML><NearestNeighborModel/>", kCatalogue),
              260109);
    // A prefixed element is not the sought one.
    EXPECT_EQ(ModelOf("<PMML xmlns:x=\"urn:x\"><x:NearestNeighborModel/><TreeModel/></PMML>"),
              "TreeModel|document|PMML|TreeModel||CP1252");
    // An error before the element ends the scan: the DOM route then fails on the document.
    EXPECT_EQ(StreamCode("<PMML><a></b><NearestNeighborModel/></PMML>", kCatalogue), 260109);
    // Another root is scanned to the end.
    EXPECT_EQ(ModelOf("<Tree><NearestNeighborModel/></Tree>"), "NearestNeighborModel|stream|36||aux.bin");
}

TEST(DocumentEncoding, UTF16WithByteOrderMarkParses) {
    const std::u16string text =
        u"\uFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?><PMML><TreeModel modelName=\"\u00e9\"/></PMML>";
    std::string bytes;
    for (char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    // The plug-in transcodes by the local code page, in which the accent is not representable.
    const std::string model = ModelOf(bytes);
    EXPECT_EQ(model.rfind("TreeModel|document|PMML|TreeModel|", 0), 0u) << model;
}

TEST(DocumentEncoding, UnseekableStreamIsReadOnceAndRefusedQuietly) {
    ForwardOnlyBuffer buffer("<PMML><TreeModel/></PMML>");
    std::istream stream(&buffer);
    // The scan has consumed the stream and the rewind fails: the parse sees nothing.
    EXPECT_EQ(ErrorCodeOf([&] { return ModelFactory::MakeModelFromXML(stream, kCatalogue, ""); }), 260110);
}

TEST(HostileDocuments, ExternalEntitiesAreNeverFetched) {
    const std::string secret = WriteTempFile("secret.txt", "TOPSECRET");
    const std::string declaration = "<!DOCTYPE PMML [<!ENTITY xxe SYSTEM \"file://" + secret + "\">]>";
    // In an attribute or in content, the unresolved reference is a fatal error: the document is refused,
    // and the file's text is nowhere in the words.
    for (std::string const& body :
         {std::string("<PMML><TreeModel modelName=\"&xxe;\"/></PMML>"),
          std::string("<PMML><TreeModel modelName=\"t\">[&xxe;]</TreeModel></PMML>")}) {
        std::string message;
        EXPECT_EQ(StreamCode(declaration + body, kCatalogue, &message), 260109) << body;
        EXPECT_EQ(message.find("TOPSECRET"), std::string::npos) << message;
    }
    // An external DTD is not loaded, so its declarations are unknown and nothing is fetched.
    EXPECT_EQ(
        ModelOf("<!DOCTYPE PMML SYSTEM \"file://" + secret + "\"><PMML><TreeModel modelName=\"d\"/></PMML>"),
        "TreeModel|document|PMML|TreeModel|d|CP1252");
}

TEST(HostileDocuments, CorpusAttacksAreRefusedQuickly) {
    const std::string expansion = ReadCorpus("jpmml-model_XEEAttackTest.pmml");
    const std::string external = ReadCorpus("jpmml-model_XXEAttackTest.pmml");
    if (expansion.empty() || external.empty())
        GTEST_SKIP() << "corpus not available";
    const auto start = std::chrono::steady_clock::now();
    // Both end quickly and without a fetch: the expansion as a broken document; the reference to the
    // unread external DTD's entity is left out, and the document holds no model.
    EXPECT_EQ(StreamCode(expansion, kCatalogue), 260109);
    EXPECT_EQ(StreamCode(external, kCatalogue), 260301);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    // Predefined entities are not limited.
    std::string many = "<PMML><TreeModel modelName=\"";
    for (int i = 0; i < 50000; ++i)
        many += "&amp;";
    EXPECT_EQ(ModelOf(many + "\"/></PMML>"),
              "TreeModel|document|PMML|TreeModel|" + std::string(50000, '&') + "|CP1252");
}

TEST_F(XercesRunning, InputSourceReadsTheStreamFromWhereItStands) {
    std::istringstream text("0123456789");
    text.seekg(4);
    QXXML_920::QXXInputSource source(text);
    std::unique_ptr<BinInputStream> in(source.makeStream());
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(in->getContentType(), nullptr);
    EXPECT_EQ(in->curPos(), 4u);
    XMLByte bytes[8] = {};
    EXPECT_EQ(in->readBytes(bytes, 3), 3u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), 3), "456");
    EXPECT_EQ(in->curPos(), 7u);
    // The end reads as zero bytes, also when asked again.
    EXPECT_EQ(in->readBytes(bytes, 8), 3u);
    EXPECT_EQ(in->readBytes(bytes, 8), 0u);
    EXPECT_EQ(in->readBytes(bytes, 8), 0u);
    EXPECT_TRUE(XMLString::equals(source.getSystemId(), u"istream"));
    EXPECT_EQ(source.getEncoding(), nullptr);
    EXPECT_EQ(source.getPublicId(), nullptr);
}
