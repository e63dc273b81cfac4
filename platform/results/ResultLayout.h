#pragma once

#include <cstddef>
#include <cstdint>

/// Names and limits of the result file. Attributes of "/": format, format_version, result_version,
/// max_node, max_element; of "/head": code, stamp, mesh, material, project, flag, item_count; of
/// "/producer": program, major, minor, patch; of "/time": index, value, unit; of each float32 dataset
/// "/items/<id>": name, unit, data_type, max, min. "/node_ids" is an int32 dataset. "/inputs" tells what our
/// own results were made from; others pass it over.
namespace qnl::results::layout {

inline constexpr const char* kFormat = "qnl-result";
inline constexpr int kFormatVersion = 1;

inline constexpr const char* kRoot = "/";
inline constexpr const char* kHead = "/head";
inline constexpr const char* kProducer = "/producer";
inline constexpr const char* kTime = "/time";
inline constexpr const char* kItems = "/items";
inline constexpr const char* kInputs = "/inputs";
inline constexpr const char* kNodeIds = "/node_ids";

/// Bytes of the callers' text buffers, the closing NUL included.
inline constexpr std::size_t kHeadTextBytes = 1024;
inline constexpr std::size_t kItemTextBytes = 260;

/// Callers allocate by max_node and max_element. A count beyond this is believed only when an array of
/// that length is stored.
inline constexpr std::uint64_t kTrustedCount = 16777216;

}  // namespace qnl::results::layout
