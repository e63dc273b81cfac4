#include "kernel/topology/FaceMatch.h"

#include <omp.h>

#include <algorithm>
#include <utility>

#include "kernel/mesh/TetraGeometry.h"

namespace qnl::kernel {
namespace {

constexpr std::uint8_t kTurned = 8;

// A face under its smallest node: its other nodes ascending, and cell * 16 + turn * 8 + local face. `turn`
// tells the two ways around the face apart. A triangle in a list of four ends in kNoNode.
// `Word` holds 4 bits more than a cell needs.
template <std::size_t Others, class Word>
struct FaceRecord {
    std::array<std::uint32_t, Others> others;
    Word owner;

    int Cell() const { return static_cast<int>(owner >> 4); }
    std::uint8_t LocalFace() const { return static_cast<std::uint8_t>(owner & (kTurned - 1U)); }
    bool Turn() const { return (owner & kTurned) != 0; }
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

template <std::size_t Others, class Word>
struct KeyedFace {
    std::uint32_t smallest;
    FaceRecord<Others, Word> record;
};

template <class Word>
Word OwnerOf(int cell, std::size_t localFace, bool turned) {
    return static_cast<Word>(cell) << 4 | (turned ? kTurned : Word{0}) | static_cast<Word>(localFace);
}

template <class Word>
void Order(Word& a, Word& b, bool& swapped) {
    const bool exchange = b < a;
    const Word low = exchange ? b : a;
    b = exchange ? a : b;
    a = low;
    swapped ^= exchange;
}

template <class Word>
KeyedFace<3, Word> KeyTriangle(std::array<std::uint32_t, 3> node, int cell, std::size_t f) {
    bool turn = false;
    Order(node[0], node[1], turn);
    Order(node[1], node[2], turn);
    Order(node[0], node[1], turn);
    return {node[0], {{node[1], node[2], kNoNode}, OwnerOf<Word>(cell, f, turn)}};
}

template <class Word>
KeyedFace<3, Word> KeyQuad(std::array<std::uint32_t, 4> node, int cell, std::size_t f) {
    std::rotate(node.begin(), std::min_element(node.begin(), node.end()), node.end());
    const bool turn = node[3] < node[1];
    std::sort(node.begin() + 1, node.end());
    return {node[0], {{node[1], node[2], node[3]}, OwnerOf<Word>(cell, f, turn)}};
}

template <class Word>
KeyedFace<3, Word> KeyFace(const int* corners, const CellShape& shape, std::size_t f, int cell) {
    const auto& face = shape.face[f];
    const auto node = [&](std::size_t c) { return static_cast<std::uint32_t>(corners[face[c]]); };
    return shape.faceCorners[f] == 4 ? KeyQuad<Word>({node(0), node(1), node(2), node(3)}, cell, f)
                                     : KeyTriangle<Word>({node(0), node(1), node(2)}, cell, f);
}

// The faces of a tetra from its corners in ascending order. Which way around a face runs follows from the
// order of the corners: leaving out the next corner turns it. `Word` holds 2 bits more than a node needs.
template <class Word, class Take>
void KeyTetraFaces(const int* corners, int cell, Take take) {
    std::array<Word, 4> sorted;  // node, then two bits that tell the corner
    for (std::size_t c = 0; c < 4; ++c) {
        sorted[c] = static_cast<Word>(corners[c]) << 2 | static_cast<Word>(c);
    }
    bool turn = false;
    Order(sorted[0], sorted[1], turn);
    Order(sorted[2], sorted[3], turn);
    Order(sorted[0], sorted[2], turn);
    Order(sorted[1], sorted[3], turn);
    Order(sorted[1], sorted[2], turn);
    const auto node = [&](std::size_t i) { return static_cast<std::uint32_t>(sorted[i] >> 2); };
    const auto keyed = [&](std::size_t a, std::size_t b, std::size_t c, std::size_t without) {
        const bool turned = turn != (without % 2 != 0);
        const std::size_t face = kFaceOpposite[sorted[without] & 3U];
        return KeyedFace<2, Word>{node(a), {{node(b), node(c)}, OwnerOf<Word>(cell, face, turned)}};
    };
    take(keyed(0, 1, 2, 3));
    take(keyed(0, 1, 3, 2));
    take(keyed(0, 2, 3, 1));
    take(keyed(1, 2, 3, 0));
}

template <std::size_t Others, class Word>
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
    using Record = FaceRecord<Others, Word>;
    using Keyed = KeyedFace<Others, Word>;

    static constexpr std::size_t kShort = 64;  ///< faces of a bucket that are compared with each other

    int Nodes() const { return static_cast<int>(topology_.fileNode.size()); }

    std::size_t PartBegin(int part) const {
        return static_cast<std::size_t>(topology_.Cells()) * static_cast<std::size_t>(part) /
               static_cast<std::size_t>(parts_);
    }

