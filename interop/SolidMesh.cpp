#include "interop/SolidMesh.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kernel/mesh/CellVolumes.h"
#include "kernel/mesh/MeshFault.h"

namespace qnl::interop {

namespace {

enum class Fate { Linear, Quadratic, Voxel, LeftOut, Refused };

/// What becomes of a VTK cell type. Higher-order cells name their corners first.
struct CellRule {
    int vtkType;
    Fate fate;
    kernel::CellType solid;
};

constexpr std::array<CellRule, 21> kVolumeCells{{
    {10, Fate::Linear, kernel::CellType::Tetra},      {12, Fate::Linear, kernel::CellType::Hexa},
    {13, Fate::Linear, kernel::CellType::Wedge},      {14, Fate::Linear, kernel::CellType::Pyramid},
    {11, Fate::Voxel, kernel::CellType::Hexa},        {24, Fate::Quadratic, kernel::CellType::Tetra},
    {25, Fate::Quadratic, kernel::CellType::Hexa},    {26, Fate::Quadratic, kernel::CellType::Wedge},
    {27, Fate::Quadratic, kernel::CellType::Pyramid}, {29, Fate::Quadratic, kernel::CellType::Hexa},
    {31, Fate::Quadratic, kernel::CellType::Wedge},   {32, Fate::Quadratic, kernel::CellType::Wedge},
    {33, Fate::Quadratic, kernel::CellType::Hexa},    {37, Fate::Quadratic, kernel::CellType::Pyramid},
    {71, Fate::Quadratic, kernel::CellType::Tetra},   {72, Fate::Quadratic, kernel::CellType::Hexa},
    {73, Fate::Quadratic, kernel::CellType::Wedge},   {74, Fate::Quadratic, kernel::CellType::Pyramid},
    {78, Fate::Quadratic, kernel::CellType::Tetra},   {79, Fate::Quadratic, kernel::CellType::Hexa},
    {80, Fate::Quadratic, kernel::CellType::Wedge},
}};

/// Points, lines and surface cells.
constexpr std::array<int, 23> kLowerCells{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  21, 22,
                                          23, 28, 30, 34, 35, 36, 68, 69, 70, 75, 76};

constexpr int kPolyhedron = 42;

CellRule FindRule(int vtkType) {
    for (const CellRule& rule : kVolumeCells) {
        if (rule.vtkType == vtkType) {
            return rule;
        }
    }
    const bool lower = std::find(kLowerCells.begin(), kLowerCells.end(), vtkType) != kLowerCells.end();
    return {vtkType, lower ? Fate::LeftOut : Fate::Refused, kernel::CellType::Tetra};
}

/// Corner of a voxel that is corner i of the hexahedron.
constexpr std::array<std::size_t, 8> kVoxelCorner{0, 1, 3, 2, 4, 5, 7, 6};

class Builder {
public:
    Builder(const ForeignMesh& foreign, double millimetres, const std::string& file)
        : foreign_(foreign), millimetres_(millimetres), file_(file), nodeOf_(foreign.points.size(), -1) {}

    SolidMesh Build() {
        RefuseUnusableCells();
        solid_.mesh.singlePrecision = foreign_.singlePrecision;
        solid_.mesh.offsets.push_back(0);
        for (std::size_t cell = 0; cell < foreign_.cellTypes.size(); ++cell) {
            AddCell(cell);
        }
        if (solid_.cellSource.empty()) {
            throw ForeignProblem(
                file_ + ": this is a surface mesh: none of its " + std::to_string(foreign_.cellTypes.size()) +
                " cells has a volume; export the solid mesh (tetrahedra, hexahedra, wedges, pyramids)");
        }
        NumberNodes();
        try {
            kernel::TurnNegativeCells(solid_.mesh, solid_.volumes);
        } catch (const kernel::MeshFault& fault) {
            throw ForeignProblem(file_ + ": " + fault.what() + "; repair the mesh or leave the cell out");
        }
        return std::move(solid_);
    }

private:
    void RefuseUnusableCells() const {
        std::int64_t polyhedra = 0;
        std::int64_t others = 0;
        int other = 0;
        for (const int type : foreign_.cellTypes) {
            if (FindRule(type).fate == Fate::Refused) {
                (type == kPolyhedron ? polyhedra : others) += 1;
                other = type == kPolyhedron ? other : type;
            }
        }
        if (polyhedra > 0) {
            throw ForeignProblem(file_ + " holds " + std::to_string(polyhedra) +
                                 " polyhedra; split them into tetrahedra before the export");
        }
        if (others > 0) {
            throw ForeignProblem(file_ + " holds " + std::to_string(others) + " cells of VTK type " +
                                 std::to_string(other) +
                                 "; use tetrahedra, hexahedra, wedges and pyramids, linear or quadratic");
        }
    }

