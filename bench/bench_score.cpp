// Scoring whole models: every document of tests/conformance and examples/ (the large case from
// $VANTRY_CORPUS) and a generated forest of 200 trees. Per document:
// - load time and resident memory after load, measured in a fresh process: the program runs itself
//   with --load-probe on the document, which loads it once and reports VmRSS from /proc/self/status;
// - ns per record: one case record per input row, filled from the parsed cells before timing; the timed
//   loop calls Score on every record in turn, one thread. Before timing, every record is scored once and
//   the answers are compared with the case's expected outputs by its rules in cases.csv; a document
//   whose answers disagree is not timed, unless a known rule of the library explains the difference.
// - allocations per record: calls of the global operator new during the timed loop.
// Run with --write-documents DIR to write each document as scored (variants included) with its input,
// for timing the scoring command (scripts/bench_rows.sh).
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/ScoreDocuments.h"
#include "tools/score/ModelLoading.h"
#include "tools/score/RowScorer.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ResultField.h"
#include "vantry/factory/ScoreModel.h"
#include "vantry/factory/ScoreResult.h"
#include "vantry/host/NumberForms.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"

#include "CountingAllocator.h"

extern char** environ;

namespace {

using bench_score::BenchDocument;
using QXVantry_920::ScoreCaseRecord;
using QXVantry_920::ScoreDictVar;
using QXVantry_920::ScoreModel;

long ResidentKiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::atol(line.c_str() + 6);
        }
    }
    return -1;
}

// In the fresh process: loads the document once, prints the load time and the resident memory before
// and after it.
int LoadProbe(char const* path) {
    vantry_tool::ScoringSession session(vantry_tool::FindShippedCatalog());
    long const before = ResidentKiB();
    auto const start = std::chrono::steady_clock::now();
    std::unique_ptr<ScoreModel> model;
    try {
        model = session.LoadModel(path);
    } catch (QXVantry_920::VTException& error) {
        std::fprintf(stderr, "error %d: %s\n", error.GetErrorCode(), error.GetErrorMessage().c_str());
        return 2;
    }
    double const ms =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    std::printf("%.3f %ld %ld\n", ms, before, ResidentKiB());
    return model ? 0 : 2;
}

struct LoadFigures {
    double ms = -1;
    double rssMiB = -1;
    double rssGrowthMiB = -1;
};

