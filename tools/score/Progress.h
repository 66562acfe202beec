// What the scoring command tells on standard error while it runs and when it ends: a progress line,
// redrawn in place on a terminal, and a summary line.
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace vantry_tool {

struct ScoreTally;

class Progress {
  public:
    // shown: whether to draw at all (standard error is a terminal and the run is not quiet); totalBytes:
    // the input's size when known, else a negative number.
    Progress(std::ostream& err, bool shown, std::int64_t totalBytes);

    // Rows done and input bytes read so far (negative when not known). Cheap when nothing is due: the
    // line is first drawn after a second and redrawn at most ten times a second.
    void Update(long rows, std::int64_t bytesRead);

    bool Shown() const { return fShown; }

    // Clears the progress line, if one was drawn.
    void Finish();

    // Seconds since the run began.
    double Seconds() const;

  private:
    using Clock = std::chrono::steady_clock;

    std::ostream& fErr;
    bool fShown;
    std::int64_t fTotalBytes;
    Clock::time_point fStart;
    Clock::time_point fNextDraw;
    std::size_t fDrawnWidth = 0;
};

// "vantry-score: 1200 rows, 3 invalid values, 1 failed row, 0.25 s".
std::string SummaryLine(ScoreTally const& tally, double seconds);

// Whether standard error is a terminal.
bool ErrorIsTerminal();

// The size of a regular file (standard input for "-"), else -1.
std::int64_t RegularFileSize(std::string const& path);

}  // namespace vantry_tool
