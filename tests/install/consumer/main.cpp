// A host of the installed library: prints y for one case of the model document named on the command line.
#include <iostream>

#include "vantry/host/Scorer.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return 1;
    }
    vantry::Scorer model = vantry::Scorer::FromFile(argv[1]);
    model.Score({{"x", 1.0}, {"n", 4.0}, {"color", "red"}});
    std::cout << "y=" << model.Text("y") << "\n";
    return 0;
}
