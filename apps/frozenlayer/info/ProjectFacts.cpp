#include <algorithm>
#include <set>
#include <utility>

#include "info/FactReaders.h"
#include "layout/MarkerLog.h"
#include "platform/HostFiles.h"
#include "project/ProjectInputs.h"
#include "project/ResultState.h"

namespace qnl::info {

namespace {

/// Extension of the frozen-layer result of a stage; empty for fibre results.
std::string_view ResultExtension(std::string_view extension) {
    const Stage* stage = FindStage(extension);
    return stage != nullptr ? stage->resultExtension : std::string_view();
}

std::string Presence(const std::string& path) {
    if (path.empty()) {
        return "not named";
    }
    return project::NativePath(path) + (project::FileExists(path) ? "" : " (missing)");
}

/// A gap in the numbering is left for the run to complain about.
std::int64_t IntermediateTimes(const project::StageFile& base) {
    std::int64_t count = 0;
    while (project::FileExists(base.AtIndex(static_cast<int>(count) + 1).Path())) {
        ++count;
    }
    return count;
}

bool HasCompleteMarker(const std::string& runFolder) {
    return layout::LookAtMarkerLog(runFolder + "\\" + std::string(layout::kMarkerLogName)) ==
           layout::MarkerLog::Complete;
}

FactTable RunTable(const std::vector<project::StageFile>& files) {
    FactTable table{"runs",
                    "Runs",
                    {{"run", "Run"},
                     {"run_file", "Run file"},
                     {"mesh", "Mesh"},
                     {"material", "Material"},
                     {"marker_log_complete", "Marker log complete"}},
                    {}};
    std::set<std::string> seen;
    for (const project::StageFile& file : files) {
        if (!seen.insert(file.Sibling("")).second) {
            continue;
        }
        const project::ProjectInputs inputs = project::ReadProjectInputs(file);
        table.rows.push_back({file.run, Presence(inputs.runFile), Presence(inputs.meshFile),
                              Presence(inputs.materialFile), HasCompleteMarker(file.RunFolder())});
    }
    return table;
}

FactTable StageTable(const std::vector<project::StageFile>& files) {
    FactTable table{"stages",
                    "Stage results",
                    {{"run", "Run"},
                     {"stage", "Stage"},
                     {"base_file", "Base file"},
                     {"intermediate_times", "Intermediate times"},
                     {"evaluated", "Evaluated"}},
                    {}};
    for (const project::StageFile& file : files) {
        const std::string_view result = ResultExtension(file.extension);
        table.rows.push_back({file.run, std::string(project::StageTitle(file.extension)),
                              project::NativePath(file.Path()), IntermediateTimes(file),
                              !result.empty() && project::FileExists(file.Sibling(result))});
    }
    return table;
}

/// Of stages with any result, what each output time's is.
FactTable ResultTable(const std::vector<project::StageFile>& files) {
    FactTable table{"results", "Frozen-layer results", {{"file", "File"}, {"state", "State"}}, {}};
    for (const project::StageFile& file : files) {
        if (ResultExtension(file.extension).empty()) {
            continue;
        }
        std::set<int> indices = project::ExistingIndices(project::ResultOf(file));
        if (indices.empty()) {
            continue;
        }
        indices.merge(project::ExistingIndices(file));
        project::SeriesState state(file);
        for (const int index : indices) {
            table.rows.push_back(
                {project::FileName(project::ResultOf(file.AtIndex(index)).Path()), state.Of(index).Text()});
        }
    }
    return table;
}

}  // namespace

FileFacts ReadProjectFacts(const std::string& path) {
    const std::vector<project::StageFile> files = project::FindBaseStageFiles(path);
    if (files.empty()) {
        throw project::InputProblem(project::NativePath(path) +
                                    ": no stage result is found in this folder; a project holds them as"
                                    " Analysis/Run<run>/<name><run>.k4f (or .k4p, .k4c, .k4hc, .k4w, .k4o)");
    }
    FileFacts facts;
    facts.Add("name", "Project name", "", files.front().name);
    facts.tables.push_back(RunTable(files));
    facts.tables.push_back(StageTable(files));
    FactTable results = ResultTable(files);
    if (!results.rows.empty()) {
        facts.tables.push_back(std::move(results));
    }
    return facts;
}

FileFacts ReadRunFileFacts(const std::string& path) {
    const project::StageFile place = project::SplitRunPath(path);
    const project::ProjectInputs inputs = project::ReadProjectInputs(place);
    FileFacts facts;
    facts.Add("mesh", "Mesh", "", Presence(inputs.meshFile));
    facts.Add("material", "Material", "", Presence(inputs.materialFile));
    return facts;
}

FileFacts ReadAsciiResultFacts(const std::string& path) {
    const HostFile file(path, "rb");
    std::string text;
    if (!file || !ReadAll(file.Get(), text)) {
        throw project::InputProblem(project::NativePath(path) + " cannot be read");
    }
    FileFacts facts;
    facts.Add("bytes", "Size", "bytes", static_cast<std::int64_t>(text.size()));
    facts.Add("lines", "Lines", "", static_cast<std::int64_t>(std::count(text.begin(), text.end(), '\n')));
    return facts;
}

}  // namespace qnl::info
