// What may pass from a plug-in's code through the factory to the host, and how deep the factory may be
// re-entered by plug-ins that build their sub-models through it. Internal to the library.
#pragma once

#include <string>

namespace QXVantry_920 {

// Called inside a catch block: passes the exception in flight on in a form the host can catch. A
// VTException and std::bad_alloc go on as they are (Xerces-C's out-of-memory exception becomes a
// std::bad_alloc); any other exception becomes VTException 260304 with its words, or its type's name,
// as detail. Whatever the caller owns is freed by the unwinding.
[[noreturn]] void RethrowAtBoundary();

// Runs a call into a plug-in (its GiveMyTranslator, PassModelNames or a translator's slot) and lets
// only what RethrowAtBoundary passes leave it.
template <typename Call>
auto CallPlugin(Call&& call) -> decltype(call()) {
    try {
        return call();
    } catch (...) {
        RethrowAtBoundary();
    }
}

// Counts, per thread, how many element routes of the factory are running inside one another: a
// plug-in that builds a sub-model through the factory enters it again, one stack of frames deeper.
// Throws VTException 260221 with the model name when the nesting goes beyond kMaxModelNesting.
class ModelNestingGuard {
  public:
    explicit ModelNestingGuard(std::string const& modelName);
    ~ModelNestingGuard();
    ModelNestingGuard(ModelNestingGuard const&) = delete;
    ModelNestingGuard& operator=(ModelNestingGuard const&) = delete;
};

}  // namespace QXVantry_920
