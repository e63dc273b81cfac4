#include "interop/FrdSeries.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "interop/ForeignText.h"
#include "interop/HeldSeries.h"
#include "interop/LabelledMesh.h"

namespace qnl::interop {

namespace {

/// Element types of the format, by number: the VTK type with the same corners, and all nodes.
struct ElementType {
    std::int64_t number;
    int vtkType;
    std::size_t nodes;
};

constexpr std::array<ElementType, 12> kElementTypes{{
    {1, 12, 8},
    {2, 13, 6},
    {3, 10, 4},
    {4, 25, 20},
    {5, 26, 15},
    {6, 24, 10},
    {7, 5, 3},
    {8, 22, 6},
    {9, 9, 4},
    {10, 23, 8},
    {11, 3, 2},
    {12, 21, 3},
}};

/// How the records of a block are written.
enum class Form { Short, Long, BinarySingle, BinaryDouble };
constexpr std::int64_t kForms = 4;

bool IsBinary(Form form) {
    return form == Form::BinarySingle || form == Form::BinaryDouble;
}

/// Columns of a node or element number in a text record.
std::size_t LabelWidth(Form form) {
    return form == Form::Short ? 5 : 10;
}

/// What the first line of a block says.
struct BlockHead {
    std::string what;                   ///< of its records, in words
    std::optional<std::int64_t> count;  ///< of its records
    Form form;
};

/// The head of the results at one output time.
struct StepHead {
    std::int64_t step;
    double seconds;
    BlockHead block;
    bool isTime;  ///< not a frequency
};

/// Number of a little-endian record; T is std::int32_t, float or double.
template <typename T>
T Stored(std::string_view bytes, std::size_t place) {
    T number{};
    std::memcpy(&number, bytes.data() + place, sizeof(T));
    return number;
}

constexpr std::size_t kIntBytes = 4;
constexpr std::size_t kValueWidth = 12;
constexpr std::size_t kValuesInLine = 6;

class FrdParser {
public:
    explicit FrdParser(const std::string& file) : text_(file) {}

    std::unique_ptr<ForeignSeries> Parse() {
        if (text_.Need("the head 1C of an .frd file").substr(0, 6) != "    1C") {
            text_.Fail("the head 1C of an .frd file", "another text");
        }
        while (ParseBlock(text_.Need("the end mark 9999"))) {
        }
        return Series();
    }

private:
    /// False for the end mark.
    bool ParseBlock(std::string_view line) {
        const std::string_view key = Columns(line, 0, 5);
        const char code = line.size() > 5 ? line[5] : ' ';
        if (key == "9999") {
            return false;
        }
        if (key == "2" && code == 'C') {
            ParseNodes(HeadOf(line, "node"));
        } else if (key == "3" && code == 'C') {
            ParseElements(HeadOf(line, "element"));
        } else if (key == "100" && code == 'C') {
            ParseResult(StepOf(line));
        } else if (key != "1") {
            text_.Fail("a block 1, 2C, 3C or 100C, or the end mark 9999", Quoted(line));
        }
        return true;
    }

    std::int64_t Whole(std::string_view field, const char* what) const {
        const std::optional<std::int64_t> number = WholeNumber(field);
        if (!number) {
            text_.Fail(what, Quoted(field));
        }
        return *number;
    }

    double Real(std::string_view field, const char* what) const {
        const std::optional<double> number = RealNumber(field);
        if (!number) {
            text_.Fail(what, Quoted(field));
        }
        return *number;
    }

    /// `form` is a field of the head; nothing there is the short form.
    BlockHead MakeHead(const char* what, std::string_view count, std::string_view form) const {
        const std::int64_t number = form.empty() ? 0 : Whole(form, "a format from 0 to 3");
        if (number < 0 || number >= kForms) {
            text_.Fail("a format from 0 to 3", std::to_string(number));
        }
        BlockHead head{what, std::nullopt, static_cast<Form>(number)};
        if (!count.empty() || IsBinary(head.form)) {
            head.count = Whole(count, "the number of records");
        }
        if (head.count && *head.count < 0) {
            text_.Fail("the number of records", std::to_string(*head.count));
        }
        return head;
    }

