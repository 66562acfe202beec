// vantry-score: scores the rows of a CSV table with a model document and writes one CSV row of results
// per input row.
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/score/Csv.h"
#include "tools/score/ModelLoading.h"
#include "tools/score/RowScorer.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ScoreModel.h"

namespace {

constexpr int kBadArguments = 1;
constexpr int kRefusedDocument = 2;
// Rows whose failure is told one by one; after that only the count.
constexpr long kFailuresTold = 10;

char const kUsage[] = "usage: vantry-score [--catalog FILE] [-o OUT.csv] MODEL.pmml [INPUT.csv]\n";

char const kHelp[] =
    "Scores every row of a CSV table with the model of a PMML document.\n"
    "\n"
    "  MODEL.pmml          the model document\n"
    "  INPUT.csv           the rows to score; standard input when absent or \"-\"\n"
    "  -o, --output FILE   write the results to FILE instead of standard output\n"
    "  --catalog FILE      the catalogue of model names that chooses the plug-in; by default the\n"
    "                      modeldll.txt shipped with the plug-ins (lib/ or lib/vantry-plugins/ beside\n"
    "                      this program's folder, or a folder of LD_LIBRARY_PATH), else the names\n"
    "                      TreeModel, RegressionModel and MiningModel\n"
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
    "Exit status: 0 when every row was written, 1 for bad arguments or a file that cannot be read or\n"
    "written, 2 when the document is refused (\"error <code>: <words>\" on standard error).\n";

struct Arguments {
    std::string catalog;
    std::string output;
    std::string model;
    std::string input;
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

// Scores the whole input into the output; answers the exit status.
int ScoreTable(QXVantry_920::ScoreModel& model, std::istream& in, std::ostream& out) {
    vantry_tool::CsvReader reader(in);
    std::vector<std::string> header;
    reader.ReadRecord(header);
    vantry_tool::RowScorer scorer(model, header);

    std::string line;
    vantry_tool::AppendCsvRecord(line, scorer.OutputNames());
    out << line;
    std::vector<std::string> row;
    std::vector<std::string> cells;
    long failures = 0;
    while (reader.ReadRecord(row)) {
        if (!scorer.ScoreRow(row, cells) && ++failures <= kFailuresTold) {
            std::cerr << "vantry-score: line " << reader.RecordLine()
                      << ": the model failed on this row; its results are empty\n";
        }
        line.clear();
        vantry_tool::AppendCsvRecord(line, cells);
        out << line;
    }
    if (failures > kFailuresTold) {
        std::cerr << "vantry-score: " << failures << " rows failed in all\n";
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
    std::string const catalog =
        arguments.catalog.empty() ? vantry_tool::FindShippedCatalog() : arguments.catalog;
    try {
        vantry_tool::ScoringSession session(catalog);
        std::unique_ptr<QXVantry_920::ScoreModel> model;
        try {
            model = session.LoadModel(arguments.model);
        } catch (std::runtime_error const& error) {
            return BadArguments(error.what());
        }
        if (model == nullptr) {
            std::cerr << "error: no model of the catalogue's families in " << arguments.model << "\n";
            return kRefusedDocument;
        }
        std::istream& in = arguments.input != "-" ? static_cast<std::istream&>(inputFile) : std::cin;
        std::ostream& out = arguments.output.empty() ? std::cout : static_cast<std::ostream&>(outputFile);
        return ScoreTable(*model, in, out);
    } catch (QXVantry_920::VTException& error) {
        std::cerr << "error " << error.GetErrorCode() << ": " << error.GetErrorMessage() << "\n";
        return kRefusedDocument;
    } catch (std::exception const& error) {
        std::cerr << "error: " << error.what() << "\n";
        return kRefusedDocument;
    }
}
