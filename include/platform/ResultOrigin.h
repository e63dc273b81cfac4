#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CQNL3DResultWriter_Manipulator;

namespace qnl {

/// What tells the content of a file from another one.
struct FileDigest {
    std::int64_t size = -1;  ///< bytes; -1 stands for no file
    std::uint64_t hash = 0;  ///< XXH3, 64 bits, of all bytes

    bool IsThere() const { return size >= 0; }
    bool operator==(const FileDigest& other) const { return size == other.size && hash == other.hash; }
    bool operator!=(const FileDigest& other) const { return !(*this == other); }
};

/// Reads the file once from its begin to its end. A file that cannot be read counts as none.
FileDigest DigestOf(std::string_view path);

/// What a file was to the result that was made from it.
enum class InputRole { Mesh, Material, RunFile, Stage, MarkerLog, FibreAtBase, Fibre, Thickness };

/// The roles as result files name them, by role.
inline constexpr std::array<const char*, 8> kInputRoles{
    "mesh", "material", "run_file", "stage", "marker_log", "fibre_at_base", "fibre", "thickness"};

constexpr const char* NameOf(InputRole role) {
    return kInputRoles[static_cast<std::size_t>(role)];
}

/// A file that a result depends on, also by not being there.
struct ResultInput {
    InputRole role = InputRole::Mesh;
    std::string name;  ///< without its folders, so that equal inputs elsewhere are equal
    FileDigest digest;
};

/// What a result was made from and by.
struct ResultOrigin {
    std::string version;       ///< of the program
    int mode = 0;              ///< as the head's flag
    int analysisCode = 0;      ///< decides which stages may be gas-assisted or have intermediate times
    bool diagnostics = false;  ///< at log levels from 2 on diagnostic values stand in some items
    std::vector<ResultInput> inputs;
};

/// Has the writer store it in the file that it has begun, before the first array. A platform whose files have
/// no place for it does nothing.
void SetResultOrigin(CQNL3DResultWriter_Manipulator& writer, ResultOrigin origin);

}  // namespace qnl