    BlockHead HeadOf(std::string_view line, const char* what) const {
        return MakeHead(what, Columns(line, 24, 12), Columns(line, 73, 2));
    }

    StepHead StepOf(std::string_view line) const {
        constexpr std::string_view kFrequency = "2";
        return {Whole(Columns(line, 58, 5), "the number of a step"),
                Real(Columns(line, 12, 12), "a time in s"),
                MakeHead("result", Columns(line, 24, 12), Columns(line, 73, 2)),
                Columns(line, 56, 2) != kFrequency};
    }

    void CheckCount(const BlockHead& head, std::size_t found) const {
        if (head.count && static_cast<std::uint64_t>(*head.count) != found) {
            text_.Fail(
                std::to_string(*head.count) + " " + head.what + " records, as the head of the block says",
                std::to_string(found));
        }
    }

    /// Calls `take` with each line of a block up to its end mark.
    template <typename Take>
    void ForEachLine(const Take& take) {
        for (;;) {
            const std::string_view line = text_.Need("the end -3 of a block");
            const std::string_view key = Columns(line, 1, 2);
            if (key == "-3") {
                return;
            }
            if (key != "-1" && key != "-2") {
                text_.Fail("a record -1 or -2, or the end -3 of a block", Quoted(line));
            }
            take(line, key == "-1");
        }
    }

    void ParseNodes(const BlockHead& head) {
        if (mesh_.Nodes() > 0) {
            text_.Fail("one mesh", "a second block of nodes", "export one mesh with its results");
        }
        if (IsBinary(head.form)) {
            ParseBinaryNodes(head);
            return;
        }
        const std::size_t width = LabelWidth(head.form);
        ForEachLine([&](std::string_view line, bool) {
            std::array<double, 3> place{};
            for (std::size_t axis = 0; axis < place.size(); ++axis) {
                place[axis] =
                    Real(Columns(line, 3 + width + axis * kValueWidth, kValueWidth), "a coordinate");
            }
            AddNode(Whole(Columns(line, 3, width), "a node number"), place);
        });
        CheckCount(head, mesh_.Nodes());
    }

    void AddNode(std::int64_t label, const std::array<double, 3>& place) {
        if (!mesh_.AddNode(label, place)) {
            text_.Fail("each node once", "node " + std::to_string(label) + " again");
        }
    }

    void ParseBinaryNodes(const BlockHead& head) {
        const std::size_t size = head.form == Form::BinaryDouble ? sizeof(double) : sizeof(float);
        for (std::int64_t i = 0; i < *head.count; ++i) {
            const std::string_view record = text_.NeedBytes(kIntBytes + 3 * size, "all nodes of the block");
            std::array<double, 3> place{};
            for (std::size_t axis = 0; axis < place.size(); ++axis) {
                const std::size_t at = kIntBytes + axis * size;
                place[axis] = size == sizeof(double) ? Stored<double>(record, at)
                                                     : static_cast<double>(Stored<float>(record, at));
            }
            AddNode(Stored<std::int32_t>(record, 0), place);
        }
        singlePrecision_ = size == sizeof(float);
    }

    const ElementType& TypeOf(std::int64_t number, std::int64_t element) const {
        const auto* type = std::find_if(kElementTypes.begin(), kElementTypes.end(),
                                        [&](const ElementType& row) { return row.number == number; });
        if (type == kElementTypes.end()) {
            text_.Fail("an element type from 1 to 12",
                       "element " + std::to_string(element) + " of type " + std::to_string(number),
                       "use tetrahedra, hexahedra and wedges");
        }
        return *type;
    }

    void AddElement(std::int64_t label, const ElementType& type, const std::vector<std::int64_t>& nodes) {
        if (!mesh_.AddElement(label, type.vtkType, nodes)) {
            text_.Fail("each element once", "element " + std::to_string(label) + " again");
        }
    }

