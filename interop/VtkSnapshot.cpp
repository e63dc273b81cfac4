#include "interop/VtkSnapshot.h"

#include <vtkAppendFilter.h>
#include <vtkCellData.h>
#include <vtkCellTypes.h>
#include <vtkCompositeDataIterator.h>
#include <vtkCompositeDataSet.h>
#include <vtkDataSet.h>
#include <vtkDoubleArray.h>
#include <vtkFieldData.h>
#include <vtkGenericCell.h>
#include <vtkIdList.h>
#include <vtkInformation.h>
#include <vtkIntArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkPointData.h>
#include <vtkSmartPointer.h>
#include <vtkUnstructuredGrid.h>

#include <algorithm>
#include <numeric>

namespace qnl::interop {

namespace {

/// A block of a data set, by the name that it has in its file, and the name of the region that it is of;
/// empty for none.
struct Leaf {
    vtkSmartPointer<vtkDataSet> data;
    std::string name;
    std::string region;
};
using Leaves = std::vector<Leaf>;

void CollectLeaves(vtkDataObject* data, const std::string& name, const std::string& region, Leaves& leaves);

/// The block of volumes of an OpenFOAM region has the same name everywhere, and goes by the region's.
constexpr const char* kVolumes = "internalMesh";

std::string NameOfBlock(vtkMultiBlockDataSet& blocks, unsigned int block) {
    const char* name = blocks.HasMetaData(block) != 0
                           ? blocks.GetMetaData(block)->Get(vtkCompositeDataSet::NAME())
                           : nullptr;
    return name != nullptr ? name : "";
}

void CollectBlocks(vtkMultiBlockDataSet& blocks, const std::string& name, const std::string& region,
                   Leaves& leaves) {
    std::vector<std::string> names;
    for (unsigned int block = 0; block < blocks.GetNumberOfBlocks(); ++block) {
        names.push_back(NameOfBlock(blocks, block));
    }
    const bool isRegion = std::find(names.begin(), names.end(), kVolumes) != names.end();
    for (unsigned int block = 0; block < blocks.GetNumberOfBlocks(); ++block) {
        CollectLeaves(blocks.GetBlock(block), names[block] == kVolumes ? name : names[block],
                      isRegion ? name : region, leaves);
    }
}

void CollectLeaves(vtkDataObject* data, const std::string& name, const std::string& region, Leaves& leaves) {
    if (auto* set = vtkDataSet::SafeDownCast(data)) {
        leaves.push_back({set, name, region});
        return;
    }
    if (auto* blocks = vtkMultiBlockDataSet::SafeDownCast(data)) {
        CollectBlocks(*blocks, name, region, leaves);
        return;
    }
    auto* composite = vtkCompositeDataSet::SafeDownCast(data);
    if (composite == nullptr) {
        return;
    }
    const auto blocks = vtkSmartPointer<vtkCompositeDataIterator>::Take(composite->NewIterator());
    for (blocks->InitTraversal(); !blocks->IsDoneWithTraversal(); blocks->GoToNextItem()) {
        CollectLeaves(blocks->GetCurrentDataObject(), name, region, leaves);
    }
}

bool HasVolumeCells(vtkDataSet& leaf) {
    vtkNew<vtkCellTypes> types;
    leaf.GetCellTypes(types);
    vtkNew<vtkGenericCell> cell;
    for (vtkIdType i = 0; i < types->GetNumberOfTypes(); ++i) {
        cell->SetCellType(types->GetCellType(i));
        if (cell->GetCellDimension() == 3) {
            return true;
        }
    }
    return false;
}

/// Takes what has no volumes out of the leaves; nothing when there is no volume at all.
Leaves TakePatches(Leaves& leaves) {
    const auto patches = std::stable_partition(leaves.begin(), leaves.end(),
                                               [](const Leaf& leaf) { return HasVolumeCells(*leaf.data); });
    if (patches == leaves.begin()) {
        return {};
    }
    Leaves taken(patches, leaves.end());
    leaves.erase(patches, leaves.end());
    return taken;
}

void NumberBlocks(Leaves& leaves) {
    int block = 0;
    for (Leaf& leaf : leaves) {
        auto copy = vtkSmartPointer<vtkDataSet>::Take(leaf.data->NewInstance());
        copy->ShallowCopy(leaf.data);
        vtkNew<vtkIntArray> ids;
        ids->SetName(kBlockArray);
        ids->SetNumberOfValues(copy->GetNumberOfCells());
        ids->FillValue(block++);
        copy->GetCellData()->AddArray(ids);
        leaf.data = copy;
    }
}

/// None unless every block has one. Some readers make names up ("Unnamed block ID: 1 ..."): these are none.
std::vector<std::string> NamesOf(const Leaves& leaves) {
    std::vector<std::string> names;
    for (const Leaf& leaf : leaves) {
        if (leaf.name.empty() || leaf.name.rfind("Unnamed", 0) == 0) {
            return {};
        }
        names.push_back(leaf.name);
    }
    return leaves.size() > 1 ? names : std::vector<std::string>{};
}

/// Blocks with names keep points of their own until it is known which of them stay.
vtkSmartPointer<vtkUnstructuredGrid> Join(Leaves leaves, bool areNamed) {
    if (leaves.size() == 1) {
        if (auto* grid = vtkUnstructuredGrid::SafeDownCast(leaves.front().data)) {
            return grid;
        }
    } else {
        NumberBlocks(leaves);
    }
    vtkNew<vtkAppendFilter> append;
    append->SetMergePoints(leaves.size() > 1 && !areNamed);
    for (const Leaf& leaf : leaves) {
        append->AddInputData(leaf.data);
    }
    append->Update();
    return append->GetOutput();
}

void TakeMesh(vtkUnstructuredGrid& grid, ForeignMesh& mesh) {
    mesh.singlePrecision = grid.GetPoints()->GetDataType() == VTK_FLOAT;
    mesh.points.resize(static_cast<std::size_t>(grid.GetNumberOfPoints()));
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        grid.GetPoint(static_cast<vtkIdType>(i), mesh.points[i].data());
    }
    mesh.offsets.push_back(0);
    for (vtkIdType cell = 0; cell < grid.GetNumberOfCells(); ++cell) {
        vtkIdType count = 0;
        const vtkIdType* nodes = nullptr;
        grid.GetCellPoints(cell, count, nodes);
        mesh.cellTypes.push_back(grid.GetCellType(cell));
        mesh.nodes.insert(mesh.nodes.end(), nodes, nodes + count);
        mesh.offsets.push_back(static_cast<std::int64_t>(mesh.nodes.size()));
    }
}

void TakeArrays(vtkFieldData& fields, bool onCells, std::vector<ForeignArray>& arrays) {
    for (int i = 0; i < fields.GetNumberOfArrays(); ++i) {
        vtkDataArray* array = fields.GetArray(i);
        if (array == nullptr || array->GetName() == nullptr) {
            continue;
        }
        vtkNew<vtkDoubleArray> copy;
        copy->DeepCopy(array);
        const double* values = copy->GetPointer(0);
        arrays.push_back({array->GetName(), array->GetNumberOfComponents(), onCells,
                          std::vector<double>(values, values + copy->GetNumberOfValues())});
    }
}

/// Points of a mesh by their place.
class PointFinder {
public:
    explicit PointFinder(const std::vector<std::array<double, 3>>& points) : points_(points) {
        order_.resize(points.size());
        std::iota(order_.begin(), order_.end(), std::int64_t{0});
        std::sort(order_.begin(), order_.end(), [&](std::int64_t a, std::int64_t b) {
            return points_[static_cast<std::size_t>(a)] < points_[static_cast<std::size_t>(b)];
        });
    }

