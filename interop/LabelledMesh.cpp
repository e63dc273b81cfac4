#include "interop/LabelledMesh.h"

#include <algorithm>
#include <utility>

namespace qnl::interop {

namespace {

std::int64_t Find(const std::unordered_map<std::int64_t, std::int64_t>& places, std::int64_t label) {
    const auto found = places.find(label);
    return found == places.end() ? -1 : found->second;
}

}  // namespace

bool LabelledMesh::AddNode(std::int64_t label, const std::array<double, 3>& place) {
    if (!nodeOf_.emplace(label, static_cast<std::int64_t>(Nodes())).second) {
        return false;
    }
    mesh_.points.push_back(place);
    labels_.push_back(static_cast<double>(label));
    return true;
}

bool LabelledMesh::AddElement(std::int64_t label, int vtkType, const std::vector<std::int64_t>& nodes) {
    if (!elementOf_.emplace(label, static_cast<std::int64_t>(Elements())).second) {
        return false;
    }
    mesh_.cellTypes.push_back(vtkType);
    mesh_.offsets.push_back(static_cast<std::int64_t>(mesh_.nodes.size()));
    mesh_.nodes.insert(mesh_.nodes.end(), nodes.begin(), nodes.end());
    elementLabels_.push_back(label);
    return true;
}

std::int64_t LabelledMesh::FindNode(std::int64_t label) const {
    return Find(nodeOf_, label);
}

std::int64_t LabelledMesh::FindElement(std::int64_t label) const {
    return Find(elementOf_, label);
}

void LabelledMesh::RaiseUnknownNode(const std::string& file, std::size_t place) const {
    const auto next =
        std::upper_bound(mesh_.offsets.begin(), mesh_.offsets.end(), static_cast<std::int64_t>(place));
    const auto element = static_cast<std::size_t>(next - mesh_.offsets.begin()) - 1;
    throw ForeignProblem(file + ": element " + std::to_string(elementLabels_[element]) + " names node " +
                         std::to_string(mesh_.nodes[place]) +
                         ", which the file does not have; export the mesh with all of its nodes");
}

ForeignSnapshot LabelledMesh::Take(const std::string& file) {
    for (std::size_t place = 0; place < mesh_.nodes.size(); ++place) {
        const std::int64_t node = FindNode(mesh_.nodes[place]);
        if (node < 0) {
            RaiseUnknownNode(file, place);
        }
        mesh_.nodes[place] = node;
    }
    mesh_.offsets.push_back(static_cast<std::int64_t>(mesh_.nodes.size()));
    ForeignSnapshot snapshot;
    snapshot.file = file;
    snapshot.mesh = std::move(mesh_);
    snapshot.arrays.push_back({kLabelArrays.front(), 1, false, std::move(labels_)});
    *this = {};
    return snapshot;
}

}  // namespace qnl::interop
