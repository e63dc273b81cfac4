#pragma once

#include <memory>

/// Pass elements of one surface node, in the order in which the kernel gave them.
struct CSurfNodeSearch {
    int m_nPassElems = 0;
    std::unique_ptr<int[]> m_pPassElems;  ///< 0-based, m_nPassElems ids
};

static_assert(sizeof(CSurfNodeSearch) == 16);
