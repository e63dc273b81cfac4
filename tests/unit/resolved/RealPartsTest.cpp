// The example projects: temperature over depth turns no more often, by half a percent of the range, than the
// nodal temperatures along the ray's cells, where the averages of these cells make a staircase.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>

#include "kernel/MeshKernelState.h"
#include "platform/CQNLOptKer.h"
#include "profile/resolved/ResolvedProfile.h"
#include "results/ResultFile.h"

namespace qnl::profile {
namespace {

constexpr int kRays = 500;
constexpr int kFlowTemperatureItem = 6;

// Places at which a curve changes from rising to falling or back by more than `slack`.
int Turns(const std::vector<double>& curve, double slack) {
    int turns = 0;
    int sense = 0;
    double extreme = curve.empty() ? 0.0 : curve.front();
    for (const double value : curve) {
        if (std::fabs(value - extreme) <= slack) {
            continue;
        }
        const int now = value > extreme ? 1 : -1;
        turns += sense != 0 && now != sense ? 1 : 0;
        sense = now;
        extreme = value;
    }
    return turns;
}

class Part {
public:
    Part(const std::string& mesh, const std::string& stage) {
        std::string path = mesh;
        EXPECT_EQ(kernel_.ReadMeshData(path.data(), 0), 1);
        kernel_.InitialzeSearch(1);
        fields_ = MakeFieldKernel(kernel_);
        fields_->PrepareSlots(1);
        const auto size = static_cast<std::size_t>(kernel_.m_nNodes) + 1;
        for (std::vector<double>& normals : normals_) {
            normals.assign(size, 0.0);
        }
        kernel_.ComputeNodeSurfaceNormal(normals_[0].data(), normals_[1].data(), normals_[2].data());
        TakeTemperatures(stage);
        gradients_.resize(3 * size);
        const double* field = temperatures_.data();
        fields_->RecoverGradients(&field, 1, gradients_.data());
        range_ = RangeOfCooling({kernel_.p_Node, kernel_.p_Cell}, temperatures_.data(), kernel_.m_nNodes,
                                kernel_.m_nCells);
    }

    double Span() const {
        const auto [low, high] = std::minmax_element(temperatures_.begin() + 1, temperatures_.end());
        return *high - *low;
    }

    // Calls check(resolved, nodal, by averages of faces and cells) for random surface nodes; nodal are the
    // temperatures of the corners of the passed cells.
    template <class Check>
    void ForRays(Check check) {
        std::mt19937 random(11);
        ResolvedProfile profile;
        profile.TakeInput(Input());
        for (int ray = 0; ray < kRays;) {
            const int node = 1 + static_cast<int>(random() % static_cast<std::uint32_t>(kernel_.m_nNodes));
            const std::array<double, 3> inward = Inward(node);
            const NodeRecord& at = kernel_.p_Node[node];
            if (kernel_.m_pNotRunnerNode[at.label] != 1 || inward == std::array<double, 3>{}) {
                continue;
            }
            int count = 0;
            const int* ids =
                kernel_.FindPassElemByAnyRay(count, at.x, at.y, at.z, inward[0], inward[1], inward[2], 0);
            const std::vector<int> passed(ids, ids + count);
            profile.Sample(fields_->FindPieces({at.x, at.y, at.z}, inward, passed.data(), count, 0));
            if (profile.Count() >= 2) {
                check(Curve(profile), Corners(passed, inward), Averages(passed, inward));
                ++ray;
            }
        }
    }

private:
    void TakeTemperatures(const std::string& stage) {
        const results::ResultFileContent content = results::ReadResultFile(stage);
        const auto item =
            std::find_if(content.items.begin(), content.items.end(),
                         [](const results::ResultItem& own) { return own.id == kFlowTemperatureItem; });
        temperatures_.assign(1, 0.0);
        for (int node = 1; node <= kernel_.m_nNodes; ++node) {
            temperatures_.push_back(
                item->values.at(static_cast<std::size_t>(kernel_.p_Node[node].label) - 1));
        }
    }

    std::array<double, 3> Inward(int node) const {
        const auto n = static_cast<std::size_t>(node);
        return {0.0 - normals_[0][n], 0.0 - normals_[1][n], 0.0 - normals_[2][n]};
    }

    ProfileInput Input() const {
        ProfileInput input;
        input.mesh = {kernel_.p_Node, kernel_.p_Cell};
        input.fields[0] = {temperatures_.data(), gradients_.data(), 3, range_};
        return input;
    }

