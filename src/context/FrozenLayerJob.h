#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "base/FixedText.h"
#include "base/Id.h"
#include "base/OwnedArray.h"
#include "base/RelaxedValue.h"
#include "context/CSurfNodeSearch.h"
#include "context/FieldSlots.h"
#include "context/InputDigests.h"
#include "context/OutputItem.h"
#include "context/RunOptions.h"
#include "context/WallLayers.h"
#include "platform/CQNLCom.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/CQNLOptKer.h"
#include "platform/FieldKernel.h"

/// Set while the stage driver has not run yet in the present run; the one global of the program.
extern bool g_bDriverFirstCall;

/// The context of one run. Arrays by node, surface and cell are 1-based with count + 1 entries.
///
/// "Borrowed" members point into the mesh kernel. Owned arrays are null until the stage that needs them
/// creates them. docs/interface-names.md lists meaning, unit and filler of every member.
struct FrozenLayerJob {
    FrozenLayerJob();
    ~FrozenLayerJob();
    FrozenLayerJob(const FrozenLayerJob&) = delete;
    FrozenLayerJob& operator=(const FrozenLayerJob&) = delete;

    // Mesh data and instances.
    const NodeRecord* p_Node = nullptr;       ///< borrowed
    const SurfaceRecord* p_Surfce = nullptr;  ///< borrowed
    const CellRecord* p_Cell = nullptr;       ///< borrowed
    std::unique_ptr<CQNLKNLogErrMsgTool> m_pLogTool;
    std::unique_ptr<CQNLCom> m_pCom;
    std::unique_ptr<CQNLOptKer> m_pOptKer;
    std::unique_ptr<CQNLOptKer> m_pSurfTree;          ///< tree of the surface nodes that keep their velocity
    qnl::OwnedArray<qnl::OutputItem> m_pOutputItems;  ///< 0-based, m_nItemCount records
    int m_nItemCount = 0;
    int m_nOutputItemCount = 0;
    int m_nIntermediateTimes = 0;
    qnl::OwnedArray<int> m_pSurfNodeList;         ///< 1-based, m_nSurfaceNodes node indices
    const int* m_pIsPartNodeTemp = nullptr;       ///< borrowed, by label
    const int* m_pNotRunnerNode = nullptr;        ///< borrowed, by label
    const int* m_pNodeGlobalIdToLocal = nullptr;  ///< borrowed, by label
    const int* m_pIsRunnerCell = nullptr;         ///< borrowed, 1-based by cell

    // Computed values by node.
    qnl::OwnedArray<double> m_pFrozenRatio;
    qnl::OwnedArray<double> m_pMaxTemperature;
    qnl::OwnedArray<double> m_pCenterTemperature;
    qnl::OwnedArray<double> m_pAverageTemperature;
    qnl::OwnedArray<double> m_pBulkTemperature;
    qnl::OwnedArray<double> m_pSkinRatio;
    qnl::OwnedArray<double> m_pMoldTemperatureDiff;
    qnl::OwnedArray<double> m_pMaxCoolingTime;
    qnl::OwnedArray<double> m_pSkinThickness;
    qnl::OwnedArray<int> m_pSurfNodeFlag;  ///< 1: taken into m_pSurfNodeList

    qnl::OwnedArray<double> m_pNormalX;  ///< outward normal, later the sink vector
    qnl::OwnedArray<double> m_pNormalY;
    qnl::OwnedArray<double> m_pNormalZ;
    qnl::OwnedArray<float> m_pNodeThickness;         ///< wall thickness, mm
    qnl::OwnedArray<double> m_pWarpDisplacement[3];  ///< x, y, z, mm; m_nWarpEntries + 1 entries

    qnl::OwnedArray<double> m_pSinkMarkWork;
    qnl::OwnedArray<double> m_pSinkMarkTotal;
    qnl::OwnedArray<double> m_pPackingIndex;
    qnl::OwnedArray<double> m_pMaxVolumeShrinkage;
    qnl::OwnedArray<double> m_pAverageVelocityU;
    qnl::OwnedArray<double> m_pAverageVelocityV;
    qnl::OwnedArray<double> m_pAverageVelocityW;

    // Input values by FieldSlot, and the velocity.
    qnl::OwnedArray<double> m_pNodeData[qnl::kFieldSlots];
    qnl::OwnedArray<float> m_pNodeVector[3];  ///< velocity u, v, w
    qnl::OwnedArray<double> m_pFlakeColorIntensity;
    qnl::OwnedArray<double> m_pSurfData[qnl::kFieldSlots];  ///< face averages of m_pNodeData
    qnl::OwnedArray<double> m_pCellData[qnl::kFieldSlots];  ///< cell averages of m_pNodeData
    qnl::OwnedArray<float> m_pCellVector[3];                ///< cell averages of m_pNodeVector
    qnl::OwnedArray<double> m_pCellFiber[6];                ///< orientation tensor xx, yy, zz, xy, xz, yz

