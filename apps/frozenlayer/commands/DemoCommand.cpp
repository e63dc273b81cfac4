#include "commands/DemoCommand.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "demo/DemoProject.h"
#include "project/ProjectPaths.h"
#include "text/NumberText.h"
#include "text/ShellWord.h"

namespace qnl::commands {

namespace {

const std::map<std::string, demo::DemoShape> kShapes{
    {"plate", demo::DemoShape::Plate}, {"cover", demo::DemoShape::Cover}, {"ring", demo::DemoShape::Ring}};
const std::map<std::string, demo::DemoStage> kStages{{"flow", demo::DemoStage::Flow},
                                                     {"pack", demo::DemoStage::Pack},
                                                     {"cool", demo::DemoStage::Cool},
                                                     {"warp", demo::DemoStage::Warp}};

struct DemoChoice {
    std::string folder;
    std::string shape = "cover";
    std::string stage = "flow";
    int cells = 100000;
    bool shuffled = false;
    bool force = false;
};

void CheckTarget(const DemoChoice& words) {
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::symlink_status(words.folder, unknown);
    if (!std::filesystem::exists(status)) {
        return;
    }
    if (!std::filesystem::is_directory(words.folder, unknown)) {
        throw project::InputProblem(words.folder + " exists and is no folder: name another place");
    }
    if (!words.force) {
        throw project::InputProblem(
            words.folder + " exists: name another folder, or give --force to write the demo into it");
    }
}

/// Removes a folder that was not there before, unless it is finished.
class NewFolder {
public:
    explicit NewFolder(std::string path) : path_(std::move(path)), remove_(!project::FolderExists(path_)) {}
    ~NewFolder() {
        std::error_code ignored;
        if (remove_) {
            std::filesystem::remove_all(path_, ignored);
        }
    }
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    void Keep() { remove_ = false; }

private:
    std::string path_;
    bool remove_;
};

bool WriteDemo(const DemoChoice& words) {
    CheckTarget(words);
    NewFolder folder(words.folder);
    demo::DemoRequest request;
    request.folder = words.folder;
    request.shape = kShapes.at(words.shape);
    request.stage = kStages.at(words.stage);
    request.cells = words.cells;
    request.shuffled = words.shuffled;
    const demo::DemoSummary written = demo::WriteDemoProject(request);
    folder.Keep();
    std::cout << "Wrote a " + words.shape + " of " + text::CountText(written.cells, "cell") + " and " +
                     text::CountText(written.nodes, "node") + " with " +
                     text::CountText(written.times, "output time") + " of the " + words.stage +
                     " stage.\nEvaluate it with: frozenlayer run " + text::ShellPath(written.stageFile) +
                     "\n";
    return true;
}

template <typename Value>
std::vector<std::string> NamesOf(const std::map<std::string, Value>& table) {
    std::vector<std::string> names;
    names.reserve(table.size());
    for (const auto& entry : table) {
        names.push_back(entry.first);
    }
    return names;
}

void AddOptions(Subcommand& command, DemoChoice& words) {
    command.Add("DIR", words.folder, "Folder of the project; it must not exist yet, see --force")
        .Type("PATH")
        .Required();
    command.Add("--shape", words.shape, "plate; ribbed cover; or ring, a plate bent round")
        .OneOf(NamesOf(kShapes))
        .ShowDefault();
    command
        .Add("--cells", words.cells,
             "About so many tetrahedra; the wall stays 2 mm thick, with six blocks of cells "
             "through it (fewer in parts below 55,000 cells), so that more cells make a "
             "larger part")
        .Between(demo::kFewestDemoCells, demo::kMostDemoCells)
        .Type("N")
        .ShowDefault();
    command
        .Add("--stage", words.stage,
             "Stage of the results: flow and pack have eight output times, cool and warp one")
        .OneOf(NamesOf(kStages))
        .ShowDefault();
    command.AddFlag("--shuffle", words.shuffled, "Number cells and nodes at random, as benchmarks ask for");
    command.AddFlag("--force", words.force,
                    "Write into a folder that exists; files of an earlier demo in it are replaced, "
                    "other files stay");
}

}  // namespace

void AddDemoCommand(Program& program) {
    auto words = std::make_shared<DemoChoice>();
    Subcommand command = program.AddSubcommand(
        {"demo",
         "write a project with a generated part and an analytic cooling history",
         "Makes a project folder of any size, for trying out and for benchmarks: a conforming "
         "mesh of tetrahedra, a material, a run file and stage results.",
         {"frozenlayer demo --shape ring --cells 50000 my-ring", "frozenlayer run my-ring"}},
        [words] { return WriteDemo(*words); });
    AddOptions(command, *words);
}

}  // namespace qnl::commands
