#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

#include "info/FactReaders.h"
#include "platform/HostFiles.h"
#include "project/ProjectPaths.h"

namespace qnl::info {

namespace {

/// Reads a stream of little-endian 32-bit integers.
class IntegerStream {
public:
    explicit IntegerStream(std::FILE* stream) : stream_(stream) {}

    std::optional<std::int32_t> Next() {
        if (position_ + 4 > filled_ && !Fill()) {
            return std::nullopt;
        }
        std::uint32_t number = 0;
        for (std::size_t b = 4; b-- > 0;) {
            number = (number << 8U) | buffer_[position_ + b];
        }
        position_ += 4;
        return static_cast<std::int32_t>(number);
    }
    /// False when the stream ends before.
    bool Skip(std::int32_t count) {
        for (std::int32_t i = 0; i < count; ++i) {
            if (!Next()) {
                return false;
            }
        }
        return true;
    }

private:
    bool Fill() {
        filled_ = std::fread(buffer_.data(), 1, buffer_.size(), stream_);
        position_ = 0;
        return filled_ >= 4;
    }

    std::FILE* stream_;
    std::array<unsigned char, std::size_t{1} << 16U> buffer_{};
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
};

struct SearchCounts {
    std::int64_t records = 0;
    std::int64_t passElements = 0;
    std::int64_t empty = 0;
    std::int64_t longest = 0;
};

SearchCounts CountRecords(std::FILE* stream, const std::string& path) {
    IntegerStream integers(stream);
    integers.Next();
    SearchCounts counts;
    counts.records = integers.Next().value_or(-1);
    for (std::int64_t i = 0; i < counts.records; ++i) {
        const std::optional<std::int32_t> count = integers.Next();
        if (!count || *count < 0 || !integers.Skip(*count)) {
            throw project::InputProblem(project::NativePath(path) + ": record " + std::to_string(i + 1) +
                                        " of " + std::to_string(counts.records) +
                                        " is damaged; delete the file, the next run searches again");
        }
        counts.passElements += *count;
        counts.empty += *count == 0 ? 1 : 0;
        counts.longest = std::max<std::int64_t>(counts.longest, *count);
    }
    if (counts.records < 0) {
        throw project::InputProblem(
            project::NativePath(path) +
            ": the record count is damaged; delete the file, the next run searches again");
    }
    return counts;
}

}  // namespace

FileFacts ReadSearchFacts(const std::string& path) {
    const HostFile file(path, "rb");
    if (!file) {
        throw project::InputProblem(project::NativePath(path) + " cannot be opened for reading");
    }
    const SearchCounts counts = CountRecords(file.Get(), path);
    FileFacts facts;
    facts.Add("surface_nodes", "Surface nodes", "", counts.records);
    facts.Add("pass_elements", "Faces and cells along all their normals", "", counts.passElements);
    facts.Add("longest", "  at most for one node", "", counts.longest);
    facts.Add("empty", "Nodes whose normal meets none", "", counts.empty);
    return facts;
}

}  // namespace qnl::info
