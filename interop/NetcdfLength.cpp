#include "interop/NetcdfLength.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace qnl::interop {

namespace {

/// By type number from 1.
constexpr std::array<std::uint64_t, 11> kTypeSizes{1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
constexpr std::uint64_t kUnknownRecords = 0xFFFFFFFF;

std::uint64_t Padded(std::uint64_t bytes) {
    return (bytes + 3) / 4 * 4;
}

/// Values of one variable: where they begin, their bytes (one record of them where there are records).
struct Extent {
    std::uint64_t begin;
    std::uint64_t bytes;
    bool hasRecords;
};

/// Walks through a header; raises std::runtime_error at its end and where it cannot be one.
class HeaderWalk {
public:
    explicit HeaderWalk(std::istream& file) : file_(file) {}

    std::uint64_t Length() {
        CheckMark();
        const std::uint64_t records = Count();
        ReadDimensions();
        SkipAttributes();
        ReadVariables();
        std::uint64_t recordBytes = 0;
        for (const Extent& extent : extents_) {
            recordBytes += extent.hasRecords ? Padded(extent.bytes) : 0;
        }
        std::uint64_t length = 0;
        for (const Extent& extent : extents_) {
            const bool none = extent.hasRecords && (records == 0 || records == kUnknownRecords);
            const std::uint64_t before = extent.hasRecords && !none ? (records - 1) * recordBytes : 0;
            length = none ? length : std::max(length, extent.begin + before + extent.bytes);
        }
        return length;
    }

private:
    void CheckMark() {
        std::array<char, 4> mark{};
        file_.read(mark.data(), mark.size());
        version_ = static_cast<unsigned char>(mark[3]);
        const bool known = version_ == 1 || version_ == 2 || version_ == 5;
        if (!file_ || mark[0] != 'C' || mark[1] != 'D' || mark[2] != 'F' || !known) {
            throw std::runtime_error("no classic netCDF file");
        }
    }

    std::uint64_t Number(int bytes) {
        std::uint64_t number = 0;
        for (int i = 0; i < bytes; ++i) {
            number = number << 8U | static_cast<unsigned char>(file_.get());
        }
        if (!file_) {
            throw std::runtime_error("the header ends too early");
        }
        return number;
    }
    std::uint64_t Word() { return Number(4); }
    std::uint64_t Count() { return Number(version_ == 5 ? 8 : 4); }
    std::uint64_t Place() { return Number(version_ == 1 ? 4 : 8); }
    void Skip(std::uint64_t bytes) { file_.seekg(static_cast<std::streamoff>(bytes), std::ios::cur); }
    void SkipName() { Skip(Padded(Count())); }

    /// Entries of a list, whose kind comes first.
    std::uint64_t ListLength() {
        Word();
        return Count();
    }

    std::uint64_t TypeSize() {
        const std::uint64_t type = Word();
        if (type < 1 || type > kTypeSizes.size()) {
            throw std::runtime_error("no such type");
        }
        return kTypeSizes[type - 1];
    }

    void ReadDimensions() {
        for (std::uint64_t left = ListLength(); left > 0; --left) {
            SkipName();
            dimensions_.push_back(Count());
        }
    }

    void SkipAttributes() {
        for (std::uint64_t left = ListLength(); left > 0; --left) {
            SkipName();
            const std::uint64_t size = TypeSize();
            Skip(Padded(size * Count()));
        }
    }

    void ReadVariables() {
        for (std::uint64_t left = ListLength(); left > 0; --left) {
            SkipName();
            Extent extent{0, 1, false};
            const std::uint64_t rank = Count();
            for (std::uint64_t axis = 0; axis < rank; ++axis) {
                const std::uint64_t entries = dimensions_.at(Count());
                extent.hasRecords = extent.hasRecords || (axis == 0 && entries == 0);
                extent.bytes *= extent.hasRecords && axis == 0 ? 1 : entries;
            }
            SkipAttributes();
            extent.bytes *= TypeSize();
            Count();
            extent.begin = Place();
            extents_.push_back(extent);
        }
    }

    std::istream& file_;
    int version_ = 0;
    std::vector<std::uint64_t> dimensions_;
    std::vector<Extent> extents_;
};

}  // namespace

std::optional<std::uint64_t> AnnouncedNetcdfLength(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    try {
        return HeaderWalk(stream).Length();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

}  // namespace qnl::interop