    static std::vector<double> Curve(const ResolvedProfile& profile) {
        std::vector<double> values;
        for (int i = 1; i <= profile.Count(); ++i) {
            values.push_back(profile.Values(ProfileField::Temperature)[i]);
        }
        return values;
    }

    static double Along(const std::array<double, 3>& inward, const std::array<double, 3>& place) {
        return (inward[0] * place[0] + inward[1] * place[1]) + inward[2] * place[2];
    }

    static std::vector<double> Sorted(std::vector<std::pair<double, double>> byDepth) {
        std::sort(byDepth.begin(), byDepth.end());
        std::vector<double> values;
        for (const auto& sample : byDepth) {
            values.push_back(sample.second);
        }
        return values;
    }

    const EntityRecord& Element(int id) const {
        return id <= kernel_.m_nSurfaces ? kernel_.p_Surfce[id] : kernel_.p_Cell[id - kernel_.m_nSurfaces];
    }

    std::vector<double> Corners(const std::vector<int>& passed, const std::array<double, 3>& inward) const {
        std::set<int> nodes;
        for (const int id : passed) {
            nodes.insert(Element(id).nodes + 1, Element(id).nodes + 1 + Element(id).nNode);
        }
        std::vector<std::pair<double, double>> byDepth;
        for (const int node : nodes) {
            const NodeRecord& at = kernel_.p_Node[node];
            byDepth.emplace_back(Along(inward, {at.x, at.y, at.z}),
                                 temperatures_[static_cast<std::size_t>(node)]);
        }
        return Sorted(std::move(byDepth));
    }

    // At the depth of their box middles.
    std::vector<double> Averages(const std::vector<int>& passed, const std::array<double, 3>& inward) const {
        std::vector<std::pair<double, double>> byDepth;
        for (const int id : passed) {
            const EntityRecord& own = Element(id);
            std::array<double, 3> middle{};
            for (std::size_t a = 0; a < 3; ++a) {
                middle[a] = 0.5 * (own.boxMin[a] + own.boxMax[a]);
            }
            double sum = 0.0;
            for (int c = 1; c <= own.nNode; ++c) {
                sum += temperatures_[static_cast<std::size_t>(own.nodes[c])];
            }
            byDepth.emplace_back(Along(inward, middle), sum / own.nNode);
        }
        return Sorted(std::move(byDepth));
    }

    CQNLOptKer kernel_;
    std::unique_ptr<FieldKernel> fields_;
    std::array<std::vector<double>, 3> normals_;
    std::vector<double> temperatures_;
    std::vector<double> gradients_;
    FieldRange range_;
};

struct Example {
    const char* name;
    const char* mesh;
    const char* stage;
};

class RealParts : public ::testing::TestWithParam<Example> {};

TEST_P(RealParts, TurnNoMoreOftenThanTheNodalTemperaturesAlongTheirCells) {
    const std::string folder = std::string(QNL_EXAMPLES) + "/" + GetParam().name;
    Part part(folder + "/Mesh/" + GetParam().mesh, folder + "/Analysis/Run1/" + GetParam().stage);
    const double slack = 5e-3 * part.Span();
    int resolvedTurns = 0;
    int nodalTurns = 0;
    int averageTurns = 0;
    int more = 0;
    part.ForRays([&](const auto& resolved, const auto& nodal, const auto& averages) {
        resolvedTurns += Turns(resolved, slack);
        nodalTurns += Turns(nodal, slack);
        averageTurns += Turns(averages, slack);
        more += Turns(resolved, slack) > Turns(nodal, slack) ? 1 : 0;
    });
    EXPECT_EQ(more, 0);
    EXPECT_GT(averageTurns, 2 * resolvedTurns) << "averages make no staircase here";
    RecordProperty("turns", std::to_string(resolvedTurns) + " resolved, " + std::to_string(nodalTurns) +
                                " nodal, " + std::to_string(averageTurns) + " by averages of cells");
    std::printf("%s: turns on %d rays: %d resolved, %d nodal, %d by averages\n", GetParam().name, kRays,
                resolvedTurns, nodalTurns, averageTurns);
}

INSTANTIATE_TEST_SUITE_P(Examples, RealParts,
                         ::testing::Values(Example{"ribbed-cover", "cover.hdf", "cover1_001.k4f"},
                                           Example{"stepped-plate", "plate.hdf", "plate1.k4f"}));

}  // namespace
}  // namespace qnl::profile
