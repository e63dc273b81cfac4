#include "profiles/RayProbeReport.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>

#include "project/ProjectPaths.h"
#include "support/CapturedOutput.h"
#include "support_apps/BoxProject.h"

namespace {

using qnl::kernel::Point;
using qnl::profiles::ProbeRequest;
using qnl::project::InputProblem;

std::vector<std::string> Lines(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> Fields(const std::string& line) {
    std::istringstream in(line);
    std::vector<std::string> fields;
    for (std::string field; std::getline(in, field, ',');) {
        fields.push_back(field);
    }
    return fields;
}

/// 130 degC in the middle of the wall at 1 s, 10 K less at 2 s, falling by 10 K/mm towards the bottom.
struct ProbeTest : testing::Test {
    ProbeTest() {
        for (const auto& [index, seconds, middle] : {std::tuple(1, 1.0F, 130.0), {0, 2.0F, 120.0}}) {
            const double offset = middle - 10.0;
            project.AddTime(
                index, seconds, [&](const Point& place) { return offset + 10.0 * place[2]; },
                [](const Point& place) { return OnSurfaceOfCubes(place) ? 1.0 : std::nan(""); });
        }
    }
    ProbeRequest Request() const { return {{{project.Folder()}, false}, {}, {}, {}, false}; }

    BoxProject project{Cubes()};
};

TEST_F(ProbeTest, TellsEveryElementAtEveryTime) {
    ProbeRequest request = Request();
    const int label = project.Label({2.0, 1.0, 2.0});
    request.labels = {label};
    const CapturedOutput output;
    EXPECT_TRUE(qnl::profiles::ProbeRays(request).empty());
    const std::vector<std::string> lines = Lines(output.Text());
    ASSERT_EQ(lines.size(), 33U);
    EXPECT_EQ(
        lines[0],
        "Node label,Time [s],Depth [mm],Temperature [°C],Frozen,Element kind,Element number,x [mm],y [mm],"
        "z [mm],\"Frozen layer, this side [mm]\",\"Frozen layer, far side [mm]\",Molten core [mm],Wall "
        "thickness "
        "[mm]");
    struct Expected {
        const char* depth;
        std::array<const char*, 2> temperature;
        std::array<const char*, 2> frozen;
        const char* kind;
        const char* z;
    };
    constexpr std::array<Expected, 4> kExpected{{
        {"0", {"140", "130"}, {"0", "0"}, "face", "2"},
        {"0.5", {"135", "125"}, {"0", "1"}, "cell", "1.5"},
        {"1.5", {"125", "115"}, {"1", "1"}, "cell", "0.5"},
        {"2", {"120", "110"}, {"1", "1"}, "face", "0"},
    }};
    for (std::size_t row = 0; row < 32; ++row) {
        const std::vector<std::string> fields = Fields(lines[row + 1]);
        const std::size_t time = row / 16;
        const Expected& expected = kExpected[row % 16 / 4];
        ASSERT_GE(fields.size(), 10U);
        EXPECT_EQ(fields[0], std::to_string(label));
        EXPECT_EQ(fields[1], time == 0 ? "1" : "2");
        EXPECT_EQ(fields[2], expected.depth);
        EXPECT_EQ(fields[3], expected.temperature[time]);
        EXPECT_EQ(fields[4], expected.frozen[time]);
        EXPECT_EQ(fields[5], expected.kind);
        EXPECT_EQ(fields[7] + fields[8] + fields[9], std::string("21") + expected.z);
        EXPECT_EQ(lines[row + 1].substr(lines[row + 1].size() - 4), ",,,,") << "averages tell of no layers";
    }
}

TEST_F(ProbeTest, WritesRowsAndPolylines) {
    ProbeRequest request = Request();
    const ScratchFolder folder;
    request.labels = {project.Label({2.0, 1.0, 2.0}), project.Label({0.0, 1.0, 1.0})};
    request.out = folder.File("rays.csv");
    EXPECT_EQ(qnl::profiles::ProbeRays(request),
              (std::vector<std::string>{folder.File("rays.csv"), folder.File("rays.vtp")}));
    // Two layers of four cubes below the one node, four layers beside the other.
    EXPECT_EQ(Lines(folder.Read("rays.csv")).size(), 1U + 2U * (16U + 24U));
    const std::string lines = folder.Read("rays.vtp");
    EXPECT_NE(lines.find("<Piece NumberOfPoints=\"40\" NumberOfLines=\"2\">"), std::string::npos);
    EXPECT_NE(lines.find("Name=\"Temperature, 1 s [°C]\""), std::string::npos);
    EXPECT_NE(lines.find("Name=\"Frozen, 2 s\""), std::string::npos);
    EXPECT_THROW(qnl::profiles::ProbeRays(request), InputProblem);
    request.force = true;
    EXPECT_NO_THROW(qnl::profiles::ProbeRays(request));
}

TEST_F(ProbeTest, APointStandsForTheNearestSurfaceNode) {
    ProbeRequest request = Request();
    request.points = {{2.2, 1.1, 3.0}};
    const CapturedOutput output;
    qnl::profiles::ProbeRays(request);
    EXPECT_EQ(Fields(Lines(output.Text())[1])[0], std::to_string(project.Label({2.0, 1.0, 2.0})));
}

TEST_F(ProbeTest, NodesInsideAndUnknownLabelsAreRefused) {
    for (const int label : {project.Label({2.0, 1.0, 1.0}), 0, -1, 46, 2000000000}) {
        ProbeRequest request = Request();
        request.labels = {label};
        EXPECT_THROW(qnl::profiles::ProbeRays(request), InputProblem) << label;
    }
}

TEST_F(ProbeTest, AMaterialWithoutAFreezeTemperatureLeavesTheColumnEmpty) {
    project.MakeThermoset();
    ProbeRequest request = Request();
    request.labels = {project.Label({2.0, 1.0, 2.0})};
    const CapturedOutput output;
    qnl::profiles::ProbeRays(request);
    EXPECT_EQ(Fields(Lines(output.Text())[1])[4], "");
}

}  // namespace
