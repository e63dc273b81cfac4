#include "base/WindowsPath.h"

#include <stdexcept>

namespace qnl {

namespace {

std::size_t LastPosition(std::string_view path, char mark) {
    const std::size_t position = path.rfind(mark);
    if (position == std::string_view::npos) {
        throw std::out_of_range("invalid string position: no \"" + std::string(1, mark) + "\" in \"" +
                                std::string(path) + "\"");
    }
    return position;
}

const char* IndexSuffix(int index) {
    if (index <= 0) {
        return "_000";
    }
    if (index < 10) {
        return "_00";
    }
    return index < 100 ? "_0" : "_";
}

}  // namespace

std::string CutExtension(std::string_view path) {
    return std::string(path.substr(0, LastPosition(path, '.')));
}

std::string ReplaceExtension(std::string_view path, std::string_view extension) {
    return CutExtension(path).append(extension);
}

std::string CutFileName(std::string_view path) {
    return std::string(path.substr(0, LastPosition(path, '\\')));
}

std::string IndexedName(std::string_view name, int index) {
    const std::size_t dot = LastPosition(name, '.');
    std::string indexed(name.substr(0, dot));
    indexed += IndexSuffix(index);
    indexed += std::to_string(index);
    indexed += name.substr(dot);
    return indexed;
}

}  // namespace qnl
