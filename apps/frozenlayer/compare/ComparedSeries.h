#pragma once

#include <optional>
#include <string>

#include "compare/Both.h"
#include "platform/ResultOrigin.h"
#include "series/SeriesFiles.h"
#include "series/SurfaceResults.h"

namespace qnl::compare {

/// One of two results that are compared.
struct ComparedSeries {
    series::SeriesFiles files;
    std::string meshFile;
    std::string material;  ///< name of the material file that it was made with, with commas between several
    std::optional<ResultOrigin> origin;  ///< of the first output time
    series::Surface surface;
    series::SurfaceResults results;
};

/// The series that a word stands for: a project folder as for the page, a result of the base time for all
/// output times beside it, a result of an intermediate time for just that time. Raises InputProblem.
series::SeriesFiles FindComparedFiles(const std::string& word);

/// What the help says of an argument that is such a word.
inline constexpr const char* kComparedHelp =
    "Frozen-layer result (.fzr, .pzr, .czr, .hczr, .wzr): that of the base time stands for all output times "
    "beside it, one with an index (part1_002.fzr) for its own; or a project folder: its latest run, the "
    "first stage with results";

/// Reads mesh and results. Raises InputProblem when they cannot be used.
ComparedSeries ReadComparedSeries(const std::string& word);

/// Raises InputProblem unless both surfaces have the same nodes: as many, of the same labels, at the same
/// places within kSamePlace.
void CheckSameSurface(const Both<ComparedSeries>& sides);

/// Records a warning for a mesh or a material of one name whose content differs between the two.
void NoteEquallyNamedInputs(const Both<ComparedSeries>& sides);

/// Distance up to which places are the same, by the diagonal of the box around the surface: coordinates
/// written with fewer digits stay the same, those of other meshes do not.
inline constexpr double kSamePlace = 1e-5;

}  // namespace qnl::compare
