#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <vector>

#include "profile/NodeEvaluation.h"
#include "profile/NodeLoop.h"
#include "profile/ResolvedFields.h"
#include "support/StackJob.h"

namespace {

/// What the kernel is asked for, and the pieces that it gives for every ray.
struct FieldScript {
    bool offered = true;
    int slots = 0;
    std::vector<std::vector<const double*>> recovered;  ///< fields of each call
    std::vector<qnl::RayPiece> pieces;
    std::array<double, 3> origin{};
    std::array<double, 3> direction{};
    std::vector<int> elements;
    int slot = -1;
};

FieldScript& TheFields() {
    static FieldScript fields;
    return fields;
}

/// Finds no gradient anywhere.
class FlatFields : public qnl::FieldKernel {
public:
    explicit FlatFields(std::size_t nodes) : entries_(3 * (nodes + 1)) {}

    qnl::GradientReport RecoverGradients(const double* const* fields, int count, double* gradients) override {
        TheFields().recovered.emplace_back(fields, fields + count);
        std::fill_n(gradients, entries_ * static_cast<std::size_t>(count), 0.0);
        return {7, 0, 0, 0};
    }
    void PrepareSlots(int n) override { TheFields().slots = n; }
    qnl::RayPieces FindPieces(const std::array<double, 3>& origin, const std::array<double, 3>& direction,
                              const int* passElements, int count, int slot) override {
        TheFields().origin = origin;
        TheFields().direction = direction;
        TheFields().elements.assign(passElements, passElements + count);
        TheFields().slot = slot;
        return {TheFields().pieces.data(), static_cast<int>(TheFields().pieces.size())};
    }

private:
    std::size_t entries_;
};

/// Two tetras of 1 mm on the z axis, whose corners on it are the nodes 1, 2 and 3. Node 1 is listed and sees
/// a face and both.
class ResolvedLoop : public testing::Test {
protected:
    ResolvedLoop() : stack_(5, {0.0, 2.0}, {0.5, 1.5}, 2.0), job_(stack_.job) {
        for (std::size_t cell = 1; cell <= 2; ++cell) {
            cells_[cell].nNode = 4;
            cells_[cell].nodes = corners_[cell - 1].data();
            TheFields().pieces.push_back(Piece(static_cast<int>(cell)));
        }
        job_.p_Cell = cells_.data();
        job_.m_nSurfaceNodes = 1;
        job_.m_dGeomTolerance = 1.0;
        job_.m_dFreezeTemp = 100.0;
        job_.m_options.mode = qnl::Mode::Resolved;
        Script(job_).rays[1] = {1, 3, 4};
        for (qnl::OwnedArray<double>& slot : job_.m_pNodeData) {
            slot = std::make_unique<double[]>(6);
        }
        StackJob::Fill<double>(job_.m_pNodeData[qnl::kTemperature].get(), {40.0, 100.0, 120.0, 30.0, 30.0});
    }
    ~ResolvedLoop() override { TheFields() = {}; }

    qnl::RayPiece Piece(int cell) const {
        const auto& c = corners_[static_cast<std::size_t>(cell) - 1];
        return {cell - 1.0, cell * 1.0, {1, 0, 0, 0}, {0, 1, 0, 0}, {c[1], c[2], c[3], c[4]}, cell};
    }

    void SetNodes(qnl::FieldSlot slot, const std::vector<double>& values) {
        StackJob::Fill(job_.m_pNodeData[slot].get(), values);
    }
    void SetVelocity(std::size_t component, const std::vector<float>& values) {
        job_.m_pNodeVector[component] = std::make_unique<float[]>(6);
        StackJob::Fill(job_.m_pNodeVector[component].get(), values);
    }

    const std::array<std::array<int, 5>, 2> corners_{{{0, 1, 2, 4, 5}, {0, 2, 3, 4, 5}}};
    std::array<CellRecord, 3> cells_{};
    StackJob stack_;
    FrozenLayerJob& job_;
};

}  // namespace

std::unique_ptr<qnl::FieldKernel> qnl::MakeFieldKernel(CQNLOptKer& /*kernel*/) {
    return TheFields().offered ? std::make_unique<FlatFields>(5) : nullptr;
}

