#include "kernel/face_match.h"

#include <omp.h>

#include <algorithm>
#include <utility>

namespace qnl {
namespace {

// A face under its smallest node: its other nodes ascending, and cell * 16 + turn * 8 + local face. `turn`
// tells the two ways around the face apart. A triangle in a list of four ends in kNoNode.
template <std::size_t Others>
struct FaceRecord {
    std::array<std::uint32_t, Others> others;
    std::uint32_t owner;

    int Cell() const { return static_cast<int>(owner >> 4); }
    std::uint8_t LocalFace() const { return static_cast<std::uint8_t>(owner & 7U); }
    bool Turn() const { return (owner & 8U) != 0; }
    // Whole words compare faster than the array does.
    std::uint64_t FirstTwo() const { return static_cast<std::uint64_t>(others[0]) << 32 | others[1]; }
    bool SameFace(const FaceRecord& other) const {
        return FirstTwo() == other.FirstTwo() && others.back() == other.others.back();
    }
    bool operator<(const FaceRecord& other) const {
        if (FirstTwo() != other.FirstTwo()) {
            return FirstTwo() < other.FirstTwo();
        }
        if (others.back() != other.others.back()) {
            return others.back() < other.others.back();
        }
        return owner < other.owner;
    }
};

constexpr std::uint32_t kNoNode = 0xFFFFFFFFU;

template <std::size_t Others>
struct KeyedFace {
    std::uint32_t smallest;
    FaceRecord<Others> record;
};

void Order(std::uint32_t& a, std::uint32_t& b, bool& swapped) {
    const bool exchange = b < a;
    const std::uint32_t low = exchange ? b : a;
    b = exchange ? a : b;
    a = low;
    swapped ^= exchange;
}

template <std::size_t Others>
KeyedFace<Others> KeyTriangle(std::array<std::uint32_t, 3> node, std::uint32_t owner) {
    bool turn = false;
    Order(node[0], node[1], turn);
    Order(node[1], node[2], turn);
    Order(node[0], node[1], turn);
    KeyedFace<Others> face{node[0], {}};
    face.record.others.fill(kNoNode);
    face.record.others[0] = node[1];
    face.record.others[1] = node[2];
    face.record.owner = owner | (turn ? 8U : 0U);
    return face;
}

KeyedFace<3> KeyQuad(std::array<std::uint32_t, 4> node, std::uint32_t owner) {
    std::rotate(node.begin(), std::min_element(node.begin(), node.end()), node.end());
    const bool turn = node[3] < node[1];
    std::sort(node.begin() + 1, node.end());
    return {node[0], {{node[1], node[2], node[3]}, owner | (turn ? 8U : 0U)}};
}

template <std::size_t Others>
KeyedFace<Others> KeyFace(const int* corners, const CellShape& shape, std::size_t f, std::uint32_t cell) {
    const auto& face = shape.face[f];
    const auto node = [&](std::size_t c) { return static_cast<std::uint32_t>(corners[face[c]]); };
    const std::uint32_t owner = cell << 4 | static_cast<std::uint32_t>(f);
    if constexpr (Others == 3) {
        if (shape.faceCorners[f] == 4) {
            return KeyQuad({node(0), node(1), node(2), node(3)}, owner);
        }
    }
    return KeyTriangle<Others>({node(0), node(1), node(2)}, owner);
}

template <std::size_t Others>
class Matcher {
public:
    explicit Matcher(FaceTopology& topology) : topology_(topology) {}

    FaceMatch Match() {
        CountByNode();
        FillBuckets();
        MatchBuckets();
        std::sort(match_.folded.begin(), match_.folded.end());
        match_.folded.erase(std::unique(match_.folded.begin(), match_.folded.end()), match_.folded.end());
        return std::move(match_);
    }

private:
    using Record = FaceRecord<Others>;

    int Nodes() const { return static_cast<int>(topology_.fileNode.size()); }

    std::size_t PartBegin(int part) const {
        return static_cast<std::size_t>(topology_.Cells()) * static_cast<std::size_t>(part) /
               static_cast<std::size_t>(parts_);
    }

    // Calls take(part, corners, shape, face, cell) for all faces, part after part on several threads.
    template <class Take>
    void ForFaces(Take take) const {
#pragma omp parallel for schedule(static) num_threads(parts_)
        for (int part = 0; part < parts_; ++part) {
            for (std::size_t cell = PartBegin(part); cell < PartBegin(part + 1); ++cell) {
                const int number = static_cast<int>(cell);
                const CellShape& shape = Others == 2 ? kCellShapes[0] : topology_.Shape(number);
                const int* corners = topology_.Corners(number);
                const auto faces = static_cast<std::size_t>(Others == 2 ? 4 : shape.faces);
                for (std::size_t f = 0; f < faces; ++f) {
                    take(static_cast<std::size_t>(part), corners, shape, f, static_cast<std::uint32_t>(cell));
                }
            }
        }
    }

