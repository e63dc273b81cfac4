#include "input/BinaryResult.h"

#include <algorithm>

#include "context/Messages.h"

namespace qnl::input {
namespace {

constexpr int kNotBinary = -4;
constexpr std::size_t kHeadText = 1024;
constexpr std::size_t kItemText = 260;

/// Buffers for one text per item, in one block.
class ItemTexts {
public:
    explicit ItemTexts(std::size_t items) : block_(items * kItemText), texts_(items) {
        for (std::size_t i = 0; i < items; ++i) {
            texts_[i] = block_.data() + i * kItemText;
        }
    }
    char** Texts() { return texts_.data(); }

private:
    std::vector<char> block_;
    std::vector<char*> texts_;
};

int ReadItemCount(CQNL3DResultReader_Manipulator& reader) {
    std::vector<char> mesh(kHeadText);
    std::vector<char> material(kHeadText);
    std::vector<char> project(kHeadText);
    int code = 0;
    int stamp = 0;
    int flag = 0;
    int items = 0;
    reader.GetHeadInfo(code, stamp, mesh.data(), material.data(), project.data(), flag, items);
    return items;
}

}  // namespace

OpenedAs OpenResult(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader, const char* path,
                    const OpenMessages& messages) {
    const int status = reader.BeginReading(path, nullptr);
    if (status == kNotBinary && messages.text != nullptr) {
        LogLine(job, messages.text);
        return OpenedAs::Text;
    }
    if (status < 0) {
        LogLine(job, messages.failed);
        LogPlain(job, "FileError = %d \n", status);
        return OpenedAs::Nothing;
    }
    LogLine(job, messages.binary);
    return OpenedAs::Binary;
}

std::vector<ListedItem> ListItems(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader) {
    const int count = ReadItemCount(reader);
    LogPlain(job, "nItemCount = %d \n", count);
    const auto items = static_cast<std::size_t>(std::max(count, 0));
    std::vector<int> ids(items);
    std::vector<int> types(items);
    ItemTexts names(items);
    ItemTexts units(items);
    reader.GetResultItemInfo(ids.data(), names.Texts(), units.Texts(), types.data());
    std::vector<ListedItem> listed;
    for (std::size_t i = 0; i < items; ++i) {
        listed.push_back({ids[i], types[i] == QNLRESULT_ELEMENT});
    }
    return listed;
}

ItemValues ReadItem(CQNL3DResultReader_Manipulator& reader, int item, int count, float fill) {
    ItemValues values(ItemEntries(count), fill);
    reader.GetResultItem(item, values.data());
    return values;
}

}  // namespace qnl::input
