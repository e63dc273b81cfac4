#include "commands/ProbeCommand.h"

#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <optional>

#include "profiles/RayProbeReport.h"
#include "project/ProjectPaths.h"
#include "runs/RunReport.h"
#include "series/SeriesFiles.h"

namespace qnl::commands {

namespace {

struct ProbeChoice {
    profiles::ProbeRequest request;
    std::vector<std::string> points;
};

/// Three numbers with commas between them.
std::optional<std::array<double, 3>> ParsePoint(const std::string& text) {
    std::array<double, 3> point{};
    const char* place = text.data();
    const char* end = text.data() + text.size();
    for (std::size_t axis = 0; axis < point.size(); ++axis) {
        if (axis > 0 && (place == end || *place++ != ',')) {
            return std::nullopt;
        }
        const auto read = std::from_chars(place, end, point[axis]);
        if (read.ec != std::errc() || !std::isfinite(point[axis])) {
            return std::nullopt;
        }
        place = read.ptr;
    }
    return place == end ? std::optional(point) : std::nullopt;
}

std::string CheckPoint(const std::string& text) {
    return ParsePoint(text)
               ? ""
               : "\"" + text + "\" is no point: three numbers in mm are expected, such as 10,5,2.5";
}

bool ProbeNodes(const ProbeChoice& words) {
    profiles::ProbeRequest request = words.request;
    for (const std::string& text : words.points) {
        request.points.push_back(*ParsePoint(text));
    }
    if (request.labels.empty() && request.points.empty()) {
        throw project::InputProblem(
            "nothing to probe: name surface nodes with --node, or places with --point x,y,z");
    }
    const std::vector<std::string> written = profiles::ProbeRays(request);
    if (!request.out.empty()) {
        runs::PrintWrittenFiles(written, std::cout);
    }
    return true;
}

}  // namespace

void AddProbeCommand(Program& program) {
    auto words = std::make_shared<ProbeChoice>();
    Subcommand command = program.AddSubcommand(
        {"probe",
         "tell the temperatures over depth below surface nodes",
         "Follows the inward normal of surface nodes through the wall and prints depth, "
         "temperature, frozen or not and element at every output time, as rows of CSV.",
         {"frozenlayer run examples/stepped-plate",
          "frozenlayer probe examples/stepped-plate --point 10,15,0"}},
        [words] { return ProbeNodes(*words); });
    command.Add("RESULT", words->request.results.paths, series::kSeriesHelp).Type("PATH").Required();
    command.Add("--node", words->request.labels, "Labels of surface nodes").Type("LABEL");
    command
        .Add("--point", words->points,
             "Places in mm; each stands for the surface node nearest to it, and is refused farther from the "
             "surface than half of the wall there")
        .Type("x,y,z")
        .Check(CheckPoint);
    command.AddFlag("--nearest", words->request.nearest,
                    "Take the surface node nearest to a --point however far it is");
    command
        .Add("--out", words->request.out,
             "Write NAME.csv and NAME.vtp, polylines with the same numbers; without it the rows "
             "go to standard output")
        .Type("NAME")
        .Check(profiles::CheckProbeName);
    command.AddFlag("--force", words->request.force, "Replace files of these names");
}

}  // namespace qnl::commands
