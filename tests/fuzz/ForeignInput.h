#pragma once

#include <cstdlib>
#include <string>

#include "interop/ForeignSeries.h"
#include "interop/SolidMesh.h"

/// What every reader of foreign files must keep to, whatever a file holds.
namespace foreign_input {

inline void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Everything that a snapshot names lies within it.
inline void CheckSnapshot(const qnl::interop::ForeignSnapshot& snapshot) {
    const auto points = static_cast<std::int64_t>(snapshot.mesh.points.size());
    const std::size_t cells = snapshot.mesh.cellTypes.size();
    Require(snapshot.mesh.offsets.size() == cells + 1);
    Require(snapshot.mesh.offsets.back() == static_cast<std::int64_t>(snapshot.mesh.nodes.size()));
    for (const std::int64_t node : snapshot.mesh.nodes) {
        Require(node >= 0 && node < points);
    }
    for (const qnl::interop::ForeignArray& array : snapshot.arrays) {
        const std::size_t entities = array.onCells ? cells : snapshot.mesh.points.size();
        Require(array.components > 0 &&
                array.values.size() == entities * static_cast<std::size_t>(array.components));
        for (std::size_t cell = 0; array.name == qnl::interop::kBlockArray && cell < cells; ++cell) {
            Require(array.values[cell] >= 0.0 &&
                    array.values[cell] < static_cast<double>(snapshot.blocks.size()));
        }
    }
    for (const qnl::interop::ForeignSet& set : snapshot.sets) {
        for (const std::int64_t cell : set.cells) {
            Require(cell >= 0 && static_cast<std::size_t>(cell) < cells);
        }
    }
}

/// All times of a series, and the solid mesh of the first.
inline void UseSeries(qnl::interop::ForeignSeries& series) {
    for (int index = 0; index < series.Count(); ++index) {
        const qnl::interop::ForeignSnapshot snapshot = series.Read(index);
        CheckSnapshot(snapshot);
        if (index == 0) {
            qnl::interop::BuildSolidMesh(snapshot.mesh, 1.0, snapshot.file);
        }
    }
}

/// Reads a file; it may be refused.
inline void UseFile(const std::string& path) {
    try {
        UseSeries(*qnl::interop::OpenForeignSeries({path}));
    } catch (const qnl::interop::ForeignProblem& problem) {
        Require(!std::string(problem.what()).empty());
    }
}

}  // namespace foreign_input
