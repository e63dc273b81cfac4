#include "unit/mesh/FakeKernel.h"

#include <sstream>

#include "platform/CQNLCom.h"
#include "platform/CQNLOptKer.h"

namespace fake {

Kernel& TheKernel() {
    static Kernel kernel;
    return kernel;
}

namespace {

template <typename... Values>
void Called(const char* name, const Values&... values) {
    std::ostringstream text;
    text << name;
    ((text << ' ' << values), ...);
    TheKernel().calls.push_back(text.str());
}

}  // namespace
}  // namespace fake

using fake::Called;
using fake::TheKernel;

CQNLOptKer::CQNLOptKer()
    : m_pState(nullptr),
      m_pLogTool(nullptr),
      p_Node(nullptr),
      p_Surfce(nullptr),
      p_Cell(nullptr),
      m_nMeshHeader0(0),
      m_nNodes(0),
      m_nCells(0),
      m_nSurfaces(0),
      m_nMeshWord56(0),
      m_pIsPartNodeTemp(nullptr),
      m_pNotRunnerNode(nullptr),
      m_pNodeGlobalIdToLocal(nullptr),
      m_pIsRunnerCell(nullptr),
      m_nLogLevel(0),
      m_bUseNodeLabel(0),
      m_dBox{},
      m_dMeshSize(0.0),
      m_dGeomTolerance(0.0) {
    ++TheKernel().kernelsAlive;
}

CQNLOptKer::~CQNLOptKer() {
    --TheKernel().kernelsAlive;
}

int CQNLOptKer::ReadMeshData(char* path, int flag) {
    Called("ReadMeshData", path, flag);
    return TheKernel().readStatus;
}

void CQNLOptKer::InitialzeSearch(int nThread) {
    Called("InitialzeSearch", nThread);
}

void CQNLOptKer::SetADTreeRange(double xMax, double yMax, double zMax, double xMin, double yMin, double zMin,
                                int kind, int blockSize, int blockCount) {
    Called("SetADTreeRange", xMax, yMax, zMax, xMin, yMin, zMin, kind, blockSize, blockCount);
}

double CQNLCom::Time() const {
    const double now = TheKernel().time;
    TheKernel().time += TheKernel().step;
    return now;
}
