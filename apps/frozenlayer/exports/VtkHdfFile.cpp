#include "exports/VtkHdfFile.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <utility>

#include "hdf5/Hdf5.h"
#include "platform/Faults.h"
#include "platform/HostFiles.h"
#include "project/ProjectPaths.h"
#include "text/Deflate.h"
#include "text/Json.h"

namespace qnl::exports {

namespace {

/// The group of a VTKHDF file, and how its arrays are stored.
class HdfGroup {
public:
    HdfGroup(const std::string& path, Storage storage)
        : file_(path), deflate_(storage == Storage::Compressed ? text::kDeflateLevel : 0) {
        file_.CreateGroup("/VTKHDF");
        file_.WriteArray<std::int32_t>("/VTKHDF", "Version", {1, 0});
        file_.WriteText("/VTKHDF", "Type", "UnstructuredGrid", hdf5::Charset::Ascii);
        for (const char* group : {"/VTKHDF/PointData", "/VTKHDF/CellData", "/VTKHDF/FieldData"}) {
            file_.CreateGroup(group);
        }
    }
    template <typename Value>
    void Add(const std::string& name, const std::vector<Value>& values, std::size_t components = 1) {
        const std::uint64_t rows = values.size() / components;
        file_.Write(
            "/VTKHDF/" + name, values.data(),
            components == 1 ? std::vector<std::uint64_t>{rows} : std::vector<std::uint64_t>{rows, components},
            deflate_);
    }
    template <typename Value>
    void AddNumber(const std::string& name, Value value) {
        file_.Write("/VTKHDF/" + name, &value, {1});
    }
    /// False, with a fault recorded, when the file cannot be put in place.
    bool Close() {
        try {
            file_.Close();
        } catch (const hdf5::Hdf5Error&) {
            return false;
        }
        return true;
    }

private:
    hdf5::OutputFile file_;
    unsigned deflate_;
};

void AddSurface(const ExportSurface& surface, HdfGroup& group) {
    group.AddNumber("NumberOfPoints", static_cast<std::int64_t>(surface.points.size()));
    group.AddNumber("NumberOfCells", static_cast<std::int64_t>(surface.ends.size()));
    group.AddNumber("NumberOfConnectivityIds", static_cast<std::int64_t>(surface.corners.size()));
    std::vector<float> coordinates;
    for (const auto& point : surface.points) {
        coordinates.insert(coordinates.end(), point.begin(), point.end());
    }
    std::vector<std::int64_t> offsets{0};
    offsets.insert(offsets.end(), surface.ends.begin(), surface.ends.end());
    group.Add("Points", coordinates, 3);
    group.Add("Connectivity", surface.corners);
    group.Add("Offsets", offsets);
    group.Add("Types", VtkCellTypes(surface));
    group.Add("PointData/Node label", surface.labels);
}

void AddFrame(const ExportFrame& frame, HdfGroup& group) {
    for (const ExportArray& array : frame.arrays) {
        std::visit(
            [&](const auto& values) {
                group.Add("PointData/" + array.name, values, static_cast<std::size_t>(array.components));
            },
            array.values);
    }
    for (const ExportNumber& number : frame.numbers) {
        group.AddNumber("FieldData/" + number.name, number.value);
    }
}

}  // namespace

bool WriteHdfSurface(const std::string& path, const ExportSurface& surface, const ExportFrame& frame,
                     Storage storage) {
    try {
        HdfGroup group(path, storage);
        AddSurface(surface, group);
        AddFrame(frame, group);
        return group.Close();
    } catch (const hdf5::Hdf5Error& error) {
        RecordFault({project::NativePath(path), error.Object(), "an array that can be written",
                     error.Reason(), "free memory and run again"});
        return false;
    }
}

bool WriteFileSeries(const std::string& path, const std::vector<CollectionEntry>& entries) {
    text::Json files = text::Json::array();
    for (const CollectionEntry& entry : entries) {
        files.push_back({{"name", entry.file}, {"time", entry.time}});
    }
    const text::Json list{{"file-series-version", "1.0"}, {"files", std::move(files)}};
    ReplacedFile file(path, "wb");
    file.Append(text::JsonText(list));
    return file.Commit();
}

}  // namespace qnl::exports
