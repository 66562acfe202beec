// Conversions of the text layer, with a count of heap allocations per conversion. A name shorter than
// 1024 units is converted in a work area on the stack, so "new_per_op" must be 0 for the 16- and 1000-unit
// names and 1 (the work area) for the 2048-unit name. "icu_alloc_per_op" counts ICU's own heap use the
// same way; it is -1 if ICU had allocated before the counter could be installed.
#include <benchmark/benchmark.h>
#include <unicode/uclean.h>
#include <unicode/ucnv.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "vantry/text/KROMMultiByte.h"

namespace {

std::atomic<long> gNewCount{0};
std::atomic<long> gIcuAllocCount{0};
bool gIcuCounted = false;

void* CountedMalloc(std::size_t size) {
    gNewCount.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size != 0 ? size : 1);
}

void* IcuAlloc(void const*, std::size_t size) {
    gIcuAllocCount.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size);
}

void* IcuRealloc(void const*, void* block, std::size_t size) {
    gIcuAllocCount.fetch_add(1, std::memory_order_relaxed);
    return std::realloc(block, size);
}

void IcuFree(void const*, void* block) {
    std::free(block);
}

}  // namespace

// The replaced allocation functions take their memory from malloc, so free is their matching release.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t size) {
    if (void* block = CountedMalloc(size)) {
        return block;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return CountedMalloc(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return CountedMalloc(size);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}

namespace {

using namespace QXXML_920;

// Names of the given length in units, made of "e" and "ü" (UTF-8, code page 1252 or UTF-16).
std::string Utf8Name(std::size_t bytes) {
    std::string text;
    while (text.size() + 2 <= bytes) {
        text += text.size() % 6 == 0 ? "\xC3\xBC" : "e";
    }
    if (text.size() < bytes) {
        text += '-';
    }
    return text;
}

std::string CodePageName(std::size_t bytes) {
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        text += i % 6 == 2 ? '\xFC' : 'e';
    }
    return text;
}

std::u16string Utf16Name(std::size_t units) {
    std::u16string text;
    for (std::size_t i = 0; i < units; ++i) {
        text += i % 6 == 2 ? u'\u00FC' : u'e';
    }
    return text;
}

UConverter* Western() {
    static UConverter* const converter = static_cast<UConverter*>(KROMMBConverterNew_C("1252"));
    return converter;
}

// Runs `convert` once to make the lazily made converters, then counts the allocations of the loop.
template <typename Convert>
void RunCounted(benchmark::State& state, Convert convert) {
    convert();
    long newBefore = gNewCount.load();
    long icuBefore = gIcuAllocCount.load();
    for (auto _ : state) {
        convert();
    }
    state.counters["new_per_op"] = benchmark::Counter(static_cast<double>(gNewCount.load() - newBefore),
                                                      benchmark::Counter::kAvgIterations);
    state.counters["icu_alloc_per_op"] =
        gIcuCounted ? benchmark::Counter(static_cast<double>(gIcuAllocCount.load() - icuBefore),
                                         benchmark::Counter::kAvgIterations)
                    : benchmark::Counter(-1);
}

// `out` keeps its capacity from one round to the next, so that only the conversion itself can allocate.
template <typename Out, typename In, typename Function>
void BenchString(benchmark::State& state, In const& in, Function function) {
    Out out;
    out.reserve(4 * in.size() + 1);
    RunCounted(state, [&] {
        benchmark::DoNotOptimize(function(out, in));
        benchmark::DoNotOptimize(out.data());
    });
}

void BM_U8ToU16(benchmark::State& state) {
    BenchString<std::u16string>(state, Utf8Name(state.range(0)), KROMMBU8ToU16);
}

void BM_U16ToU8(benchmark::State& state) {
    BenchString<std::string>(state, Utf16Name(state.range(0)), KROMMBU16ToU8);
}

void BM_CodePageToU8(benchmark::State& state) {
    BenchString<std::string>(
        state, CodePageName(state.range(0)),
        [](std::string& out, std::string const& in) { return KROMMBCodePageToU8(Western(), out, in); });
}

void BM_U8ToCodePage(benchmark::State& state) {
    BenchString<std::string>(state, Utf8Name(state.range(0)), [](std::string& out, std::string const& in) {
        return KROMMBU8ToCodePage(Western(), out, in);
    });
}

void BM_CodePageToU16(benchmark::State& state) {
    BenchString<std::u16string>(
        state, CodePageName(state.range(0)),
        [](std::u16string& out, std::string const& in) { return KROMMBCodePageToU16(Western(), out, in); });
}

void BM_U16ToCodePage(benchmark::State& state) {
    BenchString<std::string>(
        state, Utf16Name(state.range(0)),
        [](std::string& out, std::u16string const& in) { return KROMMBU16ToCodePage(Western(), out, in); });
}

// Through the default converter, which every call clones into a buffer on the stack.
void BM_U8ToDefaultCodePage(benchmark::State& state) {
    BenchString<std::string>(state, Utf8Name(state.range(0)), [](std::string& out, std::string const& in) {
        return KROMMBU8ToCodePage(nullptr, out, in);
    });
}

void BM_Buffer16ToDefaultCodePage(benchmark::State& state) {
    std::u16string const in = Utf16Name(state.range(0));
    std::string target(4 * in.size() + 1, '\0');
    RunCounted(state, [&] {
        int status = 0;
        benchmark::DoNotOptimize(KROMMB16toCodePage(nullptr, target.data(), static_cast<int>(target.size()),
                                                    in.c_str(), -1, &status));
    });
}

void NameLengths(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(16)->Arg(1000)->Arg(2048)->MinTime(0.02);
}

BENCHMARK(BM_U8ToU16)->Apply(NameLengths);
BENCHMARK(BM_U16ToU8)->Apply(NameLengths);
BENCHMARK(BM_CodePageToU8)->Apply(NameLengths);
BENCHMARK(BM_U8ToCodePage)->Apply(NameLengths);
BENCHMARK(BM_CodePageToU16)->Apply(NameLengths);
BENCHMARK(BM_U16ToCodePage)->Apply(NameLengths);
BENCHMARK(BM_U8ToDefaultCodePage)->Apply(NameLengths);
BENCHMARK(BM_Buffer16ToDefaultCodePage)->Arg(16)->Arg(1000)->MinTime(0.02);

}  // namespace

int main(int argc, char** argv) {
    // Must come before ICU's first allocation in the process.
    UErrorCode status = U_ZERO_ERROR;
    u_setMemoryFunctions(nullptr, IcuAlloc, IcuRealloc, IcuFree, &status);
    gIcuCounted = U_SUCCESS(status);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
