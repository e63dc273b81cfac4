// Mesh files: any content must give a mesh or one fault.

#include "kernel/mesh_file.h"

#include "hdf5_mutator.h"
#include "input_file.h"
#include "platform/Faults.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t count, std::size_t most,
                                               unsigned seed) {
    constexpr hdf5_mutator::Place kPlaces[] = {
        {"/VTKHDF/Points"},           {"/VTKHDF/Connectivity"},
        {"/VTKHDF/Offsets"},          {"/VTKHDF/Types"},
        {"/VTKHDF/PointData/NodeId"}, {"/VTKHDF/CellData/Region"},
        {"/VTKHDF/NumberOfPoints"},   {"/VTKHDF/FieldData/GeomTolerance"},
        {"/VTKHDF/NumberOfCells"},    {"/VTKHDF/NumberOfConnectivityIds"},
        {"/VTKHDF", "Type"},          {"/VTKHDF", "Version"}};
    return hdf5_mutator::Mutate(bytes, count, most, seed, kPlaces);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".hdf");
    try {
        qnl::ReadMeshFile(file.Write(bytes, count));
    } catch (const qnl::MeshFault&) {
    }
    TakeFaults();
    return 0;
}
