// Replays every input a fuzzer kept for this target (tests/fuzz/regressions/<target>/) through the
// target's entry point under the sanitizers of the test build. A crash, a leak or an exception other than
// a VTException fails the run. A target without kept inputs passes with nothing to replay.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/FuzzSupport.h"

TEST(FuzzReplay, KeptInputsAreRefusedOrReadCleanly) {
    namespace fs = std::filesystem;
    fs::path const folder(VANTRY_FUZZ_REGRESSIONS);
    std::vector<fs::path> inputs;
    if (fs::is_directory(folder)) {
        for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                inputs.push_back(entry.path());
            }
        }
    }
    std::sort(inputs.begin(), inputs.end());
    for (fs::path const& input : inputs) {
        SCOPED_TRACE(input.string());
        std::ifstream in(input, std::ios::binary);
        std::string const bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        EXPECT_NO_THROW(
            LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size()));
    }
    RecordProperty("inputs", static_cast<int>(inputs.size()));
}
