#include "interop/FoamDimensions.h"

#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <memory>
#include <vector>

namespace qnl::interop {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestHeader = std::size_t{1} << 16;

bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// Comments of both kinds become blanks.
std::string WithoutComments(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const std::size_t begin = std::min(text.find("//"), text.find("/*"));
        plain += text.substr(0, begin);
        if (begin == std::string_view::npos) {
            break;
        }
        const std::string_view mark = text[begin + 1] == '/' ? "\n" : "*/";
        const std::size_t end = text.find(mark, begin + 2);
        plain += ' ';
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + mark.size());
    }
    return plain;
}

/// What stands between the brackets behind the keyword.
std::optional<std::string_view> BracketsBehind(std::string_view text, std::string_view keyword) {
    for (std::size_t place = text.find(keyword); place != std::string_view::npos;
         place = text.find(keyword, place + 1)) {
        std::size_t open = place + keyword.size();
        while (open < text.size() && IsSpace(text[open])) {
            ++open;
        }
        const bool isWord =
            place == 0 || IsSpace(text[place - 1]) || text[place - 1] == '}' || text[place - 1] == ';';
        const std::size_t close = text.find(']', open);
        if (isWord && open < text.size() && text[open] == '[' && close != std::string_view::npos) {
            return text.substr(open + 1, close - open - 1);
        }
    }
    return std::nullopt;
}

/// Numbers with blanks between them; nothing when something else stands there.
std::optional<std::vector<double>> Numbers(std::string_view text) {
    std::vector<double> numbers;
    const char* place = text.data();
    const char* const end = text.data() + text.size();
    for (;;) {
        place = std::find_if_not(place, end, IsSpace);
        if (place == end) {
            return numbers;
        }
        double number = 0.0;
        const auto read = std::from_chars(place, end, number);
        if (read.ec != std::errc()) {
            return std::nullopt;
        }
        numbers.push_back(number);
        place = read.ptr;
    }
}

/// The beginning of a file, unpacked if it is packed; empty when it cannot be read.
std::string ReadBeginning(const std::string& path) {
    const std::unique_ptr<gzFile_s, int (*)(gzFile)> file(gzopen(path.c_str(), "rb"), gzclose);
    std::string text(kLongestHeader, '\0');
    const int count = file ? gzread(file.get(), text.data(), static_cast<unsigned>(text.size())) : 0;
    text.resize(static_cast<std::size_t>(std::max(count, 0)));
    return text;
}

bool IsTime(const fs::path& folder, double seconds) {
    const std::string name = folder.filename().string();
    double number = 0.0;
    const auto read = std::from_chars(name.data(), name.data() + name.size(), number);
    return read.ec == std::errc() && read.ptr == name.data() + name.size() && number == seconds;
}

template <typename Fits>
std::vector<fs::path> FoldersIn(const fs::path& folder, Fits fits) {
    std::vector<fs::path> folders;
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        std::error_code unknown;
        if (entry->is_directory(unknown) && fits(entry->path())) {
            folders.push_back(entry->path());
        }
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

}  // namespace

std::optional<Dimensions> ParseFoamDimensions(std::string_view header) {
    const std::string text = WithoutComments(header);
    const std::optional<std::string_view> entry = BracketsBehind(text, "dimensions");
    const std::optional<std::vector<double>> numbers = entry ? Numbers(*entry) : std::nullopt;
    constexpr std::size_t kFewest = 5;
    Dimensions dimensions{};
    if (!numbers || numbers->size() > dimensions.size() || (!numbers->empty() && numbers->size() < kFewest)) {
        return std::nullopt;
    }
    std::copy(numbers->begin(), numbers->end(), dimensions.begin());
    return dimensions;
}

std::optional<Dimensions> ReadFoamDimensions(const std::string& caseFile, double seconds,
                                             const std::string& field) {
    const fs::path parent = fs::path(caseFile).parent_path();
    const fs::path folder = parent.empty() ? fs::path(".") : parent;
    for (const fs::path& time : FoldersIn(folder, [&](const fs::path& f) { return IsTime(f, seconds); })) {
        std::vector<fs::path> places = FoldersIn(time, [](const fs::path&) { return true; });
        places.insert(places.begin(), time);
        for (const fs::path& place : places) {
            for (const char* ending : {"", ".gz"}) {
                const std::string path = (place / (field + ending)).string();
                std::error_code unknown;
                if (fs::is_regular_file(path, unknown)) {
                    return ParseFoamDimensions(ReadBeginning(path));
                }
            }
        }
    }
    return std::nullopt;
}

}  // namespace qnl::interop
