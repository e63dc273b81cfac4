#pragma once

#include <string>

#include "base/Id.h"

namespace qnl::input {

/// Counts the ids of a file that name nothing in the mesh, for one fault at the end.
class UnknownIds {
public:
    void Add(long long id, long long number = 1) {
        if (count_ == 0) {
            first_ = id;
        }
        count_ += number;
    }

    /// Records a fault when ids were counted. `object` says what they name, `largest` is the largest valid
    /// one.
    void Report(const std::string& path, const std::string& object, int largest) const;

private:
    long long count_ = 0;
    long long first_ = 0;
};

/// Records a fault when a dense file has entries for labels that the mesh does not reach.
void ReportEntriesBeyond(const std::string& path, int entries, NodeLabel maxLabel);

/// Records a fault when a result has more cells than the mesh.
void ReportCellsBeyond(const std::string& path, int entries, int cells);

}  // namespace qnl::input
