// The factory's trace lines. The trace reads "sc.cfg" once per process, at first use, from the working
// directory, and every factory call uses it; so the scenario runs in a fresh copy of this program,
// started in a folder of its own, and this test reads the file it leaves.
#include <sys/wait.h>
#include <unistd.h>

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "FactoryTestSupport.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;
namespace fs = std::filesystem;

namespace {

constexpr char kScenarioVariable[] = "VANTRY_FACTORY_TRACE_SCENARIO";

std::vector<std::string> ReadLines(fs::path const& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

}  // namespace

// Runs only inside the copy started below: the stream route with a PassModelNames plug-in, the
// nearest-neighbour route, the file route and the route from a host's element, in that order.
TEST(FactoryTrace, DISABLED_Scenario) {
    if (std::getenv(kScenarioVariable) == nullptr)
        GTEST_SKIP();
    std::ofstream("sc.cfg") << "trace_leve,2\n";
    std::istringstream regression("<PMML><RegressionModel/></PMML>");
    EXPECT_NE(Describe(ModelFactory::MakeModelFromXML(regression, Names{"RegressionModel"}, "")), "null");
    std::istringstream knn("<PMML><NearestNeighborModel/></PMML>");
    EXPECT_NE(Describe(ModelFactory::MakeModelFromXML(knn, Names{"NearestNeighborModel"}, "")), "null");
    std::ofstream("catalogue.txt") << "TreeModel\n";
    std::ofstream("tree.xml") << "<PMML><TreeModel/></PMML>";
    EXPECT_NE(Describe(ModelFactory::MakeModelFromXML(std::string("tree.xml"), "catalogue.txt", "")), "null");

    ModelFactory::Initialize("");
    xercesc::XercesDOMParser parser;
    const char host[] = "<PMML><DecisionTree/></PMML>";
    xercesc::MemBufInputSource source(reinterpret_cast<XMLByte const*>(host), sizeof host - 1, "host");
    parser.parse(source);
    void* element = parser.getDocument()->getDocumentElement()->getFirstChild();
    EXPECT_NE(Describe(ModelFactory::MakeModelFromXML(element, Names{"TreeModel"}, nullptr, "")), "null");
}

TEST(FactoryTrace, RoutesWriteTheirMarks) {
    char pattern[] = "/tmp/vantry_factory_trace_XXXXXX";
    const fs::path directory = mkdtemp(pattern);
    const pid_t child = fork();
    if (child == 0) {
        alarm(120);
        if (chdir(directory.c_str()) != 0 || setenv(kScenarioVariable, "1", 1) != 0)
            _exit(2);
        execl("/proc/self/exe", "test_factory", "--gtest_filter=FactoryTrace.DISABLED_Scenario",
              "--gtest_also_run_disabled_tests", static_cast<char*>(nullptr));
        _exit(3);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "scenario status " << status;

    // One thread, so one file; the main thread's id is the process id.
    const fs::path log =
        directory / ("log" + std::to_string(child)) / (std::to_string(child) + "_scoring_trace.log");
    const std::string enterFactory = "Enter:QXVantry_920::ModelFactory::MakeModelFromXML";
    const std::string enterSymbol = "Enter:QXVantry_920::VTDynamicLoadedLibrary::GetSymbolAddress";
    const std::string exitSymbol = "Exit:QXVantry_920::VTDynamicLoadedLibrary::GetSymbolAddress";
    const std::string enterLibrary = "Enter:QXVantry_920::GetLibraryPath";
    const std::vector<std::string> expected = {
        // The stream route: GiveMyTranslator, then PassModelNames.
        enterFactory, enterLibrary, enterSymbol, exitSymbol, enterSymbol, exitSymbol, "Make Model End.",
        // The nearest-neighbour route looks for GiveMyTranslator only.
        enterFactory, enterSymbol, exitSymbol, "Make Model End",
        // The file route enters twice: itself and the stream route.
        enterFactory, enterFactory, enterLibrary, enterSymbol, exitSymbol, enterSymbol, exitSymbol,
        "Make Model End.",
        // The element route names the model it makes, and leaves.
        enterFactory, "Model name is :TreeModel", enterSymbol, exitSymbol,
        "Exit:QXVantry_920::ModelFactory::MakeModelFromXML"};
    EXPECT_EQ(ReadLines(log), expected);
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}
