#include "bench/ScoreDocuments.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tools/score/Csv.h"

namespace bench_score {

namespace {

std::string CorpusFolder() {
    char const* corpus = std::getenv("VANTRY_CORPUS");
    return corpus != nullptr ? corpus : VANTRY_SOURCE_DIR "/../shared/corpus";
}

// The path of a case's file: beside the case table, or in a folder of the shared corpus.
std::string CaseFile(conformance::CaseEntry const& entry, char const* suffix) {
    if (entry.source == "cases") {
        return conformance::CasesFolder() + "/cases/" + entry.name + suffix;
    }
    return CorpusFolder() + "/" + entry.source.substr(entry.source.find(':') + 1) + "/" + entry.name + suffix;
}

std::size_t Count(std::string const& text, std::string const& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

}  // namespace

std::string ReadText(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        throw std::runtime_error("cannot read " + path);
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

Table ReadTable(std::string const& path) {
    std::istringstream in(ReadText(path));
    vantry_tool::CsvReader reader(in);
    Table rows;
    std::vector<std::string> fields;
    while (reader.ReadRecord(fields)) {
        rows.push_back(fields);
    }
    return rows;
}

std::string LoadableVariant(std::string const& text, std::string const& refusal, std::string& changed) {
    std::string variant = text;
    if (refusal.rfind("error 260120", 0) != 0 && refusal.rfind("error 260151", 0) != 0) {
        return variant;
    }
    // Both fixes apply wherever they are needed: producers that write boolean fields also leave the
    // count out.
    std::size_t const at = variant.find("<DataDictionary");
    std::size_t const end = variant.find('>', at);
    if (at != std::string::npos && variant.substr(at, end - at).find("numberOfFields") == std::string::npos) {
        std::string const count = std::to_string(Count(variant, "<DataField "));
        variant.insert(at + 15, " numberOfFields=\"" + count + "\"");
        changed = "numberOfFields=\"" + count + "\" added to the DataDictionary";
    }
    std::string const from = "dataType=\"boolean\"";
    if (variant.find(from) != std::string::npos) {
        for (std::size_t found = variant.find(from); found != std::string::npos;
             found = variant.find(from, found)) {
            variant.replace(found, from.size(), "dataType=\"string\"");
        }
        changed += (changed.empty() ? "" : "; ") + std::string("the boolean field read as a string field");
    }
    return variant;
}

std::vector<BenchDocument> LoadBenchDocuments() {
    std::vector<BenchDocument> documents;
    for (conformance::CaseEntry const& entry : conformance::LoadCaseTable()) {
        BenchDocument document;
        document.name = entry.name;
        document.entry = entry;
        try {
            document.text = ReadText(CaseFile(entry, ".pmml"));
            document.input = ReadTable(CaseFile(entry, ".input.csv"));
            document.expected = ReadTable(CaseFile(entry, ".expected.csv"));
        } catch (std::exception const& error) {
            std::fprintf(stderr, "%s skipped: %s (set VANTRY_CORPUS to the shared corpus)\n",
                         entry.name.c_str(), error.what());
            continue;
        }
        if (!entry.refusal.empty()) {
            document.text = LoadableVariant(document.text, entry.refusal, document.variant);
            if (document.variant.empty()) {
                std::fprintf(stderr, "%s skipped: refused with %s\n", entry.name.c_str(),
                             entry.refusal.c_str());
                continue;
            }
        }
        // The library's NormDiscrete is 1 for every present value, whatever the value, so a one-hot
        // encoding through it is not the producer's.
        if (document.text.find("<NormDiscrete") != std::string::npos) {
            document.knownDifference = "NormDiscrete is 1 for every present value";
        }
        documents.push_back(std::move(document));
    }
    BenchDocument example;
    example.name = "example_iris_regression";
    example.text = ReadText(VANTRY_SOURCE_DIR "/examples/iris_regression.pmml");
    example.input = ReadTable(VANTRY_SOURCE_DIR "/examples/iris.csv");
    documents.push_back(std::move(example));

    // A forest of the size the aims name: 200 trees, about 15 MB, on the housing fields.
    for (BenchDocument const& document : documents) {
        if (document.name == "cpmml_HousingLRClassifier") {
            BenchDocument forest;
            forest.name = "generated_forest_200";
            forest.text = HousingForest(200, 8, 20261124u);
            forest.input = document.input;
            documents.push_back(std::move(forest));
            break;
        }
    }
    return documents;
}

}  // namespace bench_score
