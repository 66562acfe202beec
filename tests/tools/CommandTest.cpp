// The scoring command run as a user runs it: its arguments, exit status, messages and output table.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace {

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

std::string Fixture(char const* name) {
    char const* folder = std::getenv("VANTRY_FIXTURES");
    return std::string(folder != nullptr ? folder : "tests/fixtures") + "/" + name;
}

std::string ReadFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

class Command : public ::testing::Test {
  protected:
    void SetUp() override {
        char folder[] = "/tmp/vantry-score-test-XXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        fFolder = folder;
    }
    void TearDown() override { std::system(("rm -rf '" + fFolder + "'").c_str()); }

    std::string Write(char const* name, std::string const& text) {
        std::string const path = fFolder + "/" + name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

    // Runs the command with the arguments (already quoted for the shell) and the text on its input.
    Outcome Run(std::string const& arguments, std::string const& input = "",
                char const* command = VANTRY_SCORE_COMMAND) {
        std::string const in = Write("stdin", input);
        std::string const out = fFolder + "/stdout";
        std::string const err = fFolder + "/stderr";
        int const raw = std::system(
            (std::string(command) + " " + arguments + " <'" + in + "' >'" + out + "' 2>'" + err + "'")
                .c_str());
        return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(out), ReadFile(err)};
    }

    std::string fFolder;
};

TEST_F(Command, ArgumentsHelpAndRefusedDocuments) {
    Outcome help = Run("--help");
    EXPECT_EQ(help.status, 0);
    for (char const* option : {"--catalog", "-o, --output", "-h, --help", "MODEL.pmml", "INPUT.csv", "NA",
                               "--threads N", "-q, --quiet", "--fields"}) {
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
    }
    for (char const* arguments : {"", "--bogus model.pmml", "-o", "a.pmml b.csv c.csv",
                                  "--catalog /nonexistent/modeldll.txt a.pmml", "/nonexistent/model.pmml"}) {
        Outcome bad = Run(arguments);
        EXPECT_EQ(bad.status, 1) << arguments;
        EXPECT_NE(bad.err.find("usage: vantry-score"), std::string::npos) << arguments;
        EXPECT_TRUE(bad.out.empty());
    }
    std::string const notXml = Write("broken.pmml", "<PMML><DataDictionary>");
    Outcome refused = Run("'" + notXml + "'", "x\n1\n");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err.rfind("error ", 0), 0u) << refused.err;
    EXPECT_NE(refused.err.find(": "), std::string::npos);
    EXPECT_TRUE(refused.out.empty());
}

TEST_F(Command, ScoresEveryRowWhateverItHolds) {
    std::string const model = "'" + Fixture("score_regression.pmml") + "'";
    // Columns in another order, one unknown, a quoted category with a comma, missing and invalid cells.
    std::string const input =
        "\xEF\xBB\xBF"
        "color,unused,n,x\r\n"
        "red,zz,4,1\r\n"
        "\"blue, dark\",,0,NA\r\n"
        "red,,4,abc\r\n"
        "red,,2.5,1\r\n"
        "red,,8,0.5\r\n";
    Outcome scored = Run(model, input);
    EXPECT_EQ(scored.status, 0) << scored.err;
    // The summary counts the two cells that did not fit their field.
    EXPECT_EQ(scored.err.rfind("vantry-score: 5 rows, 2 invalid values, ", 0), 0u) << scored.err;
    EXPECT_EQ(scored.out,
              "y,\"y, as said\"\n"
              "4.5,4.5\n"
              "1.5,1.5\n"
              ",\n"
              ",\n"
              "4.5,4.5\n");

    // The same through files, and a table without rows gives the header alone.
    std::string const output = fFolder + "/out.csv";
    EXPECT_EQ(Run(model + " '" + Write("in.csv", input) + "' -o '" + output + "'").status, 0);
    EXPECT_EQ(ReadFile(output), scored.out);
    EXPECT_EQ(Run(model, "x,n,color\n").out, "y,\"y, as said\"\n");
}

