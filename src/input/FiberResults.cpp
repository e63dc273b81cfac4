#include "input/FiberResults.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "base/Text.h"
#include "context/Messages.h"
#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "platform/Faults.h"
#include "platform/Stages.h"

namespace qnl::input {

namespace {

// The flow reader's message stands for fibre results as well.
constexpr OpenMessages kMessages{"Can't open FlowResults ", " ASCII ", "Read FiberResults by Binary "};

struct FiberItem {
    FibreItem item;
    std::size_t slot;  ///< xx, yy, zz, xy, xz, yz
};

// In the order of reading; the file numbers yz before xz.
constexpr FiberItem kItems[] = {{kFibreXX, 0}, {kFibreYY, 1}, {kFibreZZ, 2},
                                {kFibreXY, 3}, {kFibreYZ, 5}, {kFibreXZ, 4}};

/// The numbers of the tensor's items that the file holds by node, with commas between them.
std::string ListItemsByNode(const std::vector<ListedItem>& items) {
    std::string list;
    for (const ListedItem& listed : items) {
        if (!listed.byElement && FindStageItem(StageKind::Fibre, listed.id) != nullptr) {
            list += (list.empty() ? "" : ", ") + std::to_string(listed.id);
        }
    }
    return list;
}

void ReportItemsByNode(const std::string& path, const std::string& items) {
    RecordFault({path, "items " + items, "values by cell", "values by node",
                 "export the fibre result again with its items by cell"});
}

void ReportText(const std::string& path) {
    RecordFault({path, "", "a binary fibre result", "a text, which is not read: the tensors count as 0",
                 "export the fibre result again as a binary one"});
}

/// Other results use these ids for values by node.
bool HoldsTensor(const std::vector<ListedItem>& items) {
    return std::any_of(items.begin(), items.end(), [](const ListedItem& listed) {
        return listed.byElement && FindStageItem(StageKind::Fibre, listed.id) != nullptr;
    });
}

void ReportNoTensor(const std::string& path) {
    const std::string name = path.substr(path.find_last_of("\\/") + 1);
    RecordFault({path, "", "the fibre orientation tensor by cell (items 4, 5, 6, 9, 10, 11)",
                 "no fibre orientation tensor",
                 EndsWith(name, kFibreExtension)
                     ? "write the result of the fibre analysis again"
                     : "name the fibre result of the same run, " + name.substr(0, name.rfind('.')) +
                           std::string(kFibreExtension)});
}

}  // namespace

}  // namespace qnl::input

int ReadFiberResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const qnl::input::OpenedAs opened = qnl::input::OpenResult(job, reader, path, qnl::input::kMessages);
    if (opened == qnl::input::OpenedAs::Text) {
        qnl::input::ReportText(path);
    }
    if (opened != qnl::input::OpenedAs::Binary) {
        return -1;
    }
    qnl::LogPlain(job, "K4Overson =%d \n", reader.GetResultVersion());
    const std::vector<qnl::input::ListedItem> items = qnl::input::ListItems(job, reader);
    const std::string byNode =
        qnl::EndsWith(path, qnl::kFibreExtension) ? qnl::input::ListItemsByNode(items) : std::string();
    const int maxNode = reader.GetMaxCavityNode();
    qnl::LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const int maxElem = reader.GetMaxCavityElem();
    qnl::LogPlain(job, "nMaxElems = %d \n", maxElem);
    const int last = std::min(maxElem, job.m_nCells);
    const int room = std::max(maxElem, maxNode);  // a stage file may hold items by node under these ids
    for (const qnl::input::FiberItem& item : qnl::input::kItems) {
        const qnl::input::ItemValues values = qnl::input::ReadItem(reader, item.item, room);
        if (qnl::OwnedArray<double>& slot = job.m_pCellFiber[item.slot]; slot) {
            std::copy_n(values.begin() + 1, last, slot.get() + 1);
        }
    }
    reader.EndReading();
    if (!byNode.empty()) {
        qnl::input::ReportItemsByNode(path, byNode);
    } else if (!qnl::input::HoldsTensor(items)) {
        qnl::input::ReportNoTensor(path);
    }
    qnl::input::ReportCellsBeyond(path, maxElem, job.m_nCells);
    return 1;
}
