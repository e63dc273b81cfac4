#include "results/ResultFile.h"

#include <algorithm>
#include <cmath>

#include "results/ResultInput.h"
#include "results/ResultOutput.h"

namespace qnl::results {
namespace {

ResultFileContent Describe(const StageResult& result) {
    ResultFileContent description;
    description.maxNode = result.nodeIds ? static_cast<int>(result.nodeIds->size()) : result.maxNode;
    description.maxElement = result.maxElement;
    description.head = result.head;
    description.producer = result.producer;
    description.time = result.time;
    for (const ResultItem& item : result.items) {
        description.items.push_back({item.id, item.name, item.unit, item.dataType, 0.0F, 0.0F, {}});
    }
    return description;
}

void SetRange(ResultItem& item, const std::vector<float>& values) {
    bool first = true;
    for (const float value : values) {
        if (!std::isfinite(value)) {
            continue;
        }
        item.max = first ? value : std::max(item.max, value);
        item.min = first ? value : std::min(item.min, value);
        first = false;
    }
}

bool HasFittingLengths(std::string_view path, const StageResult& result,
                       const ResultFileContent& description) {
    for (const ResultItem& item : result.items) {
        const int expected = item.dataType == kElementData ? description.maxElement : description.maxNode;
        if (expected < 0 || item.values.size() != static_cast<std::size_t>(expected)) {
            RecordFault({std::string(path), "item " + std::to_string(item.id),
                         std::to_string(expected) + " values", std::to_string(item.values.size()) + " values",
                         "give one value for each entry"});
            return false;
        }
    }
    return true;
}

void WriteAll(ResultOutput& output, const StageResult& result, ResultFileContent& description) {
    if (result.nodeIds) {
        output.WriteNodeIds(result.nodeIds->data());
    }
    for (std::size_t i = 0; i < result.items.size(); ++i) {
        SetRange(description.items[i], result.items[i].values);
        output.WriteItem(description.items[i], result.items[i].values.data());
    }
}

}  // namespace

ResultFileContent ReadResultSummary(std::string_view path) {
    return ResultInput(path).Description();
}

ResultFileContent ReadResultFile(std::string_view path) {
    const ResultInput input(path);
    ResultFileContent content = input.Description();
    input.ReadNodeIds(content.nodeIds);
    for (ResultItem& item : content.items) {
        input.ReadItem(item.id, item.values);
    }
    return content;
}

bool WriteStageResult(std::string_view path, const StageResult& result) {
    ResultFileContent description = Describe(result);
    if (!HasFittingLengths(path, result, description)) {
        return false;
    }
    try {
        ResultOutput output(path, description);
        WriteAll(output, result, description);
        return output.Close();
    } catch (const hdf5::Hdf5Error& error) {
        RecordFault({error.File(), error.Object(), "a result that can be stored", error.Reason(),
                     "give each item a number of its own"});
        return false;
    }
}

}  // namespace qnl::results
