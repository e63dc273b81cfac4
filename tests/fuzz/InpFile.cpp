// Meshes in the layout of Abaqus: any bytes must give snapshots that stay within themselves, or one refusal.

#include "ForeignInput.h"
#include "InputFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".inp");
    foreign_input::UseFile(file.Write(bytes, count));
    return 0;
}
