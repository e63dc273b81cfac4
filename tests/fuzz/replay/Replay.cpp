// Runs a fuzz target over files instead of made-up inputs: the target must come back from each of them.
//   replay_TARGET FOLDER

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

/// The fuzzer's own mutation, which the targets' mutators call; nothing is mutated here.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* /*bytes*/, std::size_t count, std::size_t /*most*/) {
    return count;
}

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    if (argc != 2 || !fs::is_directory(argv[1])) {
        std::fprintf(stderr, "one word expected: a folder of inputs\n");
        return 2;
    }
    std::set<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(argv[1])) {
        files.insert(entry.path());
    }
    for (const fs::path& path : files) {
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        std::fprintf(stderr, "%s\n", path.filename().string().c_str());
    }
    std::fprintf(stderr, "%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
