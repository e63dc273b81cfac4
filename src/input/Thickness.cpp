#include "input/Thickness.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "base/WindowsPath.h"
#include "context/Messages.h"
#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "platform/CThickGen.h"
#include "platform/Faults.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

constexpr OpenMessages kMessages{"Can't open thickness form .thk ", nullptr, "Read thickness by Binary "};

// The ray thickness, read last, wins where it is positive.
constexpr ThicknessItem kItemsInOrder[] = {kThicknessAround, kThicknessAlongRay};

void GenerateThickness(const FrozenLayerJob& job) {
    const int status = CThickGen(job.m_szMeshFile.Text(), nullptr).m_nStatus;
    if (status != 0) {
        PrintPlain("Fail to generate thickness value~!!!\n");
        PrintPlain("Reason = %d\n", status);
    }
}

void ReportUnusable(const std::string& path) {
    RecordFault({path, "", "the wall thickness as a binary result",
                 "it cannot be used, and the skin thickness is not bounded by the wall",
                 "delete it: the next run makes it again from the mesh"});
}

void StorePositive(FrozenLayerJob& job, const StoredNodes& nodes, const ItemValues& values, NodeLabel last) {
    for (NodeLabel label(1); label <= last; ++label) {
        const float value = values[static_cast<std::size_t>(label.Value())];
        const std::optional<NodeId> node = nodes.Stored(label);
        if (node && value > 0.0F) {
            job.m_pNodeThickness[node->Value()] = value;
        }
    }
}

}  // namespace

}  // namespace qnl::input

int ReadThickness(FrozenLayerJob& job) {
    qnl::input::GenerateThickness(job);
    const std::string path = qnl::ReplaceExtension(job.m_szMeshFile.View(), qnl::kThicknessExtension);
    CQNL3DResultReader_Manipulator reader;
    if (qnl::input::OpenResult(job, reader, path.c_str(), qnl::input::kMessages) !=
        qnl::input::OpenedAs::Binary) {
        qnl::input::ReportUnusable(path);
        return -1;
    }
    const int maxNode = reader.GetMaxCavityNode();
    qnl::LogPlain(job, "nMaxNodes = %d \n", maxNode);
    job.m_pNodeThickness = qnl::NewFromOne<float>(job.m_nNodes);
    const qnl::input::StoredNodes nodes(job);
    const qnl::NodeLabel last = std::min(qnl::NodeLabel(maxNode), nodes.MaxLabel());
    qnl::input::ItemValues values(qnl::input::ItemEntries(maxNode));
    for (const int item : qnl::input::kItemsInOrder) {
        reader.GetResultItem(item, values.data());
        qnl::input::StorePositive(job, nodes, values, last);
    }
    reader.EndReading();
    qnl::LogLine(job, "Read Thickness From RD2 end");
    qnl::input::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
