#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "hdf5/Hdf5.h"
#include "kernel/mesh/MeshFile.h"

namespace qnl::kernel {
namespace {

constexpr std::int64_t kLargestCount = std::numeric_limits<int>::max() - 1;
constexpr std::uint64_t kMaxValues = std::uint64_t{8} * static_cast<std::uint64_t>(kLargestCount);

std::string Text(std::int64_t number) {
    return std::to_string(number);
}

[[noreturn]] void Unexpected(const std::string& object, const std::string& expected,
                             const std::string& found) {
    throw MeshFault(object + ": expected " + expected + ", found " + found);
}

// One part of a file, with ranges into the file's datasets.
struct Piece {
    std::int64_t points;
    std::int64_t cells;
    std::int64_t corners;
};

struct PieceTable {
    std::vector<Piece> pieces;
    Piece total{0, 0, 0};
};

void CheckLayout(const hdf5::InputFile& file) {
    if (!file.Exists("/VTKHDF")) {
        throw MeshFault("not a VTKHDF file: it has no group /VTKHDF");
    }
    if (!file.HasAttribute("/VTKHDF", "Version") || !file.HasAttribute("/VTKHDF", "Type")) {
        throw MeshFault("not a VTKHDF file: /VTKHDF lacks the attributes Version and Type");
    }
    file.ReadAttribute<std::int64_t>("/VTKHDF", "Version");
    const std::string type = file.ReadText("/VTKHDF", "Type");
    if (type != "UnstructuredGrid") {
        Unexpected("attribute Type of /VTKHDF", "UnstructuredGrid", "\"" + type + "\"");
    }
}

std::vector<std::int64_t> ReadCounts(const hdf5::InputFile& file, const std::string& dataset,
                                     std::int64_t& total) {
    constexpr std::uint64_t kMostPieces = std::uint64_t{1} << 20;
    std::vector<std::int64_t> counts = file.Read<std::int64_t>(dataset, kMostPieces);
    total = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const std::int64_t most = 8 * kLargestCount - total;
        if (counts[i] < 0 || counts[i] > most) {
            Unexpected(dataset + "[" + Text(static_cast<std::int64_t>(i)) + "]", "0 to " + Text(most),
                       Text(counts[i]));
        }
        total += counts[i];
    }
    return counts;
}

PieceTable ReadPieces(const hdf5::InputFile& file) {
    PieceTable table;
    const auto points = ReadCounts(file, "/VTKHDF/NumberOfPoints", table.total.points);
    const auto cells = ReadCounts(file, "/VTKHDF/NumberOfCells", table.total.cells);
    const auto corners = ReadCounts(file, "/VTKHDF/NumberOfConnectivityIds", table.total.corners);
    if (points.empty() || points.size() != cells.size() || points.size() != corners.size()) {
        throw MeshFault("the numbers of pieces disagree: NumberOfPoints has " +
                        std::to_string(points.size()) + ", NumberOfCells " + std::to_string(cells.size()) +
                        ", NumberOfConnectivityIds " + std::to_string(corners.size()));
    }
    if (table.total.points > kLargestCount) {
        Unexpected("/VTKHDF/NumberOfPoints", "at most " + Text(kLargestCount), Text(table.total.points));
    }
    if (table.total.cells > kLargestCount) {
        Unexpected("/VTKHDF/NumberOfCells", "at most " + Text(kLargestCount), Text(table.total.cells));
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        table.pieces.push_back({points[i], cells[i], corners[i]});
    }
    return table;
}

template <typename T>
std::vector<T> ReadExactly(const hdf5::InputFile& file, const std::string& dataset, std::int64_t count) {
    const std::uint64_t found = file.Describe(dataset).elements;
    if (found != static_cast<std::uint64_t>(count)) {
        Unexpected(dataset, Text(count) + " values", std::to_string(found));
    }
    return file.Read<T>(dataset, kMaxValues);
}

void ReadPoints(const hdf5::InputFile& file, std::int64_t count, MeshData& mesh) {
    const std::string name = "/VTKHDF/Points";
    const hdf5::DatasetInfo info = file.Describe(name);
    const bool known = info.kind == hdf5::ValueKind::Float && (info.valueBytes == 4 || info.valueBytes == 8);
    if (!known) {
        Unexpected(name, "float32 or float64",
                   std::to_string(8 * info.valueBytes) + "-bit values of another kind");
    }
    if (info.shape.size() != 2 || info.shape[1] != 3) {
        Unexpected(name, "three columns", "another shape");
    }
    mesh.singlePrecision = info.valueBytes == 4;
    const std::vector<double> values = ReadExactly<double>(file, name, 3 * count);
    mesh.points.resize(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        mesh.points[i] = {values[3 * i], values[3 * i + 1], values[3 * i + 2]};
        for (const double value : mesh.points[i]) {
            if (!std::isfinite(value)) {
                Unexpected("point " + std::to_string(i + 1), "finite coordinates", std::to_string(value));
            }
        }
    }
}

void ReadTypes(const hdf5::InputFile& file, std::int64_t count, MeshData& mesh) {
    const std::vector<int> types = ReadExactly<int>(file, "/VTKHDF/Types", count);
    mesh.cellTypes.resize(types.size());
    for (std::size_t cell = 0; cell < types.size(); ++cell) {
        if (FindCellShape(types[cell]) == nullptr) {
            throw MeshFault("cell " + std::to_string(cell + 1) + ": unsupported cell type " +
                            Text(types[cell]) +
                            ", expected 10 (tetra), 12 (hexa), 13 (wedge) or 14 (pyramid)");
        }
        mesh.cellTypes[cell] = static_cast<std::uint8_t>(types[cell]);
    }
}

// The offsets of each piece begin at 0 and are one more than its cells; those of the mesh run on.
void ReadOffsets(const hdf5::InputFile& file, const PieceTable& table, MeshData& mesh) {
    const std::string name = "/VTKHDF/Offsets";
    const std::int64_t pieces = static_cast<std::int64_t>(table.pieces.size());
    const std::vector<std::int64_t> stored =
        ReadExactly<std::int64_t>(file, name, table.total.cells + pieces);
    mesh.offsets.reserve(mesh.cellTypes.size() + 1);
    mesh.offsets.push_back(0);
    std::size_t next = 0;
    for (const Piece& piece : table.pieces) {
        const std::int64_t begin = mesh.offsets.back();
        if (stored[next] != 0) {
            Unexpected(name + "[" + std::to_string(next) + "]", "0", Text(stored[next]));
        }
        for (std::int64_t i = 0; i < piece.cells; ++i) {
            ++next;
            const std::int64_t corners = mesh.Shape(static_cast<int>(mesh.offsets.size()) - 1).corners;
            const std::int64_t end = mesh.offsets.back() - begin + corners;
            if (stored[next] != end) {
                Unexpected(name + "[" + std::to_string(next) + "]",
                           Text(end) + " (end of cell " + std::to_string(mesh.offsets.size()) + ")",
                           Text(stored[next]));
            }
            mesh.offsets.push_back(begin + end);
        }
        ++next;
        if (mesh.offsets.back() - begin != piece.corners) {
            Unexpected("/VTKHDF/NumberOfConnectivityIds",
                       Text(mesh.offsets.back() - begin) + " (sum over the cells)", Text(piece.corners));
        }
    }
}

void CheckDistinctCorners(const MeshData& mesh, int cell) {
    const int* corners = mesh.Corners(cell);
    const int count = mesh.Shape(cell).corners;
    for (int c = 1; c < count; ++c) {
        if (std::find(corners, corners + c, corners[c]) != corners + c) {
            throw MeshFault("cell " + Text(cell + 1) + ": point " + Text(corners[c] + 1) +
                            " stands at two of its corners");
        }
    }
}

void ReadConnectivity(const hdf5::InputFile& file, const PieceTable& table, MeshData& mesh) {
    const std::string name = "/VTKHDF/Connectivity";
    const std::vector<std::int64_t> stored = ReadExactly<std::int64_t>(file, name, table.total.corners);
    mesh.connectivity.resize(stored.size());
    std::size_t next = 0;
    std::int64_t firstPoint = 0;
    for (const Piece& piece : table.pieces) {
        for (std::int64_t i = 0; i < piece.corners; ++i, ++next) {
            if (stored[next] < 0 || stored[next] >= piece.points) {
                Unexpected(name + "[" + std::to_string(next) + "]",
                           "a point index from 0 to " + Text(piece.points - 1), Text(stored[next]));
            }
            mesh.connectivity[next] = static_cast<int>(firstPoint + stored[next]);
        }
        firstPoint += piece.points;
    }
}

void ReadRegions(const hdf5::InputFile& file, MeshData& mesh) {
    const std::string name = "/VTKHDF/CellData/Region";
    mesh.regions.assign(mesh.cellTypes.size(), 0);
    if (!file.Exists(name)) {
        return;
    }
    const std::vector<int> stored = ReadExactly<int>(file, name, mesh.Cells());
    for (std::size_t cell = 0; cell < stored.size(); ++cell) {
        if (stored[cell] < 0 || stored[cell] > 2) {
            Unexpected(name + " of cell " + std::to_string(cell + 1), "0, 1 or 2", Text(stored[cell]));
        }
        mesh.regions[cell] = static_cast<std::int8_t>(stored[cell]);
    }
}

void ReadLabels(const hdf5::InputFile& file, const PieceTable& table, MeshData& mesh) {
    const std::string name = "/VTKHDF/PointData/NodeId";
    if (!file.Exists(name)) {
        if (table.pieces.size() > 1) {
            throw MeshFault("several pieces need " + name + " to be joined, and it is missing");
        }
        return;
    }
    const std::vector<std::int64_t> stored = ReadExactly<std::int64_t>(file, name, table.total.points);
    mesh.labels.resize(stored.size());
    for (std::size_t i = 0; i < stored.size(); ++i) {
        if (stored[i] < 1 || stored[i] > kLargestLabel) {
            Unexpected(name + " of point " + std::to_string(i + 1), "1 to " + Text(kLargestLabel),
                       Text(stored[i]));
        }
        mesh.labels[i] = static_cast<int>(stored[i]);
    }
}

// The points by label, then place in the file: a label in the upper half of a word, the point in the lower.
std::vector<std::uint64_t> PointsByLabel(const std::vector<int>& labels) {
    std::vector<std::uint64_t> sorted;
    sorted.reserve(labels.size());
    for (std::size_t point = 0; point < labels.size(); ++point) {
        sorted.push_back(static_cast<std::uint64_t>(labels[point]) << 32 | point);
    }
    if (!std::is_sorted(sorted.begin(), sorted.end())) {
        std::sort(sorted.begin(), sorted.end());
    }
    return sorted;
}

// For each point of the file the first point of its label. A label must not appear twice within a piece.
std::vector<std::size_t> FirstOfLabel(const PieceTable& table, const std::vector<int>& labels) {
    std::vector<std::size_t> pieceEnds;
    for (const Piece& piece : table.pieces) {
        const std::size_t begin = pieceEnds.empty() ? 0 : pieceEnds.back();
        pieceEnds.push_back(begin + static_cast<std::size_t>(piece.points));
    }
    const auto pieceOf = [&](std::size_t point) {
        return std::upper_bound(pieceEnds.begin(), pieceEnds.end(), point);
    };
    std::vector<std::size_t> first(labels.size());
    std::size_t previous = 0;
    std::size_t repeated = labels.size();
    std::size_t before = 0;
    for (const std::uint64_t entry : PointsByLabel(labels)) {
        const std::size_t point = entry & 0xFFFFFFFFU;
        const bool follows = point != previous && labels[point] == labels[previous];
        first[point] = follows ? first[previous] : point;
        if (follows && point < repeated && pieceOf(point) == pieceOf(previous)) {
            repeated = point;
            before = previous;
        }
        previous = point;
    }
    if (repeated < labels.size()) {
        throw MeshFault("duplicate label " + Text(labels[repeated]) + " at the points " +
                        std::to_string(before + 1) + " and " + std::to_string(repeated + 1));
    }
    return first;
}

// Gives each point of the file its node, numbered by first appearance of the label.
std::vector<int> JoinByLabel(const PieceTable& table, const std::vector<int>& labels, int& nodes) {
    const std::vector<std::size_t> first = FirstOfLabel(table, labels);
    std::vector<int> nodeOfPoint(labels.size());
    nodes = 0;
    for (std::size_t point = 0; point < labels.size(); ++point) {
        nodeOfPoint[point] = first[point] == point ? nodes++ : nodeOfPoint[first[point]];
    }
    return nodeOfPoint;
}

void JoinPieces(const PieceTable& table, MeshData& mesh) {
    int nodes = 0;
    const std::vector<int> nodeOfPoint = JoinByLabel(table, mesh.labels, nodes);
    if (nodes == mesh.Nodes()) {
        return;
    }
    std::size_t filled = 0;
    for (std::size_t point = 0; point < nodeOfPoint.size(); ++point) {
        if (static_cast<std::size_t>(nodeOfPoint[point]) == filled) {
            mesh.points[filled] = mesh.points[point];
            mesh.labels[filled] = mesh.labels[point];
            ++filled;
        }
    }
    mesh.points.resize(filled);
    mesh.labels.resize(filled);
    for (int& node : mesh.connectivity) {
        node = nodeOfPoint[static_cast<std::size_t>(node)];
    }
}

void ReadTolerance(const hdf5::InputFile& file, MeshData& mesh) {
    const std::string name = "/VTKHDF/FieldData/GeomTolerance";
    if (!file.Exists(name)) {
        return;
    }
    const double value = ReadExactly<double>(file, name, 1).front();
    if (!std::isfinite(value) || value <= 0.0) {
        Unexpected(name, "a length above 0", std::to_string(value));
    }
    mesh.geomTolerance = value;
}

MeshData ReadOpenFile(const hdf5::InputFile& file) {
    CheckLayout(file);
    const PieceTable table = ReadPieces(file);
    MeshData mesh;
    ReadTypes(file, table.total.cells, mesh);
    ReadOffsets(file, table, mesh);
    ReadConnectivity(file, table, mesh);
    ReadPoints(file, table.total.points, mesh);
    ReadRegions(file, mesh);
    ReadTolerance(file, mesh);
    ReadLabels(file, table, mesh);
    if (!mesh.labels.empty()) {
        JoinPieces(table, mesh);
    }
    for (int cell = 0; cell < mesh.Cells(); ++cell) {
        CheckDistinctCorners(mesh, cell);
    }
    return mesh;
}

}  // namespace

MeshFault WithFile(std::string_view path, const std::string& message) {
    return MeshFault("Mesh file " + std::string(path) + ": " + message);
}

MeshData ReadMeshFile(std::string_view path) {
    try {
        const hdf5::FileKind kind = hdf5::Recognise(path);
        if (kind == hdf5::FileKind::Unreadable) {
            throw MeshFault("not found, or not readable");
        }
        if (kind == hdf5::FileKind::Other) {
            throw MeshFault("not a VTKHDF file");
        }
        return ReadOpenFile(hdf5::InputFile(path));
    } catch (const hdf5::Hdf5Error& error) {
        throw WithFile(path, (error.Object().empty() ? "" : error.Object() + ": ") + error.Reason());
    } catch (const MeshFault& fault) {
        throw WithFile(path, fault.what());
    }
}

}  // namespace qnl::kernel
