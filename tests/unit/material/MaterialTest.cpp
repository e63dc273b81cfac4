#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include "material/MaterialFile.h"
#include "platform/Faults.h"
#include "platform/QnlMaterial.h"
#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"

namespace {

constexpr const char* kConstant = R"(name = "Generic ABS"
kind = "thermoplastic"
type_code = 6
freeze_temperature = 130.0
density = 1.03
)";

constexpr const char* kPvt = R"(kind = "thermoplastic"
freeze_temperature = 130
[pvt]
b1m = 9.76e-4
b2m = 6.2e-7
b3m = 1.69e8
b4m = 4.1e-3
b1s = 9.75e-4
b2s = 2.4e-7
b3s = 2.62e8
b4s = 2.8e-3
b5 = 373
b6 = 2.3e-7
b7 = 1.2e-6
b8 = 0.08
b9 = 1.5e-8
)";

std::string Without(const std::string& text, const std::string& key) {
    const std::size_t begin = text.find(key + " = ");
    EXPECT_NE(begin, std::string::npos) << key;
    return std::string(text).erase(begin, text.find('\n', begin) + 1 - begin);
}

std::string With(const std::string& text, const std::string& key, const std::string& value) {
    const std::size_t begin = text.find(key + " = ") + key.size() + 3;
    return std::string(text).replace(begin, text.find('\n', begin) - begin, value);
}

using Handle = std::unique_ptr<QnlMaterial, void (*)(QnlMaterial*)>;

Handle Open(const std::string& path) {
    return {QnlGetMaterial(path.c_str()), QnlReleaseMaterial};
}

