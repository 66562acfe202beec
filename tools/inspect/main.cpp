// vantry-inspect: describes the model of a document: its family, data dictionary, derived fields,
// mining schema, targets and outputs, as text or as JSON.
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/inspect/DocumentOutline.h"
#include "tools/inspect/ModelReport.h"
#include "tools/score/ModelCommand.h"
#include "tools/score/ModelLoading.h"
#include "vantry/factory/ScoreModel.h"

namespace {

constexpr int kBadArguments = 1;

char const kUsage[] = "usage: vantry-inspect [--catalog FILE] [--json] MODEL.pmml\n";

char const kHelp[] =
    "Describes the model of a PMML document: the model family that the catalogue chooses, the\n"
    "model's own description, the data dictionary (type, measurement level, values, interval), the\n"
    "derived fields with their expressions, the mining schema, the targets and the output fields.\n"
    "\n"
    "  MODEL.pmml          the model document\n"
    "  --json              print the same as one JSON document\n"
    "  --catalog FILE      the catalogue of model names, as for vantry-score\n"
    "  -h, --help          print this text\n"
    "\n"
    "Exit status: 0 when the model was described, 1 for bad arguments or a file that cannot be read,\n"
    "2 when the document is refused (\"error <code>: <words>\" on standard error).\n";

int BadArguments(std::string const& message) {
    std::cerr << "vantry-inspect: " << message << "\n" << kUsage;
    return kBadArguments;
}

}  // namespace

int main(int argc, char** argv) {
    std::string catalog;
    std::string document;
    bool json = false;
    for (int i = 1; i < argc; ++i) {
        std::string const arg = argv[i];
        if (arg == "-h" || arg == "--help") {
            std::cout << kUsage << "\n" << kHelp;
            return 0;
        } else if (arg == "--json") {
            json = true;
        } else if (arg == "--catalog") {
            if (++i >= argc) {
                return BadArguments("--catalog needs a file name");
            }
            catalog = argv[i];
        } else if (arg.rfind("--catalog=", 0) == 0) {
            catalog = arg.substr(10);
        } else if (!arg.empty() && arg[0] == '-') {
            return BadArguments("unknown option " + arg);
        } else if (document.empty()) {
            document = arg;
        } else {
            return BadArguments("too many arguments");
        }
    }
    if (document.empty()) {
        return BadArguments("no model document named");
    }
    if (!catalog.empty() && !std::ifstream(catalog).is_open()) {
        return BadArguments("cannot read the catalogue " + catalog);
    }
    return vantry_tool::RunWithModel(
        catalog, document, BadArguments,
        [&](vantry_tool::ScoringSession const& session, std::unique_ptr<QXVantry_920::ScoreModel> model) {
            vantry_tool::ModelReport const report =
                vantry_tool::CollectReport(*model, vantry_tool::ReadOutline(document, session.ModelNames()));
            if (json) {
                vantry_tool::WriteJson(report, std::cout);
            } else {
                vantry_tool::WriteText(report, std::cout);
            }
            return 0;
        });
}
