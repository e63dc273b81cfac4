#include "commands/ExportCommand.h"

#include <iostream>
#include <memory>

#include "exports/ResultExport.h"
#include "project/FaultReport.h"
#include "runs/RunReport.h"
#include "series/ResultSeries.h"

namespace qnl::commands {

namespace {

int Export(const exports::ExportRequest& request) {
    runs::PrintWrittenFiles(exports::ExportResults(request), std::cout);
    std::cout.flush();
    const std::vector<Fault> faults = TakeFaults();
    project::PrintFaults(faults, std::cerr);
    return faults.empty() ? 0 : 1;
}

}  // namespace

void AddExportCommand(Program& program) {
    auto request = std::make_shared<exports::ExportRequest>();
    Subcommand command = program.AddSubcommand(
        {"export",
         "write the surface with all items for other programs",
         "Reads the frozen-layer results of a run and writes the surface of the part with all items at all "
         "output times, and with wall thickness and time to freeze.",
         {"frozenlayer run examples/stepped-plate", "frozenlayer export examples/stepped-plate --out plate"}},
        [request] { return Export(*request); });
    command.Add("RESULT", request->results.words, series::kSeriesHelp).Type("PATH").Required();
    command
        .Add("--out", request->out,
             "Name that the files begin with: NAME_0001 and so on by time, NAME_static with "
             "wall thickness and time to freeze, and NAME.pvd (NAME.hdf.series, "
             "NAME_times.csv), which lists them by time")
        .Type("NAME")
        .Required();
    command
        .Add("--to", request->format,
             "pvd: .vtp files, polygons; vtu: .vtu files, a grid of the faces; hdf: the same grid as "
             "VTKHDF files; csv: one row a node with label, x, y, z, values")
        .OneOf(exports::ExportFormats())
        .ShowDefault();
    command.AddFlag("--compress", request->compress,
                    "Store the arrays of .vtp, .vtu and .hdf files compressed by zlib");
    command.AddFlag("--force", request->force, "Replace files of these names");
}

}  // namespace qnl::commands
