#include "commands/ExportCommand.h"

#include <iostream>
#include <memory>
#include <utility>

#include "exports/ResultExport.h"
#include "runs/RunReport.h"
#include "series/SeriesFiles.h"

namespace qnl::commands {

namespace {

struct ExportChoice {
    series::SeriesSelection results;
    exports::ExportRequest request;
};

bool Export(const ExportChoice& choice) {
    series::SeriesFiles files = series::FindSeriesFiles(choice.results);
    exports::CheckExport(choice.request, files.times.size());
    exports::CheckExportPlace(choice.request, files);
    const series::LoadedSeries loaded = series::LoadSeries(std::move(files), 0);
    runs::PrintWrittenFiles(exports::ExportSeries(loaded, choice.request), std::cout);
    return true;
}

}  // namespace

void AddExportCommand(Program& program) {
    auto choice = std::make_shared<ExportChoice>();
    exports::ExportRequest* request = &choice->request;
    Subcommand command = program.AddSubcommand(
        {"export",
         "write the surface with all items for other programs",
         "Reads the frozen-layer results of a run and writes the surface of the part with all items at all "
         "output times, and with wall thickness and time to freeze.",
         {"frozenlayer run examples/stepped-plate", "frozenlayer export examples/stepped-plate --out plate"}},
        [choice] { return Export(*choice); });
    command.Add("RESULT", choice->results.paths, series::kSeriesHelp).Type("PATH").Required();
    command
        .Add("--out", request->out,
             "Name that the files begin with: NAME_0001 and so on by time, NAME_static with "
             "wall thickness and time to freeze, and NAME.pvd (NAME.hdf.series, "
             "NAME_times.csv), which lists them by time; an ending such as .vtu says which files to write")
        .Type("NAME")
        .Check(exports::CheckExportName)
        .Required();
    command
        .Add(
            "--to", request->format,
            "pvd: .vtp files, polygons; vtu: .vtu files, a grid of the faces; hdf: the same grid as "
            "VTKHDF files; csv: one row a node with label, x, y, z, values; without it as the ending of NAME "
            "tells, else pvd")
        .OneOf(exports::ExportFormats());
    command.AddFlag("--compress", request->compress,
                    "Store the arrays of .vtp, .vtu and .hdf files compressed by zlib");
    command.AddFlag("--force", request->force, "Replace files of these names");
}

}  // namespace qnl::commands
