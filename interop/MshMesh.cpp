#include "interop/MshMesh.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>
#include <vector>

#include "interop/ForeignText.h"
#include "interop/HeldSeries.h"
#include "interop/LabelledMesh.h"

namespace qnl::interop {

namespace {

constexpr std::int64_t kVolume = 3;

/// Element types of the format by number: VTK type, all nodes. Corners come first.
struct SolidType {
    std::int64_t number;
    int vtkType;
    std::size_t nodes;
};
constexpr std::array<SolidType, 11> kSolidTypes{{
    {4, 10, 4},
    {5, 12, 8},
    {6, 13, 6},
    {7, 14, 5},
    {11, 24, 10},
    {12, 29, 27},
    {13, 32, 18},
    {14, 37, 14},
    {17, 25, 20},
    {18, 26, 15},
    {19, 27, 13},
}};
/// Points, lines and faces of any order.
constexpr std::array<std::int64_t, 17> kLowerTypes{1,  2,  3,  8,  9,  10, 15, 16, 20,
                                                   21, 22, 23, 24, 25, 26, 27, 28};

using Fields = std::vector<std::string_view>;

Fields Split(std::string_view line) {
    Fields fields;
    constexpr std::string_view kBlanks = " \t";
    for (std::size_t begin = line.find_first_not_of(kBlanks); begin != std::string_view::npos;) {
        const std::size_t end = std::min(line.find_first_of(kBlanks, begin), line.size());
        fields.push_back(line.substr(begin, end - begin));
        begin = line.find_first_not_of(kBlanks, end);
    }
    return fields;
}

class MshParser {
public:
    explicit MshParser(const std::string& file) : text_(file) {}

    std::unique_ptr<ForeignSeries> Parse() {
        ParseFormat();
        std::string_view line;
        while (text_.Next(line)) {
            const std::string_view name = Trimmed(line);
            if (name == "$PhysicalNames") {
                ParseNames();
            } else if (name == "$Entities") {
                ParseEntities();
            } else if (name == "$Nodes") {
                isBlocked_ ? ParseNodeBlocks() : ParseNodeList();
            } else if (name == "$Elements") {
                isBlocked_ ? ParseElementBlocks() : ParseElementList();
            } else if (!name.empty() && name.front() == '$') {
                Skip(name);
            }
        }
        return Series();
    }

private:
    /// Fields of the next line, at least so many.
    Fields NeedFields(std::size_t count, const char* what) {
        Fields fields = Split(text_.Need(what));
        if (fields.size() < count) {
            text_.Fail(what, std::to_string(fields.size()) + " fields");
        }
        return fields;
    }

    std::int64_t Whole(std::string_view field, const char* what) const {
        const std::optional<std::int64_t> number = WholeNumber(field);
        if (!number) {
            text_.Fail(what, Quoted(field));
        }
        return *number;
    }

    std::int64_t Count(std::string_view field, const char* what) const {
        const std::int64_t count = Whole(field, what);
        if (count < 0) {
            text_.Fail(what, std::to_string(count));
        }
        return count;
    }

    void NeedEnd(const std::string& name) {
        const std::string_view line = Trimmed(text_.Need(name.c_str()));
        if (line != name) {
            text_.Fail(name + ", as the counts of the section say", Quoted(line));
        }
    }

    void ParseFormat() {
        constexpr const char* kConvert = "write it anew: gmsh FILE.msh -save -format msh41 -o text.msh";
        if (Trimmed(text_.Need("$MeshFormat")) != "$MeshFormat") {
            text_.Fail("$MeshFormat", "another text");
        }
        const Fields fields = NeedFields(3, "version, form and size of a number");
        isBlocked_ = fields[0] == "4.1";
        if (!isBlocked_ && fields[0].substr(0, 2) != "2." && fields[0] != "2") {
            text_.Fail("version 4.1 or 2", std::string(Quoted(fields[0])), kConvert);
        }
        if (fields[1] != "0") {
            text_.Fail("the text form, 0", Quoted(fields[1]), kConvert);
        }
        NeedEnd("$EndMeshFormat");
    }

    void Skip(std::string_view section) {
        const std::string end = "$End" + std::string(section.substr(1));
        while (Trimmed(text_.Need(end.c_str())) != end) {
        }
    }

    void ParseNames() {
        const std::int64_t count = Count(NeedFields(1, "a count")[0], "a count");
        for (std::int64_t i = 0; i < count; ++i) {
            const std::string_view line = text_.Need("a physical name");
            const Fields fields = Split(line);
            const std::size_t open = line.find('"');
            const std::size_t close = line.rfind('"');
            if (fields.size() < 3 || open == std::string_view::npos || close <= open) {
                text_.Fail("dimension, number and \"name\" of a physical group", Quoted(line));
            }
            if (Whole(fields[0], "a dimension") == kVolume) {
                names_[Whole(fields[1], "a number")] = std::string(line.substr(open + 1, close - open - 1));
            }
        }
        NeedEnd("$EndPhysicalNames");
    }

