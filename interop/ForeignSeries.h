#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// Meshes with results in the formats of other programs, as plain values.
namespace qnl::interop {

/// Why foreign files cannot be used: one sentence with the file and the remedy.
class ForeignProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Cells of any kind, everything 0-based, lengths in the file's own unit.
struct ForeignMesh {
    std::vector<std::array<double, 3>> points;
    bool singlePrecision = false;       ///< the file's points are float32
    std::vector<int> cellTypes;         ///< VTK numbers
    std::vector<std::int64_t> offsets;  ///< cells + 1 entries into nodes
    std::vector<std::int64_t> nodes;    ///< point indices of the cells
};

/// Exponents of kilogram, metre, second, kelvin, mole, ampere and candela.
using Dimensions = std::array<double, 7>;

/// Values of all points or all cells, the components of an entity beside each other.
struct ForeignArray {
    std::string name;
    int components = 1;
    bool onCells = false;
    std::vector<double> values;
    std::optional<Dimensions> dimensions = std::nullopt;  ///< where the format tells them
};

/// Faces of the boundary with values of their own, beside the cells: the patches of a case.
struct ForeignFaces {
    std::vector<std::int64_t> offsets;  ///< faces + 1 entries into points
    std::vector<std::int64_t> points;   ///< of the mesh, by face
    std::vector<ForeignArray> arrays;   ///< one entity a face
    std::string block = {};             ///< name of the block that they bound, empty when it is not told
};

/// Everything known at one time.
struct ForeignSnapshot {
    std::string file;
    std::optional<double> seconds;
    ForeignMesh mesh;
    std::vector<ForeignArray> arrays;
    std::vector<ForeignFaces> boundary;  ///< by block
    std::vector<std::string> blocks;     ///< names, by the number in the cell array kBlockArray; empty unless
                                         ///< there are several, each with a name
};

/// The cell array that tells the blocks of a mesh apart.
inline constexpr const char* kBlockArray = "BlockId";

/// Output times of one case, in the order of the files.
class ForeignSeries {
public:
    virtual ~ForeignSeries() = default;
    virtual int Count() const = 0;
    /// Whether the format lays down metres and kelvin.
    virtual bool IsSi() const = 0;
    /// `index` from 0. Raises ForeignProblem.
    virtual ForeignSnapshot Read(int index) = 0;
};

/// Opens one time series, or several files that are one output time each; the format is told by the
/// extension. Raises ForeignProblem for a file that is not there or not known, and in builds without readers.
std::unique_ptr<ForeignSeries> OpenForeignSeries(const std::vector<std::string>& files);

}  // namespace qnl::interop
