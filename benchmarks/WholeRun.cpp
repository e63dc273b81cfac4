// The whole run on generated parts of several sizes, cells and nodes numbered at random: time and peak
// memory of every phase, per cell, per ray and per passed cell, and how they grow. Prints Markdown.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "demo/DemoProject.h"
#include "whole_run/ChildProcess.h"
#include "whole_run/MeasuredRun.h"
#include "whole_run/Report.h"

namespace {

const std::map<std::string, qnl::demo::DemoShape> kShapes{{"plate", qnl::demo::DemoShape::Plate},
                                                          {"cover", qnl::demo::DemoShape::Cover},
                                                          {"ring", qnl::demo::DemoShape::Ring}};
const std::vector<double> kTimes{2.0, 5.0};

struct Wishes {
    std::vector<double> sizes{0.2, 2.0, 5.0};  ///< million cells
    std::vector<int> threads{1, 2};
    std::vector<std::string> shapes{"plate", "cover"};
    std::string folder = std::filesystem::temp_directory_path().string();
    int repeats = 1;
};

/// A new folder, removed in the end with everything in it.
class OwnFolder {
public:
    explicit OwnFolder(std::filesystem::path path) : path_(std::move(path)) {
        if (!std::filesystem::create_directory(path_)) {
            throw std::runtime_error(path_.string() + " exists: remove it, or name another place by --dir");
        }
    }
    ~OwnFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// A project on disk.
class Project {
public:
    Project(const std::string& shape, double millions, const std::string& folder)
        : folder_(std::filesystem::path(folder) / ("whole_run_" + shape + "_" + std::to_string(getpid()))) {
        constexpr double kMillion = 1e6;
        qnl::demo::DemoRequest request;
        request.folder = folder_.Path().string();
        request.shape = kShapes.at(shape);
        request.cells = static_cast<int>(std::lround(kMillion * millions));
        request.shuffled = true;
        request.times = kTimes;
        InChildProcess([&] {
            qnl::demo::WriteDemoProject(request);
            return RunFigures{};
        });
    }

    RunFigures Run(int threads) const {
        std::filesystem::remove(folder_.Path() / "Mesh" / "demo_s.sur");
        const std::string stageFile = (folder_.Path() / "Analysis" / "Run1" / "demo1.k4f").string();
        const int intermediateTimes = static_cast<int>(kTimes.size()) - 1;
        return InChildProcess([&] { return MeasureRun(stageFile, intermediateTimes, threads); });
    }

private:
    OwnFolder folder_;
};

/// The least time of each phase over the repeats.
RunFigures BestOf(const Project& project, int threads, int repeats) {
    RunFigures best = project.Run(threads);
    for (int repeat = 1; repeat < repeats; ++repeat) {
        const RunFigures next = project.Run(threads);
        for (std::size_t phase = 0; phase < kPhases; ++phase) {
            if (next.phases[phase].seconds < best.phases[phase].seconds) {
                best.phases[phase] = next.phases[phase];
            }
        }
    }
    return best;
}

std::vector<MeasuredCase> MeasureAll(const Wishes& wishes) {
    std::vector<MeasuredCase> cases;
    for (const std::string& shape : wishes.shapes) {
        for (const double millions : wishes.sizes) {
            const Project project(shape, millions, wishes.folder);
            for (const int threads : wishes.threads) {
                cases.push_back({shape, threads, BestOf(project, threads, wishes.repeats)});
                std::cerr << shape + ", " + std::to_string(cases.back().figures.cells) + " cells, " +
                                 std::to_string(threads) + " threads: measured\n";
            }
        }
    }
    return cases;
}

void AddOptions(CLI::App& app, Wishes& wishes) {
    constexpr double kSmallest = 1e-6 * qnl::demo::kFewestDemoCells;
    constexpr double kLargest = 1e-6 * qnl::demo::kMostDemoCells;
    constexpr int kMost = 1024;
    app.add_option("--sizes", wishes.sizes, "Million cells, separated by commas")
        ->delimiter(',')
        ->check(CLI::Range(kSmallest, kLargest))
        ->capture_default_str();
    app.add_option("--threads", wishes.threads, "Thread counts, separated by commas")
        ->delimiter(',')
        ->check(CLI::Range(1, kMost))
        ->capture_default_str();
    app.add_option("--shape", wishes.shapes, "Parts, separated by commas")
        ->delimiter(',')
        ->check(CLI::IsMember({"plate", "cover", "ring"}))
        ->capture_default_str();
    app.add_option("--repeat", wishes.repeats, "Runs of each case; the least time of each phase counts")
        ->check(CLI::Range(1, kMost))
        ->capture_default_str();
    app.add_option("--dir", wishes.folder, "Folder for the projects, which are removed again")
        ->check(CLI::ExistingDirectory)
        ->capture_default_str();
}

}  // namespace

int main(int argc, char** argv) {
    Wishes wishes;
    CLI::App app("Time and memory of the whole run on generated parts");
    AddOptions(app, wishes);
    CLI11_PARSE(app, argc, argv);
    try {
        PrintReport(MeasureAll(wishes), std::cout);
    } catch (const std::exception& failure) {
        std::cerr << std::string("whole run: ") + failure.what() + "\n";
        return 1;
    }
    return 0;
}
