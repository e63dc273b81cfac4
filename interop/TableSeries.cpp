#include "interop/TableSeries.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "interop/ForeignText.h"
#include "interop/HeldSeries.h"
#include "interop/PointRows.h"
#include "interop/ValueTable.h"

namespace qnl::interop {

namespace {

using Place = std::array<double, 3>;

constexpr std::array<std::string_view, 6> kLabelColumns{"node",   "label",     "id",
                                                        "nodeid", "nodelabel", "nodenumber"};
constexpr std::array<std::array<std::string_view, 2>, 3> kAxisColumns{
    {{"x", "points0"}, {"y", "points1"}, {"z", "points2"}}};
/// What the names of the components of a vector end in.
constexpr std::array<std::array<std::string_view, 2>, 3> kComponentEnds{
    {{"_x", ":0"}, {"_y", ":1"}, {"_z", ":2"}}};

/// Letters and digits, in lower case.
std::string Plain(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return plain;
}

/// A column of values by its name.
struct ColumnName {
    std::string quantity;
    std::optional<double> seconds;
};

ColumnName ParseName(const std::string& name, const std::string& file) {
    constexpr std::string_view kTimeWord = " t=";
    std::size_t mark = name.rfind('@');
    std::string_view time;
    if (mark != std::string::npos) {
        time = Trimmed(std::string_view(name).substr(mark + 1));
        time.remove_prefix(time.substr(0, 2) == kTimeWord.substr(1) ? 2 : 0);
    } else if ((mark = name.rfind(kTimeWord)) != std::string::npos) {
        time = Trimmed(std::string_view(name).substr(mark + kTimeWord.size()));
    } else {
        return {name, std::nullopt};
    }
    time.remove_suffix(!time.empty() && time.back() == 's' ? 1 : 0);
    const std::optional<double> seconds = RealNumber(time);
    if (!seconds || !std::isfinite(*seconds)) {
        throw ForeignProblem(file + ": column " + Quoted(name) +
                             " tells no time; name columns by quantity and seconds, like temperature@0.5");
    }
    return {std::string(Trimmed(std::string_view(name).substr(0, mark))), seconds};
}

/// Name of the vector that a component belongs to, and which one it is; -1 for none.
std::pair<std::string, int> ComponentOf(const std::string& name) {
    for (std::size_t axis = 0; axis < kComponentEnds.size(); ++axis) {
        for (const std::string_view end : kComponentEnds[axis]) {
            if (name.size() > end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0) {
                return {name.substr(0, name.size() - end.size()), static_cast<int>(axis)};
            }
        }
    }
    return {name, -1};
}

/// Values of columns that are one array: one column, or one for each component.
struct ColumnGroup {
    std::string name;
    std::vector<const TableColumn*> columns;
};

class TableJoin {
public:
    TableJoin(ForeignSnapshot mesh, bool isSi, const std::string& file)
        : mesh_(std::move(mesh)), isSi_(isSi), table_(ReadValueTable(file)) {
        SortColumns();
    }

    std::unique_ptr<ForeignSeries> Join() {
        labelColumn_ != nullptr ? MatchLabels() : MatchCoordinates();
        CountUnmatched();
        auto& arrays = mesh_.arrays;
        arrays.erase(
            std::remove_if(arrays.begin(), arrays.end(),
                           [](const ForeignArray& array) { return !array.onCells && !IsLabel(array); }),
            arrays.end());
        std::vector<TimedArrays> times;
        for (const auto& [seconds, groups] : timed_) {
            times.push_back({seconds, ArraysOf(groups)});
        }
        for (ForeignArray& array : ArraysOf(untimed_)) {
            arrays.push_back(std::move(array));
        }
        mesh_.file += " with " + table_.file;
        return HoldSeries(std::move(mesh_), std::move(times), isSi_);
    }

private:
    static bool IsLabel(const ForeignArray& array) {
        return !array.onCells && array.components == 1 &&
               std::find(kLabelArrays.begin(), kLabelArrays.end(), array.name) != kLabelArrays.end();
    }

    [[noreturn]] void Fail(const std::string& sentence) const {
        throw ForeignProblem(table_.file + sentence);
    }

