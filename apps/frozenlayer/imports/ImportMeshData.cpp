#include "imports/ImportMeshData.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "imports/ImportUnits.h"
#include "text/NumberText.h"

namespace qnl::imports {

namespace {

constexpr std::array<const char*, 4> kLabelNames{"NodeId", "GlobalNodeId", "GlobalNodeID", "node_id"};
constexpr const char* kOwnRegionName = "Region";

/// Labels are used when they are whole, unique, at least 1 and not spread thinly: result files are as long as
/// the largest label.
std::vector<int> UsableLabels(const interop::ForeignArray& array, const interop::SolidMesh& solid) {
    constexpr double kLabelsPerNode = 8.0;
    const double largest = std::max(1e5, kLabelsPerNode * static_cast<double>(solid.pointSource.size()));
    std::vector<int> labels;
    for (const std::int64_t point : solid.pointSource) {
        const double label = array.values[static_cast<std::size_t>(point)];
        if (!(label >= 1.0 && label <= largest) || label != std::floor(label)) {
            return {};
        }
        labels.push_back(static_cast<int>(label));
    }
    const std::set<int> distinct(labels.begin(), labels.end());
    return distinct.size() == labels.size() ? labels : std::vector<int>();
}

void AddLabels(const interop::ForeignSnapshot& snapshot, ImportedCase& imported) {
    for (const char* name : kLabelNames) {
        const interop::ForeignArray* array = FindArray(snapshot, name);
        if (array != nullptr && !array->onCells && array->components == 1) {
            imported.solid.mesh.labels = UsableLabels(*array, imported.solid);
            if (imported.solid.mesh.labels.empty()) {
                imported.warnings.push_back(std::string("the node labels in \"") + name +
                                            "\" are not used: they are not unique whole numbers from 1");
            }
            return;
        }
    }
}

double RegionValue(const interop::ForeignArray& array, const interop::SolidMesh& solid, std::size_t cell) {
    return array.values[static_cast<std::size_t>(solid.cellSource[cell])];
}

void CheckNumbers(const std::string& name, const std::vector<int>& wanted, const std::set<double>& present,
                  const std::string& option) {
    for (const int number : wanted) {
        if (present.count(number) == 0) {
            std::string fault = "region " + std::to_string(number);
            fault.append(" of ")
                .append(option)
                .append(" is not in array \"")
                .append(name)
                .append("\"; there are ");
            std::size_t listed = 0;
            for (auto it = present.begin(); it != present.end() && listed < 20; ++it, ++listed) {
                fault += listed == 0 ? "" : ", ";
                fault += text::NumberText(*it);
            }
            throw interop::ForeignProblem(fault);
        }
    }
}

bool Holds(const std::vector<int>& numbers, double value) {
    return std::any_of(numbers.begin(), numbers.end(),
                       [&](int number) { return static_cast<double>(number) == value; });
}

void MapRegions(const ImportRequest& request, const interop::ForeignArray& array, ImportedCase& imported) {
    std::set<double> present;
    for (std::size_t cell = 0; cell < imported.solid.cellSource.size(); ++cell) {
        const double value = RegionValue(array, imported.solid, cell);
        present.insert(value);
        imported.solid.mesh.regions.push_back(static_cast<std::int8_t>(
            Holds(request.runner, value) ? 1 : (Holds(request.special, value) ? 2 : 0)));
    }
    CheckNumbers(array.name, request.runner, present, "--runner");
    CheckNumbers(array.name, request.special, present, "--special");
}

/// The regions as we write them ourselves, when the array holds nothing else.
void TakeOwnRegions(const interop::ForeignArray& array, ImportedCase& imported) {
    std::vector<std::int8_t> regions;
    for (std::size_t cell = 0; cell < imported.solid.cellSource.size(); ++cell) {
        const double value = RegionValue(array, imported.solid, cell);
        if (value != 0.0 && value != 1.0 && value != 2.0) {
            return;
        }
        regions.push_back(static_cast<std::int8_t>(value));
    }
    imported.solid.mesh.regions = std::move(regions);
    imported.regionArray = array.name;
}

void AddRegions(const ImportRequest& request, const interop::ForeignSnapshot& snapshot,
                ImportedCase& imported) {
    if (request.regionArray.empty()) {
        if (const interop::ForeignArray* own = FindCellArray(snapshot, kOwnRegionName)) {
            TakeOwnRegions(*own, imported);
        }
    } else {
        const interop::ForeignArray* array = FindCellArray(snapshot, request.regionArray);
        if (array == nullptr) {
            throw interop::ForeignProblem(snapshot.file + " holds no cell array \"" + request.regionArray +
                                          "\" of 1 component; " + ListArrays(snapshot, request.regionArray));
        }
        MapRegions(request, *array, imported);
        imported.regionArray = array->name;
    }
    const auto& regions = imported.solid.mesh.regions;
    if (!regions.empty() && std::count(regions.begin(), regions.end(), 0) == 0) {
        throw interop::ForeignProblem(
            snapshot.file + ": no cell is left for the part; name fewer regions in --runner and --special");
    }
}

void WarnOfUnit(const ImportRequest& request, ImportedCase& imported) {
    constexpr double kSmallestPart = 3.0;
    constexpr double kLargestPart = 2e4;
    double largest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto [low, high] = std::minmax_element(
            imported.solid.mesh.points.begin(), imported.solid.mesh.points.end(),
            [axis](const kernel::Point& a, const kernel::Point& b) { return a[axis] < b[axis]; });
        largest = std::max(largest, (*high)[axis] - (*low)[axis]);
    }
    if (largest < kSmallestPart) {
        imported.warnings.push_back("the mesh is only " + text::NumberText(largest) +
                                    " mm long: does it look like metres? Then add --length-unit m");
    }
    if (largest > kLargestPart) {
        imported.warnings.push_back("the mesh is " + text::NumberText(largest) + " mm long: is it in " +
                                    request.lengthUnit + "?");
    }
}

}  // namespace

void AddMeshData(const ImportRequest& request, const interop::ForeignSnapshot& snapshot,
                 ImportedCase& imported) {
    AddLabels(snapshot, imported);
    AddRegions(request, snapshot, imported);
    if (request.wall > 0.0) {
        imported.solid.mesh.geomTolerance = request.wall / 2.0;
    }
    WarnOfUnit(request, imported);
}

}  // namespace qnl::imports
