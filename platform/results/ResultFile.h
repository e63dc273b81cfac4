#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Faults.h"
#include "platform/QNLResultType.h"
#include "platform/ResultOrigin.h"

/// Result files as values, for programs of our own. A file holds the items of one stage and one time,
/// each an array over nodes or elements. It is dense (entry i belongs to node or element number i) or
/// carries the node label of each row. Arrays here are 0-based: entry number i stands at i - 1.
namespace qnl::results {

/// What a result file says about the run it belongs to.
struct ResultHead {
    int code = 0;
    int stamp = 0;
    std::string mesh;
    std::string material;
    std::string project;
    int flag = 0;
};

struct ResultProducer {
    std::string program;
    int major = 0;
    int minor = 0;
    int patch = 0;
};

struct ResultTime {
    int index = 0;
    float value = 0.0F;
    std::string unit;  ///< "s" in stage files
};

inline constexpr int kNodeData = QNLRESULT_NODE;
inline constexpr int kElementData = QNLRESULT_ELEMENT;

struct ResultItem {
    int id = 0;  ///< 1 or more
    std::string name;
    std::string unit;
    int dataType = kNodeData;
    float max = 0.0F;
    float min = 0.0F;
    std::vector<float> values;
};

struct ResultFileContent {
    int resultVersion = 1;
    int maxNode = 0;     ///< node entries: the largest label, or the number of rows with labels
    int maxElement = 0;  ///< element entries
    ResultHead head;
    std::optional<ResultProducer> producer;
    std::optional<ResultTime> time;
    std::optional<ResultOrigin> origin;  ///< none in files that do not tell it
    bool hasNodeIds = false;
    std::vector<int> nodeIds;       ///< label of each row, as the file says: any number
    std::vector<ResultItem> items;  ///< ascending by id
};

/// Why a result file cannot be used. Status: -1 it cannot be opened, -2 of another kind or damaged, -3 of
/// a newer format version, -4 it exists and is not binary.
class ResultFileError : public std::runtime_error {
public:
    ResultFileError(int status, Fault fault);
    int Status() const { return status_; }
    const Fault& What() const { return fault_; }

private:
    int status_;
    Fault fault_;
};

/// Everything in a file. An item whose values cannot be read, or whose length is not that of its type,
/// comes without values; it, and values that are not finite, are recorded as faults. Raises
/// ResultFileError.
ResultFileContent ReadResultFile(std::string_view path);

/// The same without values and node labels. Raises ResultFileError.
ResultFileContent ReadResultSummary(std::string_view path);

/// What a result file says that it was made from; none when it does not, or cannot be read.
std::optional<ResultOrigin> ReadResultOrigin(std::string_view path);

/// What one stage gives at one time.
struct StageResult {
    ResultHead head;
    ResultProducer producer;
    ResultTime time;
    int maxNode = 0;
    int maxElement = 0;
    std::optional<std::vector<int>> nodeIds;  ///< when given, maxNode is their number
    std::vector<ResultItem> items;            ///< ascending ids; max and min are taken from the values
};

/// Writes a stage result; the file appears complete or not at all. False, with a fault recorded, when an
/// item has another length than its type asks for, or when the file cannot be written.
[[nodiscard]] bool WriteStageResult(std::string_view path, const StageResult& result);

}  // namespace qnl::results
