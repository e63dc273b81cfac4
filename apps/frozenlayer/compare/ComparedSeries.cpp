#include "compare/ComparedSeries.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/Vector3.h"
#include "project/ResultState.h"
#include "project/Warnings.h"
#include "results/ResultFile.h"
#include "series/OpenedProject.h"
#include "text/NumberText.h"

namespace qnl::compare {

namespace {

using Contents = std::vector<results::ResultFileContent>;

/// Names of the material files, with commas between several. A result that does not name its material was
/// made with that of the project.
std::string MaterialsOf(const Contents& contents, const series::OpenedProject& project) {
    std::vector<std::string> names;
    std::string all;
    for (const results::ResultFileContent& content : contents) {
        const std::string& own = content.head.material;
        const std::string name = project::FileName(own.empty() ? project.MaterialFile() : own);
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            all += (names.empty() ? "" : ", ") + name;
            names.push_back(name);
        }
    }
    return all;
}

double Diagonal(const std::vector<std::array<float, 3>>& points) {
    double square = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto less = [axis](const auto& p, const auto& q) { return p[axis] < q[axis]; };
        const auto [low, high] = std::minmax_element(points.begin(), points.end(), less);
        const double side = points.empty() ? 0.0 : double{(*high)[axis]} - double{(*low)[axis]};
        square += side * side;
    }
    return std::sqrt(square);
}

double Distance(const std::array<float, 3>& p, const std::array<float, 3>& q) {
    return Length(
        Vector3{double{p[0]} - double{q[0]}, double{p[1]} - double{q[1]}, double{p[2]} - double{q[2]}});
}

std::string PlaceText(const std::array<float, 3>& p) {
    return text::NumberText(double{p[0]}) + ", " + text::NumberText(double{p[1]}) + ", " +
           text::NumberText(double{p[2]}) + " mm";
}

/// What tells the surfaces apart; empty for the same nodes.
std::string SurfaceDifference(const series::Surface& a, const series::Surface& b) {
    if (a.Nodes() != b.Nodes()) {
        return "A has " + std::to_string(a.Nodes()) + " surface nodes, B " + std::to_string(b.Nodes());
    }
    const double reach = kSamePlace * Diagonal(a.points);
    for (std::size_t i = 0; i < a.Nodes(); ++i) {
        if (a.labels[i] != b.labels[i]) {
            return "surface node number " + std::to_string(i + 1) + " has the label " +
                   std::to_string(a.labels[i]) + " in A, " + std::to_string(b.labels[i]) + " in B";
        }
        if (Distance(a.points[i], b.points[i]) > reach) {
            return "node " + std::to_string(a.labels[i]) + " stands at " + PlaceText(a.points[i]) +
                   " in A, at " + PlaceText(b.points[i]) + " in B";
        }
    }
    return {};
}

}  // namespace

series::SeriesFiles FindComparedFiles(const std::string& word) {
    const bool ownTimeOnly = !project::FolderExists(word) && project::SplitRunPath(word).index > 0;
    return series::FindSeriesFiles({{word}, ownTimeOnly});
}

ComparedSeries ReadComparedSeries(const std::string& word) {
    ComparedSeries side;
    side.files = FindComparedFiles(word);
    const series::OpenedProject project(side.files);
    const Contents contents = series::ReadResults(side.files);
    if (!project.FreezeTemperature()) {
        series::ForgivePackingIndexOfThermoset();
    }
    side.meshFile = project.MeshFile();
    side.origin = contents.front().origin;
    side.material = MaterialsOf(contents, project);
    side.surface = series::SurfaceOf(project);
    side.results = series::ResultsOnSurface(side.files, contents, project, side.surface);
    return side;
}

void NoteEquallyNamedInputs(const Both<ComparedSeries>& sides) {
    for (const InputRole role : {InputRole::Mesh, InputRole::Material}) {
        const ResultInput* a = project::DifferingInput(sides[0].origin, sides[1].origin, role);
        const ResultInput* b = project::DifferingInput(sides[1].origin, sides[0].origin, role);
        if (a != nullptr && a->name == b->name) {
            project::RecordWarning(std::string("A and B were made with two different files as ") +
                                   NameOf(role) + ", both named " + a->name);
        }
    }
}

void CheckSameSurface(const Both<ComparedSeries>& sides) {
    const std::string difference = SurfaceDifference(sides[0].surface, sides[1].surface);
    if (!difference.empty()) {
        throw project::InputProblem(
            project::NativePath(sides[0].meshFile) + " and " + project::NativePath(sides[1].meshFile) +
            " are different meshes: " + difference + "; compare results that were made on one mesh");
    }
}

}  // namespace qnl::compare
