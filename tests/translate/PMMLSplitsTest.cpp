// Predicates read into split variables, and the readers of PMML arrays.
#include <limits>
#include <string>
#include <vector>

#include "tests/translate/TranslateTestSupport.h"
#include "vantry/values/ScoreSplitVar.h"
#include "vantry/values/ScoreValue.h"

using namespace QXVantry_920;
using namespace vantry_test;

namespace {

class PMMLSplitsTest : public DocumentTest {
  protected:
    void SetUp() override {
        DocumentTest::SetUp();
        dictionary = Dictionary(R"(<DataDictionary numberOfFields="5">
            <DataField name="x" optype="continuous"/>
            <DataField name="o" optype="ordinal" dataType="string">
            <Value value="a"/><Value value="b"/><Value value="c"/><Value value="d"/></DataField>
            <DataField name="c" optype="categorical" dataType="string">
            <Value value="x"/><Value value="y"/><Value value="z"/></DataField>
            <DataField name="n" optype="ordinal"><Value value="1"/><Value value="2"/><Value value="3"/></DataField>
            <DataField name="e" optype="categorical" dataType="string"/></DataDictionary>)");
    }

    std::unique_ptr<ScaleSplit> Scale(std::string const& predicate) {
        std::string op, value;
        return std::unique_ptr<ScaleSplit>(
            translator->HandleNodeScaleSplit(Root(predicate), dictionary->GetVar("x"), op, isMissing, value));
    }

    std::unique_ptr<DiscreteSplit> Discrete(char const* variable, std::string const& predicate) {
        std::string op, value;
        return std::unique_ptr<DiscreteSplit>(translator->HandleNodeDiscreteSplit(
            Root(predicate), dictionary->GetVar(variable), op, isMissing, value));
    }

    std::unique_ptr<DiscreteSplit> Set(char const* variable, std::string const& op,
                                       std::string const& array) {
        std::string read;
        numbers.clear();
        return std::unique_ptr<DiscreteSplit>(
            translator->HandleArrayDiscreteSplit(Root("<SimpleSetPredicate field=\"f\" booleanOperator=\"" +
                                                      op + "\">" + array + "</SimpleSetPredicate>"),
                                                 dictionary->GetVar(variable), read, numbers));
    }

    bool isMissing = false;
    std::vector<double> numbers;
};

std::string Simple(std::string const& op, char const* value = nullptr) {
    std::string xml = "<SimplePredicate field=\"f\" operator=\"" + op + "\"";
    if (value != nullptr) {
        xml += std::string(" value=\"") + value + "\"";
    }
    return xml + "/>";
}

std::vector<std::string> Texts(DiscreteSplit& split) {
    std::vector<std::string> texts;
    for (ScoreValue const* value : split.GetSplitValues()) {
        texts.push_back(ScoreValue::TextOf(*value));
    }
    return texts;
}

double const kSysmis = NumericValue::GetSysmisValue();

}  // namespace

TEST_F(PMMLSplitsTest, ArrayTokenizer) {
    struct Case {
        char const* array;
        std::vector<std::string> elements;
        char const* refusal;
    };
    Case const cases[] = {
        {"<Array>  a   b c</Array>", {"a", "b", "c"}, nullptr},
        {R"(<Array n="2">"a b" c</Array>)", {"a b", "c"}, nullptr},
        {R"(<Array>"" x</Array>)", {"", "x"}, nullptr},
        {R"(<Array>ab\"cd e</Array>)", {R"(ab\"cd)", "e"}, nullptr},
        {R"(<Array>"say \"hi\"" x</Array>)", {R"(say "hi")", "x"}, nullptr},
        {"<Array>a\nb c</Array>", {"a\nb", "c"}, nullptr},
        {R"(<Array>x "open end</Array>)", {"x", "open end"}, nullptr},
        {R"(<Array type="real">1.5 -2e3</Array>)", {"1.5", "-2e3"}, nullptr},
        {R"(<Array type="int">1 x</Array>)", {}, "260151: The value: 'x' is invalid of type: 'integer'."},
        {R"(<Array type="real">1 2.</Array>)", {}, "260151: The value: '2.' is invalid of type: 'double'."},
        {R"(<Array n="3">a b</Array>)",
         {},
         "260241: The value: '3' of attribute 'n' does not match the array size: '2'."},
        {R"(<Array n="two">a b</Array>)", {}, "260151: The value: 'two' is invalid of type: 'integer'."},
        {"<Array>  </Array>", {}, "260284: Empty 'Value' in 'Array'."},
        {"<Array/>", {}, "260115: Missing node of 'Array' element  in 'SimpleSetPredicate'."},
    };
    for (Case const& c : cases) {
        std::vector<std::string> elements;
        std::string const refusal = Refusal([&] { elements = translator->ParseStrArray(Root(c.array)); });
        EXPECT_EQ(refusal, c.refusal != nullptr ? c.refusal : "none") << c.array;
        EXPECT_EQ(elements, c.elements) << c.array;
    }
    EXPECT_TRUE(translator->ParseStrArray(nullptr).empty());
}

