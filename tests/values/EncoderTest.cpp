#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/DateTimeValue.h"
#include "vantry/values/ScoreEncoder.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;
using namespace vantry_test;

TEST(ScoreBinningEncoder, CutPointsCloseTheirBinAbove) {
    ScoreBinningEncoder encoder({1.0, 2.0, 3.0});
    EXPECT_EQ(encoder.GetNumberOfCategories(), 4);
    EXPECT_EQ(encoder.GetEncoderType(), ScoreEncoder::BINNING_ENCODER);
    struct {
        double x;
        double bin;
    } const cases[] = {{0.5, 0}, {1.0, 0}, {1.5, 1}, {2.0, 1}, {3.0, 2}, {3.5, 3}, {-1e300, 0}, {kSysmis, 0}};
    for (auto const& c : cases) {
        EXPECT_EQ(encoder.Encode(c.x), c.bin) << c.x;
    }
    // A cut point a hair away from an exact hit is not matched: no tolerance.
    EXPECT_EQ(encoder.Encode(1.0 + 1e-15), 1);

    // No cut points: the search does not run, and the sign of x decides.
    ScoreBinningEncoder empty;
    EXPECT_EQ(empty.GetNumberOfCategories(), 0);
    EXPECT_EQ(empty.Encode(-0.5), 0);
    EXPECT_EQ(empty.Encode(0.0), 1);
}

TEST(ScoreBinningEncoder, ValueFormsRefuseAllButNumbers) {
    ScoreBinningEncoder encoder({1.0, 2.0, 3.0});
    NumericValue number(2.5);
    StringValue text("2.5");
    EXPECT_EQ(encoder.Encode(&number), 2);
    EXPECT_EQ(encoder.EncodeConst(&number), 2);
    EXPECT_EQ(encoder.Encode(&text), -1);
    DateTimeValue date(2.5, DateTimeValue::TIME_VAL);  // a kind of number, and still refused
    EXPECT_EQ(encoder.EncodeConst(&date), -1);
    EXPECT_EQ(encoder.EncodeConst(static_cast<ScoreValue const*>(nullptr)), -1);
    // The string forms read a number and refuse nothing: empty is missing, a word is 0.0.
    EXPECT_EQ(encoder.Encode(std::string("2.5")), 2);
    EXPECT_EQ(encoder.EncodeConst(std::string("")), 0);
    EXPECT_EQ(encoder.EncodeConst(std::string("abc")), 0);
    EXPECT_EQ(encoder.EncodeConst(std::string("9")), 3);

    std::unique_ptr<ScoreEncoder> clone(encoder.Clone());
    EXPECT_EQ(clone->GetNumberOfCategories(), 4);
    EXPECT_EQ(clone->EncodeConst(&number), 2);

    EXPECT_EQ(Shown(encoder), "\tScoreBinningEncoder: number of bins = 4\n\t\tCutpoints: 1 2 3 \n");
}

