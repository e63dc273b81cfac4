#include "probe/FibreProbe.h"

#include <cctype>
#include <cstdio>
#include <iostream>
#include <string>
#include <utility>

#include "base/TokenReader.h"
#include "base/WindowsPath.h"
#include "context/Messages.h"
#include "mesh/MeshNodes.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "probe/CsvOutput.h"
#include "probe/NodeIdList.h"

namespace qnl::probe {

namespace {

/// Probes the node with this label and gives it; node 0 when the mesh has none.
NodeId ProbeLabel(FrozenLayerJob& job, NodeLabel label) {
    PrintPlain("User input ID = %d\n", label.Value());
    {
        CsvOutput csv(job);
        if (csv) {
            std::fprintf(job.m_pFibreCsv, "\n\n\nID, %d\n", label.Value());
        }
    }
    const NodeId node = mesh::NodeOfLabel(job, label);
    const Vector3 place = mesh::PlaceOf(job, node);
    PrintPlain("GbID = %d, Node X = %lf, Y= %lf ,Z= %lf\n", node.Value(), place.x, place.y, place.z);
    ProbeAlongRay(job, place, mesh::InwardNormal(job, node));
    return node;
}

/// Labels typed in, integers taken as "%d" takes them: behind "12x" stands "x", which is none.
class TypedLabels {
public:
    /// False at the end of the input and for text that is no integer.
    bool Next(NodeLabel& label) {
        if (word_.AtEnd()) {
            word_ = TokenReader(TakeWord());
        }
        int number = 0;
        const bool read = word_.ReadInt(number);
        label = NodeLabel(number);
        return read;
    }

private:
    /// The next word and the blank behind it; what is longer than any integer comes in pieces.
    static std::string TakeWord() {
        constexpr std::size_t kLongest = 4096;
        std::string word;
        while (word.size() < kLongest) {
            const int c = std::getc(stdin);
            const bool blank = c != EOF && std::isspace(c) != 0;
            if (c == EOF || (blank && !word.empty())) {
                break;
            }
            if (!blank) {
                word += static_cast<char>(c);
            }
        }
        return word;
    }

    TokenReader word_;
};

void ProbeTypedLabels(FrozenLayerJob& job) {
    TypedLabels input;
    NodeId node;
    do {
        PrintPlain("\n Please input node ID, <0 exit()  \n");
        std::cout.flush();
        NodeLabel label;
        if (!input.Next(label)) {
            return;
        }
        node = ProbeLabel(job, label);
    } while (node > NodeId(0));
}

void ProbeListedLabels(FrozenLayerJob& job, const std::string& name, HostFile& file) {
    std::string text;
    if (!ReadAll(file.Get(), text)) {
        RecordFault({name, "list of nodes", "a readable file", "a read error", "check the file"});
    }
    file.Close();
    NodeIdList list(text);
    for (NodeLabel label; list.Next(label);) {
        ProbeLabel(job, label);
    }
}

}  // namespace

int RunFibreProbe(FrozenLayerJob& job) {
    job.m_bSearchDone = -1;
    PrintPlain("%s\n", job.m_szResultFile.Text());
    if (!CreateEmptyCsv(job)) {
        PrintPlain("Can not open Output CSV file!\n");
        return -1;
    }
    const std::string listName = CutExtension(job.m_szResultFile.View()) + "_IdForFiber.txt";
    PrintPlain("%s\n", listName.c_str());
    HostFile list(listName, "r");
    if (list) {
        ProbeListedLabels(job, listName, list);
    } else {
        PrintPlain("Node id file  for fiber does't exist!\n");
        ProbeTypedLabels(job);
    }
    return 1;
}

}  // namespace qnl::probe