TEST(Material, GivesAConstantDensity) {
    const ScratchFolder folder;
    const CapturedOutput output;
    qnl::TakeFaults();
    const Handle material = Open(folder.Write("abs.toml", kConstant));
    ASSERT_TRUE(material);
    EXPECT_TRUE(QnlIsThermoplastic(material.get()));
    EXPECT_FALSE(QnlIsThermoset(material.get()));
    EXPECT_EQ(material->typeCode, 6);
    EXPECT_EQ(QnlGetFreezeTemp(material.get()), 130.0);
    EXPECT_EQ(QnlGetDensity(material.get(), 1.0e7, 100.0, 0.0), 1.03);
    EXPECT_EQ(output.Text(), "");
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST(Material, FollowsTheTaitLawOnBothSides) {
    const ScratchFolder folder;
    const Handle material = Open(folder.Write("abs.toml", kPvt));
    ASSERT_TRUE(material);
    EXPECT_EQ(QnlGetFreezeTemp(material.get()), 130.0);
    struct State {
        double pressure, temperature, density;
    };
    // Evaluated with 50 digits; the last two states are melt.
    const State states[] = {{1.0e7, 100.0, 1.0279448205846526},
                            {0.0, 25.0, 1.0448894863437738},
                            {1.0e7, 230.0, 0.95455134954941467},
                            {1.0e8, 150.0, 1.0439389421300790}};
    for (const State& state : states) {
        EXPECT_NEAR(QnlGetDensity(material.get(), state.pressure, state.temperature, 0.0), state.density,
                    1e-13)
            << state.pressure << " Pa, " << state.temperature << " degC";
    }
}

TEST(Material, IsSolidUpToTheTransitionItself) {
    qnl::material::TaitLaw law;
    law.melt = {2.0, 0.0, 1.0, 0.0};
    law.solid = {1.0, 0.0, 1.0, 0.0};
    law.b5 = 300.0;
    law.b6 = 10.0;
    law.b7 = 0.25;
    EXPECT_EQ(qnl::material::SpecificVolume(law, 0.0, 300.0), 1.25);
    EXPECT_EQ(qnl::material::SpecificVolume(law, 0.0, std::nextafter(300.0, 400.0)), 2.0);
    const double compressed = 1.0 - 0.0894 * std::log(4.0);
    EXPECT_EQ(qnl::material::SpecificVolume(law, 3.0, 330.0), compressed + 0.25);
    EXPECT_EQ(qnl::material::SpecificVolume(law, 3.0, std::nextafter(330.0, 400.0)), 2.0 * compressed);
}

TEST(Material, NeedsNothingMoreOfAThermoset) {
    const ScratchFolder folder;
    const Handle material = Open(folder.Write("epoxy.toml", "kind = \"thermoset\"\n"));
    ASSERT_TRUE(material);
    EXPECT_FALSE(QnlIsThermoplastic(material.get()));
    EXPECT_TRUE(QnlIsThermoset(material.get()));
    EXPECT_EQ(material->typeCode, 0);
    EXPECT_EQ(QnlGetFreezeTemp(material.get()), 0.0);
}

TEST(Material, OfAnotherKindIsNeither) {
    const ScratchFolder folder;
    const Handle material = Open(folder.Write("a.toml", "kind = \"metal\"\n"));
    ASSERT_TRUE(material);
    EXPECT_FALSE(QnlIsThermoplastic(material.get()));
    EXPECT_FALSE(QnlIsThermoset(material.get()));
}

TEST(Material, WithoutAHandleIsNothing) {
    EXPECT_FALSE(QnlIsThermoplastic(nullptr));
    EXPECT_FALSE(QnlIsThermoset(nullptr));
    EXPECT_EQ(QnlGetFreezeTemp(nullptr), 0.0);
    EXPECT_EQ(QnlGetDensity(nullptr, 0.0, 0.0, 0.0), 0.0);
    QnlReleaseMaterial(nullptr);
}

struct Rejection {
    const char* name;
    std::string text;
    const char* message;  ///< what follows the path
};

const std::string kBase = kConstant;
const std::string kLaw = kPvt;

const std::vector<Rejection> kRejections = {
    {"Empty", "", ", line 1: needs the key \"kind\""},
    {"NoKind", Without(kBase, "kind"), ", line 1: needs the key \"kind\""},
    {"KindANumber", With(kBase, "kind", "1"), ", line 2: \"kind\" must be a text"},
    {"NameANumber", With(kBase, "name", "1"), ", line 1: \"name\" must be a text"},
    {"TypeCodeAText", With(kBase, "type_code", "\"6\""),
     ", line 3: \"type_code\" must be an integer of 32 bits"},
    {"TypeCodeReal", With(kBase, "type_code", "6.0"),
     ", line 3: \"type_code\" must be an integer of 32 bits"},
    {"TypeCodeRealBeyondIntegers", With(kBase, "type_code", "1e84"),
     ", line 3: \"type_code\" must be an integer of 32 bits"},
    {"TypeCodeTooLarge", With(kBase, "type_code", "2147483648"),
     ", line 3: \"type_code\" must be an integer of 32 bits"},
    {"NoFreezeTemperature", Without(kBase, "freeze_temperature"),
     ", line 1: needs the key \"freeze_temperature\""},
    {"FreezeTemperatureAText", With(kBase, "freeze_temperature", "\"130\""),
     ", line 4: \"freeze_temperature\" must be a finite number"},
    {"FreezeTemperatureNan", With(kBase, "freeze_temperature", "nan"),
     ", line 4: \"freeze_temperature\" must be a finite number"},
    {"FreezeTemperatureInfinite", With(kBase, "freeze_temperature", "-inf"),
     ", line 4: \"freeze_temperature\" must be a finite number"},
    {"FreezeTemperatureBoolean", With(kBase, "freeze_temperature", "true"),
     ", line 4: \"freeze_temperature\" must be a finite number"},
    {"NoDensity", Without(kBase, "density"), ", line 1: needs the key \"density\" or the table \"pvt\""},
    {"DensityZero", With(kBase, "density", "0.0"), ", line 5: \"density\" must be above 0"},
    {"DensityNegative", With(kBase, "density", "-1"), ", line 5: \"density\" must be above 0"},
    {"DensityNan", With(kBase, "density", "nan"), ", line 5: \"density\" must be a finite number"},
    {"DensityAndPvt", kLaw.substr(0, kLaw.find("[pvt]")) + "density = 1\n" + kLaw.substr(kLaw.find("[pvt]")),
     ", line 3: give \"density\" or the table \"pvt\", not both"},
    {"PvtANumber", Without(kBase, "density") + "pvt = 1\n", ", line 5: \"pvt\" must be a table"},
    {"PvtWithoutB9", Without(kLaw, "b9"), ", line 3: needs the key \"b9\""},
    {"PvtCoefficientAText", With(kLaw, "b4s", "\"x\""), ", line 11: \"b4s\" must be a finite number"},
    {"PvtWithoutDensity", With(kLaw, "b1s", "-1.0"),
     ", line 3: \"pvt\" gives no positive density at 1e7 Pa, 30 degrees below freezing"},
    {"PvtNotFinite", With(kLaw, "b3s", "-1.0"),
     ", line 3: \"pvt\" gives no positive density at 1e7 Pa, 30 degrees below freezing"},
};

class RejectedMaterial : public testing::TestWithParam<Rejection> {};

TEST_P(RejectedMaterial, SaysFileLineAndReason) {
    const ScratchFolder folder;
    const std::string path = folder.Write("a.toml", GetParam().text);
    qnl::TakeFaults();
    const CapturedOutput output;
    EXPECT_FALSE(Open(path));
    EXPECT_EQ(output.Text(), "Material " + path + GetParam().message + "\n");
    const std::vector<qnl::Fault> faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1u);
    EXPECT_EQ(faults[0].file, path);
}