    void ParseElements(const BlockHead& head) {
        if (mesh_.Elements() > 0) {
            text_.Fail("one mesh", "a second block of elements", "export one mesh with its results");
        }
        if (IsBinary(head.form)) {
            ParseBinaryElements(head);
            return;
        }
        ForEachLine([&](std::string_view line, bool begins) {
            if (!begins) {
                text_.Fail("an element, -1", Quoted(line));
            }
            ParseElement(line, LabelWidth(head.form));
        });
        CheckCount(head, mesh_.Elements());
    }

    /// The record -1 with number and type, and as many records -2 as its nodes take.
    void ParseElement(std::string_view line, std::size_t width) {
        const std::int64_t label = Whole(Columns(line, 3, width), "an element number");
        const ElementType& type = TypeOf(Whole(Columns(line, 3 + width, 5), "an element type"), label);
        std::vector<std::int64_t> nodes;
        while (nodes.size() < type.nodes) {
            const std::string_view list = text_.Need("the nodes of an element, -2");
            if (Columns(list, 1, 2) != "-2" || list.size() <= 3) {
                text_.Fail(std::to_string(type.nodes) + " nodes of element " + std::to_string(label),
                           std::to_string(nodes.size()));
            }
            for (std::size_t at = 3; at < list.size() && nodes.size() < type.nodes; at += width) {
                nodes.push_back(Whole(Columns(list, at, width), "a node number"));
            }
        }
        AddElement(label, type, nodes);
    }

    void ParseBinaryElements(const BlockHead& head) {
        constexpr std::size_t kHeadInts = 4;
        for (std::int64_t i = 0; i < *head.count; ++i) {
            const std::string_view start =
                text_.NeedBytes(kHeadInts * kIntBytes, "all elements of the block");
            const std::int64_t label = Stored<std::int32_t>(start, 0);
            const ElementType& type = TypeOf(Stored<std::int32_t>(start, kIntBytes), label);
            const std::string_view list = text_.NeedBytes(type.nodes * kIntBytes, "the nodes of an element");
            std::vector<std::int64_t> nodes;
            for (std::size_t n = 0; n < type.nodes; ++n) {
                nodes.push_back(Stored<std::int32_t>(list, n * kIntBytes));
            }
            AddElement(label, type, nodes);
        }
    }

    /// Values of nodes under one name, and whether there is one for each node.
    struct Field {
        ForeignArray array;
        std::vector<bool> known;
        bool isNodal = true;  ///< one set of values a node
    };

    /// The records -4 and -5: name, components, and those of them that are computed and not stored.
    Field ParseFieldHead() {
        constexpr std::int64_t kMostComponents = 64;
        constexpr std::string_view kNodal = "1";
        const std::string_view head = text_.Need("a result -4");
        if (Columns(head, 1, 2) != "-4") {
            text_.Fail("a result -4", Quoted(head));
        }
        Field field;
        field.array.name = std::string(Columns(head, 5, 8));
        field.isNodal = Columns(head, 18, 5) == kNodal;
        const std::int64_t components = Whole(Columns(head, 13, 5), "the number of components");
        if (components < 1 || components > kMostComponents) {
            text_.Fail("1 to 64 components", std::to_string(components));
        }
        field.array.components = 0;
        for (std::int64_t c = 0; c < components; ++c) {
            const std::string_view component = text_.Need("a component -5");
            if (Columns(component, 1, 2) != "-5") {
                text_.Fail("a component -5", Quoted(component));
            }
            const std::string_view computed = Columns(component, 33, 5);
            field.array.components += computed.empty() || computed == "0" ? 1 : 0;
        }
        return field;
    }

