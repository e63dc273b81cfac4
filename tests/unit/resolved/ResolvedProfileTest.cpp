#include "profile/resolved/ResolvedProfile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

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

    // A temperature of 200 + k z (1 - z) in the first tetra.
    void Bend(double k) {
        temperature_ = {0.0, 200.0, 200.0, 0.0, 0.0, 0.0, 0.0};
        gradients_ = Slopes(k);
        input_.fields[0] = {temperature_.data(), gradients_.data()};
    }

    static std::vector<double> Slopes(double k) {
        std::vector<double> gradients(21, 0.0);
        gradients[3 * 1 + 2] = k;
        gradients[3 * 2 + 2] = -k;
        return gradients;
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
        Bend(k);
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

// n steps over h of the first tetra depart by k h^2 / (4 n^2) at most: 2 steps over 0.5 mm of k = 3.19. The
// second tetra falls by 200 with a slope of -k at its entry: k / (8 n^2), 3 steps.
TEST_F(RowOfTetras, HaveStepsAlongWhatIsTakenOfThem) {
    Bend(3.19);
    EXPECT_EQ(Values(Sample({Piece(1, 0.0, 0.5), Piece(1, 0.4, 1.0)}).Depths()),
              (std::vector<double>{0.0, 0.25, 0.5, 0.75, 1.0}));
    const ResolvedProfile& profile = Sample({Piece(1, 0.0, 1.0), Piece(2, 1.0, 2.0)});
    ASSERT_EQ(profile.Count(), 8);
    const auto cells = profile.Cells();
    EXPECT_EQ((std::vector<int>{cells[1], cells[2], cells[5], cells[6], cells[8]}),
              (std::vector<int>{1, 1, 1, 2, 2}));
}

// entry + (exit - entry) is below the exit, then above it, in double precision.
TEST_F(RowOfTetras, EndAtTheirExitsToTheBit) {
    Bend(1.0);
    for (const auto& [from, to] : {std::pair(0.2, 0.82), std::pair(0.06, 0.62)}) {
        const ResolvedProfile& profile = Sample({Piece(1, from, to)});
        ASSERT_EQ(profile.Count(), 3);
        EXPECT_EQ(profile.Depths()[1], from);
        EXPECT_EQ(profile.Depths()[3], to);
    }
}

TEST_F(RowOfTetras, HaveNoRoomForStepsBetweenNeighbouringNumbers) {
    Bend(1e9);
    RayPiece piece = Piece(1, 0.0, 1.0);
    piece.from = 1.0;
    piece.to = std::nextafter(1.0, 2.0);
    temperature_[2] = 300.0;
    EXPECT_EQ(Values(Sample({piece}).Depths()), (std::vector<double>{piece.from, piece.to}));
    EXPECT_EQ(Values(profile_.Values(ProfileField::Temperature)), (std::vector<double>{200.0, 300.0}));
}

TEST_F(RowOfTetras, CarryAllFieldsAtTheStepsOfTheTemperature) {
    Bend(3.19);
    const std::vector<double> ones(7, 1.0);
    const std::vector<double> slopes = Slopes(0.8);
    const std::vector<double> times{0.0, 4.0, 8.0, 0.0, 0.0, 0.0, 0.0};
    const std::vector<float> speed{0.0F, 2.0F, 4.0F, 0.0F, 0.0F, 0.0F, 0.0F};
    input_.fields[static_cast<std::size_t>(ProfileField::Density)] = {ones.data(), slopes.data()};
    input_.fields[static_cast<std::size_t>(ProfileField::CoolingTime)] = {times.data()};
    input_.velocity[1] = speed.data();
    const ResolvedProfile& profile = Sample({Piece(1, 0.0, 1.0)});
    ASSERT_EQ(profile.Count(), 5);
    for (int i = 1; i <= 5; ++i) {
        const double z = (i - 1) / 4.0;
        EXPECT_NEAR(profile.Values(ProfileField::Density)[i], 1.0 + 0.8 * z * (1.0 - z), 1e-12);
        EXPECT_NEAR(profile.Values(ProfileField::CoolingTime)[i], 4.0 + 4.0 * z, 1e-12);
        EXPECT_NEAR(profile.Values(ProfileField::VelocityV)[i], 2.0 + 2.0 * z, 1e-12);
    }
}

// Along a face both of its cells may be met from the same entry to the same exit.
TEST_F(RowOfTetras, GiveWayToTheFirstThatReachesAsFar) {
    const RayPiece second{0.0, 1.0, {1.0, 0.0, 0.0, 0.0}, {0.0, 1.0, 0.0, 0.0}, {2, 3, 5, 6}, 2};
    const ResolvedProfile& profile = Sample({Piece(1, 0.0, 1.0), second});
    EXPECT_EQ(Values(profile.Values(ProfileField::Temperature)), (std::vector<double>{40.0, 100.0}));
    EXPECT_EQ(profile.Cells()[2], 1);
}

TEST_F(RowOfTetras, KeepMissingTemperaturesToThemselves) {
    temperature_[1] = std::numeric_limits<double>::quiet_NaN();
    const ResolvedProfile& profile = Sample({Piece(1, 0.0, 0.5), Piece(2, 1.0, 2.0)});
    EXPECT_EQ(Values(profile.Depths()), (std::vector<double>{0.0, 0.5, 1.0, 2.0}));
    EXPECT_TRUE(std::isnan(profile.Values(ProfileField::Temperature)[1]));
    EXPECT_EQ(profile.Values(ProfileField::Temperature)[3], 100.0);
    EXPECT_EQ(profile.Values(ProfileField::Temperature)[4], 120.0);
}

TEST_F(RowOfTetras, TakeTheValuesOfTheNextOutputTime) {
    Sample({Piece(1, 0.0, 1.0)});
    temperature_[1] = 50.0;
    profile_.TakeInput(input_);
    EXPECT_EQ(profile_.Count(), 0);
    const RayPiece piece = Piece(1, 0.0, 1.0);
    profile_.Sample({&piece, 1});
    EXPECT_EQ(Values(profile_.Values(ProfileField::Temperature)), (std::vector<double>{50.0, 100.0}));
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

// 8 z (1 - z) in the unit cube, from a corner of its base to the average of its corners, where it is 2. At s
// of the way it is 4 s - 2 s^2: 0.5 / n^2 <= 0.05 from n = 4 on. The average may be any vertex.
TEST(ResolvedProfile, IsExactForAQuadraticFieldOnTheWayToTheAverageOfAHexa) {
    const RecordedMesh mesh(testing::SingleCell(kernel::CellType::Hexa));
    const kernel::RecordMesh view = mesh.View();
    const std::vector<double> values(9, 0.0);
    std::vector<double> gradients(27, 0.0);
    for (int node = 1; node <= 8; ++node) {
        gradients[3 * static_cast<std::size_t>(node) + 2] = mesh.Place(node)[2] > 0.5 ? -8.0 : 8.0;
    }
    ProfileInput input;
    input.mesh = {view.nodes, view.cells};
    input.fields[0] = {values.data(), gradients.data()};
    ResolvedProfile profile;
    profile.TakeInput(input);
    for (const RayPiece& piece :
         {RayPiece{0.0, 1.0, {1.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 0.0, 1.0}, {1, 2, 3, 0}, 1},
          RayPiece{0.0, 1.0, {0.0, 0.0, 1.0, 0.0}, {1.0, 0.0, 0.0, 0.0}, {0, 2, 1, 3}, 1}}) {
        profile.Sample({&piece, 1});
        EXPECT_EQ(Values(profile.Depths()), (std::vector<double>{0.0, 0.25, 0.5, 0.75, 1.0}));
        EXPECT_EQ(Values(profile.Values(ProfileField::Temperature)),
                  (std::vector<double>{0.0, 0.875, 1.5, 1.875, 2.0}));
    }
}

}  // namespace
}  // namespace qnl::profile
