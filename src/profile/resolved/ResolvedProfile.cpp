#include "profile/resolved/ResolvedProfile.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace qnl::profile {

namespace {

constexpr std::size_t kVelocity = static_cast<std::size_t>(ProfileField::VelocityU);

// Barycentric coordinates of both ends of a stretch.
struct Ends {
    std::array<double, 4> first;
    std::array<double, 4> last;
};

std::array<double, 4> LambdaAt(const RayPiece& piece, double depth) {
    const double part = std::clamp((depth - piece.from) / (piece.to - piece.from), 0.0, 1.0);
    std::array<double, 4> lambda{};
    for (std::size_t v = 0; v < lambda.size(); ++v) {
        lambda[v] = (1.0 - part) * piece.atFrom[v] + part * piece.atTo[v];
    }
    return lambda;
}

// A parabola a part^2 departs from n chords by a / (4 n^2).
int StepsFor(double bend) {
    constexpr double kChord = 0.05;  // K
    constexpr int kMost = 16;
    const double steps = std::ceil(std::sqrt(0.25 * std::fabs(bend) / kChord));
    return steps > 1.0 ? static_cast<int>(std::min<double>(steps, kMost)) : 1;
}

// Linear in the tetra, with the mean of the corners at their average.
template <typename Number>
LineField LinearBetween(const Number* values, const CellRecord& cell, const std::array<int, 4>& vertex,
                        const Ends& ends) {
    LineField line{0.0, 0.0, 0.0};
    for (std::size_t v = 0; v < vertex.size(); ++v) {
        double value = 0.0;
        if (vertex[v] != 0) {
            value = static_cast<double>(values[vertex[v]]);
        } else {
            for (int c = 1; c <= cell.nNode; ++c) {
                value += static_cast<double>(values[cell.nodes[c]]);
            }
            value /= cell.nNode;
        }
        line.first += ends.first[v] * value;
        line.last += ends.last[v] * value;
    }
    return line;
}

}  // namespace

bool ProfileInput::Has(ProfileField field) const {
    const auto f = static_cast<std::size_t>(field);
    return f < kVelocity ? fields[f].values != nullptr : velocity[f - kVelocity] != nullptr;
}

void ResolvedProfile::TakeInput(const ProfileInput& input) {
    input_ = input;
    used_.clear();
    for (std::size_t f = 0; f < kProfileFields; ++f) {
        if (input_.Has(static_cast<ProfileField>(f))) {
            used_.push_back(f);
        }
    }
    for (CellField& field : cellFields_) {
        field.Forget();
    }
    Clear();
}

// Entry 0 of every array is unused.
void ResolvedProfile::Clear() {
    depths_.assign(1, 0.0);
    cells_.assign(1, 0);
    for (std::vector<double>& row : values_) {
        row.assign(1, 0.0);
    }
}

OneBased<const double> ResolvedProfile::Values(ProfileField field) const {
    if (!input_.Has(field)) {
        return {};
    }
    return {values_[static_cast<std::size_t>(field)].data(), Count()};
}

void ResolvedProfile::Sample(const RayPieces& pieces) {
    Clear();
    double reached = 0.0;
    bool joined = false;  // the next stretch begins where the last one ended
    for (int next = 0; next < pieces.count;) {
        const RayPiece* farthest = nullptr;
        for (; next < pieces.count && (!joined || pieces.first[next].from <= reached); ++next) {
            const RayPiece& piece = pieces.first[next];
            if (!joined) {
                reached = piece.from;
                joined = true;
                farthest = &piece;
            } else if (piece.to > (farthest == nullptr ? reached : farthest->to)) {
                farthest = &piece;
            }
        }
        if (farthest == nullptr) {
            joined = false;
            continue;
        }
        AddStretch({*farthest, reached, farthest->to}, Count() == 0 || depths_.back() < reached);
        reached = farthest->to;
    }
}

LineField ResolvedProfile::FieldBetween(std::size_t f, const RayPiece& piece,
                                        const std::array<double, 4>& first,
                                        const std::array<double, 4>& last) {
    const CellRecord& cell = input_.mesh.cells[piece.cell];
    if (f >= kVelocity) {
        return LinearBetween(input_.velocity[f - kVelocity], cell, piece.vertex, {first, last});
    }
    const NodalField& field = input_.fields[f];
    if (field.gradients == nullptr) {
        return LinearBetween(field.values, cell, piece.vertex, {first, last});
    }
    cellFields_[f].Take(input_.mesh, field, piece.cell);
    return cellFields_[f].In(piece).Between(first, last);
}

void ResolvedProfile::AddStretch(const Stretch& stretch, bool begins) {
    const RayPiece& piece = stretch.piece;
    const std::array<double, 4> first =
        stretch.from > piece.from ? LambdaAt(piece, stretch.from) : piece.atFrom;
    const LineField temperature = FieldBetween(0, piece, first, piece.atTo);
    AddDepths(stretch, StepsFor(temperature.bend), begins);
    for (const std::size_t f : used_) {
        const LineField line = f == 0 ? temperature : FieldBetween(f, piece, first, piece.atTo);
        std::transform(parts_.begin(), parts_.end(), std::back_inserter(values_[f]),
                       [&](double part) { return line.At(part); });
    }
}

// Depths that do not ascend are left out; at the end of the stretch its last values stand, however short it
// is.
void ResolvedProfile::AddDepths(const Stretch& stretch, int steps, bool begins) {
    parts_.clear();
    for (int step = begins ? 0 : 1; step <= steps; ++step) {
        const double part = static_cast<double>(step) / steps;
        const double depth = step < steps ? stretch.from + (stretch.to - stretch.from) * part : stretch.to;
        const bool within = step == steps || depth < stretch.to;
        if (within && (Count() == 0 || depth > depths_.back())) {
            parts_.push_back(part);
            depths_.push_back(depth);
            cells_.push_back(stretch.piece.cell);
        }
    }
}

}  // namespace qnl::profile
