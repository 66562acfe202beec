// Overwriting the values of a 50-field case record in place, as a host does for each new case. The
// global operator new is replaced to count allocations: once every slot holds a value, refilling the
// record must allocate nothing.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "vantry/values/MissingValueSet.h"
#include "vantry/values/Range.h"
#include "vantry/values/ScoreCaseRecord.h"
#include "vantry/values/ScoreDictVar.h"
#include "vantry/values/ScoreValue.h"

#include "CountingAllocator.h"

namespace {

using QXVantry_920::CaseRecord;
using QXVantry_920::NumericValue;
using QXVantry_920::StringValue;

int const kFields = 50;
int const kStringEvery = 5;  // every fifth field is a string

// The longest text comes first, so that every string slot has its room from the start.
std::string const kTexts[] = {"a category with a longer name than fits inline", "low", "medium", "high"};

// A record with one value in each slot, and the names it was built with.
CaseRecord MakeRecord(std::vector<std::string>& names) {
    CaseRecord record(kFields);
    for (int i = 0; i < kFields; ++i) {
        names.push_back("field" + std::to_string(i));
        if (i % kStringEvery == 0) {
            record.Add(names.back(), new StringValue(kTexts[0]));
        } else {
            record.Add(names.back(), new NumericValue(0.0));
        }
    }
    return record;
}

// Fills the record case after case. allocs_to_build counts what building the record took, to show that
// the counter sees the library's allocations at all.
template <typename Key>
void Overwrite(benchmark::State& state, std::vector<Key> const& keys, CaseRecord& record,
               size_t buildAllocations) {
    state.counters["allocs_to_build"] = static_cast<double>(buildAllocations);
    size_t before = gAllocations;
    auto start = std::chrono::steady_clock::now();
    long long n = 0;
    for (auto _ : state) {
        for (int i = 0; i < kFields; ++i) {
            bool ok = i % kStringEvery == 0 ? record.SetValue(keys[i], kTexts[(n + i) & 3])
                                            : record.SetValue(keys[i], static_cast<double>(n + i));
            benchmark::DoNotOptimize(ok);
        }
        if (n % 7 == 0) {
            record.SetMissingValue(keys[1]);
        }
        ++n;
    }
    auto elapsed = std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start);
    double records = static_cast<double>(state.iterations());
    state.counters["allocs_per_record"] = static_cast<double>(gAllocations - before) / records;
    state.counters["ns_per_field"] = elapsed.count() / (records * kFields);
}

void BM_OverwriteByIndex(benchmark::State& state) {
    std::vector<std::string> names;
    size_t before = gAllocations;
    CaseRecord record = MakeRecord(names);
    size_t built = gAllocations - before;
    std::vector<int> indexes;
    for (std::string const& name : names) {
        indexes.push_back(record.GetIndex(name));
    }
    Overwrite(state, indexes, record, built);
}

void BM_OverwriteByName(benchmark::State& state) {
    std::vector<std::string> names;
    size_t before = gAllocations;
    CaseRecord record = MakeRecord(names);
    Overwrite(state, names, record, gAllocations - before);
}

// The missing-value test of a variable runs for every field of every case: it must not allocate.
void BM_IsMissingValue(benchmark::State& state) {
    QXVantry_920::DictVar var("income", QXVantry_920::ScoreDictVar::kNUMERIC_VAR);
    auto* missing = new QXVantry_920::MissingValueSet();
    missing->Add(new QXVantry_920::Range(-99.0, -99.0, true, true));
    missing->Add(new QXVantry_920::Range(1e9, 1e12, true, true));
    var.SetMissingValues(missing);
    NumericValue value(0.0);
    size_t before = gAllocations;
    double x = 0.0;
    for (auto _ : state) {
        value.SetDoubleValue(x);
        benchmark::DoNotOptimize(var.IsMissingValue(&value));
        x += 1.0;
    }
    state.counters["allocs_per_test"] =
        static_cast<double>(gAllocations - before) / static_cast<double>(state.iterations());
}

}  // namespace

BENCHMARK(BM_IsMissingValue)->MinTime(0.1);
BENCHMARK(BM_OverwriteByIndex)->MinTime(0.1);
BENCHMARK(BM_OverwriteByName)->MinTime(0.1);

BENCHMARK_MAIN();
