#pragma once

#include <cstddef>

/// Records that the mesh kernel hands over. All record arrays are 1-based: record 0 exists, is all
/// zero and is never used. Lengths are in mm.

/// One mesh node.
struct NodeRecord {
    double x;
    double y;
    double z;
    int label;     ///< the node's own number (1 or more); the running index when labels are not in use
    int reserved;  ///< kernel's own
};

/// One boundary face or one solid cell.
///
/// `nodes[1..nNode]` are node indices (not labels); entry 0 is unused. `zMiddle` is the middle of the
/// bounding box in z; with the middles of x and y formed from the box it makes the reference point of
/// the entity.
struct EntityRecord {
    int nNode;
    int reserved;
    const int* nodes;
    double boxMin[3];
    double boxMax[3];
    double zMiddle;
};

using SurfaceRecord = EntityRecord;
using CellRecord = EntityRecord;

static_assert(sizeof(NodeRecord) == 32);
static_assert(offsetof(NodeRecord, label) == 24);
static_assert(sizeof(EntityRecord) == 72);
static_assert(offsetof(EntityRecord, nodes) == 8);
static_assert(offsetof(EntityRecord, boxMin) == 16);
static_assert(offsetof(EntityRecord, boxMax) == 40);
static_assert(offsetof(EntityRecord, zMiddle) == 64);
