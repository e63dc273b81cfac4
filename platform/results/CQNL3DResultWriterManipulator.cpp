#include "platform/CQNL3DResultWriter_Manipulator.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/HostFiles.h"
#include "results/ResultOutput.h"

/// The description is collected; the file is begun with the first array, when all of it is known.
struct CQNL3DResultWriter_Manipulator::State {
    std::string path;
    qnl::results::ResultFileContent description;
    std::size_t itemCount = 0;
    std::vector<bool> written;  ///< by item
    bool idsWritten = false;
    std::optional<qnl::results::ResultOutput> output;
    bool failed = true;  ///< nothing has been begun

    bool Fail(const std::string& object, const std::string& expected, const std::string& found) {
        if (!failed) {
            qnl::RecordFault(
                {path, object, expected, found, "the file is not written; an earlier one is kept"});
        }
        failed = true;
        output.reset();
        return false;
    }

    bool Begin() {
        if (failed || output) {
            return !failed;
        }
        if (description.items.size() != itemCount) {
            return Fail("item_count", std::to_string(itemCount) + " items",
                        std::to_string(description.items.size()) + " described items");
        }
        return Store([&] { output.emplace(path, description); });
    }

    template <typename Operation>
    bool Store(Operation operation) {
        try {
            operation();
        } catch (const qnl::hdf5::Hdf5Error& error) {
            return Fail(error.Object(), "a result that can be stored", error.Reason());
        }
        return true;
    }
};

namespace qnl::results {

namespace {

constexpr int kBegun = 1;
constexpr int kNotBegun = -1;

std::string TextOf(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace

}  // namespace qnl::results

CQNL3DResultWriter_Manipulator::CQNL3DResultWriter_Manipulator() : state_(std::make_unique<State>()) {}

CQNL3DResultWriter_Manipulator::~CQNL3DResultWriter_Manipulator() = default;

int CQNL3DResultWriter_Manipulator::BeginWriting(const char* path, const char* /*option*/, bool /*create*/) {
    *state_ = State();
    state_->path = qnl::results::TextOf(path);
    // Tells early whether a file can be made there; nothing of it stays.
    const qnl::ReplacedFile trial(state_->path, "wb");
    state_->failed = !trial;
    return trial ? qnl::results::kBegun : qnl::results::kNotBegun;
}

bool CQNL3DResultWriter_Manipulator::SetHeadInfo(int code, int stamp, const char* mesh, const char* material,
                                                 const char* project, int flag, int itemCount) {
    if (itemCount < 0) {
        return state_->Fail("item_count", "0 or more", std::to_string(itemCount));
    }
    state_->description.head = {code,
                                stamp,
                                qnl::results::TextOf(mesh),
                                qnl::results::TextOf(material),
                                qnl::results::TextOf(project),
                                flag};
    state_->itemCount = static_cast<std::size_t>(itemCount);
    return !state_->failed;
}

bool CQNL3DResultWriter_Manipulator::SetFileInfo(const char* program, int major, int minor, int patch) {
    state_->description.producer =
        qnl::results::ResultProducer{qnl::results::TextOf(program), major, minor, patch};
    return !state_->failed;
}

bool CQNL3DResultWriter_Manipulator::SetMultipleTimeStepOutputInfo(int index, float* values, char** units) {
    state_->description.time = qnl::results::ResultTime{index, values[0], qnl::results::TextOf(units[0])};
    return !state_->failed;
}

bool CQNL3DResultWriter_Manipulator::SetResultTypeInfo(int nodes, int elements, int /*count3*/,
                                                       int /*count4*/, int /*count5*/, int /*count6*/,
                                                       int /*count7*/, int /*count8*/) {
    if (nodes < 0 || elements < 0) {
        return state_->Fail("max_node", "0 or more", std::to_string(std::min(nodes, elements)));
    }
    state_->description.maxNode = nodes;
    state_->description.maxElement = elements;
    return !state_->failed;
}

bool CQNL3DResultWriter_Manipulator::SetResultDataIDMap(QNLRESULTTYPE type, bool used) {
    if (type != QNLRESULT_NODE) {
        return used ? state_->Fail("node_ids", "a map of nodes", "another kind of map") : !state_->failed;
    }
    state_->description.hasNodeIds = used;
    return !state_->failed;
}

bool CQNL3DResultWriter_Manipulator::SetResultItemInfo(int* ids, char** names, char** units, int* dataTypes) {
    std::vector<qnl::results::ResultItem>& items = state_->description.items;
    items.clear();
    for (std::size_t i = 0; i < state_->itemCount; ++i) {
        items.push_back({ids[i],
                         qnl::results::TextOf(names[i]),
                         qnl::results::TextOf(units[i]),
                         dataTypes[i],
                         0.0F,
                         0.0F,
                         {}});
    }
    state_->written.assign(items.size(), false);
    return !state_->failed;
}

bool CQNL3DResultWriter_Manipulator::SetMaxMinInfo(float* maxima, float* minima) {
    std::vector<qnl::results::ResultItem>& items = state_->description.items;
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].max = maxima[i];
        items[i].min = minima[i];
    }
    return !state_->failed;
}

void qnl::SetResultOrigin(CQNL3DResultWriter_Manipulator& writer, qnl::ResultOrigin origin) {
    writer.state_->description.origin = std::move(origin);
}

bool CQNL3DResultWriter_Manipulator::WriteResultDataIDArray(QNLRESULTTYPE type, int* ids) {
    if (type != QNLRESULT_NODE || !state_->description.hasNodeIds) {
        return state_->Fail("node_ids", "a map that has been announced", "an array for another one");
    }
    state_->idsWritten = true;
    return state_->Begin() && state_->Store([&] { state_->output->WriteNodeIds(ids + 1); });
}

bool CQNL3DResultWriter_Manipulator::WriteResultItem(int id, float* values) {
    const std::vector<qnl::results::ResultItem>& items = state_->description.items;
    const auto item =
        std::find_if(items.begin(), items.end(),
                     [id](const qnl::results::ResultItem& described) { return described.id == id; });
    if (item == items.end()) {
        return state_->Fail("item " + std::to_string(id), "an item that has been described", "none");
    }
    state_->written[static_cast<std::size_t>(item - items.begin())] = true;
    return state_->Begin() && state_->Store([&] { state_->output->WriteItem(*item, values + 1); });
}

bool CQNL3DResultWriter_Manipulator::EndWriting() {
    const std::vector<bool>& written = state_->written;
    if (!state_->Begin()) {
        return false;
    }
    const auto missing = std::count(written.begin(), written.end(), false);
    const bool lacksIds = state_->description.hasNodeIds && !state_->idsWritten;
    if (missing > 0 || lacksIds) {
        return state_->Fail(
            "items", "every announced array",
            std::to_string(missing) + " items" + (lacksIds ? " and the node labels missing" : " missing"));
    }
    const bool placed = state_->output->Close();
    *state_ = State();
    return placed;
}
