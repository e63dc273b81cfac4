// Mesh files: any bytes must give a mesh or one fault.

#include "kernel/mesh_file.h"

#include "input_file.h"
#include "platform/Faults.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".hdf");
    try {
        qnl::ReadMeshFile(file.Write(bytes, count));
    } catch (const qnl::MeshFault&) {
    }
    TakeFaults();
    return 0;
}
