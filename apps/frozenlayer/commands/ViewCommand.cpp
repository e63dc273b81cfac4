#include "commands/ViewCommand.h"

#include <iostream>
#include <memory>
#include <utility>

#include "page/ReportPage.h"
#include "project/OutputNames.h"
#include "series/SeriesFiles.h"

namespace qnl::commands {

namespace {

struct ViewRequest {
    series::SeriesSelection results;
    std::string page;
};

bool View(const ViewRequest& request) {
    const page::PageTemplate frame = page::ReadPageTemplate();
    series::SeriesFiles files = series::FindSeriesFiles(request.results);
    page::CheckPagePlace(frame, files, request.page);
    const series::LoadedSeries loaded = series::LoadSeries(std::move(files), page::kPageProfiles);
    const bool written = page::WriteReportPage(frame, loaded, request.page);
    if (written) {
        std::cout << request.page + "\n";
    }
    return written;
}

}  // namespace

std::string CheckPageName(const std::string& name) {
    return project::ProblemOfFileName(name, {".html", ".htm"}, "page");
}

void AddViewCommand(Program& program) {
    auto request = std::make_shared<ViewRequest>();
    Subcommand command = program.AddSubcommand(
        {"view",
         "write a page that shows results in a browser",
         "Reads the frozen-layer results of a run and writes one file with the part in 3-D, values and "
         "profiles of picked nodes, frozen shares over time and the regions that freeze last.",
         {"frozenlayer run examples/stepped-plate",
          "frozenlayer view examples/stepped-plate --out report.html"}},
        [request] { return View(*request); });
    command.Add("RESULT", request->results.paths, series::kSeriesHelp).Type("PATH").Required();
    command
        .Add("--out", request->page, "The page, one file that needs no network; one of that name is replaced")
        .Type("FILE.html")
        .Check(CheckPageName)
        .Required();
}

}  // namespace qnl::commands
