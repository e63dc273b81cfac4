#include "platform/CThickGen.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "base/LargestLabel.h"
#include "kernel/MeshKernelState.h"
#include "kernel/mesh/NodeNormals.h"
#include "platform/CQNLOptKer.h"
#include "platform/HostFiles.h"
#include "results/ResultFile.h"
#include "results/StageItems.h"
#include "thickness/WallThickness.h"

namespace qnl::thickness {

namespace {

constexpr int kDone = 0;
constexpr int kMeshNotReadable = 1;
constexpr int kFileNotWritable = 2;

std::string ThicknessPath(const std::string& meshPath) {
    const std::size_t dot = meshPath.rfind('.');
    if (dot == std::string::npos) {
        throw std::out_of_range("invalid string position");
    }
    return meshPath.substr(0, dot) + std::string(kThicknessExtension);
}

/// The values of the boundary nodes by label, 0 elsewhere.
std::vector<float> DenseByLabel(const CQNLOptKer& kernel, int entries, const std::vector<double>& values) {
    std::vector<float> dense(static_cast<std::size_t>(entries));
    const std::vector<int>& nodes = kernel.m_pState->mesh.boundary.Nodes();
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const int label = kernel.p_Node[nodes[i] + 1].label;
        dense[static_cast<std::size_t>(label) - 1] = static_cast<float>(values[i]);
    }
    return dense;
}

results::StageResult MakeThicknessResult(const CQNLOptKer& kernel, const std::string& meshPath) {
    const kernel::KernelMesh& mesh = kernel.m_pState->mesh;
    const std::vector<kernel::Point> normals = kernel::NodeNormals(mesh.nodes, mesh.faces.records);
    const std::vector<double> lengths = InsideLengths(*mesh.rays, mesh.boundary, kernel.p_Node, normals);
    const std::vector<double> means = PositiveMeansAround(mesh.boundary, lengths);

    results::StageResult result;
    result.head.mesh = meshPath;
    result.producer = {"thickness", 1, 0, 0};
    result.time = {0, 0.0F, "s"};
    result.maxNode = LargestLabel(kernel.p_Node, kernel.m_nNodes);
    const auto add = [&](int item, const std::vector<double>& values) {
        result.items.push_back(
            results::MakeStageItem(StageKind::Thickness, item, DenseByLabel(kernel, result.maxNode, values)));
    };
    add(kThicknessAlongRay, lengths);
    add(kThicknessAround, means);
    return result;
}

int Generate(std::string meshPath) {
    const std::string thicknessPath = ThicknessPath(meshPath);
    if (IsOlder(meshPath, thicknessPath)) {
        return kDone;
    }
    CQNLOptKer kernel;
    if (kernel.ReadMeshData(meshPath.data(), 0) != 1) {
        return kMeshNotReadable;
    }
    const results::StageResult result = MakeThicknessResult(kernel, meshPath);
    return results::WriteStageResult(thicknessPath, result) ? kDone : kFileNotWritable;
}

}  // namespace

}  // namespace qnl::thickness

CThickGen::CThickGen(const char* meshPath, const char* /*option*/)
    : m_nStatus(qnl::thickness::Generate(meshPath != nullptr ? meshPath : "")) {}
