#include "text/NearestWord.h"

#include <algorithm>
#include <numeric>

namespace qnl::text {

std::size_t EditDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

std::string NearestWord(const std::string& wrong, const std::vector<std::string>& words) {
    std::string nearest;
    std::size_t least = std::max(wrong.size() / 3, std::size_t{1}) + 1;
    for (const std::string& word : words) {
        const std::size_t distance = EditDistance(wrong, word);
        if (distance < least) {
            least = distance;
            nearest = word;
        }
    }
    return nearest;
}

}  // namespace qnl::text
