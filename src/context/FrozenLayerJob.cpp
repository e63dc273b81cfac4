#include "context/FrozenLayerJob.h"

#include <type_traits>

bool g_bDriverFirstCall = true;

static_assert(!std::is_copy_constructible_v<FrozenLayerJob> && !std::is_move_constructible_v<FrozenLayerJob>);

namespace qnl {

namespace {

template <typename Arrays>
void ReleaseAll(Arrays& arrays) {
    for (auto& array : arrays) {
        array.reset();
    }
}

}  // namespace

}  // namespace qnl

FrozenLayerJob::FrozenLayerJob() : m_pOptKer(std::make_unique<CQNLOptKer>()) {
    g_bDriverFirstCall = true;
}

// The order of release is part of the interface to the platform libraries.
FrozenLayerJob::~FrozenLayerJob() {
    m_pNodeSearchResults.reset();
    qnl::ReleaseAll(m_pNodeData);
    qnl::ReleaseAll(m_pSurfData);
    qnl::ReleaseAll(m_pCellData);
    qnl::ReleaseAll(m_pCellVector);
    qnl::ReleaseAll(m_pCellFiber);
    m_pNormalX.reset();
    m_pNormalY.reset();
    m_pNormalZ.reset();
    m_pNodeThickness.reset();
    qnl::ReleaseAll(m_pWarpDisplacement);
    qnl::ReleaseAll(m_pNodeVector);
    m_pMaxVolumeShrinkage.reset();
    m_pAverageVelocityU.reset();
    m_pAverageVelocityV.reset();
    m_pAverageVelocityW.reset();
    m_szProjectName.Release();
    for (qnl::PathText* path : {&m_szSurFile, &m_szMeshFile, &m_szResultFile, &m_szLogFile, &m_szMaterialFile,
                                &m_szCmxFile, &m_szRunFile, &m_szMeshBase, &m_szSpare}) {
        path->Release();
    }
    m_pFieldKernel.reset();
    m_pLogTool.reset();
    m_pCom.reset();
    m_pOptKer.reset();
    m_pSurfTree.reset();
    m_pSurfNodeList.reset();
}
