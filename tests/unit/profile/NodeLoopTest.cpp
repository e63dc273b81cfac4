#include "profile/NodeLoop.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>
#include <thread>

#include "AllocationCount.h"
#include "platform/Faults.h"
#include "support/StackJob.h"

namespace {

/// Uneven numbers from a fixed seed.
class Numbers {
public:
    double Next() {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<double>(state_ >> 40) / static_cast<double>(1 << 24);
    }

private:
    std::uint64_t state_ = 20240607;
};

/// Many nodes with different rays through one stack, and uneven field values.
class ManyNodes : public StackJob {
public:
    explicit ManyNodes(int nodes) : StackJob(nodes, {0.0, 10.0}, Depths(), 10.0) {
        Numbers numbers;
        for (int slot = 0; slot < 6; ++slot) {
            SetField(slot, Values(numbers, 2, slot), Values(numbers, job.m_nCells, slot));
        }
        for (auto& component : job.m_pCellVector) {
            for (int c = 1; c <= job.m_nCells; ++c) {
                component.get()[c] = static_cast<float>(numbers.Next() - 0.5);
            }
        }
        for (int n = 1; n <= nodes; ++n) {
            auto& ray = Script(job).rays[n];
            ray.push_back(1);
            for (int c = 1 + n % 7; c <= job.m_nCells; c += 1 + n % 3) {
                ray.push_back(c + 2);
            }
        }
        job.m_dGeomTolerance = 1.0 / 3.0;
        job.m_dFreezeTemp = 120.0;
        job.m_dFreezeDensity = 0.93;
        job.m_bHasFlow = 1;
        job.m_bHasIntermediateTimes = 1;
        job.m_bFillHasCoolingTime = 1;
        job.m_dMaxValue = 9.0;
    }

