// Result files: any content must be opened or refused with a status, and every listed item read or refused.

#include <vector>

#include "Hdf5Mutator.h"
#include "InputFile.h"
#include "platform/CQNL3DResultReader_Manipulator.h"
#include "platform/Faults.h"

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t count, std::size_t most,
                                               unsigned seed) {
    constexpr hdf5_mutator::Place kPlaces[] = {{"/", "format_version"},
                                               {"/", "result_version"},
                                               {"/", "max_node"},
                                               {"/", "max_element"},
                                               {"/", "format"},
                                               {"/time", "index"},
                                               {"/time", "value"},
                                               {"/time", "unit"},
                                               {"/head", "flag"},
                                               {"/head", "item_count"},
                                               {"/head", "mesh"},
                                               {"/node_ids"},
                                               {"/items/1"},
                                               {"/items/1", "data_type"},
                                               {"/items/1", "max"},
                                               {"/items/6"},
                                               {"/items/6", "data_type"},
                                               {"/items/16"},
                                               {"/items/16", "name"}};
    return hdf5_mutator::Mutate(bytes, count, most, seed, kPlaces);
}

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
    qnl::TakeFaults();
    return 0;
}
