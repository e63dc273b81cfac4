#include "mesh/CornerMean.h"

#include <cmath>

namespace qnl::mesh {

double MeanBoxDiagonal(const EntityRecord* entities, int count) {
    double sum = 0.0;
    for (int e = 1; e <= count; ++e) {
        const double x = entities[e].boxMax[0] - entities[e].boxMin[0];
        const double y = entities[e].boxMax[1] - entities[e].boxMin[1];
        const double z = entities[e].boxMax[2] - entities[e].boxMin[2];
        sum += std::sqrt(x * x + y * y + z * z + 1e-30);
    }
    return sum / static_cast<double>(count);
}

}  // namespace qnl::mesh