INSTANTIATE_TEST_SUITE_P(OneKey, RejectedMaterial, testing::ValuesIn(kRejections),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(Material, WithASyntaxErrorIsReportedOnOneLine) {
    const ScratchFolder folder;
    for (const char* text :
         {"kind = \"thermoset\"\nname = \n", "kind = \"thermoset\"\n= 1\n", "kind = \"a\"\nkind = \"b\"\n"}) {
        const std::string path = folder.Write("a.toml", text);
        const CapturedOutput output;
        EXPECT_FALSE(Open(path));
        const std::string line = output.Text();
        EXPECT_EQ(line.find("Material " + path + ", line 2: "), 0u) << line;
        EXPECT_EQ(line.find('\n'), line.size() - 1) << line;
    }
    qnl::TakeFaults();
}

TEST(Material, ThatCannotBeReadIsReported) {
    const ScratchFolder folder;
    qnl::TakeFaults();
    const CapturedOutput output;
    EXPECT_FALSE(Open(folder.File("missing.toml")));
    EXPECT_FALSE(Open(folder.Path()));
    EXPECT_EQ(QnlGetMaterial(nullptr), nullptr);
    EXPECT_EQ(output.Text(), "Material " + folder.File("missing.toml") + ": the file cannot be read\n" +
                                 "Material " + folder.Path() + ": the file cannot be read\n" +
                                 "Material : the file cannot be read\n");
    EXPECT_EQ(qnl::TakeFaults().size(), 3u);
}

TEST(Material, ThatIsNoUtf8IsRejected) {
    const ScratchFolder folder;
    const std::string path = folder.Write("a.toml", "name = \"\xff\"\n");
    const CapturedOutput output;
    EXPECT_FALSE(Open(path));
    EXPECT_EQ(output.Text(), "Material " + path + ", line 1: Encountered invalid utf-8 sequence\n");
    qnl::TakeFaults();
}

TEST(Material, NestedBeyondMeasureIsRejected) {
    const ScratchFolder folder;
    const std::string path = folder.Write("a.toml", "x = " + std::string(100000, '['));
    const CapturedOutput output;
    EXPECT_FALSE(Open(path));
    EXPECT_EQ(output.Text().find("Material " + path + ", line 1: "), 0u);
    qnl::TakeFaults();
}

}  // namespace
