#pragma once

/// Eigen, set so that small dense problems give the same bits in every build: its packets change the order of
/// sums with the instruction set. Included by the sources of this room only, so that the program has one
/// setting of it.
#define EIGEN_DONT_VECTORIZE
#define EIGEN_DONT_PARALLELIZE
#define EIGEN_MPL2_ONLY
#include <Eigen/Cholesky>
#include <Eigen/Core>
#include <Eigen/Eigenvalues>
