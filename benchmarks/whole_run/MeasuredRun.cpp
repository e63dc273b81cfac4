#include "whole_run/MeasuredRun.h"

#include <omp.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "base/ThreadFailure.h"
#include "base/WindowsPath.h"
#include "context/FrozenLayerJob.h"
#include "frozen/NodeSelection.h"
#include "frozen/ResultSmoothing.h"
#include "frozen/SearchRecords.h"
#include "frozen/SinkVectors.h"
#include "frozen/SpecialNodes.h"
#include "frozen/SurfaceNormals.h"
#include "frozen/VelocityThinning.h"
#include "input/MaterialData.h"
#include "input/ResultFileSet.h"
#include "input/TemperatureData.h"
#include "job/CarriedState.h"
#include "job/CommandLine.h"
#include "kernel/mesh/CellVolumes.h"
#include "kernel/mesh/MeshFile.h"
#include "kernel/topology/FaceTopology.h"
#include "mesh/DataExtension.h"
#include "mesh/FieldStorage.h"
#include "mesh/MeshImport.h"
#include "output/BinaryResult.h"
#include "platform/QnlMaterial.h"
#include "profile/NodeLoop.h"
#include "profile/NodeOrder.h"
#include "profile/search/PassElementSearch.h"
#include "profile/search/SearchFile.h"
#include "whole_run/PeakMemory.h"

namespace {

void Require(bool fine, const char* what) {
    if (!fine) {
        throw std::runtime_error(std::string(what) + " failed");
    }
}

class MeasuredRun {
public:
    MeasuredRun(std::string stageFile, int intermediateTimes, int threads)
        : stageFile_(std::move(stageFile)), intermediateTimes_(intermediateTimes), threads_(threads) {}

    RunFigures Measure() {
        omp_set_num_threads(threads_);
        OpenJob();
        MeasureMeshParts();
        OpenMesh();
        const std::string result(job_.m_szResultFile.View());
        for (int index = 0; index <= intermediateTimes_; ++index) {
            job_.m_szResultFile.Set(index == 0 ? result : qnl::IndexedName(result, index));
            EvaluateTime(index == 0 ? stageFile_ : qnl::IndexedName(stageFile_, index), index == 0);
        }
        CountPassedCells();
        MeanOverTimes();
        return figures_;
    }

private:
    template <typename Work>
    void Timed(Phase phase, Work work) {
        ResetPeakMemory();
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        PhaseFigures& figures = figures_.Of(phase);
        figures.seconds += taken.count();
        figures.peakBytes = std::max(figures.peakBytes, PeakMemory());
    }

    void OpenJob() {
        const std::filesystem::path file(stageFile_);
        const std::string directory = file.parent_path().parent_path().parent_path().string();
        std::string stem = file.stem().string();
        stem.pop_back();
        std::string words[] = {stageFile_, directory, stem, "4", "1", "x"};
        char* pointers[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                            words[4].data(), words[5].data(), nullptr};
        job_.m_options.threads = threads_;
        job_.m_options.corrected = true;
        job_.m_options.intermediateTimes = intermediateTimes_;
        job_.m_szInputResult = stageFile_.c_str();
        Require(qnl::job::HandleCommandLine(job_, 6, pointers) == 1, "reading the run file");
        SelectResultFiles(job_);
        Require(job_.m_bHasIntermediateTimes == 1, "finding the marker log");
        QnlMaterial* material = QnlGetMaterial(job_.m_szMaterialFile.Text());
        Require(material != nullptr && ReadMaterialData(job_, material) == 1, "reading the material");
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

    void OpenMesh() {
        Timed(Phase::MeshKernel, [&] { Require(qnl::mesh::ReadMesh(job_) == 1, "reading the mesh"); });
        qnl::mesh::SetUpThreads(job_);
        Require(qnl::mesh::TakeOverMeshData(job_) == 1, "taking the mesh over");
        qnl::mesh::NewDataStorage(job_);
    }

    void EvaluateTime(const std::string& stageFile, bool first) {
        qnl::job::DropCarriedState(job_);
        Timed(Phase::StageInput, [&] {
            Require(LoadTemperatureData(job_, stageFile.c_str()) == 1, "reading stage results");
            qnl::mesh::ExtendNodeToSurface(job_);
            qnl::mesh::ExtendNodeToInnerCell(job_);
        });
        if (first) {
            qnl::mesh::NewFrozenStorage(job_);
        }
        Timed(Phase::Normals, [&] { FindNormals(); });
        if (first) {
            qnl::frozen::PrepareSearchRecords(job_);
            Require(job_.m_bSearchDone == 0, "starting without a search file");
            Timed(Phase::Search, [&] { SearchAll(); });
            Timed(Phase::SearchFile, [&] { WriteSearchResult(job_); });
            job_.m_bSearchDone = 1;
        }
        Timed(Phase::Evaluation, [&] { qnl::profile::EvaluateSurfaceNodes(job_); });
        qnl::frozen::ClearSpecialNodes(job_);
        Timed(Phase::Thinning, [&] { qnl::frozen::ThinOutVelocities(job_); });
        Timed(Phase::Smoothing, [&] { qnl::frozen::SmoothResults(job_); });
        Timed(Phase::SinkVectors, [&] {
            qnl::frozen::SubtractSinkReference(job_);
            qnl::frozen::TurnNormalsIntoSinkVectors(job_);
        });
        Timed(Phase::ResultFile, [&] { qnl::output::WriteBinaryResult(job_); });
    }

    void FindNormals() {
        qnl::frozen::ComputeSurfaceNormals(job_);
        qnl::mesh::EnsureComputedArrays(job_);
        qnl::frozen::SmoothSurfaceNormals(*job_.m_pOptKer, job_.m_pNormalX.get(), job_.m_pNormalY.get(),
                                          job_.m_pNormalZ.get());
        qnl::frozen::SelectSurfaceNodes(job_);
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
};

}  // namespace

RunFigures MeasureRun(const std::string& stageFile, int intermediateTimes, int threads) {
    return MeasuredRun(stageFile, intermediateTimes, threads).Measure();
}
