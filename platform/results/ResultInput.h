#pragma once

#include <string_view>
#include <vector>

#include "hdf5/Hdf5.h"
#include "results/ResultFile.h"

namespace qnl::results {

/// A result file open for reading: its description is read and checked at once, values on demand.
class ResultInput {
public:
    /// Raises ResultFileError.
    explicit ResultInput(std::string_view path);

    /// The description: everything but values and node labels.
    const ResultFileContent& Description() const { return description_; }

    /// Node or element entries, by data type.
    int Entries(int dataType) const;

    /// The values of an item. False when it is absent; false, with a fault recorded, when it has another
    /// length than its type asks for or cannot be read. Values that are not finite are recorded as a fault
    /// and given as they stand.
    bool ReadItem(int id, std::vector<float>& values) const;

    /// The label of each row. False when there is none; false, with a fault recorded, when they cannot be
    /// read.
    bool ReadNodeIds(std::vector<int>& ids) const;

private:
    void CheckFormat() const;
    void ReadHead();
    void ReadOptionalGroups();
    void ReadItemDescriptions();
    void ReadCounts();
    int ReadCount(const char* name, std::uint64_t longest) const;
    std::string ReadText(const std::string& object, const char* name, std::size_t bufferBytes) const;
    [[noreturn]] void Reject(const std::string& object, const std::string& expected,
                             const std::string& found) const;

    hdf5::InputFile file_;
    ResultFileContent description_;
    std::vector<hdf5::DatasetInfo> shapes_;  ///< of the items
};

}  // namespace qnl::results
