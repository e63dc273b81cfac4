#pragma once

#include <memory>
#include <vector>

#include "support/ScriptedKernel.h"

/// A job whose faces and cells are points on the z axis, and whose nodes look along +z. Node n stands at
/// (n, 0, 0), has the label 10 n and is at position n of the surface-node list.
class StackJob {
public:
    /// z of the faces and cells, mm; the box in z spans from 0 to `height`.
    StackJob(int nodes, const std::vector<double>& faceDepths, const std::vector<double>& cellDepths,
             double height)
        : faces_(Entities(faceDepths)), cells_(Entities(cellDepths)), nodes_(Nodes(nodes)) {
        job.p_Surfce = faces_.data();
        job.p_Cell = cells_.data();
        job.p_Node = nodes_.data();
        job.m_nSurfaces = static_cast<int>(faceDepths.size());
        job.m_nCells = static_cast<int>(cellDepths.size());
        job.m_nNodes = nodes;
        job.m_nSurfaceNodes = nodes;
        job.m_dBoxMax[2] = height;
        job.m_pCom = std::make_unique<CQNLCom>();
        job.m_bSearchDone = 0;
        MakeLabels();
        MakeArrays();
        SetThreads(1);
    }

    void SetThreads(int count) {
        job.m_nThreads = count;
        job.m_pThreadFindCount = Zeros<int>(count);
        job.m_pThreadRecordCount = Zeros<int>(count);
        job.m_pThreadFindTime = Zeros<double>(count);
        job.m_pOptKer->InitialzeSearch(count);
    }

    /// Values of one field, faces first.
    void SetField(int slot, const std::vector<double>& faceValues, const std::vector<double>& cellValues) {
        Fill(job.m_pSurfData[slot].get(), faceValues);
        Fill(job.m_pCellData[slot].get(), cellValues);
    }

    template <typename T>
    static void Fill(T* array, const std::vector<T>& values) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            array[i + 1] = values[i];
        }
    }

    void ForgetSearches() {
        job.m_pNodeSearchResults =
            std::make_unique<CSurfNodeSearch[]>(static_cast<std::size_t>(job.m_nSurfaceNodes) + 1);
    }

    FrozenLayerJob job;

private:
    template <typename T>
    static std::unique_ptr<T[]> Zeros(int last) {
        return std::make_unique<T[]>(static_cast<std::size_t>(last) + 1);
    }

    static std::vector<EntityRecord> Entities(const std::vector<double>& depths) {
        std::vector<EntityRecord> entities(1);
        for (const double z : depths) {
            EntityRecord entity{};
            entity.boxMin[2] = z - 0.25;
            entity.boxMax[2] = z + 0.75;
            entity.zMiddle = z;
            entities.push_back(entity);
        }
        return entities;
    }

    static std::vector<NodeRecord> Nodes(int count) {
        std::vector<NodeRecord> nodes(1);
        for (int n = 1; n <= count; ++n) {
            nodes.push_back({static_cast<double>(n), 0.0, 0.0, 10 * n, 0});
        }
        return nodes;
    }

    void MakeLabels() {
        job.m_nMaxLabel = 10 * job.m_nNodes;
        labels_.assign(static_cast<std::size_t>(job.m_nMaxLabel) + 1, 0);
        for (int n = 1; n <= job.m_nNodes; ++n) {
            labels_[static_cast<std::size_t>(10 * n)] = n;
        }
        job.m_pNodeGlobalIdToLocal = labels_.data();
    }

    void MakeArrays() {
        const int nodes = job.m_nNodes;
        for (auto* array : NodeArrays()) {
            *array = Zeros<double>(nodes);
        }
        job.m_pSurfNodeList = Zeros<int>(nodes);
        for (int n = 1; n <= nodes; ++n) {
            job.m_pSurfNodeList.get()[n] = n;
            job.m_pNormalZ.get()[n] = -1.0;
        }
        for (int k = 0; k < 6; ++k) {
            job.m_pSurfData[k] = Zeros<double>(job.m_nSurfaces);
            job.m_pCellData[k] = Zeros<double>(job.m_nCells);
            job.m_pCellFiber[k] = Zeros<double>(job.m_nCells);
        }
        for (auto& component : job.m_pCellVector) {
            component = Zeros<float>(job.m_nCells);
        }
        ForgetSearches();
    }

    std::vector<qnl::OwnedArray<double>*> NodeArrays() {
        return {&job.m_pFrozenRatio,
                &job.m_pMaxTemperature,
                &job.m_pCenterTemperature,
                &job.m_pAverageTemperature,
                &job.m_pBulkTemperature,
                &job.m_pSkinRatio,
                &job.m_pSkinThickness,
                &job.m_pMoldTemperatureDiff,
                &job.m_pMaxCoolingTime,
                &job.m_pSinkMarkWork,
                &job.m_pSinkMarkTotal,
                &job.m_pPackingIndex,
                &job.m_pMaxVolumeShrinkage,
                &job.m_pAverageVelocityU,
                &job.m_pAverageVelocityV,
                &job.m_pAverageVelocityW,
                &job.m_pFlakeColorIntensity,
                &job.m_pNormalX,
                &job.m_pNormalY,
                &job.m_pNormalZ};
    }

    std::vector<EntityRecord> faces_;
    std::vector<EntityRecord> cells_;
    std::vector<NodeRecord> nodes_;
    std::vector<int> labels_;
};
