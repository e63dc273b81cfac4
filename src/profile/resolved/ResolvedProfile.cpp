#include "profile/resolved/ResolvedProfile.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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

// A parabola a part^2 departs from n chords by a / (4 n^2).
int StepsFor(double bend, int most) {
    constexpr double kChord = 0.05;  // K
    const double squared = std::fabs(bend) * (0.25 / kChord);
    return squared > 1.0 ? static_cast<int>(std::min<double>(std::ceil(std::sqrt(squared)), most)) : 1;
}

template <typename Number>
double MeanOver(const Number* values, const CellRecord& cell) {
    double sum = 0.0;
    for (int c = 1; c <= cell.nNode; ++c) {
        sum += static_cast<double>(values[cell.nodes[c]]);
    }
    return sum / cell.nNode;
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
    count_ = 0;
}

// Entry 0 of every array is unused. A piece gives its steps and, behind a gap, its entry.
void ResolvedProfile::Reserve(int pieces) {
    const std::size_t entries = static_cast<std::size_t>(pieces) * (kMostSteps + 1) + 1;
    if (depths_.size() < entries) {
        depths_.resize(entries);
        cells_.resize(entries);
        for (std::vector<double>& row : values_) {
            row.resize(entries);
        }
    }
}

OneBased<const double> ResolvedProfile::Values(ProfileField field) const {
    if (!input_.Has(field)) {
        return {};
    }
    return {values_[static_cast<std::size_t>(field)].data(), Count()};
}

void ResolvedProfile::Sample(const RayPieces& pieces) {
    Reserve(pieces.count);
    count_ = 0;
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
        const bool begins = count_ == 0 || LastDepth() < reached;
        AddStretch({*farthest, begins, reached,
                    reached > farthest->from ? LambdaAt(*farthest, reached) : farthest->atFrom});
        reached = farthest->to;
    }
}

double ResolvedProfile::MeanOfCorners(std::size_t f, const CellRecord& cell) const {
    return f < kVelocity ? MeanOver(input_.fields[f].values, cell)
                         : MeanOver(input_.velocity[f - kVelocity], cell);
}

// Linear in the tetra, with the mean of the corners at their average.
double ResolvedProfile::ValueAt(std::size_t f, const RayPiece& piece,
                                const std::array<double, 4>& lambda) const {
    double sum = 0.0;
    for (std::size_t v = 0; v < lambda.size(); ++v) {
        const int node = piece.vertex[v];
        const double value = node == 0       ? MeanOfCorners(f, input_.mesh.cells[piece.cell])
                             : f < kVelocity ? input_.fields[f].values[node]
                                             : static_cast<double>(input_.velocity[f - kVelocity][node]);
        sum += lambda[v] * value;
    }
    return sum;
}

TetraField ResolvedProfile::FieldIn(std::size_t f, const RayPiece& piece) {
    const NodalField& field = input_.fields[f];
    if (input_.mesh.cells[piece.cell].nNode == static_cast<int>(piece.vertex.size())) {
        return FieldOfTetra(input_.mesh, field, piece.vertex);
    }
    cellFields_[f].Take(input_.mesh, field, piece.cell);
    return cellFields_[f].In(piece);
}

LineField ResolvedProfile::FieldAlong(std::size_t f, const Stretch& stretch) {
    const RayPiece& piece = stretch.piece;
    const double before = values_[f][static_cast<std::size_t>(before_)];
    if (f >= kVelocity || input_.fields[f].gradients == nullptr) {
        return {stretch.begins ? ValueAt(f, piece, stretch.lambda) : before, ValueAt(f, piece, piece.atTo),
                0.0};
    }
    const TetraField field = FieldIn(f, piece);
    return {stretch.begins ? field.At(stretch.lambda) : before, field.At(piece.atTo),
            field.BendBetween(stretch.lambda, piece.atTo)};
}

void ResolvedProfile::AddStretch(const Stretch& stretch) {
    before_ = count_;
    const LineField temperature = FieldAlong(0, stretch);
    AddDepths(stretch, StepsFor(temperature.bend, kMostSteps));
    AddValues(0, temperature);
    for (std::size_t use = 1; use < used_.size(); ++use) {
        AddValues(used_[use], FieldAlong(used_[use], stretch));
    }
}

// At the end of the stretch its last value stands, however short it is.
void ResolvedProfile::AddValues(std::size_t f, const LineField& line) {
    double* const row = values_[f].data() + before_ + 1;
    const int last = count_ - before_ - 1;
    for (int i = 0; i < last; ++i) {
        row[i] = line.At(parts_[static_cast<std::size_t>(i)]);
    }
    row[last] = line.last;
}

// Depths that do not ascend are left out.
void ResolvedProfile::AddDepths(const Stretch& stretch, int steps) {
    const double to = stretch.piece.to;
    if (stretch.begins) {
        AddSample(stretch, 0.0, stretch.from);
    }
    for (int step = 1; step < steps; ++step) {
        const double part = static_cast<double>(step) / steps;
        const double depth = stretch.from + (to - stretch.from) * part;
        if (depth < to && depth > LastDepth()) {
            AddSample(stretch, part, depth);
        }
    }
    AddSample(stretch, 1.0, to);
}

void ResolvedProfile::AddSample(const Stretch& stretch, double part, double depth) {
    parts_[static_cast<std::size_t>(count_ - before_)] = part;
    ++count_;
    depths_[static_cast<std::size_t>(count_)] = depth;
    cells_[static_cast<std::size_t>(count_)] = stretch.piece.cell;
}

}  // namespace qnl::profile
