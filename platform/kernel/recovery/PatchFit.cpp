#include "kernel/recovery/PatchFit.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/Vector3.h"
#include "kernel/recovery/PatchMoments.h"

namespace qnl::kernel {
namespace {

// Pivots of the scaled normal equations below this are rounding.
constexpr double kLeastPivot = 1e-14;
// Bound of the trace of the inverse of the scaled curvature block.
constexpr double kMostTrace = 1e3;
// Eigenvalues below which a slope or a curvature is open.
constexpr double kOpenSlope = 1e-10;
constexpr double kOpenCurvature = 1e-3;
// Weight of the cubic terms' ridge, and the norm of a cubic form by its coefficients, which turning leaves
// alone.
constexpr double kRidge = 1e-4;
constexpr std::array<double, 10> kCubicForm{1.0,       1.0,       1.0,       1.0 / 3.0, 1.0 / 3.0,
                                            1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0, 1.0 / 6.0};
// Powers of x, y and z in the terms.
constexpr std::array<Powers, 19> kTermPowers{{{1, 0, 0},
                                              {0, 1, 0},
                                              {0, 0, 1},
                                              {2, 0, 0},
                                              {0, 2, 0},
                                              {0, 0, 2},
                                              {1, 1, 0},
                                              {1, 0, 1},
                                              {0, 1, 1},
                                              {3, 0, 0},
                                              {0, 3, 0},
                                              {0, 0, 3},
                                              {2, 1, 0},
                                              {2, 0, 1},
                                              {1, 2, 0},
                                              {0, 2, 1},
                                              {1, 0, 2},
                                              {0, 1, 2},
                                              {1, 1, 1}}};
// Second moments, as part of their sum, below which a patch is flat to rounding.
constexpr double kFlat = 1e-8;

template <int N>
using Square = Eigen::Matrix<double, N, N>;

// Inverse on the directions whose eigenvalue exceeds `open`, 0 on the others; their number is added to `cut`.
template <int N>
Square<N> PseudoInverse(const Square<N>& matrix, double open, int& cut) {
    const Eigen::SelfAdjointEigenSolver<Square<N>> solver(matrix);
    Square<N> inverse = Square<N>::Zero();
    for (int k = 0; k < N; ++k) {
        const double value = solver.eigenvalues()[k];
        if (!(value > open)) {
            ++cut;
            continue;
        }
        for (int i = 0; i < N; ++i) {
            for (int j = 0; j < N; ++j) {
                inverse(i, j) += solver.eigenvectors()(i, k) * solver.eigenvectors()(j, k) / value;
            }
        }
    }
    return inverse;
}

// 1/L for the second moments L L^T of the patch, by its diagonal and what lies below.
bool InverseRoot(const Square<3>& moments, Square<3>& inverse) {
    const double least = kFlat * moments.trace();
    Square<3> root = Square<3>::Zero();
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j <= i; ++j) {
            double rest = moments(i, j);
            for (int k = 0; k < j; ++k) {
                rest -= root(i, k) * root(j, k);
            }
            if (i == j && !(rest > least)) {
                return false;
            }
            root(i, j) = i == j ? std::sqrt(rest) : rest / root(j, j);
        }
    }
    inverse = Square<3>::Zero();
    for (int i = 0; i < 3; ++i) {
        inverse(i, i) = 1.0 / root(i, i);
        for (int j = 0; j < i; ++j) {
            double sum = 0.0;
            for (int k = j; k < i; ++k) {
                sum += root(i, k) * inverse(k, j);
            }
            inverse(i, j) = -sum / root(i, i);
        }
    }
    return true;
}

}  // namespace

bool PatchFit::Factor(const std::vector<Point>& offsets) {
    reduced_ = false;
    Assemble(offsets);
    factor_.compute(normal_);
    if (factor_.info() != Eigen::Success ||
        !(factor_.matrixLLT().diagonal().minCoeff() > std::sqrt(kLeastPivot))) {
        return false;
    }
    // In the factor the block of the curvatures is that which is left of them once the slopes are eliminated.
    const Matrix<kCurvatures, kCurvatures> curvatures =
        factor_.matrixLLT().block<kCurvatures, kCurvatures>(kLinear, kLinear);
    const Matrix<kCurvatures, kCurvatures> inverse =
        curvatures.triangularView<Eigen::Lower>().solve(Matrix<kCurvatures, kCurvatures>::Identity());
    return inverse.squaredNorm() <= kMostTrace;
}

// Frame in which the patch has unit second moments; plain scaling when the patch is flat to rounding.
void PatchFit::TakeFrame(const std::vector<Point>& offsets, double scale) {
    Square<3> moments = Square<3>::Zero();
    for (const Point& offset : offsets) {
        const Eigen::Vector3d d(scale * offset[0], scale * offset[1], scale * offset[2]);
        moments += d * d.transpose();
    }
    moments /= static_cast<double>(offsets.size());
    if (InverseRoot(moments, frame_)) {
        frame_ *= scale;
    } else {
        frame_ = scale * Square<3>::Identity();
    }
}

