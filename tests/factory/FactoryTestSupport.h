// Helpers of the factory tests: documents as strings, catalogues as temporary files, and the text by
// which a test plug-in's model tells what its translator was given.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/BaseModel.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ScoreModel.h"

namespace vantry_test {

using Names = std::vector<std::string>;

// The description of a test plug-in's model (see tests/plugins/common), or "null" for no model.
inline std::string Describe(QXVantry_920::ScoreModel* model) {
    std::unique_ptr<QXVantry_920::ScoreModel> owned(model);
    if (!owned)
        return "null";
    return owned->GetVersionInfo()->GetVersionInfo();
}

// Runs a factory call and answers the code of the VTException it throws, or 0.
template <typename Call>
int ErrorCodeOf(Call call, std::string* message = nullptr) {
    try {
        std::unique_ptr<QXVantry_920::ScoreModel> model(call());
    } catch (QXVantry_920::VTException& exception) {
        if (message != nullptr)
            *message = exception.GetErrorMessage();
        return exception.GetErrorCode();
    }
    return 0;
}

// The stream route: the model a document gives (with an auxiliary path only when one is named), and
// the code of the refusal it gives, or 0.
inline QXVantry_920::ScoreModel* FromStream(std::string const& document, Names const& names,
                                            std::string const& encoding = "",
                                            char const* auxiliaryPath = nullptr) {
    std::istringstream stream(document);
    if (auxiliaryPath != nullptr)
        return QXVantry_920::ModelFactory::MakeModelFromXML(stream, names, encoding, auxiliaryPath);
    return QXVantry_920::ModelFactory::MakeModelFromXML(stream, names, encoding);
}

inline std::string StreamModel(std::string const& document, Names const& names,
                               std::string const& encoding = "") {
    return Describe(FromStream(document, names, encoding));
}

inline int StreamCode(std::string const& document, Names const& names, std::string* message = nullptr) {
    return ErrorCodeOf([&] { return FromStream(document, names); }, message);
}

// ctest runs each test in a process of its own, several at once: the process id keeps their files apart.
inline std::string WriteTempFile(std::string const& name, std::string const& content) {
    const std::string path = testing::TempDir() + std::to_string(getpid()) + "_" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

// The smallest model: the family's own slots do nothing; the fallback answer is open to the test.
class TinyModel : public QXVantry_920::BaseModel {
  public:
    using BaseModel::HandleMissingValue;

    QXScore::QXStatus Score(QXVantry_920::ScoreCaseRecord*, QXVantry_920::ScoreResult*) override {
        return {};
    }
    QXVantry_920::ScoreResult* MakeResult() const override { return nullptr; }
    QXVantry_920::ScoreCaseRecord* MakeCaseRecord() const override { return nullptr; }
    QXScore::QXStatus FillResultFields(QXVantry_920::ScoreResult const*,
                                       QXVantry_920::ScoreResultField*) override {
        return {};
    }
    bool HasOwnProbabilityOutput() override { return ownProbabilities; }
    void Display(std::ostream&) const override {}

    bool ownProbabilities = false;
};

// Keeps the factory's process-wide state as a test found it.
class FactoryStateTest : public testing::Test {
  protected:
    void SetUp() override {
        savedInitialized = QXVantry_920::ModelFactory::fInitialized;
        savedNames = QXVantry_920::ModelFactory::fModelNames;
    }
    void TearDown() override {
        QXVantry_920::ModelFactory::fInitialized = savedInitialized;
        QXVantry_920::ModelFactory::fModelNames = savedNames;
    }

    bool savedInitialized = false;
    Names savedNames;
};

}  // namespace vantry_test
