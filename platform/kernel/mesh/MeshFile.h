#pragma once

#include <limits>
#include <string>
#include <string_view>

#include "kernel/mesh/MeshData.h"
#include "kernel/mesh/MeshFault.h"

namespace qnl::kernel {

/// Largest node label: the arrays by label have one entry more, and that number is an int, too.
inline constexpr int kLargestLabel = std::numeric_limits<int>::max() - 1;

/// The fault with the file's name in front of its message.
MeshFault WithFile(std::string_view path, const std::string& message);

/// Reads an unstructured grid of the VTKHDF layout, of one piece or several. Cells keep the file's order and
/// corners: they are not turned. Pieces are joined at points of equal label: the node stands where its label
/// first appears, with those coordinates.
///
/// Raises MeshFault for everything that is wrong with the file: not there, not of this layout, damaged, a
/// length that disagrees with another, a cell type other than tetra, hexa, wedge and pyramid, an index out
/// of range or twice in a cell, a label below 1, above kLargestLabel or given twice, several pieces without
/// labels, a coordinate that is not finite, a region other than 0, 1 and 2.
MeshData ReadMeshFile(std::string_view path);

/// Writes the mesh as one piece of the same layout; wedges get the corner order that the layout asks for.
/// `deflate` 0 stores plainly, 1 to 9 compressed. Raises hdf5::Hdf5Error when the file cannot be written.
void WriteMeshFile(const MeshData& mesh, std::string_view path, unsigned deflate = 0);

}  // namespace qnl::kernel
