#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/MeshRecords.h"

class CQNLKNLogErrMsgTool;

namespace qnl::kernel {
struct MeshKernelState;
}

/// The mesh kernel: reads the solid mesh, owns it, and answers geometric questions about it.
///
/// The public data members are read directly by the program; their offsets are part of the interface
/// and are pinned below. The arrays stay owned by the kernel and live as long as it does.
class CQNLOptKer {
public:
    CQNLOptKer();
    ~CQNLOptKer();
    CQNLOptKer(const CQNLOptKer&) = delete;
    CQNLOptKer& operator=(const CQNLOptKer&) = delete;

    /// Copies words 0 to 5 of `argv` into the six buffers of 255 bytes, in order; a missing word gives
    /// an empty text. Raises std::length_error for a word of 255 bytes or more, with no buffer changed.
    /// Gives the number of words copied.
    int argumentHandle(int argc, char** argv, char* word0, char* word1, char* word2, char* word3, char* word4,
                       char* word5);

    /// Takes the log tool through which the kernel reports; borrowed.
    void getMsgPtr(CQNLKNLogErrMsgTool* logTool);

    /// Reads the mesh file and fills all data members. `flag` 1 announces that fibre data per cell will
    /// be read as well. Gives 1, or a negative status after one line on standard output that names the
    /// file and the fault; nothing is filled then. Raises std::bad_alloc when memory runs out.
    int ReadMeshData(char* path, int flag);

    /// Prepares `nThread` search slots, numbered from 0.
    void InitialzeSearch(int nThread);

    /// Faces and cells that the ray from (x, y, z) along the unit vector (dx, dy, dz) passes while it is
    /// inside the solid, as pass-element ids in ascending order: 1 to m_nSurfaces is a face, a larger id
    /// the cell id - m_nSurfaces. `count` receives their number. The array (0-based) belongs to search
    /// slot `thread` and holds until the next call on that slot. Safe to call from several threads with
    /// distinct slots.
    int* FindPassElemByAnyRay(int& count, double x, double y, double z, double dx, double dy, double dz,
                              int thread);

    /// Sorts the 1-based arrays keys[1..n] ascending and carries ids[1..n] along; within each maximal run
    /// of keys that follow each other by no more than the kernel's distance tolerance the ids end in
    /// ascending order.
    void shellSorting(int n, double* keys, int* ids) const;

    /// Outward unit normals of the boundary nodes, into three arrays of m_nNodes + 1 entries; entries of
    /// other nodes are left alone.
    int ComputeNodeSurfaceNormal(double* nx, double* ny, double* nz);

    /// Replaces, `iterations` times, the value of every boundary node by the mean of itself and the nodes
    /// that share a boundary-face edge with it. `array` has m_nNodes + 1 entries.
    void SmoothSurfaceNodeValue(double* array, int iterations);

    /// Empties the box tree and sets the range that its boxes will lie in. The last three arguments are
    /// sizing hints.
    void SetADTreeRange(double xMax, double yMax, double zMax, double xMin, double yMin, double zMin,
                        int kind, int blockSize, int blockCount);

    /// Stores a box under an id.
    void AddSurfaceToADTree(int id, double xMin, double yMin, double zMin, double xMax, double yMax,
                            double zMax);

    /// Ids of the stored boxes that overlap the query box (closed on both sides), ascending; `count`
    /// receives their number. The array (0-based) holds until the next call on that slot. On a kernel
    /// that has read a mesh the tree holds every face and cell under its pass-element id. A slot beyond
    /// those prepared is made on the spot.
    int* SearchNearBlockID(double xMin, double yMin, double zMin, double xMax, double yMax, double zMax,
                           int& count, int slot);

    qnl::kernel::MeshKernelState* m_pState = nullptr;  ///< kernel's own, owned
    CQNLKNLogErrMsgTool* m_pLogTool = nullptr;         ///< borrowed
    NodeRecord* p_Node = nullptr;                      ///< 1-based
    SurfaceRecord* p_Surfce = nullptr;                 ///< 1-based boundary faces
    CellRecord* p_Cell = nullptr;                      ///< 1-based
    int m_nMeshHeader0 = 0;                            ///< reserved header word
    int m_nNodes = 0;
    int m_nCells = 0;
    int m_nSurfaces = 0;
    std::int64_t m_nMeshWord56 = 0;         ///< reserved header word
    int* m_pIsPartNodeTemp = nullptr;       ///< by node label: 1 node of the moulded part
    int* m_pNotRunnerNode = nullptr;        ///< by node label: 1 part, 0 runner, -1 special
    int* m_pNodeGlobalIdToLocal = nullptr;  ///< by node label: node index, 0 where there is none
    int* m_pIsRunnerCell = nullptr;         ///< 1-based by cell
    int m_nLogLevel = 0;                    ///< the kernel's own verbosity
    unsigned char m_bUseNodeLabel = 0;      ///< 1: nodes carry their own labels
    double m_dBox[6] = {};                  ///< x, y, z maximum, then x, y, z minimum, mm
    double m_dMeshSize = 0.0;               ///< mean edge length of the boundary faces, mm
    double m_dGeomTolerance = 0.0;          ///< modulus of the part: volume by area, mm
};

static_assert(offsetof(CQNLOptKer, p_Node) == 16);
static_assert(offsetof(CQNLOptKer, p_Surfce) == 24);
static_assert(offsetof(CQNLOptKer, p_Cell) == 32);
static_assert(offsetof(CQNLOptKer, m_nMeshHeader0) == 40);
static_assert(offsetof(CQNLOptKer, m_nNodes) == 44);
static_assert(offsetof(CQNLOptKer, m_nCells) == 48);
static_assert(offsetof(CQNLOptKer, m_nSurfaces) == 52);
static_assert(offsetof(CQNLOptKer, m_nMeshWord56) == 56);
static_assert(offsetof(CQNLOptKer, m_pIsPartNodeTemp) == 64);
static_assert(offsetof(CQNLOptKer, m_pNotRunnerNode) == 72);
static_assert(offsetof(CQNLOptKer, m_pNodeGlobalIdToLocal) == 80);
static_assert(offsetof(CQNLOptKer, m_pIsRunnerCell) == 88);
static_assert(offsetof(CQNLOptKer, m_bUseNodeLabel) == 100);
static_assert(offsetof(CQNLOptKer, m_dBox) == 104);
static_assert(offsetof(CQNLOptKer, m_dMeshSize) == 152);
static_assert(offsetof(CQNLOptKer, m_dGeomTolerance) == 160);
