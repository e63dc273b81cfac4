#include "interop/InpMesh.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "interop/ForeignText.h"
#include "interop/HeldSeries.h"
#include "interop/LabelledMesh.h"

namespace qnl::interop {

namespace {

/// Number of nodes of a solid element and its VTK type; corners come first.
struct SolidType {
    std::string_view nodes;
    int vtkType;
};
constexpr std::array<SolidType, 8> kSolidTypes{
    {{"4", 10}, {"5", 14}, {"6", 13}, {"8", 12}, {"10", 24}, {"13", 27}, {"15", 26}, {"20", 25}}};
/// What stands before the number of nodes: stress, heat, heat with flow, fluid, acoustic, continuum shell.
constexpr std::array<std::string_view, 6> kSolidFamilies{"C3D", "DC3D", "DCC3D", "F3D", "AC3D", "SC"};
/// What the names of elements without volume begin with: shells, membranes, plane elements, beams, points.
constexpr std::array<std::string_view, 23> kFlatFamilies{
    "S",    "M3D",  "R3D",  "CPS", "CPE", "CGPE", "CAX",  "B2",   "B3",      "T2",     "T3", "DS",
    "DC1D", "DC2D", "DCAX", "R2D", "RAX", "PIPE", "MASS", "CONN", "DASHPOT", "ROTARY", "GAP"};

/// What generates nodes or elements, or takes them from elsewhere, and what to do instead.
struct RefusedKeyword {
    std::string_view word;
    const char* remedy;
};
constexpr const char* kWriteAll = "write all nodes and elements into the file, without generation";
constexpr std::array<RefusedKeyword, 6> kRefusedKeywords{{
    {"INCLUDE", "put the included file in its place, or give that file if it holds the whole mesh"},
    {"NGEN", kWriteAll},
    {"NFILL", kWriteAll},
    {"NCOPY", kWriteAll},
    {"ELGEN", kWriteAll},
    {"ELCOPY", kWriteAll},
}};
constexpr const char* kFlattenParts =
    "write the input file without parts and instances, with numbers of its own for each node";

std::string Upper(std::string_view text) {
    std::string upper(Trimmed(text));
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper;
}

std::vector<std::string_view> Fields(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t begin = 0; begin <= line.size();) {
        const std::size_t end = std::min(line.find(',', begin), line.size());
        fields.push_back(Trimmed(line.substr(begin, end - begin)));
        begin = end + 1;
    }
    return fields;
}

/// VTK type and nodes of a solid element; 0 for another.
std::pair<int, std::size_t> SolidOf(const std::string& type) {
    for (const std::string_view family : kSolidFamilies) {
        if (type.compare(0, family.size(), family) != 0) {
            continue;
        }
        const std::size_t end = std::min(type.find_first_not_of("0123456789", family.size()), type.size());
        const std::string number = type.substr(family.size(), end - family.size());
        for (const SolidType& solid : kSolidTypes) {
            if (solid.nodes == number) {
                return {solid.vtkType, static_cast<std::size_t>(std::stoi(number))};
            }
        }
    }
    return {0, 0};
}

class InpParser {
public:
    explicit InpParser(const std::string& file) : text_(file) {}

    std::unique_ptr<ForeignSeries> Parse() {
        std::string_view line;
        while (NextLine(line)) {
            if (line.front() == '*') {
                ParseKeyword(line);
            }
        }
        return Series();
    }

private:
    struct Keyword {
        std::string word;
        std::map<std::string, std::string> parameters;  ///< names in capitals

        std::string Value(const std::string& name) const {
            const auto found = parameters.find(name);
            return found == parameters.end() ? std::string() : found->second;
        }
    };

    /// The next line that is no comment and not empty.
    bool NextLine(std::string_view& line) {
        while (text_.Next(line)) {
            line = Trimmed(line);
            if (!line.empty() && line.substr(0, 2) != "**") {
                return true;
            }
        }
        return false;
    }

