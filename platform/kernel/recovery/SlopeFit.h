#pragma once

#include <array>

#include "kernel/mesh/MeshData.h"

namespace qnl::kernel {

/// The slope of a field at a place by least squares from its differences to places around, each weighted by
/// 1/distance^2.
class SlopeFit {
public:
    /// A place at `offset`, mm, where the field is greater by `difference`. One without distance, or with a
    /// difference that is not finite, is passed over.
    void Add(const Point& offset, double difference);

    /// By mm; 0 along directions in which no place lies.
    Point Slope() const;

private:
    std::array<double, 9> matrix_{};
    Point right_{};
};

}  // namespace qnl::kernel
