#include "exports/VtkXmlFile.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <variant>

#include "platform/HostFiles.h"
#include "text/Deflate.h"
#include "text/TextFile.h"

namespace qnl::exports {

namespace {

constexpr const char* kByteOrder = "LittleEndian";

bool IsLittleEndian() {
    const std::uint16_t probe = 1;
    unsigned char first = 0;
    std::memcpy(&first, &probe, 1);
    return first == 1;
}

template <typename Value>
struct TypeName;
template <>
struct TypeName<float> {
    static constexpr const char* kText = "Float32";
};
template <>
struct TypeName<int> {
    static constexpr const char* kText = "Int32";
};
template <>
struct TypeName<std::int64_t> {
    static constexpr const char* kText = "Int64";
};
template <>
struct TypeName<std::uint8_t> {
    static constexpr const char* kText = "UInt8";
};

/// The arrays behind the XML head: each as its length in bytes and its bytes, or, compressed, as the number
/// of its blocks, their size, the size of the last when it is smaller (else 0), their compressed sizes and
/// the blocks.
class Appendix {
public:
    explicit Appendix(Storage storage) : storage_(storage) {}

    /// Takes an array up and gives the element that refers to it.
    template <typename Value>
    std::string Add(const std::string& name, int components, const std::vector<Value>& values) {
        std::string element = std::string("<DataArray type=\"") + TypeName<Value>::kText + "\" Name=\"" +
                              text::XmlText(name) + "\" NumberOfComponents=\"" + std::to_string(components) +
                              "\" format=\"appended\" offset=\"" + std::to_string(bytes_.size()) + "\"/>\n";
        const std::uint64_t length = values.size() * sizeof(Value);
        if (storage_ == Storage::Compressed) {
            PutCompressed(reinterpret_cast<const unsigned char*>(values.data()), length);
        } else {
            Put(&length, sizeof length);
            Put(values.data(), length);
        }
        return element;
    }
    const std::string& Bytes() const { return bytes_; }

private:
    void Put(const void* data, std::size_t count) {
        const std::size_t end = bytes_.size();
        bytes_.resize(end + count);
        if (count > 0) {
            std::memcpy(&bytes_[end], data, count);
        }
    }

    void PutCompressed(const unsigned char* data, std::uint64_t length) {
        constexpr std::uint64_t kBlock = std::uint64_t{1} << 18;
        std::vector<std::uint64_t> head{(length + kBlock - 1) / kBlock, kBlock, length % kBlock};
        std::vector<unsigned char> blocks;
        for (std::uint64_t begin = 0; begin < length; begin += kBlock) {
            const std::vector<unsigned char> packed =
                text::Deflate(data + begin, std::min(kBlock, length - begin));
            head.push_back(packed.size());
            blocks.insert(blocks.end(), packed.begin(), packed.end());
        }
        Put(head.data(), head.size() * sizeof head.front());
        Put(blocks.data(), blocks.size());
    }

    Storage storage_;
    std::string bytes_;
};

std::string PointData(const ExportSurface& surface, const ExportFrame& frame, Appendix& appendix) {
    std::string text = "<PointData>\n";
    if (!surface.labels.empty()) {
        text += appendix.Add("Node label", 1, surface.labels);
    }
    for (const ExportArray& array : frame.arrays) {
        text +=
            std::visit([&](const auto& values) { return appendix.Add(array.name, array.components, values); },
                       array.values);
    }
    return text + "</PointData>\n";
}

std::string Points(const ExportSurface& surface, Appendix& appendix) {
    std::vector<float> coordinates;
    for (const auto& point : surface.points) {
        coordinates.insert(coordinates.end(), point.begin(), point.end());
    }
    return "<Points>\n" + appendix.Add("Points", 3, coordinates) + "</Points>\n";
}

std::string Cells(const char* element, const ExportSurface& surface, Appendix& appendix, bool withTypes) {
    std::string text = std::string("<") + element + ">\n";
    text += appendix.Add("connectivity", 1, surface.corners);
    text += appendix.Add("offsets", 1, surface.ends);
    if (withTypes) {
        text += appendix.Add("types", 1, VtkCellTypes(surface));
    }
    return text + "</" + element + ">\n";
}

std::string FieldData(const ExportFrame& frame) {
    std::string text = "<FieldData>\n";
    for (const ExportNumber& number : frame.numbers) {
        text += "<DataArray type=\"Float64\" Name=\"" + text::XmlText(number.name) +
                "\" NumberOfTuples=\"1\" format=\"ascii\">" + text::ExactText(number.value) +
                "</DataArray>\n";
    }
    return text + "</FieldData>\n";
}

std::string Head(const char* type, const char* version, Storage storage) {
    return std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VTKFile type=\"") + type +
           "\" version=\"" + version + "\" byte_order=\"" + (IsLittleEndian() ? kByteOrder : "BigEndian") +
           "\" header_type=\"UInt64\"" +
           (storage == Storage::Compressed ? " compressor=\"vtkZLibDataCompressor\"" : "") + ">\n";
}

/// How a kind of file names its parts, and what holds its cells.
struct Layout {
    const char* type;
    const char* cellCount;
    const char* cells;
    bool withTypes;
};
constexpr Layout kPolygons{"PolyData", "NumberOfPolys", "Polys", false};
constexpr Layout kPolylines{"PolyData", "NumberOfLines", "Lines", false};
constexpr Layout kGrid{"UnstructuredGrid", "NumberOfCells", "Cells", true};

bool WriteFile(const std::string& path, const Layout& layout, const ExportSurface& surface,
               const ExportFrame& frame, Storage storage) {
    Appendix appendix(storage);
    std::string text = Head(layout.type, "1.0", storage) + "<" + layout.type + ">\n" + FieldData(frame);
    text += "<Piece NumberOfPoints=\"" + std::to_string(surface.points.size()) + "\" " + layout.cellCount +
            "=\"" + std::to_string(surface.ends.size()) + "\">\n";
    text += PointData(surface, frame, appendix);
    text += Points(surface, appendix);
    text += Cells(layout.cells, surface, appendix, layout.withTypes);
    text += std::string("</Piece>\n</") + layout.type + ">\n<AppendedData encoding=\"raw\">\n_";
    ReplacedFile file(path, "wb");
    file.Append(text);
    file.Append(appendix.Bytes());
    file.Append("\n</AppendedData>\n</VTKFile>\n");
    return file.Commit();
}

}  // namespace

bool WriteVtkSurface(const std::string& path, VtkKind kind, const ExportSurface& surface,
                     const ExportFrame& frame, Storage storage) {
    return WriteFile(path, kind == VtkKind::PolyData ? kPolygons : kGrid, surface, frame, storage);
}

bool WriteVtkLines(const std::string& path, const ExportSurface& lines, const ExportFrame& frame) {
    return WriteFile(path, kPolylines, lines, frame, Storage::Uncompressed);
}

bool WriteCollection(const std::string& path, const std::vector<CollectionEntry>& entries) {
    ReplacedFile file(path, "wb");
    file.Append(Head("Collection", "0.1", Storage::Uncompressed) + "<Collection>\n");
    for (const CollectionEntry& entry : entries) {
        file.Append("<DataSet timestep=\"" + text::ExactText(entry.time) +
                    "\" group=\"\" part=\"0\" file=\"" + text::XmlText(entry.file) + "\"/>\n");
    }
    file.Append("</Collection>\n</VTKFile>\n");
    return file.Commit();
}

}  // namespace qnl::exports