    /// The physical groups of each volume; points, curves and surfaces come before.
    void ParseEntities() {
        constexpr std::size_t kBoxEnd = 7;
        const Fields counts = NeedFields(4, "the numbers of points, curves, surfaces and volumes");
        for (std::size_t dimension = 0; dimension < counts.size() && dimension <= kVolume; ++dimension) {
            const std::int64_t count = Count(counts[dimension], "a count");
            for (std::int64_t i = 0; i < count; ++i) {
                const Fields fields = NeedFields(dimension == 0 ? 5 : kBoxEnd + 1, "an entity");
                if (dimension == kVolume) {
                    AddGroups(fields, kBoxEnd);
                }
            }
        }
        NeedEnd("$EndEntities");
    }

    void AddGroups(const Fields& fields, std::size_t place) {
        const std::int64_t count = Count(fields[place], "the number of physical groups");
        if (static_cast<std::uint64_t>(count) >= fields.size() - place) {
            text_.Fail(std::to_string(count) + " physical groups", std::to_string(fields.size() - place - 1));
        }
        std::vector<std::int64_t>& groups = groupsOf_[Whole(fields[0], "the number of a volume")];
        for (std::size_t g = place + 1; g <= place + static_cast<std::size_t>(count); ++g) {
            groups.push_back(Whole(fields[g], "the number of a physical group"));
        }
    }

    void AddNode(std::int64_t label, const Fields& fields, std::size_t first) {
        std::array<double, 3> place{};
        for (std::size_t axis = 0; axis < place.size(); ++axis) {
            const std::optional<double> number = RealNumber(fields[first + axis]);
            if (!number) {
                text_.Fail("a coordinate", Quoted(fields[first + axis]));
            }
            place[axis] = *number;
        }
        if (!mesh_.AddNode(label, place)) {
            text_.Fail("each node once", "node " + std::to_string(label) + " again");
        }
    }

    void ParseNodeList() {
        const std::int64_t count = Count(NeedFields(1, "a count of nodes")[0], "a count of nodes");
        for (std::int64_t i = 0; i < count; ++i) {
            const Fields fields = NeedFields(4, "number, x, y and z of a node");
            AddNode(Whole(fields[0], "a node number"), fields, 1);
        }
        NeedEnd("$EndNodes");
    }

    void ParseNodeBlocks() {
        const Fields head = NeedFields(2, "the numbers of blocks and nodes");
        const std::int64_t blocks = Count(head[0], "a count of blocks");
        for (std::int64_t block = 0; block < blocks; ++block) {
            const std::int64_t count =
                Count(NeedFields(4, "the head of a block of nodes")[3], "a count of nodes");
            std::vector<std::int64_t> labels;
            for (std::int64_t i = 0; i < count; ++i) {
                labels.push_back(Whole(NeedFields(1, "a node number")[0], "a node number"));
            }
            for (const std::int64_t label : labels) {
                AddNode(label, NeedFields(3, "x, y and z of a node"), 0);
            }
        }
        CheckTotal(head[1], mesh_.Nodes(), "nodes");
        NeedEnd("$EndNodes");
    }

    void CheckTotal(std::string_view field, std::size_t found, const char* what) const {
        const std::int64_t count = Count(field, "a count");
        if (static_cast<std::uint64_t>(count) != found) {
            text_.Fail(std::to_string(count) + " " + what + ", as the head of the section says",
                       std::to_string(found));
        }
    }

    /// Null for an element without volume.
    const SolidType* TypeOf(std::int64_t number) const {
        const auto* type = std::find_if(kSolidTypes.begin(), kSolidTypes.end(),
                                        [&](const SolidType& row) { return row.number == number; });
        if (type != kSolidTypes.end()) {
            return type;
        }
        if (std::find(kLowerTypes.begin(), kLowerTypes.end(), number) == kLowerTypes.end()) {
            text_.Fail("tetrahedra, hexahedra, prisms or pyramids of first or second order",
                       "an element of type " + std::to_string(number), "save the mesh with order 1 or 2");
        }
        return nullptr;
    }

    /// The nodes of an element are the fields from `first`.
    void AddElement(const SolidType& type, const Fields& fields, std::size_t first) {
        if (fields.size() != first + type.nodes) {
            text_.Fail(
                std::to_string(type.nodes) + " nodes of an element of type " + std::to_string(type.number),
                std::to_string(fields.size() - std::min(first, fields.size())));
        }
        std::vector<std::int64_t> nodes;
        for (std::size_t n = first; n < fields.size(); ++n) {
            nodes.push_back(Whole(fields[n], "a node number"));
        }
        const std::int64_t label = Whole(fields[0], "an element number");
        if (!mesh_.AddElement(label, type.vtkType, nodes)) {
            text_.Fail("each element once", "element " + std::to_string(label) + " again");
        }
    }

