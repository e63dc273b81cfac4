#include "profile/kernels/FlakeKernels.h"

#include <cstddef>

namespace qnl::profile {

namespace {

using Tensor = std::array<double, 6>;

/// Depth below the first element of the last cell that lies less than t below it, 0 when there is none.
double LayerDepth(OneBased<const double> depths, OneBasedIds<PassElement> elements,
                  mesh::PassElementNumbering numbering, double t) {
    double depth = 0.0;
    for (int j = 1; j <= depths.Count() && depths[j] - depths[1] < t; ++j) {
        if (!numbering.IsFace(elements[j])) {
            depth = depths[j] - depths[1];
        }
    }
    return depth;
}

double AlongDirection(const Tensor& a, const Vector3& d) {
    const double normal = a[0] * (d.x * d.x) + a[1] * (d.y * d.y) + a[2] * (d.z * d.z);
    const double shear = a[3] * d.x * d.y + a[4] * d.x * d.z + a[5] * d.y * d.z;
    return normal + 2.0 * shear;
}

}  // namespace

}  // namespace qnl::profile

double CalcuFlakeIntensity(qnl::OneBased<const double> depths, qnl::OneBasedIds<qnl::PassElement> elements,
                           qnl::mesh::PassElementNumbering numbering, const qnl::profile::TensorField& tensor,
                           const qnl::Vector3& d, double t) {
    constexpr double kNoLengthGuard = 1e-20;
    const double layerEnd = qnl::profile::LayerDepth(depths, elements, numbering, t) / 2.0;
    qnl::profile::Tensor sum{};
    double length = 0.0;
    double previous = depths[1];
    for (int j = 1; j <= depths.Count(); ++j) {
        if (numbering.IsFace(elements[j])) {
            continue;
        }
        const double step = depths[j] - previous;
        const qnl::CellId cell = numbering.Cell(elements[j]);
        length += step;
        for (std::size_t k = 0; k < sum.size(); ++k) {
            sum[k] += step * tensor[k][cell];
        }
        previous = depths[j];
        if (depths[j] - depths[1] >= layerEnd) {
            break;
        }
    }
    length += kNoLengthGuard;
    for (double& component : sum) {
        component /= length;
    }
    return qnl::profile::AlongDirection(sum, d);
}
