#pragma once

namespace qnl {

/// Number of one kind of thing. Ids of different kinds, and plain numbers, do not turn into each other
/// unsaid: an id is made from a number and read as one in plain sight. As small and fast as the number.
template <typename Tag>
class Id {
public:
    constexpr Id() = default;
    constexpr explicit Id(int value) : value_(value) {}

    constexpr int Value() const { return value_; }

    constexpr Id& operator++() {
        ++value_;
        return *this;
    }

    friend constexpr bool operator==(Id a, Id b) { return a.value_ == b.value_; }
    friend constexpr bool operator!=(Id a, Id b) { return a.value_ != b.value_; }
    friend constexpr bool operator<(Id a, Id b) { return a.value_ < b.value_; }
    friend constexpr bool operator<=(Id a, Id b) { return a.value_ <= b.value_; }
    friend constexpr bool operator>(Id a, Id b) { return a.value_ > b.value_; }
    friend constexpr bool operator>=(Id a, Id b) { return a.value_ >= b.value_; }

private:
    int value_ = 0;
};

/// A node's own number, as files and people name it; 1 or more.
using NodeLabel = Id<struct NodeLabelTag>;
/// Place of a node in the mesh, from 1; 0 names no node and its record is all zero.
using NodeId = Id<struct NodeTag>;
/// Place of a boundary face in the mesh, from 1.
using FaceId = Id<struct FaceTag>;
/// Place of a cell in the mesh, from 1.
using CellId = Id<struct CellTag>;
/// Place of a node in the surface-node list, from 1.
using ListPosition = Id<struct ListPositionTag>;
/// A face or a cell in the one numbering over both (mesh/PassElementNumbering.h), from 1.
using PassElement = Id<struct PassElementTag>;

}  // namespace qnl
