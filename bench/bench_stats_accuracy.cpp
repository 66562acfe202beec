// Accuracy and speed of the distribution functions. Before the timings it prints, for every function and
// grid of the reference table (tests/fixtures/stats_reference.csv, or the folder named by VANTRY_FIXTURES),
// the worst error against the high-precision values and the bound the unit test holds it to.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <vector>

#include "tests/stats/ReferenceTable.h"
#include "vantry/stats/QXDistFun.h"

namespace {

using QXMath_920::QXDistFun;

void PrintAccuracyTable() {
    std::vector<statsref::Row> const rows = statsref::Load(statsref::FixturePath("stats_reference.csv"));
    if (rows.empty()) {
        std::printf("reference table not found; set VANTRY_FIXTURES or run from the repository root\n\n");
        return;
    }
    std::printf("| function | grid | rows | worst error | kind | bound |\n");
    std::printf("|---|---|---:|---:|---|---:|\n");
    for (statsref::GridResult const& result : statsref::Evaluate(rows)) {
        auto bound = statsref::Bounds().find({result.function, result.grid});
        bool const absolute = bound != statsref::Bounds().end() && bound->second.absolute;
        double const error = absolute ? result.worstAbsolute : result.worst;
        std::printf("| %s | %s | %d | %.1e | %s | ", result.function.c_str(), result.grid.c_str(),
                    result.rows, error, absolute ? "absolute" : "relative");
        if (bound == statsref::Bounds().end()) {
            std::printf("none |\n");
        } else {
            std::printf("%.0e |\n", bound->second.limit);
        }
    }
    std::printf("\n");
}

void BM_CdfStdNorm(benchmark::State& state) {
    double x = -6.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::CdfStdNorm(x));
        x = x > 6.0 ? -6.0 : x + 0.01;
    }
}
BENCHMARK(BM_CdfStdNorm);

void BM_IdfStdNorm(benchmark::State& state) {
    double p = 1e-6;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::IdfStdNorm(p));
        p = p > 0.999 ? 1e-6 : p + 0.001;
    }
}
BENCHMARK(BM_IdfStdNorm);

void BM_CdfT(benchmark::State& state) {
    double x = -5.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::CdfT(x, 12.0));
        x = x > 5.0 ? -5.0 : x + 0.01;
    }
}
BENCHMARK(BM_CdfT);

void BM_IdfChi(benchmark::State& state) {
    double p = 0.001;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::IdfChi(p, 7.0));
        p = p > 0.99 ? 0.001 : p + 0.001;
    }
}
BENCHMARK(BM_IdfChi);

void BM_IdfBeta(benchmark::State& state) {
    double p = 0.001;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::IdfBeta(p, 2.5, 9.0));
        p = p > 0.99 ? 0.001 : p + 0.001;
    }
}
BENCHMARK(BM_IdfBeta);

void BM_CdfBin(benchmark::State& state) {
    double const n = static_cast<double>(state.range(0));
    double k = 0.0;
    long error = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::CdfBin(k, n, 0.3, error));
        k = k > n ? 0.0 : k + n / 97.0;
    }
}
BENCHMARK(BM_CdfBin)->Arg(100)->Arg(100000);

void BM_NonCentralCdfT(benchmark::State& state) {
    double const delta = static_cast<double>(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::NonCentralCdfT(delta + 0.5, 20.0, delta, 1e-12));
    }
}
BENCHMARK(BM_NonCentralCdfT)->Arg(1)->Arg(30);

void BM_FindNCParamT(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(QXDistFun::FindNCParamT(2.0, 20.0, 0.2, 1e-8, 1e-12));
    }
}
BENCHMARK(BM_FindNCParamT);

}  // namespace

int main(int argc, char** argv) {
    PrintAccuracyTable();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
