#include "input/MaterialData.h"

#include <gtest/gtest.h>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

using Calls = std::vector<std::string>;

class MaterialTest : public InputTest {
protected:
    QnlMaterial record_ = {};
};

TEST_F(MaterialTest, ThermoplasticGivesFreezeTemperatureAndDensityThirtyBelow) {
    fake::ThePlatform().material = {true, false, 120.0, 1.03};
    EXPECT_EQ(ReadMaterialData(job_, &record_), 1);
    EXPECT_EQ(job_.m_dFreezeTemp, 120.0);
    EXPECT_EQ(job_.m_dFreezeDensity, 1.03);
    EXPECT_EQ(job_.m_bIsThermoset, 0);
    EXPECT_EQ(fake::ThePlatform().calls, (Calls{"QnlIsThermoplastic", "QnlGetFreezeTemp",
                                                "QnlGetDensity 1e+07 90 0", "QnlReleaseMaterial"}));
}

TEST_F(MaterialTest, ThermoplasticLogsItsFreezeState) {
    job_.m_nLogLevel = 1;
    record_.typeCode = 6;
    fake::ThePlatform().material = {true, false, 120.0, 1.03};
    const CapturedOutput output;
    ReadMaterialData(job_, &record_);
    EXPECT_EQ(output.Text(), "FreezeTemp    = 120.000000 \nFreezeDensity = 1.030000 \nisFlakeMaterial\n");
}

TEST_F(MaterialTest, ThermosetHasNoFreezeLines) {
    job_.m_nLogLevel = 1;
    fake::ThePlatform().material = {false, true, 120.0, 1.03};
    const CapturedOutput output;
    EXPECT_EQ(ReadMaterialData(job_, &record_), 1);
    EXPECT_EQ(job_.m_bIsThermoset, 1);
    EXPECT_EQ(job_.m_dFreezeTemp, 0.0);
    EXPECT_EQ(job_.m_dFreezeDensity, 0.0);
    EXPECT_EQ(output.Text(), "isFlakeLightIntensity fasle\n");
    EXPECT_EQ(fake::ThePlatform().calls,
              (Calls{"QnlIsThermoplastic", "QnlIsThermoset", "QnlReleaseMaterial"}));
}

TEST_F(MaterialTest, NeitherKindFailsWithoutRelease) {
    job_.m_bIsFlakeLightIntensity = 1;
    job_.m_nLogLevel = 1;
    const CapturedOutput output;
    EXPECT_EQ(ReadMaterialData(job_, &record_), -1);
    EXPECT_EQ(output.Text(), "");
    EXPECT_EQ(job_.m_bIsFlakeLightIntensity, 1);
    EXPECT_EQ(fake::ThePlatform().calls, (Calls{"QnlIsThermoplastic", "QnlIsThermoset"}));
}

TEST_F(MaterialTest, FlakeMaterialKeepsWhatTheFileSetFound) {
    fake::ThePlatform().material = {true, false, 120.0, 1.03};
    record_.typeCode = 6;
    for (const int found : {0, 1}) {
        job_.m_bIsFlakeLightIntensity = static_cast<unsigned char>(found);
        EXPECT_EQ(ReadMaterialData(job_, &record_), 1);
        EXPECT_EQ(job_.m_bIsFlakeMaterial, 1);
        EXPECT_EQ(job_.m_bIsFlakeLightIntensity, found);
    }
}

TEST_F(MaterialTest, OtherMaterialEndsWithoutFlakeIntensity) {
    fake::ThePlatform().material = {true, false, 120.0, 1.03};
    for (const int code : {0, 5, 7, -6}) {
        record_.typeCode = code;
        job_.m_bIsFlakeLightIntensity = 1;
        EXPECT_EQ(ReadMaterialData(job_, &record_), 1);
        EXPECT_EQ(job_.m_bIsFlakeMaterial, 0);
        EXPECT_EQ(job_.m_bIsFlakeLightIntensity, 0);
    }
}

}  // namespace
