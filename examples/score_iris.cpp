// A host program: scores a few iris flowers with the example model and prints each prediction with its
// probability. Run it as `score_iris examples/iris_regression.pmml`.
#include <cstdio>
#include <exception>
#include <string>

#include "vantry/diagnostics/VTException.h"
#include "vantry/host/Scorer.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: score_iris MODEL.pmml\n");
        return 1;
    }
    struct Flower {
        double petalLength;
        double petalWidth;
    };
    Flower const flowers[] = {{1.4, 0.2}, {4.5, 1.5}, {6.0, 2.5}};
    try {
        vantry::Scorer iris = vantry::Scorer::FromFile(argv[1]);
        int const length = iris.InputIndex("petal_length");
        int const width = iris.InputIndex("petal_width");
        for (Flower const& flower : flowers) {
            iris.Set(length, flower.petalLength);
            iris.Set(width, flower.petalWidth);
            iris.Score();
            std::string const species = iris.Text("species");
            std::printf("%.1f %.1f %s %.3f\n", flower.petalLength, flower.petalWidth, species.c_str(),
                        iris.Number("P_" + species));
        }
        // By name, with a field left out: its prediction is missing.
        iris.Score({{"petal_length", 1.5}});
        std::printf("1.5 NA %s\n", iris.IsMissing("species") ? "missing" : iris.Text("species").c_str());
    } catch (QXVantry_920::VTException& error) {
        std::fprintf(stderr, "error %d: %s\n", error.GetErrorCode(), error.GetErrorMessage().c_str());
        return 2;
    } catch (std::exception const& error) {
        std::fprintf(stderr, "error: %s\n", error.what());
        return 2;
    }
    return 0;
}
