// A model family for the factory's tests, compiled into several plug-ins. What a plug-in does is set
// by definitions in its CMakeLists:
//   TEST_FAMILY            the family's model name, which the translator looks for in a document
//   TEST_PASS_MODEL_NAMES  also export PassModelNames
//   TEST_NO_GIVE           export no GiveMyTranslator
//   TEST_NULL_TRANSLATOR   the translator answers null on every slot
// and, at run time, GiveMyTranslator answers null while VANTRY_TEST_NULL_GIVE names the family.
//
// The model it builds describes, in its version text, what the translator was given:
//   <family>|document|<root tag>|<model element>|<modelName attribute>|<encoding>[|count=N][|text=T]
//       [|names=a,b]
//   <family>|dictionary|...  the same, for the slot with a dictionary, plus |vars=N (-1 for none)
//   <family>|stream|<bytes read>|<encoding>|<auxiliary path>[|names=...]
//   <family>|parent|<element>|<modelName attribute>|<encoding>|parent=<parent's version text>
//   <family>|element|<element>|<modelName attribute>|<encoding>|vars=N,M[|old][|names=...]
//   <family>|three|<first>|<second>|<element>|<encoding>[|old][|names=...]
// It keeps the element it was built from (the root, for whole documents) and shows that element's
// current name through Display, so a test can tell whether the DOM outlived the factory call.
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <xercesc/dom/DOM.hpp>

#include "vantry/factory/ModelPlugin.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/VersionInfo.h"
#include "vantry/translate/BaseTranslator.h"
#include "vantry/values/ScoreDictionary.h"

XERCES_CPP_NAMESPACE_USE
using namespace QXVantry_920;

namespace {

// The ASCII text of a DOM name, without the parser's transcoding service.
std::string Ascii(XMLCh const* text) {
    std::string result;
    for (; text != nullptr && *text != 0; ++text)
        result += static_cast<char>(*text);
    return result;
}

std::string VarCount(ScoreDictionary const* dictionary) {
    return std::to_string(dictionary == nullptr ? -1 : dictionary->Size());
}

class TestModel : public ScoreModel {
  public:
    TestModel(std::string const& description, DOMNode* kept)
        : fVersion(new VersionInfo(description)), fKept(kept) {}
    ~TestModel() override { delete fVersion; }

    void SetScoreDictionary(ScoreDictionary*) override {}
    void SetTransformationScoreDictionary(TransformationDictionary*) override {}
    void SetResultScoreDictionary(ScoreDictionary*) override {}
    bool SetVarRole(std::string const&, VarRole) override { return false; }
    bool SetVarRole(ScoreDictVar const*, VarRole) override { return false; }
    void SetMissingValuePolicy(MVPolicy) override {}
    void SetVersionInfo(ScoreVersionInfo* versionInfo) override {
        delete fVersion;
        fVersion = versionInfo;
    }
    QXScore::QXStatus Score(ScoreCaseRecord*, ScoreResult*) override { return {}; }
    int GetVarRole(std::string const&) const override { return -1; }
    int GetVarRole(ScoreDictVar const*) const override { return -1; }
    ScoreVersionInfo const* GetVersionInfo() const override { return fVersion; }
    ScoreResult* MakeResult() const override { return nullptr; }
    ScoreDictVar const* GetTargetVar() const override { return nullptr; }
    ScoreDictionary const* GetDictionary() const override { return nullptr; }
    TransformationDictionary* GetTransformationDictionary() const override { return nullptr; }
    ScoreDictionary* GetResultDictionary() const override { return nullptr; }
    ScoreCaseRecord* MakeCaseRecord() const override { return nullptr; }
    MVPolicy GetMissingValuePolicy() override { return kDEFAULT_MV_POLICY; }
    QXScore::QXStatus FillResultFields(ScoreResult const*, ScoreResultField*) override { return {}; }
    bool HasOwnProbabilityOutput() override { return false; }
    void Display(std::ostream& out) const override {
        out << (fKept == nullptr ? "" : Ascii(fKept->getNodeName()));
    }

  private:
    ScoreVersionInfo* fVersion;
    DOMNode* fKept;
};

class TestTranslator : public BaseTranslator {
  public:
    using BaseTranslator::ParseFromTree;

    ScoreModel* ParseFromTree(DOMDocument* document, std::string const& encoding) override {
        return DescribeDocument("document", document, encoding);
    }

    ScoreModel* ParseFromTree(DOMDocument* document, ScoreDictionary* dictionary,
                              std::string const& encoding) override {
        return DescribeDocument("dictionary", document, encoding, "|vars=" + VarCount(dictionary));
    }

