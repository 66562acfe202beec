// Conformance cases: documents of other producers scored through the factory and the shipped plug-ins,
// compared with the outputs those producers published. The table cases.csv says, per case, which
// expected column matches which output column and with what tolerance, and where the answer of the
// standard differs from a producer's, with the reason.
#pragma once

#include <string>
#include <vector>

namespace vantry_tool {
class ScoringSession;
}

namespace conformance {

// One expected column: the output column it is compared with (none: not compared, for the reason
// given) and the relative tolerance for numbers.
struct ColumnRule {
    std::string expected;
    std::string ours;
    double tolerance = 0.0;
    std::string reason;
};

// At one data row (from 1), the value the standard gives in place of the producer's, for the reason.
struct RowOverride {
    std::string expected;
    long row = 0;
    std::string value;
    std::string reason;
};

struct CaseEntry {
    std::string name;
    // "cases" for the copies beside this file, "corpus:<folder>" for a folder of $VANTRY_CORPUS.
    std::string source;
    std::vector<ColumnRule> columns;
    std::vector<RowOverride> overrides;
    // For a document the library refuses by its own rules: the start of the error line it gives
    // ("error 260120"), and why.
    std::string refusal;
    std::string refusalReason;
};

struct CaseOutcome {
    // Empty when the case ran; otherwise why it did not (a case absent from the corpus).
    std::string skipped;
    // A document or table that could not be read ("error <code>: <words>" for a refused document).
    std::string error;
    // The document was refused as its table entry says.
    bool refusedAsTold = false;
    long rows = 0;
    long agreeing = 0;
    // The largest relative difference of a compared number.
    double worst = 0.0;
    // The first disagreements, one line each.
    std::vector<std::string> disagreements;
};

// The folder of this file's cases.
std::string CasesFolder();

// The cases of cases.csv, in the table's order.
std::vector<CaseEntry> LoadCaseTable();

// Scores the case's input and compares each row with the expected output.
CaseOutcome RunCase(CaseEntry const& entry, vantry_tool::ScoringSession const& session);

// Relative difference of two numbers, measured against the larger magnitude (and never against less
// than 1e-300, so that denormal probabilities compare by their tiny absolute difference).
double RelativeDifference(double a, double b);

}  // namespace conformance
