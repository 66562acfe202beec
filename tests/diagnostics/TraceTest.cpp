#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "vantry/diagnostics/ScoringLog.h"
#include "vantry/diagnostics/VTException.h"

using QXVantry_920::ScoringLog;
using QXVantry_920::VTException;
namespace fs = std::filesystem;

// The trace reads its configuration once per process, at first use, from the working directory. Each
// scenario therefore runs in a forked child inside its own temporary folder, and the parent, which never
// touches the trace itself, reads the files back. The child's main thread id equals its process id.

namespace {

struct TempDir {
    TempDir() {
        char name[] = "/tmp/vantry_trace_XXXXXX";
        path = mkdtemp(name);
    }
    ~TempDir() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    fs::path path;
};

void WriteFile(fs::path const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string ReadFile(fs::path const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> ReadLines(fs::path const& path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

// Runs `body` in a child process working in `dir` and expects it to exit with 0; returns its id.
pid_t RunInChild(fs::path const& dir, std::function<void()> const& body) {
    pid_t const pid = fork();
    if (pid == 0) {
        // A configuration that is never read to its end stops the child, not the whole test run.
        alarm(60);
        if (chdir(dir.c_str()) != 0) {
            _exit(2);
        }
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "child status " << status;
    return pid;
}

fs::path LogDir(fs::path const& dir, pid_t pid) {
    return dir / ("log" + std::to_string(pid));
}

fs::path LogFile(fs::path const& dir, pid_t pid, long thread) {
    return LogDir(dir, pid) / (std::to_string(thread) + "_scoring_trace.log");
}

// Traces one event of each level the library uses; the error message is also kept in "message.txt".
void TraceEveryLevel() {
    ScoringLog* log = ScoringLog::GetInstance();
    log->TraceText(1, "Enter:%s", "QXVantry_920::ModelFactory::MakeModelFromXML");
    log->TraceText(2, "Model name is :%s", "TreeModel");
    VTException e;
    e.PutErrorMessage(260306, "x");
    WriteFile("message.txt", e.GetErrorMessage());
    log->TraceText(1, "Make Model End");
}

// The lines TraceEveryLevel leaves at a configured level, time stamps removed.
std::vector<std::string> ExpectedLines(int level) {
    std::vector<std::string> lines{"Enter:QXVantry_920::ModelFactory::MakeModelFromXML"};
    if (level >= 2) {
        lines.push_back("Model name is :TreeModel");
    }
    if (level >= 3) {
        lines.push_back("Error message : Repeate bin values in 'x'.");
    }
    lines.push_back("Make Model End");
    return lines;
}

// Checks and removes the "YYYYMMDD hh:mm:ss.mmm: " head of each line.
std::vector<std::string> StripTimeStamps(std::vector<std::string> lines) {
    std::regex const stamp("[0-9]{4}(0[1-9]|1[0-2])[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9]\\.[0-9]{3}: ");
    for (std::string& line : lines) {
        EXPECT_TRUE(line.size() >= 23 && std::regex_match(line.substr(0, 23), stamp)) << line;
        line.erase(0, 23);
    }
    return lines;
}

}  // namespace

TEST(ScoringLog, ConfigurationDecidesTheLevelAndTheLineShape) {
    struct Case {
        std::string config;
        int level;
    } const cases[] = {
        {"trace_leve,1\n", 1},
        {"trace_leve,2\n", 2},
        {"trace_leve,3\n", 3},
        {"trace_leve,7", 7},
        {"trace_leve,0\n", 0},
        {"trace_leve,-1\n", 0},
        {"trace_leve,abc\n", 0},
        {"trace_level,3\n", 0},
        {"trace_leve 3\n", 0},
        {"\rtrace_leve,3\n", 0},
        {"trace_leve,0\ntrace_leve,1\n", 1},
        {"trace_leve,-1\ntrace_leve,x\ntrace_leve,2\n", 2},
        {"trace_leve,2\ntrace_leve,3\n", 2},
        {" trace_leve ,\t2\n", 2},
        {"\ftrace_leve\t,  3 \r\n", 3},
        {"other,3\n\nno comma\ntrace_leve,2 and text", 2},
        {std::string(63, 'x') + "\ntrace_leve,2\n", 2},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE("sc.cfg: \"" + c.config + "\"");
        TempDir dir;
        WriteFile(dir.path / "sc.cfg", c.config);
        pid_t const pid = RunInChild(dir.path, TraceEveryLevel);

        EXPECT_EQ(ReadFile(dir.path / "message.txt"), "Repeate bin values in 'x'.");
        if (c.level == 0) {
            EXPECT_FALSE(fs::exists(LogDir(dir.path, pid)));
            continue;
        }
        std::vector<std::string> const lines = ReadLines(LogFile(dir.path, pid, pid));
        EXPECT_EQ(c.level >= 3 ? StripTimeStamps(lines) : lines, ExpectedLines(c.level));
    }
}

TEST(ScoringLog, StaysOffWithoutAReadableConfigurationAndLaterFilesDoNotCount) {
    // No "sc.cfg" at all, and one that opens but cannot be read (a directory of that name).
    for (bool const directory : {false, true}) {
        SCOPED_TRACE(directory ? "sc.cfg is a directory" : "no sc.cfg");
        TempDir dir;
        if (directory) {
            fs::create_directory(dir.path / "sc.cfg");
        }
        pid_t const pid = RunInChild(dir.path, [directory] {
            ScoringLog::GetInstance();
            if (!directory) {
                WriteFile("sc.cfg", "trace_leve,3\n");
            }
            TraceEveryLevel();

            // The host's view of the messages: the formatted text followed directly by the detail.
            VTException parse;
            parse.PutErrorMessage(260109);
            parse.SetDetailMessage("d");
            WriteFile("parse.txt", parse.GetErrorMessage());
            VTException unknown(1, "Fn: not predefined!", &ScoreContext::gErrorFormater);
            WriteFile("unknown.txt", unknown.GetErrorMessage());
        });
        EXPECT_FALSE(fs::exists(LogDir(dir.path, pid)));
        EXPECT_EQ(ReadFile(dir.path / "parse.txt"), "Error in parsing the PMML file. Detailed message:d");
        EXPECT_EQ(ReadFile(dir.path / "unknown.txt"), "Fn: not predefined!");
    }
}

TEST(ScoringLog, EachThreadWritesItsOwnFileAndLongTextIsCut) {
    TempDir dir;
    WriteFile(dir.path / "sc.cfg", "trace_leve,1\n");
    pid_t const pid = RunInChild(dir.path, [] {
        // A directory left from before serves as it is.
        mkdir(("log" + std::to_string(getpid())).c_str(), 0777);
        ScoringLog::GetInstance()->TraceText(1, "main %d", 1);
        std::thread worker([] {
            WriteFile("thread.txt", std::to_string(gettid()));
            ScoringLog::GetInstance()->TraceText(1, "worker %s", "line");
        });
        worker.join();
        ScoringLog::GetInstance()->TraceText(1, "%s", std::string(200000, 'y').c_str());
        ScoringLog::GetInstance()->TraceText(1, "main %d", 2);
    });
    long const worker = std::stol(ReadFile(dir.path / "thread.txt"));
    EXPECT_NE(worker, pid);
    EXPECT_EQ(ReadLines(LogFile(dir.path, pid, pid)),
              (std::vector<std::string>{"main 1", std::string(102399, 'y'), "main 2"}));
    EXPECT_EQ(ReadLines(LogFile(dir.path, pid, worker)), std::vector<std::string>{"worker line"});
}

TEST(ScoringLog, ThreadsThatComeFirstTogetherShareOneLog) {
    // Several fresh processes, since only the very first use of each can race.
    for (int round = 0; round < 5; ++round) {
        TempDir dir;
        WriteFile(dir.path / "sc.cfg", "trace_leve,1\n");
        RunInChild(dir.path, [] {
            std::atomic<bool> go{false};
            std::vector<ScoringLog*> seen(8, nullptr);
            std::vector<std::thread> threads;
            for (ScoringLog*& slot : seen) {
                threads.emplace_back([&go, &slot] {
                    while (!go.load()) {
                    }
                    slot = ScoringLog::GetInstance();
                });
            }
            go = true;
            for (std::thread& thread : threads) {
                thread.join();
            }
            for (ScoringLog* log : seen) {
                if (log != ScoringLog::GetInstance()) {
                    _exit(3);
                }
            }
        });
    }
}
