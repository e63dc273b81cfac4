#include "input/WarpResults.h"

#include <algorithm>
#include <cstddef>
#include <memory>

#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "job/Messages.h"

namespace {

constexpr int kDisplacement[] = {1, 2, 3};
constexpr int kShrinkage = 7;

constexpr qnl::OpenMessages kMessages{"Can't open Warp Results ", "Read WarpResults by ASCII ",
                                      "Read WarpResults by Binary "};

/// Room for every label of the file and every node of the mesh, zeroed; existing room of that size is
/// used again.
void PrepareDisplacement(FrozenLayerJob& job, int maxNode) {
    const int entries = std::max(maxNode, job.m_nNodes);
    for (OwnedArray<double>& array : job.m_pWarpDisplacement) {
        if (array && job.m_nWarpEntries == entries) {
            std::fill_n(array.get(), qnl::ItemEntries(entries), 0.0);
        } else {
            array.reset();
            array = std::make_unique<double[]>(qnl::ItemEntries(entries));
        }
    }
    job.m_nWarpEntries = entries;
}

struct WarpItems {
    qnl::ItemValues displacement[3];
    qnl::ItemValues shrinkage;
};

WarpItems ReadItems(CQNL3DResultReader_Manipulator& reader, int count) {
    WarpItems items;
    for (std::size_t k = 0; k < 3; ++k) {
        items.displacement[k] = qnl::ReadItem(reader, kDisplacement[k], count);
    }
    items.shrinkage = qnl::ReadItem(reader, kShrinkage, count);
    return items;
}

void StoreNode(FrozenLayerJob& job, const WarpItems& items, std::size_t id, int local) {
    for (std::size_t k = 0; k < 3; ++k) {
        job.m_pWarpDisplacement[k].get()[local] = static_cast<double>(items.displacement[k][id]);
    }
    job.m_pNodeData[1].get()[local] = static_cast<double>(items.shrinkage[id]);
}

}  // namespace

int ReadWarpResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::OpenedAs opened = qnl::OpenResult(job, reader, path, kMessages);
    if (opened != qnl::OpenedAs::Binary) {
        if (opened == qnl::OpenedAs::Nothing) {
            return -1;
        }
        ReadWarpResultsAscii(job, path);
        return 1;
    }
    const int maxNode = reader.GetMaxCavityNode();
    PrepareDisplacement(job, maxNode);
    LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const WarpItems items = ReadItems(reader, maxNode);
    const qnl::StoredNodes nodes(job);
    const int last = std::min(maxNode, nodes.MaxLabel());
    for (int id = 1; id <= last; ++id) {
        const auto entry = static_cast<std::size_t>(id);
        if (const int local = nodes.Known(id)) {
            StoreNode(job, items, entry, local);
        }
        job.m_dMaxValue = std::max(job.m_dMaxValue, static_cast<double>(items.shrinkage[entry]));
    }
    reader.EndReading();
    qnl::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
