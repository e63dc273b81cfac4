#include "series/SeriesFiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "project/FaultReport.h"
#include "project/ResultState.h"
#include "project/Warnings.h"
#include "results/ResultFile.h"

namespace qnl::series {

namespace {

/// The stage file that belongs to a result or stage file of any time.
project::StageFile StageFileOfWord(const std::string& word) {
    const project::StageFile file = project::SplitRunPath(word);
    const std::optional<project::StageFile> stage = project::StageOfResult(file);
    if (!stage && project::ResultOf(file).extension.empty()) {
        throw project::InputProblem(project::NativePath(word) +
                                    ": neither a frozen-layer result (.fzr flow, .pzr pack, .czr cool, .hczr"
                                    " heating-cooling, .wzr warp) nor the stage file of one");
    }
    return stage.value_or(file);
}

[[noreturn]] void RefuseWithoutResult(const std::string& path) {
    throw project::InputProblem(project::NativePath(path) +
                                ": no frozen-layer result is there; make it first with frozenlayer run");
}

project::StageFile StageFileOfFolder(const std::string& folder) {
    const std::vector<project::StageFile> files = project::FindBaseStageFiles(folder);
    const auto found = std::find_if(files.begin(), files.end(), [](const project::StageFile& file) {
        return file.extension != kFibreExtension &&
               !project::ExistingIndices(project::ResultOf(file)).empty();
    });
    if (found == files.end()) {
        RefuseWithoutResult(folder);
    }
    return *found;
}

bool SameSeries(const project::StageFile& a, const project::StageFile& b) {
    return a.AtIndex(0).Path() == b.AtIndex(0).Path();
}

std::set<int> IndicesOfWords(const project::StageFile& base, const std::vector<std::string>& words) {
    std::set<int> indices;
    for (const std::string& word : words) {
        const project::StageFile file = StageFileOfWord(word);
        if (!SameSeries(file, base)) {
            throw project::InputProblem(project::NativePath(word) + " belongs to another run or stage than " +
                                        project::NativePath(words.front()) + ": name results of one series");
        }
        if (!project::FileExists(project::ResultOf(file).Path())) {
            RefuseWithoutResult(project::ResultOf(file).Path());
        }
        indices.insert(file.index);
    }
    return indices;
}

/// The base time is the last where times are not known.
bool ComesEarlier(const SeriesTime& a, const SeriesTime& b, bool realTimes) {
    if (realTimes) {
        return *a.time.seconds < *b.time.seconds;
    }
    return (a.time.index == 0) != (b.time.index == 0) ? b.time.index == 0 : a.time.index < b.time.index;
}

/// The decimal number that a time in single precision was written as: 6.4, not 6.40000009536743.
double Decimal(double seconds) {
    std::array<char, 32> digits{};
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<float>(seconds));
    double number = seconds;
    std::from_chars(digits.data(), written.ptr, number);
    return number;
}

void OrderTimes(SeriesFiles& series) {
    auto& times = series.times;
    series.realTimes = std::all_of(times.begin(), times.end(),
                                   [](const SeriesTime& time) { return time.time.seconds.has_value(); });
    std::stable_sort(times.begin(), times.end(), [&](const SeriesTime& a, const SeriesTime& b) {
        return ComesEarlier(a, b, series.realTimes);
    });
    for (std::size_t i = 0; i < times.size(); ++i) {
        times[i].axis = series.realTimes ? Decimal(*times[i].time.seconds) : static_cast<double>(i + 1);
    }
}

/// Of the modes that smooth normals, runs that do write the packing index, and no others.
RunView ViewOf(const results::ResultFileContent& content) {
    constexpr int kPackingIndex = 11;
    RunView view;
    view.mode = ModeOfFlag(content.head.flag).value_or(Mode::Classic);
    view.smoothedNormals =
        RulesOf(view.mode).smoothsNormals &&
        std::any_of(content.items.begin(), content.items.end(),
                    [](const results::ResultItem& item) { return item.id == kPackingIndex; });
    return view;
}

/// What is looked at of one of several results side by side.
struct OneResult {
    RunView view;
    std::optional<ResultOrigin> origin;
};

OneResult LookAt(const std::string& resultFile) {
    try {
        const results::ResultFileContent content = results::ReadResultSummary(resultFile);
        return {ViewOf(content), content.origin};
    } catch (const results::ResultFileError& error) {
        throw project::InputProblem(project::FaultSentence(error.What()));
    }
}

[[noreturn]] void RefuseMixture(const SeriesTime& one, const SeriesTime& other,
                                const std::string& difference) {
    throw project::InputProblem(project::NativePath(one.resultFile) + " and " +
                                project::NativePath(other.resultFile) + " are of different runs, " +
                                difference + ": make all results again with frozenlayer run");
}

/// How the run looked that made all of them.
RunView ViewOf(const std::vector<SeriesTime>& times) {
    const OneResult first = LookAt(times.front().resultFile);
    for (const SeriesTime& time : times) {
        const OneResult other = LookAt(time.resultFile);
        if (other.view.mode != first.view.mode) {
            RefuseMixture(time, times.front(),
                          std::string("one in the ") + RulesOf(other.view.mode).name + " and one in the " +
                              RulesOf(first.view.mode).name + " mode");
        }
        if (other.view.smoothedNormals != first.view.smoothedNormals) {
            RefuseMixture(time, times.front(), "of which one smoothed the normals and one did not");
        }
        for (const InputRole role : {InputRole::Mesh, InputRole::Material}) {
            if (project::DifferingInput(other.origin, first.origin, role) != nullptr) {
                RefuseMixture(time, times.front(),
                              std::string("made with two different files as their ") + NameOf(role));
            }
        }
    }
    return first.view;
}

/// What makes stale results of a mode anew. Output times of the classic mode depend on those before.
std::string Remedy(const RunView& view) {
    const ModeRules& rules = RulesOf(view.mode);
    const std::string mode = view.mode == Mode::Resolved ? "" : std::string(" --") + rules.name;
    return "frozenlayer run" + mode + (rules.carriesState ? " makes all of them" : " --resume makes them");
}

}  // namespace

SeriesFiles OrderSeriesFiles(project::StageFile base, std::vector<SeriesTime> times, const RunView& view) {
    SeriesFiles series{std::move(base), std::move(times), false, view, {}};
    OrderTimes(series);
    return series;
}

SeriesFiles FindSeriesFiles(const SeriesSelection& named) {
    const std::vector<std::string>& words = named.paths;
    const std::string& first = words.front();
    const bool single = words.size() == 1 && !named.onlyThese;
    const project::StageFile file =
        single && project::FolderExists(first) ? StageFileOfFolder(first) : StageFileOfWord(first);
    const project::StageFile base = file.AtIndex(0);
    const std::set<int> indices =
        single ? project::ExistingIndices(project::ResultOf(base)) : IndicesOfWords(base, words);
    if (indices.empty()) {
        RefuseWithoutResult(project::ResultOf(base).Path());
    }
    std::vector<SeriesTime> times;
    for (const int index : indices) {
        const project::StageFile stage = base.AtIndex(index);
        const project::StageSummary summary = project::ReadStageSummary(stage.Path());
        times.push_back({{index, summary.seconds}, stage.Path(), project::ResultOf(stage).Path(), 0.0});
    }
    const RunView view = ViewOf(times);
    SeriesFiles series = OrderSeriesFiles(base, std::move(times), view);
    series.notes = project::NotesOnResults(base, indices, single, Remedy(view));
    for (const std::string& note : series.notes) {
        project::RecordWarning(note);
    }
    return series;
}

}  // namespace qnl::series
