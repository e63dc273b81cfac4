#include "kernel/recovery/SlopeFit.h"

#include <cmath>

#include "base/Vector3.h"
#include "kernel/recovery/DenseAlgebra.h"

namespace qnl::kernel {

void SlopeFit::Add(const Point& offset, double difference) {
    const double square = Dot(offset, offset);
    if (!(square > 0.0) || !std::isfinite(difference)) {
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            matrix_[3 * i + j] += offset[i] * offset[j] / square;
        }
        right_[i] += offset[i] * difference / square;
    }
}

Point SlopeFit::Slope() const {
    constexpr double kOpen = 1e-6;  // eigenvalues, as part of their sum, of directions without places
    const Eigen::Map<const Eigen::Matrix3d> matrix(matrix_.data());
    const Eigen::Map<const Eigen::Vector3d> right(right_.data());
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(matrix);
    Eigen::Vector3d slope = Eigen::Vector3d::Zero();
    for (int k = 0; k < 3; ++k) {
        if (solver.eigenvalues()[k] > kOpen * matrix.trace()) {
            const Eigen::Vector3d axis = solver.eigenvectors().col(k);
            slope += axis * (axis.dot(right) / solver.eigenvalues()[k]);
        }
    }
    return {slope[0], slope[1], slope[2]};
}

}  // namespace qnl::kernel
