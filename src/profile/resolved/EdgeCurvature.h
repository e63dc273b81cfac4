#pragma once

#include <cmath>

#include "profile/resolved/FieldRange.h"

namespace qnl::profile {

/// A field at the two ends of an edge: its values, and its slopes along the edge, in value by edge length
/// (the gradient times the vector from the first to the second end).
struct EdgeData {
    double first;
    double second;
    double firstSlope;
    double secondSlope;
};

/// Curvature of the parabola (1-s) a + s b - s (1-s) c / 2 on an edge, c its value: the difference of the
/// slopes, limited so that the parabola does not overshoot where the field has a front.
///
/// A parabola that is monotone on the edge, |c| <= 2 |b - a|, stays (F. N. Fritsch and R. E. Carlson,
/// Monotone piecewise cubic interpolation, SIAM J. Numer. Anal. 17 (1980), 238-246). A larger c is an
/// extremum on the edge. It stays where the slopes of both ends agree with one parabola, and is taken back to
/// the monotone one as they depart from it: r = |(b - a) - mean slope| / |c| compares the curvatures on both
/// sides of the edge, as in the limiters that leave room for true extrema (H. T. Huynh, Accurate monotone
/// cubic interpolation, SIAM J. Numer. Anal. 30 (1993), 57-100; A. Suresh and H. T. Huynh, Accurate
/// monotonicity-preserving schemes with Runge-Kutta time stepping, J. Comput. Phys. 136 (1997), 83-99). All
/// of c stays up to r = 0.05, nothing beyond the monotone one from r = 0.15; both found by trial on plates in
/// cooling.
///
/// The parabola keeps within `known`, unless an end of the edge is outside it already. Every quadratic field
/// within that range is left as it is. The edge turned round gives the same bits. 0 when a slope is not a
/// number.
inline double LimitedCurvature(const EdgeData& edge, const FieldRange& known);

/// The same for a parabola that is not monotone on the edge.
double CurvatureWithExtremum(const EdgeData& edge, const FieldRange& known);

inline double LimitedCurvature(const EdgeData& edge, const FieldRange& known) {
    const double curvature = edge.secondSlope - edge.firstSlope;
    const bool monotone = std::fabs(curvature) <= 2.0 * std::fabs(edge.second - edge.first);
    return monotone ? curvature : CurvatureWithExtremum(edge, known);
}

}  // namespace qnl::profile
