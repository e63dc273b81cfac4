#pragma once

#include <ostream>
#include <string>

#include "imports/ImportRequest.h"
#include "info/FileFacts.h"

namespace qnl::imports {

/// Whether `info` reads the file as one of another program: by its extension, but those of our own meshes.
bool IsForeignFile(const std::string& path);

/// What a foreign file holds, by the tables of import: cells, named regions, every array with its range in
/// the units of the file, output times. A mesh that import would refuse is told of, with the reason. Raises
/// ForeignProblem.
info::FileFacts ReadForeignFacts(const std::string& path);

/// Lists the regions among which --part and --ignore choose, and the cell arrays of whole numbers for
/// --region-array. Raises ForeignProblem.
void ListRegions(const ImportRequest& request, std::ostream& out);

}  // namespace qnl::imports
