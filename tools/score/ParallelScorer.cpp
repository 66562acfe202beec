#include "tools/score/ParallelScorer.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <ostream>
#include <thread>

#include "tools/score/Csv.h"
#include "tools/score/Progress.h"
#include "tools/score/RecordBlocks.h"
#include "tools/score/RowScorer.h"
#include "vantry/factory/ScoreModel.h"

namespace vantry_tool {

namespace {

// Blocks are sized to take about this long to score: long beside the cost of handing a block over, short
// enough that the threads share the end of the input evenly, whatever a row costs.
constexpr double kBlockSeconds = 0.01;
constexpr std::size_t kFirstBlockBytes = 16 * 1024;
constexpr std::size_t kLeastBlockBytes = 4 * 1024;
constexpr std::size_t kMostBlockBytes = 1024 * 1024;

struct Block {
    long sequence = 0;
    std::string input;
    std::string output;
    ScoreTally tally;
    // The line ends the block holds.
    long lines = 0;
    // The time its scoring took.
    double seconds = 0;
};

// Parses, scores and formats the block's rows.
void ScoreBlock(RowScorer& scorer, bool oneColumn, Block& block) {
    auto const start = std::chrono::steady_clock::now();
    TextStream stream(block.input);
    CsvReader reader(stream, 1, oneColumn);
    ScoreRecords(reader, scorer, -1, block.output, block.tally);
    block.lines = reader.Line() - 1;
    block.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The block size that takes about kBlockSeconds to score, as the block just scored suggests.
std::size_t NextBlockBytes(Block const& block) {
    double const bytes =
        static_cast<double>(block.input.size()) * kBlockSeconds / std::max(block.seconds, 1e-6);
    return static_cast<std::size_t>(
        std::clamp(bytes, static_cast<double>(kLeastBlockBytes), static_cast<double>(kMostBlockBytes)));
}

class Workers {
  public:
    Workers(TableInput const& input, ModelMaker const& makeModel) : fInput(input), fMakeModel(makeModel) {}

    void Start(int threads, QXVantry_920::ScoreModel& first) {
        fThreads.emplace_back([this, &first] { Work(&first); });
        for (int i = 1; i < threads; ++i) {
            fThreads.emplace_back([this] { Work(nullptr); });
        }
    }

    // Queues a block for scoring.
    void Put(std::unique_ptr<Block> block) {
        std::lock_guard<std::mutex> lock(fMutex);
        fQueue.push_back(std::move(block));
        fWork.notify_one();
    }

    // The scored block of that sequence number, waiting for it; null when a worker failed.
    std::unique_ptr<Block> Take(long sequence) {
        std::unique_lock<std::mutex> lock(fMutex);
        fDone.wait(lock, [&] { return fFailure != nullptr || fFinished.count(sequence) > 0; });
        if (fFailure != nullptr) {
            return nullptr;
        }
        auto found = fFinished.find(sequence);
        std::unique_ptr<Block> block = std::move(found->second);
        fFinished.erase(found);
        return block;
    }

    // Lets the workers end and waits for them; throws again what a worker threw.
    void Stop() {
        {
            std::lock_guard<std::mutex> lock(fMutex);
            fClosed = true;
            fWork.notify_all();
        }
        for (std::thread& thread : fThreads) {
            thread.join();
        }
        fThreads.clear();
        if (fFailure != nullptr) {
            std::rethrow_exception(fFailure);
        }
    }

    ~Workers() {
        if (!fThreads.empty()) {
            try {
                Stop();
            } catch (...) {
                // Already unwinding from the caller's own failure.
            }
        }
    }

  private:
    // Scores blocks with the model given, or with a model of its own when given none.
    void Work(QXVantry_920::ScoreModel* model) {
        try {
            std::unique_ptr<QXVantry_920::ScoreModel> own;
            if (model == nullptr) {
                own = fMakeModel();
                model = own.get();
            }
            RowScorer scorer(*model, fInput.header);
            while (std::unique_ptr<Block> block = Next()) {
                ScoreBlock(scorer, fInput.oneColumn, *block);
                std::lock_guard<std::mutex> lock(fMutex);
                fFinished[block->sequence] = std::move(block);
                fDone.notify_all();
            }
        } catch (...) {
            std::lock_guard<std::mutex> lock(fMutex);
            if (fFailure == nullptr) {
                fFailure = std::current_exception();
            }
            fClosed = true;
            fWork.notify_all();
            fDone.notify_all();
        }
    }

    std::unique_ptr<Block> Next() {
        std::unique_lock<std::mutex> lock(fMutex);
        fWork.wait(lock, [&] { return fClosed || !fQueue.empty(); });
        if (fQueue.empty() || fFailure != nullptr) {
            return nullptr;
        }
        std::unique_ptr<Block> block = std::move(fQueue.front());
        fQueue.pop_front();
        return block;
    }

    TableInput const& fInput;
    ModelMaker const& fMakeModel;
    std::vector<std::thread> fThreads;
    std::mutex fMutex;
    std::condition_variable fWork;
    std::condition_variable fDone;
    std::deque<std::unique_ptr<Block>> fQueue;
    std::map<long, std::unique_ptr<Block>> fFinished;
    bool fClosed = false;
    std::exception_ptr fFailure;
};

}  // namespace

ScoreTally ScoreInParallel(int threads, QXVantry_920::ScoreModel& model, ModelMaker const& makeModel,
                           TableInput const& input, std::ostream& out, Progress& progress,
                           FailureReport& failures) {
    RecordBlocks blocks(*input.rows, kFirstBlockBytes);
    auto first = std::make_unique<Block>();
    bool more = blocks.Next(first->input);
    long lineBase = input.firstLine;
    ScoreTally total;
    auto const write = [&](Block const& block) {
        out.write(block.output.data(), static_cast<std::streamsize>(block.output.size()));
        failures.Tell(block.tally, lineBase - 1);
        total.Add(block.tally, lineBase - 1);
        lineBase += block.lines;
        progress.Update(total.rows, blocks.BytesRead());
    };
    // Input of one block is scored here: starting threads and making models would cost more.
    if (!more || blocks.AtEnd()) {
        if (more) {
            RowScorer scorer(model, input.header);
            ScoreBlock(scorer, input.oneColumn, *first);
            write(*first);
        }
        return total;
    }
    Workers workers(input, makeModel);
    workers.Start(threads, model);
    workers.Put(std::move(first));
    // Enough blocks in flight that no worker waits for the writer, and no more.
    long const inFlight = 2L * threads;
    long sent = 1;
    long written = 0;
    while (more || written < sent) {
        while (more && sent - written < inFlight) {
            auto block = std::make_unique<Block>();
            more = blocks.Next(block->input);
            if (more) {
                block->sequence = sent++;
                workers.Put(std::move(block));
            }
        }
        if (written == sent) {
            continue;
        }
        std::unique_ptr<Block> block = workers.Take(written);
        if (block == nullptr) {
            break;
        }
        ++written;
        write(*block);
        blocks.SetBlockBytes(NextBlockBytes(*block));
    }
    workers.Stop();
    return total;
}

}  // namespace vantry_tool