    /// Bytes of all results.
    std::vector<double> Results() const {
        std::vector<double> all;
        for (const auto* array : {&job.m_pFrozenRatio, &job.m_pMaxTemperature, &job.m_pCenterTemperature,
                                  &job.m_pAverageTemperature, &job.m_pBulkTemperature, &job.m_pMaxCoolingTime,
                                  &job.m_pSinkMarkWork, &job.m_pPackingIndex, &job.m_pMaxVolumeShrinkage,
                                  &job.m_pAverageVelocityU, &job.m_pAverageVelocityW}) {
            all.insert(all.end(), array->get(), array->get() + job.m_nNodes + 1);
        }
        return all;
    }

private:
    static std::vector<double> Depths() {
        Numbers numbers;
        std::vector<double> depths(60);
        for (double& depth : depths) {
            depth = 10.0 * numbers.Next();
        }
        return depths;
    }
    static std::vector<double> Values(Numbers& numbers, int count, int slot) {
        constexpr double kScale[] = {250.0, 12.0, 1.0, 1.0, 30.0, 1.0};
        std::vector<double> values(static_cast<std::size_t>(count));
        for (double& value : values) {
            value = kScale[slot] * numbers.Next();
        }
        return values;
    }
};

bool SameBits(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

/// Two nodes on a wall of two faces and one cell; node 2 sees nothing.
class TwoNodes : public StackJob {
public:
    TwoNodes() : StackJob(2, {0.0, 2.0}, {1.0}, 2.0) {
        Script(job).rays[1] = {1, 3, 2};
        job.m_dGeomTolerance = 1.0;
        job.m_dFreezeTemp = 120.0;
        job.m_dFreezeDensity = 1.0;
        SetField(0, {50.0, 80.0}, {150.0});
        SetField(1, {5.0, 5.0}, {5.0});
        SetField(2, {-1.0, -1.0}, {1.0});
        SetField(3, {0.0, 0.0}, {1.0});
        SetField(4, {1.0, 1.0}, {7.0});
        SetField(5, {1.0, 1.0}, {0.5});
        for (auto& component : job.m_pCellVector) {
            component.get()[1] = 4.0F;
        }
        job.m_pCellFiber[2].get()[1] = 0.5;
        MarkOutputs();
    }

    /// Names of the output arrays whose entry of node 1 was stored; the entry of node 2 must be zero then.
    std::vector<std::string> Stored() {
        qnl::profile::EvaluateSurfaceNodes(job);
        std::vector<std::string> names;
        for (const auto& [name, array] : outputs_) {
            if (array->get()[1] != kMark) {
                names.push_back(name);
                EXPECT_EQ(array->get()[2], 0.0) << name;
            } else {
                EXPECT_EQ(array->get()[2], kMark) << name;
            }
            EXPECT_EQ(array->get()[0], kMark) << name;
        }
        return names;
    }

    static constexpr double kMark = -777.0;

private:
    void MarkOutputs() {
        for (const auto& [name, array] : outputs_) {
            for (int n = 0; n <= 2; ++n) {
                array->get()[n] = kMark;
            }
        }
    }

    const std::vector<std::pair<std::string, qnl::OwnedArray<double>*>> outputs_ = {
        {"frozen", &job.m_pFrozenRatio},           {"max", &job.m_pMaxTemperature},
        {"center", &job.m_pCenterTemperature},     {"average", &job.m_pAverageTemperature},
        {"bulk", &job.m_pBulkTemperature},         {"skin ratio", &job.m_pSkinRatio},
        {"skin", &job.m_pSkinThickness},           {"mold", &job.m_pMoldTemperatureDiff},
        {"cooling", &job.m_pMaxCoolingTime},       {"work", &job.m_pSinkMarkWork},
        {"total", &job.m_pSinkMarkTotal},          {"packing", &job.m_pPackingIndex},
        {"shrinkage", &job.m_pMaxVolumeShrinkage}, {"u", &job.m_pAverageVelocityU},
        {"v", &job.m_pAverageVelocityV},           {"w", &job.m_pAverageVelocityW},
        {"flake", &job.m_pFlakeColorIntensity}};
};

using Names = std::vector<std::string>;

class RecordingObserver : public qnl::RunObserver {
public:
    void NodesEvaluated(int done, int total) override {
        EXPECT_EQ(std::this_thread::get_id(), main_);
        calls.emplace_back(done, total);
    }
    std::vector<std::pair<int, int>> calls;

private:
    std::thread::id main_ = std::this_thread::get_id();
};

}  // namespace

TEST(NodeLoop, APlainStageStoresFiveQuantities) {
    TwoNodes nodes;
    EXPECT_EQ(nodes.Stored(), (Names{"frozen", "max", "center", "average", "bulk"}));
    EXPECT_EQ(nodes.job.m_pMaxTemperature[1], 150.0);
    EXPECT_EQ(nodes.job.m_pBulkTemperature[1], 150.0);
}

TEST(NodeLoop, ACoolStageStoresTheDifferenceOfTheWallsAndTheCoolingTime) {
    TwoNodes nodes;
    nodes.job.m_bHasCool = 1;
    nodes.job.m_bIsGasIn = 1;
    nodes.job.m_bFillHasCoolingTime = 1;
    nodes.job.m_bIsFlakeLightIntensity = 1;
    EXPECT_EQ(nodes.Stored(), (Names{"frozen", "max", "center", "average", "mold", "cooling"}));
    EXPECT_EQ(nodes.job.m_pMoldTemperatureDiff[1], 30.0);
    EXPECT_EQ(nodes.job.m_pMaxCoolingTime[1], 7.0);
}

TEST(NodeLoop, AGasStageStoresTheSkin) {
    TwoNodes nodes;
    nodes.job.m_bIsGasIn = 1;
    EXPECT_EQ(nodes.Stored(), (Names{"frozen", "max", "center", "average", "bulk", "skin ratio", "skin"}));
    EXPECT_EQ(nodes.job.m_pSkinRatio[1], 50.0);
    EXPECT_EQ(nodes.job.m_pSkinThickness[1], 0.5);
}

TEST(NodeLoop, TheSkinIsNotThickerThanTheWall) {
    TwoNodes nodes;
    nodes.job.m_bIsGasIn = 1;
    nodes.job.m_pNodeThickness = std::make_unique<float[]>(3);
    nodes.job.m_pNodeThickness[1] = 0.1F;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pSkinThickness[1], static_cast<double>(0.1F));
    nodes.job.m_pNodeThickness[1] = 0.5F;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pSkinThickness[1], 0.5);
    nodes.job.m_pNodeThickness[1] = 9.0F;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pSkinThickness[1], 0.5);
}

