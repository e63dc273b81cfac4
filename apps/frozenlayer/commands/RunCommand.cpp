#include "commands/RunCommand.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "commands/ViewCommand.h"
#include "exports/ResultExport.h"
#include "host/HostSystem.h"
#include "job/EntryRoutine.h"
#include "layout/ProjectFolders.h"
#include "page/ReportPage.h"
#include "project/ProjectInputs.h"
#include "project/ResultState.h"
#include "project/StageGaps.h"
#include "project/TargetPlace.h"
#include "project/Warnings.h"
#include "project/WrittenFiles.h"
#include "runs/MarkerNote.h"
#include "runs/ResumedRun.h"
#include "runs/RunPlace.h"
#include "runs/RunProgress.h"
#include "runs/RunReport.h"
#include "series/LoadedSeries.h"
#include "text/LineFilter.h"
#include "text/NumberText.h"
#include "text/StreamRedirection.h"

namespace qnl::commands {

namespace {

/// What the command line asks for.
struct RunRequest {
    std::string target;
    int analysisCode = 4;
    std::string intermediateTimes = "auto";
    int logLevel = 0;
    int threads = 0;
    bool fibreProbe = false;
    bool resume = false;
    ModeChoice mode;
    std::string view;
    std::string exportName;
};

int ChooseIntermediateTimes(const RunRequest& request, const project::StageFile& base) {
    if (request.intermediateTimes == "auto") {
        return project::CountIntermediateTimes(base);
    }
    int count = 0;
    const char* end = request.intermediateTimes.data() + request.intermediateTimes.size();
    std::from_chars(request.intermediateTimes.data(), end, count);
    return count;
}

/// Which output times of a stage are evaluated.
struct RunPlan {
    project::StageFile base;
    int intermediateTimes = 0;
    std::vector<int> kept;  ///< passed over, as their results are fresh

