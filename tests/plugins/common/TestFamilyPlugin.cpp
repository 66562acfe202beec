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
//   <family>|dictionary|...  the same, for the slot with a dictionary
//   <family>|stream|<bytes read>|<encoding>|<auxiliary path>[|names=...]
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <xercesc/dom/DOM.hpp>

#include "vantry/factory/ModelPlugin.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/VersionInfo.h"
#include "vantry/translate/BaseTranslator.h"

XERCES_CPP_NAMESPACE_USE
using namespace QXVantry_920;

namespace {

class TestModel : public ScoreModel {
  public:
    explicit TestModel(std::string const& description) : fVersion(new VersionInfo(description)) {}
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
    QXScore::QXStatus ModelOperation8(ScoreCaseRecord*, ScoreResult*) override { return {}; }
    int GetVarRole(std::string const&) const override { return -1; }
    int GetVarRole(ScoreDictVar const*) const override { return -1; }
    ScoreVersionInfo const* GetVersionInfo() const override { return fVersion; }
    ScoreResult* ModelOperation12() const override { return nullptr; }
    ScoreDictVar const* GetTargetVar() const override { return nullptr; }
    ScoreDictionary const* GetDictionary() const override { return nullptr; }
    TransformationDictionary* GetTransformationDictionary() const override { return nullptr; }
    ScoreDictionary* GetResultDictionary() const override { return nullptr; }
    QXScore::QXStatus ModelOperation17(void*) override { return {}; }
    MVPolicy GetMissingValuePolicy() override { return kDEFAULT_MV_POLICY; }
    QXScore::QXStatus ModelOperation19(void*) override { return {}; }
    bool HasOwnProbabilityOutput() override { return false; }
    QXScore::QXStatus ModelOperation21(void*) override { return {}; }

  private:
    ScoreVersionInfo* fVersion;
};

class TestTranslator : public BaseTranslator {
  public:
    using BaseTranslator::ParseFromTree;

    ScoreModel* ParseFromTree(DOMDocument* document, std::string const& encoding) override {
#ifdef TEST_NULL_TRANSLATOR
        static_cast<void>(document);
        static_cast<void>(encoding);
        return nullptr;
#else
        return DescribeDocument("document", document, encoding);
#endif
    }

    ScoreModel* ParseFromTree(DOMDocument* document, ScoreDictionary*, std::string const& encoding) override {
        return DescribeDocument("dictionary", document, encoding);
    }

    ScoreModel* ParseFromTree(std::istream& stream, std::string const& encoding,
                              std::string const& auxiliaryPath) override {
        const std::string content((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        return new TestModel(std::string(TEST_FAMILY) + "|stream|" + std::to_string(content.size()) + "|" +
                             encoding + "|" + auxiliaryPath + Names());
    }

    void TakeModelNames(std::vector<std::string> const& names) {
        fNames = names;
    }

  private:
    ScoreModel* DescribeDocument(char const* slot, DOMDocument* document, std::string const& encoding) {
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
        return new TestModel(description + Names());
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
