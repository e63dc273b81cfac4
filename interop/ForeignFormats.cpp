#include "interop/ForeignFormats.h"

#include <algorithm>
#include <array>
#include <new>

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

namespace {

/// Ways by which meshes get in together with their temperatures; FILE stands for the file's name without
/// extension.
constexpr const char* kByMeshio =
    "one time becomes a .vtu with its temperatures by python3 -c \"import meshio; m = meshio.read('FILE"
    "EXTENSION'); m.field_data.clear(); m.write('FILE.vtu')\", a series by ParaView: Save Data as .pvd with "
    "Write Time Steps";
constexpr const char* kByGmsh =
    "it holds no temperatures: convert the mesh with \"gmsh FILEEXTENSION -save -o FILE.msh\" and give the "
    "temperatures of its nodes as a table, frozenlayer import FILE.msh --values TABLE.csv";
constexpr const char* kByTable =
    "export the mesh as .inp and the temperatures of its nodes as a table with a column \"node\" and columns "
    "like temperature@0.5, then frozenlayer import FILE.inp --values TABLE.csv";

/// Formats that are known and not read.
struct OtherFormat {
    const char* extension;
    const char* name;
    const char* remedy;
};
constexpr std::array<OtherFormat, 13> kOtherFormats{{
    {".xdmf", "XDMF", kByMeshio},
    {".xmf", "XDMF", kByMeshio},
    {".med", "MED", kByMeshio},
    {".rmed", "MED", kByMeshio},
    {".unv", "a universal file", kByGmsh},
    {".bdf", "a Nastran mesh", kByGmsh},
    {".nas", "a Nastran mesh", kByGmsh},
    {".stl", "a surface without solid cells", "give a solid mesh with the temperatures of its nodes"},
    {".odb", "an Abaqus database", kByTable},
    {".fil", "an Abaqus result file", kByTable},
    {".rst", "an Ansys result file", kByTable},
    {".rth", "an Ansys result file", kByTable},
    {".cdb", "an Ansys mesh", kByTable},
}};

std::string Replaced(std::string text, const std::string& word, const std::string& by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size())) {
        text.replace(at, word.size(), by);
    }
    return text;
}

}  // namespace

void RaiseUnknownFormat(const std::string& file) {
    const std::string extension = ExtensionOf(file);
    for (const OtherFormat& format : kOtherFormats) {
        if (extension == format.extension) {
            const std::string stem = file.substr(0, file.size() - extension.size());
            throw ForeignProblem(file + " is " + format.name + ", which is not read; " +
                                 Replaced(Replaced(format.remedy, "EXTENSION", extension), "FILE", stem));
        }
    }
    throw ForeignProblem(
        file +
        " is of no known format; known are .vtu, .pvtu, .pvd, .vtm, .vts, .vtr, .vti, .vtk, "
        ".hdf, .vtkhdf, .case, .cgns, .exo, .e, .ex2, .foam and .frd, and .inp and .msh with "
        "a table of temperatures, --values; another program's export to one of them helps");
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
    try {
        std::unique_ptr<ForeignSeries> series = OpenFiles(files);
        return values.empty() ? std::move(series) : JoinTable(*series, values);
    } catch (const std::bad_alloc&) {
        throw ForeignProblem(
            files.front() +
            " asks for more memory than there is; export a smaller mesh, or the file anew if "
            "it is damaged");
    }
}

bool IsForeignFormat(const std::string& file) {
    return FindOwnFormat(file) != nullptr || IsVtkFormat(file);
}

}  // namespace qnl::interop