    /// The next line of data; false, and it comes again, for a keyword.
    bool NextData(std::string_view& line) {
        if (!NextLine(line)) {
            return false;
        }
        if (line.front() == '*') {
            text_.Back();
            return false;
        }
        return true;
    }

    void ParseKeyword(std::string_view line) {
        const std::vector<std::string_view> fields = Fields(line.substr(1));
        Keyword keyword{Upper(fields.front()), {}};
        for (std::size_t i = 1; i < fields.size(); ++i) {
            const std::size_t equals = fields[i].find('=');
            keyword.parameters[Upper(fields[i].substr(0, equals))] =
                equals == std::string_view::npos ? "" : std::string(Unquoted(fields[i].substr(equals + 1)));
        }
        for (const RefusedKeyword& refused : kRefusedKeywords) {
            if (keyword.word == refused.word) {
                text_.Fail("the whole mesh in one file", "*" + keyword.word, refused.remedy);
            }
        }
        const bool isMesh = keyword.word == "NODE" || keyword.word == "ELEMENT" || keyword.word == "ELSET";
        if (isMesh && keyword.parameters.count("INPUT") == 1) {
            text_.Fail("the whole mesh in one file", "INPUT=", "put the other file in its place");
        }
        if (keyword.word == "NODE") {
            ParseNodes(keyword);
        } else if (keyword.word == "ELEMENT") {
            ParseElements(keyword);
        } else if (keyword.word == "ELSET") {
            ParseSet(keyword);
        } else if (keyword.word == "INSTANCE" && ++instances_ > 1) {
            text_.Fail("one instance of one part", "a second *INSTANCE", kFlattenParts);
        }
    }

    static std::string_view Unquoted(std::string_view text) {
        text = Trimmed(text);
        const bool quoted = text.size() > 1 && text.front() == '"' && text.back() == '"';
        return quoted ? text.substr(1, text.size() - 2) : text;
    }

    std::int64_t Whole(std::string_view field, const char* what) const {
        const std::optional<std::int64_t> number = WholeNumber(field);
        if (!number) {
            text_.Fail(what, Quoted(field));
        }
        return *number;
    }

    void ParseNodes(const Keyword& keyword) {
        const std::string system = Upper(keyword.Value("SYSTEM"));
        if (!system.empty() && system != "R") {
            text_.Fail("rectangular coordinates", "SYSTEM=" + system, "write x, y and z of each node");
        }
        std::string_view line;
        while (NextData(line)) {
            const std::vector<std::string_view> fields = Fields(line);
            std::array<double, 3> place{};
            for (std::size_t axis = 0; axis < place.size() && axis + 1 < fields.size(); ++axis) {
                const std::optional<double> number =
                    fields[axis + 1].empty() ? std::optional<double>(0.0) : RealNumber(fields[axis + 1]);
                if (!number) {
                    text_.Fail("a coordinate", Quoted(fields[axis + 1]));
                }
                place[axis] = *number;
            }
            const std::int64_t label = Whole(fields.front(), "a node number");
            if (!mesh_.AddNode(label, place)) {
                text_.Fail("each node once", "node " + std::to_string(label) + " again", kFlattenParts);
            }
        }
    }

    void ParseElements(const Keyword& keyword) {
        const std::string type = Upper(keyword.Value("TYPE"));
        const auto [vtkType, nodes] = SolidOf(type);
        const std::string name = keyword.Value("ELSET");
        const std::ptrdiff_t set = name.empty() ? -1 : FindOrAddSet(name);
        if (vtkType == 0) {
            PassOver(type);
            return;
        }
        std::string_view line;
        while (NextData(line)) {
            std::vector<std::int64_t> numbers;
            TakeNumbers(line, numbers);
            while (numbers.size() < nodes + 1 && NextData(line)) {
                TakeNumbers(line, numbers);
            }
            if (numbers.size() != nodes + 1) {
                text_.Fail("a number and " + std::to_string(nodes) + " nodes of an element " + type,
                           std::to_string(numbers.size()) + " numbers");
            }
            AddElement(set, vtkType, numbers);
        }
    }

