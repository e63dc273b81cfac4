#pragma once

#include <functional>
#include <string>
#include <vector>

#include "interop/SolidMesh.h"

/// A foreign mesh that grows cell by cell.
struct ForeignCells {
    explicit ForeignCells(std::vector<std::array<double, 3>> points) {
        mesh.points = std::move(points);
        mesh.offsets.push_back(0);
    }
    ForeignCells& Add(int vtkType, const std::vector<std::int64_t>& nodes) {
        mesh.cellTypes.push_back(vtkType);
        mesh.nodes.insert(mesh.nodes.end(), nodes.begin(), nodes.end());
        mesh.offsets.push_back(static_cast<std::int64_t>(mesh.nodes.size()));
        return *this;
    }
    qnl::interop::SolidMesh Build(double millimetres = 1.0) const {
        return qnl::interop::BuildSolidMesh(mesh, millimetres, "part.vtu");
    }
    /// The sentence with which the mesh is refused; empty when it is taken.
    std::string Refusal() const {
        try {
            Build();
            return {};
        } catch (const qnl::interop::ForeignProblem& problem) {
            return problem.what();
        }
    }

    qnl::interop::ForeignMesh mesh;
};

/// Corners of the unit cube in the order of a hexahedron.
inline std::vector<std::array<double, 3>> CubeCorners() {
    return {{{0, 0, 0}}, {{1, 0, 0}}, {{1, 1, 0}}, {{0, 1, 0}},
            {{0, 0, 1}}, {{1, 0, 1}}, {{1, 1, 1}}, {{0, 1, 1}}};
}
