#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "vantry/diagnostics/ScoreMessages.h"
#include "vantry/diagnostics/VTErrorFormater.h"
#include "vantry/diagnostics/VTException.h"

using QXVantry_920::VTException;
using ScoreContext::MessageItem;
using ScoreContext::VTErrorFormater;

// GetErrorMessage writes to the trace, whose configuration is fixed at first use; it is tested in
// TraceTest.cpp, in child processes. The tests here stay with ConstructMessage.

TEST(VTErrorFormater, LoadsATableOnceAndKeepsUnknownCodesEmpty) {
    MessageItem table[] = {{11, "one {0}"}, {12, "two {0} {1}"}};
    VTErrorFormater formater(2, table);
    EXPECT_FALSE(formater.LoadMessages(2, table));
    EXPECT_EQ(formater.GetParameterNumber(12), 2);

    // An unknown code formats to nothing and has no placeholders; its empty entry is filled later by a
    // table that begins with it.
    EXPECT_EQ(formater.FormatN(13, 1, "x"), "");
    EXPECT_EQ(formater.GetParameterNumber(13), 0);
    MessageItem later[] = {{13, "three"}, {11, "replaced {0}"}};
    EXPECT_TRUE(formater.LoadMessages(2, later));
    EXPECT_EQ(formater.FormatN(13, 0), "three");
    EXPECT_EQ(formater.FormatV(11, "x"), "replaced x");
    // The first row is looked up even when no row is taken.
    EXPECT_FALSE(formater.LoadMessages(0, later));
    MessageItem fresh[] = {{14, "fourteen"}};
    EXPECT_TRUE(formater.LoadMessages(0, fresh));
    EXPECT_EQ(formater.FormatN(14, 0), "");

    // The global formatter was filled at load, so its own table counts as loaded.
    EXPECT_FALSE(ScoreContext::gErrorFormater.LoadMessages(ScoreContext::kScoreMessageCount,
                                                           ScoreContext::gScoreMessages));
}

TEST(VTErrorFormater, ArgumentRoutesAndIcuFailures) {
    MessageItem table[] = {{1, "{0}-{1}"}, {2, "broken {0"}, {3, "it''s {0}"}};
    VTErrorFormater formater(3, table);
    // FormatV takes exactly one argument however many are passed.
    EXPECT_EQ(formater.FormatV(1, "a", "b"), "a-{1}");
    EXPECT_EQ(formater.FormatN(1, 2, "a", "b"), "a-b");
    char const* pointers[] = {"p", "q"};
    EXPECT_EQ(formater.VFormatN(1, 2, reinterpret_cast<char*>(pointers)), "p-q");
    // A pattern ICU rejects stands as the message.
    EXPECT_EQ(formater.Format(2, {"x"}), "broken {0");
    EXPECT_EQ(formater.GetParameterNumber(2), 0);
    // Without arguments the stored text is returned raw, quoting included.
    EXPECT_EQ(formater.Format(3, {}), "it''s {0}");
    EXPECT_EQ(formater.Format(3, {"y"}), "it's y");
}

TEST(VTErrorFormater, CopiesShareTheMapAndMovesEmptyTheSource) {
    MessageItem table[] = {{5, "five"}};
    VTErrorFormater original(1, table);
    VTErrorFormater copy(original);
    VTErrorFormater moved(std::move(original));
    EXPECT_EQ(copy.FormatN(5, 0), "five");
    EXPECT_EQ(moved.FormatN(5, 0), "five");
    EXPECT_EQ(original.FormatN(5, 0), "");

    copy = std::move(moved);
    EXPECT_EQ(copy.FormatN(5, 0), "five");
    EXPECT_EQ(moved.FormatN(5, 0), "");
}

TEST(VTException, CollectsArgumentsUpToThePatternsCount) {
    VTException e;
    EXPECT_EQ(e.GetErrorCode(), 0);
    EXPECT_EQ(e.ConstructMessage(), "");

    EXPECT_TRUE(e.PutErrorMessage(260306, "x"));
    EXPECT_EQ(e.ConstructMessage(), "Repeate bin values in 'x'.");

    // Arguments beyond the pattern's count are ignored; a second message runs on without a separator.
    VTException two(&ScoreContext::gErrorFormater);
    two.PutErrorMessage(260114, "n", "extra");
    two.PutErrorMessage(260120, "a", "b");
    EXPECT_EQ(two.GetErrorCode(), 260120);
    EXPECT_EQ(two.ConstructMessage(), "Missing node: 'n'.Missing the attribute 'a' of 'b'.");

    // A null pointer ends the list: no arguments leave the raw pattern, too few leave the rest unfilled.
    VTException none;
    EXPECT_TRUE(none.PutErrorMessage(260103, nullptr));
    EXPECT_EQ(none.ConstructMessage(), "Could not open file: ''{0}''.");
    VTException fewer;
    fewer.PutErrorMessage(260120, "a", nullptr);
    EXPECT_EQ(fewer.ConstructMessage(), "Missing the attribute 'a' of '{1}'.");
}

TEST(VTException, CodeWithoutItemsDetailAndNullFormater) {
    // A code given to the constructor shows its raw pattern; the detail is kept apart.
    VTException coded(260103, "d", &ScoreContext::gErrorFormater);
    EXPECT_EQ(coded.ConstructMessage(), "Could not open file: ''{0}''.");
    EXPECT_EQ(coded.GetDetailMessage(), "d");

    // A code outside the table gives no words at all.
    VTException unknown(1, "x: not predefined!", &ScoreContext::gErrorFormater);
    EXPECT_EQ(unknown.GetErrorCode(), 1);
    EXPECT_EQ(unknown.ConstructMessage(), "");

    VTException bare(nullptr);
    EXPECT_FALSE(bare.PutErrorMessage(260114, "n"));
    EXPECT_EQ(bare.GetErrorCode(), 260114);
    EXPECT_EQ(bare.ConstructMessage(), "");
    bare.SetFormater(&ScoreContext::gErrorFormater);
    EXPECT_EQ(bare.ConstructMessage(), "Missing node: ''{0}''.");

    bare.SetDetailMessage(nullptr);
    EXPECT_EQ(bare.GetDetailMessage(), "");
}

TEST(VTException, CopiesCarryEveryMessageThroughAThrow) {
    try {
        try {
            VTException e;
            e.PutErrorMessage(260114, "n");
            e.PutErrorMessage(260109);
            e.SetDetailMessage("line 3");
            throw e;
        } catch (VTException& inner) {
            VTException copy(inner);
            throw copy;
        }
    } catch (VTException& caught) {
        EXPECT_EQ(caught.GetErrorCode(), 260109);
        EXPECT_EQ(caught.ConstructMessage(),
                  "Missing node: 'n'.Error in parsing the PMML file. Detailed message:");
        EXPECT_EQ(caught.GetDetailMessage(), "line 3");

        VTException assigned(nullptr);
        assigned = caught;
        EXPECT_EQ(assigned.ConstructMessage(), caught.ConstructMessage());
        EXPECT_EQ(assigned.GetErrorCode(), 260109);
    }
}
