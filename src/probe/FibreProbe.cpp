#include "probe/FibreProbe.h"

#include <cctype>
#include <cstdio>
#include <iostream>
#include <string>
#include <utility>

#include "base/TokenReader.h"
#include "base/WindowsPath.h"
#include "context/Messages.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "probe/CsvOutput.h"
#include "probe/NodeIdList.h"

namespace qnl::probe {

namespace {

/// Node index of a label, 0 when the mesh has no such node.
int LocalIndex(const FrozenLayerJob& job, int id) {
    return id >= 1 && id <= job.m_nMaxLabel ? job.m_pNodeGlobalIdToLocal[id] : 0;
}

/// Probes the node of this label and gives its index.
int ProbeIdentifier(FrozenLayerJob& job, int id) {
    PrintPlain("User input ID = %d\n", id);
    {
        CsvOutput csv(job);
        if (csv) {
            std::fprintf(job.m_pFibreCsv, "\n\n\nID, %d\n", id);
        }
    }
    const int n = LocalIndex(job, id);
    const NodeRecord& node = job.p_Node[n];
    PrintPlain("GbID = %d, Node X = %lf, Y= %lf ,Z= %lf\n", n, node.x, node.y, node.z);
    ProbeAlongRay(job, {node.x, node.y, node.z},
                  {-job.m_pNormalX.get()[n], -job.m_pNormalY.get()[n], -job.m_pNormalZ.get()[n]});
    return n;
}

/// Integers typed in, taken as "%d" takes them: behind "12x" stands "x", which is none.
class TypedIntegers {
public:
    /// False at the end of the input and for text that is no integer.
    bool Next(int& value) {
        if (word_.AtEnd()) {
            word_ = TokenReader(TakeWord());
        }
        return word_.ReadInt(value);
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

void ProbeTypedIds(FrozenLayerJob& job) {
    TypedIntegers input;
    int n = 0;
    do {
        PrintPlain("\n Please input node ID, <0 exit()  \n");
        std::cout.flush();
        int id = 0;
        if (!input.Next(id)) {
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
    NodeIdList list(text);
    for (int id = 0; list.Next(id);) {
        ProbeIdentifier(job, id);
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
        ProbeListedIds(job, listName, list);
    } else {
        PrintPlain("Node id file  for fiber does't exist!\n");
        ProbeTypedIds(job);
    }
    return 1;
}

}  // namespace qnl::probe
