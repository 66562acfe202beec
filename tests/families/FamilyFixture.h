// Scoring documents through the factory and the shipped plug-ins, as a host does.
#pragma once

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"
#include "vantry/values/ScoreValue.h"

namespace families {

using namespace QXVantry_920;

inline std::vector<std::string> const& Catalogue() {
    static std::vector<std::string> const names{"MiningModel", "TreeModel", "RegressionModel"};
    return names;
}

inline std::string ReadText(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::string Fixture(std::string const& name) {
    char const* root = std::getenv("VANTRY_FIXTURES");
    return ReadText(std::string(root != nullptr ? root : "tests/fixtures") + "/families/" + name);
}

inline std::unique_ptr<ScoreModel> Load(std::string const& document) {
    std::istringstream stream(document);
    return std::unique_ptr<ScoreModel>(ModelFactory::MakeModelFromXML(stream, Catalogue(), ""));
}

// The code of the VTException that loading the document throws, 0 if it loads.
inline long RefusalCode(std::string const& document) {
    try {
        Load(document);
    } catch (VTException const& error) {
        return error.GetErrorCode();
    }
    return 0;
}

// The first occurrence of each `from` replaced by its `to`.
inline std::string Edited(std::string text, std::vector<std::pair<std::string, std::string>> const& edits) {
    for (auto const& [from, to] : edits) {
        std::size_t const at = text.find(from);
        if (at != std::string::npos) {
            text.replace(at, from.size(), to);
        }
    }
    return text;
}

// The cells of a comma-separated text, row by row; a line ending in a comma has an empty last cell.
inline std::vector<std::vector<std::string>> ReadCsv(std::string const& text) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::vector<std::string> cells;
        std::istringstream fields(line);
        for (std::string cell; std::getline(fields, cell, ',');) {
            cells.push_back(cell);
        }
        if (!line.empty() && line.back() == ',') {
            cells.emplace_back();
        }
        rows.push_back(cells);
    }
    return rows;
}

inline bool IsNumber(std::string const& text, double& x) {
    char* end = nullptr;
    x = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0;
}

// One input: a number, a text, or missing (an empty text on a numeric field stays missing).
struct Input {
    std::string name;
    std::string text;
    bool number;
};
inline Input Num(std::string name, double x) {
    std::ostringstream text;
    text.precision(17);
    text << x;
    return Input{std::move(name), text.str(), true};
}
inline Input Text(std::string name, std::string text) {
    return Input{std::move(name), std::move(text), false};
}

// A model with a record, a result and result fields, as a host keeps them. A model that does not come
// (a null one) fails the test by an exception.
class Scorer {
  public:
    explicit Scorer(ScoreModel* model)
        : fModel(Checked(model)), fRecord(fModel->MakeCaseRecord()), fResult(fModel->MakeResult()) {}
    // Owns the model of the document.
    explicit Scorer(std::string const& document)
        : fOwned(Load(document)),
          fModel(Checked(fOwned.get())),
          fRecord(fModel->MakeCaseRecord()),
          fResult(fModel->MakeResult()) {}

    // Scores one case (unset inputs missing) and fills the result fields.
    Scorer& Score(std::vector<Input> const& inputs) {
        for (std::string const& name : fRecord->GetVarNames(true)) {
            ScoreDictVar const* variable = fModel->GetDictionary()->GetVar(name);
            if (variable != nullptr && variable->IsString()) {
                Put(name, new StringValue(std::string()));
            } else {
                Put(name, new NumericValue());
            }
        }
        for (Input const& input : inputs) {
            if (input.number) {
                Put(input.name, new NumericValue(std::strtod(input.text.c_str(), nullptr)));
            } else {
                Put(input.name, new StringValue(input.text));
            }
        }
        fStatus = fModel->Score(fRecord.get(), fResult.get()).GetErrorCode();
        fModel->FillResultFields(fResult.get(), &fFields);
        return *this;
    }
    long Status() const { return fStatus; }

    // The output's value as text ("" for missing), or its number.
    std::string TextOf(std::string const& name) const {
        ScoreValue const* value = fFields.GetResultValue(name);
        if (value == nullptr || value->IsSystemMissingValue()) {
            return std::string();
        }
        return ScoreValue::TextOf(*value);
    }
    double NumberOf(std::string const& name) const {
        ScoreValue const* value = fFields.GetResultValue(name);
        return value == nullptr ? NumericValue::GetSysmisValue() : value->GetDouble();
    }
    bool IsMissing(std::string const& name) const { return TextOf(name).empty(); }

    // The result's own prediction; null when it is missing (the missing number or an empty text).
    ScoreValue const* Prediction() const {
        ScoreValue const* value = fResult->GetResultValue();
        bool const missing =
            value == nullptr || value->IsSystemMissingValue() ||
            (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE && ScoreValue::TextOf(*value).empty());
        return missing ? nullptr : value;
    }
    double Probability(std::string const& category) const {
        auto const* classification = dynamic_cast<ScoreClsResult const*>(fResult.get());
        StringValue const value(category);
        return classification == nullptr ? std::nan("") : classification->GetProbabilityOfValue(&value);
    }
    ScoreModel& Model() const { return *fModel; }
    ScoreResult const* Result() const { return fResult.get(); }

  private:
    static ScoreModel* Checked(ScoreModel* model) {
        if (model == nullptr) {
            throw std::runtime_error("the document gives no model");
        }
        return model;
    }
    void Put(std::string const& name, ScoreValue* value) {
        fRecord->Remove(name);
        fRecord->Add(name, value);
    }

    std::unique_ptr<ScoreModel> fOwned;
    ScoreModel* fModel;
    std::unique_ptr<ScoreCaseRecord> fRecord;
    std::unique_ptr<ScoreResult> fResult;
    ResultField fFields;
    long fStatus = 0;
};

}  // namespace families
