#include <vtkCGNSReader.h>
#include <vtkDataObject.h>
#include <vtkExodusIIReader.h>
#include <vtkGenericDataObjectReader.h>
#include <vtkGenericEnSightReader.h>
#include <vtkHDFReader.h>
#include <vtkInformation.h>
#include <vtkLogger.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenFOAMReader.h>
#include <vtkOutputWindow.h>
#include <vtkSmartPointer.h>
#include <vtkStreamingDemandDrivenPipeline.h>
#include <vtkXMLDataElement.h>
#include <vtkXMLGenericDataObjectReader.h>
#include <vtkXMLUtilities.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "interop/FoamDimensions.h"
#include "interop/ForeignSeries.h"
#include "interop/NetcdfLength.h"
#include "interop/ReaderGuard.h"
#include "interop/VtkSnapshot.h"

namespace qnl::interop {

namespace {

namespace fs = std::filesystem;
using Reader = vtkSmartPointer<vtkAlgorithm>;

/// Keeps the first complaint of the readers instead of printing it.
class Complaints : public vtkOutputWindow {
public:
    static Complaints* New();
    vtkTypeMacro(Complaints, vtkOutputWindow) void DisplayText(const char*) override {}
    /// Some readers only warn of data that end too early.
    void DisplayWarningText(const char* text) override { TakeWarning(text); }
    void DisplayGenericWarningText(const char* text) override { TakeWarning(text); }
    void TakeWarning(const char* text) {
        const char* complaint = std::strstr(text, "Error reading");
        if (complaint != nullptr) {
            DisplayErrorText(complaint);
        }
    }
    void DisplayErrorText(const char* text) override { first_ = first_.empty() ? text : first_; }

    /// The heart of the first error, in one line of ASCII; empty when there was none.
    std::string Take() {
        std::string text = std::exchange(first_, "");
        const std::size_t head = text.find("): ");
        text = head == std::string::npos ? text : text.substr(head + 3);
        std::replace_if(
            text.begin(), text.end(), [](unsigned char c) { return std::isprint(c) == 0; }, ' ');
        text.erase(text.find_last_not_of(" .") + 1);
        return text.find("returned failure for request") == std::string::npos ? text : "its reader failed";
    }

private:
    std::string first_;
};
vtkStandardNewMacro(Complaints);

Reader MakeXmlReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkXMLGenericDataObjectReader>::New();
    reader->SetFileName(file);
    return reader;
}

Reader MakeLegacyReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkGenericDataObjectReader>::New();
    reader->SetFileName(file);
    reader->ReadAllScalarsOn();
    reader->ReadAllVectorsOn();
    reader->ReadAllFieldsOn();
    return reader;
}

Reader MakeHdfReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkHDFReader>::New();
    reader->SetFileName(file);
    return reader;
}

Reader MakeEnSightReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkGenericEnSightReader>::New();
    reader->SetCaseFileName(file);
    reader->ReadAllVariablesOn();
    return reader;
}

Reader MakeCgnsReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkCGNSReader>::New();
    reader->SetFileName(file);
    reader->UpdateInformation();
    reader->EnableAllBases();
    reader->EnableAllFamilies();
    reader->EnableAllPointArrays();
    reader->EnableAllCellArrays();
    return reader;
}

Reader MakeExodusReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkExodusIIReader>::New();
    reader->SetFileName(file);
    reader->ApplyDisplacementsOff();
    reader->UpdateInformation();
    reader->SetAllArrayStatus(vtkExodusIIReader::NODAL, 1);
    reader->SetAllArrayStatus(vtkExodusIIReader::ELEM_BLOCK, 1);
    return reader;
}

Reader MakeOpenFoamReader(const char* file) {
    const auto reader = vtkSmartPointer<vtkOpenFOAMReader>::New();
    reader->SetFileName(file);
    reader->CreateCellToPointOff();
    reader->DecomposePolyhedraOff();
    reader->SkipZeroTimeOff();
    reader->UpdateInformation();
    reader->EnableAllCellArrays();
    reader->EnableAllPatchArrays();
    return reader;
}

/// What a binary file begins with; the libraries behind the readers end the program over other contents.
constexpr std::string_view kHdf5Start = "\x89HDF\r\n\x1A\n";
constexpr std::string_view kAdfStart = "@(#)ADF";
constexpr std::string_view kNetCdfStart = "CDF";

using Starts = std::array<std::string_view, 2>;
constexpr Starts kHdf{kHdf5Start};
constexpr Starts kCgns{kHdf5Start, kAdfStart};
constexpr Starts kExodus{kNetCdfStart, kHdf5Start};

struct Format {
    const char* extension;
    Reader (*make)(const char* file);
    Starts starts;      ///< those allowed; all empty: any
    bool isSi = false;  ///< metres and kelvin, by the format
};

