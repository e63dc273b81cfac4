#pragma once

#include <array>
#include <vector>

#include "base/OneBased.h"
#include "platform/FieldKernel.h"
#include "profile/resolved/CellField.h"

namespace qnl::profile {

/// The fields that a profile may have.
enum class ProfileField {
    Temperature,      ///< degC
    VolumeShrinkage,  ///< percent
    GasMarker,
    BulkWeight,
    CoolingTime,  ///< s
    Density,      ///< g/cm3
    VelocityU,    ///< cm/s
    VelocityV,
    VelocityW,
};

constexpr std::size_t kProfileFields = 9;

/// The fields by node; those without values are not sampled. The temperature must be there. A velocity is by
/// node in single precision and linear between nodes.
struct ProfileInput {
    FieldMesh mesh;
    std::array<NodalField, 6> fields;        ///< Temperature to Density
    std::array<const float*, 3> velocity{};  ///< 1-based

    bool Has(ProfileField field) const;
};

/// The profile of one ray: samples in ascending depth, from the first to the last place inside the passed
/// cells. Its memory is kept from ray to ray. All arrays are 1-based with Count() entries.
class ResolvedProfile {
public:
    /// To be called for every output time. The input is borrowed.
    void TakeInput(const ProfileInput& input);

    /// Samples the entry and exit of every piece and, between them, so many equal steps that the quadratic of
    /// the temperature is within 0.05 K of its chords, 16 at most. Of pieces that overlap those are taken
    /// that reach farthest; along a face or an edge that cells share their values agree. Depths ascend
    /// strictly. `pieces` as FieldKernel::FindPieces gave them.
    void Sample(const RayPieces& pieces);

    int Count() const { return count_; }
    OneBased<const double> Depths() const { return {depths_.data(), count_}; }  ///< mm from the origin
    /// Values of a field; an empty view without one.
    OneBased<const double> Values(ProfileField field) const;
    /// Cell, 1-based, in which the stretch that ends at the sample lies; the first sample has that of the
    /// next.
    OneBased<const int> Cells() const { return {cells_.data(), count_}; }

private:
    /// Part of a piece. Where it does not begin a profile or follow a gap, its first values are those of the
    /// sample before it.
    struct Stretch {
        const RayPiece& piece;
        bool begins;
        double from;
        std::array<double, 4> lambda;  ///< barycentric coordinates of its beginning
    };
    static constexpr int kMostSteps = 16;

    void Reserve(int pieces);
    void AddStretch(const Stretch& stretch);
    void AddDepths(const Stretch& stretch, int steps);
    void AddSample(const Stretch& stretch, double part, double depth);
    void AddValues(std::size_t f, const LineField& line);
    double ValueAt(std::size_t f, const RayPiece& piece, const std::array<double, 4>& lambda) const;
    double MeanOfCorners(std::size_t f, const CellRecord& cell) const;
    TetraField FieldIn(std::size_t f, const RayPiece& piece);
    LineField FieldAlong(std::size_t f, const Stretch& stretch);
    double LastDepth() const { return depths_[static_cast<std::size_t>(count_)]; }

    ProfileInput input_{};
    std::array<CellField, 6> cellFields_;
    std::vector<std::size_t> used_;  ///< fields that are sampled; the temperature first
    int count_ = 0;
    int before_ = 0;                              ///< samples before the present stretch
    std::array<double, kMostSteps + 1> parts_{};  ///< of the present stretch, by its new samples
    // Longer than the profile, so that samples are stored without a look at the room.
    std::vector<double> depths_;
    std::array<std::vector<double>, kProfileFields> values_;
    std::vector<int> cells_;
};

}  // namespace qnl::profile
