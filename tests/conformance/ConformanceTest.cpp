// Every conformance case agrees with its expected outputs, as its table entry says.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <ostream>
#include <set>
#include <string>

#include "ConformanceCase.h"
#include "tools/score/ModelLoading.h"

namespace conformance {

// Test names and messages show a case by its name.
void PrintTo(CaseEntry const& entry, std::ostream* out) {
    *out << entry.name;
}

}  // namespace conformance

namespace {

class Conformance : public ::testing::TestWithParam<conformance::CaseEntry> {};

TEST_P(Conformance, AgreesWithTheExpectedOutputs) {
    conformance::CaseEntry const& entry = GetParam();
    vantry_tool::ScoringSession session(vantry_tool::FindShippedCatalog());
    conformance::CaseOutcome const outcome = conformance::RunCase(entry, session);
    if (!outcome.skipped.empty()) {
        GTEST_SKIP() << outcome.skipped;
    }
    if (!entry.refusal.empty()) {
        EXPECT_TRUE(outcome.refusedAsTold) << "expected " << entry.refusal << " (" << entry.refusalReason
                                           << "), got '" << outcome.error << "'";
        return;
    }
    ASSERT_EQ(outcome.error, "");
    EXPECT_GT(outcome.rows, 0);
    EXPECT_EQ(outcome.agreeing, outcome.rows) << "worst relative difference " << outcome.worst;
    for (std::string const& line : outcome.disagreements) {
        ADD_FAILURE() << line;
    }
}

std::string CaseName(::testing::TestParamInfo<conformance::CaseEntry> const& info) {
    std::string name = info.param.name;
    for (char& c : name) {
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, Conformance, ::testing::ValuesIn(conformance::LoadCaseTable()), CaseName);

// Each copied case has a table entry, and a column left uncompared says why.
TEST(ConformanceTable, CoversEveryCaseAndGivesEveryReason) {
    std::set<std::string> listed;
    for (conformance::CaseEntry const& entry : conformance::LoadCaseTable()) {
        listed.insert(entry.name);
        for (conformance::ColumnRule const& rule : entry.columns) {
            EXPECT_TRUE(!rule.ours.empty() || !rule.reason.empty()) << entry.name << " " << rule.expected;
            EXPECT_TRUE(rule.ours.empty() || rule.tolerance > 0.0) << entry.name << " " << rule.expected;
        }
        EXPECT_TRUE(entry.refusal.empty() || !entry.refusalReason.empty()) << entry.name;
        for (conformance::RowOverride const& override : entry.overrides) {
            EXPECT_FALSE(override.reason.empty()) << entry.name << " " << override.expected;
        }
    }
    int documents = 0;
    for (auto const& file : std::filesystem::directory_iterator(conformance::CasesFolder() + "/cases")) {
        if (file.path().extension() == ".pmml") {
            ++documents;
            EXPECT_EQ(listed.count(file.path().stem()), 1u) << file.path();
        }
    }
    EXPECT_EQ(documents, 23);
}

}  // namespace
