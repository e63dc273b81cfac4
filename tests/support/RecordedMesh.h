#pragma once

#include <functional>
#include <limits>
#include <utility>
#include <vector>

#include "kernel/mesh/EntityRecords.h"
#include "kernel/mesh/RecordMesh.h"
#include "kernel/rays/RayPieces.h"
#include "kernel/rays/RayTolerance.h"
#include "kernel/rays/RayWalk.h"
#include "kernel/recovery/GradientRecovery.h"
#include "kernel/topology/FaceTopology.h"
#include "support/MeshBuilder.h"

namespace qnl::testing {

using PlaceFunction = std::function<double(const kernel::Point&)>;

/// A generated mesh with its 1-based records, as the mesh kernel holds them.
class RecordedMesh {
public:
    explicit RecordedMesh(kernel::MeshData mesh)
        : data_(std::move(mesh)), nodes_(kernel::NodeRecords(data_)), cells_(kernel::CellRecords(data_)) {}

    const kernel::MeshData& Data() const { return data_; }
    kernel::RecordMesh View() const {
        return {nodes_.data(), cells_.records.data(), data_.Nodes(), data_.Cells()};
    }
    kernel::Point Place(int node) const { return data_.points[static_cast<std::size_t>(node) - 1]; }

    /// Values by node, 1-based; entry 0 is not a number.
    std::vector<double> Values(const PlaceFunction& field) const {
        std::vector<double> values(1, std::numeric_limits<double>::quiet_NaN());
        for (const kernel::Point& point : data_.points) {
            values.push_back(field(point));
        }
        return values;
    }

    /// Gradients of one field, three a node, 1-based.
    std::vector<double> Gradients(const std::vector<double>& values, GradientReport* report = nullptr) const {
        std::vector<double> gradients(3 * values.size(), std::numeric_limits<double>::quiet_NaN());
        const double* fields[] = {values.data()};
        const GradientReport found = kernel::GradientRecovery(View()).Recover(fields, 1, gradients.data());
        if (report != nullptr) {
            *report = found;
        }
        return gradients;
    }

private:
    kernel::MeshData data_;
    std::vector<NodeRecord> nodes_;
    kernel::EntityRecords cells_;
};

/// Rays through a mesh: the walk, and the pieces of the cells that it passes.
class RecordedRays {
public:
    RecordedRays(const RecordedMesh& mesh, double meshSize)
        : scale(meshSize, mesh.Data().singlePrecision),
          walker(kernel::BuildFaceTopology(mesh.Data()).topology, meshSize, mesh.Data().singlePrecision),
          finder(mesh.View(), walker.BoundaryFaces(), scale.epsilon, scale.passLength) {
        walker.PrepareSlots(1);
        finder.PrepareSlots(1);
    }

    /// Holds until the next call.
    RayPieces Pieces(const kernel::Point& origin, const kernel::Point& direction) {
        int count = 0;
        const int* ids = walker.Find(count, origin, direction, 0);
        return finder.Find(origin, direction, ids, count, 0);
    }

    kernel::RayScale scale;
    kernel::RayWalker walker;
    kernel::PieceFinder finder;
};

struct NamedFill {
    const char* name;
    Fill fill;
};

constexpr NamedFill kAllFills[] = {{"tetra", Fill::Tetra},
                                   {"hexa", Fill::Hexa},
                                   {"wedge", Fill::Wedge},
                                   {"pyramid", Fill::Pyramid},
                                   {"mixed", Fill::Mixed}};

/// Plate of 2 mm between z = 0 and z = 2, with `through` blocks of that height through the wall; inner nodes
/// are moved by up to `jiggle` block lengths.
inline kernel::MeshData JiggledPlate(Fill fill, int through, int wide = 8, double jiggle = 0.2,
                                     std::uint32_t seed = 1) {
    BoxMesh box;
    box.fill = fill;
    box.blocks = {wide, wide, through};
    box.size = {2.0 * wide / through, 2.0 * wide / through, 2.0};
    box.jiggle = jiggle;
    box.seed = seed;
    return BuildBox(box);
}

}  // namespace qnl::testing
