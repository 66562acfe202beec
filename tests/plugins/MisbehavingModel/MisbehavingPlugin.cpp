// A plug-in that misbehaves on demand, for the tests of what leaves the factory. Its translator reads
// the first "MisbehavingModel" element of a document (or the element it is given):
//   throw="vt|bad_alloc|std|own"  the slot throws a VTException (260303), std::bad_alloc, a
//                                  std::runtime_error("plug-in failed") or an exception type of its own
//   a child "MisbehavingModel"     is built first through the factory's element route, as a segment's
//                                  model is; the answer's version text counts the levels
// Before failing it holds a model it has built, so that a leak of its own would show.
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>

#include <xercesc/dom/DOM.hpp>

#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/BaseModel.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ModelPlugin.h"
#include "vantry/factory/VersionInfo.h"
#include "vantry/translate/BaseTranslator.h"

XERCES_CPP_NAMESPACE_USE
using namespace QXVantry_920;

namespace {

constexpr char kName[] = "MisbehavingModel";

struct PluginOwnFailure {
    int reason;
};

class LevelModel : public BaseModel {
  public:
    explicit LevelModel(int levels) : fLevels(levels) {
        SetVersionInfo(new VersionInfo(std::string(kName) + "|" + std::to_string(levels)));
    }
    QXScore::QXStatus Score(ScoreCaseRecord*, ScoreResult*) override { return {}; }
    ScoreResult* MakeResult() const override { return nullptr; }
    ScoreCaseRecord* MakeCaseRecord() const override { return nullptr; }
    QXScore::QXStatus FillResultFields(ScoreResult const*, ScoreResultField*) override { return {}; }
    bool HasOwnProbabilityOutput() override { return false; }
    void Display(std::ostream&) const override {}

    int fLevels;
};

class MisbehavingTranslator : public BaseTranslator {
  public:
    using BaseTranslator::ParseFromTree;

    ScoreModel* ParseFromTree(DOMDocument* document, std::string const&) override {
        DOMNodeList* elements = GetElementsByTagName(document, kName);
        return Build(elements->getLength() > 0 ? static_cast<DOMElement*>(elements->item(0)) : nullptr);
    }

    ScoreModel* ParseFromTree(DOMElement* element, ScoreModel*, std::string const&) override {
        return Build(element);
    }

  private:
    ScoreModel* Build(DOMElement* element) {
        if (element == nullptr)
            return nullptr;
        std::unique_ptr<ScoreModel> inner;
        for (DOMNode* child = element->getFirstChild(); child != nullptr; child = child->getNextSibling()) {
            if (child->getNodeType() == DOMNode::ELEMENT_NODE && ToString(child->getNodeName()) == kName) {
                inner.reset(ModelFactory::MakeModelFromXML(child, {kName}, nullptr, ""));
                break;
            }
        }
        auto model =
            std::make_unique<LevelModel>(inner ? static_cast<LevelModel*>(inner.get())->fLevels + 1 : 1);
        const std::string kind = ToString(GetAttribute(element, "throw"));
        if (kind == "vt") {
            VTException exception;
            exception.PutErrorMessage(260303, "sometimes", "throw");
            throw exception;
        }
        if (kind == "bad_alloc")
            throw std::bad_alloc();
        if (kind == "std")
            throw std::runtime_error("plug-in failed");
        if (kind == "own")
            throw PluginOwnFailure{7};
        return model.release();
    }
};

}  // namespace

VANTRY_PLUGIN_EXPORT BaseTranslator* GiveMyTranslator() {
    return new MisbehavingTranslator();
}
