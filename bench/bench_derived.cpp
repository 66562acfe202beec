// Derived fields over many cases: a document of about fifty derived fields of every kind (numeric Apply
// trees three to five deep, Discretize, MapValues with an InlineTable, NormContinuous, NormDiscrete, Lag
// with a block indicator, string functions) evaluated over 10,000 prepared cases. The global operator new is
// replaced to count allocations: after the first case, evaluation must allocate nothing but string results
// longer than the small-string buffer.
//
// Reported counters: ns per case, ns per Apply node (from a document of arithmetic Apply trees alone), heap
// allocations per case, and, from an untimed pass, the number of derived fields and the share of their
// values that were not missing.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "vantry/diagnostics/VTException.h"
#include "vantry/factory/ModelFactory.h"
#include "vantry/transform/TransformationDictionary.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictionary.h"

#include "CountingAllocator.h"

namespace {

using QXVantry_920::CaseRecord;
using QXVantry_920::ModelFactory;
using QXVantry_920::ScoreDictionary;
using QXVantry_920::TransformationDictionary;

int const kCases = 10000;

std::string Field(std::string const& name, char const* type, char const* optype) {
    return "<DataField name=\"" + name + "\" dataType=\"" + type + "\" optype=\"" + optype + "\"/>";
}

std::string Derived(std::string const& name, char const* type, char const* optype, std::string const& body) {
    return "<DerivedField name=\"" + name + "\" dataType=\"" + type + "\" optype=\"" + optype + "\">" + body +
           "</DerivedField>";
}

std::string Ref(std::string const& name) {
    return "<FieldRef field=\"" + name + "\"/>";
}

std::string Num(double value) {
    std::ostringstream out;
    out << "<Constant dataType=\"double\">" << value << "</Constant>";
    return out.str();
}

std::string Apply(char const* function, std::string const& children) {
    return std::string("<Apply function=\"") + function + "\">" + children + "</Apply>";
}

// An arithmetic tree of the given depth over the numeric inputs; counts its Apply nodes.
std::string ArithmeticTree(int depth, int variant, int& nodes) {
    static char const* const kOps[] = {"+", "-", "*", "/"};
    ++nodes;
    char const* op = kOps[(variant + depth) % 4];
    if (depth <= 1) {
        return Apply(op, Ref("x" + std::to_string(variant % 8)) + Num(1.5 + variant % 3));
    }
    return Apply(
        op, ArithmeticTree(depth - 1, variant + 1, nodes) + Ref("x" + std::to_string((variant + 3) % 8)));
}

std::string DataDictionary() {
    std::string fields;
    for (int i = 0; i < 8; ++i) {
        fields += Field("x" + std::to_string(i), "double", "continuous");
    }
    fields += Field("color", "string", "categorical");
    fields += Field("size", "string", "categorical");
    fields += Field("name", "string", "categorical");
    fields += Field("account", "integer", "categorical");
    return "<DataDictionary numberOfFields=\"12\">" + fields + "</DataDictionary>";
}

std::string Document(std::string const& derived) {
    return "<PMML version=\"4.4\" xmlns=\"http://www.dmg.org/PMML-4_4\"><Header/>" + DataDictionary() +
           "<TransformationDictionary>" + derived + "</TransformationDictionary></PMML>";
}

// Arithmetic Apply trees only, for the cost of one node.
std::string ArithmeticDocument(int& nodes) {
    std::string derived;
    for (int i = 0; i < 30; ++i) {
        derived +=
            Derived("a" + std::to_string(i), "double", "continuous", ArithmeticTree(3 + i % 3, i, nodes));
    }
    return Document(derived);
}

// About fifty derived fields of every kind.
std::string MixedDocument() {
    int nodes = 0;
    std::string d;
    for (int i = 0; i < 24; ++i) {
        d += Derived("a" + std::to_string(i), "double", "continuous", ArithmeticTree(3 + i % 3, i, nodes));
    }
    d += Derived("m0", "double", "continuous",
                 Apply("if", Apply("greaterThan", Ref("x0") + Num(0.5)) + Apply("ln", Ref("x1")) +
                                 Apply("exp", Ref("x2"))));
    d += Derived("m1", "double", "continuous", Apply("max", Ref("a0") + Ref("a1") + Ref("a2") + Ref("x3")));
    d += Derived("m2", "double", "continuous", Apply("mean", Ref("x4") + Ref("x5") + Ref("x6")));
    d += Derived("m3", "double", "continuous",
                 Apply("isIn", Ref("color") + "<Constant dataType=\"string\">red</Constant>"
                                              "<Constant dataType=\"string\">blue</Constant>"));
    d += Derived("m4", "double", "continuous", Apply("round", Apply("*", Ref("x7") + Num(100))));
    for (int i = 0; i < 4; ++i) {
        std::string bins;
        for (int b = 0; b < 5; ++b) {
            bins += "<DiscretizeBin binValue=\"" + std::to_string(b) +
                    "\"><Interval closure=\"closedOpen\" leftMargin=\"" + std::to_string(b * 0.2) +
                    "\" rightMargin=\"" + std::to_string(b * 0.2 + 0.2) + "\"/></DiscretizeBin>";
        }
        d += Derived(
            "d" + std::to_string(i), "double", "continuous",
            "<Discretize field=\"x" + std::to_string(i) + "\" defaultValue=\"-1\">" + bins + "</Discretize>");
    }
    for (int i = 0; i < 4; ++i) {
        d += Derived("n" + std::to_string(i), "double", "continuous",
                     "<NormContinuous field=\"x" + std::to_string(4 + i) +
                         "\"><LinearNorm orig=\"0\" norm=\"-1\"/><LinearNorm orig=\"0.5\" norm=\"0\"/>"
                         "<LinearNorm orig=\"1\" norm=\"1\"/></NormContinuous>");
    }
    d += Derived("nd0", "double", "continuous", "<NormDiscrete field=\"color\" value=\"red\"/>");
    d += Derived("nd1", "double", "continuous", "<NormDiscrete field=\"size\" value=\"small\"/>");
    d += Derived(
        "mv0", "string", "categorical",
        "<MapValues outputColumn=\"out\" defaultValue=\"other\" mapMissingTo=\"none\">"
        "<FieldColumnPair field=\"color\" column=\"c\"/><FieldColumnPair field=\"size\" column=\"s\"/>"
        "<InlineTable>"
        "<row><c>red</c><s>small</s><out>rs</out></row><row><c>red</c><s>large</s><out>rl</out></row>"
        "<row><c>blue</c><s>small</s><out>bs</out></row><row><c>blue</c><s>large</s><out>bl</out></row>"
        "</InlineTable></MapValues>");
    d += Derived("lag0", "double", "continuous",
                 "<Lag field=\"x0\" n=\"2\"><BlockIndicator field=\"account\"/></Lag>");
    d += Derived("lag1", "double", "continuous", "<Lag field=\"x1\"/>");
    d += Derived("s0", "string", "categorical", Apply("uppercase", Ref("name")));
    d += Derived("s1", "string", "categorical", Apply("substring", Ref("name") + Num(1) + Num(3)));
    d += Derived("s2", "string", "categorical",
                 Apply("concat", Ref("color") + "<Constant dataType=\"string\">-</Constant>" + Ref("size")));
    d += Derived("s3", "double", "continuous",
                 Apply("matches", Ref("name") + "<Constant dataType=\"string\">^a.*z$</Constant>"));
    return Document(d);
}

// Prepared inputs: one record per case, refilled into the scoring record in place.
struct Cases {
    std::vector<std::vector<double>> numbers;
    std::vector<std::vector<std::string>> texts;
};

Cases MakeCases() {
    static char const* const kColors[] = {"red", "blue", "green"};
    static char const* const kSizes[] = {"small", "large"};
    static char const* const kNames[] = {"abcz", "quartz", "alpha", "az"};
    Cases cases;
    std::srand(7);
    for (int c = 0; c < kCases; ++c) {
        std::vector<double> numbers;
        for (int i = 0; i < 8; ++i) {
            numbers.push_back(std::rand() / double(RAND_MAX));
        }
        numbers.push_back(c / 50);  // account, a block of fifty cases
        cases.numbers.push_back(numbers);
        cases.texts.push_back({kColors[c % 3], kSizes[c % 2], kNames[c % 4]});
    }
    return cases;
}

struct Loaded {
    std::unique_ptr<ScoreDictionary> dictionary;
    std::unique_ptr<TransformationDictionary> transformations;
};

Loaded Load(std::string const& text) {
    std::istringstream in(text);
    ScoreDictionary* dictionary = nullptr;
    Loaded loaded;
    try {
        loaded.transformations.reset(ModelFactory::GetTransformationDictionaryFromXML(in, dictionary, ""));
    } catch (QXVantry_920::VTException& e) {
        std::fprintf(stderr, "document refused: %d %s\n", e.GetErrorCode(), e.GetErrorMessage().c_str());
    }
    loaded.dictionary.reset(dictionary);
    return loaded;
}

CaseRecord MakeRecord() {
    CaseRecord record(20);
    for (int i = 0; i < 8; ++i) {
        record.Add("x" + std::to_string(i), new QXVantry_920::NumericValue(0.0));
    }
    record.Add("account", new QXVantry_920::NumericValue(0.0));
    record.Add("color", new QXVantry_920::StringValue(""));
    record.Add("size", new QXVantry_920::StringValue(""));
    record.Add("name", new QXVantry_920::StringValue(""));
    return record;
}

void Fill(CaseRecord& record, Cases const& cases, int c) {
    for (int i = 0; i < 9; ++i) {
        record.SetValue(i, cases.numbers[c][i]);
    }
    for (int i = 0; i < 3; ++i) {
        record.SetValue(9 + i, cases.texts[c][i]);
    }
}

bool IsMissing(QXVantry_920::ScoreValue const* value) {
    if (value == nullptr) {
        return true;
    }
    if (QXVantry_920::ScoreValue::TypeOf(*value) == QXVantry_920::ScoreValue::STRING_VALUE) {
        return QXVantry_920::ScoreValue::TextOf(*value).empty();
    }
    return value->IsSystemMissingValue();
}

// One more pass over the cases, untimed, counting the derived values that are not missing: a field that
// is missing on most cases would time a shortcut instead of its expression. Such fields are named on the
// error stream; the share of present values is reported as a counter.
void CheckValues(benchmark::State& state, Loaded& loaded, Cases const& cases, CaseRecord& record) {
    std::vector<int> present;
    std::vector<std::string> names;
    for (int c = 0; c < kCases; ++c) {
        Fill(record, cases, c);
        QXVantry_920::ScoreCaseRecord const* values =
            loaded.transformations->GetValuesForDerivedVars(&record, loaded.dictionary.get());
        if (names.empty()) {
            names = values->GetVarNames(true);
            present.assign(names.size(), 0);
        }
        for (size_t i = 0; i < present.size(); ++i) {
            present[i] += IsMissing(values->Get(static_cast<int>(i))) ? 0 : 1;
        }
    }
    int64_t total = 0;
    for (size_t i = 0; i < present.size(); ++i) {
        total += present[i];
        if (present[i] < kCases / 2) {
            std::fprintf(stderr, "derived field %s is missing on %d of %d cases\n", names[i].c_str(),
                         kCases - present[i], kCases);
        }
    }
    state.counters["derived_fields"] = static_cast<double>(present.size());
    state.counters["present_share"] =
        present.empty() ? 0.0 : static_cast<double>(total) / (static_cast<double>(present.size()) * kCases);
}

void Run(benchmark::State& state, std::string const& document, double nodes) {
    Loaded loaded = Load(document);
    if (!loaded.transformations) {
        state.SkipWithError("the document gave no derived fields");
        return;
    }
    Cases const cases = MakeCases();
    CaseRecord record = MakeRecord();
    // The first case makes the result objects and resolves the field positions.
    Fill(record, cases, 0);
    loaded.transformations->GetValuesForDerivedVars(&record, loaded.dictionary.get());
    size_t allocations = 0;
    int64_t evaluated = 0;
    for (auto _ : state) {
        for (int c = 0; c < kCases; ++c) {
            Fill(record, cases, c);
            size_t const before = gAllocations;
            benchmark::DoNotOptimize(
                loaded.transformations->GetValuesForDerivedVars(&record, loaded.dictionary.get()));
            allocations += gAllocations - before;
        }
        evaluated += kCases;
    }
    CheckValues(state, loaded, cases, record);
    state.counters["ns_per_case"] = benchmark::Counter(
        static_cast<double>(evaluated), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["allocs_per_case"] = static_cast<double>(allocations) / static_cast<double>(evaluated);
    if (nodes > 0) {
        state.counters["ns_per_apply_node"] =
            benchmark::Counter(static_cast<double>(evaluated) * nodes,
                               benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    }
}

void BM_MixedDerivedFields(benchmark::State& state) {
    Run(state, MixedDocument(), 0);
}

void BM_ArithmeticApplyNodes(benchmark::State& state) {
    int nodes = 0;
    std::string const document = ArithmeticDocument(nodes);
    Run(state, document, nodes);
}

}  // namespace

BENCHMARK(BM_MixedDerivedFields)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ArithmeticApplyNodes)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
