// Reading the catalogue of model names, observed through ModelFactory::Initialize and fModelNames.
#include <unistd.h>

#include <climits>
#include <sstream>

#include "FactoryTestSupport.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;

namespace {

class ModelCatalogTest : public FactoryStateTest {
  protected:
    // The names Initialize reads from a catalogue of this content.
    Names Read(std::string const& content) {
        ModelFactory::Initialize(WriteTempFile("catalogue.txt", content));
        ModelFactory::Terminate();
        return ModelFactory::fModelNames;
    }
};

// Changes the working directory for the life of the object.
class WorkingDirectory {
  public:
    explicit WorkingDirectory(std::string const& path) {
        char buffer[PATH_MAX];
        saved = getcwd(buffer, sizeof buffer) != nullptr ? buffer : ".";
        EXPECT_EQ(chdir(path.c_str()), 0);
    }
    ~WorkingDirectory() { static_cast<void>(chdir(saved.c_str())); }

  private:
    std::string saved;
};

}  // namespace

TEST_F(ModelCatalogTest, SeparatorsOrderAndDuplicates) {
    const struct {
        const char* content;
        Names names;
    } cases[] = {
        {"TreeModel, RegressionModel\tNeuralNetwork\n", {"TreeModel", "RegressionModel", "NeuralNetwork"}},
        {"A\nB C\n\n,,D,\n", {"A", "B", "C", "D"}},
        {"A B A", {"A", "B", "A"}},  // no final line end; duplicates kept
        {" ,\t\n\n , ", {}},
        {"", {}},
        {"A\r\nB\r\n", {"A", "B"}},  // a line end of the other platform
        {"A;B|C", {"A;B|C"}},        // nothing else separates
    };
    for (auto const& c : cases) {
        EXPECT_EQ(Read(c.content), c.names) << c.content;
    }
}

TEST_F(ModelCatalogTest, OverlongLineEndsTheCatalogue) {
    // Names in the first 32766 characters of a long line count; the rest of it and later lines do not.
    std::string line = "First ";
    line += std::string(32766 - line.size() - 5, ' ') + "Last MissedTail";
    line += std::string(40000 - line.size(), ' ');
    EXPECT_EQ(Read(line + "\nNextLine\n"), (Names{"First", "Last"}));
    // A name cut at the buffer's end is kept cut.
    EXPECT_EQ(Read(std::string(32764, ' ') + "ABCD\nX\n"), (Names{"AB"}));
    // A line of exactly the buffer's room is still complete.
    EXPECT_EQ(Read(std::string(32762, ' ') + "ABCD\nX\n"), (Names{"ABCD", "X"}));
}

TEST_F(ModelCatalogTest, InitializeReadsOnlyAGivenCatalogue) {
    // Without a path nothing is read, not even the default file.
    ModelFactory::fModelNames = {"Kept"};
    ModelFactory::fInitialized = false;
    ModelFactory::Initialize("");
    ModelFactory::Terminate();
    EXPECT_EQ(ModelFactory::fModelNames, (Names{"Kept"}));
    EXPECT_TRUE(ModelFactory::fInitialized);

    // A catalogue that cannot be opened leaves the factory uninitialised and the names as they were.
    ModelFactory::fInitialized = false;
    const std::string missing = testing::TempDir() + "missing_catalogue.txt";
    std::string message;
    EXPECT_EQ(ErrorCodeOf(
                  [&] {
                      ModelFactory::Initialize(missing);
                      return nullptr;
                  },
                  &message),
              260103);
    // Xerces-C was started all the same.
    ModelFactory::Terminate();
    EXPECT_EQ(message, "Could not open file: '" + missing + "'.");
    EXPECT_FALSE(ModelFactory::fInitialized);
    EXPECT_EQ(ModelFactory::fModelNames, (Names{"Kept"}));
}

TEST_F(ModelCatalogTest, EmptyPathMeansModeldllInTheWorkingDirectory) {
    const std::string directory = testing::TempDir() + "catalogue_cwd";
    ASSERT_EQ(system(("mkdir -p '" + directory + "'").c_str()), 0);
    std::ofstream(directory + "/modeldll.txt") << "RegressionModel\n";
    WorkingDirectory inside(directory);
    std::string emptyPath;
    std::istringstream stream("<PMML><RegressionModel/><TreeModel/></PMML>");
    EXPECT_EQ(Describe(ModelFactory::MakeModelFromXML(stream, emptyPath)),
              "RegressionModel|document|PMML|RegressionModel|||names=RegressionModel");
}
