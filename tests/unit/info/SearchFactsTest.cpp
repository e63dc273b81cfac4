#include "info/FactReaders.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "project/ProjectPaths.h"
#include "support/ScratchFolder.h"

namespace {

std::string Integers(const std::vector<std::int32_t>& numbers) {
    std::string bytes;
    for (const std::int32_t number : numbers) {
        for (unsigned shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>((static_cast<std::uint32_t>(number) >> shift) & 0xFFU);
        }
    }
    return bytes;
}

std::int64_t Count(const qnl::info::FileFacts& facts, const std::string& key) {
    for (const qnl::info::Fact& fact : facts.facts) {
        if (fact.key == key) {
            return std::get<std::int64_t>(fact.value);
        }
    }
    return -1;
}

TEST(ReadSearchFacts, CountsRecordsAndIds) {
    const ScratchFolder folder;
    const qnl::info::FileFacts facts =
        qnl::info::ReadSearchFacts(folder.Write("m.sur", Integers({1001, 3, 2, 7, 8, 0, 1, 9})));
    EXPECT_EQ(Count(facts, "surface_nodes"), 3);
    EXPECT_EQ(Count(facts, "pass_elements"), 3);
    EXPECT_EQ(Count(facts, "longest"), 2);
    EXPECT_EQ(Count(facts, "empty"), 1);
}

TEST(ReadSearchFacts, ReadsBeyondOneBuffer) {
    const ScratchFolder folder;
    std::vector<std::int32_t> numbers{1001, 2, 50000};
    numbers.resize(numbers.size() + 50000, 5);
    numbers.insert(numbers.end(), {1, 5});
    EXPECT_EQ(Count(qnl::info::ReadSearchFacts(folder.Write("m.sur", Integers(numbers))), "pass_elements"),
              50001);
}

TEST(ReadSearchFacts, RefusesDamagedFiles) {
    const ScratchFolder folder;
    for (const std::vector<std::int32_t>& numbers :
         std::vector<std::vector<std::int32_t>>{{1001},
                                                {1001, -1},
                                                {1001, 1},
                                                {1001, 1, -1},
                                                {1001, 1, 2, 5},
                                                {1001, 2, 0},
                                                {1001, 1, 2147483647}}) {
        EXPECT_THROW(qnl::info::ReadSearchFacts(folder.Write("m.sur", Integers(numbers))),
                     qnl::project::InputProblem);
    }
}

}  // namespace
