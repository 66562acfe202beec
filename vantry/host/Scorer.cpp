#include "vantry/host/Scorer.h"

#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "vantry/diagnostics/CodedError.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/host/LibraryUse.h"
#include "vantry/host/NumberForms.h"
#include "vantry/host/ScoringCase.h"
#include "vantry/values/ScoreValue.h"

namespace vantry {

using QXVantry_920::NumericValue;
using QXVantry_920::ScoreValue;

namespace {

using NameIndex = std::map<std::string, int, std::less<>>;

NameIndex IndexNames(std::vector<std::string> const& names) {
    NameIndex index;
    for (std::size_t i = 0; i < names.size(); ++i) {
        index.emplace(names[i], static_cast<int>(i));
    }
    return index;
}

int Find(NameIndex const& index, std::string_view name) {
    auto const found = index.find(name);
    return found == index.end() ? -1 : found->second;
}

}  // namespace

// What a Scorer loads once and its clones share: the document's bytes and how to read them.
struct LoadedDocument {
    std::string bytes;
    std::vector<std::string> modelNames;
    std::string encoding;
};

struct Scorer::Impl {
    explicit Impl(std::shared_ptr<LoadedDocument const> loaded) : document(std::move(loaded)) {
        std::istringstream stream(document->bytes);
        model.reset(
            QXVantry_920::ModelFactory::MakeModelFromXML(stream, document->modelNames, document->encoding));
        if (model == nullptr) {
            // A plug-in that builds no model from a document it accepted.
            QXVantry_920::ThrowCodedError(260101);
        }
        scoringCase = std::make_unique<ScoringCase>(*model);
        inputs = IndexNames(scoringCase->InputNames());
        outputs = IndexNames(scoringCase->OutputNames());
    }

    // Declared first, so that the library outlives the model.
    LibraryUse use;
    std::shared_ptr<LoadedDocument const> document;
    std::unique_ptr<QXVantry_920::ScoreModel> model;
    std::unique_ptr<ScoringCase> scoringCase;
    NameIndex inputs;
    NameIndex outputs;
};

Scorer::Scorer(std::unique_ptr<Impl> impl) : fImpl(std::move(impl)) {}
Scorer::Scorer(Scorer&& other) noexcept = default;
Scorer& Scorer::operator=(Scorer&& other) noexcept = default;
Scorer::~Scorer() = default;

Scorer Scorer::FromString(std::string_view document, LoadOptions const& options) {
    auto loaded = std::make_shared<LoadedDocument>();
    loaded->bytes = std::string(document);
    loaded->encoding = options.encoding;
    loaded->modelNames = ReadCatalogNames(options.catalog);
    return Scorer(std::make_unique<Impl>(std::move(loaded)));
}

Scorer Scorer::FromStream(std::istream& stream, LoadOptions const& options) {
    std::string const bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return FromString(bytes, options);
}

Scorer Scorer::FromFile(std::string const& path, LoadOptions const& options) {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        QXVantry_920::ThrowCodedError(260103, {path});
    }
    return FromStream(file, options);
}

Scorer Scorer::Clone() const {
    return Scorer(std::make_unique<Impl>(fImpl->document));
}

std::vector<std::string> const& Scorer::InputNames() const {
    return fImpl->scoringCase->InputNames();
}

std::vector<std::string> const& Scorer::OutputNames() const {
    return fImpl->scoringCase->OutputNames();
}

int Scorer::InputIndex(std::string_view name) const {
    return Find(fImpl->inputs, name);
}

int Scorer::OutputIndex(std::string_view name) const {
    return Find(fImpl->outputs, name);
}

bool Scorer::Set(int input, double number) {
    return fImpl->scoringCase->SetNumber(input, number);
}

bool Scorer::Set(int input, std::string_view text) {
    return fImpl->scoringCase->SetText(input, std::string(text));
}

bool Scorer::SetMissing(int input) {
    return fImpl->scoringCase->SetMissing(input);
}

bool Scorer::Set(std::string_view input, double number) {
    return Set(InputIndex(input), number);
}

bool Scorer::Set(std::string_view input, std::string_view text) {
    return Set(InputIndex(input), text);
}

bool Scorer::SetMissing(std::string_view input) {
    return SetMissing(InputIndex(input));
}

void Scorer::SetAllMissing() {
    fImpl->scoringCase->SetAllMissing();
}

bool Scorer::Score() {
    return fImpl->scoringCase->Score();
}

bool Scorer::Score(std::initializer_list<Field> fields) {
    SetAllMissing();
    for (Field const& field : fields) {
        switch (field.kind) {
            case Field::kNumber:
                Set(field.name, field.number);
                break;
            case Field::kText:
                Set(field.name, field.text);
                break;
            case Field::kMissing:
                break;
        }
    }
    return Score();
}

long Scorer::StatusCode() const {
    return fImpl->scoringCase->StatusCode();
}

int Scorer::CheckedOutput(std::string_view name) const {
    int const index = OutputIndex(name);
    if (index < 0) {
        throw std::out_of_range("no output named " + std::string(name));
    }
    return index;
}

double Scorer::Number(int output) const {
    ScoreValue const* value = fImpl->scoringCase->Output(output);
    if (value == nullptr || value->IsSystemMissingValue()) {
        return NumericValue::GetSysmisValue();
    }
    if (ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE) {
        return ReadNumber(ScoreValue::TextOf(*value)).value_or(NumericValue::GetSysmisValue());
    }
    return value->GetDouble();
}

double Scorer::Number(std::string_view output) const {
    return Number(CheckedOutput(output));
}

std::string Scorer::Text(int output) const {
    return ValueText(fImpl->scoringCase->Output(output));
}

std::string Scorer::Text(std::string_view output) const {
    return Text(CheckedOutput(output));
}

bool Scorer::IsMissing(int output) const {
    ScoreValue const* value = fImpl->scoringCase->Output(output);
    if (value == nullptr || value->IsSystemMissingValue()) {
        return true;
    }
    return ScoreValue::TypeOf(*value) == ScoreValue::STRING_VALUE && ScoreValue::TextOf(*value).empty();
}

bool Scorer::IsMissing(std::string_view output) const {
    return IsMissing(CheckedOutput(output));
}

QXVantry_920::ScoreModel& Scorer::Model() const {
    return *fImpl->model;
}

}  // namespace vantry
