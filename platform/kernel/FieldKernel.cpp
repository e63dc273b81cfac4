#include "platform/FieldKernel.h"

#include "kernel/MeshKernelState.h"
#include "kernel/rays/RayPieces.h"
#include "kernel/recovery/GradientRecovery.h"
#include "platform/CQNLOptKer.h"

namespace qnl::kernel {

namespace {

class MeshFieldKernel : public FieldKernel {
public:
    MeshFieldKernel(const RecordMesh& mesh, int boundaryFaces, double epsilon, double passLength)
        : mesh_(mesh), pieces_(mesh, boundaryFaces, epsilon, passLength) {}

    GradientReport RecoverGradients(const double* const* fields, int count, double* gradients) override {
        if (!recovery_) {
            recovery_ = std::make_unique<GradientRecovery>(mesh_);
        }
        return recovery_->Recover(fields, count, gradients);
    }

    void PrepareSlots(int n) override { pieces_.PrepareSlots(n); }

    RayPieces FindPieces(const Point& origin, const Point& direction, const int* passElements, int count,
                         int slot) override {
        return pieces_.Find(origin, direction, passElements, count, slot);
    }

private:
    RecordMesh mesh_;
    PieceFinder pieces_;
    std::unique_ptr<GradientRecovery> recovery_;  ///< made when first asked
};

}  // namespace

}  // namespace qnl::kernel

std::unique_ptr<qnl::FieldKernel> qnl::MakeFieldKernel(CQNLOptKer& kernel) {
    if (kernel.m_pState == nullptr || kernel.m_nCells == 0) {
        return nullptr;
    }
    const kernel::KernelMesh& mesh = kernel.m_pState->mesh;
    const kernel::RecordMesh records{kernel.p_Node, kernel.p_Cell, kernel.m_nNodes, kernel.m_nCells};
    // The least passed length is the same for points of either precision.
    const double passLength = kernel::RayScale(mesh.meshSize, false).passLength;
    return std::make_unique<kernel::MeshFieldKernel>(records, kernel.m_nSurfaces, mesh.epsilon, passLength);
}
