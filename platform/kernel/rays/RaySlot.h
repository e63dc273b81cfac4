#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "kernel/rays/RayGeometry.h"

namespace qnl::kernel {

/// The cells met so far by one ray. Emptied in constant time; its memory is kept.
class VisitedCells {
public:
    VisitedCells() : entries_(1024, 0) {}

    void Clear() {
        count_ = 0;
        if (++round_ == 0) {
            entries_.assign(entries_.size(), 0);
            round_ = 1;
        }
    }

    /// False when the cell was there already.
    bool Insert(int cell) {
        if (2 * count_ >= entries_.size()) {
            Enlarge();
        }
        std::uint64_t& entry = EntryOf(static_cast<std::uint32_t>(cell));
        if (Current(entry)) {
            return false;
        }
        entry = static_cast<std::uint64_t>(round_) << 32 | static_cast<std::uint32_t>(cell);
        ++count_;
        return true;
    }

private:
    bool Current(std::uint64_t entry) const { return entry >> 32 == round_; }

    std::uint64_t& EntryOf(std::uint32_t cell) {
        const std::size_t mask = entries_.size() - 1;
        std::size_t i = static_cast<std::size_t>(cell * 0x9E3779B97F4A7C15ULL >> 32) & mask;
        while (Current(entries_[i]) && static_cast<std::uint32_t>(entries_[i]) != cell) {
            i = (i + 1) & mask;
        }
        return entries_[i];
    }

    void Enlarge() {
        const std::vector<std::uint64_t> old = std::move(entries_);
        entries_.assign(2 * old.size(), 0);
        for (const std::uint64_t entry : old) {
            if (Current(entry)) {
                EntryOf(static_cast<std::uint32_t>(entry)) = entry;
            }
        }
    }

    std::vector<std::uint64_t> entries_;  ///< round of the entry, then the cell
    std::size_t count_ = 0;
    std::uint32_t round_ = 0;
};

/// Scratch of one ray, kept from ray to ray so that nothing is allocated after the first ones.
struct RaySlot {
    struct Touched {
        Span span;
        int cell;
    };
    struct Waiting {
        double depth;
        int cell;
    };
    struct Ending {
        double depth;
        int cell;
    };
    struct FaceHit {
        double depth;
        int face;  ///< 1-based
        bool containsOrigin;
    };

    VisitedCells visited;
    std::vector<int> stack;
    std::vector<Waiting> waiting;   ///< cells that begin beyond what is known to be inside
    std::vector<Touched> touched;   ///< spans of one cell follow each other, disjoint and ascending
    std::vector<Span> detached;     ///< touched spans that do not yet join the one that begins at the origin
    std::vector<Ending> endings;    ///< passed cells not clipped yet, with the depth of their farthest corner
    std::vector<Span> pieces;       ///< of the cell at hand
    std::vector<FaceHit> faceHits;  ///< hits of one face follow each other
    std::vector<int> ids;
    std::vector<int> sorting;
    double reached = 0.0;      ///< end of the joined spans
    bool holdsOrigin = false;  ///< a touched span contains the origin
    int startNode = -1;        ///< node whose cells are all accounted for, when there is one
};

}  // namespace qnl::kernel
