#pragma once

#include <cstddef>

/// Thickness generator: construction reads the mesh and writes the wall thickness of every boundary node
/// to the ".thk" file beside it, dense by label in mm. Item 1 is the length of the inward ray inside the
/// solid (0 where no cell is passed), item 2 the mean of the positive item 1 values of the neighbours. A
/// ".thk" that is newer than its mesh is left alone.
class CThickGen {
public:
    CThickGen(const char* meshPath, const char* option);

    int m_nStatus;  ///< 0 success, 1 mesh not readable, 2 file not writable
};

static_assert(offsetof(CThickGen, m_nStatus) == 0);