TEST_F(PMMLSplitsTest, BackslashCategoryMakesBackslashOrdinary) {
    auto coded = Dictionary(R"(<DataDictionary numberOfFields="1">
        <DataField name="s" optype="categorical" dataType="string"><Value value="\"/><Value value="q"/>
        </DataField></DataDictionary>)",
                            true);
    auto* array = Root(R"(<Array>"\" q</Array>)");
    EXPECT_EQ(translator->GetArrayElements(array, u"string", coded->GetVar("s")),
              (std::vector<std::string>{"\\", "q"}));
    // Without such a category the same text is one quoted element with an escaped quote in it.
    EXPECT_EQ(translator->GetArrayElements(array, u"string", nullptr), (std::vector<std::string>{"\" q"}));
}

TEST_F(PMMLSplitsTest, ScaleSplitsRouteTheirRangeToChildZero) {
    struct Case {
        std::string predicate;
        std::vector<std::pair<double, int>> probes;
    };
    Case const cases[] = {
        {Simple("greaterThan", "5"), {{5, -1}, {5.5, 0}, {4, -1}}},
        {Simple("greaterOrEqual", "5"), {{5, 0}, {4.9, -1}}},
        {Simple("lessThan", "5"), {{5, -1}, {-1e9, 0}}},
        {Simple("lessOrEqual", "5"), {{5, 0}, {6, -1}}},
        {Simple("equal", "5"), {{5, 0}, {5.1, -1}}},
        {Simple("notEqual", "5"), {{5, -1}, {4, 0}, {6, 0}}},
        {Simple("isNotMissing"), {{1e9, 0}, {kSysmis, -1}}},
        {"<True/>", {{7, 0}}},
    };
    for (Case const& c : cases) {
        auto split = Scale(c.predicate);
        EXPECT_FALSE(isMissing) << c.predicate;
        for (auto const& [x, child] : c.probes) {
            EXPECT_EQ(split->GetSplitChildIndex(x), child) << c.predicate << " at " << x;
        }
    }
    for (std::string const& missing : {Simple("isMissing"), Simple("equal", "")}) {
        auto split = Scale(missing);
        EXPECT_TRUE(isMissing) << missing;
        EXPECT_EQ(split->GetSplitValueRangeFirst(), nullptr) << missing;
        EXPECT_EQ(split->GetSplitChildIndex(kSysmis), 0) << missing;
    }
}

TEST_F(PMMLSplitsTest, PredicateRefusals) {
    struct Case {
        std::string predicate;
        char const* refusal;
    };
    Case const cases[] = {
        {Simple("isMissing", "1"), "260212: Conflict setting between the attribute 'value' and 'isMissing'."},
        {Simple("isNotMissing", ""),
         "260212: Conflict setting between the attribute 'value' and 'isNotMissing'."},
        {Simple("lessThan", ""),
         "260171: Invalid value of attribute 'operator', expect 'equal' for null string value."},
        {Simple("between", "1"), "260303: Unsupported value 'between' of attribute 'operator'."},
        {Simple("greaterThan"), "260151: The value: '' is invalid of type: 'double'."},
        {R"(<SimplePredicate field="f" value="1"/>)",
         "260120: Missing the attribute 'operator' of 'SimplePredicate'."},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(Refusal([&] { Scale(c.predicate); }), c.refusal) << c.predicate;
    }
    EXPECT_EQ(Refusal([&] { Discrete("c", Simple("equal", "w")); }),
              "260291: No valid value in value list of variable: 'c'.");
    EXPECT_EQ(Refusal([&] { Discrete("c", Simple("equal")); }), "260119: Missing the attribute 'value'.");
    EXPECT_EQ(Refusal([&] { Discrete("e", Simple("equal", "")); }),
              "260126: Required value list for variable: 'e'.");
    EXPECT_EQ(Refusal([&] { Discrete("o", Simple("lessThan", "")); }),
              "260171: Invalid value of attribute 'operator', expect 'equal' for null string value.");
}

