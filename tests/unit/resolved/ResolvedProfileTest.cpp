#include "profile/resolved/ResolvedProfile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/RecordedMesh.h"

namespace qnl::profile {
namespace {

using testing::RecordedMesh;

std::vector<double> Values(OneBased<const double> view) {
    std::vector<double> values;
    for (int i = 1; i <= view.Count(); ++i) {
        values.push_back(view[i]);
    }
    return values;
}

// Three tetras in a row along the ray, by hand: vertex 1 of each is its entry, vertex 2 its exit.
class RowOfTetras : public ::testing::Test {
protected:
    RowOfTetras() {
        for (int cell = 1; cell <= 3; ++cell) {
            CellRecord& record = cells_[static_cast<std::size_t>(cell)];
            record.nNode = 4;
            record.nodes = corners_[static_cast<std::size_t>(cell) - 1].data();
        }
        for (int node = 1; node <= 6; ++node) {
            nodes_[static_cast<std::size_t>(node)] = {0.0, 0.0, node <= 4 ? node - 1.0 : 9.0, node, 0};
        }
        input_.mesh = {nodes_.data(), cells_.data()};
        input_.fields[0] = {temperature_.data(), gradients_.data()};
    }

    RayPiece Piece(int cell, double from, double to) const {
        const auto& c = corners_[static_cast<std::size_t>(cell) - 1];
        const double low = cell - 1.0;
        RayPiece piece{from, to, {}, {}, {c[1], c[2], c[3], c[4]}, cell};
        piece.atFrom = {1.0 - (from - low), from - low, 0.0, 0.0};
        piece.atTo = {1.0 - (to - low), to - low, 0.0, 0.0};
        return piece;
    }

    const ResolvedProfile& Sample(const std::vector<RayPiece>& pieces) {
        profile_.TakeInput(input_);
        profile_.Sample({pieces.data(), static_cast<int>(pieces.size())});
        return profile_;
    }

