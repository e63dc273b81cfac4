#include "input/WarpResults.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>

#include "context/Messages.h"
#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

constexpr WarpItem kDisplacement[] = {kWarpDisplacementX, kWarpDisplacementY, kWarpDisplacementZ};

constexpr OpenMessages kMessages{"Can't open Warp Results ", "Read WarpResults by ASCII ",
                                 "Read WarpResults by Binary "};

/// Room for every label of the file and every node of the mesh, zeroed.
void PrepareDisplacement(FrozenLayerJob& job, int maxNode) {
    job.m_nWarpEntries = std::max(maxNode, job.m_nNodes);
    for (OwnedArray<double>& array : job.m_pWarpDisplacement) {
        array = NewFromOne<double>(job.m_nWarpEntries);
    }
}

struct WarpItems {
    ItemValues displacement[3];
    ItemValues shrinkage;
};

WarpItems ReadItems(CQNL3DResultReader_Manipulator& reader, int count) {
    WarpItems items;
    for (std::size_t k = 0; k < 3; ++k) {
        items.displacement[k] = ReadItem(reader, kDisplacement[k], count);
    }
    items.shrinkage = ReadItem(reader, kWarpShrinkage, count);
    return items;
}

void StoreNode(FrozenLayerJob& job, const WarpItems& items, std::size_t entry, NodeId node) {
    for (std::size_t k = 0; k < 3; ++k) {
        job.m_pWarpDisplacement[k][node.Value()] = static_cast<double>(items.displacement[k][entry]);
    }
    job.m_pNodeData[kVolumeShrinkage][node.Value()] = static_cast<double>(items.shrinkage[entry]);
}

}  // namespace

}  // namespace qnl::input

int ReadWarpResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::input::OpenedAs opened = qnl::input::OpenResult(job, reader, path, qnl::input::kMessages);
    if (opened != qnl::input::OpenedAs::Binary) {
        if (opened == qnl::input::OpenedAs::Nothing) {
            return -1;
        }
        ReadWarpResultsAscii(job, path);
        return 1;
    }
    const int maxNode = reader.GetMaxCavityNode();
    qnl::input::PrepareDisplacement(job, maxNode);
    qnl::LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const qnl::input::WarpItems items = qnl::input::ReadItems(reader, maxNode);
    const qnl::input::StoredNodes nodes(job);
    const qnl::NodeLabel last = std::min(qnl::NodeLabel(maxNode), nodes.MaxLabel());
    for (qnl::NodeLabel label(1); label <= last; ++label) {
        const auto entry = static_cast<std::size_t>(label.Value());
        if (const std::optional<qnl::NodeId> node = nodes.Known(label)) {
            qnl::input::StoreNode(job, items, entry, *node);
        }
        job.m_dMaxValue = std::max(job.m_dMaxValue, static_cast<double>(items.shrinkage[entry]));
    }
    reader.EndReading();
    qnl::input::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
