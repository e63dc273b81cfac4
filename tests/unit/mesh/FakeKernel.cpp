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

CQNLOptKer::CQNLOptKer() {
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