    /// Tells columns of labels, places and values apart.
    void SortColumns() {
        for (const TableColumn& column : table_.columns) {
            if (!TakePlace(column)) {
                AddValues(column);
            }
        }
        if (labelColumn_ == nullptr && std::count(axes_.begin(), axes_.end(), nullptr) > 0) {
            Fail(
                " does not tell to which nodes its rows belong; give a column \"node\" with the labels, or "
                "columns \"x\", \"y\" and \"z\"");
        }
        if (timed_.empty() && untimed_.empty()) {
            Fail(" holds no column of values; name them by quantity and seconds, like temperature@0.5");
        }
        JoinComponents(untimed_);
        for (auto& [seconds, groups] : timed_) {
            JoinComponents(groups);
        }
    }

    bool TakePlace(const TableColumn& column) {
        const std::string plain = Plain(column.name);
        const TableColumn** role = nullptr;
        if (std::find(kLabelColumns.begin(), kLabelColumns.end(), plain) != kLabelColumns.end()) {
            role = &labelColumn_;
        }
        for (std::size_t axis = 0; axis < axes_.size(); ++axis) {
            const auto& names = kAxisColumns[axis];
            role = std::find(names.begin(), names.end(), plain) != names.end() ? &axes_[axis] : role;
        }
        if (role == nullptr) {
            return false;
        }
        if (*role != nullptr || column.components != 1) {
            Fail(": column " + Quoted(column.name) + " is there twice or no single column; leave one");
        }
        *role = &column;
        return true;
    }

    void AddValues(const TableColumn& column) {
        const ColumnName name = ParseName(column.name, table_.file);
        std::vector<ColumnGroup>& groups = name.seconds ? timed_[*name.seconds] : untimed_;
        if (std::any_of(groups.begin(), groups.end(),
                        [&](const ColumnGroup& other) { return other.name == name.quantity; })) {
            Fail(": column " + Quoted(column.name) + " is there twice; leave one of them out");
        }
        groups.push_back({name.quantity, {&column}});
    }

    /// Makes one group of three columns that are the components of a vector.
    static void JoinComponents(std::vector<ColumnGroup>& groups) {
        std::map<std::string, std::array<const TableColumn*, 3>> vectors;
        for (const ColumnGroup& group : groups) {
            const auto [name, axis] = ComponentOf(group.name);
            if (axis >= 0 && group.columns[0]->components == 1) {
                vectors[name][static_cast<std::size_t>(axis)] = group.columns[0];
            }
        }
        for (const auto& [name, columns] : vectors) {
            if (std::count(columns.begin(), columns.end(), nullptr) > 0) {
                continue;
            }
            const auto belongs = [&own = columns](const ColumnGroup& group) {
                return std::find(own.begin(), own.end(), group.columns[0]) != own.end();
            };
            groups.erase(std::remove_if(groups.begin(), groups.end(), belongs), groups.end());
            groups.push_back({name, {columns.begin(), columns.end()}});
        }
    }

    void MatchLabels() {
        std::unordered_map<double, std::int64_t> rowOf;
        for (std::size_t row = 0; row < table_.rows; ++row) {
            const double label = labelColumn_->values[row];
            if (!rowOf.emplace(label, static_cast<std::int64_t>(row)).second) {
                Fail(": row " + std::to_string(row + 1) + " names node " + std::to_string(label) +
                     " again; give one row for each node");
            }
        }
        const auto labels = std::find_if(mesh_.arrays.begin(), mesh_.arrays.end(), IsLabel);
        for (std::size_t point = 0; point < mesh_.mesh.points.size(); ++point) {
            const double label =
                labels != mesh_.arrays.end() ? labels->values[point] : static_cast<double>(point + 1);
            const auto row = rowOf.find(label);
            rows_.push_back(row == rowOf.end() ? -1 : row->second);
        }
    }

