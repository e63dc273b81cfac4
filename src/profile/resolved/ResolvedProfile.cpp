#include "profile/resolved/ResolvedProfile.h"

#include <algorithm>
#include <cmath>

namespace qnl::profile {

namespace {

constexpr std::size_t kVelocity = static_cast<std::size_t>(ProfileField::VelocityU);

std::array<double, 4> LambdaAt(const RayPiece& piece, double depth) {
    const double part = std::clamp((depth - piece.from) / (piece.to - piece.from), 0.0, 1.0);
    std::array<double, 4> lambda{};
    for (std::size_t v = 0; v < lambda.size(); ++v) {
        lambda[v] = (1.0 - part) * piece.atFrom[v] + part * piece.atTo[v];
    }
    return lambda;
}

// A parabola with this second difference over half its stretch departs from n chords by difference / (2 n^2).
int StepsFor(double secondDifference) {
    constexpr double kChord = 0.05;  // K
    constexpr int kMost = 16;
    const double steps = std::ceil(std::sqrt(0.5 * std::fabs(secondDifference) / kChord));
    return steps > 1.0 ? static_cast<int>(std::min<double>(steps, kMost)) : 1;
}

// Linear in the tetra, with the mean of the corners at their average.
TetraField LinearIn(const float* values, const CellRecord& cell, const RayPiece& piece) {
    TetraField tetra{};
    for (std::size_t v = 0; v < tetra.value.size(); ++v) {
        if (piece.vertex[v] != 0) {
            tetra.value[v] = static_cast<double>(values[piece.vertex[v]]);
            continue;
        }
        double sum = 0.0;
        for (int c = 1; c <= cell.nNode; ++c) {
            sum += static_cast<double>(values[cell.nodes[c]]);
        }
        tetra.value[v] = sum / cell.nNode;
    }
    return tetra;
}

}  // namespace

bool ProfileInput::Has(ProfileField field) const {
    const auto f = static_cast<std::size_t>(field);
    return f < kVelocity ? fields[f].values != nullptr : velocity[f - kVelocity] != nullptr;
}

void ResolvedProfile::TakeInput(const ProfileInput& input) {
    input_ = input;
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

void ResolvedProfile::AddStretch(const Stretch& stretch, bool first) {
    const RayPiece& piece = stretch.piece;
    for (std::size_t f = 0; f < cellFields_.size(); ++f) {
        if (input_.fields[f].values != nullptr) {
            cellFields_[f].Take(input_.mesh, input_.fields[f], piece.cell);
            tetraFields_[f] = cellFields_[f].In(piece);
        }
    }
    for (std::size_t a = 0; a < tetraVelocity_.size(); ++a) {
        if (input_.velocity[a] != nullptr) {
            tetraVelocity_[a] = LinearIn(input_.velocity[a], input_.mesh.cells[piece.cell], piece);
        }
    }
    if (first) {
        AddSample(piece, stretch.from);
    }
    const auto temperature = [&](double depth) { return tetraFields_[0].At(LambdaAt(piece, depth)); };
    const double middle = stretch.from + 0.5 * (stretch.to - stretch.from);
    const int steps =
        StepsFor(temperature(stretch.from) - 2.0 * temperature(middle) + temperature(stretch.to));
    for (int step = 1; step < steps; ++step) {
        AddSample(piece, stretch.from + (stretch.to - stretch.from) * step / steps);
    }
    AddSample(piece, stretch.to);
}

void ResolvedProfile::AddSample(const RayPiece& piece, double depth) {
    if (Count() > 0 && !(depth > depths_.back())) {
        return;
    }
    const std::array<double, 4> lambda = LambdaAt(piece, depth);
    depths_.push_back(depth);
    cells_.push_back(piece.cell);
    for (std::size_t f = 0; f < tetraFields_.size(); ++f) {
        if (input_.fields[f].values != nullptr) {
            values_[f].push_back(tetraFields_[f].At(lambda));
        }
    }
    for (std::size_t a = 0; a < tetraVelocity_.size(); ++a) {
        if (input_.velocity[a] != nullptr) {
            values_[kVelocity + a].push_back(tetraVelocity_[a].At(lambda));
        }
    }
}

}  // namespace qnl::profile
