#include "kernel/mesh/CurveOrder.h"

#include <omp.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "kernel/mesh/Prefetch.h"

namespace qnl::kernel {
namespace {

struct KeyedCell {
    std::uint32_t key;
    int cell;
};

// Interleaves the bits of three grid indices of possibly different widths; the narrow directions of a
// plate then leave their bits to the wide ones.
class CurveGrid {
public:
    CurveGrid(const std::vector<Point>& points, int cells) {
        Point upper{};
        FindBox(points, upper);
        const Point extent{upper[0] - low_[0], upper[1] - low_[1], upper[2] - low_[2]};
        ChooseWidths(extent, cells);
        BuildTables();
    }

    /// Keys are below 2^KeyBits().
    int KeyBits() const { return bits_[0] + bits_[1] + bits_[2]; }

    std::uint32_t Key(const std::array<double, 3>& place) const {
        std::uint32_t key = 0;
        for (std::size_t a = 0; a < 3; ++a) {
            const double position = (place[a] - low_[a]) * scale_;
            const double last = static_cast<double>(spread_[a].size() - 1);
            const double inside = position > 0.0 ? std::min(position, last) : 0.0;
            key |= spread_[a][static_cast<std::size_t>(inside)];
        }
        return key;
    }

private:
    void FindBox(const std::vector<Point>& points, Point& upper) {
        low_.fill(std::numeric_limits<double>::max());
        upper.fill(-std::numeric_limits<double>::max());
        for (const Point& point : points) {
            for (std::size_t a = 0; a < 3; ++a) {
                low_[a] = std::min(low_[a], point[a]);
                upper[a] = std::max(upper[a], point[a]);
            }
        }
    }

    // Halves the grid spacing, from the whole extent on, until there is about one box per cell.
    void ChooseWidths(const Point& extent, int cells) {
        const double largest = std::max({extent[0], extent[1], extent[2]});
        if (!(largest > 0.0) || !std::isfinite(largest)) {
            return;
        }
        int wanted = 3;
        while (wanted < 31 && (1LL << wanted) < cells) {
            ++wanted;
        }
        double spacing = largest;
        int total = 0;
        while (total < wanted) {
            spacing /= 2.0;
            for (std::size_t a = 0; a < 3; ++a) {
                if (extent[a] > spacing && total < 31 && bits_[a] < 16) {
                    ++bits_[a];
                    ++total;
                }
            }
            if (std::all_of(bits_.begin(), bits_.end(), [](int b) { return b >= 16; }) || spacing == 0.0) {
                break;
            }
        }
        scale_ = 1.0 / spacing;
    }

    void BuildTables() {
        const int deepest = *std::max_element(bits_.begin(), bits_.end());
        for (std::size_t a = 0; a < 3; ++a) {
            spread_[a].assign(std::size_t{1} << bits_[a], 0);
        }
        int position = 0;
        for (int level = 0; level < deepest; ++level) {
            for (std::size_t a = 0; a < 3; ++a) {
                if (level >= bits_[a]) {
                    continue;
                }
                for (std::size_t i = 0; i < spread_[a].size(); ++i) {
                    spread_[a][i] |= static_cast<std::uint32_t>(i >> level & 1U) << position;
                }
                ++position;
            }
        }
    }

    Point low_{};
    double scale_ = 0.0;
    std::array<int, 3> bits_{};
    std::array<std::vector<std::uint32_t>, 3> spread_;
};

// Asks for the points of corners that come `ahead` places later.
void PrefetchPoints(const MeshData& mesh, int cell, std::size_t ahead) {
    const auto begin = static_cast<std::size_t>(mesh.offsets[static_cast<std::size_t>(cell)]) + ahead;
    const auto end = static_cast<std::size_t>(mesh.offsets[static_cast<std::size_t>(cell) + 1]) + ahead;
    for (std::size_t c = begin; c < std::min(end, mesh.connectivity.size()); ++c) {
        Prefetch(&mesh.points[static_cast<std::size_t>(mesh.connectivity[c])]);
    }
}

std::vector<KeyedCell> KeyCells(const MeshData& mesh, const CurveGrid& grid) {
    constexpr std::size_t kLookAhead = 64;  // corners
    std::vector<KeyedCell> keyed(mesh.cellTypes.size());
#pragma omp parallel for schedule(static)
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        PrefetchPoints(mesh, cell, kLookAhead);
        const int* corner = mesh.Corners(cell);
        const int* end = corner + (mesh.offsets[static_cast<std::size_t>(cell) + 1] -
                                   mesh.offsets[static_cast<std::size_t>(cell)]);
        const double share = 1.0 / static_cast<double>(end - corner);
        Point middle{};
        for (; corner != end; ++corner) {
            const Point& point = mesh.points[static_cast<std::size_t>(*corner)];
            for (std::size_t a = 0; a < 3; ++a) {
                middle[a] += point[a] * share;
            }
        }
        keyed[static_cast<std::size_t>(cell)] = {grid.Key(middle), cell};
    }
    return keyed;
}

constexpr int kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;

std::size_t Digit(const KeyedCell& entry, int pass) {
    return (entry.key >> (pass * kDigitBits)) & (kDigits - 1);
}

// One stable pass of a radix sort; every thread moves a contiguous part, so that the result does not
// depend on their number.
void SortPass(const std::vector<KeyedCell>& from, std::vector<KeyedCell>& to, int pass) {
    const int parts = std::max(1, std::min(omp_get_max_threads(), static_cast<int>(from.size() / 65536)));
    std::vector<std::array<std::size_t, kDigits>> place(static_cast<std::size_t>(parts));
    const auto begin = [&](int part) {
        return from.size() / static_cast<std::size_t>(parts) * static_cast<std::size_t>(part);
    };
    const auto end = [&](int part) { return part + 1 == parts ? from.size() : begin(part + 1); };
#pragma omp parallel for schedule(static)
    for (int part = 0; part < parts; ++part) {
        auto& count = place[static_cast<std::size_t>(part)];
        count.fill(0);
        for (std::size_t i = begin(part); i < end(part); ++i) {
            ++count[Digit(from[i], pass)];
        }
    }
    std::size_t next = 0;
    for (std::size_t digit = 0; digit < kDigits; ++digit) {
        for (auto& count : place) {
            const std::size_t size = count[digit];
            count[digit] = next;
            next += size;
        }
    }
#pragma omp parallel for schedule(static)
    for (int part = 0; part < parts; ++part) {
        auto& target = place[static_cast<std::size_t>(part)];
        for (std::size_t i = begin(part); i < end(part); ++i) {
            to[target[Digit(from[i], pass)]++] = from[i];
        }
    }
}

}  // namespace

std::vector<int> CurveOrder(const MeshData& mesh) {
    const CurveGrid grid(mesh.points, mesh.Cells());
    std::vector<KeyedCell> keyed = KeyCells(mesh, grid);
    std::vector<KeyedCell> other(keyed.size());
    for (int pass = 0; pass * kDigitBits < grid.KeyBits(); ++pass) {
        SortPass(keyed, other, pass);
        keyed.swap(other);
    }
    std::vector<int> order(keyed.size());
    std::transform(keyed.begin(), keyed.end(), order.begin(), [](const KeyedCell& k) { return k.cell; });
    return order;
}

}  // namespace qnl::kernel
