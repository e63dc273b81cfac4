#include "output/SinkFile.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string>

#include "context/Messages.h"
#include "mesh/MeshNodes.h"
#include "platform/HostFiles.h"
#include "platform/Stages.h"

namespace qnl::output {

namespace {

constexpr std::array<const char*, 17> kNodeVariables{
    "XDisplacement    mm",  "YDisplacement    mm", "ZDisplacement    mm",  "XTDisplacement   mm",
    "YTDisplacement   mm",  "ZTDisplacement   mm", "VolmShrinkage   '%'",  "Flatness        mm",
    "XMDisplacement   mm",  "YMDisplacement   mm", "ZMDisplacement   mm",  "XMBDisplacement  mm",
    "YMBDisplacement  mm",  "ZMBDisplacement  mm", "XFRSDisplacement  mm", "YFRSDisplacement  mm",
    "ZFRSDisplacement  mm",
};

constexpr std::array<const char*, 7> kElementVariables{
    "XXThermalStress       MPa", "YYThermalStress       MPa", "ZZThermalStress       MPa",
    "XYThermalStress       MPa", "YZThermalStress       MPa", "ZXThermalStress       MPa",
    "VonMisesThermlStress  MPa",
};

std::string SinkFilePath(const FrozenLayerJob& job) {
    const std::string_view log = job.m_szLogFile.View();
    return std::string(log.substr(0, log.rfind('.'))) + "_Sink" + std::string(kWarpStage.pattern);
}

/// Rows are addressed by label.
int RowCount(const FrozenLayerJob& job) {
    return job.m_bUseNodeLabel == 1 ? std::max(job.m_nNodes, job.m_nMaxLabel) : job.m_nNodes;
}

template <std::size_t Count>
std::string Zeros() {
    std::string text;
    for (std::size_t i = 0; i < Count; ++i) {
        text += " 0";
    }
    return text + "\n";
}

void WriteHead(const FrozenLayerJob& job, int rows, std::FILE* out) {
    std::fprintf(out, "1\n[HEADER]\n1007  9104\n%s\n%s\n.pro\n0\n", job.m_szMeshFile.Text(),
                 job.m_szMaterialFile.Text());
    std::fprintf(out, "%d %d %d\n17 7\n0 0 0 0 1 1 1\n", rows, job.m_nCells, 0);
    std::fputs("04/02/10  17:41:28 \n[FIX NODE]\n0\n-1\n[VARBLE INFO]\n", out);
    for (const char* variable : kNodeVariables) {
        std::fprintf(out, "%s\n", variable);
    }
    std::fputs("\n[RESULTS EOW]\n", out);
}

/// The part node that a row shows, if its label is that of one.
std::optional<NodeId> ShownNode(const FrozenLayerJob& job, int row) {
    const NodeId node = mesh::NodeOfLabel(job, NodeLabel(row));
    const bool shown = node > NodeId(0) && job.m_pIsPartNodeTemp[row] == 1;
    return shown ? std::optional(node) : std::nullopt;
}

/// Component of the vector at a node, 0 for none. Adding 0 turns a negative zero, which would be printed
/// with its sign, into a plain one.
double Component(const double* values, std::optional<NodeId> node) {
    return node ? values[node->Value()] + 0.0 : 0.0;
}

void WriteNodeRows(const FrozenLayerJob& job, int rows, const double* u, const double* v, const double* w,
                   std::FILE* out) {
    const std::string otherVariables = Zeros<kNodeVariables.size() - 3>();
    for (int row = 1; row <= rows; ++row) {
        const std::optional<NodeId> node = ShownNode(job, row);
        std::fprintf(out, "%d %g %g %g", row, Component(u, node), Component(v, node), Component(w, node));
        std::fputs(otherVariables.c_str(), out);
    }
}

void WriteElementRows(const FrozenLayerJob& job, std::FILE* out) {
    std::fputs("[ELEM VARBLE INFO]\n", out);
    for (const char* variable : kElementVariables) {
        std::fprintf(out, "%s\n", variable);
    }
    std::fputs("[PART ELEM RESULTS]\n", out);
    const std::string allVariables = Zeros<kElementVariables.size()>();
    for (int cell = 1; cell <= job.m_nCells; ++cell) {
        std::fprintf(out, "%d", cell);
        std::fputs(allVariables.c_str(), out);
    }
    std::fputs("[PART INSERT ELEM RESULTS]\n[EOF]\n", out);
}

}  // namespace

int WriteSinkFile(const FrozenLayerJob& job, const double* u, const double* v, const double* w) {
    ReplacedFile file(SinkFilePath(job), "w");
    if (!file) {
        PrintGeneral("Can not open k4w file!\n");
        return -1;
    }
    const int rows = RowCount(job);
    WriteHead(job, rows, file.Get());
    WriteNodeRows(job, rows, u, v, w, file.Get());
    WriteElementRows(job, file.Get());
    file.Commit();
    return 1;
}

}  // namespace qnl::output
