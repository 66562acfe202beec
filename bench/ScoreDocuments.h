// The documents the scoring benchmark times: every case of tests/conformance (the large ones from
// $VANTRY_CORPUS), the models of examples/ and a generated forest of 200 trees, each with its input rows
// and, where the case publishes them, the expected outputs and the rules to compare them by.
#pragma once

#include <string>
#include <vector>

#include "tests/conformance/ConformanceCase.h"

namespace bench_score {

using Table = std::vector<std::vector<std::string>>;

struct BenchDocument {
    std::string name;
    // The document text as scored: the case's own, or a loadable variant of it.
    std::string text;
    // What the variant changed, empty for the case's own document.
    std::string variant;
    // A rule of the library by which its answers differ from the producer's on this document, empty for
    // none: such a document is timed whatever share of its rows disagrees.
    std::string knownDifference;
    // Input rows with their header; expected rows with their header (empty when none are published).
    Table input;
    Table expected;
    // The case's comparison rules (no columns for a document without expected outputs).
    conformance::CaseEntry entry;
};

// Every document that can be timed, in the case table's order, then examples/ and the generated forest.
// A case that cannot be made loadable, or whose corpus folder is absent, is named on the error stream and
// left out.
std::vector<BenchDocument> LoadBenchDocuments();

// The document with the fixes for the library's own refusals: a DataDictionary without numberOfFields is
// given the count of its fields (260120), and a boolean field with Value elements is read as a string
// field (260151). Answers the text unchanged for any other refusal, and says what changed in `changed`.
std::string LoadableVariant(std::string const& text, std::string const& refusal, std::string& changed);

// A classification forest of `trees` trees on the fields of the housing cases, averaged, written
// deterministically from `start`; each tree is a full binary tree of the given depth
// (two trees in five one level less).
std::string HousingForest(int trees, int depth, unsigned start);

// The rows of a CSV file, header first; throws std::runtime_error when it cannot be read.
Table ReadTable(std::string const& path);

// The whole text of a file; throws std::runtime_error when it cannot be read.
std::string ReadText(std::string const& path);

}  // namespace bench_score
