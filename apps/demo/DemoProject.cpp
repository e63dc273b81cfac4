#include "demo/DemoProject.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "demo/DemoMesh.h"
#include "kernel/mesh/MeshFile.h"
#include "layout/MarkerLog.h"
#include "layout/ProjectFolders.h"
#include "layout/RunFile.h"
#include "platform/HostFiles.h"

namespace qnl::demo {

namespace {

namespace fs = std::filesystem;

constexpr const char* kMeshFile = "demo.hdf";
constexpr const char* kMaterialFile = "pp.toml";
constexpr const char* kRun = "1";
constexpr const char* kRunName = "demo1";

struct DemoFolders {
    fs::path mesh;
    fs::path material;
    fs::path run;
};

std::string FirstFault(const std::string& file) {
    const std::vector<Fault> faults = TakeFaults();
    return file + " cannot be written" + (faults.empty() ? "" : " (" + faults.front().found + ")") +
           "; check the space and the rights there";
}

void WriteText(const fs::path& path, std::string_view text) {
    ReplacedFile file(path.string(), "wb");
    const bool written = file && std::fwrite(text.data(), 1, text.size(), file.Get()) == text.size();
    if (!written || !file.Commit()) {
        throw std::runtime_error(FirstFault(path.string()));
    }
}

DemoFolders MakeFolders(const std::string& project) {
    DemoFolders folders{HostPath(layout::MeshFolder(project)), HostPath(layout::MaterialFolder(project)),
                        HostPath(layout::RunFolder(project, kRun))};
    for (const fs::path& folder : {folders.mesh, folders.material, folders.run}) {
        std::error_code failure;
        fs::create_directories(folder, failure);
        if (failure) {
            throw std::runtime_error(folder.string() + " cannot be made (" + failure.message() +
                                     "); check the space and the rights there");
        }
    }
    return folders;
}

/// Files of ours begin with the names of the mesh and of the run.
void RemoveEarlierFiles(const fs::path& folder, std::string_view beginning) {
    std::vector<fs::path> earlier;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().filename().string().rfind(beginning, 0) == 0) {
            earlier.push_back(entry.path());
        }
    }
    for (const fs::path& path : earlier) {
        fs::remove(path);
    }
}

std::string TimeName(int index, const std::string& extension) {
    constexpr std::size_t kDigits = 3;
    if (index == 0) {
        return std::string(kRunName) + extension;
    }
    const std::string digits = std::to_string(index);
    return std::string(kRunName) + "_" + std::string(kDigits - digits.size(), '0') + digits + extension;
}

void WriteTime(const fs::path& path, const DemoRequest& request, const DemoCooling& cooling,
               const std::vector<kernel::Point>& points, const results::ResultTime& time) {
    results::StageResult result;
    result.head.code = 1;
    result.producer = {"frozenlayer demo", 1, 0, 0};
    result.time = time;
    result.maxNode = static_cast<int>(points.size());
    result.items = MakeDemoItems(request.stage, cooling, points, static_cast<double>(time.value));
    if (!results::WriteStageResult(path.string(), result)) {
        throw std::runtime_error(FirstFault(path.string()));
    }
}

std::string MarkerLogText(const std::vector<double>& times) {
    constexpr std::size_t kLongestNumber = 32;
    std::vector<std::string> texts;
    for (std::size_t i = 0; i + 1 < times.size(); ++i) {
        char seconds[kLongestNumber];
        std::snprintf(seconds, sizeof seconds, "%g", times[i]);
        texts.emplace_back(seconds);
    }
    return layout::MarkerLogText(texts);
}

kernel::MeshData WriteMesh(const fs::path& path, const DemoRequest& request, const DemoPart& part) {
    constexpr std::uint32_t kSeed = 7;
    kernel::MeshData mesh = MeshDemoPart(part);
    if (request.shuffled) {
        ShuffleTetras(mesh, kSeed);
    }
    try {
        kernel::WriteMeshFile(mesh, path.string());
    } catch (const std::runtime_error&) {
        throw std::runtime_error(FirstFault(path.string()));
    }
    return mesh;
}

std::vector<double> StageTimes(const DemoRequest& request) {
    return HasDemoTimes(request.stage) ? request.times : std::vector<double>{request.times.back()};
}

}  // namespace

DemoSummary WriteDemoProject(const DemoRequest& request) {
    const DemoPart part = PlanDemoPart(request.shape, request.cells);
    const DemoFolders folders = MakeFolders(request.folder);
    RemoveEarlierFiles(folders.mesh, "demo");
    RemoveEarlierFiles(folders.run, kRunName);
    RemoveEarlierFiles(folders.run, layout::kMarkerLogName);
    const kernel::MeshData mesh = WriteMesh(folders.mesh / kMeshFile, request, part);
    WriteText(folders.material / kMaterialFile, DemoMaterialText());
    WriteText(folders.run / (std::string(kRunName) + ".run"), layout::RunFileText(kMeshFile, kMaterialFile));

    const DemoCooling cooling(part);
    const std::vector<double> times = StageTimes(request);
    const int last = static_cast<int>(times.size()) - 1;
    const std::string extension(DemoExtension(request.stage));
    for (int i = 0; i <= last; ++i) {
        const int index = i == last ? 0 : i + 1;
        WriteTime(folders.run / TimeName(index, extension), request, cooling, mesh.points,
                  {index, static_cast<float>(times[static_cast<std::size_t>(i)]), "s"});
    }
    if (last > 0) {
        WriteText(folders.run / layout::kMarkerLogName, MarkerLogText(times));
    }
    return {(folders.run / TimeName(0, extension)).string(), mesh.Nodes(), mesh.Cells(), last + 1};
}

}  // namespace qnl::demo
