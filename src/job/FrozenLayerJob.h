#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>

#include "job/FixedText.h"
#include "job/OwnedArray.h"
#include "job/RelaxedValue.h"
#include "job/RunOptions.h"
#include "output/OutputItem.h"
#include "platform/CQNLCom.h"
#include "platform/CQNLKNLogErrMsgTool.h"
#include "platform/CQNLOptKer.h"
#include "profile/CSurfNodeSearch.h"

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
    std::unique_ptr<CQNLOptKer> m_pSurfTree;  ///< tree of the surface nodes that keep their velocity
    OwnedArray<OutputItem> m_pOutputItems;    ///< 0-based, m_nItemCount records
    int m_nItemCount = 0;
    int m_nOutputItemCount = 0;
    int m_nIntermediateTimes = 0;
    OwnedArray<int> m_pSurfNodeList;              ///< 1-based, m_nSurfaceNodes node indices
    const int* m_pIsPartNodeTemp = nullptr;       ///< borrowed, by label
    const int* m_pNotRunnerNode = nullptr;        ///< borrowed, by label
    const int* m_pNodeGlobalIdToLocal = nullptr;  ///< borrowed, by label
    const int* m_pIsRunnerCell = nullptr;         ///< borrowed, 1-based by cell

    // Computed values by node.
    OwnedArray<double> m_pFrozenRatio;
    OwnedArray<double> m_pMaxTemperature;
    OwnedArray<double> m_pCenterTemperature;
    OwnedArray<double> m_pAverageTemperature;
    OwnedArray<double> m_pBulkTemperature;
    OwnedArray<double> m_pSkinRatio;
    OwnedArray<double> m_pMoldTemperatureDiff;
    OwnedArray<double> m_pMaxCoolingTime;
    OwnedArray<double> m_pSkinThickness;
    OwnedArray<int> m_pSurfNodeFlag;  ///< 1: taken into m_pSurfNodeList

    OwnedArray<double> m_pNormalX;  ///< outward normal, later the sink vector
    OwnedArray<double> m_pNormalY;
    OwnedArray<double> m_pNormalZ;
    OwnedArray<float> m_pNodeThickness;         ///< wall thickness, mm
    OwnedArray<double> m_pWarpDisplacement[3];  ///< x, y, z, mm; m_nWarpEntries + 1 entries

    OwnedArray<double> m_pSinkMarkWork;
    OwnedArray<double> m_pSinkMarkTotal;
    OwnedArray<double> m_pPackingIndex;
    OwnedArray<double> m_pMaxVolumeShrinkage;
    OwnedArray<double> m_pAverageVelocityU;
    OwnedArray<double> m_pAverageVelocityV;
    OwnedArray<double> m_pAverageVelocityW;

    // Input values: temperature, volume shrinkage, gas marker, speed (bulk weight), cooling time, density.
    OwnedArray<double> m_pNodeData[6];
    OwnedArray<float> m_pNodeVector[3];  ///< velocity u, v, w
    OwnedArray<double> m_pFlakeColorIntensity;
    OwnedArray<double> m_pSurfData[6];   ///< face averages of m_pNodeData
    OwnedArray<double> m_pCellData[6];   ///< cell averages of m_pNodeData
    OwnedArray<float> m_pCellVector[3];  ///< cell averages of m_pNodeVector
    OwnedArray<double> m_pCellFiber[6];  ///< orientation tensor xx, yy, zz, xy, xz, yz

    // Paths, Windows-style.
    PathText m_szSurFile;
    PathText m_szMeshFile;
    PathText m_szResultFile;  ///< result file of the time being evaluated
    PathText m_szLogFile;
    PathText m_szMaterialFile;
    PathText m_szCmxFile;
    PathText m_szRunFile;
    NameText m_szProjectName;
    PathText m_szMeshBase;
    PathText m_szSpare;

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
    OwnedArray<int> m_pThreadFindCount;
    OwnedArray<int> m_pThreadRecordCount;
    OwnedArray<double> m_pThreadFindTime;
    RelaxedValue<int> m_nThreads = 1;
    int m_nSurfaceNodes = 0;
    int m_bSearchDone = 1;
    OwnedArray<CSurfNodeSearch> m_pNodeSearchResults;  ///< 1-based by list position
    char m_szTimeSteps[1024] = {};

    // Geometry, material and options.
    double m_dGeomTolerance = 0.0;
    std::int64_t m_nMeshWord56 = 0;
    int m_nAsciiItemCount = 1;
    const char* m_szInputResult = nullptr;  ///< borrowed, word 0
    double m_dFreezeTemp = 0.0;             ///< degC
    unsigned char m_bHasCool = 0;
    unsigned char m_bUseNodeLabel = 0;
    RelaxedValue<double> m_dKernelScratch = 0.0;  ///< depth window, mm
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
    int m_nMaxLabel = 0;                      ///< largest node label; label arrays have one entry more
    int m_nWarpEntries = 0;                   ///< m_pWarpDisplacement is valid at 0..m_nWarpEntries
    OwnedArray<unsigned char> m_pHasProfile;  ///< by node: 1 when the last evaluation had a profile
    RunOptions m_options;
};
