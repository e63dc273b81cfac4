#include "support_apps/BoxProject.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "kernel/mesh/MeshFile.h"
#include "results/ResultFile.h"

namespace {

constexpr int kTemperature = 6;

std::string FileName(int index, const std::string& extension) {
    return (index == 0 ? "box1" : "box1_00" + std::to_string(index)) + extension;
}

qnl::results::ResultItem Item(int id, std::vector<float> values) {
    return {id, "Item", "oC", qnl::results::kNodeData, 0.0F, 0.0F, std::move(values)};
}

void Write(const std::string& path, const qnl::results::StageResult& result) {
    if (!qnl::results::WriteStageResult(path, result)) {
        throw std::runtime_error("cannot write " + path);
    }
}

}  // namespace

BoxProject::BoxProject(const qnl::testing::BoxMesh& box) : mesh_(qnl::testing::BuildBox(box)) {
    folder_.Write(
        "Analysis/Run1/box1.run",
        "[MESH]\nMeshCount = 1\nMesh1 = box.hdf\n[MATERIAL]\nMaterialCount = 1\nMaterial1 = pp.toml\n");
    folder_.Write("Material/pp.toml",
                  "kind = \"thermoplastic\"\nfreeze_temperature = 130.0\ndensity = 1.0\n");
    folder_.Write("Mesh/box.hdf", "");
    qnl::kernel::WriteMeshFile(mesh_, folder_.File("Mesh/box.hdf"));
}

void BoxProject::SetTolerance(double tolerance) {
    mesh_.geomTolerance = tolerance;
    qnl::kernel::WriteMeshFile(mesh_, folder_.File("Mesh/box.hdf"));
}

void BoxProject::MakeThermoset() const {
    folder_.Write("Material/pp.toml", "kind = \"thermoset\"\n");
}

void BoxProject::AddTime(int index, float seconds, const Field& temperature, const Field& result,
                         Normals normals) const {
    qnl::results::StageResult stage;
    stage.time = {index, seconds, "s"};
    stage.maxNode = mesh_.Nodes();
    stage.items.push_back(Item(kTemperature, {}));
    qnl::results::StageResult frozen;
    frozen.nodeIds.emplace();
    frozen.items.push_back(Item(1, {}));
    for (std::size_t i = 0; i < mesh_.points.size(); ++i) {
        stage.items[0].values.push_back(static_cast<float>(temperature(mesh_.points[i])));
        const double value = result(mesh_.points[i]);
        if (!std::isnan(value)) {
            frozen.nodeIds->push_back(static_cast<int>(i) + 1);
            frozen.items[0].values.push_back(static_cast<float>(value));
        }
    }
    frozen.maxNode = static_cast<int>(frozen.nodeIds->size());
    if (normals == Normals::Smoothed) {
        constexpr int kPackingIndex = 11;
        frozen.items.push_back(Item(kPackingIndex, frozen.items[0].values));
    }
    Write(File(FileName(index, ".k4f")), stage);
    Write(File(FileName(index, ".fzr")), frozen);
}

int BoxProject::Label(const qnl::kernel::Point& place) const {
    const auto found = std::find(mesh_.points.begin(), mesh_.points.end(), place);
    if (found == mesh_.points.end()) {
        throw std::runtime_error("no node is there");
    }
    return static_cast<int>(found - mesh_.points.begin()) + 1;
}

qnl::testing::BoxMesh Cubes() {
    qnl::testing::BoxMesh box;
    box.fill = qnl::testing::Fill::Hexa;
    box.blocks = {4, 2, 2};
    box.size = {4.0, 2.0, 2.0};
    return box;
}

bool OnSurfaceOfCubes(const qnl::kernel::Point& place) {
    return place[0] == 0.0 || place[0] == 4.0 || place[1] == 0.0 || place[1] == 2.0 || place[2] == 0.0 ||
           place[2] == 2.0;
}
