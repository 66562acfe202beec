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
using Lines = std::vector<std::string>;

// The trace reads its configuration once per process, at first use, from the working directory. Each
// scenario therefore runs in a forked child inside its own temporary folder, and the parent, which never
// touches the trace itself, reads the files back. The child's main thread id equals its process id.

namespace {

void WriteFile(fs::path const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string ReadFile(fs::path const& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

Lines ReadLines(fs::path const& path) {
    Lines lines;
    std::istringstream in(ReadFile(path));
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

// A temporary working folder, with "sc.cfg" holding `config` unless that is null.
struct Sandbox {
    explicit Sandbox(char const* config) {
        char name[] = "/tmp/vantry_trace_XXXXXX";
        path = mkdtemp(name);
        if (config != nullptr) {
            WriteFile(path / "sc.cfg", config);
        }
    }
    ~Sandbox() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }

    // Runs `body` in a child process working here and expects it to exit with 0.
    void Run(std::function<void()> const& body) {
        pid = fork();
        if (pid == 0) {
            // A configuration that is never read to its end stops the child, not the whole test run.
            alarm(60);
            if (chdir(path.c_str()) != 0) {
                _exit(2);
            }
            body();
            _exit(0);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "child status " << status;
    }

    fs::path LogDir() const { return path / ("log" + std::to_string(pid)); }
    Lines Log(long thread) const {
        return ReadLines(LogDir() / (std::to_string(thread) + "_scoring_trace.log"));
    }

    fs::path path;
    pid_t pid = 0;
};

// One event of each level the library traces, and the lines each leaves, time stamps removed.
struct Event {
    int level;
    char const* line;
} const kEvents[] = {{1, "Enter:QXVantry_920::ModelFactory::MakeModelFromXML"},
                     {2, "Model name is :TreeModel"},
                     {3, "Error message : Repeate bin values in 'x'."},
                     {1, "Make Model End"}};

// Traces kEvents, the error through an exception; its message is also kept in "message.txt".
void TraceEveryLevel() {
    ScoringLog* log = ScoringLog::GetInstance();
    log->TraceText(1, "Enter:%s", "QXVantry_920::ModelFactory::MakeModelFromXML");
    log->TraceText(2, "Model name is :%s", "TreeModel");
    VTException e;
    e.PutErrorMessage(260306, "x");
    WriteFile("message.txt", e.GetErrorMessage());
    log->TraceText(1, "Make Model End");
}

Lines ExpectedLines(int level) {
    Lines lines;
    for (Event const& event : kEvents) {
        if (event.level <= level) {
            lines.push_back(event.line);
        }
    }
    return lines;
}

// Checks and removes the "YYYYMMDD hh:mm:ss.mmm: " head of each line.
Lines StripTimeStamps(Lines lines) {
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
        {"\rtrace_leve,3\n", 0},
        {"trace_leve,0\ntrace_leve,1\n", 1},
        {"trace_leve,2\ntrace_leve,3\n", 2},
        {" \ftrace_leve \t,\t 2 \r\n", 2},
        {"other,3\n\ntrace_leve 3\ntrace_leve,2 and text", 2},
        {std::string(63, 'x') + "\ntrace_leve,2\n", 2},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE("sc.cfg: \"" + c.config + "\"");
        Sandbox box(c.config.c_str());
        box.Run(TraceEveryLevel);
        EXPECT_EQ(ReadFile(box.path / "message.txt"), "Repeate bin values in 'x'.");
        if (c.level == 0) {
            EXPECT_FALSE(fs::exists(box.LogDir()));
        } else {
            Lines const lines = box.Log(box.pid);
            EXPECT_EQ(c.level >= 3 ? StripTimeStamps(lines) : lines, ExpectedLines(c.level));
        }
    }
}

TEST(ScoringLog, StaysOffWithoutAReadableConfigurationAndLaterFilesDoNotCount) {
    // No "sc.cfg" at all, and one that opens but cannot be read (a directory of that name).
    for (bool const directory : {false, true}) {
        SCOPED_TRACE(directory ? "sc.cfg is a directory" : "no sc.cfg");
        Sandbox box(nullptr);
        if (directory) {
            fs::create_directory(box.path / "sc.cfg");
        }
        box.Run([directory] {
            ScoringLog::GetInstance();
            if (!directory) {
                WriteFile("sc.cfg", "trace_leve,3\n");
            }
            TraceEveryLevel();
            // The host's view of the messages: the formatted text followed directly by the detail.
            VTException parse;
            parse.PutErrorMessage(260109);
            parse.SetDetailMessage("d");
            VTException unknown(1, "Fn: not predefined!", &ScoreContext::gErrorFormater);
            WriteFile("messages.txt", parse.GetErrorMessage() + "|" + unknown.GetErrorMessage());
        });
        EXPECT_FALSE(fs::exists(box.LogDir()));
        EXPECT_EQ(ReadFile(box.path / "messages.txt"),
                  "Error in parsing the PMML file. Detailed message:d|Fn: not predefined!");
    }
}

TEST(ScoringLog, EachThreadWritesItsOwnFileAndLongTextIsCut) {
    Sandbox box("trace_leve,1\n");
    box.Run([] {
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
    long const worker = std::stol(ReadFile(box.path / "thread.txt"));
    EXPECT_NE(worker, box.pid);
    EXPECT_EQ(box.Log(box.pid), (Lines{"main 1", std::string(102399, 'y'), "main 2"}));
    EXPECT_EQ(box.Log(worker), Lines{"worker line"});
}

TEST(ScoringLog, ThreadsThatComeFirstTogetherShareOneLog) {
    // Several fresh processes, since only the very first use of each can race.
    for (int round = 0; round < 5; ++round) {
        Sandbox box("trace_leve,1\n");
        box.Run([] {
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
