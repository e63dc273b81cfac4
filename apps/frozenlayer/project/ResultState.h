#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/ResultOrigin.h"
#include "project/ProjectInputs.h"
#include "project/ProjectPaths.h"

namespace qnl::project {

/// Whether a result is what a run would make now.
enum class Freshness { Missing, NotRecorded, Stale, Fresh };

struct ResultState {
    Freshness freshness = Freshness::Missing;
    std::string reason;  ///< of a stale one: which input differs, a clause

    /// "fresh", "missing", "not recorded", or "stale: the material pp.toml has changed".
    std::string Text() const;
};

/// What a run was asked for, as far as its results depend on it.
struct RunTerms {
    int mode = 0;  ///< as the head's flag
    int analysisCode = 0;
    bool diagnostics = false;
};

/// The results of one stage of a run against the files that are there. Every file is read once.
class SeriesState {
public:
    explicit SeriesState(const StageFile& stageFile);

    /// Of the output time's result; with terms, also whether it was made on these.
    ResultState Of(int index, const std::optional<RunTerms>& terms = std::nullopt);

private:
    std::string PathOf(InputRole role, int index) const;
    const FileDigest& DigestAt(const std::string& path);
    std::string Difference(const ResultInput& input, int index);

    StageFile base_;
    ProjectInputs inputs_;
    std::map<std::string, FileDigest> digests_;
};

/// The result file of the same output time as a stage file.
StageFile ResultOf(StageFile stageFile);

/// The stage file of the same output time as a result file; none for a file of another kind.
std::optional<StageFile> StageOfResult(StageFile result);

/// What the user should know of the results of these output times, a sentence without full stop each: those
/// that are stale or tell nothing, and, when `whole`, output times whose results are missing. `remedy` says
/// what makes them anew.
std::vector<std::string> NotesOnResults(const StageFile& base, const std::set<int>& indices, bool whole,
                                        const std::string& remedy);

/// The part of it that tells which output times have no result; none when all have.
std::optional<std::string> NoteOnMissing(const StageFile& base, const std::set<int>& indices,
                                         const std::string& remedy);

/// The input of that role that two results both tell of and that differs; null for none.
const ResultInput* DifferingInput(const std::optional<ResultOrigin>& one,
                                  const std::optional<ResultOrigin>& other, InputRole role);

}  // namespace qnl::project