    /// The point at exactly this place; -1 when there is none.
    std::int64_t Find(const std::array<double, 3>& place) const {
        const auto found = std::lower_bound(order_.begin(), order_.end(), place,
                                            [&](std::int64_t a, const std::array<double, 3>& wanted) {
                                                return points_[static_cast<std::size_t>(a)] < wanted;
                                            });
        const bool there = found != order_.end() && points_[static_cast<std::size_t>(*found)] == place;
        return there ? *found : -1;
    }

private:
    const std::vector<std::array<double, 3>>& points_;
    std::vector<std::int64_t> order_;
};

/// Faces with a point that the mesh does not have keep the number -1 for it.
ForeignFaces TakeFaces(vtkDataSet& patch, const PointFinder& finder) {
    ForeignFaces faces;
    faces.offsets.push_back(0);
    vtkNew<vtkIdList> corners;
    for (vtkIdType face = 0; face < patch.GetNumberOfCells(); ++face) {
        patch.GetCellPoints(face, corners);
        for (vtkIdType c = 0; c < corners->GetNumberOfIds(); ++c) {
            std::array<double, 3> place{};
            patch.GetPoint(corners->GetId(c), place.data());
            faces.points.push_back(finder.Find(place));
        }
        faces.offsets.push_back(static_cast<std::int64_t>(faces.points.size()));
    }
    TakeArrays(*patch.GetCellData(), true, faces.arrays);
    return faces;
}

std::vector<ForeignFaces> TakeBoundary(const Leaves& patches, const ForeignMesh& mesh) {
    std::vector<ForeignFaces> boundary;
    if (!patches.empty()) {
        const PointFinder finder(mesh.points);
        for (const Leaf& patch : patches) {
            boundary.push_back(TakeFaces(*patch.data, finder));
            boundary.back().block = patch.region;
        }
    }
    return boundary;
}

std::optional<double> OwnTime(vtkDataObject& data) {
    if (data.GetInformation()->Has(vtkDataObject::DATA_TIME_STEP())) {
        return data.GetInformation()->Get(vtkDataObject::DATA_TIME_STEP());
    }
    vtkDataArray* time = data.GetFieldData()->GetArray("TimeValue");
    return time != nullptr && time->GetNumberOfValues() == 1 ? std::optional<double>(time->GetComponent(0, 0))
                                                             : std::nullopt;
}

}  // namespace

ForeignSnapshot TakeSnapshot(const std::vector<vtkDataObject*>& parts, const std::string& file) {
    Leaves leaves;
    for (vtkDataObject* part : parts) {
        CollectLeaves(part, "", "", leaves);
    }
    const Leaves patches = TakePatches(leaves);
    ForeignSnapshot snapshot;
    snapshot.file = file;
    if (leaves.empty()) {
        throw ForeignProblem(file + " holds no mesh; give one with volume cells and results");
    }
    snapshot.blocks = NamesOf(leaves);
    const vtkSmartPointer<vtkUnstructuredGrid> grid = Join(leaves, !snapshot.blocks.empty());
    if (grid->GetNumberOfCells() == 0 || grid->GetPoints() == nullptr) {
        throw ForeignProblem(file + " holds no cells; give a mesh with volume cells and results");
    }
    grid->RemoveGhostCells();
    TakeMesh(*grid, snapshot.mesh);
    snapshot.boundary = TakeBoundary(patches, snapshot.mesh);
    TakeArrays(*grid->GetPointData(), false, snapshot.arrays);
    TakeArrays(*grid->GetCellData(), true, snapshot.arrays);
    for (vtkDataObject* part : parts) {
        snapshot.seconds = snapshot.seconds ? snapshot.seconds : OwnTime(*part);
    }
    return snapshot;
}

}  // namespace qnl::interop
