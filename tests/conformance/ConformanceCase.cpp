#include "ConformanceCase.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>

#include "tools/score/Csv.h"
#include "tools/score/ModelLoading.h"
#include "tools/score/RowScorer.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/host/NumberForms.h"

namespace conformance {

namespace {

constexpr std::size_t kDisagreementsKept = 5;

std::string CaseFile(CaseEntry const& entry, char const* suffix) {
    if (entry.source == "cases") {
        return CasesFolder() + "/cases/" + entry.name + suffix;
    }
    char const* corpus = std::getenv("VANTRY_CORPUS");
    std::string const folder = entry.source.substr(entry.source.find(':') + 1);
    return std::string(corpus != nullptr ? corpus : "") + "/" + folder + "/" + entry.name + suffix;
}

std::vector<std::vector<std::string>> ReadTable(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        throw std::runtime_error("cannot read " + path);
    }
    vantry_tool::CsvReader reader(file);
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> fields;
    while (reader.ReadRecord(fields)) {
        rows.push_back(fields);
    }
    return rows;
}

int ColumnOf(std::vector<std::string> const& header, std::string const& name) {
    auto const found = std::find(header.begin(), header.end(), name);
    return found == header.end() ? -1 : static_cast<int>(found - header.begin());
}

// Compares one cell; answers whether it agrees and raises worst by its numeric difference.
bool CellsAgree(std::string const& expected, std::string const& ours, double tolerance, double& worst) {
    if (vantry_tool::IsMissingCell(expected) || vantry_tool::IsMissingCell(ours)) {
        return vantry_tool::IsMissingCell(expected) == vantry_tool::IsMissingCell(ours);
    }
    if (expected == ours) {
        return true;
    }
    std::optional<double> const a = vantry::ReadNumber(expected);
    std::optional<double> const b = vantry::ReadNumber(ours);
    if (!a || !b) {
        return false;
    }
    double const difference = RelativeDifference(*a, *b);
    worst = std::max(worst, difference);
    return difference <= tolerance;
}

}  // namespace

std::string CasesFolder() {
    return VANTRY_CONFORMANCE_DIR;
}

double RelativeDifference(double a, double b) {
    if (a == b) {
        return 0.0;
    }
    return std::fabs(a - b) / std::max({std::fabs(a), std::fabs(b), 1e-300});
}

std::vector<CaseEntry> LoadCaseTable() {
    std::vector<std::vector<std::string>> const rows = ReadTable(CasesFolder() + "/cases.csv");
    std::vector<CaseEntry> specs;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        std::vector<std::string> cells = rows[i];
        cells.resize(8);
        if (specs.empty() || specs.back().name != cells[0]) {
            specs.push_back(CaseEntry{cells[0], cells[1], {}, {}, {}, {}});
        }
        if (cells[2] == "(document)") {
            specs.back().refusal = cells[6];
            specs.back().refusalReason = cells[7];
        } else if (!cells[5].empty()) {
            specs.back().overrides.push_back(
                RowOverride{cells[2], std::atol(cells[5].c_str()), cells[6], cells[7]});
        } else {
            double const tolerance = cells[4].empty() ? 0.0 : std::atof(cells[4].c_str());
            specs.back().columns.push_back(ColumnRule{cells[2], cells[3], tolerance, cells[7]});
        }
    }
    return specs;
}

CaseOutcome RunCase(CaseEntry const& entry, vantry_tool::ScoringSession const& session) {
    CaseOutcome outcome;
    std::string const pmml = CaseFile(entry, ".pmml");
    if (entry.source != "cases" && !std::ifstream(pmml).is_open()) {
        outcome.skipped = "no " + pmml + " (set VANTRY_CORPUS to the shared corpus)";
        return outcome;
    }
    try {
        std::unique_ptr<QXVantry_920::ScoreModel> model = session.LoadModel(pmml);
        if (model == nullptr) {
            throw std::runtime_error("no model built");
        }
        std::vector<std::vector<std::string>> const input = ReadTable(CaseFile(entry, ".input.csv"));
        std::vector<std::vector<std::string>> const expected = ReadTable(CaseFile(entry, ".expected.csv"));
        if (input.empty() || expected.empty() || input.size() != expected.size()) {
            throw std::runtime_error("input and expected tables differ in length");
        }
        vantry_tool::RowScorer scorer(*model, input[0]);
        std::map<std::pair<std::string, long>, std::string> overrides;
        for (RowOverride const& override : entry.overrides) {
            overrides[{override.expected, override.row}] = override.value;
        }
        std::vector<std::string> cells;
        for (std::size_t row = 1; row < input.size(); ++row) {
            scorer.ScoreRow(input[row], cells);
            ++outcome.rows;
            bool agrees = true;
            for (ColumnRule const& rule : entry.columns) {
                if (rule.ours.empty()) {
                    continue;
                }
                int const theirs = ColumnOf(expected[0], rule.expected);
                int const mine = ColumnOf(scorer.OutputNames(), rule.ours);
                if (theirs < 0 || mine < 0) {
                    throw std::runtime_error("no column " + (theirs < 0 ? rule.expected : rule.ours));
                }
                auto const overridden = overrides.find({rule.expected, static_cast<long>(row)});
                std::string const& want = overridden != overrides.end()
                                              ? overridden->second
                                              : expected[row].at(static_cast<std::size_t>(theirs));
                std::string const& got = cells[static_cast<std::size_t>(mine)];
                if (!CellsAgree(want, got, rule.tolerance, outcome.worst)) {
                    agrees = false;
                    if (outcome.disagreements.size() < kDisagreementsKept) {
                        outcome.disagreements.push_back("row " + std::to_string(row) + " " + rule.expected +
                                                        ": expected '" + want + "', got '" + got + "'");
                    }
                }
            }
            outcome.agreeing += agrees ? 1 : 0;
        }
    } catch (QXVantry_920::VTException& error) {
        outcome.error = "error " + std::to_string(error.GetErrorCode()) + ": " + error.GetErrorMessage();
    } catch (std::exception const& error) {
        outcome.error = error.what();
    }
    outcome.refusedAsTold = !entry.refusal.empty() && outcome.error.rfind(entry.refusal, 0) == 0;
    return outcome;
}

}  // namespace conformance
