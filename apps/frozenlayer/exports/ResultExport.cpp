#include "exports/ResultExport.h"

#include <array>
#include <cstdint>
#include <iostream>
#include <string_view>

#include "exports/CsvFile.h"
#include "exports/ExportFrames.h"
#include "exports/VtkHdfFile.h"
#include "exports/VtkXmlFile.h"
#include "host/Interrupts.h"
#include "project/OutputNames.h"
#include "project/TargetPlace.h"
#include "series/SeriesSize.h"

namespace qnl::exports {

namespace {

using WriteFrame = bool (*)(const std::string& path, const ExportSurface& surface, const ExportFrame& frame,
                            Storage storage);
using WriteList = bool (*)(const std::string& path, const std::string& timeLabel,
                           const std::vector<CollectionEntry>& entries);

/// What a format calls its files, and who writes them.
struct Format {
    const char* name;
    const char* frameExtension;
    WriteFrame writeFrame;
    const char* listEnding;
    WriteList writeList;
    bool compresses;
    std::uintmax_t leastNodeBytes;   ///< of a node in a file of one time, without its items
    std::uintmax_t leastValueBytes;  ///< of one value
};

// A node has its point, label and status, and about one face of four corners; in rows of text each of them
// has a character and a comma.
constexpr std::uintmax_t kBinaryNode = 60;
constexpr std::uintmax_t kTextNode = 10;

template <VtkKind kind>
bool WriteVtkFrame(const std::string& path, const ExportSurface& surface, const ExportFrame& frame,
                   Storage storage) {
    return WriteVtkSurface(path, kind, surface, frame, storage);
}

bool WriteCsvFrame(const std::string& path, const ExportSurface& surface, const ExportFrame& frame,
                   Storage /*storage*/) {
    return WriteCsvSurface(path, surface, frame);
}

template <bool (*write)(const std::string&, const std::vector<CollectionEntry>&)>
bool WriteUnlabelledList(const std::string& path, const std::string& /*timeLabel*/,
                         const std::vector<CollectionEntry>& entries) {
    return write(path, entries);
}

/// What the name of an export may end in and loses.
std::vector<std::string_view> NameEndings() {
    return {".hdf.series", ".pvd", ".vtp", ".vtu", ".hdf", ".csv"};
}

constexpr std::array<Format, 4> kFormats{{
    {"pvd", ".vtp", WriteVtkFrame<VtkKind::PolyData>, ".pvd", WriteUnlabelledList<WriteCollection>, true,
     kBinaryNode, sizeof(float)},
    {"vtu", ".vtu", WriteVtkFrame<VtkKind::UnstructuredGrid>, ".pvd", WriteUnlabelledList<WriteCollection>,
     true, kBinaryNode, sizeof(float)},
    {"hdf", ".hdf", WriteHdfSurface, ".hdf.series", WriteUnlabelledList<WriteFileSeries>, true, kBinaryNode,
     sizeof(float)},
    {"csv", ".csv", WriteCsvFrame, "_times.csv", WriteCsvTimes, false, kTextNode, 2},
}};

/// The ending that a name has; empty for none.
std::string_view EndingOf(const std::string& out) {
    const std::string_view name(out);
    for (const std::string_view ending : NameEndings()) {
        if (name.size() >= ending.size() && name.substr(name.size() - ending.size()) == ending) {
            return ending;
        }
    }
    return {};
}

bool MakesFilesWith(const Format& format, std::string_view ending) {
    return ending == format.frameExtension || ending == format.listEnding;
}

/// The format that is asked for, or the first whose files have the ending of the name.
const Format& FormatOf(const ExportRequest& request) {
    const std::string_view ending = EndingOf(request.out);
    for (const Format& format : kFormats) {
        const bool fits = ending.empty() || MakesFilesWith(format, ending);
        if (request.format == format.name && !fits) {
            throw project::InputProblem("--out " + request.out + " and --to " + request.format +
                                        " do not go together: leave out --to, or give a name without " +
                                        std::string(ending));
        }
        if (request.format.empty() ? fits : request.format == format.name) {
            return format;
        }
    }
    throw project::InputProblem("\"" + request.format + "\" is no format of exported files");
}

/// Paths of the files by time, then of the static one and of the list.
std::vector<std::string> PathsOf(const ExportRequest& request, std::size_t times) {
    const Format& format = FormatOf(request);
    const std::string stem = project::NameOfOutput(request.out, NameEndings());
    std::vector<std::string> paths;
    for (std::size_t t = 0; t < times; ++t) {
        paths.push_back(stem + TimeSuffix(t) + format.frameExtension);
    }
    paths.push_back(stem + kStaticSuffix + format.frameExtension);
    paths.push_back(stem + format.listEnding);
    return paths;
}

void PrintWhatIsMissing(const series::LoadedSeries& loaded) {
    if (!loaded.series.realTimes) {
        std::cerr << "Not every stage file tells its time: output times are numbered from 1.\n";
    }
    if (!loaded.withoutHistory.empty()) {
        std::cerr << loaded.withoutHistory + "\n";
    } else if (!loaded.history->Freezes()) {
        std::cerr << "The material has no freeze temperature: there are no times to freeze.\n";
    }
}

/// Adds the files to `written` as they are finished; stops at the first that cannot be written.
void WriteAll(const Format& format, const std::vector<std::string>& paths, const series::LoadedSeries& loaded,
              Storage storage, std::vector<std::string>& written) {
    const ExportSurface surface = SurfaceForExport(loaded);
    const std::size_t times = loaded.series.times.size();
    std::vector<CollectionEntry> entries;
    for (std::size_t t = 0; t <= times; ++t) {
        host::RaiseIfInterrupted();
        const ExportFrame frame = t < times ? TimeFrame(loaded, t) : StaticFrame(loaded);
        if (!format.writeFrame(paths[t], surface, frame, storage)) {
            return;
        }
        written.push_back(project::NativePath(paths[t]));
        if (t < times) {
            entries.push_back({loaded.series.times[t].axis, project::FileName(paths[t])});
        }
    }
    const std::string timeLabel = series::Label(loaded.series.AxisName(), loaded.series.AxisUnit());
    if (format.writeList(paths.back(), timeLabel, entries)) {
        written.push_back(project::NativePath(paths.back()));
    }
}

}  // namespace

std::vector<std::string> ExportFormats() {
    std::vector<std::string> names;
    names.reserve(kFormats.size());
    for (const Format& format : kFormats) {
        names.emplace_back(format.name);
    }
    return names;
}

std::string CheckExportName(const std::string& name) {
    return project::ProblemOfOutputName(name, NameEndings());
}

void CheckExport(const ExportRequest& request, std::size_t times) {
    const Format& format = FormatOf(request);
    if (request.compress && !format.compresses) {
        throw project::InputProblem(std::string("--compress has no meaning with --to ") + format.name +
                                    ", whose files are text: leave it out, or choose another format");
    }
    const std::vector<std::string> paths = PathsOf(request, times);
    if (!request.force) {
        project::RefuseExisting(paths);
    }
}

void CheckExportPlace(const ExportRequest& request, const series::SeriesFiles& series) {
    constexpr std::uintmax_t kPacking = 8;
    const Format& format = FormatOf(request);
    const std::string folder = project::FolderOf(request.out);
    const series::SeriesSize size = series::MeasureSeries(series);
    const std::uintmax_t bytes = size.nodes * format.leastNodeBytes + size.values * format.leastValueBytes;
    project::CheckWritable(folder);
    project::CheckRoom(folder, request.compress ? bytes / kPacking : bytes);
}

std::vector<std::string> ExportSeries(const series::LoadedSeries& loaded, const ExportRequest& request) {
    const std::size_t times = loaded.series.times.size();
    CheckExport(request, times);
    PrintWhatIsMissing(loaded);
    std::vector<std::string> written;
    try {
        WriteAll(FormatOf(request), PathsOf(request, times), loaded,
                 request.compress ? Storage::Compressed : Storage::Uncompressed, written);
    } catch (const host::Interrupted&) {
        // The subcommand ends as an interrupted one; what is finished is still told.
    }
    return written;
}

}  // namespace qnl::exports
