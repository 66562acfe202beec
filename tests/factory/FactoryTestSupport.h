// Helpers of the factory tests: documents as strings, catalogues as temporary files, and the text by
// which a test plug-in's model tells what its translator was given.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "vantry/diagnostics/VTException.h"
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

inline std::string WriteTempFile(std::string const& name, std::string const& content) {
    const std::string path = testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

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
