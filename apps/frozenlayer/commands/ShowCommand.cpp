#include "commands/ShowCommand.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <random>
#include <string>

#include "commands/ImportCommand.h"
#include "commands/RunCommand.h"
#include "commands/ViewCommand.h"
#include "project/TargetPlace.h"

namespace qnl::commands {

namespace {

namespace fs = std::filesystem;

struct ShowRequest {
    imports::ImportRequest import;  ///< its folder is empty for a temporary project
    std::string page;
    ModeChoice mode;
};

/// A new folder in the system's place for temporary files; gone with the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            path_ = fs::temp_directory_path() / ("frozenlayer-" + std::to_string(random()));
        } while (!fs::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const fs::path& Path() const { return path_; }

private:
    fs::path path_;
};

bool ShowProject(const ShowRequest& request) {
    const ImportOutcome outcome = ImportProject(request.import);
    std::cout << "\n";
    const bool shown = RunStage(outcome.stageFile, request.page, request.mode);
    PrintWarnings(outcome);
    return shown;
}

bool Show(ShowRequest request) {
    project::CheckWritable(project::FolderOf(request.page));
    if (!request.import.folder.empty()) {
        return ShowProject(request);
    }
    const TemporaryFolder folder;
    request.import.folder = (folder.Path() / fs::path(request.import.files.front()).stem()).string();
    const bool shown = ShowProject(request);
    std::cout << "The project was temporary; --keep FOLDER keeps its files.\n";
    return shown;
}

}  // namespace

void AddShowCommand(Program& program) {
    auto request = std::make_shared<ShowRequest>();
    Subcommand command =
        program.AddSubcommand({"show",
                               "import, run and view in one command",
                               "Reads a mesh with temperatures of another program as import does, "
                               "evaluates it and writes a page that shows the results in a browser.",
                               {"frozenlayer show examples/stepped-plate-vtu/b.pvd --material "
                                "examples/stepped-plate/Material/pp.toml --out report.html"}},
                              [request] { return Show(*request); });
    AddImportOptions(command, request->import);
    command.Add("--out", request->page, "The page, one file that needs no network")
        .Type("FILE.html")
        .Check(CheckPageName)
        .Required();
    command
        .Add("--keep", request->import.folder, "Project folder to make; without it the project is temporary")
        .Type("FOLDER");
    command.AddFlag("--force", request->import.force, "Replace a project that stands there").Needs("--keep");
    AddModeOptions(command, request->mode);
}

}  // namespace qnl::commands
