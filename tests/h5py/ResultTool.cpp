// "write FILE" writes a fixed result through the writer's interface; "read FILE" prints what the reader's
// interface gives, one fact a line.

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/CQNL3DResultReader_Manipulator.h"
#include "platform/CQNL3DResultWriter_Manipulator.h"
#include "platform/Faults.h"

namespace {

int Write(const char* path) {
    std::string texts[] = {"Frozen_Ratio", "SinkMarkDisplacement_Totoal", "--", "mm"};
    std::array<char*, 2> names{texts[0].data(), texts[1].data()};
    std::array<char*, 2> units{texts[2].data(), texts[3].data()};
    std::array<int, 2> ids{1, 12};
    std::array<int, 2> types{1, 1};
    std::array<float, 2> maxima{0.75F, 1000.5F};
    std::array<float, 2> minima{0.25F, -5.0F};
    std::array<int, 4> labels{0, 10, 20, 5};
    std::array<float, 4> ratio{0.0F, 0.25F, 0.1F, 0.75F};
    std::array<float, 4> sink{0.0F, 5.0F, 0.0F, -5.0F};
    float time = 0.01F;

    CQNL3DResultWriter_Manipulator writer;
    const bool written =
        writer.BeginWriting(path, "", true) == 1 &&
        writer.SetHeadInfo(1004, 802218888, "Mesh\\a.hdf", "Material\\b.toml", ".pro", 0, 2) &&
        writer.SetFileInfo("QNL3DFrozenLayer", 1000, 1001, 1002) &&
        writer.SetMultipleTimeStepOutputInfo(0, &time, units.data()) &&
        writer.SetResultTypeInfo(3, 0, 0, 0, 0, 0, 0, 0) && writer.SetResultDataIDMap(QNLRESULT_NODE, true) &&
        writer.SetResultItemInfo(ids.data(), names.data(), units.data(), types.data()) &&
        writer.SetMaxMinInfo(maxima.data(), minima.data()) &&
        writer.WriteResultDataIDArray(QNLRESULT_NODE, labels.data()) &&
        writer.WriteResultItem(1, ratio.data()) && writer.WriteResultItem(12, sink.data()) &&
        writer.EndWriting();
    return written ? 0 : 1;
}

template <typename T>
void PrintArray(const char* title, int number, const std::vector<T>& values) {
    std::printf("%s %d:", title, number);
    for (std::size_t i = 1; i < values.size(); ++i) {
        std::printf(" %.9g", static_cast<double>(values[i]));
    }
    std::printf("\n");
}

void PrintItems(CQNL3DResultReader_Manipulator& reader, std::size_t count) {
    std::vector<std::array<char, 260>> nameTexts(count);
    std::vector<std::array<char, 260>> unitTexts(count);
    std::vector<char*> names;
    std::vector<char*> units;
    for (std::size_t i = 0; i < count; ++i) {
        names.push_back(nameTexts[i].data());
        units.push_back(unitTexts[i].data());
    }
    std::vector<int> ids(count);
    std::vector<int> types(count);
    reader.GetResultItemInfo(ids.data(), names.data(), units.data(), types.data());
    for (std::size_t i = 0; i < count; ++i) {
        std::printf("item %d %s [%s] type %d\n", ids[i], names[i], units[i], types[i]);
        const int entries = types[i] == 2 ? reader.GetMaxCavityElem() : reader.GetMaxCavityNode();
        std::vector<float> values(static_cast<std::size_t>(entries) + 1);
        if (reader.GetResultItem(ids[i], values.data())) {
            PrintArray("values", ids[i], values);
        }
    }
}

int Read(const char* path) {
    CQNL3DResultReader_Manipulator reader;
    const int status = reader.BeginReading(path, nullptr);
    std::printf("status %d\n", status);
    if (status >= 0) {
        int code = 0;
        int stamp = 0;
        int flag = 0;
        int items = 0;
        std::array<char, 1024> mesh{};
        std::array<char, 1024> material{};
        std::array<char, 1024> project{};
        reader.GetHeadInfo(code, stamp, mesh.data(), material.data(), project.data(), flag, items);
        std::printf("version %d\nhead %d %d %s %s %s %d %d\n", reader.GetResultVersion(), code, stamp,
                    mesh.data(), material.data(), project.data(), flag, items);
        std::printf("entries %d %d\n", reader.GetMaxCavityNode(), reader.GetMaxCavityElem());
        if (reader.GetResultDataIDMap(QNLRESULT_NODE)) {
            std::vector<int> ids(static_cast<std::size_t>(reader.GetMaxCavityNode()) + 1);
            reader.GetResultDataIDArray(QNLRESULT_NODE, ids.data());
            PrintArray("labels", 0, ids);
        }
        PrintItems(reader, static_cast<std::size_t>(items));
    }
    for (const qnl::Fault& fault : qnl::TakeFaults()) {
        std::printf("fault %s: expected %s, found %s\n", fault.object.c_str(), fault.expected.c_str(),
                    fault.found.c_str());
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string verb = argc == 3 ? argv[1] : "";
    if (verb == "write") {
        return Write(argv[2]);
    }
    if (verb == "read") {
        return Read(argv[2]);
    }
    std::fprintf(stderr, "usage: result_tool write|read FILE\n");
    return 2;
}
