// The library's trace: a singleton that appends lines to one file per thread in a directory made for
// the process. It is off unless "sc.cfg" in the working directory turns it on when the singleton is
// first used; the level cannot change afterwards.
#pragma once

#include <atomic>
#include <string>

#include "vantry/Export.h"

namespace QXVantry_920 {

class VANTRY_EXPORT ScoringLog {
  public:
    // The singleton, made and configured at the first call. Threads that come first at the same moment
    // get the same object; after that a call costs one atomic load.
    static ScoringLog* GetInstance();

    // Writes one printf-style line if `level` is not above the configured level: 1 enter and exit
    // marks, 2 model names, 3 error messages. From a configured level of 3 every line is time-stamped.
    void TraceText(int level, char const* format, ...) __attribute__((format(printf, 3, 4)));

    // Deletes the singleton before clearing it, so on the live singleton it never returns. The library
    // never destroys the log: it lives until the process ends.
    ~ScoringLog();

  private:
    ScoringLog();
    ScoringLog(ScoringLog const&) = delete;
    ScoringLog& operator=(ScoringLog const&) = delete;

    void Initialize();
    std::string MakeLogDir();
    std::string TrimWhitespace(std::string const& text);
    void Trace(std::string const& text, int level, bool perThread, char const* tag);

    int level;
    std::string directory;

    static std::atomic<ScoringLog*> fInstance;
};

}  // namespace QXVantry_920
