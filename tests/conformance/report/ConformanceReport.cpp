// Prints one line per conformance case (rows, agreeing rows, worst relative difference) and a total.
#include <cstdio>
#include <iostream>

#include "../ConformanceCase.h"
#include "tools/score/ModelLoading.h"

int main() {
    vantry_tool::ScoringSession session(vantry_tool::FindShippedCatalog());
    long rows = 0;
    long agreeing = 0;
    int cases = 0;
    int passed = 0;
    std::printf("%-50s %7s %8s %10s\n", "case", "rows", "agreeing", "worst");
    for (conformance::CaseEntry const& entry : conformance::LoadCaseTable()) {
        conformance::CaseOutcome const outcome = conformance::RunCase(entry, session);
        if (!outcome.skipped.empty()) {
            std::printf("%-50s skipped: %s\n", entry.name.c_str(), outcome.skipped.c_str());
            continue;
        }
        ++cases;
        if (outcome.refusedAsTold) {
            ++passed;
            std::printf("%-50s refused as the table says: %s\n", entry.name.c_str(), outcome.error.c_str());
            continue;
        }
        if (!outcome.error.empty()) {
            std::printf("%-50s failed: %s\n", entry.name.c_str(), outcome.error.c_str());
            continue;
        }
        rows += outcome.rows;
        agreeing += outcome.agreeing;
        passed += outcome.agreeing == outcome.rows ? 1 : 0;
        std::printf("%-50s %7ld %8ld %10.3g\n", entry.name.c_str(), outcome.rows, outcome.agreeing,
                    outcome.worst);
        for (std::string const& line : outcome.disagreements) {
            std::printf("    %s\n", line.c_str());
        }
    }
    std::printf("total: %d of %d cases agree on every row; %ld of %ld rows agree\n", passed, cases, agreeing,
                rows);
    return passed == cases ? 0 : 1;
}
