#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "context/FrozenLayerJob.h"
#include "platform/CQNL3DResultReader_Manipulator.h"

namespace qnl::input {

/// Values of one item, 1-based; entry 0 is not used.
using ItemValues = std::vector<float>;

/// `count` entries and entry 0; a negative count is taken as 0.
inline std::size_t ItemEntries(int count) {
    return static_cast<std::size_t>(std::max(count, 0)) + 1;
}

enum class OpenedAs { Binary, Text, Nothing };

/// What the log says about the way in which a file was opened.
struct OpenMessages {
    const char* failed;
    const char* text;  ///< null: a file that is not binary counts as failed
    const char* binary;
};

/// Offers the file to the result library and logs the outcome, with the library's code on failure.
OpenedAs OpenResult(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader, const char* path,
                    const OpenMessages& messages);

/// One item of a file, and whether its values are by element.
struct ListedItem {
    int id;
    bool byElement;
};

/// Items of the open file; logs their number.
std::vector<ListedItem> ListItems(const FrozenLayerJob& job, CQNL3DResultReader_Manipulator& reader);

/// Values 1 to `count` of an item; those of an item that the file does not hold are `fill`.
ItemValues ReadItem(CQNL3DResultReader_Manipulator& reader, int item, int count, float fill = 0.0F);

}  // namespace qnl::input