    /// Number, type, number of tags, tags (physical group and volume first), nodes.
    void ParseElementList() {
        const std::int64_t count = Count(NeedFields(1, "a count of elements")[0], "a count of elements");
        for (std::int64_t i = 0; i < count; ++i) {
            const Fields fields = NeedFields(3, "number, type and tags of an element");
            const SolidType* type = TypeOf(Whole(fields[1], "an element type"));
            const std::int64_t tags = Count(fields[2], "a count of tags");
            if (static_cast<std::uint64_t>(tags) > fields.size() - 3) {
                text_.Fail(std::to_string(tags) + " tags", std::to_string(fields.size() - 3));
            }
            if (type != nullptr) {
                AddElement(*type, fields, 3 + static_cast<std::size_t>(tags));
                const std::int64_t group = tags > 0 ? Whole(fields[3], "a tag") : 0;
                groupsOfCell_.push_back(group > 0 ? std::vector<std::int64_t>{group}
                                                  : std::vector<std::int64_t>{});
                volumes_.push_back(tags > 1 ? Whole(fields[4], "a tag") : 0);
            }
        }
        NeedEnd("$EndElements");
    }

    void ParseElementBlocks() {
        const Fields head = NeedFields(2, "the numbers of blocks and elements");
        const std::int64_t blocks = Count(head[0], "a count of blocks");
        std::size_t total = 0;
        for (std::int64_t block = 0; block < blocks; ++block) {
            const Fields start = NeedFields(4, "the head of a block of elements");
            const std::int64_t volume = Whole(start[1], "the number of a volume");
            const SolidType* type = TypeOf(Whole(start[2], "an element type"));
            const std::int64_t count = Count(start[3], "a count of elements");
            for (std::int64_t i = 0; i < count; ++i, ++total) {
                const Fields fields = NeedFields(1, "an element");
                if (type != nullptr) {
                    AddElement(*type, fields, 1);
                    groupsOfCell_.push_back(groupsOf_[volume]);
                    volumes_.push_back(volume);
                }
            }
        }
        CheckTotal(head[1], total, "elements");
        NeedEnd("$EndElements");
    }

    /// Cells by the name of a physical group, in the order of the numbers.
    std::vector<ForeignSet> NamedGroups() const {
        std::vector<ForeignSet> sets;
        for (const auto& [number, name] : names_) {
            ForeignSet set{name, {}};
            for (std::size_t cell = 0; cell < groupsOfCell_.size(); ++cell) {
                const std::vector<std::int64_t>& own = groupsOfCell_[cell];
                if (std::find(own.begin(), own.end(), number) != own.end()) {
                    set.cells.push_back(static_cast<std::int64_t>(cell));
                }
            }
            if (!set.cells.empty()) {
                sets.push_back(std::move(set));
            }
        }
        return sets;
    }

    void AddNamedGroups(ForeignSnapshot& mesh) const {
        std::vector<ForeignSet> sets = NamedGroups();
        ForeignArray blocks{kBlockArray, 1, true, std::vector<double>(groupsOfCell_.size(), -1.0)};
        bool once = sets.size() > 1;
        for (std::size_t set = 0; set < sets.size(); ++set) {
            for (const std::int64_t cell : sets[set].cells) {
                double& block = blocks.values[static_cast<std::size_t>(cell)];
                once = once && block < 0.0;
                block = static_cast<double>(set);
            }
        }
        once = once && std::count(blocks.values.begin(), blocks.values.end(), -1.0) == 0;
        if (!once) {
            mesh.sets = std::move(sets);
            return;
        }
        for (const ForeignSet& set : sets) {
            mesh.blocks.push_back(set.name);
        }
        mesh.arrays.push_back(std::move(blocks));
    }

    std::unique_ptr<ForeignSeries> Series() {
        if (mesh_.Elements() == 0) {
            throw ForeignProblem(
                text_.File() +
                ": this is no solid mesh: it holds no element with a volume; mesh the part in "
                "three dimensions and save all of it");
        }
        ForeignSnapshot mesh = mesh_.Take(text_.File());
        ForeignArray groups{"PhysicalIds", 1, true, {}};
        ForeignArray volumes{"CellEntityIds", 1, true, {}};
        for (std::size_t cell = 0; cell < volumes_.size(); ++cell) {
            const std::vector<std::int64_t>& own = groupsOfCell_[cell];
            groups.values.push_back(own.empty() ? 0.0 : static_cast<double>(own.front()));
            volumes.values.push_back(static_cast<double>(volumes_[cell]));
        }
        mesh.arrays.push_back(std::move(groups));
        mesh.arrays.push_back(std::move(volumes));
        AddNamedGroups(mesh);
        return HoldSeries(std::move(mesh), {});
    }

    ForeignText text_;
    LabelledMesh mesh_;
    bool isBlocked_ = false;                                      ///< form 4.1
    std::map<std::int64_t, std::string> names_;                   ///< of physical groups of volumes
    std::map<std::int64_t, std::vector<std::int64_t>> groupsOf_;  ///< of each volume
    std::vector<std::vector<std::int64_t>> groupsOfCell_;
    std::vector<std::int64_t> volumes_;  ///< of each cell
};

}  // namespace

std::unique_ptr<ForeignSeries> OpenMshMesh(const std::string& file) {
    return MshParser(file).Parse();
}

}  // namespace qnl::interop