TEST(NodeLoop, AFillingWithCoolingTimeStoresIt) {
    TwoNodes nodes;
    nodes.job.m_bFillHasCoolingTime = 1;
    EXPECT_EQ(nodes.Stored(), (Names{"frozen", "max", "center", "average", "bulk", "cooling"}));
    EXPECT_EQ(nodes.job.m_pMaxCoolingTime[1], 7.0);
}

TEST(NodeLoop, FlakesStoreTheirIntensity) {
    TwoNodes nodes;
    nodes.job.m_bIsFlakeLightIntensity = 1;
    EXPECT_EQ(nodes.Stored(), (Names{"frozen", "max", "center", "average", "bulk", "flake"}));
    EXPECT_EQ(nodes.job.m_pFlakeColorIntensity[1], 0.5);
}

TEST(NodeLoop, IntermediateTimesStoreSinkDepthTwiceAndThePackingIndex) {
    TwoNodes nodes;
    nodes.job.m_bHasIntermediateTimes = 1;
    nodes.job.m_bHasCool = 1;
    EXPECT_EQ(nodes.Stored(),
              (Names{"frozen", "max", "center", "average", "mold", "cooling", "work", "total", "packing"}));
    EXPECT_GT(nodes.job.m_pSinkMarkWork[1], 0.0);
    EXPECT_EQ(nodes.job.m_pSinkMarkWork[1], nodes.job.m_pSinkMarkTotal[1]);
}

TEST(NodeLoop, AFlowStageStoresShrinkageAndVelocity) {
    TwoNodes nodes;
    nodes.job.m_bHasFlow = 1;
    EXPECT_EQ(nodes.Stored(),
              (Names{"frozen", "max", "center", "average", "bulk", "shrinkage", "u", "v", "w"}));
    EXPECT_EQ(nodes.job.m_pMaxVolumeShrinkage[1], 5.0);
    EXPECT_EQ(nodes.job.m_pAverageVelocityW[1], 4.0);
}

TEST(NodeLoop, MissingArraysArePassedOver) {
    TwoNodes nodes;
    nodes.job.m_bFillHasCoolingTime = 1;
    nodes.job.m_pMaxCoolingTime.reset();
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pMaxTemperature[1], 150.0);
}

TEST(NodeLoop, TellsWhichNodesHadAProfile) {
    TwoNodes nodes;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pHasProfile[0], 0);
    EXPECT_EQ(nodes.job.m_pHasProfile[1], 1);
    EXPECT_EQ(nodes.job.m_pHasProfile[2], 0);
    nodes.job.m_pNormalZ[1] = 0.0;
    nodes.job.m_pHasProfile[0] = 9;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pHasProfile[1], 0) << "a record alone makes no profile";
    EXPECT_EQ(nodes.job.m_pHasProfile[0], 9) << "only the listed nodes are set";
}

TEST(NodeLoop, WithoutNodesDoesNothing) {
    TwoNodes nodes;
    nodes.job.m_nSurfaceNodes = 0;
    omp_set_num_threads(3);
    nodes.job.m_nThreads = 2;
    EXPECT_EQ(nodes.Stored(), Names{});
    EXPECT_EQ(omp_get_max_threads(), 3);
    EXPECT_EQ(Script(nodes.job).rayCalls, 0);
    EXPECT_NE(nodes.job.m_pHasProfile, nullptr);
}

TEST(NodeLoop, TheListDecidesWhichNodeARecordBelongsTo) {
    TwoNodes nodes;
    nodes.job.m_pSurfNodeList[1] = 2;
    nodes.job.m_pSurfNodeList[2] = 1;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pNodeSearchResults[1].m_nPassElems, 0);
    EXPECT_EQ(nodes.job.m_pNodeSearchResults[2].m_nPassElems, 3);
    EXPECT_EQ(nodes.job.m_pMaxTemperature[1], 150.0);
}