    // Entry part * nodes + node of next_ becomes where that part puts its next face of the node, counted
    // from the start of the node's bucket.
    void CountByNode() {
        const auto nodes = static_cast<std::size_t>(Nodes());
        next_.assign(static_cast<std::size_t>(parts_) * nodes, 0);
        ForFaces(
            [&](std::size_t part, const int* corners, const CellShape& shape, std::size_t f, std::uint32_t) {
                int smallest = corners[shape.face[f][0]];
                for (std::size_t c = 1; c < shape.faceCorners[f]; ++c) {
                    smallest = std::min(smallest, corners[shape.face[f][c]]);
                }
                ++next_[part * nodes + static_cast<std::size_t>(smallest)];
            });
        first_.assign(nodes + 1, 0);
        for (std::size_t node = 0; node < nodes; ++node) {
            std::uint32_t size = 0;
            for (std::size_t at = node; at < next_.size(); at += nodes) {
                size += std::exchange(next_[at], size);
            }
            first_[node + 1] = first_[node] + size;
        }
    }

    void FillBuckets() {
        records_.resize(first_.back());
        const auto nodes = static_cast<std::size_t>(Nodes());
        ForFaces([&](std::size_t part, const int* corners, const CellShape& shape, std::size_t f,
                     std::uint32_t cell) {
            const KeyedFace<Others> face = KeyFace<Others>(corners, shape, f, cell);
            records_[first_[face.smallest] + next_[part * nodes + face.smallest]++] = face.record;
        });
        next_ = {};
    }

    void MatchBuckets() {
        const int nodes = Nodes();
#pragma omp parallel
        {
            FaceMatch own;
#pragma omp for schedule(static)
            for (int node = 0; node < nodes; ++node) {
                MatchBucket(first_[static_cast<std::size_t>(node)],
                            first_[static_cast<std::size_t>(node) + 1], own);
            }
#pragma omp critical(qnl_face_match)
            Merge(own);
        }
    }

    static void SortBucket(Record* begin, Record* end) {
        constexpr std::ptrdiff_t kShort = 40;
        if (end - begin > kShort) {
            std::sort(begin, end);
            return;
        }
        for (Record* i = begin; i != end; ++i) {
            const Record record = *i;
            Record* j = i;
            for (; j != begin && record < j[-1]; --j) {
                *j = j[-1];
            }
            *j = record;
        }
    }

    void MatchBucket(std::size_t begin, std::size_t end, FaceMatch& own) {
        SortBucket(records_.data() + begin, records_.data() + end);
        for (std::size_t i = begin; i < end;) {
            std::size_t next = i + 1;
            while (next < end && records_[next].SameFace(records_[i])) {
                ++next;
            }
            if (next - i == 1) {
                own.single.push_back({records_[i].Cell(), records_[i].LocalFace()});
            } else if (next - i == 2) {
                Join(records_[i], records_[i + 1], own);
            } else {
                KeepFirst(own, {records_[i].Cell(), records_[i + 1].Cell(), records_[i + 2].Cell()});
            }
            i = next;
        }
    }

    void Join(const Record& a, const Record& b, FaceMatch& own) {
        topology_.SetNeighbour(a.Cell(), a.LocalFace(), b.Cell());
        topology_.SetNeighbour(b.Cell(), b.LocalFace(), a.Cell());
        if (a.Turn() == b.Turn() || !SameDiagonal(a, b)) {
            own.folded.push_back(a.Cell());
            own.folded.push_back(b.Cell());
        }
    }

    // Two quads of the same corners may still run through them in a different order.
    bool SameDiagonal(const Record& a, const Record& b) const {
        if (Others == 2 || a.others.back() == kNoNode) {
            return true;
        }
        return OppositeOfSmallest(a) == OppositeOfSmallest(b);
    }

    int OppositeOfSmallest(const Record& record) const {
        const int* corners = topology_.Corners(record.Cell());
        const auto& face = topology_.Shape(record.Cell()).face[record.LocalFace()];
        std::size_t smallest = 0;
        for (std::size_t c = 1; c < 4; ++c) {
            smallest = corners[face[c]] < corners[face[smallest]] ? c : smallest;
        }
        return corners[face[(smallest + 2) % 4]];
    }

    // The face that is named must not depend on the number of threads.
    static void KeepFirst(FaceMatch& match, const std::array<int, 3>& owners) {
        if (!match.overshared || owners < *match.overshared) {
            match.overshared = owners;
        }
    }

    void Merge(const FaceMatch& own) {
        match_.single.insert(match_.single.end(), own.single.begin(), own.single.end());
        match_.folded.insert(match_.folded.end(), own.folded.begin(), own.folded.end());
        if (own.overshared) {
            KeepFirst(match_, *own.overshared);
        }
    }

    FaceTopology& topology_;
    int parts_ = std::min(omp_get_max_threads(), 8);
    std::vector<std::uint32_t> next_;
    std::vector<std::uint64_t> first_;  ///< per node where its bucket begins, and the end of the last
    std::vector<Record> records_;
    FaceMatch match_;
};

}  // namespace

FaceMatch MatchFaces(FaceTopology& topology) {
    return topology.AllTetra() ? Matcher<2>(topology).Match() : Matcher<3>(topology).Match();
}

}  // namespace qnl
