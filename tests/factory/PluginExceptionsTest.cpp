// What a host can catch when a plug-in fails: the library's VTException and std::bad_alloc as they
// were thrown, anything else as a VTException 260304 with the plug-in's words. Each way out frees what
// the factory holds (the leak check at exit would fail otherwise), on the document route and on the
// element route that a plug-in takes to build its sub-models.
#include <new>
#include <sstream>

#include "FactoryTestSupport.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;

namespace {

const Names kMisbehaving = {"MisbehavingModel"};

// A document whose innermost of `levels` nested models behaves as `kind` says.
std::string Nested(int levels, std::string const& kind) {
    std::string document = "<PMML>";
    for (int i = 1; i < levels; ++i)
        document += "<MisbehavingModel>";
    document += "<MisbehavingModel throw=\"" + kind + "\"/>";
    for (int i = 1; i < levels; ++i)
        document += "</MisbehavingModel>";
    return document + "</PMML>";
}

QXVantry_920::ScoreModel* Make(std::string const& document) {
    return FromStream(document, kMisbehaving);
}

}  // namespace

TEST(PluginExceptions, ReachTheHostAsVTExceptionOrBadAlloc) {
    for (int levels : {1, 3}) {
        SCOPED_TRACE(levels);
        EXPECT_EQ(Describe(Make(Nested(levels, ""))), "MisbehavingModel|" + std::to_string(levels));
        std::string message;
        // The library's own exception passes as it is.
        EXPECT_EQ(ErrorCodeOf([&] { return Make(Nested(levels, "vt")); }, &message), 260303);
        EXPECT_EQ(message, "Unsupported value 'sometimes' of attribute 'throw'.");
        // A standard exception carries its words behind the message of a model that was not built.
        EXPECT_EQ(ErrorCodeOf([&] { return Make(Nested(levels, "std")); }, &message), 260304);
        EXPECT_EQ(message, "Error in building model.plug-in failed");
        // An exception of the plug-in's own type is named by its type.
        EXPECT_EQ(ErrorCodeOf([&] { return Make(Nested(levels, "own")); }, &message), 260304);
        EXPECT_NE(message.find("PluginOwnFailure"), std::string::npos) << message;
        // Running out of memory stays what it is, for the host to handle as it handles its own.
        EXPECT_THROW(Make(Nested(levels, "bad_alloc")), std::bad_alloc);
    }
}

TEST(PluginExceptions, ModelsNestedThroughTheFactoryAreBounded) {
    // A plug-in that builds its sub-models through the factory recurses once per level; a hundred
    // levels are built, deeper is refused before the stack is at risk, and everything built is freed.
    EXPECT_EQ(Describe(Make(Nested(100, ""))), "MisbehavingModel|100");
    std::string message;
    EXPECT_EQ(ErrorCodeOf([&] { return Make(Nested(102, "")); }, &message), 260221);
    EXPECT_EQ(message, "Error occurred in process 'MisbehavingModel'.");
    // The count belongs to the calls in progress: a refusal leaves none behind.
    EXPECT_EQ(Describe(Make(Nested(100, ""))), "MisbehavingModel|100");
}