    int Times() const { return intermediateTimes + 1; }
    int Evaluated() const { return Times() - static_cast<int>(kept.size()); }
};

project::RunTerms TermsOf(const RunRequest& request) {
    constexpr int kDiagnosticLevel = 2;
    return {static_cast<int>(request.mode.Value()), request.analysisCode,
            request.logLevel >= kDiagnosticLevel};
}

RunPlan MakePlan(const RunRequest& request) {
    RunPlan plan{project::ChooseStageFile(request.target, request.fibreProbe), 0, {}};
    plan.intermediateTimes = ChooseIntermediateTimes(request, plan.base);
    project::CheckInputs(plan.base, plan.intermediateTimes, request.fibreProbe);
    if (request.resume) {
        runs::RefuseResuming(request.mode.Value());
        plan.kept = runs::KeptTimes(plan.base, plan.intermediateTimes, TermsOf(request), request.logLevel);
    }
    return plan;
}

RunOptions MakeOptions(const RunRequest& request, const RunPlan& plan, RunObserver& observer) {
    RunOptions options;
    options.logLevel = request.logLevel;
    options.fibreProbe = request.fibreProbe;
    options.threads = request.threads;
    options.intermediateTimes = plan.intermediateTimes;
    options.keptTimes = plan.kept;
    options.mode = request.mode.Value();
    options.observer = &observer;
    return options;
}

/// The evaluation's messages are for people and go to standard error; those of the fibre probe are its
/// result.
job::ExitCode Evaluate(const RunRequest& request, const project::StageFile& base, const RunOptions& options) {
    std::array<std::string, 6> words{
        base.Path(), base.directory, base.name, std::to_string(request.analysisCode), base.run, "x"};
    std::array<char*, words.size() + 1> pointers{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        pointers[i] = words[i].data();
    }
    text::LineFilter filter(std::cerr, [&](const std::string& line) {
        const bool dropped =
            (request.logLevel == 0 && runs::IsMarkerComplaint(line)) || runs::RunProgress::IsInterrupted();
        return dropped ? "" : line + "\n";
    });
    const std::ostream messages(&filter);
    std::optional<text::StreamRedirection> redirection;
    if (!request.fibreProbe) {
        redirection.emplace(std::cout, messages);
    }
    return static_cast<job::ExitCode>(
        job::RunFrozenLayer(static_cast<int>(words.size()), pointers.data(), options));
}

/// Where all output times are evaluated and some need not be.
std::string ResumeHint(const RunRequest& request, const RunPlan& plan) {
    if (request.resume || request.fibreProbe || RulesOf(request.mode.Value()).carriesState) {
        return {};
    }
    const std::vector<int> fresh = runs::FreshTimes(plan.base, plan.intermediateTimes, TermsOf(request));
    return runs::ResumeHint(fresh.size(), plan.intermediateTimes);
}

void AnnounceRun(const RunRequest& request, const RunPlan& plan) {
    const project::StageFile& base = plan.base;
    std::cerr << "Evaluating " + project::NativePath(base.Path()) + ": " +
                     project::StageTitle(base.extension) + ", run " + base.run + ", base time and " +
                     text::CountText(plan.intermediateTimes, "intermediate time") + ", " +
                     RulesOf(request.mode.Value()).name + " mode\n";
    if (request.resume) {
        std::cerr << text::CountText(static_cast<long long>(plan.kept.size()), "result") +
                         " kept as fresh, " + std::to_string(plan.Evaluated()) + " to be made\n";
    }
    const std::string hint = ResumeHint(request, plan);
    std::cerr << (hint.empty() ? "" : "Note: " + hint + ".\n");
    for (const std::string& note :
         {project::StagesNote(base), runs::MarkerNote(base),
          runs::ShrinkageNote(base, plan.intermediateTimes, request.analysisCode)}) {
        std::cerr << (note.empty() ? "" : "Warning: " + note + ".\n");
    }
}

/// Why a run ended early, in words.
struct EarlyEnd {
    job::ExitCode code;
    const char* sentence;
};
constexpr std::array<EarlyEnd, 3> kEarlyEnds{{
    {job::ExitCode::MaterialFailed, "The run ended early: the material cannot be used.\n"},
    {job::ExitCode::MeshFailed, "The run ended early: the mesh cannot be used.\n"},
    {job::ExitCode::Exception, "The run ended early: see the message above.\n"},
}};

bool Succeeded(job::ExitCode code, const std::vector<runs::EvaluatedTime>& times) {
    for (const EarlyEnd& end : kEarlyEnds) {
        if (end.code == code && !runs::RunProgress::IsInterrupted()) {
            std::cerr << end.sentence;
        }
    }
    return code == job::ExitCode::Normal &&
           std::all_of(times.begin(), times.end(),
                       [](const runs::EvaluatedTime& time) { return time.evaluated; });
}

/// What a run leaves for those who look at its results.
struct RunOutcome {
    RunPlan plan;
    std::vector<runs::EvaluatedTime> times;
    series::RunView view;
    std::optional<kernel::KernelMesh> mesh;
};

bool IsShown(const RunRequest& request) {
    return !request.view.empty() || !request.exportName.empty();
}

std::size_t ProfilesOf(const RunRequest& request) {
    return request.view.empty() ? 0 : page::kPageProfiles;
}

/// The results of the output times of a run, those made before with them, read from their files.
series::LoadedSeries LoadKept(const RunRequest& request, const RunPlan& plan) {
    series::SeriesSelection named;
    for (int index = 0; index < plan.Times(); ++index) {
        named.paths.push_back(project::ResultOf(plan.base.AtIndex(index)).Path());
    }
    return series::LoadSeries(series::FindSeriesFiles(named), ProfilesOf(request));
}

/// The results of this run alone, with the profiles that a page needs.
series::LoadedSeries LoadOutcome(const RunRequest& request, RunOutcome outcome) {
    if (!outcome.plan.kept.empty()) {
        return LoadKept(request, outcome.plan);
    }
    series::KnownTimes known;
    series::SeriesFiles files =
        runs::SeriesOfRun(outcome.plan.base, std::move(outcome.times), outcome.view, known);
    series::OpenedProject project(files, std::move(*outcome.mesh));
    return series::LoadSeries(std::move(files), std::move(project), known, ProfilesOf(request));
}

/// Tells of output times that the run was not asked for.
void NoteMissing(series::SeriesFiles& files) {
    std::set<int> shown;
    for (const series::SeriesTime& time : files.times) {
        shown.insert(time.time.index);
    }
    const std::optional<std::string> note =
        project::NoteOnMissing(files.base, shown, "the run was asked for the others alone");
    if (note) {
        files.notes.push_back(*note);
        project::RecordWarning(*note);
    }
}

/// Shows the results as asked; gives whether that could be done.
bool ShowResults(const RunRequest& request, const page::PageTemplate& frame, RunOutcome outcome) {
    series::LoadedSeries loaded = LoadOutcome(request, std::move(outcome));
    NoteMissing(loaded.series);
    bool shown = true;
    if (!request.view.empty()) {
        shown = page::WriteReportPage(frame, loaded, request.view);
        std::cout << (shown ? "Page written:\n  " + request.view + "\n" : "");
    }
    if (!request.exportName.empty()) {
        runs::PrintWrittenFiles(exports::ExportSeries(loaded, {request.exportName, "", true}), std::cout);
    }
    return shown;
}

/// The fibre probe reads a result of its own.
std::optional<StageKind> StageKindOf(const RunRequest& request, const project::StageFile& base) {
    return request.fibreProbe ? std::nullopt : project::KindOfResult(base.extension);
}

void CheckPlaces(const RunRequest& request, const project::StageFile& base, int intermediateTimes) {
    runs::CheckRunPlace(base, intermediateTimes);
    for (const std::string& out : {request.view, request.exportName}) {
        if (!out.empty()) {
            project::CheckWritable(project::FolderOf(out));
        }
    }
}

void CheckRequest(const RunRequest& request) {
    if (request.fibreProbe && IsShown(request)) {
        throw project::InputProblem("--fibre-probe writes no results that --view or --export could show");
    }
    if (request.fibreProbe && request.resume) {
        throw project::InputProblem("--fibre-probe writes no results that --resume could keep");
    }
}

/// Evaluates what the plan asks for, prints what came out and gives whether all of it did.
bool EvaluatePlan(const RunRequest& request, RunOutcome& outcome) {
    const RunPlan& plan = outcome.plan;
    const project::WrittenFiles written({plan.base.RunFolder(), layout::MeshFolder(plan.base.directory)});
    text::ProgressBar bar(std::cerr, host::ErrorIsTerminal() && request.logLevel == 0 && !request.fibreProbe);
    runs::RunProgress progress(bar, {StageKindOf(request, plan.base), IsShown(request) && plan.kept.empty(),
                                     static_cast<int>(plan.kept.size())});
    const job::ExitCode code = Evaluate(request, plan.base, MakeOptions(request, plan, progress));
    bar.Clear();
    runs::PrintDeepWalls(progress.Walls(), std::cerr);
    runs::PrintOpenDirections(progress.Gradients(), std::cerr);

    outcome.times = progress.TakeTimes();
    bool succeeded = Succeeded(code, outcome.times);
    if (!request.fibreProbe) {
        succeeded = runs::ReadResults(outcome.times) && succeeded;
        if (progress.IsThermoset()) {
            series::ForgivePackingIndexOfThermoset();
        }
        runs::PrintResultTables(outcome.times, std::cout);
    }
    runs::PrintWrittenFiles(written.List(), std::cout);
    outcome.view = progress.View();
    outcome.mesh = progress.TakeMesh();
    return succeeded;
}

bool Run(const RunRequest& request) {
    CheckRequest(request);
    RunOutcome outcome{MakePlan(request), {}, {}, {}};
    CheckPlaces(request, outcome.plan.base, outcome.plan.intermediateTimes);
    const page::PageTemplate frame = request.view.empty() ? page::PageTemplate{} : page::ReadPageTemplate();
    AnnounceRun(request, outcome.plan);
    const bool succeeded = outcome.plan.Evaluated() == 0 || EvaluatePlan(request, outcome);
    if (!succeeded || !IsShown(request)) {
        return succeeded;
    }
    return ShowResults(request, frame, std::move(outcome));
}

std::string CheckIntermediateTimes(const std::string& text) {
    int count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const bool isCount = error == std::errc() && end == text.data() + text.size() && count >= 0;
    return isCount || text == "auto" ? "" : "auto or a whole number of at least 0 is expected";
}

void AddOptions(Subcommand& command, RunRequest& request) {
    constexpr int kMostLogging = 9;
    command
        .Add("RESULT", request.target,
             "Base stage file <project>/Analysis/Run<run>/<name><run>.<extension>, or the project "
             "folder: its latest run, first of flow, pack, cool, heating-cooling, warp")
        .Type("PATH")
        .Required();
    command
        .Add("--analysis-code", request.analysisCode,
             "Analysis code of the project: 1, 4, 6, 7, 8, 9 have intermediate output times, "
             "1, 6, 7, 8 may be gas-assisted")
        .Type("CODE")
        .ShowDefault();
    command
        .Add("--intermediate-times", request.intermediateTimes,
             "Evaluate RESULT_001 to RESULT_N after the base time; auto: as many as there are")
        .Type("auto|N")
        .Check(CheckIntermediateTimes)
        .ShowDefault();
    command
        .Add("--log-level", request.logLevel,
             "Messages of the evaluation: 0 none, 1 progress and report, 2 diagnostics")
        .Type("LEVEL")
        .Between(0, kMostLogging)
        .ShowDefault();
    command.Add("--threads", request.threads, "Worker threads; without it as many as the machine runs")
        .Type("N")
        .Between(1, kMostThreads);
    command.AddFlag("--fibre-probe,--fiber-probe", request.fibreProbe,
                    "Print the fibre orientation along the normal of listed or typed nodes instead; "
                    "RESULT is then a fibre result, .k4o");
    command.AddFlag(
        "--resume", request.resume,
        "Evaluate only the output times whose results are missing or stale: made from other files "
        "than those there now, or in another way. Not with --classic");
    command
        .Add("--view", request.view,
             "Write a page that shows the results in a browser; one of that name is replaced")
        .Type("FILE.html")
        .Check(CheckPageName);
    command
        .Add("--export", request.exportName,
             "Write the surface with all items as NAME.pvd and .vtp files, or of the kind that the ending of "
             "NAME tells, as export does; files of these names are replaced")
        .Type("NAME")
        .Check(exports::CheckExportName);
    AddModeOptions(command, request.mode);
}

}  // namespace

bool RunStage(const std::string& stageFile, const std::string& page, const ModeChoice& mode) {
    RunRequest request;
    request.mode = mode;
    request.target = stageFile;
    request.view = page;
    return Run(request);
}

void AddRunCommand(Program& program) {
    auto request = std::make_shared<RunRequest>();
    Subcommand command = program.AddSubcommand(
        {"run",
         "evaluate the frozen layer at every output time of a stage",
         "Reads the mesh, the material and the stage results of a project folder, and writes beside them one "
         "result file for each output time, the search file and the log. Prints a table of every item at "
         "every output time.",
         {"frozenlayer run examples/ribbed-cover/Analysis/Run1/cover1.k4f --intermediate-times 2"}},
        [request] { return Run(*request); });
    AddOptions(command, *request);
}

}  // namespace qnl::commands
