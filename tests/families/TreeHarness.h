// Loading a document through the factory and scoring cases the way a host does, for the tree tests.
#pragma once

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

namespace treetest {

using namespace QXVantry_920;

inline std::string ReadText(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::string Fixture(std::string const& name) {
    char const* root = std::getenv("VANTRY_FIXTURES");
    return ReadText(std::string(root != nullptr ? root : "tests/fixtures") + "/families/" + name);
}

// Every occurrence of `from` replaced.
inline std::string Replace(std::string text, std::string const& from, std::string const& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// The number of a cell; NaN for an empty one.
inline double Number(std::string const& cell) {
    return cell.empty() ? std::nan("") : std::strtod(cell.c_str(), nullptr);
}

// The cells of one scored case: each result variable by name ("" when missing), and "@confidence".
using Cells = std::map<std::string, std::string>;

class LoadedModel {
  public:
    explicit LoadedModel(std::string const& document) {
        std::istringstream in(document);
        fModel.reset(ModelFactory::MakeModelFromXML(in, std::vector<std::string>{"TreeModel"}, "UTF-8"));
        fRecord.reset(fModel->MakeCaseRecord());
        fResult.reset(fModel->MakeResult());
    }

    // Inputs by name, "" (or absent) for missing; names the model does not know are ignored.
    Cells Score(std::map<std::string, std::string> const& inputs) {
        ScoreDictionary const* dictionary = fModel->GetDictionary();
        for (std::string const& name : dictionary->GetVarNames()) {
            auto const found = inputs.find(name);
            if (found == inputs.end() || found->second.empty() || found->second == "NA") {
                fRecord->SetMissingValue(name);
            } else if (dictionary->GetVar(name)->IsString()) {
                fRecord->SetValue(name, found->second);
            } else {
                fRecord->SetValue(name, std::strtod(found->second.c_str(), nullptr));
            }
        }
        fModel->Score(fRecord.get(), fResult.get());
        ResultField fields;
        fModel->FillResultFields(fResult.get(), &fields);
        Cells cells;
        for (std::string const& name : fModel->GetResultDictionary()->GetVarNames()) {
            ScoreValue const* value = fields.GetResultValue(name);
            cells[name] = value != nullptr ? ScoreValue::TextOf(*value) : std::string();
        }
        cells["@confidence"] = std::to_string(fResult->GetResultConfidence());
        return cells;
    }

    ScoreModel& Model() { return *fModel; }

  private:
    std::unique_ptr<ScoreModel> fModel;
    std::unique_ptr<ScoreCaseRecord> fRecord;
    std::unique_ptr<ScoreResult> fResult;
};

}  // namespace treetest
