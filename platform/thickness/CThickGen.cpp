#include "platform/CThickGen.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "kernel/mesh_kernel_state.h"
#include "kernel/node_normals.h"
#include "platform/CQNLOptKer.h"
#include "platform/HostFiles.h"
#include "results/result_file.h"
#include "results/stage_items.h"
#include "thickness/wall_thickness.h"

namespace {

constexpr int kDone = 0;
constexpr int kMeshNotReadable = 1;
constexpr int kFileNotWritable = 2;

constexpr int kThicknessItem = 1;
constexpr int kMeanAroundItem = 2;

std::string ThicknessPath(const std::string& meshPath) {
    const std::size_t dot = meshPath.rfind('.');
    if (dot == std::string::npos) {
        throw std::out_of_range("invalid string position");
    }
    return meshPath.substr(0, dot) + ".thk";
}

int LargestLabel(const CQNLOptKer& kernel) {
    int largest = 0;
    for (int node = 1; node <= kernel.m_nNodes; ++node) {
        largest = std::max(largest, kernel.p_Node[node].label);
    }
    return largest;
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

qnl::StageResult MakeThicknessResult(const CQNLOptKer& kernel, const std::string& meshPath) {
    const KernelMesh& mesh = kernel.m_pState->mesh;
    const std::vector<qnl::Point> normals = qnl::NodeNormals(mesh.nodes, mesh.faces.records);
    const std::vector<double> lengths = qnl::InsideLengths(*mesh.rays, mesh.boundary, kernel.p_Node, normals);
    const std::vector<double> means = qnl::PositiveMeansAround(mesh.boundary, lengths);

    qnl::StageResult result;
    result.head.mesh = meshPath;
    result.producer = {"thickness", 1, 0, 0};
    result.time = {0, 0.0F, "s"};
    result.maxNode = LargestLabel(kernel);
    const auto add = [&](int item, const std::vector<double>& values) {
        result.items.push_back(qnl::MakeStageItem(qnl::StageKind::Thickness, item,
                                                  DenseByLabel(kernel, result.maxNode, values)));
    };
    add(kThicknessItem, lengths);
    add(kMeanAroundItem, means);
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
    const qnl::StageResult result = MakeThicknessResult(kernel, meshPath);
    return qnl::WriteStageResult(thicknessPath, result) ? kDone : kFileNotWritable;
}

}  // namespace

CThickGen::CThickGen(const char* meshPath, const char* /*option*/)
    : m_nStatus(Generate(meshPath != nullptr ? meshPath : "")) {}
