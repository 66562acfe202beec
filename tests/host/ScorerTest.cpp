// The host class on a small regression, y = 0.5 + 2x + 0.25n + (1 for red, -1 for "blue, dark"), with a
// missing x counting as 1: the answers the scoring command gives for the same rows.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "vantry/diagnostics/QXMV.h"
#include "vantry/diagnostics/VTException.h"
#include "vantry/host/Scorer.h"

using vantry::Scorer;

namespace {

// The regression's document, as a path and as its text.
std::string const kDocument =
    std::string(std::getenv("VANTRY_FIXTURES") != nullptr ? std::getenv("VANTRY_FIXTURES")
                                                          : "tests/fixtures") +
    "/score_regression.pmml";

std::string DocumentText() {
    std::ifstream file(kDocument, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

int RefusalCode(std::string const& document) {
    try {
        Scorer::FromString(document);
    } catch (QXVantry_920::VTException& error) {
        return error.GetErrorCode();
    }
    return 0;
}

// y for one case by index, inputs given as texts the way a table holds them ("" for missing).
std::string ByIndex(Scorer& scorer, char const* x, char const* n, char const* color) {
    scorer.Set(scorer.InputIndex("x"), x);
    scorer.Set(scorer.InputIndex("n"), n);
    scorer.Set(scorer.InputIndex("color"), color);
    scorer.Score();
    return scorer.Text(scorer.OutputIndex("y"));
}

TEST(Scorer, LoadsFromPathStringAndStreamAndRefusesBadDocuments) {
    std::istringstream stream(DocumentText());
    std::vector<Scorer> scorers;
    scorers.push_back(Scorer::FromFile(kDocument));
    scorers.push_back(Scorer::FromString(DocumentText()));
    scorers.push_back(Scorer::FromStream(stream));
    for (Scorer& scorer : scorers) {
        EXPECT_EQ(scorer.OutputNames(), (std::vector<std::string>{"y", "y, as said"}));
        EXPECT_EQ(scorer.InputNames().size(), 4u);
        EXPECT_TRUE(scorer.Score({{"x", 1.0}, {"n", 4.0}, {"color", "red"}}));
        EXPECT_EQ(scorer.Number("y, as said"), 4.5);
    }
    EXPECT_EQ(RefusalCode("not a document"), 260110);
    EXPECT_EQ(RefusalCode("<PMML version=\"4.4\"><DataDictionary/></PMML>"),
              260301);  // no model of a known family
    try {
        Scorer::FromFile("/nonexistent/model.pmml");
        ADD_FAILURE() << "a missing file was read";
    } catch (QXVantry_920::VTException& error) {
        EXPECT_EQ(error.GetErrorCode(), 260103);
    }
}

TEST(Scorer, ByNameAndByIndexGiveTheCommandsAnswers) {
    Scorer scorer = Scorer::FromFile(kDocument);
    // The rows of the command's test: a missing x, an invalid x, a fraction in the integer field n.
    EXPECT_EQ(ByIndex(scorer, "1", "4", "red"), "4.5");
    EXPECT_EQ(ByIndex(scorer, "", "0", "blue, dark"), "1.5");
    EXPECT_EQ(ByIndex(scorer, "abc", "4", "red"), "");
    EXPECT_EQ(ByIndex(scorer, "1", "2.5", "red"), "");

    EXPECT_TRUE(scorer.Score({{"x", 1.0}, {"n", 4.0}, {"color", "red"}, {"unused", 3.0}}));
    EXPECT_EQ(scorer.Number("y"), 4.5);
    scorer.Set("n", 2.5);  // invalid, as the text "2.5" is
    scorer.Score();
    EXPECT_TRUE(scorer.IsMissing("y"));
    EXPECT_EQ(scorer.Number("y"), QXCommon_920::QXMV::Missing());
    EXPECT_EQ(scorer.Text("y"), "");
    // Inputs keep their values: only n changes here, and NaN is missing like an absent field.
    EXPECT_TRUE(scorer.Set("n", 0.0));
    scorer.Score();
    EXPECT_EQ(scorer.Text("y"), "3.5");
    scorer.Score({{"n", 0.0}, {"color", "red"}, {"x", std::nan("")}});
    EXPECT_EQ(scorer.Number(0), 3.5);

    EXPECT_FALSE(scorer.Set("no such field", 1.0));
    EXPECT_FALSE(scorer.Set(99, 1.0));
    EXPECT_THROW(scorer.Number("no such output"), std::out_of_range);
    EXPECT_THROW(scorer.Text(2), std::out_of_range);
}

TEST(Scorer, ClonesScoreTheSameOnTwoThreads) {
    Scorer first = Scorer::FromFile(kDocument);
    first.Score({{"x", 2.0}});
    Scorer second = first.Clone();
    EXPECT_EQ(second.InputNames(), first.InputNames());
    EXPECT_TRUE(second.Score());  // all inputs missing in a clone
    EXPECT_EQ(second.Text("y"), "");

    auto const run = [](Scorer* scorer, std::vector<double>* answers) {
        int const x = scorer->InputIndex("x");
        int const n = scorer->InputIndex("n");
        scorer->Set("color", "blue, dark");
        for (int row = 0; row < 2000; ++row) {
            scorer->Set(x, row * 0.5);
            scorer->Set(n, static_cast<double>(row % 7));
            scorer->Score();
            answers->push_back(scorer->Number(0));
        }
    };
    std::vector<double> a;
    std::vector<double> b;
    std::thread one(run, &first, &a);
    std::thread two(run, &second, &b);
    one.join();
    two.join();
    ASSERT_EQ(a.size(), 2000u);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a[3], 0.5 + 2 * 1.5 + 0.25 * 3 - 1);
}

}  // namespace