TEST(ScoreBinningEncoder, TracesTwoExitMarksPerEncode) {
    // The log reads its configuration once, at first use, from the working directory.
    std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("binning_trace_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    std::filesystem::current_path(dir);
    std::ofstream("sc.cfg") << "trace_leve,1\n";

    ScoreBinningEncoder encoder({1.0});
    encoder.Encode(0.5);

    std::ifstream log(dir / ("log" + std::to_string(getpid())) /
                      (std::to_string(gettid()) + "_scoring_trace.log"));
    std::stringstream lines;
    lines << log.rdbuf();
    EXPECT_EQ(
        lines.str(),
        "Exit:QXVantry_920::ScoreBinningEncoder::Encode\nExit:QXVantry_920::ScoreBinningEncoder::Encode\n");
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    std::filesystem::remove_all(dir);
}

TEST(ScoreCatNumericEncoder, CodesInOrderOfFirstSightWithoutTolerance) {
    ScoreCatNumericEncoder encoder(2);
    EXPECT_EQ(encoder.Encode(5.0), 0);
    EXPECT_EQ(encoder.Encode(3.0), 1);
    EXPECT_EQ(encoder.Encode(5.0), 0);
    EXPECT_EQ(encoder.GetNumberOfCategories(), 2);
    EXPECT_EQ(encoder.DecodeNum(1), 3.0);
    EXPECT_EQ(encoder.DecodeNum(2), kSysmis);
    EXPECT_EQ(encoder.DecodeNum(-1), kSysmis);
    EXPECT_EQ(encoder.Decode(0), "");

    // Unknown numbers, and a NaN, which equals nothing, get -1 and add no category.
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(encoder.EncodeConst(7.0), -1);
    EXPECT_EQ(encoder.EncodeConst(nan), -1);
    EXPECT_EQ(encoder.Encode(nan), -1);
    EXPECT_EQ(encoder.GetNumberOfCategories(), 2);

    EXPECT_NE(encoder.Encode(0.1 + 0.2), encoder.Encode(0.3));
    EXPECT_EQ(encoder.GetNumberOfCategories(), 4);

    // Missing is a category like any other; strings give what their GetDouble reads.
    NumericValue missing;
    StringValue three("3");
    EXPECT_EQ(encoder.Encode(&missing), 4);
    EXPECT_EQ(encoder.EncodeConst(&three), 1);
    EXPECT_EQ(encoder.Encode(std::string("5")), 0);
    EXPECT_EQ(encoder.EncodeConst(std::string("")), 4);

    ScoreCatNumericEncoder fromList(std::vector<double>{2.0, 2.0, 1.0});
    EXPECT_EQ(fromList.GetNumberOfCategories(), 2);
    EXPECT_EQ(fromList.EncodeConst(1.0), 1);
}

TEST(ScoreCatNumericEncoder, LabelsGrowToTheCategoriesAndAreNotCopied) {
    ScoreCatNumericEncoder encoder(std::vector<double>{1.0, 2.0, 3.0});
    encoder.SetValueLabel(1, "two");
    encoder.SetValueLabel(3, "ignored");
    encoder.SetValueLabel(-1, "ignored");
    ASSERT_NE(encoder.GetValueLabels(), nullptr);
    EXPECT_EQ(*encoder.GetValueLabels(), (std::vector<std::string>{"", "two", ""}));
    encoder.SetValueLabels({"x"});
    EXPECT_EQ(*encoder.GetValueLabels(), std::vector<std::string>{"x"});

    std::unique_ptr<ScoreEncoder> clone(encoder.Clone());
    EXPECT_TRUE(clone->GetValueLabels()->empty());
    EXPECT_EQ(clone->EncodeConst(std::string("3")), 2);

    ScoreCatNumericEncoder target(std::vector<double>{9.0});
    target.SetValueLabels({"nine"});
    target = encoder;
    EXPECT_EQ(target.GetNumberOfCategories(), 3);
    EXPECT_EQ(target.DecodeNum(2), 3.0);
    EXPECT_EQ(*target.GetValueLabels(), std::vector<std::string>{"nine"});

    EXPECT_EQ(
        Shown(ScoreCatNumericEncoder(std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8})),
        "\tScoreCatNumericEncoder: Last code = 7\n\t\tNumeric values of categories: 1 2 3 4 5 6 7 \n8 \n");
}

