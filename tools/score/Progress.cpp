#include "tools/score/Progress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <ostream>

#include "tools/score/TableScoring.h"

namespace vantry_tool {

namespace {

constexpr std::chrono::milliseconds kFirstDraw(1000);
constexpr std::chrono::milliseconds kRedraw(100);

std::string Counted(long count, char const* one, char const* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string Duration(double seconds) {
    long const whole = static_cast<long>(seconds + 0.5);
    char text[32];
    std::snprintf(text, sizeof(text), "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    return text;
}

}  // namespace

Progress::Progress(std::ostream& err, bool shown, std::int64_t totalBytes)
    : fErr(err),
      fShown(shown),
      fTotalBytes(totalBytes),
      fStart(Clock::now()),
      fNextDraw(fStart + kFirstDraw) {}

void Progress::Update(long rows, std::int64_t bytesRead) {
    if (!fShown) {
        return;
    }
    Clock::time_point const now = Clock::now();
    if (now < fNextDraw) {
        return;
    }
    fNextDraw = now + kRedraw;
    double const seconds = std::chrono::duration<double>(now - fStart).count();
    std::string line = "vantry-score: " + Counted(rows, "row", "rows") + ", " +
                       std::to_string(static_cast<long>(rows / seconds)) + " rows/s";
    if (fTotalBytes > 0 && bytesRead > 0) {
        double const left =
            seconds * static_cast<double>(fTotalBytes - bytesRead) / static_cast<double>(bytesRead);
        line += ", " + Duration(left > 0 ? left : 0) + " left";
    }
    std::size_t const width = line.size();
    if (width < fDrawnWidth) {
        line.append(fDrawnWidth - width, ' ');
    }
    fDrawnWidth = width;
    fErr << '\r' << line << std::flush;
}

void Progress::Finish() {
    if (fDrawnWidth > 0) {
        fErr << '\r' << std::string(fDrawnWidth, ' ') << '\r' << std::flush;
        fDrawnWidth = 0;
    }
}

double Progress::Seconds() const {
    return std::chrono::duration<double>(Clock::now() - fStart).count();
}

std::string SummaryLine(ScoreTally const& tally, double seconds) {
    char time[32];
    std::snprintf(time, sizeof(time), "%.2f s", seconds);
    std::string line = "vantry-score: " + Counted(tally.rows, "row", "rows") + ", " +
                       Counted(tally.invalidCells, "invalid value", "invalid values");
    if (tally.failedRows > 0) {
        line += ", " + Counted(tally.failedRows, "failed row", "failed rows");
    }
    return line + ", " + time;
}

bool ErrorIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

std::int64_t RegularFileSize(std::string const& path) {
    struct stat status {};
    int const result = path == "-" ? fstat(STDIN_FILENO, &status) : stat(path.c_str(), &status);
    return result == 0 && S_ISREG(status.st_mode) ? static_cast<std::int64_t>(status.st_size) : -1;
}

}  // namespace vantry_tool
