#include "unit/output/RecordedWriter.h"

#include <utility>

#include "platform/CQNL3DResultWriter_Manipulator.h"
#include "support/CallText.h"

RecordedWriting& TheWriting() {
    static RecordedWriting writing;
    return writing;
}

struct CQNL3DResultWriter_Manipulator::State {
    int nodes = 0;
    std::size_t items = 0;
};

namespace {

template <typename... Values>
bool Called(const char* name, const Values&... values) {
    TheWriting().calls.push_back(CallText(name, values...));
    return true;
}

}  // namespace

CQNL3DResultWriter_Manipulator::CQNL3DResultWriter_Manipulator() : state_(std::make_unique<State>()) {}

CQNL3DResultWriter_Manipulator::~CQNL3DResultWriter_Manipulator() = default;

int CQNL3DResultWriter_Manipulator::BeginWriting(const char* path, const char* option, bool create) {
    Called("BeginWriting", path, std::string("'") + option + "'", create);
    return 1;
}

bool CQNL3DResultWriter_Manipulator::SetHeadInfo(int code, int stamp, const char* mesh, const char* material,
                                                 const char* project, int flag, int itemCount) {
    state_->items = static_cast<std::size_t>(itemCount);
    return Called("SetHeadInfo", code, stamp, mesh, material, project, flag, itemCount);
}

bool CQNL3DResultWriter_Manipulator::SetFileInfo(const char* program, int major, int minor, int patch) {
    return Called("SetFileInfo", program, major, minor, patch);
}

bool CQNL3DResultWriter_Manipulator::SetMultipleTimeStepOutputInfo(int index, float* values, char** units) {
    return Called("SetMultipleTimeStepOutputInfo", index, values[0], units[0]);
}

bool CQNL3DResultWriter_Manipulator::SetResultTypeInfo(int nodes, int elements, int count3, int count4,
                                                       int count5, int count6, int count7, int count8) {
    state_->nodes = nodes;
    return Called("SetResultTypeInfo", nodes, elements, count3, count4, count5, count6, count7, count8);
}

bool CQNL3DResultWriter_Manipulator::SetResultDataIDMap(QNLRESULTTYPE type, bool used) {
    return Called("SetResultDataIDMap", static_cast<int>(type), used);
}

bool CQNL3DResultWriter_Manipulator::SetResultItemInfo(int* ids, char** names, char** units, int* dataTypes) {
    for (std::size_t i = 0; i < state_->items; ++i) {
        TheWriting().items.push_back(std::to_string(ids[i]) + " " +
                                     CallText(names[i], units[i], dataTypes[i]));
    }
    return Called("SetResultItemInfo");
}

bool CQNL3DResultWriter_Manipulator::SetMaxMinInfo(float* maxima, float* minima) {
    for (std::size_t i = 0; i < state_->items; ++i) {
        TheWriting().items[i] += CallText("", maxima[i], minima[i]);
    }
    return Called("SetMaxMinInfo");
}

void qnl::SetResultOrigin(CQNL3DResultWriter_Manipulator& /*writer*/, qnl::ResultOrigin origin) {
    TheWriting().origin = std::move(origin);
    Called("SetResultOrigin");
}

bool CQNL3DResultWriter_Manipulator::WriteResultDataIDArray(QNLRESULTTYPE type, int* ids) {
    TheWriting().labels.assign(ids + 1, ids + 1 + state_->nodes);
    return Called("WriteResultDataIDArray", static_cast<int>(type));
}

bool CQNL3DResultWriter_Manipulator::WriteResultItem(int id, float* values) {
    TheWriting().values[id].assign(values + 1, values + 1 + state_->nodes);
    return Called("WriteResultItem", id);
}

bool CQNL3DResultWriter_Manipulator::EndWriting() {
    return Called("EndWriting");
}