TEST_F(Command, ThreadsKeepTheOutputOfOneThread) {
    // Rows of every kind, some long, with quoted line ends and all three line-end styles, so that the
    // input falls into many blocks cut at awkward places.
    std::string input = "color,unused,n,x\n";
    char const* const colors[] = {"red", "\"blue, dark\"", "green", "", "NA", "\"re\nd\""};
    char const* const ends[] = {"\n", "\r\n", "\r"};
    for (int i = 0; i < 4000; ++i) {
        input += std::string(colors[i % 6]) + "," + (i % 7 == 0 ? "\"a,\r\nb\"" : std::string(i % 200, 'p')) +
                 "," + (i % 5 == 0 ? "abc" : std::to_string(i % 9)) + "," +
                 (i % 11 == 0 ? "" : std::to_string(i * 0.37)) + ends[i % 3];
    }
    std::string const model = "'" + Fixture("score_regression.pmml") + "' '" + Write("in.csv", input) + "'";
    Outcome const one = Run("--threads 1 --quiet " + model);
    ASSERT_EQ(one.status, 0) << one.err;
    EXPECT_EQ(std::count(one.out.begin(), one.out.end(), '\n'), 4001);
    EXPECT_EQ(one.err, "");
    for (char const* threads : {"--threads 2", "--threads=3"}) {
        Outcome const many = Run(std::string(threads) + " " + model);
        EXPECT_EQ(many.status, 0) << threads;
        EXPECT_TRUE(many.out == one.out) << threads;
        EXPECT_EQ(many.err.rfind("vantry-score: 4000 rows, 800 invalid values, ", 0), 0u) << many.err;
    }
    for (char const* bad : {"--threads 0", "--threads x", "--threads"}) {
        EXPECT_EQ(Run(std::string(bad) + " " + model).status, 1) << bad;
    }
}

TEST_F(Command, FieldsListWhatTheModelReads) {
    std::string const document = Write("fields.pmml", R"(<PMML version="4.4">
  <DataDictionary numberOfFields="5">
    <DataField name="age" optype="continuous" dataType="integer">
      <Interval closure="closedOpen" leftMargin="0.1" rightMargin="120"/>
      <Value value="-1" property="missing"/>
    </DataField>
    <DataField name="low" optype="continuous" dataType="double"><Interval closure="openClosed" rightMargin="5"/></DataField>
    <DataField name="when" optype="continuous" dataType="date"/>
    <DataField name="size" optype="ordinal" dataType="string"><Value value="S"/><Value value="M,L"/></DataField>
    <DataField name="y" optype="continuous" dataType="double"/>
  </DataDictionary>
  <RegressionModel functionName="regression">
    <MiningSchema><MiningField name="age"/><MiningField name="low"/><MiningField name="when"/>
      <MiningField name="size"/><MiningField name="y" usageType="target"/></MiningSchema>
    <RegressionTable intercept="1"><NumericPredictor name="age" coefficient="1"/></RegressionTable>
  </RegressionModel>
</PMML>)");
    Outcome const fields = Run("--fields '" + document + "'");
    EXPECT_EQ(fields.status, 0) << fields.err;
    EXPECT_EQ(fields.out,
              "age\tinteger\tcontinuous\tinterval [0.1, 120)\tmissing or invalid -1\n"
              "low\tdouble\tcontinuous\tinterval (-inf, 5]\n"
              "when\tdate\tcontinuous\n"
              "size\tstring\tordinal\tvalues S, \"M,L\"\n");
}

// Whether the text is one JSON value with nothing after it: strings become '#', numbers and literals '0',
// and then innermost arrays and objects of such tokens become '0' until one token is left.
bool IsJson(std::string text) {
    text = std::regex_replace(text, std::regex(R"("([^"\\\x00-\x1f]|\\.)*")"), "#");
    text = std::regex_replace(text, std::regex(R"([-+.A-Za-z0-9]+)"), "0");
    text = std::regex_replace(text, std::regex(R"(\s+)"), "");
    std::regex const innermost(R"(\[([0#](,[0#])*)?\]|\{(#:[0#](,#:[0#])*)?\})");
    for (std::string before; before != text;) {
        before = text;
        text = std::regex_replace(text, innermost, "0");
    }
    return text == "0" || text == "#";
}

TEST_F(Command, InspectDescribesTheModel) {
    std::string const document = "'" + Fixture("families/schema.pmml") + "'";
    Outcome const text = Run(document, "", VANTRY_INSPECT_COMMAND);
    EXPECT_EQ(text.status, 0) << text.err;
    for (char const* line :
         {"model family: RegressionModel\n", "  c  string nominal values A, B\n",
          "  x2  double continuous  = (x * 2)\n", "  halfZ  double continuous  = (z / 2)\n",
          "  y  usageType=target\n", "outputs (2):\n  predicted  feature=predictedValue\n"}) {
        EXPECT_NE(text.out.find(line), std::string::npos) << line << text.out;
    }
    Outcome const json = Run("--json " + document, "", VANTRY_INSPECT_COMMAND);
    EXPECT_EQ(json.status, 0);
    EXPECT_TRUE(IsJson(json.out)) << json.out;
    EXPECT_NE(json.out.find(R"({"name": "x2", "type": "double")"), std::string::npos);
    EXPECT_NE(json.out.find("\"expression\": \"(z / 2)\"}"), std::string::npos);
    EXPECT_FALSE(IsJson(R"({"a": "b\"})"));

    Outcome const refused =
        Run("'" + Write("broken.pmml", "<PMML><DataDictionary>") + "'", "", VANTRY_INSPECT_COMMAND);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.err.rfind("error ", 0), 0u) << refused.err;
    EXPECT_EQ(Run("", "", VANTRY_INSPECT_COMMAND).status, 1);
}

}  // namespace
