#include "job/EntryRoutine.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <new>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <thread>
#include <vector>

#include "context/FrozenLayerJob.h"
#include "kernel/mesh/MeshFile.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/Faults.h"
#include "support/CapturedOutput.h"
#include "support/MeshBuilder.h"
#include "support/ScratchFolder.h"

namespace {

using qnl::RunStep;
using Steps = std::vector<RunStep>;

/// Notes the steps of a run, and may do something when one begins.
class Witness : public qnl::RunObserver {
public:
    void StepBegins(RunStep step, const FrozenLayerJob& job) override {
        begun.push_back(step);
        if (atBegin) {
            atBegin(step, job);
        }
    }
    void StepEnds(RunStep step, const FrozenLayerJob& /*job*/) override { ended.push_back(step); }

    Steps begun;
    Steps ended;
    std::function<void(RunStep, const FrozenLayerJob&)> atBegin;
};

/// Project "box", run 1: a run file, a material and a mesh of one cube, and no stage result.
class EntryRoutine : public ::testing::Test {
protected:
    EntryRoutine() {
        folder_.Write("Analysis/Run1/box1.run",
                      "[MESH]\nMeshCount = 1\nMesh1 = box.hdf\n"
                      "[MATERIAL]\nMaterialCount = 1\nMaterial1 = pp.toml\n");
        folder_.Write("Material/pp.toml",
                      "kind = \"thermoplastic\"\nfreeze_temperature = 130.0\ndensity = 1.0\n");
        qnl::kernel::WriteMeshFile(qnl::testing::SingleCell(qnl::kernel::CellType::Hexa),
                                   folder_.Write("Mesh/box.hdf", ""));
        options_.observer = &witness_;
    }
    ~EntryRoutine() override { qnl::TakeFaults(); }

    int Run() const {
        std::string words[] = {folder_.File("Analysis/Run1/box1.k4c"), folder_.Path(), "box", "4", "1", "x"};
        char* pointers[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                            words[4].data(), words[5].data(), nullptr};
        return qnl::job::RunFrozenLayer(6, pointers, options_);
    }

    ScratchFolder folder_;
    Witness witness_;
    qnl::RunOptions options_;
};

const Steps kOpening{RunStep::CommandLine, RunStep::InputDigests, RunStep::ResultFiles, RunStep::Material,
                     RunStep::Mesh,        RunStep::Threads,      RunStep::MeshData,    RunStep::Storage,
                     RunStep::OutputTimes, RunStep::StageData};

Steps With(Steps steps, const Steps& more) {
    steps.insert(steps.end(), more.begin(), more.end());
    return steps;
}

/// Standard output that looks at the program when something is printed on it.
class WatchedOutput : public std::streambuf {
public:
    explicit WatchedOutput(std::function<void()> look)
        : look_(std::move(look)), old_(std::cout.rdbuf(this)), exceptions_(std::cout.exceptions()) {
        std::cout.exceptions(std::ios::badbit);
    }
    ~WatchedOutput() override {
        std::cout.exceptions(std::ios::goodbit);
        std::cout.clear();
        std::cout.rdbuf(old_);
        std::cout.exceptions(exceptions_);
    }
    WatchedOutput(const WatchedOutput&) = delete;
    WatchedOutput& operator=(const WatchedOutput&) = delete;

protected:
    std::streamsize xsputn(const char* /*text*/, std::streamsize count) override {
        look_();
        return count;
    }
    int_type overflow(int_type character) override {
        look_();
        return character;
    }

private:
    std::function<void()> look_;
    std::streambuf* old_;
    std::ios::iostate exceptions_;
};

}  // namespace

TEST_F(EntryRoutine, StepsComeInTheirOrderAndTheReportFromLevelOneOn) {
    const CapturedOutput output;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(witness_.begun, With(kOpening, {RunStep::Release}));
    EXPECT_EQ(output.Text(), "");
    witness_ = Witness();
    options_.logLevel = 1;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(witness_.begun, With(kOpening, {RunStep::Release, RunStep::Report}));
    EXPECT_EQ(witness_.ended.back(), RunStep::Report);
}

TEST_F(EntryRoutine, WithoutMaterialTheMeshIsNotRead) {
    std::filesystem::remove(folder_.File("Material/pp.toml"));
    const CapturedOutput output;
    EXPECT_EQ(Run(), -1000);
    EXPECT_EQ(witness_.begun,
              (Steps{RunStep::CommandLine, RunStep::InputDigests, RunStep::ResultFiles, RunStep::Material}));
}