LoadFigures ProbeInFreshProcess(std::string const& path) {
    LoadFigures figures;
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0) {
        return figures;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
    char self[] = "/proc/self/exe";
    char flag[] = "--load-probe";
    std::vector<char> file(path.begin(), path.end());
    file.push_back('\0');
    char* argv[] = {self, flag, file.data(), nullptr};
    pid_t child = 0;
    int const spawned = posix_spawn(&child, self, &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    std::string output;
    char buffer[256];
    for (ssize_t got; (got = read(pipeEnds[0], buffer, sizeof(buffer))) > 0;) {
        output.append(buffer, static_cast<std::size_t>(got));
    }
    close(pipeEnds[0]);
    int status = 0;
    if (spawned != 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        return figures;
    }
    long before = 0;
    long after = 0;
    if (std::sscanf(output.c_str(), "%lf %ld %ld", &figures.ms, &before, &after) == 3) {
        figures.rssMiB = after / 1024.0;
        figures.rssGrowthMiB = (after - before) / 1024.0;
    }
    return figures;
}

// One input row as a host holds it once its cells are parsed: per record slot a number, a text or
// missing. A text is kept for text fields; other cells are read as numbers (true and false as 1 and 0).
struct PreparedCell {
    int slot;
    enum Kind { kMissing, kNumber, kText } kind;
    double number;
    std::string text;
};
using PreparedRow = std::vector<PreparedCell>;

std::vector<PreparedRow> PrepareRows(ScoreModel const& model, bench_score::Table const& input) {
    std::unique_ptr<ScoreCaseRecord> const layout(model.MakeCaseRecord());
    std::vector<PreparedRow> rows;
    for (std::size_t row = 1; row < input.size(); ++row) {
        PreparedRow prepared;
        for (std::string const& name : layout->GetVarNames(true)) {
            PreparedCell cell{layout->GetIndex(name), PreparedCell::kMissing, 0.0, std::string()};
            ScoreDictVar const* var = model.GetDictionary()->GetVar(name);
            std::string const* text = nullptr;
            for (std::size_t column = 0; column < input[0].size() && text == nullptr; ++column) {
                if (input[0][column] == name && column < input[row].size()) {
                    text = &input[row][column];
                }
            }
            if (text == nullptr || vantry_tool::IsMissingCell(*text)) {
                cell.kind = PreparedCell::kMissing;
            } else if (var != nullptr && var->GetVarType() == ScoreDictVar::STRING_VAR) {
                cell.kind = PreparedCell::kText;
                cell.text = *text;
            } else {
                std::optional<double> const number = vantry::ReadNumber(*text);
                cell.kind = PreparedCell::kNumber;
                cell.number = number ? *number : *text == "true" ? 1.0 : *text == "false" ? 0.0 : -1.0;
            }
            prepared.push_back(std::move(cell));
        }
        rows.push_back(std::move(prepared));
    }
    return rows;
}

// Puts a prepared row into a record of the model, as a host refills its one record for each case.
void FillRecord(ScoreCaseRecord& record, PreparedRow const& row) {
    for (PreparedCell const& cell : row) {
        switch (cell.kind) {
            case PreparedCell::kMissing:
                record.SetMissingValue(cell.slot);
                break;
            case PreparedCell::kNumber:
                record.SetValue(cell.slot, cell.number);
                break;
            case PreparedCell::kText:
                record.SetValue(cell.slot, cell.text);
                break;
        }
    }
}

// A record of its own for every row, for the answers' check.
std::vector<std::unique_ptr<ScoreCaseRecord>> MakeRecords(ScoreModel const& model,
                                                          std::vector<PreparedRow> const& rows) {
    std::vector<std::unique_ptr<ScoreCaseRecord>> records;
    for (PreparedRow const& row : rows) {
        records.emplace_back(model.MakeCaseRecord());
        FillRecord(*records.back(), row);
    }
    return records;
}

// Scores every prepared record once and compares the answers with the expected outputs by the case's
// rules. Counts the rows whose compared cells all agree and keeps the first disagreement.
struct Check {
    long rows = 0;
    long agreeing = 0;
    long present = 0;
    std::string firstDisagreement;
};

bool CellAgrees(std::string const& want, std::string const& got, double tolerance) {
    std::optional<double> const a = vantry::ReadNumber(want);
    std::optional<double> const b = vantry::ReadNumber(got);
    return want == got || (vantry_tool::IsMissingCell(want) && got.empty()) ||
           (a && b && conformance::RelativeDifference(*a, *b) <= tolerance);
}

Check CheckAnswers(BenchDocument const& document, ScoreModel& model,
                   std::vector<std::unique_ptr<ScoreCaseRecord>> const& records) {
    std::unique_ptr<QXVantry_920::ScoreResult> result(model.MakeResult());
    std::string const target = model.GetTargetVar() != nullptr ? model.GetTargetVar()->GetName() : "";
    Check check;
    for (std::size_t row = 0; row < records.size(); ++row) {
        model.Score(records[row].get(), result.get());
        QXVantry_920::ResultField fields;
        model.FillResultFields(result.get(), &fields);
        ++check.rows;
        check.present += vantry_tool::CellText(fields.GetResultValue(target)).empty() ? 0 : 1;
        bool agrees = true;
        for (conformance::ColumnRule const& rule : document.entry.columns) {
            // A cell the case table overrides is a stated difference from the producer, not compared.
            bool const overridden = std::any_of(
                document.entry.overrides.begin(), document.entry.overrides.end(),
                [&](conformance::RowOverride const& entry) {
                    return entry.expected == rule.expected && entry.row == static_cast<long>(row + 1);
                });
            if (rule.ours.empty() || document.expected.empty() || overridden) {
                continue;
            }
            std::vector<std::string> const& header = document.expected[0];
            std::size_t column = 0;
            while (column < header.size() && header[column] != rule.expected) {
                ++column;
            }
            std::string const want = column < header.size() ? document.expected[row + 1][column] : "?";
            std::string const got = vantry_tool::CellText(fields.GetResultValue(rule.ours));
            if (!CellAgrees(want, got, rule.tolerance)) {
                agrees = false;
                if (check.firstDisagreement.empty()) {
                    check.firstDisagreement = "row " + std::to_string(row + 1) + " " + rule.expected +
                                              ": expected '" + want + "', got '" + got + "'";
                }
            }
        }
        check.agreeing += agrees ? 1 : 0;
    }
    return check;
}

void ScoreDocument(benchmark::State& state, vantry_tool::ScoringSession const* session,
                   BenchDocument const* document, std::string const& path, LoadFigures load) {
    std::unique_ptr<ScoreModel> model;
    try {
        model = session->LoadModel(path);
    } catch (QXVantry_920::VTException& error) {
        state.SkipWithError(("refused: error " + std::to_string(error.GetErrorCode())).c_str());
        return;
    }
    std::vector<PreparedRow> const rows = PrepareRows(*model, document->input);
    std::vector<std::unique_ptr<ScoreCaseRecord>> const records = MakeRecords(*model, rows);
    // A document is timed when its answers agree on every row, or on all but a handful where the
    // library's documented semantics differ from the producer's (at most one row in a hundred; the label
    // says how many and the first one), or when a known rule of the library explains the difference.
    Check const check = CheckAnswers(*document, *model, records);
    std::string disagreement = std::to_string(check.rows - check.agreeing) + " of " +
                               std::to_string(check.rows) + " rows disagree, first " +
                               check.firstDisagreement;
    bool const known = !document->knownDifference.empty() && check.rows > 0;
    if (known && check.agreeing < check.rows) {
        disagreement =
            "known difference of the library's rule (" + document->knownDifference + "): " + disagreement;
    }
    if (check.rows == 0 || (!known && (check.rows - check.agreeing) * 100 > check.rows)) {
        state.SkipWithError(("answers disagree: " + disagreement).c_str());
        return;
    }
    // Timed as a host scores: one record and one result, the record refilled from the prepared row of
    // each case.
    std::unique_ptr<ScoreCaseRecord> const record(model->MakeCaseRecord());
    std::unique_ptr<QXVantry_920::ScoreResult> result(model->MakeResult());
    FillRecord(*record, rows[0]);
    model->Score(record.get(), result.get());
    std::size_t const allocationsBefore = gAllocations;
    int64_t scored = 0;
    for (auto _ : state) {
        for (PreparedRow const& row : rows) {
            FillRecord(*record, row);
            benchmark::DoNotOptimize(model->Score(record.get(), result.get()));
        }
        scored += static_cast<int64_t>(rows.size());
    }
    state.counters["ns_per_record"] = benchmark::Counter(
        static_cast<double>(scored), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["allocs_per_record"] =
        static_cast<double>(gAllocations - allocationsBefore) / static_cast<double>(scored);
    state.counters["present_share"] = static_cast<double>(check.present) / static_cast<double>(check.rows);
    state.counters["agreeing_share"] = static_cast<double>(check.agreeing) / static_cast<double>(check.rows);
    state.counters["load_ms"] = load.ms;
    state.counters["rss_MiB"] = load.rssMiB;
    state.counters["rss_growth_MiB"] = load.rssGrowthMiB;
    std::string label = document->variant.empty() ? std::string() : "variant: " + document->variant;
    if (check.agreeing < check.rows) {
        label += (label.empty() ? "" : "; ") + disagreement;
    }
    state.SetLabel(label);
}

std::string TemporaryFolder() {
    char const* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base != nullptr ? base : "/tmp") + "/bench_score.XXXXXX";
    return mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
}

void WriteFile(std::string const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string CsvText(bench_score::Table const& table) {
    std::string text;
    for (std::vector<std::string> const& row : table) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            bool const quote = row[i].find_first_of(",\"\n") != std::string::npos;
            text += (i > 0 ? "," : "") + (quote ? "\"" + row[i] + "\"" : row[i]);
        }
        text += "\n";
    }
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--load-probe") == 0) {
        return LoadProbe(argv[2]);
    }
    std::vector<BenchDocument> const documents = bench_score::LoadBenchDocuments();
    bool const writeOnly = argc == 3 && std::strcmp(argv[1], "--write-documents") == 0;
    std::string const folder = writeOnly ? std::string(argv[2]) : TemporaryFolder();
    std::vector<std::string> paths;
    for (BenchDocument const& document : documents) {
        paths.push_back(folder + "/" + document.name + ".pmml");
        WriteFile(paths.back(), document.text);
        if (writeOnly) {
            WriteFile(folder + "/" + document.name + ".input.csv", CsvText(document.input));
        }
    }
    if (writeOnly) {
        return 0;
    }
    vantry_tool::ScoringSession session(vantry_tool::FindShippedCatalog());
    for (std::size_t i = 0; i < documents.size(); ++i) {
        LoadFigures const load = ProbeInFreshProcess(paths[i]);
        benchmark::RegisterBenchmark(documents[i].name.c_str(), ScoreDocument, &session, &documents[i],
                                     paths[i], load)
            ->Unit(benchmark::kMicrosecond)
            ->Repetitions(5)
            ->ReportAggregatesOnly(true);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    for (std::string const& path : paths) {
        std::remove(path.c_str());
    }
    rmdir(folder.c_str());
    return 0;
}
