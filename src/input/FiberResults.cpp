#include "input/FiberResults.h"

#include <algorithm>
#include <cstddef>

#include "input/BinaryResult.h"
#include "input/InputFaults.h"
#include "job/Messages.h"

namespace {

// The flow reader's message stands for fibre results as well.
constexpr qnl::OpenMessages kMessages{"Can't open FlowResults ", " ASCII ", "Read FiberResults by Binary "};

struct FiberItem {
    int item;
    std::size_t slot;  ///< xx, yy, zz, xy, xz, yz
};

// In the order of reading; the file numbers yz before xz.
constexpr FiberItem kItems[] = {{4, 0}, {5, 1}, {6, 2}, {9, 3}, {10, 5}, {11, 4}};

}  // namespace

int ReadFiberResults(FrozenLayerJob& job, const char* path) {
    CQNL3DResultReader_Manipulator reader;
    if (qnl::OpenResult(job, reader, path, kMessages) != qnl::OpenedAs::Binary) {
        return -1;
    }
    LogPlain(job, "K4Overson =%d \n", reader.GetResultVersion());
    qnl::ListItems(job, reader);
    const int maxNode = reader.GetMaxCavityNode();
    LogPlain(job, "nMaxNodes = %d \n", maxNode);
    const int maxElem = reader.GetMaxCavityElem();
    LogPlain(job, "nMaxElems = %d \n", maxElem);
    const int last = std::min(maxElem, job.m_nCells);
    const int room = std::max(maxElem, maxNode);  // a stage file may hold items by node under these ids
    for (const FiberItem& item : kItems) {
        const qnl::ItemValues values = qnl::ReadItem(reader, item.item, room);
        if (OwnedArray<double>& slot = job.m_pCellFiber[item.slot]; slot && last > 0) {
            std::copy_n(values.begin() + 1, last, slot.get() + 1);
        }
    }
    reader.EndReading();
    qnl::ReportCellsBeyond(path, maxElem, job.m_nCells);
    return 1;
}
