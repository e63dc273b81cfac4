// Material files: any bytes must give a handle or none.

#include <iostream>

#include "InputFile.h"
#include "platform/Faults.h"
#include "platform/QnlMaterial.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".toml");
    std::cout.setstate(std::ios::badbit);
    if (QnlMaterial* material = QnlGetMaterial(file.Write(bytes, count).c_str())) {
        QnlGetDensity(material, 1e7, QnlGetFreezeTemp(material) - 30.0, 0.0);
        QnlReleaseMaterial(material);
    }
    qnl::TakeFaults();
    return 0;
}