    // Calls take(part, face) for all faces, part after part on several threads.
    template <class Take>
    void ForFaces(Take take) const {
#pragma omp parallel for schedule(static)
        for (int part = 0; part < parts_; ++part) {
            for (std::size_t cell = PartBegin(part); cell < PartBegin(part + 1); ++cell) {
                KeyFaces(static_cast<int>(cell),
                         [&](const Keyed& face) { take(static_cast<std::size_t>(part), face); });
            }
        }
    }

    template <class Take>
    void KeyFaces(int cell, Take take) const {
        const int* corners = topology_.Corners(cell);
        if constexpr (Others == 2) {
            KeyTetraFaces<Word>(corners, cell, take);
        } else {
            const CellShape& shape = topology_.Shape(cell);
            for (std::size_t f = 0; f < static_cast<std::size_t>(shape.faces); ++f) {
                take(KeyFace<Word>(corners, shape, f, cell));
            }
        }
    }

    // Entry part * nodes + node of next_ becomes where that part puts its next face of the node, counted
    // from the start of the node's bucket.
    void CountByNode() {
        const auto nodes = static_cast<std::size_t>(Nodes());
        next_.assign(static_cast<std::size_t>(parts_) * nodes, 0);
        ForFaces([&](std::size_t part, const Keyed& face) { ++next_[part * nodes + face.smallest]; });
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
        ForFaces([&](std::size_t part, const Keyed& face) {
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

    void MatchBucket(std::size_t begin, std::size_t end, FaceMatch& own) {
        if (end - begin <= kShort) {
            MatchShort(records_.data() + begin, end - begin, own);
        } else {
            MatchLong(records_.data() + begin, records_.data() + end, own);
        }
    }

    // Without branches that depend on the faces: which of them comes next can't be foreseen.
    void MatchShort(const Record* records, std::size_t size, FaceMatch& own) {
        std::array<std::uint64_t, kShort> firstTwo;
        std::array<std::uint32_t, kShort> last;
        std::array<std::array<std::uint8_t, 4>, kShort> owner{};
        std::array<std::uint8_t, kShort> owners;
        std::size_t faces = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const std::uint64_t two = records[i].FirstTwo();
            const std::uint32_t third = records[i].others.back();
            std::size_t at = faces;
            for (std::size_t f = 0; f < faces; ++f) {
                at = firstTwo[f] == two && (Others == 2 || last[f] == third) ? f : at;
            }
            const bool isNew = at == faces;
            firstTwo[at] = two;
            last[at] = third;
            const std::uint8_t before = isNew ? std::uint8_t{0} : owners[at];
            owner[at][before] = static_cast<std::uint8_t>(i);
            owners[at] = static_cast<std::uint8_t>(before + (before < 3 ? 1 : 0));
            faces += isNew ? 1 : 0;
        }
        for (std::size_t f = 0; f < faces; ++f) {
            Take({&records[owner[f][0]], &records[owner[f][1]], &records[owner[f][2]]}, owners[f], own);
        }
    }

    void MatchLong(Record* begin, Record* end, FaceMatch& own) {
        std::sort(begin, end);
        for (Record* i = begin; i < end;) {
            Record* next =
                std::find_if(i + 1, end, [&](const Record& record) { return !record.SameFace(*i); });
            Take({i, i + 1, i + 2}, static_cast<std::size_t>(next - i), own);
            i = next;
        }
    }

    // A face with its first owners, ascending.
    void Take(const std::array<const Record*, 3>& face, std::size_t owners, FaceMatch& own) {
        if (owners == 2) {
            Join(*face[0], *face[1], own);
        } else if (owners == 1) {
            own.single.push_back({face[0]->Cell(), face[0]->LocalFace()});
        } else {
            KeepFirst(own, {face[0]->Cell(), face[1]->Cell(), face[2]->Cell()});
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
    // Counters of all nodes for every part: more parts would cost more memory than they save time.
    int parts_ = std::min(omp_get_max_threads(), 8);
    std::vector<std::uint32_t> next_;
    std::vector<std::uint64_t> first_;  ///< per node where its bucket begins, and the end of the last
    std::vector<Record> records_;
    FaceMatch match_;
};

}  // namespace

FaceMatch MatchFaces(FaceTopology& topology, std::size_t narrowCells) {
    const bool narrow = topology.fileCell.size() <= narrowCells;
    if (topology.AllTetra()) {
        return narrow ? Matcher<2, std::uint32_t>(topology).Match()
                      : Matcher<2, std::uint64_t>(topology).Match();
    }
    return narrow ? Matcher<3, std::uint32_t>(topology).Match() : Matcher<3, std::uint64_t>(topology).Match();
}

}  // namespace qnl::kernel