TEST(NodeLoop, KeepsTheOrderOfTheNodesFromTimeToTime) {
    using qnl::ListPosition;
    ManyNodes nodes(3);
    std::vector<int> rays;
    Script(nodes.job).beforeRay = [&rays](int ray) { rays.push_back(ray); };
    nodes.job.m_evaluationOrder = {ListPosition(3), ListPosition(1), ListPosition(2)};
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(rays, (std::vector<int>{3, 1, 2}));
    nodes.job.m_evaluationOrder.pop_back();
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(rays, (std::vector<int>{3, 1, 2, 1, 2, 3})) << "one of another size is made anew";
}

TEST(NodeLoop, WhereTheWindowChangesOnTheWayTheOrderIsThatOfTheList) {
    using qnl::ListPosition;
    ManyNodes nodes(3);
    nodes.job.m_bHasWarp = 1;
    std::vector<int> rays;
    Script(nodes.job).beforeRay = [&rays](int ray) { rays.push_back(ray); };
    nodes.job.m_evaluationOrder = {ListPosition(3), ListPosition(1), ListPosition(2)};
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(rays, (std::vector<int>{1, 2, 3})) << "the cooling time sets the window after its first use";
}

TEST(NodeLoop, AListOfOneNodeIsEvaluated) {
    TwoNodes nodes;
    nodes.job.m_nSurfaceNodes = 1;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_EQ(nodes.job.m_pMaxTemperature[1], 150.0);
}

TEST(NodeLoop, ThreadCountDoesNotChangeABit) {
    constexpr int kNodes = 700;
    ManyNodes reference(kNodes);
    qnl::profile::EvaluateSurfaceNodes(reference.job);
    ASSERT_GT(reference.job.m_pFrozenRatio[1], 0.0);
    for (const int threads : {2, 8}) {
        ManyNodes nodes(kNodes);
        nodes.SetThreads(threads);
        qnl::profile::EvaluateSurfaceNodes(nodes.job);
        EXPECT_TRUE(SameBits(nodes.Results(), reference.Results())) << threads << " threads";
        int searches = 0;
        for (int t = 0; t < threads; ++t) {
            searches += nodes.job.m_pThreadFindCount.get()[t];
        }
        EXPECT_EQ(searches, kNodes);
        EXPECT_EQ(Script(nodes.job).rayCalls, kNodes);
    }
}

TEST(NodeLoop, StoredSearchesGiveTheSameBitsWithoutTheKernel) {
    ManyNodes nodes(100);
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    const auto first = nodes.Results();
    nodes.job.m_bSearchDone = 1;
    Script(nodes.job).rays.clear();
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_TRUE(SameBits(nodes.Results(), first));
    EXPECT_EQ(Script(nodes.job).rayCalls, 100);
}

TEST(NodeLoop, AllocatesNothingPerNode) {
    if (!CountsAllocations()) {
        GTEST_SKIP() << "this build keeps operator new for itself";
    }
    const auto allocations = [](int count) {
        ManyNodes nodes(count);
        qnl::profile::EvaluateSurfaceNodes(nodes.job);
        nodes.job.m_bSearchDone = 1;
        const std::size_t before = AllocationCount();
        qnl::profile::EvaluateSurfaceNodes(nodes.job);
        return AllocationCount() - before;
    };
    EXPECT_EQ(allocations(1000), allocations(10));
}

TEST(NodeLoop, AFreshSearchAllocatesItsStoredCopyOnly) {
    if (!CountsAllocations()) {
        GTEST_SKIP() << "this build keeps operator new for itself";
    }
    const auto allocations = [](int count) {
        ManyNodes nodes(count);
        const std::size_t before = AllocationCount();
        qnl::profile::EvaluateSurfaceNodes(nodes.job);
        return AllocationCount() - before;
    };
    EXPECT_EQ(allocations(1000) - allocations(10), 990U);
}

TEST(NodeLoop, AnExceptionLeavesTheParallelRegion) {
    for (const int threads : {1, 4}) {
        ManyNodes nodes(300);
        nodes.SetThreads(threads);
        Script(nodes.job).beforeRay = [](int ray) {
            if (ray == 150) {
                throw std::bad_alloc();
            }
        };
        EXPECT_THROW(qnl::profile::EvaluateSurfaceNodes(nodes.job), std::bad_alloc);
        EXPECT_LT(Script(nodes.job).rayCalls, 299);
        Script(nodes.job).beforeRay = [](int) { throw std::length_error("every thread fails"); };
        EXPECT_THROW(qnl::profile::EvaluateSurfaceNodes(nodes.job), std::length_error);
    }
}

