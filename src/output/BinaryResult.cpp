#include "output/BinaryResult.h"

#include <algorithm>
#include <iterator>

#include "context/Messages.h"
#include "mesh/MeshNodes.h"
#include "output/OriginOfResult.h"
#include "output/OutputItems.h"
#include "platform/CQNL3DResultWriter_Manipulator.h"

namespace qnl::output {

namespace {

constexpr int kHeadCode = 1004;
constexpr int kHeadStamp = 802218888;
constexpr int kProgramVersion = 1000;
constexpr float kTimeValue = 0.01F;

bool IsWritten(const FrozenLayerJob& job, NodeId node) {
    constexpr double kEvaluatedAbove = 1.0;
    if (job.m_options.Rules().carriesState) {
        return job.m_pCenterTemperature[node.Value()] > kEvaluatedAbove;
    }
    return mesh::IsPartNode(job, node) && job.m_pHasProfile && job.m_pHasProfile[node.Value()] == 1;
}

std::vector<OutputItem*> WrittenItems(FrozenLayerJob& job) {
    std::vector<OutputItem*> items;
    for (int i = 0; i < job.m_nItemCount; ++i) {
        OutputItem& item = job.m_pOutputItems[static_cast<std::size_t>(i)];
        if (item.bOutput == 1) {
            items.push_back(&item);
        }
    }
    return items;
}

void WriteHead(const FrozenLayerJob& job, CQNL3DResultWriter_Manipulator& writer, int nodes) {
    writer.SetHeadInfo(kHeadCode, kHeadStamp, job.m_szMeshFile.Text(), job.m_szMaterialFile.Text(), ".pro",
                       static_cast<int>(job.m_options.mode), job.m_nOutputItemCount);
    writer.SetFileInfo("QNL3DFrozenLayer", kProgramVersion, kProgramVersion, kProgramVersion);
    float time = kTimeValue;
    char unit[] = "--";
    char* units[] = {unit};
    writer.SetMultipleTimeStepOutputInfo(0, &time, units);
    writer.SetResultTypeInfo(nodes, 0, 0, 0, 0, 0, 0, 0);
    writer.SetResultDataIDMap(QNLRESULT_NODE, true);
}

void WriteItemInfo(CQNL3DResultWriter_Manipulator& writer, const std::vector<OutputItem*>& items) {
    std::vector<int> ids;
    std::vector<int> types;
    std::vector<char*> names;
    std::vector<char*> units;
    std::vector<float> maxima;
    std::vector<float> minima;
    for (OutputItem* item : items) {
        ids.push_back(item->nItemID);
        types.push_back(item->nDataType);
        names.push_back(item->szName);
        units.push_back(item->szUnit);
        maxima.push_back(static_cast<float>(item->dMax));
        minima.push_back(static_cast<float>(item->dMin));
    }
    writer.SetResultItemInfo(ids.data(), names.data(), units.data(), types.data());
    writer.SetMaxMinInfo(maxima.data(), minima.data());
}

/// Labels of the nodes as the writer takes them, 1-based.
std::vector<int> LabelsOf(const FrozenLayerJob& job, const std::vector<NodeId>& nodes) {
    std::vector<int> labels{0};
    for (const NodeId node : nodes) {
        labels.push_back(mesh::LabelOf(job, node).Value());
    }
    return labels;
}

/// Values go by label: they are those of the node that the label map names.
void WriteItems(const FrozenLayerJob& job, CQNL3DResultWriter_Manipulator& writer,
                const std::vector<OutputItem*>& items, const std::vector<int>& labels) {
    for (const OutputItem* item : items) {
        std::vector<float> values{0.0F};
        std::transform(labels.begin() + 1, labels.end(), std::back_inserter(values), [&](int label) {
            const NodeId node = mesh::NodeOfLabel(job, NodeLabel(label));
            return static_cast<float>(item->pData[node.Value()]);
        });
        writer.WriteResultItem(item->nItemID, values.data());
    }
}

}  // namespace

std::vector<NodeId> SelectOutputNodes(const FrozenLayerJob& job) {
    std::vector<NodeId> nodes;
    for (NodeId node(1); node <= NodeId(job.m_nNodes); ++node) {
        if (IsWritten(job, node)) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

int WriteBinaryResult(FrozenLayerJob& job) {
    SetOutputItemInformation(job);
    LogLine(job, "Write Binary Result");
    CQNL3DResultWriter_Manipulator writer;
    writer.BeginWriting(job.m_szResultFile.Text(), "", true);
    const std::vector<NodeId> nodes = SelectOutputNodes(job);
    const std::vector<OutputItem*> items = WrittenItems(job);
    WriteHead(job, writer, static_cast<int>(nodes.size()));
    WriteItemInfo(writer, items);
    SetResultOrigin(writer, OriginOfResult(job));
    std::vector<int> labels = LabelsOf(job, nodes);
    writer.WriteResultDataIDArray(QNLRESULT_NODE, labels.data());
    WriteItems(job, writer, items, labels);
    writer.EndWriting();
    LogLine(job, "Output Binary Data end");
    return 1;
}

}  // namespace qnl::output