    void ParseResult(const StepHead& head) {
        Field field = ParseFieldHead();
        const auto width = static_cast<std::size_t>(field.array.components);
        field.array.values.assign(mesh_.Nodes() * width, std::numeric_limits<double>::quiet_NaN());
        field.known.assign(mesh_.Nodes(), false);
        if (IsBinary(head.block.form)) {
            ParseBinaryValues(head.block, field);
        } else if (field.isNodal) {
            ParseValues(head.block, field);
        } else {
            ForEachLine([](std::string_view, bool) {});
        }
        if (field.isNodal && head.isTime) {
            Keep(head, std::move(field.array));
        }
    }

    double* PlaceOf(Field& field, std::int64_t label) const {
        const std::int64_t node = mesh_.FindNode(label);
        if (node < 0) {
            text_.Fail("a node of the mesh", "node " + std::to_string(label));
        }
        const auto index = static_cast<std::size_t>(node);
        if (field.known[index]) {
            text_.Fail("each node once", "node " + std::to_string(label) + " again");
        }
        field.known[index] = true;
        return field.array.values.data() + index * static_cast<std::size_t>(field.array.components);
    }

    void ParseValues(const BlockHead& head, Field& field) {
        const std::size_t width = LabelWidth(head.form);
        const auto components = static_cast<std::size_t>(field.array.components);
        double* values = nullptr;
        std::size_t taken = components;
        std::size_t records = 0;
        const auto checkWhole = [&] {
            if (taken < components) {
                text_.Fail(std::to_string(components) + " values of a node", std::to_string(taken));
            }
        };
        ForEachLine([&](std::string_view line, bool begins) {
            if (begins) {
                checkWhole();
                values = PlaceOf(field, Whole(Columns(line, 3, width), "a node number"));
                taken = 0;
                ++records;
            }
            for (std::size_t c = 0; c < kValuesInLine && taken < components; ++c) {
                values[taken++] = Real(Columns(line, 3 + width + c * kValueWidth, kValueWidth), "a value");
            }
        });
        checkWhole();
        CheckCount(head, records);
    }

    void ParseBinaryValues(const BlockHead& head, Field& field) {
        const std::size_t size = head.form == Form::BinaryDouble ? sizeof(double) : sizeof(float);
        const auto components = static_cast<std::size_t>(field.array.components);
        for (std::int64_t i = 0; i < *head.count; ++i) {
            const std::string_view record =
                text_.NeedBytes(kIntBytes + components * size, "the values of all nodes");
            double* values = field.isNodal ? PlaceOf(field, Stored<std::int32_t>(record, 0)) : nullptr;
            for (std::size_t c = 0; values != nullptr && c < components; ++c) {
                const std::size_t at = kIntBytes + c * size;
                values[c] = size == sizeof(double) ? Stored<double>(record, at)
                                                   : static_cast<double>(Stored<float>(record, at));
            }
        }
    }

    void Keep(const StepHead& head, ForeignArray array) {
        if (steps_.empty() || step_ != head.step) {
            steps_.push_back({head.seconds, {}});
            step_ = head.step;
        }
        std::vector<ForeignArray>& arrays = steps_.back().arrays;
        if (std::any_of(arrays.begin(), arrays.end(),
                        [&](const ForeignArray& other) { return other.name == array.name; })) {
            text_.Fail("each result once in a step", Quoted(array.name) + " again");
        }
        arrays.push_back(std::move(array));
    }

    std::unique_ptr<ForeignSeries> Series() {
        ForeignSnapshot mesh = mesh_.Take(text_.File());
        mesh.mesh.singlePrecision = singlePrecision_;
        if (mesh.mesh.cellTypes.empty()) {
            throw ForeignProblem(text_.File() + " holds no elements; export the mesh with its results");
        }
        return HoldSeries(std::move(mesh), std::move(steps_));
    }

    ForeignText text_;
    LabelledMesh mesh_;
    bool singlePrecision_ = false;
    std::vector<TimedArrays> steps_;
    std::int64_t step_ = 0;  ///< number of the last of them
};

}  // namespace

std::unique_ptr<ForeignSeries> OpenFrdSeries(const std::string& file) {
    return FrdParser(file).Parse();
}

}  // namespace qnl::interop