TEST_F(ResolvedLoop, EvaluatesTheFieldAlongTheNormal) {
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pHasProfile[1], 1);
    EXPECT_EQ(job_.m_pFrozenRatio[1], 50.0) << "40, 100 and 120 degC at 0, 1 and 2 mm";
    EXPECT_EQ(job_.m_pMaxTemperature[1], 120.0);
    EXPECT_EQ(TheFields().origin, (std::array<double, 3>{1.0, 0.0, 0.0}));
    EXPECT_EQ(TheFields().direction, (std::array<double, 3>{0.0, 0.0, 1.0}));
    EXPECT_EQ(TheFields().elements, (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(TheFields().slot, 0);
}

TEST_F(ResolvedLoop, NotesTheLayersOfTheWallByNode) {
    qnl::profile::EvaluateSurfaceNodes(job_);
    ASSERT_EQ(job_.m_wallLayers.size(), 6U);
    const qnl::WallLayers& layers = job_.m_wallLayers[1];
    EXPECT_EQ(layers.frozenHere, 1.0);
    EXPECT_EQ(layers.frozenFar, 0.0);
    EXPECT_EQ(layers.moltenCore, 1.0);
    EXPECT_EQ(layers.wall, 2.0);
    EXPECT_EQ(layers.hottest, 120.0);
    EXPECT_EQ(job_.m_wallLayers[2].wall, 0.0) << "a node that is not listed";
}

TEST_F(ResolvedLoop, TellsOnlyTheWallOfAMaterialWithoutFreezeTemperature) {
    job_.m_bIsThermoset = 1;
    qnl::profile::EvaluateSurfaceNodes(job_);
    const qnl::WallLayers& layers = job_.m_wallLayers[1];
    EXPECT_TRUE(std::isnan(layers.frozenHere));
    EXPECT_TRUE(std::isnan(layers.frozenFar));
    EXPECT_TRUE(std::isnan(layers.moltenCore));
    EXPECT_EQ(layers.wall, 2.0);
    EXPECT_EQ(layers.hottest, 120.0);
}

TEST_F(ResolvedLoop, RecoversTheGradientsOnceForEveryOutputTime) {
    using Fields = std::vector<const double*>;
    stack_.SetThreads(2);
    job_.m_bHasIntermediateTimes = 1;
    qnl::profile::EvaluateSurfaceNodes(job_);
    const Fields temperature{job_.m_pNodeData[qnl::kTemperature].get()};
    EXPECT_EQ(TheFields().recovered, std::vector<Fields>{temperature});
    EXPECT_EQ(TheFields().slots, 2);
    EXPECT_EQ(job_.m_fieldReport.nodes, 7);
    const qnl::FieldKernel* kernel = job_.m_pFieldKernel.get();
    job_.m_bHasIntermediateTimes = 0;
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(TheFields().recovered, (std::vector<Fields>{temperature, temperature}));
    EXPECT_EQ(job_.m_pFieldKernel.get(), kernel);
}

TEST_F(ResolvedLoop, OtherModesAskForNoField) {
    job_.m_options.mode = qnl::Mode::Corrected;
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pFieldKernel, nullptr);
    EXPECT_EQ(job_.m_pMaxTemperature[1], 0.0) << "of faces and cells, which have none";
}

TEST_F(ResolvedLoop, AKernelWithoutFieldsIsAnError) {
    TheFields().offered = false;
    EXPECT_THROW(qnl::profile::EvaluateSurfaceNodes(job_), std::runtime_error);
}

TEST_F(ResolvedLoop, VelocityIsWeighedByLength) {
    job_.m_bHasFlow = 1;
    SetNodes(qnl::kVolumeShrinkage, {1.0, 5.0, 3.0});
    SetVelocity(0, {1.0F, 2.0F, 4.0F});
    SetVelocity(1, {0.0F, 3.0F, 0.0F});
    job_.m_pAverageVelocityW[1] = 9.0;
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pMaxVolumeShrinkage[1], 5.0);
    EXPECT_EQ(job_.m_pAverageVelocityU[1], (0.5 * 1.0 + 1.0 * 2.0 + 0.5 * 4.0) / 2.0);
    EXPECT_EQ(job_.m_pAverageVelocityV[1], 3.0) << "samples at rest do not count";
    EXPECT_EQ(job_.m_pAverageVelocityW[1], 0.0) << "a component that is not there";
}