    /// The larger of the diagonal of the box and the largest coordinate.
    double SizeOfMesh() const {
        Place low = mesh_.mesh.points.front();
        Place high = low;
        double largest = 0.0;
        for (const Place& point : mesh_.mesh.points) {
            for (std::size_t axis = 0; axis < point.size(); ++axis) {
                low[axis] = std::min(low[axis], point[axis]);
                high[axis] = std::max(high[axis], point[axis]);
                largest = std::max(largest, std::abs(point[axis]));
            }
        }
        return std::max(largest, std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]));
    }

    void MatchCoordinates() {
        const double size = SizeOfMesh();
        if (!std::isfinite(size) || size <= 0.0) {
            throw ForeignProblem(mesh_.file + " has no size that is finite; repair the mesh");
        }
        std::vector<Place> places;
        for (std::size_t row = 0; row < table_.rows; ++row) {
            places.push_back({axes_[0]->values[row], axes_[1]->values[row], axes_[2]->values[row]});
            if (!std::isfinite(places.back()[0] + places.back()[1] + places.back()[2])) {
                Fail(": row " + std::to_string(row + 1) +
                     " has no finite place; give x, y and z of each row");
            }
        }
        rows_ = MatchPlaces(mesh_.mesh.points, places, kMatchTolerance * size);
    }

    void CountUnmatched() {
        std::vector<bool> used(table_.rows, false);
        std::size_t missing = 0;
        for (const std::int64_t row : rows_) {
            missing += row < 0 ? 1 : 0;
            if (row >= 0) {
                used[static_cast<std::size_t>(row)] = true;
            }
        }
        if (missing == rows_.size()) {
            Fail(" has no row for any point of " + mesh_.file +
                 "; give the labels or the coordinates of that mesh, in its length unit");
        }
        const auto unused = std::count(used.begin(), used.end(), false);
        if (unused > 0) {
            const auto first = std::find(used.begin(), used.end(), false) - used.begin();
            mesh_.warnings.push_back(table_.file + ": " + std::to_string(unused) + " of " +
                                     std::to_string(table_.rows) + " rows belong to no node of " +
                                     mesh_.file + ", the first is row " + std::to_string(first + 1) +
                                     "; they are not used");
        }
        if (missing > 0) {
            mesh_.warnings.push_back(table_.file + " has no row for " + std::to_string(missing) + " of the " +
                                     std::to_string(rows_.size()) + " points of " + mesh_.file);
        }
    }

    ForeignArray ArrayOf(const ColumnGroup& group) const {
        const bool isVector = group.columns[0]->components > 1;
        const auto width =
            isVector ? static_cast<std::size_t>(group.columns[0]->components) : group.columns.size();
        ForeignArray array{group.name, static_cast<int>(width), false, {}};
        array.values.reserve(rows_.size() * width);
        for (const std::int64_t row : rows_) {
            for (std::size_t c = 0; c < width; ++c) {
                const auto place = static_cast<std::size_t>(row);
                array.values.push_back(row < 0    ? std::numeric_limits<double>::quiet_NaN()
                                       : isVector ? group.columns[0]->values[place * width + c]
                                                  : group.columns[c]->values[place]);
            }
        }
        return array;
    }

    std::vector<ForeignArray> ArraysOf(const std::vector<ColumnGroup>& groups) const {
        std::vector<ForeignArray> arrays;
        arrays.reserve(groups.size());
        for (const ColumnGroup& group : groups) {
            arrays.push_back(ArrayOf(group));
        }
        return arrays;
    }

    ForeignSnapshot mesh_;
    bool isSi_;
    ValueTable table_;
    const TableColumn* labelColumn_ = nullptr;
    std::array<const TableColumn*, 3> axes_{};
    std::vector<ColumnGroup> untimed_;
    std::map<double, std::vector<ColumnGroup>> timed_;
    std::vector<std::int64_t> rows_;  ///< of each point; -1: none
};

}  // namespace

std::unique_ptr<ForeignSeries> JoinTable(ForeignSeries& series, const std::string& file) {
    ForeignSnapshot mesh = series.Read(0);
    if (series.Count() != 1) {
        throw ForeignProblem(mesh.file + " has " + std::to_string(series.Count()) +
                             " output times of its own; give a mesh of one time beside a table of values");
    }
    return TableJoin(std::move(mesh), series.IsSi(), file).Join();
}

}  // namespace qnl::interop