    ScoreModel* ParseFromTree(DOMElement* element, ScoreModel* parent, std::string const& encoding) override {
        const std::string parentText =
            parent == nullptr ? "none" : parent->GetVersionInfo()->GetVersionInfo();
        return Make(Family("parent") + Ascii(element->getTagName()) + "|" +
                        ToString(GetAttribute(element, "modelName")) + "|" + encoding +
                        "|parent=" + parentText,
                    element);
    }

    ScoreModel* ParseFromTree(DOMElement* element, ScoreDictionary* dictionary, ScoreDictionary* second,
                              std::string const& encoding) override {
        return Make(Family("element") + Ascii(element->getTagName()) + "|" +
                        ToString(GetAttribute(element, "modelName")) + "|" + encoding +
                        "|vars=" + VarCount(dictionary) + "," + VarCount(second) + Old() + Names(),
                    element);
    }

    ScoreModel* ParseFromTree(DOMElement* first, DOMElement* second, DOMElement* element,
                              std::string const& encoding) override {
        return Make(Family("three") + (first == nullptr ? "" : Ascii(first->getTagName())) + "|" +
                        (second == nullptr ? "" : Ascii(second->getTagName())) + "|" +
                        Ascii(element->getTagName()) + "|" + encoding + Old() + Names(),
                    element);
    }

    void SetSupportOldParser(bool support) override { fOldParser = support; }

    ScoreModel* ParseFromTree(std::istream& stream, std::string const& encoding,
                              std::string const& auxiliaryPath) override {
        const std::string content((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        return Make(Family("stream") + std::to_string(content.size()) + "|" + encoding + "|" + auxiliaryPath +
                        Names(),
                    nullptr);
    }

    void TakeModelNames(std::vector<std::string> const& names) { fNames = names; }

  private:
    static ScoreModel* Make(std::string const& description, DOMNode* kept) {
#ifdef TEST_NULL_TRANSLATOR
        static_cast<void>(description);
        static_cast<void>(kept);
        return nullptr;
#else
        return new TestModel(description, kept);
#endif
    }

    static std::string Family(char const* slot) {
        return std::string(TEST_FAMILY) + "|" + slot + "|";
    }

    std::string Old() const {
        return fOldParser ? "|old" : "";
    }

    ScoreModel* DescribeDocument(char const* slot, DOMDocument* document, std::string const& encoding,
                                 std::string const& extra = std::string()) {
        DOMElement* root = document->getDocumentElement();
        DOMNodeList* elements = GetElementsByTagName(document, TEST_FAMILY);
        auto* element = elements->getLength() > 0 ? static_cast<DOMElement*>(elements->item(0)) : root;
        std::string description = std::string(TEST_FAMILY) + "|" + slot + "|" + ToString(root->getTagName()) +
                                  "|" + ToString(element->getTagName()) + "|" +
                                  ToString(GetAttribute(element, "modelName")) + "|" + encoding;
        // A bad count fails the translation with the reader's own exception.
        if (element->hasAttribute(u"count")) {
            description += "|count=" + std::to_string(VerifyInt(GetAttributeForced(element, "count")));
        }
        const std::string text = ToString(element->getTextContent());
        if (!text.empty())
            description += "|text=" + text;
        return Make(description + extra + Names(), root);
    }

    std::string Names() const {
        if (fNames.empty())
            return std::string();
        std::string joined = "|names=";
        for (std::size_t i = 0; i < fNames.size(); ++i)
            joined += (i > 0 ? "," : "") + fNames[i];
        return joined;
    }

    std::vector<std::string> fNames;
    bool fOldParser = false;
};

}  // namespace

#ifndef TEST_NO_GIVE
VANTRY_PLUGIN_EXPORT BaseTranslator* GiveMyTranslator() {
    const char* nullFamily = std::getenv("VANTRY_TEST_NULL_GIVE");
    if (nullFamily != nullptr && std::strcmp(nullFamily, TEST_FAMILY) == 0)
        return nullptr;
    return new TestTranslator();
}
#else
// A library that is a plug-in in name only.
VANTRY_PLUGIN_EXPORT int NotATranslator() {
    return 0;
}
#endif

#ifdef TEST_PASS_MODEL_NAMES
VANTRY_PLUGIN_EXPORT bool PassModelNames(BaseTranslator* translator,
                                         std::vector<std::string> const& modelNames) {
    static_cast<TestTranslator*>(translator)->TakeModelNames(modelNames);
    return true;
}
#endif