    std::array<NodeRecord, 7> nodes_{};
    std::array<CellRecord, 4> cells_{};
    std::array<std::array<int, 5>, 3> corners_{{{0, 1, 2, 5, 6}, {0, 2, 3, 5, 6}, {0, 3, 4, 5, 6}}};
    std::vector<double> temperature_{-1e9, 40.0, 100.0, 120.0, 130.0, 0.0, 0.0};
    std::vector<double> gradients_ = std::vector<double>(21, 0.0);
    ProfileInput input_;
    ResolvedProfile profile_;
};

TEST_F(RowOfTetras, GiveTheirEntriesAndExitsOnce) {
    const ResolvedProfile& profile = Sample({Piece(1, 0.0, 1.0), Piece(2, 1.0, 2.0), Piece(3, 2.0, 3.0)});
    EXPECT_EQ(Values(profile.Depths()), (std::vector<double>{0.0, 1.0, 2.0, 3.0}));
    EXPECT_EQ(Values(profile.Values(ProfileField::Temperature)),
              (std::vector<double>{40.0, 100.0, 120.0, 130.0}));
    const auto cells = profile.Cells();
    EXPECT_EQ((std::vector<int>{cells[1], cells[2], cells[3], cells[4]}), (std::vector<int>{1, 1, 2, 3}));
}

TEST_F(RowOfTetras, OverlapByTheTolerance) {
    const ResolvedProfile& profile =
        Sample({Piece(1, 0.0, 1.00001), Piece(2, 0.99999, 2.00001), Piece(3, 1.99999, 3.0)});
    EXPECT_EQ(Values(profile.Depths()), (std::vector<double>{0.0, 1.00001, 2.00001, 3.0}));
}

// Pieces within others, of equal entry, and doubled: those that reach farthest are taken.
TEST_F(RowOfTetras, AreSweptWhereTheyOverlap) {
    const ResolvedProfile& profile = Sample({Piece(1, 0.0, 0.4), Piece(1, 0.0, 1.0), Piece(1, 0.0, 1.0),
                                             Piece(1, 0.2, 0.9), Piece(2, 0.9, 2.0), Piece(2, 1.0, 1.5)});
    EXPECT_EQ(Values(profile.Depths()), (std::vector<double>{0.0, 1.0, 2.0}));
}

TEST_F(RowOfTetras, MayLeaveAGap) {
    const ResolvedProfile& profile = Sample({Piece(1, 0.25, 1.0), Piece(3, 2.0, 3.0)});
    EXPECT_EQ(Values(profile.Depths()), (std::vector<double>{0.25, 1.0, 2.0, 3.0}));
    EXPECT_EQ(Values(profile.Values(ProfileField::Temperature)),
              (std::vector<double>{55.0, 100.0, 120.0, 130.0}));
    EXPECT_EQ(profile.Cells()[3], 3);
}

TEST_F(RowOfTetras, GiveNothingWithoutPieces) {
    EXPECT_EQ(Sample({}).Count(), 0);
    Sample({Piece(1, 0.0, 1.0)});
    profile_.Sample({nullptr, 0});
    EXPECT_EQ(profile_.Count(), 0);
}

// Second derivative -2k over 1 mm: n steps depart by k / (4 n^2) at most. k = 3.2: 0.8 / n^2 <= 0.05 from n =
// 4 on.
TEST_F(RowOfTetras, HaveStepsThatKeepChordsWithin50MilliKelvin) {
    const auto stepsFor = [&](double k) {
        temperature_ = {0.0, 200.0, 200.0, 0.0, 0.0, 0.0, 0.0};
        gradients_.assign(21, 0.0);
        gradients_[3 * 1 + 2] = k;
        gradients_[3 * 2 + 2] = -k;
        input_.fields[0] = {temperature_.data(), gradients_.data()};
        return Sample({Piece(1, 0.0, 1.0)}).Count() - 1;
    };
    EXPECT_EQ(stepsFor(0.19), 1);
    EXPECT_EQ(stepsFor(0.21), 2);
    EXPECT_EQ(stepsFor(3.19), 4);
    EXPECT_EQ(stepsFor(3.21), 5);
    EXPECT_EQ(stepsFor(51.0), 16);
    EXPECT_EQ(stepsFor(1e9), 16);
    stepsFor(3.19);
    EXPECT_EQ(Values(profile_.Depths()), (std::vector<double>{0.0, 0.25, 0.5, 0.75, 1.0}));
    EXPECT_NEAR(profile_.Values(ProfileField::Temperature)[3], 200.0 + 3.19 / 4.0, 1e-12);
    EXPECT_NEAR(profile_.Values(ProfileField::Temperature)[2], 200.0 + 3.19 * 0.25 * 0.75, 1e-12);
}

TEST_F(RowOfTetras, CarryOnlyTheFieldsThatAreThere) {
    const std::vector<double> markers{0.0, -1.0, 1.0, 1.0, 1.0, 1.0, 1.0};
    const std::vector<float> speed{0.0F, 2.0F, 4.0F, 6.0F, 8.0F, 0.0F, 0.0F};
    input_.fields[static_cast<std::size_t>(ProfileField::GasMarker)] = {markers.data()};
    input_.velocity[2] = speed.data();
    const ResolvedProfile& profile = Sample({Piece(1, 0.5, 1.0), Piece(2, 1.0, 2.0)});
    EXPECT_EQ(Values(profile.Values(ProfileField::GasMarker)), (std::vector<double>{0.0, 1.0, 1.0}));
    EXPECT_EQ(Values(profile.Values(ProfileField::VelocityW)), (std::vector<double>{3.0, 4.0, 6.0}));
    EXPECT_FALSE(profile.Values(ProfileField::VelocityU));
    EXPECT_FALSE(profile.Values(ProfileField::Density));
}

// The corner average of a cell that is no tetra has the mean of the corners in linear fields.
TEST(ResolvedProfile, TakesTheMeanOfTheCornersAtTheAverageOfAHexa) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Hexa));
    const kernel::RecordMesh view = mesh.View();
    std::vector<double> values{0.0};
    std::vector<float> speed{0.0F};
    for (int node = 1; node <= 8; ++node) {
        values.push_back(10.0 * node);
        speed.push_back(static_cast<float>(node));
    }
    ProfileInput input;
    input.mesh = {view.nodes, view.cells};
    input.fields[0] = {values.data()};
    input.velocity[0] = speed.data();
    ResolvedProfile profile;
    profile.TakeInput(input);
    const RayPiece piece{0.0, 1.0, {1.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 0.0, 1.0}, {2, 3, 1, 0}, 1};
    profile.Sample({&piece, 1});
    EXPECT_EQ(Values(profile.Values(ProfileField::Temperature)), (std::vector<double>{20.0, 45.0}));
    EXPECT_EQ(Values(profile.Values(ProfileField::VelocityU)), (std::vector<double>{2.0, 4.5}));
}

}  // namespace
}  // namespace qnl::profile