    /// Names differ by more than the case of their letters; -1 for one that is not there.
    std::ptrdiff_t FindSet(std::string_view name) const {
        const std::string wanted = Upper(name);
        const auto found = std::find_if(sets_.begin(), sets_.end(),
                                        [&](const ForeignSet& set) { return Upper(set.name) == wanted; });
        return found == sets_.end() ? -1 : found - sets_.begin();
    }

    std::ptrdiff_t FindOrAddSet(const std::string& name) {
        if (FindSet(name) < 0) {
            sets_.push_back({name, {}});
        }
        return FindSet(name);
    }

    void TakeNumbers(std::string_view line, std::vector<std::int64_t>& numbers) const {
        for (const std::string_view field : Fields(line)) {
            if (!field.empty()) {
                numbers.push_back(Whole(field, "a node or element number"));
            }
        }
    }

    void AddElement(std::ptrdiff_t set, int vtkType, const std::vector<std::int64_t>& numbers) {
        const auto cell = static_cast<std::int64_t>(mesh_.Elements());
        if (!mesh_.AddElement(numbers[0], vtkType, {numbers.begin() + 1, numbers.end()})) {
            text_.Fail("each element once", "element " + std::to_string(numbers[0]) + " again",
                       kFlattenParts);
        }
        definedIn_.push_back(set);
        if (set >= 0) {
            sets_[static_cast<std::size_t>(set)].cells.push_back(cell);
        }
    }

    /// Counts the elements of a type without volume; every other type is refused, with its number.
    void PassOver(const std::string& type) {
        std::string_view line;
        std::int64_t count = 0;
        bool begins = true;
        while (NextData(line)) {
            if (begins) {
                ++count;
                flat_.insert(Whole(Fields(line).front(), "an element number"));
            }
            begins = line.back() != ',';
        }
        const bool isFlat =
            std::any_of(kFlatFamilies.begin(), kFlatFamilies.end(),
                        [&](std::string_view family) { return type.compare(0, family.size(), family) == 0; });
        if (!isFlat) {
            text_.Fail("solid elements such as C3D4, C3D6, C3D8, C3D10 or DC3D8",
                       std::to_string(count) + " of type " + Quoted(type),
                       "mesh the part with solid elements, or leave these out");
        }
        leftOut_[type] += count;
    }

    void ParseSet(const Keyword& keyword) {
        const std::string name = keyword.Value("ELSET");
        if (name.empty()) {
            text_.Fail("ELSET=NAME", "no name of the set", "name it");
        }
        const bool isRange = keyword.parameters.count("GENERATE") == 1;
        const std::ptrdiff_t set = FindOrAddSet(name);
        redefined_ = redefined_ || std::find(definedIn_.begin(), definedIn_.end(), set) != definedIn_.end();
        std::vector<std::int64_t> cells;
        std::string_view line;
        while (NextData(line)) {
            if (isRange) {
                AddRange(line, cells);
            } else {
                AddMembers(line, cells);
            }
        }
        std::vector<std::int64_t>& own = sets_[static_cast<std::size_t>(set)].cells;
        own.insert(own.end(), cells.begin(), cells.end());
    }

    /// Numbers of elements and names of sets, which the name of an instance and a point may precede.
    void AddMembers(std::string_view line, std::vector<std::int64_t>& cells) const {
        for (const std::string_view field : Fields(line)) {
            const std::string_view member = field.substr(field.rfind('.') + 1);
            const std::optional<std::int64_t> label = WholeNumber(member);
            const std::ptrdiff_t other = label ? -1 : FindSet(Unquoted(member));
            if (label) {
                AddCell(*label, cells);
            } else if (other >= 0) {
                const std::vector<std::int64_t>& more = sets_[static_cast<std::size_t>(other)].cells;
                cells.insert(cells.end(), more.begin(), more.end());
            } else if (!member.empty()) {
                text_.Fail("an element number or a set that is defined above", Quoted(member));
            }
        }
    }

