#pragma once

#include <string>
#include <string_view>

namespace qnl::layout {

/// Where the files of a project stand:
///
///     <project>\Mesh\<mesh file>
///     <project>\Material\<material file>
///     <project>\Analysis\Run<run>\<name><run>.<extension>

inline constexpr std::string_view kMeshFolder = "Mesh";
inline constexpr std::string_view kMaterialFolder = "Material";
inline constexpr std::string_view kAnalysisFolder = "Analysis";
/// What the path of a run's folder, below the project, begins with; the run follows at once.
inline constexpr std::string_view kRunFolderMark = "Analysis\\Run";

/// Windows-style paths of the project's files and folders.
std::string MeshFolder(std::string_view project);
std::string MeshPath(std::string_view project, std::string_view file);
std::string MaterialFolder(std::string_view project);
std::string MaterialPath(std::string_view project, std::string_view file);
std::string RunFolder(std::string_view project, std::string_view run);
/// `extension` with its ".".
std::string RunPath(std::string_view project, std::string_view name, std::string_view run,
                    std::string_view extension);

/// Result of the evaluation of a stage file: its path without extension and the result extension of every
/// stage whose pattern stands in it, in the order of kStages. A path without "." raises std::out_of_range.
std::string ComposedResultPath(std::string_view stageFile);

/// The search files of a mesh stand beside it: one for rays along the normals as they are, and one for rays
/// along smoothed normals, as the corrected mode keeps them apart. A mesh path without "." raises
/// std::out_of_range.
std::string SearchPath(std::string_view meshPath);
std::string SmoothedSearchPath(std::string_view meshPath);

}  // namespace qnl::layout
