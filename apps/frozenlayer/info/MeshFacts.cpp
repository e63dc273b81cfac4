#include <array>
#include <iostream>
#include <sstream>

#include "base/WindowsPath.h"
#include "info/FactReaders.h"
#include "platform/CQNLOptKer.h"
#include "project/ProjectPaths.h"
#include "text/StreamRedirection.h"

namespace qnl::info {

namespace {

struct CellKind {
    int corners;
    const char* key;
    const char* label;
};
constexpr std::array<CellKind, 4> kCellKinds{{
    {4, "tetra", "  tetrahedra"},
    {5, "pyramid", "  pyramids"},
    {6, "wedge", "  wedges"},
    {8, "hexa", "  hexahedra"},
}};

/// Reads the mesh; the line that the kernel prints about a fault becomes the exception's text.
void ReadMesh(CQNLOptKer& kernel, const std::string& path) {
    std::ostringstream messages;
    std::string file = project::WindowsStyle(path);
    int status = 0;
    {
        const text::StreamRedirection redirection(std::cout, messages);
        status = kernel.ReadMeshData(file.data(), 0);
    }
    if (status != 1) {
        std::string text = messages.str();
        text.erase(text.find_last_not_of("\r\n") + 1);
        throw project::InputProblem(text.empty() ? project::NativePath(path) + ": the mesh cannot be read"
                                                 : text);
    }
}

void AddCells(const CQNLOptKer& kernel, FileFacts& facts) {
    facts.Add("cells", "Cells", "", std::int64_t{kernel.m_nCells});
    for (const CellKind& kind : kCellKinds) {
        std::int64_t count = 0;
        for (int c = 1; c <= kernel.m_nCells; ++c) {
            count += kernel.p_Cell[c].nNode == kind.corners ? 1 : 0;
        }
        if (count > 0) {
            facts.Add(kind.key, kind.label, "", count);
        }
    }
    std::int64_t runner = 0;
    for (int c = 1; c <= kernel.m_nCells; ++c) {
        runner += kernel.m_pIsRunnerCell[c];
    }
    facts.Add("part_cells", "  of the part", "", kernel.m_nCells - runner);
    facts.Add("runner_cells", "  of the runner", "", runner);
}

void AddLabels(const CQNLOptKer& kernel, FileFacts& facts) {
    int smallest = 0;
    int largest = 0;
    for (int n = 1; n <= kernel.m_nNodes; ++n) {
        const int label = kernel.p_Node[n].label;
        smallest = n == 1 || label < smallest ? label : smallest;
        largest = label > largest ? label : largest;
    }
    facts.Add("has_labels", "Labels of their own", "", kernel.m_bUseNodeLabel == 1);
    facts.Add("smallest_label", "  smallest", "", std::int64_t{smallest});
    facts.Add("largest_label", "  largest", "", std::int64_t{largest});
}

void AddBox(const CQNLOptKer& kernel, FileFacts& facts) {
    FactTable box{
        "box",
        "Bounding box",
        {{"axis", "Axis"}, {"min_mm", "From (mm)"}, {"max_mm", "To (mm)"}, {"size_mm", "Size (mm)"}},
        {}};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double max = kernel.m_dBox[axis];
        const double min = kernel.m_dBox[axis + 3];
        box.rows.push_back({std::string(1, static_cast<char>('x' + axis)), min, max, max - min});
    }
    facts.tables.push_back(std::move(box));
}

}  // namespace

FileFacts ReadMeshFacts(const std::string& path) {
    CQNLOptKer kernel;
    ReadMesh(kernel, path);
    FileFacts facts;
    facts.Add("nodes", "Nodes", "", std::int64_t{kernel.m_nNodes});
    AddLabels(kernel, facts);
    AddCells(kernel, facts);
    facts.Add("boundary_faces", "Boundary faces", "", std::int64_t{kernel.m_nSurfaces});
    facts.Add("mesh_size_mm", "Mean edge length of the boundary", "mm", kernel.m_dMeshSize);
    facts.Add("geometric_tolerance_mm", "Modulus (part volume by its surface)", "mm",
              kernel.m_dGeomTolerance);
    facts.Add("depth_window_mm", "Depth window (three times the modulus)", "mm",
              3.0 * kernel.m_dGeomTolerance);
    AddBox(kernel, facts);
    return facts;
}

}  // namespace qnl::info
