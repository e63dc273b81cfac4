#include "input/TemperatureData.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/CapturedOutput.h"
#include "unit/input/InputFixture.h"

namespace {

class LoaderTest : public InputTest {
protected:
    LoaderTest() {
        for (const char* path : {"p.k4f", "p.k4o"}) {
            fake::ResultFile& file = BinaryFile(path);
            file.maxNode = 17;
            file.maxElem = 3;
        }
    }
    /// The readers that ran, told by the items that they ask for.
    std::string Readers() const {
        std::string readers;
        for (const std::string& call : fake::ThePlatform().calls) {
            readers += call == "GetResultItem 14" ? "flow " : "";
            readers += call == "GetMaxCavityElem" ? "fibre " : "";
            readers += call == "GetResultDataIDMap 1" ? "cool " : "";
            readers += call == "GetResultItem 7" ? "warp " : "";
        }
        return readers;
    }
};

TEST_F(LoaderTest, FlowIsTheDefault) {
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4f"), 1);
    EXPECT_EQ(Readers(), "flow ");
}

TEST_F(LoaderTest, CoolOnly) {
    job_.m_bHasCool = 1;
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4f"), 1);
    EXPECT_EQ(Readers(), "cool ");
}

TEST_F(LoaderTest, WarpReadsNoTemperature) {
    job_.m_bHasWarp = 1;
    BinaryFile("p.k4f").items[6].assign(17, 50.0F);
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4f"), 1);
    EXPECT_EQ(Readers(), "warp ");
    EXPECT_EQ(Slot(0), std::vector<double>(5, -7.0));
}

TEST_F(LoaderTest, CoolThenWarp) {
    job_.m_bHasCool = 1;
    job_.m_bHasWarp = 1;
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4f"), 1);
    EXPECT_EQ(Readers(), "cool warp ");
}

TEST_F(LoaderTest, AFailedReaderEndsTheLoad) {
    job_.m_bHasCool = 1;
    job_.m_bHasWarp = 1;
    job_.m_nLogLevel = 1;
    MakeStorage();
    const CapturedOutput output;
    EXPECT_EQ(LoadTemperatureData(job_, "none.k4c"), -1);
    EXPECT_EQ(Readers(), "");
    EXPECT_EQ(output.Text(),
              "Load Temperature Data\nnone.k4c\nCan't open ReadCoolResults \nFileError = -1 \n");
}

TEST_F(LoaderTest, FailedFlowAndWarpReadersFailTheLoad) {
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "none.k4f"), -1);
    job_.m_bHasWarp = 1;
    EXPECT_EQ(LoadTemperatureData(job_, "none.k4w"), -1);
}

TEST_F(LoaderTest, ASuccessfulLoadIsLogged) {
    job_.m_bHasWarp = 1;
    job_.m_nLogLevel = 1;
    MakeStorage();
    const CapturedOutput output;
    LoadTemperatureData(job_, "p.k4f");
    EXPECT_EQ(output.Text(),
              "Load Temperature Data\np.k4f\nRead WarpResults by Binary \nnMaxNodes = 17 \n"
              "Read Temperature Data end\n");
}

TEST_F(LoaderTest, FibreResultsComeBeforeTheStage) {
    job_.m_bIsFlakeLightIntensity = 1;
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4f"), 1);
    EXPECT_EQ(fake::ThePlatform().calls[1], "BeginReading p.k4o null");
    EXPECT_EQ(Readers(), "fibre flow ");
}

TEST_F(LoaderTest, FailedFibreResultsDoNotStopTheStage) {
    job_.m_bIsFlakeLightIntensity = 1;
    BinaryFile("p.k4o").status = -2;
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4f"), 1);
    EXPECT_EQ(Readers(), "flow ");
}

TEST_F(LoaderTest, FibreResultsOfAPathWithoutDotRaise) {
    job_.m_bIsFlakeLightIntensity = 1;
    MakeStorage();
    EXPECT_THROW(LoadTemperatureData(job_, "part"), std::out_of_range);
}

TEST_F(LoaderTest, TheProbeReadsFibreResultsOnly) {
    job_.m_bKernelFlag = 1;
    job_.m_bHasCool = 1;
    job_.m_szResultFile.Set("part.fzr");
    MakeStorage();
    EXPECT_EQ(LoadTemperatureData(job_, "p.k4o"), 1);
    EXPECT_EQ(Readers(), "fibre ");
    EXPECT_STREQ(job_.m_szResultFile.Text(), "part.fzr.csv");
    EXPECT_EQ(LoadTemperatureData(job_, "none.k4o"), -1);
    EXPECT_STREQ(job_.m_szResultFile.Text(), "part.fzr.csv.csv");
}

TEST_F(LoaderTest, AProbePathThatDoesNotFitRaises) {
    job_.m_bKernelFlag = 1;
    job_.m_szResultFile.Set(std::string(509, 'x'));
    EXPECT_THROW(LoadTemperatureData(job_, "p.k4o"), std::length_error);
}

}  // namespace