TEST_F(EntryRoutine, AMeshThatCannotBeReadEndsTheRun) {
    folder_.Write("Mesh/box.hdf", "no mesh");
    const CapturedOutput output;
    EXPECT_EQ(Run(), -2000);
    EXPECT_EQ(witness_.begun.back(), RunStep::Mesh);
}

TEST_F(EntryRoutine, AMeshThatCannotBeTakenOverEndsTheRun) {
    witness_.atBegin = [](RunStep step, const FrozenLayerJob& job) {
        if (step == RunStep::MeshData) {
            job.m_pOptKer->p_Cell = nullptr;
        }
    };
    const CapturedOutput output;
    EXPECT_EQ(Run(), -2000);
    EXPECT_EQ(witness_.begun.back(), RunStep::MeshData);
}

TEST_F(EntryRoutine, TheThreadsAreSetBeforeTheMeshIsRead) {
    int threadsOfMesh = 0;
    int threadsOfJob = 0;
    witness_.atBegin = [&](RunStep step, const FrozenLayerJob& job) {
        if (step == RunStep::Mesh) {
            threadsOfMesh = omp_get_max_threads();
        } else if (step == RunStep::MeshData) {
            threadsOfJob = job.m_nThreads;
        }
    };
    omp_set_num_threads(2);
    options_.threads = 3;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(threadsOfMesh, 3);
    EXPECT_EQ(threadsOfJob, 3);
    omp_set_num_threads(2);
    options_.threads = 0;
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(threadsOfMesh, 2);
    EXPECT_EQ(threadsOfJob, 2);
}

TEST_F(EntryRoutine, OutOfMemoryIsKeptInTheJobWhileItsMessageIsPrinted) {
    const FrozenLayerJob* running = nullptr;
    bool outOfMemory = true;
    witness_.atBegin = [&](RunStep step, const FrozenLayerJob& job) {
        if (step == RunStep::Storage) {
            running = &job;
            if (outOfMemory) {
                throw std::bad_alloc();
            }
            throw std::runtime_error("something else");
        }
    };
    for (const bool kind : {true, false}) {
        outOfMemory = kind;
        int looks = 0;
        int code = 0;
        {
            const WatchedOutput output([&] {
                ++looks;
                EXPECT_EQ(running->m_pBadAlloc != nullptr, outOfMemory);
            });
            code = Run();
        }
        EXPECT_EQ(code, -5000);
        EXPECT_GT(looks, 0);
    }
}

TEST_F(EntryRoutine, AFailureComesWithItsReason) {
    witness_.atBegin = [](RunStep, const FrozenLayerJob&) { throw std::bad_alloc(); };
    const CapturedOutput output;
    EXPECT_EQ(Run(), -5000);
    EXPECT_EQ(output.Text(), "out of memory\n");
}

TEST_F(EntryRoutine, WhenTheMessageCannotBePrintedTheExceptionLeaves) {
    witness_.atBegin = [](RunStep, const FrozenLayerJob&) { throw std::bad_alloc(); };
    bool left = false;
    {
        const WatchedOutput output([] { throw std::runtime_error("nothing can be printed"); });
        try {
            Run();
        } catch (const std::runtime_error& failure) {
            left = std::string(failure.what()) == "nothing can be printed";
        }
    }
    EXPECT_TRUE(left);
}

using EntryRoutineDeathTest = EntryRoutine;

TEST_F(EntryRoutineDeathTest, TheJobIsDestroyedBeforeAnUncaughtExceptionEndsTheProgram) {
    // The job's log tool keeps the log file open as long as the job lives: what is printed then goes there.
    constexpr int kDestroyed = 7;
    constexpr int kAlive = 8;
    static const ScratchFolder* project = nullptr;
    project = &folder_;
    witness_.atBegin = [](RunStep step, const FrozenLayerJob&) {
        if (step == RunStep::Storage) {
            throw std::bad_alloc();
        }
    };
    const auto endBadly = [this] {
        std::set_terminate([] {
            std::ostringstream nowhere;
            CQNLKNLogErrMsgTool::printGeneralMessage("still open", "", nowhere);
            const bool open = project->Read("Analysis/Run1/box1.lgz").find("still open") != std::string::npos;
            std::_Exit(open ? kAlive : kDestroyed);
        });
        const WatchedOutput output([] { throw std::runtime_error("nothing can be printed"); });
        std::thread([this] { Run(); }).join();
    };
    EXPECT_EXIT(endBadly(), ::testing::ExitedWithCode(kDestroyed), "");
}
