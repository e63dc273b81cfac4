#include "probe/FibreProbe.h"

#include <iostream>
#include <string>

#include "job/Messages.h"
#include "job/WindowsPath.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "probe/CsvOutput.h"
#include "probe/NodeIdList.h"
#include "probe/ScanInteger.h"

namespace {

/// Node index of a label, 0 when the mesh has no such node.
int LocalIndex(const FrozenLayerJob& job, int id) {
    return id >= 1 && id <= job.m_nMaxLabel ? job.m_pNodeGlobalIdToLocal[id] : 0;
}

/// Probes the node of this label and gives its index.
int ProbeIdentifier(FrozenLayerJob& job, int id) {
    PrintPlain("User input ID = %d\n", id);
    {
        qnl::CsvOutput csv(job);
        if (csv) {
            std::fprintf(job.m_pFibreCsv, "\n\n\nID, %d\n", id);
        }
    }
    const int n = LocalIndex(job, id);
    const NodeRecord& node = job.p_Node[n];
    PrintPlain("GbID = %d, Node X = %lf, Y= %lf ,Z= %lf\n", n, node.x, node.y, node.z);
    qnl::ProbeAlongRay(job, {node.x, node.y, node.z},
                       {-job.m_pNormalX.get()[n], -job.m_pNormalY.get()[n], -job.m_pNormalZ.get()[n]});
    return n;
}

void ProbeTypedIds(FrozenLayerJob& job) {
    qnl::StreamSource input(stdin);
    int n = 0;
    do {
        PrintPlain("\n Please input node ID, <0 exit()  \n");
        std::cout.flush();
        int id = 0;
        if (!qnl::ScanInteger(input, id)) {
            return;
        }
        n = ProbeIdentifier(job, id);
    } while (n > 0);
}

void ProbeListedIds(FrozenLayerJob& job, const std::string& name, HostFile& file) {
    std::string text;
    if (!ReadAll(file.Get(), text)) {
        RecordFault({name, "list of nodes", "a readable file", "a read error", "check the file"});
    }
    file.Close();
    qnl::NodeIdList list(text);
    for (int id = 0; list.Next(id);) {
        ProbeIdentifier(job, id);
    }
}

}  // namespace

int RunFibreProbe(FrozenLayerJob& job) {
    job.m_bSearchDone = -1;
    PrintPlain("%s\n", job.m_szResultFile.Text());
    if (!qnl::CreateEmptyCsv(job)) {
        PrintPlain("Can not open Output CSV file!\n");
        return -1;
    }
    const std::string listName = CutExtension(job.m_szResultFile.View()) + "_IdForFiber.txt";
    PrintPlain("%s\n", listName.c_str());
    HostFile list(listName, "r");
    if (list) {
        ProbeListedIds(job, listName, list);
    } else {
        PrintPlain("Node id file  for fiber does't exist!\n");
        ProbeTypedIds(job);
    }
    return 1;
}
