// Models of the shipped families created from one document on several threads at once, while other
// threads score cases on instances of their own: every answer equals the single-threaded one. Built
// with ThreadSanitizer as well, where any race of the library or a plug-in fails the run.
#include <atomic>
#include <thread>

#include "tests/families/FamilyFixture.h"
#include "vantry/diagnostics/VTException.h"

using namespace families;

namespace {

// One document and the cases scored on it; an answer is the prediction and every result field.
struct Workload {
    std::string document;
    std::vector<std::vector<Input>> cases;
    std::vector<std::string> fields;
};

// The mining classification fixture with its placeholders filled: an average over tree segments.
std::string AveragedTrees() {
    return Edited(Fixture("MiningClassification.pmml"),
                  {{"@METHOD@", "average"}, {"@TREATMENT@", "continue"}, {"@THRESHOLD@", "1"}});
}

std::vector<Workload> Workloads() {
    std::vector<Workload> loads = {
        {Fixture("MiningNested.pmml"), {}, {"segment"}},
        {AveragedTrees(), {}, {}},
        {Fixture("classify.pmml"), {}, {"pYes", "pNo", "label", "conf"}},
    };
    for (int i = 0; i < 12; ++i) {
        const double x = -3.0 + 0.5 * i;
        loads[0].cases.push_back({Num("x", x)});
        loads[1].cases.push_back({Num("x", x), Num("z", 1.0 - x)});
        loads[2].cases.push_back({Num("a", x), Num("d", 2.0 * x), Text("b", i % 3 == 0 ? "u" : "v")});
    }
    return loads;
}

std::vector<std::string> Answers(ScoreModel* model, Workload const& load) {
    Scorer scorer(model);
    std::vector<std::string> answers;
    for (std::vector<Input> const& inputs : load.cases) {
        std::string answer = std::to_string(scorer.Score(inputs).Status());
        ScoreValue const* prediction = scorer.Result()->GetResultValue();
        answer += "|" + (prediction == nullptr ? std::string("none") : ScoreValue::TextOf(*prediction));
        for (std::string const& field : load.fields)
            answer += "|" + scorer.TextOf(field);
        answers.push_back(answer);
    }
    return answers;
}

}  // namespace

TEST(ConcurrentScoring, ThreadsAgreeWithOneThread) {
    ModelFactory::Initialize("");
    const std::vector<Workload> loads = Workloads();
    std::vector<std::vector<std::string>> expected;
    std::vector<std::unique_ptr<ScoreModel>> scoringModels;
    try {
        for (Workload const& load : loads) {
            expected.push_back(Answers(Load(load.document).get(), load));
            scoringModels.push_back(Load(load.document));
        }
    } catch (VTException& exception) {
        FAIL() << exception.GetErrorMessage();
    }

    constexpr int kBuilders = 2;
    constexpr int kRounds = 4;
    std::atomic<bool> go{false};
    std::atomic<int> builderMismatches{0};
    std::atomic<int> scorerMismatches{0};
    std::vector<std::thread> threads;
    // Builders all read the same document at the same moment, then score on what they built.
    for (int t = 0; t < kBuilders; ++t) {
        threads.emplace_back([&] {
            while (!go) {
            }
            for (int round = 0; round < kRounds; ++round) {
                for (std::size_t w = 0; w < loads.size(); ++w) {
                    std::unique_ptr<ScoreModel> model = Load(loads[w].document);
                    if (model == nullptr || Answers(model.get(), loads[w]) != expected[w])
                        ++builderMismatches;
                }
            }
        });
    }
    // Each scorer keeps one model of its own and scores it over and over meanwhile.
    for (std::size_t w = 0; w < loads.size(); ++w) {
        threads.emplace_back([&, w] {
            while (!go) {
            }
            for (int round = 0; round < 3 * kRounds; ++round) {
                if (Answers(scoringModels[w].get(), loads[w]) != expected[w])
                    ++scorerMismatches;
            }
        });
    }
    go = true;
    for (std::thread& thread : threads)
        thread.join();
    scoringModels.clear();
    ModelFactory::Terminate();
    EXPECT_EQ(builderMismatches, 0);
    EXPECT_EQ(scorerMismatches, 0);
}
