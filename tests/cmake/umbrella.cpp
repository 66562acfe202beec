// Compiles the umbrella header on its own, so that every public header stands by itself.
#include "vantry/Vantry.h"
