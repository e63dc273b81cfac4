#include "interop/PointRows.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace qnl::interop {

namespace {

using Place = std::array<double, 3>;

/// Rows by the box of a coarse grid that they lie in.
class RowGrid {
public:
    RowGrid(const std::vector<Place>& rows, double tolerance)
        : rows_(rows), tolerance_(tolerance), size_(kTolerancesInBox * tolerance) {
        for (std::size_t row = 0; row < rows.size(); ++row) {
            boxes_.push_back({BoxOf(rows[row]), static_cast<std::int64_t>(row)});
        }
        std::sort(boxes_.begin(), boxes_.end());
    }

    /// What is within the tolerance lies in at most two boxes along each axis.
    std::int64_t Nearest(const Place& point) const {
        const Place low = BoxOf({point[0] - tolerance_, point[1] - tolerance_, point[2] - tolerance_});
        const Place high = BoxOf({point[0] + tolerance_, point[1] + tolerance_, point[2] + tolerance_});
        std::int64_t nearest = -1;
        double best = tolerance_ * tolerance_;
        for (std::size_t corner = 0; corner < 8; ++corner) {
            Place box{};
            bool isNew = true;
            for (std::size_t axis = 0; axis < box.size(); ++axis) {
                const bool takesHigh = (corner >> axis & 1U) != 0;
                box[axis] = takesHigh ? high[axis] : low[axis];
                isNew = isNew && (!takesHigh || high[axis] != low[axis]);
            }
            if (isNew) {
                Search(box, point, nearest, best);
            }
        }
        return nearest;
    }

private:
    static constexpr double kTolerancesInBox = 4.0;

    Place BoxOf(const Place& place) const {
        return {std::floor(place[0] / size_), std::floor(place[1] / size_), std::floor(place[2] / size_)};
    }

    void Search(const Place& box, const Place& point, std::int64_t& nearest, double& best) const {
        auto entry = std::lower_bound(boxes_.begin(), boxes_.end(), std::pair<Place, std::int64_t>{box, 0});
        for (; entry != boxes_.end() && entry->first == box; ++entry) {
            const Place& row = rows_[static_cast<std::size_t>(entry->second)];
            const double dx = row[0] - point[0];
            const double dy = row[1] - point[1];
            const double dz = row[2] - point[2];
            const double distance = dx * dx + dy * dy + dz * dz;
            const bool isFirst = distance == best && (nearest < 0 || entry->second < nearest);
            if (distance < best || isFirst) {
                best = distance;
                nearest = entry->second;
            }
        }
    }

    const std::vector<Place>& rows_;
    double tolerance_;
    double size_;
    std::vector<std::pair<Place, std::int64_t>> boxes_;
};

}  // namespace

std::vector<std::int64_t> MatchPlaces(const std::vector<Place>& points, const std::vector<Place>& rows,
                                      double tolerance) {
    const RowGrid grid(rows, tolerance);
    std::vector<std::int64_t> matched;
    matched.reserve(points.size());
    for (const Place& point : points) {
        matched.push_back(grid.Nearest(point));
    }
    return matched;
}

}  // namespace qnl::interop
