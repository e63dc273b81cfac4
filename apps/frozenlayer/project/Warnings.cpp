#include "project/Warnings.h"

#include <algorithm>
#include <utility>

namespace qnl::project {

namespace {

std::vector<std::string>& Recorded() {
    static std::vector<std::string> sentences;
    return sentences;
}

}  // namespace

void RecordWarning(std::string sentence) {
    std::vector<std::string>& known = Recorded();
    if (std::find(known.begin(), known.end(), sentence) == known.end()) {
        known.push_back(std::move(sentence));
    }
}

std::vector<std::string> TakeWarnings() {
    return std::exchange(Recorded(), {});
}

}  // namespace qnl::project
