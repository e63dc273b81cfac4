#pragma once

#include <string_view>

#include "hdf5/Hdf5.h"
#include "results/ResultFile.h"

namespace qnl::results {

/// A result file being written. It appears under its name at Close and not before. The operations
/// before raise hdf5::Hdf5Error.
class ResultOutput {
public:
    /// Writes the description: everything but the items and the node labels.
    ResultOutput(std::string_view path, const ResultFileContent& description);

    /// The label of each of the description's maxNode rows.
    void WriteNodeIds(const int* ids);
    /// `values` holds as many entries as the item's type asks for; those of the item itself are not used.
    void WriteItem(const ResultItem& item, const float* values);
    /// Puts the file in place. False, with a fault recorded, when it cannot be.
    bool Close();

private:
    hdf5::OutputFile file_;
    int maxNode_;
    int maxElement_;
};

}  // namespace qnl::results
