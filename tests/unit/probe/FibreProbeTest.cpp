#include "probe/FibreProbe.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "platform/Faults.h"
#include "support/CapturedOutput.h"
#include "support/ScratchFolder.h"
#include "support/StackJob.h"

namespace {

/// A wall of 4 mm: faces 1 and 2 at its ends, cells 1 to 3 at 1, 2 and 3 mm. Node 1, label 10, sees all;
/// node 2, label 20, sees face 1 only. Every point is located in its layer: face 1 above 0.5 mm, the cells
/// down to 3.5 mm, nothing below.
class FibreProbe : public testing::Test {
protected:
    FibreProbe() : stack(2, {0.0, 4.0}, {1.0, 2.0, 3.0}, 4.0) {
        job.m_szResultFile.Set(folder.Path() + "\\part.csv");
        Script(job).rays[1] = {2, 5, 1, 4, 3};
        Script(job).rays[2] = {1};
        Script(job).near = [](double, double, double z) { return Layer(z); };
        for (int k = 0; k < 6; ++k) {
            const double base = 0.1 * (k + 1);
            StackJob::Fill<double>(job.m_pCellFiber[k].get(), {base, base + 0.01, -base});
        }
        qnl::TakeFaults();
    }

    static std::vector<int> Layer(double z) {
        if (z >= 3.5) {
            return {};
        }
        return {z < 0.5 ? 1 : 3 + static_cast<int>(z - 0.5)};
    }

    int Run() {
        const CapturedOutput output;
        const int status = qnl::probe::RunFibreProbe(job);
        said = output.Text();
        return status;
    }
    int RunList(const std::string& list) {
        folder.Write("part_IdForFiber.txt", list);
        return Run();
    }
    int RunTyped(const std::string& input) {
        const std::string path = folder.Write("typed.txt", input);
        EXPECT_NE(std::freopen(path.c_str(), "r", stdin), nullptr);
        return Run();
    }
    std::string Csv() const { return folder.Read("part.csv"); }
    std::string Head() const {
        return folder.Path() + "\\part.csv\n" + folder.Path() + "\\part_IdForFiber.txt\n";
    }

    ScratchFolder folder;
    StackJob stack;
    FrozenLayerJob& job = stack.job;
    std::string said;
};

const std::string kBlock =
    "\n\n Height  Axx     Ayy     Azz     Axy     Axz      Ayz   \n"
    "0.0000  - surface\n"
    "1.0000  0.1000  0.2000  0.3000  0.4000  0.5000  0.6000\n"
    "2.0000  0.1100  0.2100  0.3100  0.4100  0.5100  0.6100\n"
    "3.0000  -0.1000  -0.2000  -0.3000  -0.4000  -0.5000  -0.6000\n"
    "3.5200  - surface\n";

const std::string kCsvBlock =
    "\n\n Height,  Axx,     Ayy,     Azz,     Axy,     Axz,      Ayz   \n"
    "0.0000,  -, surface\n"
    "1.0000,  0.1000,  0.2000,  0.3000,  0.4000,  0.5000,  0.6000\n"
    "2.0000,  0.1100,  0.2100,  0.3100,  0.4100,  0.5100,  0.6100\n"
    "3.0000,  -0.1000,  -0.2000,  -0.3000,  -0.4000,  -0.5000,  -0.6000\n"
    "3.5200,  -, surface\n";

const std::string kNodeTen =
    "User input ID = 10\nGbID = 1, Node X = 1.000000, Y= 0.000000 ,Z= 0.000000\n" + kBlock;
const std::string kUnknown = "GbID = 0, Node X = 0.000000, Y= 0.000000 ,Z= 0.000000\n";
const std::string kPrompt = "\n Please input node ID, <0 exit()  \n";
const std::string kNoList = "Node id file  for fiber does't exist!\n";

}  // namespace

TEST_F(FibreProbe, WritesEachElementOnceAtItsFirstHeight) {
    EXPECT_EQ(RunList("<List>\n10\n</List>\n"), 1);
    EXPECT_EQ(said, Head() + kNodeTen);
    EXPECT_EQ(Csv(), "\n\n\nID, 10\n" + kCsvBlock);
    EXPECT_EQ(job.m_bSearchDone, -1);
    EXPECT_EQ(job.m_pFibreCsv, nullptr);
    EXPECT_TRUE(qnl::TakeFaults().empty());
}

TEST_F(FibreProbe, ReplacesAnEarlierCsvAndAppendsNodeAfterNode) {
    folder.Write("part.csv", "old");
    EXPECT_EQ(RunList("<List>\n10\n</List>\n<List>\n10\n</List>\n"), 1);
    EXPECT_EQ(said, Head() + kNodeTen + kNodeTen);
    EXPECT_EQ(Csv(), "\n\n\nID, 10\n" + kCsvBlock + "\n\n\nID, 10\n" + kCsvBlock);
}

