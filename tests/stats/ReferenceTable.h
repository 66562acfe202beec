// The table of reference values of the distribution functions (tests/fixtures/stats_reference.csv, written
// by make_reference.py), the dispatch from a row's function name to the library call, and the bound each
// function and grid is held to. Shared by the unit test and the accuracy benchmark; header only, so that both
// programs link against the library alone.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "vantry/stats/QXDistFun.h"

namespace statsref {

struct Row {
    std::string function;
    std::string grid;
    double x[4] = {0.0, 0.0, 0.0, 0.0};
    double expected = 0.0;
};

// The fixture folder named by VANTRY_FIXTURES, else the one beside this header's folder in the source tree.
inline std::string FixturePath(std::string const& name) {
    char const* dir = std::getenv("VANTRY_FIXTURES");
    if (dir != nullptr && *dir != '\0') {
        return std::string(dir) + "/" + name;
    }
    std::string here = __FILE__;
    here = here.substr(0, here.find_last_of('/') + 1);
    return here + "../fixtures/" + name;
}

// Reads the table; an unreadable file gives no rows.
inline std::vector<Row> Load(std::string const& path) {
    std::vector<Row> rows;
    std::ifstream in(path);
    std::string line;
    std::getline(in, line);  // header
    while (std::getline(in, line)) {
        std::vector<std::string> cells;
        std::stringstream fields(line);
        std::string cell;
        while (std::getline(fields, cell, ',')) {
            cells.push_back(cell);
        }
        if (cells.size() != 7) {
            continue;
        }
        Row row;
        row.function = cells[0];
        row.grid = cells[1];
        for (int i = 0; i < 4; ++i) {
            row.x[i] = cells[2 + i].empty() ? 0.0 : std::strtod(cells[2 + i].c_str(), nullptr);
        }
        row.expected = std::strtod(cells[6].c_str(), nullptr);
        rows.push_back(row);
    }
    return rows;
}

using Evaluator = std::function<double(double const*)>;

// Runs a function with an error argument: the missing value on any code but 0.
template <typename Code, typename F>
Evaluator Checked(F f) {
    return [f](double const* x) {
        Code error = 0;
        double const value = f(x, error);
        return error == 0 ? value : -1.7976931348623157e308;
    };
}

// Public entry points by name.
inline std::map<std::string, Evaluator> const& Evaluators() {
    using Q = QXMath_920::QXDistFun;
    using X = double const*;
    static std::map<std::string, Evaluator> const table = {
        {"CdfStdNorm", [](X x) { return Q::CdfStdNorm(x[0]); }},
        {"CdfNorm", [](X x) { return Q::CdfNorm(x[0], x[1], x[2]); }},
        {"IdfStdNorm", [](X x) { return Q::IdfStdNorm(x[0]); }},
        {"IdfNorm", [](X x) { return Q::IdfNorm(x[0], x[1], x[2]); }},
        {"IdfT", [](X x) { return Q::IdfT(x[0], x[1], x[2], x[3]); }},
        {"IdfF", [](X x) { return Q::IdfF(x[0], x[1], x[2]); }},
        {"IdfChi", [](X x) { return Q::IdfChi(x[0], x[1]); }},
        {"IdfGam", [](X x) { return Q::IdfGam(x[0], x[1], x[2]); }},
        {"IdfBeta", [](X x) { return Q::IdfBeta(x[0], x[1], x[2]); }},
        {"IdfBin", Checked<long>([](X x, long& e) { return Q::IdfBin(x[0], x[1], x[2], e); })},
        {"NonCentralCdfT", [](X x) { return Q::NonCentralCdfT(x[0], x[1], x[2], x[3]); }},
        {"NonCentralPdfT", Checked<long>([](X x, long& e) { return Q::NonCentralPdfT(x[0], x[1], x[2], e); })},
        {"NonCentralCdfF", [](X x) { return Q::NonCentralCdfF(x[0], x[1], x[2], x[3], 1e-12); }},
        {"NonCentralCdfChi", [](X x) { return Q::NonCentralCdfChi(x[0], x[1], x[2]); }},
        {"FindNCParamT", [](X x) { return Q::FindNCParamT(x[0], x[1], x[2], x[3], 1e-12); }},
        {"FindNCParamF", [](X x) { return Q::FindNCParamF(x[0], x[1], x[2], x[3], 1e-10); }},
        {"FindNCParamChi", [](X x) { return Q::FindNCParamChi(x[0], x[1], x[2], x[3]); }},
        {"kromdnlgam", [](X x) { return Q::kromdnlgam(x[0]); }},
        {"CdfT", [](X x) { return Q::CdfT(x[0], x[1]); }},
        {"SigT", [](X x) { return Q::SigT(x[0], x[1]); }},
        {"CdfF", [](X x) { return Q::CdfF(x[0], x[1], x[2]); }},
        {"SigF", [](X x) { return Q::SigF(x[0], x[1], x[2]); }},
        {"CdfChi", [](X x) { return Q::CdfChi(x[0], x[1]); }},
        {"SigChi", [](X x) { return Q::SigChi(x[0], x[1]); }},
        {"CdfGam", [](X x) { return Q::CdfGam(x[0], x[1], x[2]); }},
        {"CdfBeta", [](X x) { return Q::CdfBeta(x[0], x[1], x[2]); }},
        {"PdfNormal", [](X x) { return Q::PdfNormal(x[0], x[1], x[2]); }},
        {"PdfGamma", [](X x) { return Q::PdfGamma(x[0], x[1], x[2]); }},
        {"PdfT", Checked<long>([](X x, long& e) { return Q::PdfT(x[0], x[1], e); })},
        {"CdfBin", Checked<long>([](X x, long& e) { return Q::CdfBin(x[0], x[1], x[2], e); })},
        {"PdfBin", Checked<long>([](X x, long& e) { return Q::PdfBin(x[0], x[1], x[2], e); })},
        {"PdfNegBin", Checked<long>([](X x, long& e) { return Q::PdfNegBin(x[0], x[1], x[2], e); })},
        {"PdfHyper",
         [](X x) {
             return Q::PdfHyper(static_cast<long>(x[0]), static_cast<long>(x[1]), static_cast<long>(x[2]),
                                static_cast<long>(x[3]));
         }},
        {"CDFHyper", Checked<int>([](X x, int& e) { return Q::CDFHyper(x[0], x[1], x[2], x[3], e); })},
    };
    return table;
}

inline double AbsoluteError(double got, double expected) {
    return got == expected ? 0.0 : std::isnan(got) ? INFINITY : std::fabs(got - expected);
}

// The error of a result against its reference: relative where the reference is not 0, absolute at 0.
inline double Error(double got, double expected) {
    double const diff = AbsoluteError(got, expected);
    return expected == 0.0 ? diff : diff / std::fabs(expected);
}

// Worst errors over one function and grid, with the row of the worst relative error.
struct GridResult {
    std::string function;
    std::string grid;
    int rows = 0;
    double worst = 0.0;
    double worstAbsolute = 0.0;
    Row worstRow;
};

// Evaluates every row, grouping by function and grid in the order of the table. Rows of functions without
// an evaluator are left out.
inline std::vector<GridResult> Evaluate(std::vector<Row> const& rows) {
    std::vector<GridResult> results;
    std::map<std::string, size_t> index;
    for (Row const& row : rows) {
        auto found = Evaluators().find(row.function);
        if (found == Evaluators().end()) {
            continue;
        }
        std::string const key = row.function + "|" + row.grid;
        auto slot = index.find(key);
        if (slot == index.end()) {
            slot = index.emplace(key, results.size()).first;
            results.push_back(GridResult{row.function, row.grid, 0, 0.0, 0.0, row});
        }
        GridResult& result = results[slot->second];
        double const got = found->second(row.x);
        double const error = Error(got, row.expected);
        ++result.rows;
        result.worstAbsolute = std::max(result.worstAbsolute, AbsoluteError(got, row.expected));
        if (error > result.worst) {
            result.worst = error;
            result.worstRow = row;
        }
    }
    return results;
}

struct Bound {
    double limit;
    bool absolute;  // approximations are held to an absolute bound, everything else to a relative one
};

// Bounds per function and grid. Where a bound is wider than a few units of 1e-14 the algorithm itself costs
// the digits: differences of log gamma values of large arguments, 1 - exp(b log(1 - x)) for small x in the
// beta ratio with a shape of 1, 0.5 - atan(x) / pi for large x, the stopping rules of the iterations, and the
// named normal approximations. The beta inverse stops on absolute tolerances, so the quantiles built on it
// are held to what those allow.
inline std::map<std::pair<std::string, std::string>, Bound> const& Bounds() {
    static std::map<std::pair<std::string, std::string>, Bound> const bounds = {
        {{"CdfStdNorm", "centre"}, {1e-14, false}},
        {{"CdfStdNorm", "lower tail"}, {5e-13, false}},
        {{"CdfStdNorm", "upper tail"}, {1e-15, false}},
        {{"CdfStdNorm", "underflow guard"}, {0.0, false}},
        {{"CdfNorm", "centre"}, {2e-14, false}},
        {{"IdfStdNorm", "centre"}, {1e-14, false}},
        {{"IdfStdNorm", "lower tail"}, {1e-14, false}},
        {{"IdfStdNorm", "upper tail"}, {1e-14, false}},
        {{"IdfNorm", "centre"}, {1e-14, false}},
        {{"IdfT", "centre"}, {1e-8, false}},
        {{"IdfT", "tails"}, {5e-7, false}},
        {{"IdfF", "centre"}, {1e-8, false}},
        {{"IdfF", "one and 1000 degrees"}, {1e-4, false}},
        {{"IdfChi", "centre"}, {1e-12, false}},
        {{"IdfChi", "tails"}, {1e-9, false}},
        {{"IdfChi", "below 5e-7"}, {2e-7, false}},
        {{"IdfChi", "bisection"}, {1e-8, false}},
        {{"IdfGam", "centre"}, {1e-13, false}},
        {{"IdfBeta", "centre"}, {1e-10, true}},
        {{"IdfBin", "counts"}, {0.0, false}},
        {{"NonCentralCdfT", "grid"}, {2e-12, true}},
        {{"NonCentralCdfT", "large delta"}, {2e-12, true}},
        {{"NonCentralPdfT", "grid"}, {5e-10, false}},
        {{"NonCentralCdfF", "grid"}, {2e-12, true}},
        {{"NonCentralCdfChi", "grid"}, {2e-12, true}},
        {{"FindNCParamT", "search"}, {5e-10, true}},
        {{"FindNCParamF", "search"}, {5e-10, false}},
        {{"FindNCParamChi", "search"}, {5e-10, true}},
        {{"kromdnlgam", "below 1/2"}, {1e-15, false}},
        {{"kromdnlgam", "1/2 to 8"}, {1e-15, false}},
        {{"kromdnlgam", "8 and above"}, {1e-15, false}},
        {{"kromdnlgam", "exact points"}, {0.0, false}},
        {{"CdfT", "centre"}, {1e-13, false}},
        {{"SigT", "centre"}, {1e-13, false}},
        {{"CdfT", "lower tail"}, {2e-11, false}},
        {{"SigT", "upper tail"}, {2e-11, false}},
        {{"CdfT", "df 1e4"}, {2e-10, false}},
        {{"SigT", "df 1e4"}, {2e-10, false}},
        {{"CdfT", "one degree"}, {1e-14, false}},
        {{"SigT", "one degree"}, {1e-10, false}},
        {{"CdfF", "centre"}, {5e-13, false}},
        {{"SigF", "centre"}, {5e-13, false}},
        {{"CdfF", "lower tail"}, {2e-10, false}},
        {{"SigF", "upper tail"}, {1e-12, false}},
        {{"CdfChi", "centre"}, {5e-13, false}},
        {{"SigChi", "centre"}, {5e-13, false}},
        {{"CdfChi", "lower tail"}, {5e-13, false}},
        {{"SigChi", "upper tail"}, {5e-13, false}},
        {{"CdfChi", "df 5000"}, {1e-11, false}},
        {{"SigChi", "df 5000"}, {1e-11, false}},
        {{"CdfChi", "normal approximation"}, {1e-4, true}},
        {{"SigChi", "normal approximation"}, {1e-4, true}},
        {{"CdfChi", "underflow guard"}, {0.0, false}},
        {{"SigChi", "underflow guard"}, {0.0, false}},
        {{"CdfGam", "centre"}, {1e-14, false}},
        {{"CdfGam", "underflow guard"}, {0.0, false}},
        {{"CdfBeta", "centre"}, {1e-12, false}},
        {{"CdfBeta", "lower tail"}, {2e-10, false}},
        {{"CdfBeta", "upper tail"}, {1e-12, false}},
        {{"CdfBeta", "large shapes"}, {1e-9, false}},
        {{"PdfT", "centre"}, {1e-12, false}},
        {{"PdfGamma", "centre"}, {1e-13, false}},
        {{"PdfGamma", "underflow guard"}, {0.0, false}},
        {{"PdfNormal", "centre"}, {1e-15, false}},
        {{"PdfBin", "ends"}, {1e-13, false}},
        {{"PdfBin", "n up to 1000"}, {5e-12, false}},
        {{"PdfBin", "n 1e5 and 1e7"}, {1e-7, false}},
        {{"CdfBin", "n up to 1000"}, {5e-12, false}},
        {{"CdfBin", "n 1e5 and 1e7"}, {1e-7, false}},
        {{"CdfBin", "tails"}, {5e-11, false}},
        {{"PdfNegBin", "centre"}, {1e-13, false}},
        {{"PdfHyper", "total up to 1000"}, {2e-11, false}},
        {{"PdfHyper", "total above 1000"}, {2e-8, false}},
        {{"PdfHyper", "underflow guard"}, {0.0, false}},
        {{"CDFHyper", "total up to 1000"}, {1e-14, false}},
        {{"CDFHyper", "total above 1000"}, {1e-8, false}},
        {{"CDFHyper", "normal approximation"}, {5e-4, true}},
    };
    return bounds;
}

}  // namespace statsref
