#include "project/ResultState.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/WindowsPath.h"
#include "layout/MarkerLog.h"
#include "results/ResultFile.h"
#include "text/NumberText.h"

namespace qnl::project {

namespace {

constexpr std::array<const char*, kInputRoles.size()> kRoleTitles{
    "mesh",       "material",     "run file",     "stage result",
    "marker log", "fibre result", "fibre result", "wall thickness"};

std::string TitleOf(InputRole role) {
    return kRoleTitles[static_cast<std::size_t>(role)];
}

std::string DifferentTerms(const ResultOrigin& origin, const RunTerms& terms) {
    if (origin.mode != terms.mode) {
        return "it was made in another mode";
    }
    if (origin.analysisCode != terms.analysisCode) {
        return "it was made for the analysis code " + std::to_string(origin.analysisCode);
    }
    return origin.diagnostics == terms.diagnostics ? "" : "one of the runs writes diagnostic values";
}

/// Names with commas between them, of many the first ones.
std::string ListOf(const std::vector<std::string>& names) {
    constexpr std::size_t kMostNames = 4;
    std::string list;
    for (std::size_t i = 0; i < std::min(kMostNames, names.size()); ++i) {
        list += (i == 0 ? "" : ", ") + names[i];
    }
    return names.size() > kMostNames ? list + " and " + std::to_string(names.size() - kMostNames) + " more"
                                     : list;
}

/// Results by what is to be said of them, in the order of appearance.
using Groups = std::vector<std::pair<std::string, std::vector<std::string>>>;

void AddTo(Groups& groups, const std::string& what, const std::string& name) {
    const auto known =
        std::find_if(groups.begin(), groups.end(), [&](const auto& group) { return group.first == what; });
    if (known == groups.end()) {
        groups.push_back({what, {name}});
    } else {
        known->second.push_back(name);
    }
}

std::string NoteOn(const std::string& what, const std::vector<std::string>& names, std::size_t all,
                   const std::string& remedy) {
    const bool one = names.size() == 1;
    const std::string share = std::to_string(names.size()) + " of " +
                              text::CountText(static_cast<long long>(all), "result") + " (" + ListOf(names) +
                              ")";
    const std::string state =
        what.empty() ? std::string(one ? " does not record what it was" : " do not record what they were") +
                           " made from, and may be stale"
                     : (one ? " is stale: " : " are stale: ") + what;
    return share + state + "; " + remedy;
}

}  // namespace

std::string ResultState::Text() const {
    constexpr std::array<const char*, 4> kTexts{"missing", "not recorded", "stale", "fresh"};
    return kTexts[static_cast<std::size_t>(freshness)] + (reason.empty() ? "" : ": " + reason);
}

SeriesState::SeriesState(const StageFile& stageFile)
    : base_(stageFile.AtIndex(0)), inputs_(ReadProjectInputs(base_)) {}

std::string SeriesState::PathOf(InputRole role, int index) const {
    switch (role) {
        case InputRole::Mesh:
            return inputs_.meshFile;
        case InputRole::Material:
            return inputs_.materialFile;
        case InputRole::RunFile:
            return inputs_.runFile;
        case InputRole::Stage:
            return base_.AtIndex(index).Path();
        case InputRole::MarkerLog:
            return base_.RunFolder() + "\\" + std::string(layout::kMarkerLogName);
        case InputRole::FibreAtBase:
            return base_.Sibling(kFibreExtension);
        case InputRole::Fibre:
            return base_.AtIndex(index).Sibling(kFibreExtension);
        case InputRole::Thickness:
            return inputs_.meshFile.empty() ? "" : ReplaceExtension(inputs_.meshFile, kThicknessExtension);
    }
    return {};
}

const FileDigest& SeriesState::DigestAt(const std::string& path) {
    const auto known = digests_.find(path);
    return known != digests_.end() ? known->second : digests_.emplace(path, DigestOf(path)).first->second;
}

std::string SeriesState::Difference(const ResultInput& input, int index) {
    const std::string path = PathOf(input.role, index);
    const std::string title = TitleOf(input.role) + " ";
    const std::string name = FileName(path);
    if (name != input.name) {
        return "it was made with the " + title + input.name + ", and the " + title + "is now " +
               (name.empty() ? "not named" : name);
    }
    const FileDigest& now = DigestAt(path);
    if (now == input.digest) {
        return {};
    }
    const bool appeared = !input.digest.IsThere();
    return "the " + title + name +
           (appeared        ? " was not there"
            : now.IsThere() ? " has changed"
                            : " is missing");
}

ResultState SeriesState::Of(int index, const std::optional<RunTerms>& terms) {
    const std::string path = ResultOf(base_.AtIndex(index)).Path();
    if (!FileExists(path)) {
        return {Freshness::Missing, {}};
    }
    const std::optional<ResultOrigin> origin = results::ReadResultOrigin(path);
    if (!origin) {
        return {Freshness::NotRecorded, {}};
    }
    if (origin->version != QNL_VERSION) {
        return {Freshness::Stale,
                "it was made by version " + origin->version + " of the program, and this is " + QNL_VERSION};
    }
    std::string reason = terms ? DifferentTerms(*origin, *terms) : "";
    for (const ResultInput& input : origin->inputs) {
        reason = reason.empty() ? Difference(input, index) : reason;
    }
    return {reason.empty() ? Freshness::Fresh : Freshness::Stale, reason};
}

StageFile ResultOf(StageFile stageFile) {
    const Stage* stage = FindStage(stageFile.extension);
    stageFile.extension = stage != nullptr ? std::string(stage->resultExtension) : std::string();
    return stageFile;
}

std::optional<StageFile> StageOfResult(StageFile result) {
    const auto stage = std::find_if(kStages.begin(), kStages.end(), [&](const Stage& candidate) {
        return candidate.resultExtension == result.extension;
    });
    if (stage == kStages.end()) {
        return std::nullopt;
    }
    result.extension = std::string(stage->pattern);
    return result;
}

std::optional<std::string> NoteOnMissing(const StageFile& base, const std::set<int>& indices,
                                         const std::string& remedy) {
    const std::set<int> stages = ExistingIndices(base);
    std::vector<std::string> missing;
    for (const int index : stages) {
        if (indices.count(index) == 0) {
            missing.push_back(FileName(base.AtIndex(index).Path()));
        }
    }
    if (missing.empty()) {
        return std::nullopt;
    }
    return std::to_string(missing.size()) + " of " +
           text::CountText(static_cast<long long>(stages.size()), "output time") +
           (missing.size() == 1 ? " has" : " have") + " no result here (" + ListOf(missing) + "); " + remedy;
}

std::vector<std::string> NotesOnResults(const StageFile& base, const std::set<int>& indices, bool whole,
                                        const std::string& remedy) {
    SeriesState state(base);
    Groups groups;
    for (const int index : indices) {
        const ResultState result = state.Of(index);
        if (result.freshness != Freshness::Fresh) {
            AddTo(groups, result.reason, FileName(ResultOf(base.AtIndex(index)).Path()));
        }
    }
    std::vector<std::string> notes;
    for (const auto& [what, names] : groups) {
        notes.push_back(NoteOn(what, names, indices.size(), remedy));
    }
    const std::optional<std::string> missing = whole ? NoteOnMissing(base, indices, remedy) : std::nullopt;
    if (missing) {
        notes.push_back(*missing);
    }
    return notes;
}

const ResultInput* DifferingInput(const std::optional<ResultOrigin>& one,
                                  const std::optional<ResultOrigin>& other, InputRole role) {
    const auto find = [role](const std::optional<ResultOrigin>& origin) -> const ResultInput* {
        if (!origin) {
            return nullptr;
        }
        const auto found = std::find_if(origin->inputs.begin(), origin->inputs.end(),
                                        [role](const ResultInput& input) { return input.role == role; });
        return found == origin->inputs.end() ? nullptr : &*found;
    };
    const ResultInput* a = find(one);
    const ResultInput* b = find(other);
    return a != nullptr && b != nullptr && a->digest != b->digest ? a : nullptr;
}

}  // namespace qnl::project
