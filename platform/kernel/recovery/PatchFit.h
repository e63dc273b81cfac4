#pragma once

#include <vector>

#include "kernel/mesh/MeshData.h"
#include "kernel/recovery/DenseAlgebra.h"

namespace qnl::kernel {

/// The gradient at a node from the values at the nodes of a patch around it: a weighted least-squares fit of
/// the differences to the node's own value by the three linear, six quadratic and ten cubic monomials of the
/// position (patch recovery: O. C. Zienkiewicz and J. Z. Zhu, The superconvergent patch recovery and a
/// posteriori error estimates, Int. J. Numer. Methods Eng. 33 (1992), 1331-1382).
///
/// Weights are 1/distance^2, in the frame in which the patch has unit second moments, so that stretched cells
/// fit as well as cubes. The cubic terms are held small by a ridge that is the same in every turned frame; it
/// leaves linear and quadratic fields alone, which are met exactly. Sums run in the order of the patch, one
/// entry at a time. Memory is kept from patch to patch.
class PatchFit {
public:
    enum class Determined { All, FewerCurvatures, FewerSlopes };

    /// Takes the places of the patch's nodes from the node, mm, at least one and none zero. False when linear
    /// or quadratic terms are ill-determined: the patch should be larger, or be taken as it is by Reduce.
    bool Factor(const std::vector<Point>& offsets);

    /// Takes the same patch without cubic terms and without the directions that it leaves open.
    Determined Reduce();

    /// Gradient for the differences of the values to the node's own, in the order of the offsets.
    Point Gradient(const std::vector<double>& differences) const;

private:
    static constexpr int kLinear = 3;
    static constexpr int kCurvatures = 6;
    static constexpr int kQuadratic = kLinear + kCurvatures;
    static constexpr int kTerms = 19;

    template <int Rows, int Columns = 1>
    using Matrix = Eigen::Matrix<double, Rows, Columns>;
    using Terms = Matrix<kTerms>;

    void TakeFrame(const std::vector<Point>& offsets, double scale);
    void Assemble(const std::vector<Point>& offsets);
    Matrix<kLinear> SolveReduced(const Terms& right) const;

    Matrix<kLinear, kLinear> frame_;  ///< lower triangle; takes an offset into the patch's own frame
    std::vector<Terms> terms_;        ///< monomials by node of the patch
    std::vector<double> weights_;
    Matrix<kTerms, kTerms> normal_;  ///< lower triangle, diagonal scaled to 1
    Terms scale_;                    ///< that was applied to each term
    Eigen::LLT<Matrix<kTerms, kTerms>> factor_;
    bool reduced_ = false;
    Matrix<kLinear, kLinear> slopes_;          ///< pseudo-inverse of the linear block
    Matrix<kLinear, kCurvatures> coupling_;    ///< linear terms that a curvature stands for
    Matrix<kCurvatures, kCurvatures> curves_;  ///< pseudo-inverse of what is left of the curvature block
};

}  // namespace qnl::kernel