TEST(ScoreCatStringEncoder, TextsAreLookedUpByTheirNormalisedKey) {
    ScoreCatStringEncoder encoder(2);
    EXPECT_EQ(encoder.GetEncoderType(), ScoreEncoder::CAT_STRING_ENCODER);
    EXPECT_EQ(encoder.Encode(std::string("a")), 0);
    EXPECT_EQ(encoder.Encode(std::string("a  ")), 0);
    EXPECT_EQ(encoder.Encode(std::string(" a")), 1);  // leading spaces count
    EXPECT_EQ(encoder.Decode(0), "a");
    EXPECT_EQ(encoder.Decode(2), "");
    EXPECT_EQ(encoder.Decode(-1), "");

    // With empty string OK (the default) the empty text and the blank texts are two categories.
    EXPECT_EQ(encoder.Encode(std::string("")), 2);
    EXPECT_EQ(encoder.Encode(std::string("   ")), 3);
    EXPECT_EQ(encoder.Encode(std::string("  ")), 3);
    EXPECT_EQ(encoder.EncodeConst(std::string("     ")), 3);
    EXPECT_EQ(encoder.Decode(3), " ");
    EXPECT_EQ(encoder.GetNumberOfCategories(), 4);
    EXPECT_EQ(encoder.EncodeConst(std::string("b")), -1);
    EXPECT_EQ(encoder.GetNumberOfCategories(), 4);

    ScoreCatStringEncoder merged(2);
    merged.SetEmptyStringOK(false);
    EXPECT_EQ(merged.Encode(std::string("   ")), 0);
    EXPECT_EQ(merged.Encode(std::string("")), 0);
    EXPECT_EQ(merged.Encode(std::string(" ")), 0);
    EXPECT_EQ(merged.Decode(0), "");

    // Values go through their text; a number is looked up by its six-digit form.
    NumericValue number(2.5);
    StringValue padded("a ");
    EXPECT_EQ(encoder.EncodeConst(&padded), 0);
    EXPECT_EQ(encoder.Encode(&number), 4);
    EXPECT_EQ(encoder.Decode(4), "2.5");
    EXPECT_EQ(encoder.DecodeNum(0), kSysmis);

    // With no space trim texts stay as they are, but an exact match always counts.
    ScoreCatStringEncoder exact(2);
    exact.SetNoSpaceTrim(true);
    EXPECT_EQ(exact.Encode(std::string("a")), 0);
    EXPECT_EQ(exact.Encode(std::string("a ")), 1);
    EXPECT_EQ(exact.EncodeConst(std::string("a  ")), -1);
    EXPECT_EQ(exact.EncodeConst(std::string("a ")), 1);
    EXPECT_EQ(exact.Decode(1), "a ");
}

TEST(ScoreCatStringEncoder, CopiesRebuildLinksAndKeepOwnFlags) {
    auto source = std::make_unique<ScoreCatStringEncoder>(std::vector<std::string>{"b", "a", "b  ", "c"});
    EXPECT_EQ(source->GetNumberOfCategories(), 3);
    EXPECT_FALSE(source->GetNoSpaceTrim());
    EXPECT_TRUE(source->GetEmptyStringOK());
    source->SetValueLabel(0, "bee");
    source->SetNoSpaceTrim(true);

    std::unique_ptr<ScoreEncoder> clone(source->Clone());
    ScoreCatStringEncoder assigned(2);
    assigned.SetEmptyStringOK(false);
    assigned = *source;
    source.reset();  // the copies must not point into the source's keys

    EXPECT_EQ(clone->Decode(1), "a");
    EXPECT_EQ(clone->Decode(2), "c");
    EXPECT_TRUE(clone->GetValueLabels()->empty());
    EXPECT_TRUE(static_cast<ScoreCatStringEncoder*>(clone.get())->GetNoSpaceTrim());

    EXPECT_EQ(assigned.Decode(0), "b");
    EXPECT_EQ(assigned.EncodeConst(std::string("c ")), 2);
    EXPECT_FALSE(assigned.GetNoSpaceTrim());
    EXPECT_FALSE(assigned.GetEmptyStringOK());
    EXPECT_EQ(assigned.Encode(std::string("d")), 3);
    EXPECT_EQ(assigned.Decode(3), "d");

    EXPECT_EQ(
        Shown(assigned),
        "\tScoreCatStringEncoder object:  Last code = 3\n\t\t0\t\tb\n\t\t1\t\ta\n\t\t2\t\tc\n\t\t3\t\td\n");
}