    // Paths, Windows-style.
    qnl::PathText m_szSurFile;
    qnl::PathText m_szMeshFile;
    qnl::PathText m_szResultFile;  ///< result file of the time being evaluated
    qnl::PathText m_szLogFile;
    qnl::PathText m_szMaterialFile;
    qnl::PathText m_szCmxFile;
    qnl::PathText m_szRunFile;
    qnl::NameText m_szProjectName;
    qnl::PathText m_szMeshBase;
    qnl::PathText m_szSpare;

    // Kernel constants and counts.
    double m_dBoxMax[3] = {0.0, 0.0, 0.0};
    double m_dBoxMin[3] = {0.0, 0.0, 0.0};
    double m_dMeshSize = 0.0;
    int m_nNodes = 0;
    int m_nCells = 0;
    int m_nSurfaces = 0;
    int m_nMeshHeader0 = 0;
    int m_nLogLevel = 0;
    int m_nStage = 0;

    // Timing, s.
    double m_dStartTime = 0.0;
    double m_dEndTime = 0.0;
    double m_dTotalTime = 0.0;
    double m_dSurAvgMeshSize = 0.001;  ///< mean diagonal of the face boxes, mm

    // Pass-element search.
    qnl::OwnedArray<int> m_pThreadFindCount;
    qnl::OwnedArray<int> m_pThreadRecordCount;
    qnl::OwnedArray<double> m_pThreadFindTime;
    qnl::RelaxedValue<int> m_nThreads = 1;
    int m_nSurfaceNodes = 0;
    int m_bSearchDone = 1;
    qnl::OwnedArray<CSurfNodeSearch> m_pNodeSearchResults;  ///< 1-based by list position
    char m_szTimeSteps[1024] = {};

    // Geometry, material and options.
    double m_dGeomTolerance = 0.0;
    std::int64_t m_nMeshWord56 = 0;
    int m_nAsciiItemCount = 1;
    const char* m_szInputResult = nullptr;  ///< borrowed, word 0
    double m_dFreezeTemp = 0.0;             ///< degC
    unsigned char m_bHasCool = 0;
    unsigned char m_bUseNodeLabel = 0;
    qnl::RelaxedValue<double> m_dKernelScratch = 0.0;  ///< depth window, mm
    unsigned char m_bIsGasIn = 0;
    unsigned char m_bHasWarp = 0;
    unsigned char m_bHasIntermediateTimes = 0;
    unsigned char m_bIsThermoset = 0;
    unsigned char m_bFillHasCoolingTime = 0;
    unsigned char m_bKernelFlag = 0;  ///< 1: fibre-probe mode
    unsigned char m_bGasInCool = 0;
    unsigned char m_bIsFlakeLightIntensity = 0;
    unsigned char m_bIsFlakeMaterial = 0;
    unsigned char m_bHasFlow = 0;
    double m_dMaxValue = -1e8;      ///< running maximum of the volume shrinkage, %
    double m_dFreezeDensity = 0.0;  ///< g/cm3
    int m_nAnalysisType = 0;
    std::FILE* m_pFibreCsv = nullptr;  ///< open while the probe writes a block; borrowed
    const std::bad_alloc* m_pBadAlloc = nullptr;

    // Beyond the suite's context: bounds of what files may name, and the caller's options.
    int m_nMaxLabel = 0;                           ///< largest node label; label arrays have one entry more
    int m_nWarpEntries = 0;                        ///< m_pWarpDisplacement is valid at 0..m_nWarpEntries
    qnl::OwnedArray<unsigned char> m_pHasProfile;  ///< by node: 1 when the last evaluation had a profile
    std::vector<qnl::ListPosition> m_evaluationOrder;  ///< in which the nodes are evaluated fastest
    std::unique_ptr<qnl::FieldKernel> m_pFieldKernel;  ///< fields inside the cells; null unless asked for
    qnl::OwnedArray<double> m_pFieldGradients;         ///< as FieldKernel::RecoverGradients gave them
    qnl::GradientReport m_fieldReport;                 ///< of the last recovery
    std::vector<qnl::WallLayers> m_wallLayers;         ///< by node with a profile; empty unless resolved
    qnl::InputDigests m_inputDigests;                  ///< of the files read so far
    std::string m_stageFile;                           ///< stage file of the time being evaluated
    qnl::RunOptions m_options;
};
