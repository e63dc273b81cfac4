// Result files: any bytes must be opened or refused with a status, and every listed item read or refused.

#include <vector>

#include "input_file.h"
#include "platform/CQNL3DResultReader_Manipulator.h"
#include "platform/Faults.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const InputFile file(".k4f");
    CQNL3DResultReader_Manipulator reader;
    if (reader.BeginReading(file.Write(bytes, count).c_str(), nullptr) >= 0) {
        const int nodes = reader.GetMaxCavityNode();
        std::vector<float> values(static_cast<std::size_t>(nodes) + 1, 0.0F);
        for (int item = 0; item < 20; ++item) {
            reader.GetResultItem(item, values.data());
        }
    }
    reader.EndReading();
    TakeFaults();
    return 0;
}
