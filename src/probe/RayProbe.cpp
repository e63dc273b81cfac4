#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "context/Messages.h"
#include "probe/CsvOutput.h"
#include "probe/FibreProbe.h"
#include "profile/JobViews.h"
#include "profile/rays/RayProfile.h"
#include "profile/search/PassElementSearch.h"

namespace qnl::probe {

namespace {

/// Entry of the search records that no surface node has: the probe's searches go there.
constexpr int kSpareRecord = 0;
constexpr int kSteps = 100;
constexpr std::size_t kTensorComponents = 6;

void LogReferencePoints(const FrozenLayerJob& job, const profile::FoundElements& found) {
    const profile::PassElementMesh entities = profile::MeshOf(job);
    for (int k = 0; k < found.count; ++k) {
        const Vector3 point = profile::ReferencePoint(entities[PassElement(found.numbers[k])]);
        LogPlain(job, "Find x = %lf,y = %lf,z= %lf  \n", point.x, point.y, point.z);
    }
}

/// Depths of the pass elements, mm along the depth axis of the ray, 1-based and ascending.
std::vector<double> SortedDepths(const FrozenLayerJob& job, const profile::RayDepth& depth,
                                 const profile::FoundElements& found) {
    std::vector<double> depths(static_cast<std::size_t>(found.count) + 1);
    std::vector<int> elements(depths.size());
    profile::SortAlongRay(depth, *job.m_pOptKer, found, {depths.data(), elements.data()});
    return depths;
}

void WriteCell(const FrozenLayerJob& job, double depth, CellId cell) {
    std::array<double, kTensorComponents> a{};
    for (std::size_t k = 0; k < a.size(); ++k) {
        const double* component = job.m_pCellFiber[k].get();
        a[k] = component != nullptr ? component[cell.Value()] : 0.0;
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
    double firstDepth;  ///< mm along the depth axis of the ray
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
void WriteHeights(const FrozenLayerJob& job, const ProbeLine& line, const profile::RayDepth& depth) {
    const mesh::PassElementNumbering numbering{job.m_nSurfaces};
    std::array<PassElement, kSteps + 1> visited{};
    auto end = visited.begin();
    for (int step = 0; step <= kSteps; ++step) {
        const double t = line.HeightAt(step);
        const PassElement element = LocateElement(job, line.PointAt(t));
        const bool metBefore = std::find(visited.begin(), end, element) != end;
        *end++ = element;
        if (metBefore) {
            continue;
        }
        if (element == kNoElement || numbering.IsFace(element)) {
            WriteOutside(job, t);
        } else {
            WriteCell(job, depth(element) - line.firstDepth, numbering.Cell(element));
        }
    }
}

}  // namespace

int ProbeAlongRay(FrozenLayerJob& job, const Vector3& start, const Vector3& direction) {
    Vector3 a = direction;
    if (!Normalise(a)) {
        return -1;
    }
    LogPlain(job, "Ax = %lf,Ay = %lf,Az= %lf  \n", a.x, a.y, a.z);
    profile::FoundElements found{};
    found.numbers = FindNodePassElems(job, kSpareRecord, found.count, start.x, start.y, start.z, a.x, a.y,
                                      a.z, profile::SearchSlot(job));
    LogPlain(job, " After FindPass ,%d\n", found.count);
    if (found.count < 2) {
        return 1;
    }
    LogReferencePoints(job, found);
    const profile::RayDepth depth(profile::MeshOf(job), a);
    const std::vector<double> depths = SortedDepths(job, depth, found);
    const double height = depths.back() - depths[1];
    LogPlain(job, " Height =%lf\n", height);
    const CsvOutput csv(job);
    if (!csv) {
        PrintPlain("Can not open Output CSV file!\n");
        return -1;
    }
    WriteHeadings(job);
    WriteHeights(job, {start, a, depths[1], height}, depth);
    return 1;
}

PassElement LocateElement(const FrozenLayerJob& job, const Vector3& point) {
    constexpr double kHalfWidth = 0.0001;
    int count = 0;
    const int* candidates = job.m_pOptKer->SearchNearBlockID(
        point.x - kHalfWidth, point.y - kHalfWidth, point.z - kHalfWidth, point.x + kHalfWidth,
        point.y + kHalfWidth, point.z + kHalfWidth, count, 0);
    const profile::PassElementMesh entities = profile::MeshOf(job);
    const mesh::PassElementNumbering numbering = entities.Numbering();
    double bestDistance = 1e30;
    double distance = 0.0;
    PassElement best = kNoElement;
    for (int k = 0; k < count; ++k) {
        const PassElement candidate(candidates[k]);
        if (!numbering.IsFace(candidate)) {
            const Vector3 cell = profile::ReferencePoint(entities[candidate]);
            const Vector3 offset{point.x - cell.x, point.y - cell.y, point.z - cell.z};
            distance = Dot(offset, offset);
        }
        if (bestDistance > distance) {
            bestDistance = distance;
            best = candidate;
        }
    }
    return best;
}

}  // namespace qnl::probe