    void AddCell(std::int64_t label, std::vector<std::int64_t>& cells) const {
        const std::int64_t cell = mesh_.FindElement(label);
        if (cell >= 0) {
            cells.push_back(cell);
        } else if (flat_.count(label) == 0) {
            text_.Fail("the number of an element that is defined above", std::to_string(label));
        }
    }

    /// First, last and step; numbers in between that no element has are passed over.
    void AddRange(std::string_view line, std::vector<std::int64_t>& cells) const {
        const std::vector<std::string_view> fields = Fields(line);
        const auto at = [&](std::size_t place, std::int64_t other) {
            return place < fields.size() && !fields[place].empty()
                       ? Whole(fields[place], "first, last and step of a range")
                       : other;
        };
        const std::int64_t first = at(0, 0);
        const std::int64_t last = at(1, first);
        const std::int64_t step = at(2, 1);
        if (first < 1 || last < first || step < 1) {
            text_.Fail("first and last of a range, from 1 on, and a step", Quoted(line));
        }
        mesh_.ForEachElement(first, last, [&](std::int64_t label, std::int64_t cell) {
            if ((label - first) % step == 0) {
                cells.push_back(cell);
            }
        });
    }

    /// Whether the names under which the elements are defined tell them apart: each has one, and no other set
    /// has the name of such a one.
    bool AreBlocks() const {
        const bool allNamed =
            std::all_of(definedIn_.begin(), definedIn_.end(), [](std::ptrdiff_t set) { return set >= 0; });
        const bool several = std::any_of(definedIn_.begin(), definedIn_.end(),
                                         [&](std::ptrdiff_t set) { return set != definedIn_.front(); });
        return allNamed && several && !redefined_;
    }

    /// Makes blocks of the sets under which elements are defined; the others follow them.
    void AddBlocks(ForeignSnapshot& mesh) {
        std::vector<int> blockOf(sets_.size(), -1);
        ForeignArray ids{kBlockArray, 1, true, {}};
        for (const std::ptrdiff_t set : definedIn_) {
            int& block = blockOf[static_cast<std::size_t>(set)];
            if (block < 0) {
                block = static_cast<int>(mesh.blocks.size());
                mesh.blocks.push_back(sets_[static_cast<std::size_t>(set)].name);
            }
            ids.values.push_back(block);
        }
        for (std::size_t set = 0; set < sets_.size(); ++set) {
            if (blockOf[set] >= 0) {
                sets_[set].cells.clear();
            }
        }
        mesh.arrays.push_back(std::move(ids));
    }

    std::unique_ptr<ForeignSeries> Series() {
        if (mesh_.Elements() == 0) {
            throw ForeignProblem(text_.File() +
                                 " holds no solid elements; give an input file with *NODE and *ELEMENT");
        }
        ForeignSnapshot mesh = mesh_.Take(text_.File());
        if (AreBlocks()) {
            AddBlocks(mesh);
        }
        for (ForeignSet& set : sets_) {
            std::sort(set.cells.begin(), set.cells.end());
            set.cells.erase(std::unique(set.cells.begin(), set.cells.end()), set.cells.end());
            if (!set.cells.empty()) {
                mesh.sets.push_back(std::move(set));
            }
        }
        for (const auto& [type, count] : leftOut_) {
            mesh.warnings.push_back(text_.File() + ": " + std::to_string(count) + " elements of type " +
                                    type + ", which have no volume, are left out");
        }
        return HoldSeries(std::move(mesh), {});
    }

    ForeignText text_;
    LabelledMesh mesh_;
    std::vector<ForeignSet> sets_;
    std::vector<std::ptrdiff_t> definedIn_;        ///< set under which each cell is defined; -1: none
    bool redefined_ = false;                       ///< one of these got further members
    std::set<std::int64_t> flat_;                  ///< numbers of the elements without volume
    std::map<std::string, std::int64_t> leftOut_;  ///< these by type
    int instances_ = 0;
};

}  // namespace

std::unique_ptr<ForeignSeries> OpenInpMesh(const std::string& file) {
    return InpParser(file).Parse();
}

}  // namespace qnl::interop
