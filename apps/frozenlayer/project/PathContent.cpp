#include "project/PathContent.h"

#include <array>
#include <string>

#include "base/Text.h"
#include "hdf5/Hdf5.h"
#include "platform/HostFiles.h"
#include "project/ProjectPaths.h"

namespace qnl::project {

namespace {

/// Little-endian first word of a search file.
constexpr std::string_view kSearchVersion("\xE9\x03\x00\x00", 4);
static_assert(0x3E9 == 1001);

PathContent RecogniseHdf5(std::string_view path) {
    const hdf5::InputFile file(path);
    return file.Exists("/VTKHDF") ? PathContent::Mesh : PathContent::Result;
}

std::string ReadStart(std::string_view path) {
    constexpr std::size_t kEnough = 4096;
    const HostFile file(path, "rb");
    if (!file) {
        throw InputProblem(NativePath(path) + " cannot be opened for reading");
    }
    std::string start(kEnough, '\0');
    start.resize(std::fread(start.data(), 1, start.size(), file.Get()));
    if (std::ferror(file.Get()) != 0) {
        throw InputProblem(NativePath(path) + " cannot be read");
    }
    return start;
}

PathContent RecogniseStart(const std::string& start) {
    if (std::string_view(start).substr(0, kSearchVersion.size()) == kSearchVersion) {
        return PathContent::Search;
    }
    if (Holds(start, std::string_view("\0", 1))) {
        return PathContent::Unknown;
    }
    if (Holds(start, "[HEADER]")) {
        return PathContent::AsciiResult;
    }
    if (Holds(start, "[MESH]") || Holds(start, "[MATERIAL]")) {
        return PathContent::RunFile;
    }
    return Holds(start, "kind") && Holds(start, "=") ? PathContent::Material : PathContent::Unknown;
}

}  // namespace

PathContent RecognisePath(std::string_view path) {
    if (FolderExists(path)) {
        return PathContent::Folder;
    }
    if (!FileExists(path)) {
        throw InputProblem(NativePath(path) + " is missing");
    }
    const std::string start = ReadStart(path);
    if (hdf5::Recognise(path) == hdf5::FileKind::Hdf5) {
        return RecogniseHdf5(path);
    }
    return RecogniseStart(start);
}

}  // namespace qnl::project
