#include "ExportCommand.h"

#include <iostream>
#include <memory>

#include "FaultReport.h"
#include "ResultExport.h"
#include "ResultSeries.h"
#include "RunReport.h"
#include "Subcommand.h"

namespace qnl {

namespace {

int Export(const ExportRequest& request) {
    PrintWrittenFiles(ExportResults(request), std::cout);
    std::cout.flush();
    const std::vector<Fault> faults = TakeFaults();
    PrintFaults(faults, std::cerr);
    return faults.empty() && std::cout.good() ? 0 : 1;
}

}  // namespace

void AddExportCommand(CLI::App& app, int& exitCode) {
    auto request = std::make_shared<ExportRequest>();
    CLI::App& command =
        AddSubcommand(app, exitCode, "export", "Write the surface with all items for other programs",
                      "frozenlayer export examples/ribbed-cover/Analysis/Run1/cover1.fzr --out cover",
                      [request] { return Export(*request); });
    command.add_option("RESULT", request->results.words, HelpText(kSeriesHelp))
        ->type_name("PATH")
        ->required();
    command
        .add_option("--out", request->out,
                    HelpText("Name that the files begin with: NAME_0001 and so on by time, NAME_static with "
                             "wall thickness and time to freeze, and NAME.pvd (NAME.hdf.series, "
                             "NAME_times.csv), which lists them by time"))
        ->type_name("NAME")
        ->required();
    command
        .add_option(
            "--to", request->format,
            HelpText("pvd: .vtp files, polygons; vtu: .vtu files, a grid of the faces; hdf: the same grid as "
                     "VTKHDF files; csv: one row a node with label, x, y, z, values"))
        ->type_name("FORMAT")
        ->check(CLI::IsMember(ExportFormats()))
        ->capture_default_str();
    command.add_flag("--compress", request->compress,
                     HelpText("Store the arrays of .vtp, .vtu and .hdf files compressed by zlib"));
    command.add_flag("--force", request->force, HelpText("Replace files of these names"));
}

}  // namespace qnl
