#pragma once

#include <functional>
#include <string>

#include "series/SeriesFiles.h"
#include "support/MeshBuilder.h"
#include "support/ScratchFolder.h"

/// A complete project "box", run 1, of a generated mesh: freeze temperature 130 degC, flow results and
/// frozen-layer results by output time.
class BoxProject {
public:
    using Field = std::function<double(const qnl::kernel::Point&)>;
    enum class Normals { Raw, Smoothed };

    explicit BoxProject(const qnl::testing::BoxMesh& box);
    /// Writes the mesh anew with this tolerance.
    void SetTolerance(double tolerance);
    void MakeThermoset() const;

    /// Writes both files of one time. `result` is item 1 of the frozen-layer result; nodes where it is not a
    /// number are not named there.
    void AddTime(int index, float seconds, const Field& temperature, const Field& result,
                 Normals normals = Normals::Raw) const;

    /// Label of the node at a place, index + 1.
    int Label(const qnl::kernel::Point& place) const;
    std::string Folder() const { return folder_.Path(); }
    std::string File(const std::string& name) const { return folder_.File("Analysis/Run1/" + name); }
    qnl::series::SeriesFiles Series() const { return qnl::series::FindSeriesFiles({{Folder()}, false}); }

private:
    qnl::kernel::MeshData mesh_;
    ScratchFolder folder_;
};

/// Four by two by two cubes of 1 mm from the origin.
qnl::testing::BoxMesh Cubes();

/// Whether a place lies on the surface of Cubes().
bool OnSurfaceOfCubes(const qnl::kernel::Point& place);