TEST_F(PMMLSplitsTest, OrdinalComparisonsBecomeCategoryLists) {
    EXPECT_EQ(Texts(*Discrete("o", Simple("greaterThan", "b"))), (std::vector<std::string>{"c", "d"}));
    EXPECT_EQ(Texts(*Discrete("o", Simple("notEqual", "b"))), (std::vector<std::string>{"a", "c", "d"}));
    EXPECT_EQ(Texts(*Discrete("o", Simple("lessThan", "a"))), (std::vector<std::string>{}));
    EXPECT_EQ(Texts(*Discrete("o", Simple("isNotMissing"))), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_FALSE(isMissing);

    auto missing = Discrete("o", Simple("isMissing"));
    EXPECT_TRUE(isMissing);
    EXPECT_TRUE(Texts(*missing).empty());
    EXPECT_EQ(missing->GetMissvalMap(), 0);
    // An empty value on a string variable without an empty category is the missing case.
    EXPECT_TRUE(Texts(*Discrete("o", Simple("equal", ""))).empty());
    EXPECT_TRUE(isMissing);
    // On a numeric ordinal variable it is missing and still lists every category.
    EXPECT_EQ(Texts(*Discrete("n", Simple("equal", ""))), (std::vector<std::string>{"1", "2", "3"}));
    EXPECT_TRUE(isMissing);

    EXPECT_EQ(Texts(*Discrete("c", Simple("equal", "y"))), (std::vector<std::string>{"y"}));
}

TEST_F(PMMLSplitsTest, EncodedVariablesSplitOnCodes) {
    dictionary = Dictionary(R"(<DataDictionary numberOfFields="1">
        <DataField name="o" optype="ordinal" dataType="string"><Value value="a"/><Value value="b"/><Value value="c"/>
        </DataField></DataDictionary>)",
                            true);
    auto band = Discrete("o", Simple("lessOrEqual", "b"));
    EXPECT_TRUE(Texts(*band).empty());
    EXPECT_EQ(band->GetSplitChildIndex(0.0), 0);
    EXPECT_EQ(band->GetSplitChildIndex(1.0), 0);
    EXPECT_EQ(band->GetSplitChildIndex(2.0), -1);
    auto set = Set("o", "isNotIn", R"(<Array type="string">a</Array>)");
    EXPECT_EQ(set->GetSplitChildIndex(0.0), -1);
    EXPECT_EQ(set->GetSplitChildIndex(2.0), 0);
}

TEST_F(PMMLSplitsTest, SetPredicates) {
    EXPECT_EQ(Texts(*Set("c", "isIn", R"(<Array type="string">x z</Array>)")),
              (std::vector<std::string>{"x", "z"}));
    EXPECT_EQ(Texts(*Set("c", "isNotIn", "<Array>x</Array>")), (std::vector<std::string>{"y", "z"}));
    EXPECT_TRUE(Texts(*Set("c", "isNotIn", "<Array>z y x</Array>")).empty());
    EXPECT_EQ(Texts(*Set("n", "isIn", R"(<Array type="int">3 1</Array>)")),
              (std::vector<std::string>{"3", "1"}));
    EXPECT_EQ(numbers, (std::vector<double>{3, 1}));
    // A variable that declared no categories learns them from the array.
    EXPECT_EQ(Texts(*Set("e", "isIn", "<Array>p q</Array>")), (std::vector<std::string>{"p", "q"}));
    EXPECT_EQ(dictionary->GetVar("e")->GetNumberOfCats(), 2);

    struct Case {
        char const* variable;
        char const* op;
        char const* array;
        char const* refusal;
    };
    Case const cases[] = {
        {"c", "isIn", R"(<Array type="real">1</Array>)",
         "260222: Error occurred in process the value 'real' of attribute 'type'."},
        {"n", "isIn", "<Array>1</Array>",
         "260222: Error occurred in process the value '' of attribute 'type'."},
        {"c", "isAll", "<Array>x</Array>", "260153: Invalid value: 'isAll' of attribute 'operator' in 'c'."},
        {"c", "isIn", "<Array>w</Array>", "260152: Invalid value 'w' of attribute 'value'."},
        {"c", "isNotIn", "<Array>w</Array>",
         "260158: Invalid value 'w' is not in the value range of variable: 'c'."},
        {"c", "isIn", "<List>x</List>", "260115: Missing node of 'Array' element  in 'SimpleSetPredicate'."},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(Refusal([&] { Set(c.variable, c.op, c.array); }), c.refusal) << c.array;
    }
}

TEST_F(PMMLSplitsTest, NumberArrays) {
    EXPECT_EQ(translator->VerifyIntArray(Root("<x-BasisRow>1 2 3</x-BasisRow>"), 3),
              (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(translator->VerifyDoubleArray(Root("<Array n=\"2\">1.5\n 2</Array>"), 0),
              (std::vector<double>{1.5, 2}));
    EXPECT_EQ(translator->VerifyDoubleArray(Root("<Array>7</Array>"), 5), (std::vector<double>{7}));
    struct Case {
        char const* element;
        char const* refusal;
    };
    Case const cases[] = {
        {"<X-BasisRow>1 2 3</X-BasisRow>",
         "260241: The value: '2' of attribute 'n' does not match the array size: '3'."},
        {"<Row>1</Row>", "260172: The value: 'Row' is invalid, expect: 'Array'."},
        {"<Array/>", "260283: No child element in Node 'Array'."},
        {"<Array> </Array>", "260284: Empty 'Value' in 'Array'."},
        {"<Array>1 1.5</Array>", "260151: The value: '1.5' is invalid of type: 'integer'."},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(Refusal([&] { translator->VerifyIntArray(Root(c.element), 2); }), c.refusal) << c.element;
    }
    EXPECT_EQ(Refusal([&] { translator->VerifyDoubleArray(nullptr, 1); }),
              "260114: Missing node: 'Array, x-BasisRow,X-BasisRow'.");
}
