#include "results/ResultOutput.h"

#include <cstdint>

#include "results/OriginGroup.h"
#include "results/ResultLayout.h"

namespace qnl::results {

ResultOutput::ResultOutput(std::string_view path, const ResultFileContent& description)
    : file_(path), maxNode_(description.maxNode), maxElement_(description.maxElement) {
    file_.WriteVariableText(layout::kRoot, "format", layout::kFormat);
    file_.WriteScalar<std::int32_t>(layout::kRoot, "format_version", layout::kFormatVersion);
    file_.WriteScalar<std::int32_t>(layout::kRoot, "result_version", description.resultVersion);
    file_.WriteScalar<std::int32_t>(layout::kRoot, "max_node", maxNode_);
    file_.WriteScalar<std::int32_t>(layout::kRoot, "max_element", maxElement_);

    const ResultHead& head = description.head;
    file_.CreateGroup(layout::kHead);
    file_.WriteScalar<std::int32_t>(layout::kHead, "code", head.code);
    file_.WriteScalar<std::int32_t>(layout::kHead, "stamp", head.stamp);
    file_.WriteVariableText(layout::kHead, "mesh", head.mesh);
    file_.WriteVariableText(layout::kHead, "material", head.material);
    file_.WriteVariableText(layout::kHead, "project", head.project);
    file_.WriteScalar<std::int32_t>(layout::kHead, "flag", head.flag);
    file_.WriteScalar<std::int32_t>(layout::kHead, "item_count",
                                    static_cast<std::int32_t>(description.items.size()));

    const ResultProducer producer = description.producer.value_or(ResultProducer{});
    file_.CreateGroup(layout::kProducer);
    file_.WriteVariableText(layout::kProducer, "program", producer.program);
    file_.WriteScalar<std::int32_t>(layout::kProducer, "major", producer.major);
    file_.WriteScalar<std::int32_t>(layout::kProducer, "minor", producer.minor);
    file_.WriteScalar<std::int32_t>(layout::kProducer, "patch", producer.patch);

    const ResultTime time = description.time.value_or(ResultTime{});
    file_.CreateGroup(layout::kTime);
    file_.WriteScalar<std::int32_t>(layout::kTime, "index", time.index);
    file_.WriteScalar<float>(layout::kTime, "value", time.value);
    file_.WriteVariableText(layout::kTime, "unit", time.unit);

    file_.CreateGroup(layout::kItems);
    if (description.origin) {
        WriteOrigin(*description.origin, file_);
    }
}

void ResultOutput::WriteNodeIds(const int* ids) {
    file_.Write<std::int32_t>(layout::kNodeIds, ids, {static_cast<std::uint64_t>(maxNode_)});
}

void ResultOutput::WriteItem(const ResultItem& item, const float* values) {
    const std::string path = std::string(layout::kItems) + "/" + std::to_string(item.id);
    const int entries = item.dataType == kElementData ? maxElement_ : maxNode_;
    file_.Write<float>(path, values, {static_cast<std::uint64_t>(entries)});
    file_.WriteVariableText(path, "name", item.name);
    file_.WriteVariableText(path, "unit", item.unit);
    file_.WriteScalar<std::int32_t>(path, "data_type", item.dataType);
    file_.WriteScalar<float>(path, "max", item.max);
    file_.WriteScalar<float>(path, "min", item.min);
}

bool ResultOutput::Close() {
    try {
        file_.Close();
    } catch (const hdf5::Hdf5Error&) {
        return false;
    }
    return true;
}

}  // namespace qnl::results