TEST_F(ResolvedLoop, BulkTemperatureWeighsByTheSpeedAtTheSamples) {
    SetNodes(qnl::kSpeed, {0.0, 1.0, 2.0});
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pBulkTemperature[1], (1.0 * 1.0 * 100.0 + 0.5 * 2.0 * 120.0) / 2.0);
}

TEST_F(ResolvedLoop, FewerThanTwoPassElementsAreNoProfile) {
    Script(job_).rays[1] = {3};
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pHasProfile[1], 0) << "though its piece has two ends";
}

TEST_F(ResolvedLoop, ARayWithoutPiecesHasNoProfile) {
    TheFields().pieces.clear();
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pHasProfile[1], 0);
    qnl::profile::ProfileScratch scratch;
    scratch.resolved.TakeInput(qnl::profile::FieldsOf(job_));
    NodeProfileResult result;
    EXPECT_EQ(CalcuFrozenAtNode(job_, 1, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, result, scratch), 1);
}

TEST_F(ResolvedLoop, FlakesAreThoseOfTheCellsOfTheSamples) {
    job_.m_bIsFlakeLightIntensity = 1;
    job_.m_dGeomTolerance = 2.5;
    StackJob::Fill<double>(job_.m_pCellFiber[2].get(), {0.75, 0.25});
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pFlakeColorIntensity[1], 0.75) << "the outer half, to 1 mm, lies in cell 1";
    TheFields().pieces[0].to = 0.5;
    TheFields().pieces[1].from = 0.5;
    qnl::profile::EvaluateSurfaceNodes(job_);
    EXPECT_EQ(job_.m_pFlakeColorIntensity[1], (0.5 * 0.75 + 1.5 * 0.25) / 2.0)
        << "the first cell ends before that";
}

TEST_F(ResolvedLoop, SamplesStandForElementsAndForMergedSamples) {
    using namespace qnl::profile;
    RecoverTemperature(job_);
    ProfileScratch scratch;
    scratch.resolved.TakeInput(FieldsOf(job_));
    const std::vector<int> found{1, 3, 4};
    const RayProfile profile =
        ResolveRay(job_, {{1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}, 0}, {found.data(), 3}, scratch);
    EXPECT_EQ(profile.direction.z, 1.0);
    const std::vector<double> depths{0.0, 1.0, 2.0};
    const std::vector<double> temperatures{40.0, 100.0, 120.0};
    const std::vector<int> elements{3, 3, 4};
    ASSERT_EQ(profile.elements.Count(), 3);
    ASSERT_EQ(profile.samples.Count(), 3);
    for (int j = 1; j <= 3; ++j) {
        const auto k = static_cast<std::size_t>(j) - 1;
        EXPECT_EQ(profile.elements.depths[j], depths[k]);
        EXPECT_EQ(profile.samples.depths[j], depths[k]);
        EXPECT_EQ(profile.temperatures[j], temperatures[k]);
        EXPECT_EQ(profile.samples.temperatures[j], temperatures[k]);
        EXPECT_EQ(profile.elements.elements[j].Value(), elements[k]) << "two faces, then the cells";
        EXPECT_EQ(profile.samples.elements[j].Value(), elements[k]);
    }
}