TEST(NodeLoop, TheObserverHearsOfTheProgressNowAndThen) {
    for (const int threads : {1, 4}) {
        RecordingObserver observer;
        ManyNodes nodes(5000);
        nodes.SetThreads(threads);
        nodes.job.m_options.observer = &observer;
        qnl::profile::EvaluateSurfaceNodes(nodes.job);
        ASSERT_FALSE(observer.calls.empty());
        EXPECT_LE(observer.calls.size(), 11U);
        int before = 0;
        for (const auto& [done, total] : observer.calls) {
            EXPECT_GT(done, before);
            EXPECT_EQ(total, 5000);
            before = done;
        }
        EXPECT_EQ(before, 5000);
    }
}

TEST(NodeLoop, TheObserverHearsOfNodesThatAreDone) {
    struct Counting : qnl::RunObserver {
        explicit Counting(FrozenLayerJob& job) : job_(job) {}
        void NodesEvaluated(int done, int /*total*/) override { EXPECT_EQ(Script(job_).rayCalls, done); }
        FrozenLayerJob& job_;
    };
    ManyNodes nodes(600);
    Counting observer(nodes.job);
    nodes.job.m_options.observer = &observer;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
}

TEST(NodeLoop, TheObserverHearsOfWhatOtherThreadsDidMeanwhile) {
    using namespace std::chrono_literals;
    if (omp_get_thread_limit() < 2) {
        GTEST_SKIP() << "there is one thread alone";
    }
    RecordingObserver observer;
    ManyNodes nodes(700);
    nodes.SetThreads(2);
    nodes.job.m_options.observer = &observer;
    // The main thread waits at its first node until the other is far ahead; the other waits for it to have
    // one, and near the end to be at its second.
    const auto tooLate = std::chrono::steady_clock::now() + 5s;
    std::atomic<int> mainNodes{0};
    Script(nodes.job).beforeRay = [&nodes, &mainNodes, tooLate](int) {
        const std::atomic<int>& calls = Script(nodes.job).rayCalls;
        const bool isMain = omp_get_thread_num() == 0;
        mainNodes += isMain ? 1 : 0;
        const auto waits = [&] {
            return isMain ? calls < 600 : mainNodes == 0 || (calls >= 650 && mainNodes < 2);
        };
        while (waits() && std::chrono::steady_clock::now() < tooLate) {
            std::this_thread::sleep_for(1ms);
        }
    };
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    ASSERT_EQ(observer.calls.size(), 2U);
    EXPECT_GE(observer.calls[0].first, 599);
    EXPECT_EQ(observer.calls[1].first, 700);
}

TEST(NodeLoop, TheObserverHearsOfEvery512NodesAndOfTheEnd) {
    const auto told = [](int count) {
        RecordingObserver observer;
        ManyNodes nodes(count);
        nodes.job.m_options.observer = &observer;
        qnl::profile::EvaluateSurfaceNodes(nodes.job);
        return observer.calls;
    };
    using Calls = std::vector<std::pair<int, int>>;
    EXPECT_EQ(told(511), (Calls{{511, 511}}));
    EXPECT_EQ(told(1100), (Calls{{512, 1100}, {1024, 1100}, {1100, 1100}}));
    EXPECT_EQ(told(1024), (Calls{{512, 1024}, {1024, 1024}})) << "the end is not told twice";
}

TEST(NodeLoop, ShrinkageBeyondTheWholeIsOneFault) {
    qnl::TakeFaults();
    TwoNodes nodes;
    nodes.job.m_bHasIntermediateTimes = 1;
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    EXPECT_TRUE(qnl::TakeFaults().empty());
    nodes.SetField(1, {250.0, 5.0}, {5.0});
    Script(nodes.job).rays[2] = {1, 3, 2};
    nodes.SetThreads(2);
    qnl::profile::EvaluateSurfaceNodes(nodes.job);
    const auto faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].found,
              "more than 100 % along the normals of 2 nodes, the first with label 10; taken as 100 %");
}
