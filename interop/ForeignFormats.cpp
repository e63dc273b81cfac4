#include "interop/ForeignFormats.h"

#include <algorithm>
#include <array>

#include "interop/ForeignFile.h"
#include "interop/ForeignSeries.h"
#include "interop/FrdSeries.h"
#include "interop/InpMesh.h"
#include "interop/MshMesh.h"
#include "interop/TableSeries.h"
#include "interop/VtkSeries.h"

namespace qnl::interop {

namespace {

/// A format with a reader of our own.
struct OwnFormat {
    const char* extension;
    std::unique_ptr<ForeignSeries> (*open)(const std::string& file);
};

constexpr std::array<OwnFormat, 3> kOwnFormats{{
    {".frd", OpenFrdSeries},
    {".inp", OpenInpMesh},
    {".msh", OpenMshMesh},
}};

const OwnFormat* FindOwnFormat(const std::string& file) {
    const std::string extension = ExtensionOf(file);
    const auto* format = std::find_if(kOwnFormats.begin(), kOwnFormats.end(),
                                      [&](const OwnFormat& row) { return extension == row.extension; });
    return format == kOwnFormats.end() ? nullptr : format;
}

/// Several files are one time each.
class ListedSeries : public ForeignSeries {
public:
    explicit ListedSeries(const std::vector<std::string>& files) {
        for (const std::string& file : files) {
            const OwnFormat* format = FindOwnFormat(file);
            if (format == nullptr) {
                throw ForeignProblem(file + " is of another format than " + files.front() +
                                     "; give files of one format");
            }
            series_.push_back(format->open(file));
        }
    }

    int Count() const override {
        int count = 0;
        for (const auto& series : series_) {
            count += series->Count();
        }
        return count;
    }
    bool IsSi() const override { return false; }

    ForeignSnapshot Read(int index) override {
        auto series = series_.begin();
        for (; index >= (*series)->Count(); ++series) {
            index -= (*series)->Count();
        }
        return (*series)->Read(index);
    }

private:
    std::vector<std::unique_ptr<ForeignSeries>> series_;
};

}  // namespace

void RaiseUnknownFormat(const std::string& file) {
    throw ForeignProblem(file +
                         " is of no known format; known are .vtu, .pvtu, .pvd, .vtm, .vts, .vtr, .vti, .vtk, "
                         ".hdf, .vtkhdf, .case, .cgns, .exo, .e, .ex2, .foam and .frd, and a Gmsh mesh "
                         "becomes one by \"gmsh mesh.msh -save -o mesh.vtk\"");
}

namespace {

std::unique_ptr<ForeignSeries> OpenFiles(const std::vector<std::string>& files) {
    if (!files.empty() && FindOwnFormat(files.front()) != nullptr) {
        return std::make_unique<ListedSeries>(files);
    }
    return OpenVtkSeries(files);
}

}  // namespace

std::unique_ptr<ForeignSeries> OpenForeignSeries(const std::vector<std::string>& files,
                                                 const std::string& values) {
    std::unique_ptr<ForeignSeries> series = OpenFiles(files);
    return values.empty() ? std::move(series) : JoinTable(*series, values);
}

bool IsForeignFormat(const std::string& file) {
    return FindOwnFormat(file) != nullptr || IsVtkFormat(file);
}

}  // namespace qnl::interop
