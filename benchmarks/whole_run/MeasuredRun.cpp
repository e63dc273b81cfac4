#include "whole_run/MeasuredRun.h"

#include <omp.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "base/ThreadFailure.h"
#include "context/FrozenLayerJob.h"
#include "context/RunStep.h"
#include "job/RunSequence.h"
#include "kernel/mesh/CellVolumes.h"
#include "kernel/mesh/MeshFile.h"
#include "kernel/topology/FaceTopology.h"
#include "profile/NodeOrder.h"
#include "profile/search/PassElementSearch.h"
#include "whole_run/PeakMemory.h"

namespace {

void Require(bool fine, const char* what) {
    if (!fine) {
        throw std::runtime_error(std::string(what) + " failed");
    }
}

/// Steps of the run that are measured, as the phases that they belong to.
constexpr std::pair<qnl::RunStep, Phase> kMeasuredSteps[] = {
    {qnl::RunStep::Mesh, Phase::MeshKernel},       {qnl::RunStep::StageData, Phase::StageInput},
    {qnl::RunStep::Extension, Phase::StageInput},  {qnl::RunStep::Normals, Phase::Normals},
    {qnl::RunStep::Selection, Phase::Normals},     {qnl::RunStep::Evaluation, Phase::Evaluation},
    {qnl::RunStep::Thinning, Phase::Thinning},     {qnl::RunStep::Smoothing, Phase::Smoothing},
    {qnl::RunStep::SinkMarks, Phase::SinkVectors}, {qnl::RunStep::ResultFile, Phase::ResultFile},
    {qnl::RunStep::SearchFile, Phase::SearchFile},
};

/// Follows the run and measures its steps. The first evaluation would search as well: the search is made just
/// before it, measured on its own, and handed to it as one that was read.
class MeasuredRun : public qnl::RunObserver {
public:
    MeasuredRun(std::string stageFile, int intermediateTimes, int threads)
        : stageFile_(std::move(stageFile)), intermediateTimes_(intermediateTimes), threads_(threads) {}

    RunFigures Measure() {
        omp_set_num_threads(threads_);
        RunJob();
        CountPassedCells();
        MeanOverTimes();
        return figures_;
    }

    void StepBegins(qnl::RunStep step, const FrozenLayerJob& /*job*/) override {
        if (step == qnl::RunStep::Mesh) {
            MeasureMeshParts();
        }
        if (step == qnl::RunStep::Evaluation && !searched_) {
            Require(job_.m_bSearchDone == 0, "starting without a search file");
            Timed(Phase::Search, [&] { SearchAll(); });
            job_.m_bSearchDone = 1;
        }
        Start();
    }

    void StepEnds(qnl::RunStep step, const FrozenLayerJob& /*job*/) override {
        for (const auto& [measured, phase] : kMeasuredSteps) {
            if (measured == step) {
                Stop(phase);
            }
        }
        if (step == qnl::RunStep::Evaluation && !searched_) {
            searched_ = true;
            job_.m_bSearchDone = 0;
        }
    }

    void TimeEnds(int /*index*/, bool evaluated, const FrozenLayerJob& /*job*/) override {
        Require(evaluated, "evaluating an output time");
    }

private:
    void Start() {
        ResetPeakMemory();
        start_ = std::chrono::steady_clock::now();
    }

    void Stop(Phase phase) {
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start_;
        PhaseFigures& figures = figures_.Of(phase);
        figures.seconds += taken.count();
        figures.peakBytes = std::max(figures.peakBytes, PeakMemory());
    }

    template <typename Work>
    void Timed(Phase phase, Work work) {
        Start();
        work();
        Stop(phase);
    }

    void RunJob() {
        const std::filesystem::path file(stageFile_);
        const std::string directory = file.parent_path().parent_path().parent_path().string();
        std::string stem = file.stem().string();
        stem.pop_back();
        std::string words[] = {stageFile_, directory, stem, "4", "1", "x"};
        char* pointers[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                            words[4].data(), words[5].data(), nullptr};
        job_.m_options.threads = threads_;
        job_.m_options.mode = qnl::Mode::Corrected;
        job_.m_options.intermediateTimes = intermediateTimes_;
        job_.m_options.observer = this;
        job_.m_szInputResult = stageFile_.c_str();
        const qnl::job::SequenceEnd end =
            qnl::job::RunSteps(job_, qnl::RunStep::CommandLine, qnl::RunStep::OutputTimes, {6, pointers});
        Require(end && job_.m_bHasIntermediateTimes == 1, qnl::NameOf(end.last));
    }

    /// The parts of the kernel's reading that can be seen on their own; nothing of them is kept.
    void MeasureMeshParts() {
        qnl::kernel::MeshData mesh;
        Timed(Phase::MeshFile, [&] { mesh = qnl::kernel::ReadMeshFile(job_.m_szMeshFile.View()); });
        std::vector<double> volumes;
        qnl::kernel::TurnNegativeCells(mesh, volumes);
        volumes = {};
        Timed(Phase::Topology, [&] { qnl::kernel::BuildFaceTopology(mesh); });
    }

    void SearchAll() {
        qnl::ThreadFailure failure;
        const std::vector<qnl::ListPosition> order = qnl::profile::NodeOrder(job_);
#pragma omp parallel for schedule(dynamic, 1)
        for (std::size_t i = 0; i < order.size(); ++i) {
            failure.Guard([&] { SearchOne(order[i].Value()); });
        }
        failure.RaiseAgain();
    }

    void SearchOne(int position) {
        const int n = job_.m_pSurfNodeList.get()[position];
        const NodeRecord& node = job_.p_Node[n];
        int count = 0;
        FindNodePassElems(job_, position, count, node.x, node.y, node.z, -job_.m_pNormalX.get()[n],
                          -job_.m_pNormalY.get()[n], -job_.m_pNormalZ.get()[n],
                          qnl::profile::SearchSlot(job_));
    }

    void CountPassedCells() {
        figures_.cells = job_.m_nCells;
        figures_.rays = job_.m_nSurfaceNodes;
        for (int position = 1; position <= job_.m_nSurfaceNodes; ++position) {
            const CSurfNodeSearch& record = job_.m_pNodeSearchResults.get()[position];
            for (int j = 0; j < record.m_nPassElems; ++j) {
                figures_.passedCells += record.m_pPassElems.get()[j] > job_.m_nSurfaces ? 1 : 0;
            }
        }
    }

    void MeanOverTimes() {
        for (const Phase phase : {Phase::StageInput, Phase::Normals, Phase::Evaluation, Phase::Thinning,
                                  Phase::Smoothing, Phase::SinkVectors, Phase::ResultFile}) {
            figures_.Of(phase).seconds /= intermediateTimes_ + 1;
        }
    }

    std::string stageFile_;
    int intermediateTimes_;
    int threads_;
    FrozenLayerJob job_;
    RunFigures figures_;
    std::chrono::steady_clock::time_point start_;
    bool searched_ = false;
};

}  // namespace

RunFigures MeasureRun(const std::string& stageFile, int intermediateTimes, int threads) {
    return MeasuredRun(stageFile, intermediateTimes, threads).Measure();
}
