#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hdf5/Hdf5.h"

/// The datasets of a mesh file as they stand in it, for tests that spoil one of them.
struct RawMeshFile {
    std::string type = "UnstructuredGrid";
    std::vector<std::int32_t> version{1, 0};
    std::vector<std::int64_t> pointCounts{4};
    std::vector<std::int64_t> cellCounts{1};
    std::vector<std::int64_t> cornerCounts{4};
    std::vector<double> points{0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    std::uint64_t columns = 3;
    std::vector<std::int64_t> connectivity{0, 1, 2, 3};
    std::vector<std::int64_t> offsets{0, 4};
    std::vector<std::int32_t> types{10};
    std::optional<std::vector<std::int64_t>> labels;
    std::optional<std::vector<std::int32_t>> regions;
    std::optional<std::vector<double>> tolerance;

    void Write(const std::string& path) const {
        qnl::hdf5::OutputFile file(path);
        file.CreateGroup("/VTKHDF");
        file.WriteArray("/VTKHDF", "Version", version);
        file.WriteText("/VTKHDF", "Type", type);
        WriteList(file, "/VTKHDF/NumberOfPoints", pointCounts);
        WriteList(file, "/VTKHDF/NumberOfCells", cellCounts);
        WriteList(file, "/VTKHDF/NumberOfConnectivityIds", cornerCounts);
        file.Write("/VTKHDF/Points", points.data(), {points.size() / columns, columns});
        WriteList(file, "/VTKHDF/Connectivity", connectivity);
        WriteList(file, "/VTKHDF/Offsets", offsets);
        WriteList(file, "/VTKHDF/Types", types);
        WriteGroup(file, "/VTKHDF/PointData", "NodeId", labels);
        WriteGroup(file, "/VTKHDF/CellData", "Region", regions);
        WriteGroup(file, "/VTKHDF/FieldData", "GeomTolerance", tolerance);
        file.Close();
    }

private:
    template <typename T>
    static void WriteList(qnl::hdf5::OutputFile& file, const std::string& name,
                          const std::vector<T>& values) {
        file.Write(name, values.data(), {values.size()});
    }
    template <typename T>
    static void WriteGroup(qnl::hdf5::OutputFile& file, const std::string& group, const std::string& name,
                           const std::optional<std::vector<T>>& values) {
        file.CreateGroup(group);
        if (values) {
            WriteList(file, group + "/" + name, *values);
        }
    }
};
