#include "unit/input/InputFixture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "mesh/FieldStorage.h"

namespace {

constexpr int kLabels[] = {1, 2, 3, 12, 17};
constexpr int kClasses[] = {1, 1, 0, -1, 1};
constexpr int kMaxLabel = 17;

std::filesystem::path TestFolder() {
    const auto* info = testing::UnitTest::GetInstance()->current_test_info();
    return std::filesystem::path(testing::TempDir()) /
           (std::string("qnl_") + info->test_suite_name() + "_" + info->name());
}

}  // namespace

InputTest::InputTest()
    : nodes_(6), isPart_(kMaxLabel + 1), runnerClass_(kMaxLabel + 1), toLocal_(kMaxLabel + 1) {
    for (std::size_t i = 0; i < 5; ++i) {
        const auto label = static_cast<std::size_t>(kLabels[i]);
        nodes_[i + 1].label = kLabels[i];
        runnerClass_[label] = kClasses[i];
        isPart_[label] = kClasses[i] == 1 ? 1 : 0;
        toLocal_[label] = static_cast<int>(i) + 1;
    }
    job_.p_Node = nodes_.data();
    job_.m_pIsPartNodeTemp = isPart_.data();
    job_.m_pNotRunnerNode = runnerClass_.data();
    job_.m_pNodeGlobalIdToLocal = toLocal_.data();
    job_.m_nNodes = 5;
    job_.m_nSurfaces = 3;
    job_.m_nCells = 3;
    job_.m_nMaxLabel = kMaxLabel;
    fake::ThePlatform() = {};
    qnl::TakeFaults();
}

InputTest::~InputTest() {
    std::error_code ignored;
    std::filesystem::remove_all(TestFolder(), ignored);
}

void InputTest::MakeStorage(double value) {
    const int logLevel = std::exchange(job_.m_nLogLevel, 0);
    qnl::mesh::NewDataStorage(job_);
    job_.m_nLogLevel = logLevel;
    for (auto& slot : job_.m_pNodeData) {
        std::fill_n(slot.get(), job_.m_nNodes + 1, value);
    }
}

std::string InputTest::PathTo(const std::string& name) {
    std::filesystem::create_directories(TestFolder());
    return (TestFolder() / name).string();
}

std::string InputTest::TextFile(const std::string& name, const std::string& content) {
    const std::string path = PathTo(name);
    std::ofstream(path, std::ios::binary) << content;
    BinaryFile(path).status = -4;
    return path;
}

fake::ResultFile& InputTest::BinaryFile(const std::string& path) {
    return fake::ThePlatform().files[path];
}

std::vector<double> InputTest::Slot(int slot) const {
    const double* values = job_.m_pNodeData[slot].get();
    return {values + 1, values + 1 + job_.m_nNodes};
}
