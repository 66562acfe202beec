#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/values/ValuesTestSupport.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreDictionary.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

std::vector<std::string> NamesOf(std::vector<ScoreDictVar*> const& vars) {
    std::vector<std::string> names;
    for (ScoreDictVar const* var : vars) {
        names.push_back(var->GetName());
    }
    return names;
}

DictVar* Var(std::string const& name, ScoreDictVar::VariableType type = ScoreDictVar::kNUMERIC_VAR) {
    return new DictVar(name, type);
}

}  // namespace

TEST(BaseDictionary, MapIsSortedAndNameListKeepsArrival) {
    BaseDictionary dict;
    EXPECT_TRUE(dict.AddVar("b", Var("b")));
    EXPECT_TRUE(dict.AddVar("a", Var("a")));
    EXPECT_EQ(dict.GetVarNames(), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(NamesOf(dict.GetScoreDictVars()), (std::vector<std::string>{"a", "b"}));

    auto spare = std::make_unique<DictVar>("x", ScoreDictVar::kNUMERIC_VAR);
    EXPECT_FALSE(dict.AddVar("", spare.get()));
    EXPECT_FALSE(dict.AddVar("x", static_cast<ScoreDictVar*>(nullptr)));
    EXPECT_EQ(dict.Size(), 2);
    EXPECT_EQ(dict.GetVarNames().size(), 2u);

    // A second variable under a taken name is answered true but not taken over.
    ScoreDictVar* first = Var("x");
    EXPECT_TRUE(dict.AddVar("x", first));
    EXPECT_TRUE(dict.AddVar("x", spare.get()));
    EXPECT_EQ(dict.Size(), 3);
    EXPECT_EQ(dict.GetVar("x"), first);
    EXPECT_EQ(dict.GetVarNames(), (std::vector<std::string>{"b", "a", "x", "x"}));

    // Removal leaves the name in the list.
    EXPECT_FALSE(dict.RemoveVar(""));
    EXPECT_FALSE(dict.RemoveVar("zz"));
    EXPECT_TRUE(dict.RemoveVar("x"));
    EXPECT_EQ(dict.GetVar("x"), nullptr);
    EXPECT_EQ(dict.Size(), 2);
    EXPECT_EQ(dict.GetVarNames().back(), "x");

    // Look-up stops at the first NUL byte of the name.
    EXPECT_EQ(dict.GetVar(std::string("a\0junk", 6)), dict.GetVar("a"));
    BaseDictionary const& constDict = dict;
    EXPECT_EQ(constDict.GetVar("b"), dict.GetVar("b"));
}

TEST(BaseDictionary, AddingADictionaryMergesClonesAndTakesItsNameList) {
    BaseDictionary target;
    ScoreDictVar* own = Var("shared");
    target.AddVar("shared", own);
    target.AddVar("mine", Var("mine"));

    BaseDictionary source;
    source.AddVar("shared", Var("shared", ScoreDictVar::STRING_VAR));
    source.AddVar("new", Var("new"));
    source.AddVar("gone", Var("gone"));
    source.RemoveVar("gone");

    EXPECT_FALSE(target.AddVar(static_cast<ScoreDictionary const*>(nullptr)));
    EXPECT_FALSE(target.AddVar(&source));  // false on success as well
    EXPECT_EQ(target.GetVarNames(), source.GetVarNames());
    EXPECT_EQ(target.Size(), 3);  // mine, new, shared
    EXPECT_EQ(target.GetVar("shared"), own);
    ASSERT_NE(target.GetVar("new"), nullptr);
    EXPECT_NE(target.GetVar("new"), source.GetVar("new"));
    EXPECT_NE(target.GetVar("mine"), nullptr);
    EXPECT_EQ(target.GetVar("gone"), nullptr);
}

TEST(BaseDictionary, CopiesCloneVariablesAndAssignmentKeepsTheNameList) {
    BaseDictionary b;
    b.AddVar("v", Var("v", ScoreDictVar::STRING_VAR));
    b.AddVar("w", Var("w"));

    BaseDictionary copy(b);
    EXPECT_EQ(copy.GetVarNames(), b.GetVarNames());
    EXPECT_NE(copy.GetVar("v"), b.GetVar("v"));
    EXPECT_EQ(copy.GetVar("v")->GetVarType(), ScoreDictVar::STRING_VAR);

    std::unique_ptr<ScoreDictionary> clone(b.Clone());
    EXPECT_EQ(clone->Size(), 2);

    BaseDictionary a;
    a.AddVar("old", Var("old"));
    a = b;
    EXPECT_EQ(a.GetVarNames(), std::vector<std::string>{"old"});
    EXPECT_EQ(a.GetVar("old"), nullptr);
    EXPECT_EQ(a.Size(), 2);
    EXPECT_NE(a.GetVar("w"), b.GetVar("w"));
    a = a;
    EXPECT_EQ(a.Size(), 2);

    EXPECT_EQ(
        Shown(BaseDictionary()),
        "\n ############ Begin dictionary display ################ \nEnd Of ScoreDictionary display.\n\n");
}
