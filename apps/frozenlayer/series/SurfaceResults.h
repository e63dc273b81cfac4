#pragma once

#include <array>
#include <string>
#include <vector>

#include "results/ResultFile.h"
#include "series/OpenedProject.h"
#include "series/SeriesFiles.h"

namespace qnl::series {

/// The boundary of a mesh. Surface nodes are numbered from 0 by ascending node index.
struct Surface {
    std::vector<int> nodes;                     ///< node index in the mesh, 1-based
    std::vector<int> labels;                    ///< the nodes' own labels
    std::vector<std::array<float, 3>> points;   ///< mm
    std::vector<std::array<int, 3>> triangles;  ///< surface nodes, counter-clockwise from outside
    std::vector<int> numberOfNode;              ///< 1-based by node index: surface node, -1 inside

    std::size_t Nodes() const { return nodes.size(); }
};

Surface SurfaceOf(const OpenedProject& project);

/// One item of the results of a series, at all its output times.
struct ItemOverTime {
    int id = 0;
    std::string name;                        ///< as people say it
    std::string unit;                        ///< as people write it, "" for none
    std::vector<std::vector<float>> values;  ///< by time, then by surface node, not a number where there is
                                             ///< none; empty for a time without the item
};

/// The results of a series by surface node.
struct SurfaceResults {
    std::vector<ItemOverTime> items;           ///< ascending by id
    std::vector<std::vector<char>> hasResult;  ///< by time, then by surface node: 1 when the result names it
};

/// What the result files of a series hold, by time. Raises InputProblem for one that cannot be read.
std::vector<results::ResultFileContent> ReadResults(const SeriesFiles& series);

/// Takes back the faults recorded on reading results about values of the packing index that are not finite:
/// for a thermoset its formula divides by a freeze density of 0.
void ForgivePackingIndexOfThermoset();

/// Puts the results of a series on the surface; `contents` by time. Raises InputProblem for a result that
/// names nodes that the surface does not have.
SurfaceResults ResultsOnSurface(const SeriesFiles& series,
                                const std::vector<results::ResultFileContent>& contents,
                                const OpenedProject& project, const Surface& surface);

/// Name and unit of an item for labels: "Frozen ratio [%]", the name alone without a unit.
std::string Label(const std::string& name, const std::string& unit);

}  // namespace qnl::series
