#include "results/ResultInput.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

#include "results/OriginGroup.h"
#include "results/ResultLayout.h"

namespace qnl::results {
namespace {

constexpr int kCannotBeOpened = -1;
constexpr int kDamaged = -2;
constexpr int kNewer = -3;
constexpr int kNotBinary = -4;

constexpr const char* kWriteAgain = "run the analysis that writes this file again";

Fault ToFault(const hdf5::Hdf5Error& error) {
    return {error.File(), error.Object(), "a result file", error.Reason(), kWriteAgain};
}

std::string_view CheckBinary(std::string_view path) {
    switch (hdf5::Recognise(path)) {
        case hdf5::FileKind::Unreadable:
            throw ResultFileError(kCannotBeOpened, {std::string(path), "", "a result file",
                                                    "it cannot be opened", "check its name and folder"});
        case hdf5::FileKind::Other:
            throw ResultFileError(kNotBinary, {std::string(path), "", "a binary result file",
                                               "a file of another kind", kWriteAgain});
        case hdf5::FileKind::Hdf5:
            break;
    }
    return path;
}

hdf5::InputFile Open(std::string_view path) {
    try {
        return hdf5::InputFile(CheckBinary(path));
    } catch (const hdf5::Hdf5Error& error) {
        throw ResultFileError(kDamaged, ToFault(error));
    }
}

/// The number that an item's name stands for; 0 when it is not a positive number in plain digits.
int ItemId(const std::string& name) {
    int id = 0;
    const char* end = name.data() + name.size();
    const std::from_chars_result parsed = std::from_chars(name.data(), end, id);
    return parsed.ec == std::errc() && parsed.ptr == end && id > 0 && name == std::to_string(id) ? id : 0;
}

std::string ItemPath(int id) {
    return std::string(layout::kItems) + "/" + std::to_string(id);
}

std::string ItemTitle(int id) {
    return "item " + std::to_string(id);
}

std::string ShapeText(const hdf5::DatasetInfo& shape) {
    if (shape.shape.size() != 1) {
        return "an array with " + std::to_string(shape.shape.size()) + " axes";
    }
    return std::to_string(shape.elements) + " values";
}

void RecordNonFinite(const std::string& file, const std::string& title, const std::vector<float>& values) {
    const auto isBad = [](float value) { return !std::isfinite(value); };
    const auto first = std::find_if(values.begin(), values.end(), isBad);
    if (first == values.end()) {
        return;
    }
    const auto count = std::count_if(first, values.end(), isBad);
    RecordFault({file, title, "finite values",
                 std::to_string(count) + " values that are not finite, the first at entry " +
                     std::to_string(first - values.begin() + 1),
                 kWriteAgain});
}

}  // namespace

ResultFileError::ResultFileError(int status, Fault fault)
    : std::runtime_error(fault.file + ": " + (fault.object.empty() ? "" : fault.object + ": ") + "expected " +
                         fault.expected + ", found " + fault.found),
      status_(status),
      fault_(std::move(fault)) {}

ResultInput::ResultInput(std::string_view path) : file_(Open(path)) {
    try {
        CheckFormat();
        ReadHead();
        ReadOptionalGroups();
        ReadItemDescriptions();
        ReadCounts();
    } catch (const hdf5::Hdf5Error& error) {
        throw ResultFileError(kDamaged, ToFault(error));
    }
}

void ResultInput::Reject(const std::string& object, const std::string& expected,
                         const std::string& found) const {
    throw ResultFileError(kDamaged, {file_.Path(), object, expected, found, kWriteAgain});
}

void ResultInput::CheckFormat() const {
    const std::string format = file_.ReadText(layout::kRoot, "format");
    if (format != layout::kFormat) {
        Reject("format", std::string("\"") + layout::kFormat + "\"", "\"" + format + "\"");
    }
    const auto version = file_.ReadScalar<std::int64_t>(layout::kRoot, "format_version");
    const std::string expected = "version " + std::to_string(layout::kFormatVersion);
    if (version > layout::kFormatVersion) {
        throw ResultFileError(kNewer, {file_.Path(), "format_version", expected, std::to_string(version),
                                       "read it with a newer version of this program"});
    }
    if (version < layout::kFormatVersion) {
        Reject("format_version", expected, std::to_string(version));
    }
}

std::string ResultInput::ReadText(const std::string& object, const char* name,
                                  std::size_t bufferBytes) const {
    std::string text = file_.ReadText(object, name);
    if (text.size() >= bufferBytes) {
        Reject(object + " " + name, "a text of at most " + std::to_string(bufferBytes - 1) + " bytes",
               std::to_string(text.size()) + " bytes");
    }
    return text;
}

void ResultInput::ReadHead() {
    const auto number = [&](const char* name) { return file_.ReadScalar<std::int32_t>(layout::kHead, name); };
    const auto text = [&](const char* name) { return ReadText(layout::kHead, name, layout::kHeadTextBytes); };
    description_.resultVersion = file_.ReadScalar<std::int32_t>(layout::kRoot, "result_version");
    description_.head = {number("code"),   number("stamp"), text("mesh"),
                         text("material"), text("project"), number("flag")};
}

void ResultInput::ReadOptionalGroups() {
    if (file_.Exists(layout::kProducer)) {
        const auto number = [&](const char* name) {
            return file_.ReadScalar<std::int32_t>(layout::kProducer, name);
        };
        description_.producer = ResultProducer{file_.ReadText(layout::kProducer, "program"), number("major"),
                                               number("minor"), number("patch")};
    }
    if (file_.Exists(layout::kTime)) {
        description_.time = ResultTime{file_.ReadScalar<std::int32_t>(layout::kTime, "index"),
                                       file_.ReadScalar<float>(layout::kTime, "value"),
                                       ReadText(layout::kTime, "unit", layout::kItemTextBytes)};
    }
    description_.origin = ReadOrigin(file_);
}

void ResultInput::ReadItemDescriptions() {
    for (const std::string& name : file_.List(layout::kItems)) {
        const int id = ItemId(name);
        if (id == 0) {
            Reject(layout::kItems, "item numbers", "\"" + name + "\"");
        }
        const std::string path = ItemPath(id);
        ResultItem item;
        item.id = id;
        item.name = ReadText(path, "name", layout::kItemTextBytes);
        item.unit = ReadText(path, "unit", layout::kItemTextBytes);
        item.dataType = file_.ReadScalar<std::int32_t>(path, "data_type");
        if (item.dataType != kNodeData && item.dataType != kElementData) {
            Reject(ItemTitle(id) + " data_type", "1 (node) or 2 (element)", std::to_string(item.dataType));
        }
        const bool hasRange = file_.HasAttribute(path, "max") && file_.HasAttribute(path, "min");
        item.max = hasRange ? file_.ReadScalar<float>(path, "max") : 0.0F;
        item.min = hasRange ? file_.ReadScalar<float>(path, "min") : 0.0F;
        description_.items.push_back(std::move(item));
    }
    std::sort(description_.items.begin(), description_.items.end(),
              [](const ResultItem& a, const ResultItem& b) { return a.id < b.id; });
    for (const ResultItem& item : description_.items) {
        shapes_.push_back(file_.Describe(ItemPath(item.id)));
    }
    const auto announced = file_.ReadScalar<std::int64_t>(layout::kHead, "item_count");
    if (announced != static_cast<std::int64_t>(shapes_.size())) {
        RecordFault({file_.Path(), "item_count", std::to_string(announced) + " items",
                     std::to_string(shapes_.size()) + " items", kWriteAgain});
    }
}

int ResultInput::ReadCount(const char* name, std::uint64_t longest) const {
    const auto count = file_.ReadScalar<std::int32_t>(layout::kRoot, name);
    if (count < 0 || static_cast<std::uint64_t>(count) > std::max(longest, layout::kTrustedCount)) {
        Reject(name, "a number of stored entries", std::to_string(count));
    }
    return count;
}

void ResultInput::ReadCounts() {
    std::uint64_t longest = 0;
    const auto include = [&](const hdf5::DatasetInfo& shape) {
        if (shape.backed && shape.shape.size() == 1) {
            longest = std::max(longest, shape.elements);
        }
    };
    std::for_each(shapes_.begin(), shapes_.end(), include);
    description_.hasNodeIds = file_.Exists(layout::kNodeIds);
    hdf5::DatasetInfo ids{};
    if (description_.hasNodeIds) {
        ids = file_.Describe(layout::kNodeIds);
        include(ids);
    }
    description_.maxNode = ReadCount("max_node", longest);
    description_.maxElement = ReadCount("max_element", longest);
    const bool idsFit = ids.shape.size() == 1 && ids.kind == hdf5::ValueKind::Integer &&
                        ids.elements == static_cast<std::uint64_t>(description_.maxNode);
    if (description_.hasNodeIds && !idsFit) {
        Reject("node_ids", std::to_string(description_.maxNode) + " integers", ShapeText(ids));
    }
}

int ResultInput::Entries(int dataType) const {
    return dataType == kElementData ? description_.maxElement : description_.maxNode;
}

bool ResultInput::ReadItem(int id, std::vector<float>& values) const {
    const auto& items = description_.items;
    const auto item = std::lower_bound(items.begin(), items.end(), id,
                                       [](const ResultItem& a, int wanted) { return a.id < wanted; });
    if (item == items.end() || item->id != id) {
        return false;
    }
    const auto& shape = shapes_[static_cast<std::size_t>(item - items.begin())];
    const auto expected = static_cast<std::uint64_t>(Entries(item->dataType));
    if (shape.shape.size() != 1 || shape.elements != expected) {
        RecordFault({file_.Path(), ItemTitle(id), std::to_string(expected) + " values", ShapeText(shape),
                     kWriteAgain});
        return false;
    }
    try {
        values = file_.Read<float>(ItemPath(id), expected);
    } catch (const hdf5::Hdf5Error& error) {
        RecordFault(ToFault(error));
        return false;
    }
    RecordNonFinite(file_.Path(), ItemTitle(id), values);
    return true;
}

bool ResultInput::ReadNodeIds(std::vector<int>& ids) const {
    if (!description_.hasNodeIds) {
        return false;
    }
    try {
        ids = file_.Read<std::int32_t>(layout::kNodeIds, static_cast<std::uint64_t>(description_.maxNode));
    } catch (const hdf5::Hdf5Error& error) {
        RecordFault(ToFault(error));
        return false;
    }
    return true;
}

}  // namespace qnl::results