TEST_F(ResolvedLoop, OnlyTheFieldsThatTheStageNeedsAreSampled) {
    using qnl::profile::ProfileField;
    qnl::profile::RecoverTemperature(job_);
    const auto needs = [this](ProfileField field) { return qnl::profile::FieldsOf(job_).Has(field); };
    EXPECT_TRUE(needs(ProfileField::Temperature));
    EXPECT_TRUE(needs(ProfileField::BulkWeight));
    for (const ProfileField field :
         {ProfileField::VolumeShrinkage, ProfileField::GasMarker, ProfileField::CoolingTime,
          ProfileField::Density, ProfileField::VelocityU}) {
        EXPECT_FALSE(needs(field)) << static_cast<int>(field);
    }
    job_.m_bIsGasIn = 1;
    EXPECT_TRUE(needs(ProfileField::GasMarker));
    job_.m_bIsGasIn = 0;
    job_.m_bGasInCool = 1;
    EXPECT_TRUE(needs(ProfileField::GasMarker));
    job_.m_bFillHasCoolingTime = 1;
    EXPECT_TRUE(needs(ProfileField::CoolingTime));
    job_.m_bHasIntermediateTimes = 1;
    EXPECT_TRUE(needs(ProfileField::Density));
    EXPECT_TRUE(needs(ProfileField::VolumeShrinkage));
    job_.m_bHasIntermediateTimes = 0;
    job_.m_bHasWarp = 1;
    EXPECT_TRUE(needs(ProfileField::VolumeShrinkage));
    job_.m_bHasWarp = 0;
    SetVelocity(2, {1.0F});
    EXPECT_FALSE(needs(ProfileField::VelocityW));
    job_.m_bHasFlow = 1;
    EXPECT_TRUE(needs(ProfileField::VelocityW));
    EXPECT_TRUE(needs(ProfileField::VolumeShrinkage));
    job_.m_bFillHasCoolingTime = 0;
    job_.m_bHasCool = 1;
    EXPECT_TRUE(needs(ProfileField::CoolingTime));
    EXPECT_FALSE(needs(ProfileField::BulkWeight));
}

TEST_F(ResolvedLoop, TheTemperatureAloneIsSampledWhenNoMoreIsWanted) {
    using qnl::profile::FieldsWanted;
    using qnl::profile::ProfileField;
    job_.m_bHasFlow = 1;
    SetVelocity(0, {1.0F});
    qnl::profile::RecoverTemperature(job_);
    const qnl::profile::ProfileInput input = qnl::profile::FieldsOf(job_, FieldsWanted::Temperature);
    EXPECT_TRUE(input.Has(ProfileField::Temperature));
    EXPECT_FALSE(input.Has(ProfileField::VolumeShrinkage));
    EXPECT_FALSE(input.Has(ProfileField::BulkWeight));
    EXPECT_FALSE(input.Has(ProfileField::VelocityU));
}

TEST_F(ResolvedLoop, OnlyTheTemperatureHasGradients) {
    job_.m_bHasIntermediateTimes = 1;
    job_.m_bIsGasIn = 1;
    job_.m_bFillHasCoolingTime = 1;
    qnl::profile::RecoverTemperature(job_);
    ASSERT_EQ(TheFields().recovered.front().size(), 1U);
    EXPECT_EQ(TheFields().recovered.front().front(), job_.m_pNodeData[qnl::kTemperature].get());
    const qnl::profile::ProfileInput input = qnl::profile::FieldsOf(job_);
    EXPECT_EQ(input.mesh.nodes, job_.p_Node);
    EXPECT_EQ(input.mesh.cells, job_.p_Cell);
    EXPECT_EQ(input.fields[qnl::kTemperature].gradients, job_.m_pFieldGradients.get());
    for (const qnl::FieldSlot slot :
         {qnl::kVolumeShrinkage, qnl::kDensity, qnl::kGasMarker, qnl::kSpeed, qnl::kCoolingTime}) {
        EXPECT_EQ(input.fields[static_cast<std::size_t>(slot)].values, job_.m_pNodeData[slot].get());
        EXPECT_EQ(input.fields[static_cast<std::size_t>(slot)].gradients, nullptr) << slot;
    }
}

TEST_F(ResolvedLoop, TheTemperatureKeepsWithinItsRange) {
    qnl::profile::RecoverTemperature(job_);
    EXPECT_EQ(qnl::profile::FieldsOf(job_).fields[qnl::kTemperature].known.lowest, 30.0);
    EXPECT_TRUE(std::isinf(qnl::profile::FieldsOf(job_).fields[qnl::kTemperature].known.highest));
    SetNodes(qnl::kTemperature, {120.0, 120.0, 20.0, 120.0, 120.0});
    EXPECT_EQ(qnl::profile::FieldsOf(job_).fields[qnl::kTemperature].known.lowest, 20.0);
    EXPECT_EQ(qnl::profile::FieldsOf(job_).fields[qnl::kTemperature].known.highest, 120.0);
}
