// Mesh files: any content must give a mesh, whose normals, smoothing and rays stay within it, or one fault.

#include <iostream>
#include <vector>

#include "Hdf5Mutator.h"
#include "InputFile.h"
#include "platform/CQNLOptKer.h"
#include "platform/Faults.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t count, std::size_t most,
                                               unsigned seed) {
    constexpr hdf5_mutator::Place kPlaces[] = {{"/VTKHDF/Points"},
                                               {"/VTKHDF/Connectivity"},
                                               {"/VTKHDF/Offsets"},
                                               {"/VTKHDF/Types"},
                                               {"/VTKHDF/PointData/NodeId"},
                                               {"/VTKHDF/CellData/Region"},
                                               {"/VTKHDF/FieldData/GeomTolerance"},
                                               {"/VTKHDF/NumberOfPoints"},
                                               {"/VTKHDF/NumberOfCells"},
                                               {"/VTKHDF/NumberOfConnectivityIds"},
                                               {"/VTKHDF", "Type"},
                                               {"/VTKHDF", "Version"}};
    return hdf5_mutator::Mutate(bytes, count, most, seed, kPlaces);
}

namespace {

/// A ray from every node against its normal.
void UseMesh(CQNLOptKer& kernel) {
    const std::size_t entries = static_cast<std::size_t>(kernel.m_nNodes) + 1;
    std::vector<double> x(entries);
    std::vector<double> y(entries);
    std::vector<double> z(entries);
    kernel.ComputeNodeSurfaceNormal(x.data(), y.data(), z.data());
    kernel.InitialzeSearch(1);
    for (std::size_t i = 1; i < entries; ++i) {
        const NodeRecord& node = kernel.p_Node[i];
        int count = 0;
        kernel.FindPassElemByAnyRay(count, node.x, node.y, node.z, -x[i], -y[i], -z[i], 0);
    }
    kernel.SmoothSurfaceNodeValue(x.data(), 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".hdf");
    std::cout.setstate(std::ios::badbit);
    std::string path = file.Write(bytes, count);
    CQNLOptKer kernel;
    if (kernel.ReadMeshData(path.data(), 0) == 1) {
        UseMesh(kernel);
    }
    qnl::TakeFaults();
    return 0;
}
