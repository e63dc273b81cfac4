#include "commands/CompareCommand.h"

#include <iostream>
#include <limits>
#include <memory>
#include <optional>

#include "commands/ViewCommand.h"
#include "compare/ComparisonReport.h"
#include "compare/ComparisonTable.h"
#include "compare/DifferenceItems.h"
#include "page/ReportPage.h"
#include "project/OutputNames.h"

namespace qnl::commands {

namespace {

struct CompareRequest {
    compare::Both<std::string> words;
    std::optional<double> tolerance;
    std::string table;
    std::string page;
};

/// The page of A with the differences as items of their own.
bool WritePage(const page::PageTemplate& frame, const std::string& path,
               const compare::Both<compare::ComparedSeries>& sides,
               const compare::SeriesDifference& difference) {
    series::LoadedSeries loaded = series::LoadSeries(sides[0].files, page::kPageProfiles);
    compare::AddDifferenceItems(sides, difference, loaded.results);
    const bool written = page::WriteReportPage(frame, loaded, path);
    std::cout << (written ? "Page written:\n  " + path + "\n" : "");
    return written;
}

bool Compare(const CompareRequest& request) {
    const page::PageTemplate frame = request.page.empty() ? page::PageTemplate{} : page::ReadPageTemplate();
    const compare::Both<compare::ComparedSeries> sides{compare::ReadComparedSeries(request.words[0]),
                                                       compare::ReadComparedSeries(request.words[1])};
    compare::CheckSameSurface(sides);
    compare::NoteEquallyNamedInputs(sides);
    const compare::SeriesDifference difference = compare::CompareSeries(sides);
    compare::PrintComparison(sides, difference, request.tolerance, std::cout);
    const bool tableWritten =
        request.table.empty() || compare::WriteComparisonTable(request.table, sides, difference);
    const bool pageWritten = request.page.empty() || WritePage(frame, request.page, sides, difference);
    return tableWritten && pageWritten && (!request.tolerance || difference.IsWithin(*request.tolerance));
}

std::string CheckTableName(const std::string& name) {
    return project::ProblemOfFileName(name, {".csv"}, "table");
}

void AddOptions(Subcommand& command, CompareRequest& request) {
    command.Add("A", request.words[0], compare::kComparedHelp).Type("PATH").Required();
    command
        .Add("B", request.words[1],
             "The same of the other result, on the same mesh: of another mode, run or material, or the same "
             "made again. Differences are B - A")
        .Type("PATH")
        .Required();
    command
        .Add("--tolerance", request.tolerance,
             "End with exit status 1 when a difference is larger than X, in the unit of its item, or when "
             "something stands in one result only; without it differences are no failure")
        .Type("X")
        .Between(0.0, std::numeric_limits<double>::max(), "");
    command
        .Add("--csv", request.table,
             "Write the numbers of the table with all their digits; a file of that name is replaced")
        .Type("FILE.csv")
        .Check(CheckTableName);
    command
        .Add("--view", request.page,
             "Write a page that shows A in a browser with an item \"Difference: ...\" for every item that "
             "both "
             "have; one of that name is replaced")
        .Type("FILE.html")
        .Check(CheckPageName);
}

}  // namespace

void AddCompareCommand(Program& program) {
    auto request = std::make_shared<CompareRequest>();
    Subcommand command = program.AddSubcommand(
        {"compare",
         "tell how two results of one mesh differ",
         "Compares two frozen-layer results node by node and prints, for every item at every output time, "
         "the largest difference and where it is, the mean of the magnitudes and the root mean square. "
         "Closes with whether both are equal to the bit, or within what.",
         {"frozenlayer run examples/stepped-plate --corrected", "cp -rv examples/stepped-plate classic",
          "frozenlayer run classic --classic", "frozenlayer compare examples/stepped-plate classic"}},
        [request] { return Compare(*request); });
    AddOptions(command, *request);
}

}  // namespace qnl::commands