    void AddCell(std::size_t cell) {
        const CellRule rule = FindRule(foreign_.cellTypes[cell]);
        if (rule.fate == Fate::LeftOut) {
            ++solid_.leftOut;
            return;
        }
        solid_.madeLinear += rule.fate == Fate::Quadratic ? 1 : 0;
        const auto* nodes = foreign_.nodes.data() + foreign_.offsets[cell];
        const auto corners =
            static_cast<std::size_t>(kernel::FindCellShape(static_cast<int>(rule.solid))->corners);
        CheckCorners(cell, nodes, corners);
        for (std::size_t c = 0; c < corners; ++c) {
            AddCorner(nodes[rule.fate == Fate::Voxel ? kVoxelCorner[c] : c]);
        }
        solid_.cellSource.push_back(static_cast<std::int64_t>(cell));
        solid_.mesh.cellTypes.push_back(static_cast<std::uint8_t>(rule.solid));
        solid_.mesh.offsets.push_back(static_cast<std::int64_t>(solid_.mesh.connectivity.size()));
    }

    void CheckCorners(std::size_t cell, const std::int64_t* nodes, std::size_t corners) const {
        const auto given = static_cast<std::size_t>(foreign_.offsets[cell + 1] - foreign_.offsets[cell]);
        for (std::size_t c = 0; c < corners; ++c) {
            const bool usable = given >= corners && nodes[c] >= 0 &&
                                static_cast<std::size_t>(nodes[c]) < foreign_.points.size() &&
                                std::find(nodes, nodes + c, nodes[c]) == nodes + c;
            if (!usable) {
                throw ForeignProblem(
                    file_ + ": cell " + std::to_string(cell + 1) +
                    " lacks a corner, names one twice or one that does not exist; repair the mesh");
            }
        }
    }

    /// Holds foreign points until NumberNodes.
    void AddCorner(std::int64_t point) {
        nodeOf_[static_cast<std::size_t>(point)] = 0;
        solid_.mesh.connectivity.push_back(static_cast<int>(point));
    }

    /// Nodes keep the order of the foreign points.
    void NumberNodes() {
        for (std::size_t point = 0; point < nodeOf_.size(); ++point) {
            if (nodeOf_[point] == 0) {
                nodeOf_[point] = solid_.mesh.Nodes();
                AddNode(point);
            }
        }
        for (int& node : solid_.mesh.connectivity) {
            node = nodeOf_[static_cast<std::size_t>(node)];
        }
    }

    void AddNode(std::size_t point) {
        kernel::Point scaled = foreign_.points[point];
        for (double& coordinate : scaled) {
            coordinate *= millimetres_;
            if (!std::isfinite(coordinate)) {
                throw ForeignProblem(file_ + ": point " + std::to_string(point + 1) +
                                     " has a coordinate that is not finite; repair the mesh");
            }
        }
        solid_.mesh.points.push_back(scaled);
        solid_.pointSource.push_back(static_cast<std::int64_t>(point));
    }

    const ForeignMesh& foreign_;
    double millimetres_;
    const std::string& file_;
    std::vector<int> nodeOf_;  ///< -1: not used
    SolidMesh solid_;
};

}  // namespace

SolidMesh BuildSolidMesh(const ForeignMesh& foreign, double millimetres, const std::string& file) {
    return Builder(foreign, millimetres, file).Build();
}

}  // namespace qnl::interop