TEST_F(FibreProbe, AnEmptyListWritesNothing) {
    EXPECT_EQ(RunList("<List>\n</List>\n"), 1);
    EXPECT_EQ(said, Head());
    EXPECT_EQ(Csv(), "");
}

TEST_F(FibreProbe, FewerThanTwoPassElementsLeaveTheHeaderAlone) {
    EXPECT_EQ(RunList("<List>\n20\n</List>\n"), 1);
    EXPECT_EQ(said, Head() + "User input ID = 20\nGbID = 2, Node X = 2.000000, Y= 0.000000 ,Z= 0.000000\n");
    EXPECT_EQ(Csv(), "\n\n\nID, 20\n");
}

TEST_F(FibreProbe, UnknownIdsMapToNodeZeroAndHaveNoBlock) {
    EXPECT_EQ(RunList("<List>\n11\n21\n-1\n2000000000\n</List>\n"), 1);
    EXPECT_EQ(said, Head() + "User input ID = 11\n" + kUnknown + "User input ID = 21\n" + kUnknown +
                        "User input ID = -1\n" + kUnknown + "User input ID = 2000000000\n" + kUnknown);
    EXPECT_EQ(Csv(), "\n\n\nID, 11\n\n\n\nID, 21\n\n\n\nID, -1\n\n\n\nID, 2000000000\n");
}

TEST_F(FibreProbe, TellsItsStepsWhenLogging) {
    job.m_nLogLevel = 1;
    RunList("<List>\n10\n</List>\n");
    const std::string steps =
        "Ax = -0.000000,Ay = -0.000000,Az= 1.000000  \n"
        " After FindPass ,5\n"
        "Find x = 0.000000,y = 0.000000,z= 4.000000  \n"
        "Find x = 0.000000,y = 0.000000,z= 3.000000  \n"
        "Find x = 0.000000,y = 0.000000,z= 0.000000  \n"
        "Find x = 0.000000,y = 0.000000,z= 2.000000  \n"
        "Find x = 0.000000,y = 0.000000,z= 1.000000  \n"
        " Height =4.000000\n";
    EXPECT_NE(said.find(steps + kBlock), std::string::npos) << said;
}

TEST_F(FibreProbe, StepsALittleBesideTheRay) {
    RunList("<List>\n10\n</List>\n");
    const double at[] = {1.0 + 1e-8, 1e-8, 4.0 + 1e-8};
    ASSERT_EQ(Script(job).lastBox.size(), 6U);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_EQ(Script(job).lastBox[k], at[k] - 0.0001);
        EXPECT_EQ(Script(job).lastBox[k + 3], at[k] + 0.0001);
    }
}

TEST_F(FibreProbe, SearchesAfreshIntoTheSpareRecord) {
    job.m_bSearchDone = 1;
    RunList("<List>\n10\n</List>\n");
    EXPECT_EQ(Script(job).rayCalls, 1);
    EXPECT_EQ(job.m_pNodeSearchResults[0].m_nPassElems, 5);
    EXPECT_EQ(job.m_pNodeSearchResults[1].m_nPassElems, 0);
}

TEST_F(FibreProbe, WithoutTensorsWritesZeros) {
    for (auto& component : job.m_pCellFiber) {
        component.reset();
    }
    RunList("<List>\n10\n</List>\n");
    EXPECT_NE(Csv().find("1.0000,  0.0000,  0.0000,  0.0000,  0.0000,  0.0000,  0.0000\n"),
              std::string::npos);
}

TEST_F(FibreProbe, ACsvThatCannotBeCreatedEndsIt) {
    job.m_szResultFile.Set(folder.Path() + "\\missing\\part.csv");
    EXPECT_EQ(Run(), -1);
    EXPECT_EQ(said, folder.Path() + "\\missing\\part.csv\nCan not open Output CSV file!\n");
    EXPECT_EQ(job.m_bSearchDone, -1);
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(FibreProbe, ACsvThatCannotBeOpenedAgainIsToldAndLeavesTheNodeOut) {
    job.m_szResultFile.Set(folder.Path() + "\\missing\\part.csv");
    const CapturedOutput output;
    EXPECT_EQ(qnl::probe::ProbeAlongRay(job, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}), -1);
    EXPECT_EQ(output.Text(), "Can not open Output CSV file!\n");
    EXPECT_EQ(qnl::TakeFaults().size(), 1U);
}

