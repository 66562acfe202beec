// vantry-score: scores the rows of a CSV table with a model document and writes one CSV row of results
// per input row.
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tools/score/Csv.h"
#include "tools/score/FieldList.h"
#include "tools/score/ModelCommand.h"
#include "tools/score/ModelLoading.h"
#include "tools/score/ParallelScorer.h"
#include "tools/score/Progress.h"
#include "tools/score/RowScorer.h"
#include "tools/score/TableScoring.h"
#include "vantry/factory/ScoreModel.h"

namespace {

constexpr int kBadArguments = 1;
constexpr int kMostThreads = 256;
// Rows scored between two writes on a single thread.
constexpr long kRowsPerWrite = 256;

char const kUsage[] =
    "usage: vantry-score [--catalog FILE] [-o OUT.csv] [--threads N] [--quiet] MODEL.pmml [INPUT.csv]\n"
    "       vantry-score [--catalog FILE] --fields MODEL.pmml\n";

char const kHelp[] =
    "Scores every row of a CSV table with the model of a PMML document.\n"
    "\n"
    "  MODEL.pmml          the model document\n"
    "  INPUT.csv           the rows to score; standard input when absent or \"-\"\n"
    "  -o, --output FILE   write the results to FILE instead of standard output\n"
    "  --catalog FILE      the catalogue of model names that chooses the plug-in; by default the\n"
    "                      modeldll.txt shipped with the plug-ins (in the library's folder or its\n"
    "                      vantry-plugins/ folder, or a folder of LD_LIBRARY_PATH), else the names\n"
    "                      TreeModel, RegressionModel and MiningModel\n"
    "  --threads N         score on N threads, each with its own copy of the model (default: the\n"
    "                      number of cores); the output keeps the input's order\n"
    "  -q, --quiet         no progress line and no summary on standard error\n"
    "  --fields            print the model's input fields (name, type, measurement level, allowed\n"
    "                      values or interval), one per line separated by tabs, and exit\n"
    "  -h, --help          print this text\n"
    "\n"
    "Input: comma-separated, UTF-8, quoted fields as in RFC 4180; the first row names the columns. A\n"
    "column is matched to the model field of the same name; other columns are ignored and a field\n"
    "without a column is missing. An empty cell, NA or N/A is missing; a value that does not fit its\n"
    "field is invalid and treated as the model says.\n"
    "\n"
    "Output: a header of the model's result names (targets, then output fields), then one row per\n"
    "input row in order. Numbers are written in the shortest form that reads back exactly; a missing\n"
    "result is an empty cell.\n"
    "\n"
    "On a terminal, a progress line (rows, rows per second, time left for a file input) shows on\n"
    "standard error once a run lasts a second; at the end a summary line tells the rows, the invalid\n"
    "values seen, the failed rows if any, and the time taken.\n"
    "\n"
    "Exit status: 0 when every row was written, 1 for bad arguments or a file that cannot be read or\n"
    "written, 2 when the document is refused (\"error <code>: <words>\" on standard error).\n";

struct Arguments {
    std::string catalog;
    std::string output;
    std::string model;
    std::string input;
    int threads = 0;
    bool quiet = false;
    bool fields = false;
};

int BadArguments(std::string const& message) {
    std::cerr << "vantry-score: " << message << "\n" << kUsage;
    return kBadArguments;
}

// Reads the arguments; answers an exit status when the run ends here, -1 to go on.
int ParseArguments(int argc, char** argv, Arguments& arguments) {
    std::vector<std::string> positional;
    bool optionsEnd = false;
    for (int i = 1; i < argc; ++i) {
        std::string const arg = argv[i];
        auto const takeValue = [&](std::string& target) {
            if (i + 1 >= argc) {
                return false;
            }
            target = argv[++i];
            return true;
        };
        if (optionsEnd || arg == "-" || arg.empty() || arg[0] != '-') {
            positional.push_back(arg);
        } else if (arg == "--") {
            optionsEnd = true;
        } else if (arg == "-h" || arg == "--help") {
            std::cout << kUsage << "\n" << kHelp;
            return 0;
        } else if (arg == "--catalog" || arg == "-o" || arg == "--output") {
            if (!takeValue(arg == "--catalog" ? arguments.catalog : arguments.output)) {
                return BadArguments(arg + " needs a file name");
            }
        } else if (arg == "-q" || arg == "--quiet") {
            arguments.quiet = true;
        } else if (arg == "--fields") {
            arguments.fields = true;
        } else if (arg == "--threads" || arg.rfind("--threads=", 0) == 0) {
            std::string count;
            if (arg == "--threads" ? !takeValue(count)
                                   : (count = arg.substr(std::strlen("--threads="))).empty()) {
                return BadArguments("--threads needs a number");
            }
            char* end = nullptr;
            long const threads = std::strtol(count.c_str(), &end, 10);
            if (end == count.c_str() || *end != '\0' || threads < 1 || threads > kMostThreads) {
                return BadArguments("--threads takes a number from 1 to " + std::to_string(kMostThreads));
            }
            arguments.threads = static_cast<int>(threads);
        } else if (arg.rfind("--catalog=", 0) == 0) {
            arguments.catalog = arg.substr(std::strlen("--catalog="));
        } else if (arg.rfind("--output=", 0) == 0) {
            arguments.output = arg.substr(std::strlen("--output="));
        } else {
            return BadArguments("unknown option " + arg);
        }
    }
    if (positional.empty() || positional.size() > 2) {
        return BadArguments(positional.empty() ? "no model document named" : "too many arguments");
    }
    arguments.model = positional[0];
    arguments.input = positional.size() > 1 ? positional[1] : std::string("-");
    if (!arguments.catalog.empty() && !std::ifstream(arguments.catalog).is_open()) {
        return BadArguments("cannot read the catalogue " + arguments.catalog);
    }
    return -1;
}

// Scores the rows on the calling thread, writing every few rows.
vantry_tool::ScoreTally ScoreSerially(vantry_tool::RowScorer& scorer, vantry_tool::CsvReader& reader,
                                      std::istream& in, std::ostream& out, vantry_tool::Progress& progress,
                                      vantry_tool::FailureReport& failures) {
    vantry_tool::ScoreTally total;
    std::string text;
    for (bool more = true; more;) {
        vantry_tool::ScoreTally tally;
        text.clear();
        more = vantry_tool::ScoreRecords(reader, scorer, kRowsPerWrite, text, tally);
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        failures.Tell(tally, 0);
        total.Add(tally, 0);
        if (progress.Shown()) {
            progress.Update(total.rows, static_cast<std::int64_t>(in.tellg()));
        }
    }
    return total;
}

// Scores the whole input into the output; answers the exit status.
int ScoreTable(vantry_tool::ScoringSession const& session, std::unique_ptr<QXVantry_920::ScoreModel> model,
               Arguments const& arguments, std::istream& in, std::ostream& out) {
    vantry_tool::CsvReader reader(in);
    vantry_tool::TableInput table;
    reader.ReadRecord(table.header);
    table.firstLine = reader.Line();
    table.oneColumn = reader.OneColumn();
    table.rows = &in;
    vantry_tool::RowScorer scorer(*model, table.header);

    std::string line;
    vantry_tool::AppendCsvRecord(line, scorer.OutputNames());
    out << line;
    vantry_tool::Progress progress(std::cerr, !arguments.quiet && vantry_tool::ErrorIsTerminal(),
                                   vantry_tool::RegularFileSize(arguments.input));
    vantry_tool::FailureReport failures(std::cerr);
    int threads =
        arguments.threads > 0 ? arguments.threads : static_cast<int>(std::thread::hardware_concurrency());
    // The workers read the document again, which only a regular file allows.
    if (vantry_tool::RegularFileSize(arguments.model) < 0) {
        threads = 1;
    }
    vantry_tool::ScoreTally tally;
    if (threads <= 1) {
        tally = ScoreSerially(scorer, reader, in, out, progress, failures);
    } else {
        auto const makeModel = [&] { return session.LoadModel(arguments.model); };
        tally = vantry_tool::ScoreInParallel(threads, *model, makeModel, table, out, progress, failures);
    }
    failures.Finish(tally.failedRows);
    progress.Finish();
    if (!arguments.quiet) {
        std::cerr << vantry_tool::SummaryLine(tally, progress.Seconds()) << "\n";
    }
    out.flush();
    if (!out) {
        std::cerr << "vantry-score: cannot write the results\n";
        return kBadArguments;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    Arguments arguments;
    if (int const status = ParseArguments(argc, argv, arguments); status >= 0) {
        return status;
    }
    std::ifstream inputFile;
    if (arguments.input != "-") {
        inputFile.open(arguments.input, std::ios::binary);
        if (!inputFile.is_open()) {
            return BadArguments("cannot read " + arguments.input);
        }
    }
    std::ofstream outputFile;
    if (!arguments.output.empty()) {
        outputFile.open(arguments.output, std::ios::binary | std::ios::trunc);
        if (!outputFile.is_open()) {
            return BadArguments("cannot write " + arguments.output);
        }
    }
    return vantry_tool::RunWithModel(
        arguments.catalog, arguments.model, BadArguments,
        [&](vantry_tool::ScoringSession const& session, std::unique_ptr<QXVantry_920::ScoreModel> model) {
            std::ostream& out = arguments.output.empty() ? std::cout : static_cast<std::ostream&>(outputFile);
            if (arguments.fields) {
                vantry_tool::PrintFields(*model, out);
                out.flush();
                return out ? 0 : kBadArguments;
            }
            std::istream& in = arguments.input != "-" ? static_cast<std::istream&>(inputFile) : std::cin;
            return ScoreTable(session, std::move(model), arguments, in, out);
        });
}
