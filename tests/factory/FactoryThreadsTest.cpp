// Model creation from several threads at once after Initialize.
#include <sstream>
#include <thread>

#include "FactoryTestSupport.h"

using QXVantry_920::ModelFactory;
using namespace vantry_test;

TEST(FactoryThreads, ModelsAreBuiltConcurrentlyAfterInitialize) {
    const std::string catalogue =
        WriteTempFile("threads_catalogue.txt", "RegressionModel TreeModel NearestNeighborModel\n");
    ModelFactory::Initialize(catalogue);
    ASSERT_TRUE(ModelFactory::fInitialized);

    const std::vector<std::pair<std::string, std::string>> cases = {
        {"<PMML><TreeModel modelName=\"t\"/></PMML>", "TreeModel|document|PMML|TreeModel|t|UTF-8"},
        {"<PMML><RegressionModel modelName=\"r\"/></PMML>",
         "RegressionModel|document|PMML|RegressionModel|r|UTF-8|names=RegressionModel,TreeModel,"
         "NearestNeighborModel"},
        {"<PMML><NearestNeighborModel/></PMML>", "NearestNeighborModel|stream|36||"},
        {"<Tree/>", "TreeModel|document|Tree|Tree||UTF-8"},
    };
    constexpr int kThreads = 4;
    constexpr int kModelsPerThread = 25;
    std::vector<int> mismatches(kThreads, 0);
    std::vector<int> failures(kThreads, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < kModelsPerThread; ++i) {
                auto const& [document, expected] = cases[(t + i) % cases.size()];
                try {
                    if (StreamModel(document, ModelFactory::fModelNames, "UTF-8") != expected) {
                        ++mismatches[t];
                    }
                } catch (QXVantry_920::VTException&) {
                    ++failures[t];
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    ModelFactory::Terminate();
    for (int t = 0; t < kThreads; ++t) {
        EXPECT_EQ(mismatches[t], 0) << "thread " << t;
        EXPECT_EQ(failures[t], 0) << "thread " << t;
    }
}