TEST_F(FibreProbe, ADegenerateDirectionGivesMinusOne) {
    EXPECT_EQ(qnl::probe::ProbeAlongRay(job, {1.0, 0.0, 0.0}, {0.0, 0.0, 9e-21}), -1);
    EXPECT_EQ(Script(job).rayCalls, 0);
}

TEST_F(FibreProbe, AResultFileWithoutExtensionRaises) {
    const ScratchFolder other;
    job.m_szResultFile.Set(other.Path() + "\\part");
    const CapturedOutput output;
    EXPECT_THROW(qnl::probe::RunFibreProbe(job), std::out_of_range);
}

TEST_F(FibreProbe, TypedIdsAreProbedUntilOneIsUnknown) {
    EXPECT_EQ(RunTyped("10\n 20 5\n10\n"), 1);
    EXPECT_EQ(said, Head() + kNoList + kPrompt + kNodeTen + kPrompt +
                        "User input ID = 20\nGbID = 2, Node X = 2.000000, Y= 0.000000 ,Z= 0.000000\n" +
                        kPrompt + "User input ID = 5\n" + kUnknown);
    EXPECT_EQ(Csv(), "\n\n\nID, 10\n" + kCsvBlock + "\n\n\nID, 20\n\n\n\nID, 5\n");
}

TEST_F(FibreProbe, TheTypedIdThatEndsTheLoopIsProbedFirst) {
    EXPECT_EQ(RunTyped("-1\n10\n"), 1);
    EXPECT_EQ(said, Head() + kNoList + kPrompt + "User input ID = -1\n" + kUnknown);
    EXPECT_EQ(Csv(), "\n\n\nID, -1\n");
}

TEST_F(FibreProbe, TheEndOfTheInputEndsTheLoop) {
    EXPECT_EQ(RunTyped("10\n"), 1);
    EXPECT_EQ(said, Head() + kNoList + kPrompt + kNodeTen + kPrompt);
}

TEST_F(FibreProbe, TextThatIsNotANumberEndsTheLoop) {
    for (const char* input : {"", "  \n", "ten\n", "99999999999999999999\n", "0x10\n", "-\n"}) {
        EXPECT_EQ(RunTyped(input), 1);
        EXPECT_EQ(said, Head() + kNoList + kPrompt) << input;
        EXPECT_EQ(Csv(), "");
    }
}

TEST_F(FibreProbe, TextRightBehindATypedIdEndsTheLoopAfterIt) {
    EXPECT_EQ(RunTyped("10x 20\n"), 1);
    EXPECT_EQ(said, Head() + kNoList + kPrompt + kNodeTen + kPrompt);
}

TEST_F(FibreProbe, LocatesTheCellWithTheNearestReferencePoint) {
    Script(job).near = [](double, double, double) { return std::vector<int>{3, 4, 5}; };
    // Reference points stand at (0, 0, 1), (0, 0, 2) and (0, 0, 3).
    EXPECT_EQ(qnl::probe::LocateElement(job, {5.0, 0.0, 1.4}), qnl::PassElement(3));
    EXPECT_EQ(qnl::probe::LocateElement(job, {5.0, 0.0, 1.6}), qnl::PassElement(4));
    EXPECT_EQ(qnl::probe::LocateElement(job, {0.0, 9.0, 8.0}), qnl::PassElement(5));
    EXPECT_EQ(qnl::probe::LocateElement(job, {0.0, 0.0, 1.5}), qnl::PassElement(3))
        << "the first of two at the same distance";
}

TEST_F(FibreProbe, AFaceListedBeforeAnyCellWins) {
    Script(job).near = [](double, double, double) { return std::vector<int>{2, 1, 3}; };
    EXPECT_EQ(qnl::probe::LocateElement(job, {0.0, 0.0, 1.5}), qnl::PassElement(2));
}

TEST_F(FibreProbe, AFaceListedAfterACellNeverWins) {
    Script(job).near = [](double, double, double) { return std::vector<int>{5, 1, 3}; };
    EXPECT_EQ(qnl::probe::LocateElement(job, {0.0, 0.0, 2.9}), qnl::PassElement(5));
}

TEST_F(FibreProbe, WithoutCandidatesLocatesNothing) {
    EXPECT_EQ(qnl::probe::LocateElement(job, {0.0, 0.0, 3.9}), qnl::probe::kNoElement);
}

#ifdef __linux__
TEST_F(FibreProbe, AFullDiskIsRecorded) {
    job.m_szResultFile.Set("/dev/full");
    const CapturedOutput output;
    EXPECT_EQ(qnl::probe::ProbeAlongRay(job, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}), 1);
    const auto faults = qnl::TakeFaults();
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0].found, "not all data could be written");
}
#endif