void PatchFit::Assemble(const std::vector<Point>& offsets) {
    double farthest = 0.0;
    for (const Point& offset : offsets) {
        farthest = std::max(farthest, Dot(offset, offset));
    }
    TakeFrame(offsets, 1.0 / std::sqrt(farthest));
    terms_.resize(offsets.size());
    weights_.resize(offsets.size());
    PatchMoments moments;
    double sixthMoment = 0.0;
    for (std::size_t k = 0; k < offsets.size(); ++k) {
        const Point& o = offsets[k];
        const double x = frame_(0, 0) * o[0];
        const double y = frame_(1, 0) * o[0] + frame_(1, 1) * o[1];
        const double z = (frame_(2, 0) * o[0] + frame_(2, 1) * o[1]) + frame_(2, 2) * o[2];
        terms_[k] << x, y, z, x * x, y * y, z * z, x * y, x * z, y * z, x * x * x, y * y * y, z * z * z,
            x * x * y, x * x * z, y * y * x, y * y * z, z * z * x, z * z * y, x * y * z;
        const double square = (x * x + y * y) + z * z;
        weights_[k] = 1.0 / (square * square);
        sixthMoment += square;
        moments.Add({x, y, z}, weights_[k]);
    }
    moments.Finish();
    for (std::size_t j = 0; j < kTerms; ++j) {
        for (std::size_t i = j; i < kTerms; ++i) {
            normal_(static_cast<int>(i), static_cast<int>(j)) = moments.Of(kTermPowers[i], kTermPowers[j]);
        }
    }
    for (int i = kQuadratic; i < kTerms; ++i) {
        normal_(i, i) += kRidge * sixthMoment / 7.0 * kCubicForm[static_cast<std::size_t>(i - kQuadratic)];
    }
    for (int i = 0; i < kTerms; ++i) {
        scale_[i] = normal_(i, i) > 0.0 ? 1.0 / std::sqrt(normal_(i, i)) : 0.0;
    }
    for (int j = 0; j < kTerms; ++j) {
        for (int i = j; i < kTerms; ++i) {
            normal_(i, j) *= scale_[i] * scale_[j];
        }
    }
}

// Slopes first, then what is left of the curvatures, both by their determined eigenvectors only.
PatchFit::Determined PatchFit::Reduce() {
    reduced_ = true;
    int openSlopes = 0;
    int openCurvatures = 0;
    slopes_ = PseudoInverse<kLinear>(normal_.topLeftCorner<kLinear, kLinear>(), kOpenSlope, openSlopes);
    const Matrix<kCurvatures, kLinear> mixed = normal_.block<kCurvatures, kLinear>(kLinear, 0);
    coupling_ = slopes_ * mixed.transpose();
    const Matrix<kCurvatures, kCurvatures> left =
        normal_.block<kCurvatures, kCurvatures>(kLinear, kLinear) - mixed * coupling_;
    curves_ = PseudoInverse<kCurvatures>(left, kOpenCurvature, openCurvatures);
    if (openSlopes > 0) {
        return Determined::FewerSlopes;
    }
    return openCurvatures > 0 ? Determined::FewerCurvatures : Determined::All;
}

Point PatchFit::Gradient(const std::vector<double>& differences) const {
    Terms right = Terms::Zero();
    for (std::size_t k = 0; k < terms_.size(); ++k) {
        const double weighted = weights_[k] * differences[k];
        for (int i = 0; i < kTerms; ++i) {
            right[i] += weighted * terms_[k][i];
        }
    }
    right.array() *= scale_.array();
    const Matrix<kLinear> scaled =
        reduced_ ? SolveReduced(right) : factor_.solve(right).template head<kLinear>();
    const double x = scaled[0] * scale_[0];
    const double y = scaled[1] * scale_[1];
    const double z = scaled[2] * scale_[2];
    return {(frame_(0, 0) * x + frame_(1, 0) * y) + frame_(2, 0) * z, frame_(1, 1) * y + frame_(2, 1) * z,
            frame_(2, 2) * z};
}

PatchFit::Matrix<PatchFit::kLinear> PatchFit::SolveReduced(const Terms& right) const {
    const Matrix<kLinear> slopes = right.head<kLinear>();
    const Matrix<kCurvatures> curvatures = right.segment<kCurvatures>(kLinear);
    const Matrix<kCurvatures> curves = curves_ * (curvatures - coupling_.transpose() * slopes);
    return slopes_ * slopes - coupling_ * curves;
}

}  // namespace qnl::kernel
