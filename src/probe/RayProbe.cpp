#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "context/Messages.h"
#include "probe/CsvOutput.h"
#include "probe/FibreProbe.h"
#include "profile/PassElementMesh.h"
#include "profile/kernels/RayFrame.h"
#include "profile/search/PassElementSearch.h"

namespace qnl::probe {

namespace {

/// Entry of the search records that no surface node has: the probe's searches go there.
constexpr int kSpareRecord = 0;
constexpr int kSteps = 100;
constexpr std::size_t kTensorComponents = 6;

profile::PassElementMesh Mesh(const FrozenLayerJob& job) {
    return {job.p_Surfce, job.p_Cell, {job.m_nSurfaces}};
}

/// Depths of the pass elements, mm along the axis, 1-based and ascending.
std::vector<double> SortedDepths(const FrozenLayerJob& job, const Vector3& axis, const int* found,
                                 int count) {
    std::vector<double> depths(static_cast<std::size_t>(count) + 1);
    std::vector<int> ids(depths.size());
    for (int j = 1; j <= count; ++j) {
        const auto k = static_cast<std::size_t>(j);
        ids[k] = found[j - 1];
        const Vector3 point = profile::ReferencePoint(Mesh(job).Record(ids[k]));
        LogPlain(job, "Find x = %lf,y = %lf,z= %lf  \n", point.x, point.y, point.z);
        depths[k] = Dot(axis, point);
    }
    job.m_pOptKer->shellSorting(count, depths.data(), ids.data());
    return depths;
}

void WriteCell(const FrozenLayerJob& job, double depth, int cell) {
    std::array<double, kTensorComponents> a{};
    for (std::size_t k = 0; k < a.size(); ++k) {
        const double* component = job.m_pCellFiber[k].get();
        a[k] = component != nullptr ? component[cell] : 0.0;
    }
    PrintPlain("%6.4f  %6.4f  %6.4f  %6.4f  %6.4f  %6.4f  %6.4f\n", depth, a[0], a[1], a[2], a[3], a[4],
               a[5]);
    std::fprintf(job.m_pFibreCsv, "%6.4f,  %6.4f,  %6.4f,  %6.4f,  %6.4f,  %6.4f,  %6.4f\n", depth, a[0],
                 a[1], a[2], a[3], a[4], a[5]);
}

void WriteOutside(const FrozenLayerJob& job, double height) {
    PrintPlain("%6.4f  - surface\n", height);
    std::fprintf(job.m_pFibreCsv, "%6.4f,  -, surface\n", height);
}

void WriteHeadings(const FrozenLayerJob& job) {
    PrintPlain("\n\n Height  Axx     Ayy     Azz     Axy     Axz      Ayz   \n");
    std::fputs("\n\n Height,  Axx,     Ayy,     Azz,     Axy,     Axz,      Ayz   \n", job.m_pFibreCsv);
}

/// The straight line of heights that the probe steps along.
struct ProbeLine {
    Vector3 start;
    Vector3 direction;  ///< unit
    Vector3 axis;       ///< depth axis of the ray frame
    double firstDepth;  ///< mm along the axis
    double height;      ///< mm

    double HeightAt(int step) const { return step * height / kSteps; }

    /// A little beside the line, so that it does not lie in the sides of axis-parallel cells.
    Vector3 PointAt(double t) const {
        constexpr double kBeside = 1e-8;
        return {start.x + t * direction.x + kBeside, start.y + t * direction.y + kBeside,
                start.z + t * direction.z + kBeside};
    }
};

/// Writes each element met along the line once, at the first height at which it is met.
void WriteHeights(const FrozenLayerJob& job, const ProbeLine& line) {
    const profile::PassElementMesh mesh = Mesh(job);
    std::array<int, kSteps + 1> visited{};
    auto end = visited.begin();
    for (int step = 0; step <= kSteps; ++step) {
        const double t = line.HeightAt(step);
        const int element = LocateElement(job, line.PointAt(t));
        const bool metBefore = std::find(visited.begin(), end, element) != end;
        *end++ = element;
        if (metBefore) {
            continue;
        }
        if (mesh.numbering.IsFace(element)) {
            WriteOutside(job, t);
            continue;
        }
        const int cell = mesh.numbering.CellIndex(element);
        WriteCell(job, Dot(line.axis, profile::ReferencePoint(mesh.cells[cell])) - line.firstDepth, cell);
    }
}

}  // namespace

}  // namespace qnl::probe

namespace qnl::probe {

int ProbeAlongRay(FrozenLayerJob& job, const Vector3& start, const Vector3& direction) {
    Vector3 a = direction;
    if (!Normalise(a)) {
        return -1;
    }
    LogPlain(job, "Ax = %lf,Ay = %lf,Az= %lf  \n", a.x, a.y, a.z);
    int count = 0;
    const int* found = FindNodePassElems(job, kSpareRecord, count, start.x, start.y, start.z, a.x, a.y, a.z,
                                         profile::SearchSlot(job));
    LogPlain(job, " After FindPass ,%d\n", count);
    if (count < 2) {
        return 1;
    }
    profile::RayFrame frame;
    BuildRayFrame(frame, a);
    const Vector3 axis = profile::DepthAxis(frame);
    const std::vector<double> depths = SortedDepths(job, axis, found, count);
    const double height = depths.back() - depths[1];
    LogPlain(job, " Height =%lf\n", height);
    const CsvOutput csv(job);
    if (!csv) {
        PrintPlain("Can not open Output CSV file!\n");
        return -1;
    }
    WriteHeadings(job);
    WriteHeights(job, {start, a, axis, depths[1], height});
    return 1;
}

int LocateElement(const FrozenLayerJob& job, const Vector3& point) {
    constexpr double kHalfWidth = 0.0001;
    int count = 0;
    const int* candidates = job.m_pOptKer->SearchNearBlockID(
        point.x - kHalfWidth, point.y - kHalfWidth, point.z - kHalfWidth, point.x + kHalfWidth,
        point.y + kHalfWidth, point.z + kHalfWidth, count, 0);
    const profile::PassElementMesh mesh = Mesh(job);
    double bestDistance = 1e30;
    double distance = 0.0;
    int best = -1;
    for (int k = 0; k < count; ++k) {
        if (!mesh.numbering.IsFace(candidates[k])) {
            const Vector3 cell = profile::ReferencePoint(mesh.Record(candidates[k]));
            const Vector3 offset{point.x - cell.x, point.y - cell.y, point.z - cell.z};
            distance = Dot(offset, offset);
        }
        if (bestDistance > distance) {
            bestDistance = distance;
            best = candidates[k];
        }
    }
    return best;
}

}  // namespace qnl::probe