constexpr std::array<Format, 19> kFormats{{
    {".vtu", MakeXmlReader, {}},
    {".pvtu", MakeXmlReader, {}},
    {".vtm", MakeXmlReader, {}},
    {".vts", MakeXmlReader, {}},
    {".vtr", MakeXmlReader, {}},
    {".vti", MakeXmlReader, {}},
    {".vtp", MakeXmlReader, {}},
    {".vtk", MakeLegacyReader, {}},
    {".hdf", MakeHdfReader, kHdf},
    {".vtkhdf", MakeHdfReader, kHdf},
    {".case", MakeEnSightReader, {}},
    {".encas", MakeEnSightReader, {}},
    {".cgns", MakeCgnsReader, kCgns},
    {".e", MakeExodusReader, kExodus},
    {".ex2", MakeExodusReader, kExodus},
    {".exo", MakeExodusReader, kExodus},
    {".exii", MakeExodusReader, kExodus},
    {".foam", MakeOpenFoamReader, {}, true},
    {".openfoam", MakeOpenFoamReader, {}, true},
}};

std::string Extension(const std::string& file) {
    std::string extension = fs::path(file).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

const Format& FindFormat(const std::string& file) {
    for (const Format& format : kFormats) {
        if (Extension(file) == format.extension) {
            return format;
        }
    }
    throw ForeignProblem(
        file +
        " is of no known format; known are .vtu, .pvtu, .pvd, .vtm, .vts, .vtr, .vti, .vtk, "
        ".hdf, .vtkhdf, .case, .cgns, .exo, .e, .ex2 and .foam, and a Gmsh mesh becomes one by "
        "\"gmsh mesh.msh -save -o mesh.vtk\"");
}

void CheckFile(const std::string& file) {
    std::error_code failed;
    if (!fs::is_regular_file(file, failed)) {
        throw ForeignProblem(file + (fs::is_directory(file, failed) ? " is a folder; give a file in it"
                                                                    : " is missing; give an existing file"));
    }
}

void CheckStart(const std::string& file, const Starts& starts) {
    constexpr std::size_t kLongest = 8;
    std::string found(kLongest, '\0');
    std::ifstream(file, std::ios::binary).read(found.data(), kLongest);
    const bool any = std::all_of(starts.begin(), starts.end(), [](std::string_view s) { return s.empty(); });
    const bool fits = std::any_of(starts.begin(), starts.end(), [&](std::string_view start) {
        return !start.empty() && found.compare(0, start.size(), start) == 0;
    });
    if (!any && !fits) {
        throw ForeignProblem(file + " is not of the format that its extension stands for; export it anew");
    }
}

/// The other libraries notice themselves that a file is too short.
void CheckLength(const std::string& file) {
    const auto announced = AnnouncedNetcdfLength(file);
    const auto length = fs::file_size(file);
    if (announced && length < *announced) {
        throw ForeignProblem(file + " ends too early, after " + std::to_string(length) + " of " +
                             std::to_string(*announced) + " bytes; copy or export it anew");
    }
}

/// One output time: its files (several when the mesh comes in parts), and the time when a list of files or
/// the file's own list of times tells it.
struct Entry {
    std::vector<std::string> files;
    std::optional<double> seconds;
    bool chosenFromFile = false;  ///< the file holds several times
};

class VtkSeries : public ForeignSeries {
public:
    explicit VtkSeries(const std::vector<std::string>& files) {
        vtkLogger::SetStderrVerbosity(vtkLogger::VERBOSITY_OFF);
        vtkOutputWindow::SetInstance(complaints_);
        for (const std::string& file : files) {
            CheckFile(file);
            Extension(file) == ".pvd" ? AddCollection(file) : AddFile(file);
        }
    }
    ~VtkSeries() override { vtkOutputWindow::SetInstance(nullptr); }
    VtkSeries(const VtkSeries&) = delete;
    VtkSeries& operator=(const VtkSeries&) = delete;

    int Count() const override { return static_cast<int>(entries_.size()); }

    bool IsSi() const override {
        return std::all_of(entries_.begin(), entries_.end(),
                           [](const Entry& entry) { return FindFormat(entry.files.front()).isSi; });
    }

    ForeignSnapshot Read(int index) override {
        const Entry& entry = entries_[static_cast<std::size_t>(index)];
        const ReaderGuard guard(entry.files.front());
        try {
            return ReadEntry(entry);
        } catch (const std::bad_alloc&) {
            throw ForeignProblem(
                entry.files.front() +
                " asks for more memory than there is; export a smaller mesh, or the file anew if "
                "it is damaged");
        }
    }

private:
    ForeignSnapshot ReadEntry(const Entry& entry) {
        std::vector<vtkSmartPointer<vtkDataObject>> owners;
        std::vector<vtkDataObject*> parts;
        for (const std::string& file : entry.files) {
            owners.push_back(ReadFile(file, entry));
            parts.push_back(owners.back());
        }
        ForeignSnapshot snapshot = TakeSnapshot(parts, entry.files.front());
        snapshot.seconds = entry.seconds ? entry.seconds : snapshot.seconds;
        AddDimensions(entry, snapshot);
        return snapshot;
    }

    /// The reader leaves out what the headers of the fields tell.
    static void AddDimensions(const Entry& entry, ForeignSnapshot& snapshot) {
        const std::string& file = entry.files.front();
        if (!FindFormat(file).isSi || !entry.seconds) {
            return;
        }
        for (ForeignArray& array : snapshot.arrays) {
            array.dimensions = ReadFoamDimensions(file, *entry.seconds, array.name);
        }
    }

    void RaiseComplaint(const std::string& file) {
        const std::string text = complaints_->Take();
        if (!text.empty()) {
            throw ForeignProblem(file + " cannot be read (" + text + "); export it anew");
        }
    }

    /// One reader is kept, so that a file with several times is opened once.
    vtkAlgorithm& ReaderOf(const std::string& file) {
        if (file != currentFile_) {
            const Format& format = FindFormat(file);
            CheckStart(file, format.starts);
            CheckLength(file);
            current_ = format.make(file.c_str());
            current_->UpdateInformation();
            RaiseComplaint(file);
            currentFile_ = file;
        }
        return *current_;
    }

    vtkSmartPointer<vtkDataObject> ReadFile(const std::string& file, const Entry& entry) {
        vtkAlgorithm& reader = ReaderOf(file);
        if (entry.chosenFromFile) {
            reader.UpdateTimeStep(*entry.seconds);
        } else {
            reader.Update();
        }
        RaiseComplaint(file);
        vtkDataObject* output = reader.GetOutputDataObject(0);
        if (output == nullptr) {
            throw ForeignProblem(file + " cannot be read; export it anew");
        }
        auto copy = vtkSmartPointer<vtkDataObject>::Take(output->NewInstance());
        copy->ShallowCopy(output);
        return copy;
    }

    void AddFile(const std::string& file) {
        const ReaderGuard guard(file);
        vtkInformation* information = ReaderOf(file).GetOutputInformation(0);
        auto* key = vtkStreamingDemandDrivenPipeline::TIME_STEPS();
        const int times = information->Has(key) ? information->Length(key) : 0;
        for (int i = 0; i < times; ++i) {
            entries_.push_back({{file}, information->Get(key, i), true});
        }
        if (times == 0) {
            entries_.push_back({{file}, std::nullopt, false});
        }
    }

    void AddCollection(const std::string& file) {
        const auto root =
            vtkSmartPointer<vtkXMLDataElement>::Take(vtkXMLUtilities::ReadElementFromFile(file.c_str()));
        RaiseComplaint(file);
        vtkXMLDataElement* list = root == nullptr ? nullptr : root->FindNestedElementWithName("Collection");
        if (list == nullptr || list->GetNumberOfNestedElements() == 0) {
            throw ForeignProblem(file + " lists no files; a collection names them in DataSet elements");
        }
        const std::size_t first = entries_.size();
        for (int i = 0; i < list->GetNumberOfNestedElements(); ++i) {
            AddMember(file, *list->GetNestedElement(i), first);
        }
    }

    void AddMember(const std::string& collection, vtkXMLDataElement& element, std::size_t first) {
        const char* name = element.GetAttribute("file");
        double seconds = 0.0;
        if (name == nullptr || element.GetScalarAttribute("timestep", seconds) == 0) {
            throw ForeignProblem(collection + ": a DataSet element lacks its file or its timestep; add it");
        }
        const std::string member = (fs::path(collection).parent_path() / name).string();
        CheckFile(member);
        if (Extension(member) == ".pvd") {
            throw ForeignProblem(collection + " lists another list, " + member +
                                 "; list the files with the meshes instead");
        }
        FindFormat(member);
        for (std::size_t i = first; i < entries_.size(); ++i) {
            if (entries_[i].seconds == seconds) {
                entries_[i].files.push_back(member);
                return;
            }
        }
        entries_.push_back({{member}, seconds, false});
    }

    vtkNew<Complaints> complaints_;
    std::vector<Entry> entries_;
    std::string currentFile_;
    Reader current_;
};

}  // namespace

std::unique_ptr<ForeignSeries> OpenForeignSeries(const std::vector<std::string>& files) {
    return std::make_unique<VtkSeries>(files);
}

}  // namespace qnl::interop
