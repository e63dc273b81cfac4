#include "platform/CQNL3DResultReader_Manipulator.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "results/ResultInput.h"

struct CQNL3DResultReader_Manipulator::State {
    std::string path;
    std::optional<qnl::results::ResultInput> input;
    std::vector<float> values;
    std::vector<int> ids;
    bool nodesAsked = false;     ///< the caller knows the number of node entries
    bool elementsAsked = false;  ///< the caller knows the number of element entries

    /// False when the caller can have no room for values of this type.
    bool HasRoomFor(int dataType) const {
        const bool asked = dataType == qnl::results::kElementData ? elementsAsked : nodesAsked;
        return asked || !(nodesAsked || elementsAsked);
    }

    /// True, and recorded, for an item of a type that the caller has no room for.
    bool Refuses(int item) const {
        for (const qnl::results::ResultItem& described : input->Description().items) {
            if (described.id == item && !HasRoomFor(described.dataType)) {
                const bool byElement = described.dataType == qnl::results::kElementData;
                qnl::RecordFault({path, "item " + std::to_string(item) + " data_type",
                                  byElement ? "values by node" : "values by element",
                                  byElement ? "values by element" : "values by node",
                                  "write the result again, with the items of its stage"});
                return true;
            }
        }
        return false;
    }
};

namespace qnl::results {

namespace {

constexpr int kOpen = 0;
constexpr int kNotBinary = -4;

/// Lengths are checked when the file is opened.
void CopyText(const std::string& text, char* buffer) {
    std::copy(text.begin(), text.end(), buffer);
    buffer[text.size()] = '\0';
}

}  // namespace

}  // namespace qnl::results

CQNL3DResultReader_Manipulator::CQNL3DResultReader_Manipulator() : state_(std::make_unique<State>()) {}

CQNL3DResultReader_Manipulator::~CQNL3DResultReader_Manipulator() = default;

int CQNL3DResultReader_Manipulator::BeginReading(const char* path, const char* /*option*/) {
    *state_ = State();
    state_->path = path != nullptr ? path : "";
    try {
        state_->input.emplace(state_->path);
    } catch (const qnl::results::ResultFileError& error) {
        if (error.Status() != qnl::results::kNotBinary) {
            qnl::RecordFault(error.What());
        }
        return error.Status();
    }
    return qnl::results::kOpen;
}

int CQNL3DResultReader_Manipulator::GetResultVersion() {
    return state_->input ? state_->input->Description().resultVersion : 0;
}

void CQNL3DResultReader_Manipulator::GetHeadInfo(int& code, int& stamp, char* mesh, char* material,
                                                 char* project, int& flag, int& itemCount) {
    const qnl::results::ResultFileContent none;
    const qnl::results::ResultFileContent& description = state_->input ? state_->input->Description() : none;
    code = description.head.code;
    stamp = description.head.stamp;
    qnl::results::CopyText(description.head.mesh, mesh);
    qnl::results::CopyText(description.head.material, material);
    qnl::results::CopyText(description.head.project, project);
    flag = description.head.flag;
    itemCount = static_cast<int>(description.items.size());
}

void CQNL3DResultReader_Manipulator::GetResultItemInfo(int* itemIds, char** names, char** units,
                                                       int* dataTypes) {
    if (!state_->input) {
        return;
    }
    const std::vector<qnl::results::ResultItem>& items = state_->input->Description().items;
    for (std::size_t i = 0; i < items.size(); ++i) {
        itemIds[i] = items[i].id;
        qnl::results::CopyText(items[i].name, names[i]);
        qnl::results::CopyText(items[i].unit, units[i]);
        dataTypes[i] = items[i].dataType;
    }
}

int CQNL3DResultReader_Manipulator::GetMaxCavityNode() {
    state_->nodesAsked = true;
    return state_->input ? state_->input->Entries(qnl::results::kNodeData) : 0;
}

int CQNL3DResultReader_Manipulator::GetMaxCavityElem() {
    state_->elementsAsked = true;
    return state_->input ? state_->input->Entries(qnl::results::kElementData) : 0;
}

bool CQNL3DResultReader_Manipulator::GetResultItem(int item, float* values) {
    if (!state_->input || state_->Refuses(item) || !state_->input->ReadItem(item, state_->values)) {
        return false;
    }
    std::copy(state_->values.begin(), state_->values.end(), values + 1);
    return true;
}

bool CQNL3DResultReader_Manipulator::GetResultDataIDMap(QNLRESULTTYPE type) {
    return type == QNLRESULT_NODE && state_->input && state_->input->Description().hasNodeIds;
}

bool CQNL3DResultReader_Manipulator::GetResultDataIDArray(QNLRESULTTYPE type, int* ids) {
    if (!GetResultDataIDMap(type) || !state_->input->ReadNodeIds(state_->ids)) {
        return false;
    }
    std::copy(state_->ids.begin(), state_->ids.end(), ids + 1);
    return true;
}

void CQNL3DResultReader_Manipulator::EndReading() {
    *state_ = State();
}
