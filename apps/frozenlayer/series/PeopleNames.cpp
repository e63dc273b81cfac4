#include "series/PeopleNames.h"

#include "platform/Stages.h"

namespace qnl::series {

namespace {

constexpr PeopleName kWarpItem{1, "Sink-mark displacement", "mm"};

struct UnitSpelling {
    std::string_view file;
    std::string_view people;
};
constexpr std::array<UnitSpelling, 4> kUnitSpellings{{
    {"oC", "°C"},
    {"--", "-"},
    {"", "-"},
    {"g/cm3", "g/cm³"},
}};

}  // namespace

const PeopleName* FindPeopleName(int id, bool isWarp) {
    if (isWarp && id == kWarpItem.id) {
        return &kWarpItem;
    }
    const bool isOurs = id >= 1 && id <= static_cast<int>(kPeopleNames.size());
    return isOurs ? &kPeopleNames[static_cast<std::size_t>(id) - 1] : nullptr;
}

bool IsWarpResult(std::string_view path) {
    constexpr std::string_view kExtension = kWarpStage.resultExtension;
    return path.size() >= kExtension.size() && path.substr(path.size() - kExtension.size()) == kExtension;
}

std::string PeopleUnit(std::string_view unit) {
    for (const UnitSpelling& spelling : kUnitSpellings) {
        if (spelling.file == unit) {
            return std::string(spelling.people);
        }
    }
    return std::string(unit);
}

}  // namespace qnl::series
