#include "input/Thickness.h"

#include <algorithm>
#include <memory>
#include <string>

#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "input/StoredNodes.h"
#include "job/Messages.h"
#include "job/WindowsPath.h"
#include "platform/CThickGen.h"

namespace {

constexpr qnl::OpenMessages kMessages{"Can't open thickness form .thk ", nullptr,
                                      "Read thickness by Binary "};

// The ray thickness, read last, wins where it is positive.
constexpr int kMeanOfNeighbours = 2;
constexpr int kAlongRay = 1;

void GenerateThickness(const FrozenLayerJob& job) {
    const int status = CThickGen(job.m_szMeshFile.Text(), nullptr).m_nStatus;
    if (status != 0) {
        PrintPlain("Fail to generate thickness value~!!!\n");
        PrintPlain("Reason = %d\n", status);
    }
}

void PrepareThickness(FrozenLayerJob& job) {
    if (job.m_pNodeThickness) {
        std::fill_n(job.m_pNodeThickness.get(), qnl::ItemEntries(job.m_nNodes), 0.0F);
    } else {
        job.m_pNodeThickness = std::make_unique<float[]>(qnl::ItemEntries(job.m_nNodes));
    }
}

void StorePositive(FrozenLayerJob& job, const qnl::StoredNodes& nodes, const qnl::ItemValues& values,
                   int last) {
    for (int id = 1; id <= last; ++id) {
        const float value = values[static_cast<std::size_t>(id)];
        if (const int local = value > 0.0F ? nodes.Stored(id) : 0) {
            job.m_pNodeThickness.get()[local] = value;
        }
    }
}

}  // namespace

int ReadThickness(FrozenLayerJob& job) {
    GenerateThickness(job);
    const std::string path = ReplaceExtension(job.m_szMeshFile.View(), ".thk");
    CQNL3DResultReader_Manipulator reader;
    if (qnl::OpenResult(job, reader, path.c_str(), kMessages) != qnl::OpenedAs::Binary) {
        return -1;
    }
    const int maxNode = reader.GetMaxCavityNode();
    LogPlain(job, "nMaxNodes = %d \n", maxNode);
    PrepareThickness(job);
    const qnl::StoredNodes nodes(job);
    const int last = std::min(maxNode, nodes.MaxLabel());
    qnl::ItemValues values(qnl::ItemEntries(maxNode));
    for (const int item : {kMeanOfNeighbours, kAlongRay}) {
        reader.GetResultItem(item, values.data());
        StorePositive(job, nodes, values, last);
    }
    reader.EndReading();
    LogLine(job, "Read Thickness From RD2 end");
    qnl::ReportEntriesBeyond(path, maxNode, nodes.MaxLabel());
    return 1;
}
