#include "vantry/diagnostics/ScoringLog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <vector>

namespace QXVantry_920 {

namespace {

char const kConfigFile[] = "sc.cfg";
char const kLevelKey[] = "trace_leve";
// A configuration line has room for 63 characters and its terminator.
int const kLineSize = 64;
// A traced text has room for 102,399 characters and its terminator.
std::size_t const kTextSize = 102400;
char const kBlanks[] = " \t\f";

// Local time as "YYYYMMDD hh:mm:ss.mmm", 21 characters.
std::string TimeStamp() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char stamp[32] = {};
    std::snprintf(stamp, sizeof(stamp), "%04hu%02hu%02hu %02hu:%02hu:%02hu.%03hu",
                  static_cast<unsigned short>(local.tm_year + 1900),
                  static_cast<unsigned short>(local.tm_mon + 1), static_cast<unsigned short>(local.tm_mday),
                  static_cast<unsigned short>(local.tm_hour), static_cast<unsigned short>(local.tm_min),
                  static_cast<unsigned short>(local.tm_sec),
                  static_cast<unsigned short>(now.tv_nsec / 1000000));
    return stamp;
}

}  // namespace

std::atomic<ScoringLog*> ScoringLog::fInstance{nullptr};

ScoringLog* ScoringLog::GetInstance() {
    ScoringLog* instance = fInstance.load(std::memory_order_acquire);
    if (instance == nullptr) {
        // Threads that come first together make one log between them: a local static is initialised
        // once, and the others wait for it. Later calls never get here. The object stays on the heap to
        // the end of the process, since its destructor is not meant to run.
        static ScoringLog* const created = new ScoringLog();
        fInstance.store(created, std::memory_order_release);
        instance = created;
    }
    return instance;
}

ScoringLog::ScoringLog() : level(0) {
    Initialize();
}

ScoringLog::~ScoringLog() {
    // Kept as it has always been: deleting the live singleton from its own destructor recurses. Nothing
    // in the library calls this.
    ScoringLog* instance = fInstance.load(std::memory_order_acquire);
    if (instance != nullptr) {
        delete instance;
        fInstance.store(nullptr, std::memory_order_release);
    }
}

void ScoringLog::TraceText(int level, char const* format, ...) {
    if (this->level <= 0 || level > this->level) {
        return;
    }
    std::vector<char> text(kTextSize, '\0');
    if (format != nullptr) {
        va_list args;
        va_start(args, format);
        std::vsnprintf(text.data(), text.size(), format, args);
        va_end(args);
    }
    Trace(text.data(), level, true, "scoring_trace");
}

void ScoringLog::Initialize() {
    std::ifstream config(kConfigFile);
    if (!config.is_open()) {
        return;
    }
    int found = 0;
    char line[kLineSize];
    // Only the end of the file or a match ends the reading. A line too long for the buffer fails the
    // stream without reaching the end, so the file's lines must stay under 64 characters. A file that
    // opens but cannot be read (a directory of that name) counts as one that cannot be opened.
    while (!config.eof() && !config.bad()) {
        config.getline(line, kLineSize);
        std::string const text(line);
        std::string::size_type const comma = text.find(',');
        if (text.empty() || comma == std::string::npos) {
            continue;
        }
        std::string const key = TrimWhitespace(text.substr(0, comma));
        int const value = std::atoi(TrimWhitespace(text.substr(comma + 1)).c_str());
        if (key == kLevelKey && value > 0) {
            found = value;
            break;
        }
    }
    config.close();
    if (found > 0) {
        level = found;
        directory = MakeLogDir();
    }
}

std::string ScoringLog::MakeLogDir() {
    char name[32] = {};
    std::snprintf(name, sizeof(name), "log%d", static_cast<int>(getpid()));
    // An existing directory serves as it is; a failure shows later as files that cannot be opened.
    (void)mkdir(name, 0777);
    return name;
}

std::string ScoringLog::TrimWhitespace(std::string const& text) {
    std::string::size_type const first = text.find_first_not_of(kBlanks);
    if (first == std::string::npos) {
        return std::string();
    }
    std::string::size_type const last = text.find_last_not_of(kBlanks);
    return text.substr(first, last - first + 1);
}

void ScoringLog::Trace(std::string const& text, int level, bool perThread, char const* tag) {
    char thread[32] = {};
    std::snprintf(thread, sizeof(thread), "%d", static_cast<int>(gettid()));
    std::string name = directory + "/";
    if (perThread) {
        name += thread;
        name += "_";
    }
    name += tag;
    name += ".log";
    // Each line opens and closes its file, so that it stands on disk at once.
    std::ofstream file(name, std::ios::out | std::ios::app);
    if (level > this->level) {
        return;
    }
    if (this->level >= 3) {
        file << TimeStamp() << ": ";
    }
    file << text << std::endl;
}

}  // namespace QXVantry_920
