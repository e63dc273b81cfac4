#include "profiles/RayProbeReport.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

#include "exports/CsvFile.h"
#include "exports/VtkXmlFile.h"
#include "mesh/MeshNodes.h"
#include "platform/HostFiles.h"
#include "project/OutputNames.h"
#include "series/LoadedSeries.h"
#include "series/SurfaceDistance.h"
#include "text/NumberText.h"
#include "text/TextFile.h"

namespace qnl::profiles {

namespace {

/// What the name of the files may end in and loses.
std::vector<std::string_view> NameEndings() {
    return {".csv", ".vtp"};
}

/// One probed node: its pass elements by depth, or in the resolved mode samples of the field, and their
/// temperatures by time.
struct ProbedRay {
    int node = 0;  ///< surface node
    series::DepthProfile profile;
    std::vector<std::vector<double>> temperatures;  ///< by time, 1-based by element
    std::vector<WallLayers> layers;                 ///< by time; none unless in the resolved mode
};

/// What the rays are probed in.
struct Probe {
    series::SeriesFiles series;
    series::OpenedProject project;
    series::Surface surface;
    series::SurfaceRays traced;
    std::vector<ProbedRay> rays;
};

int NodeOfLabel(const Probe& probe, int label) {
    const NodeId node = mesh::NodeOfLabel(probe.project.Job(), NodeLabel(label));
    const int number =
        node > NodeId(0) ? probe.surface.numberOfNode[static_cast<std::size_t>(node.Value())] : -1;
    if (number < 0) {
        throw project::InputProblem("node " + std::to_string(label) + " is not on the surface of " +
                                    project::NativePath(probe.project.MeshFile()) +
                                    ": name a surface node, or a --point near it");
    }
    if (probe.traced.elements[static_cast<std::size_t>(number)].size() < 2) {
        throw project::InputProblem("node " + std::to_string(label) +
                                    " has no way into the solid along its normal: name another node");
    }
    return number;
}

double Distance(const NodeRecord& node, const std::array<double, 3>& point) {
    return Length(Vector3{node.x - point[0], node.y - point[1], node.z - point[2]});
}

std::string PlaceText(double x, double y, double z) {
    return text::NumberText(x) + "," + text::NumberText(y) + "," + text::NumberText(z);
}

/// A place farther from the surface than half of the wall there is none of the part.
void CheckPlace(const Probe& probe, const std::array<double, 3>& point, std::size_t node, double nodeAway) {
    const double away = series::DistanceFromSurface(probe.surface, {point[0], point[1], point[2]});
    const double limit = probe.traced.wall[node] / 2.0;
    if (away <= limit) {
        return;
    }
    const NodeRecord& found = probe.project.Job().p_Node[probe.surface.nodes[node]];
    throw project::InputProblem(
        "point " + PlaceText(point[0], point[1], point[2]) + " is " + text::NumberText(away) +
        " mm away from the surface, farther than half of the wall there, " + text::NumberText(limit) +
        " mm: the nearest surface node is " + std::to_string(probe.surface.labels[node]) + " at " +
        PlaceText(found.x, found.y, found.z) + ", " + text::NumberText(nodeAway) +
        " mm away; give a place on the part, or take that node with --nearest");
}

int NodeOfPoint(const Probe& probe, const std::array<double, 3>& point, bool anywhere) {
    const NodeRecord* nodes = probe.project.Job().p_Node;
    int best = -1;
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < probe.surface.Nodes(); ++i) {
        const double distance = Distance(nodes[probe.surface.nodes[i]], point);
        if (probe.traced.elements[i].size() >= 2 && distance < nearest) {
            nearest = distance;
            best = static_cast<int>(i);
        }
    }
    if (best < 0) {
        throw project::InputProblem(project::NativePath(probe.project.MeshFile()) +
                                    ": no surface node has a way into the solid");
    }
    if (!anywhere) {
        CheckPlace(probe, point, static_cast<std::size_t>(best), nearest);
    }
    std::cerr << "Point " + PlaceText(point[0], point[1], point[2]) + ": nearest surface node " +
                     std::to_string(probe.surface.labels[static_cast<std::size_t>(best)]) + ", " +
                     text::NumberText(nearest) + " mm away\n";
    return best;
}

void ChooseRays(const ProbeRequest& request, Probe& probe) {
    std::vector<int> nodes;
    for (const int label : request.labels) {
        nodes.push_back(NodeOfLabel(probe, label));
    }
    for (const std::array<double, 3>& point : request.points) {
        nodes.push_back(NodeOfPoint(probe, point, request.nearest));
    }
    for (const int node : nodes) {
        const auto i = static_cast<std::size_t>(node);
        probe.rays.emplace_back().node = node;
        if (!probe.project.SeesInsideCells()) {
            probe.rays.back().profile =
                ElementsByDepth(probe.project, probe.traced.elements[i], probe.traced.inward[i]);
        }
    }
}

void AddAverages(Probe& probe) {
    const profile::PassElementField field = probe.project.Temperatures();
    for (ProbedRay& ray : probe.rays) {
        std::vector<double>& values = ray.temperatures.emplace_back(ray.profile.elements.size());
        for (std::size_t j = 1; j < values.size(); ++j) {
            values[j] = field[ray.profile.Element(j)];
        }
    }
}

void AddField(Probe& probe) {
    probe.project.RecoverTemperature();
    series::RayFollower follower(probe.project, probe.surface, probe.traced);
    for (ProbedRay& ray : probe.rays) {
        const profile::ResolvedProfile& profile = follower.Follow(static_cast<std::size_t>(ray.node));
        ray.profile = SamplesOfField(probe.project, profile, ray.temperatures.emplace_back());
        ray.layers.push_back(follower.Layers());
    }
}

void ReadTemperatures(Probe& probe) {
    for (const series::SeriesTime& time : probe.series.times) {
        probe.project.LoadTemperatures(time.stageFile);
        (probe.project.SeesInsideCells() ? AddField : AddAverages)(probe);
    }
}

Probe MakeProbe(const ProbeRequest& request) {
    series::SeriesFiles series = series::FindSeriesFiles(request.results);
    series::OpenedProject project(series);
    if (!project.HasTemperatures()) {
        throw project::InputProblem(project::NativePath(series.base.Path()) +
                                    ": this stage has no temperatures to probe");
    }
    Probe probe{std::move(series), std::move(project), {}, {}, {}};
    probe.surface = series::SurfaceOf(probe.project);
    probe.traced = series::TraceSurfaceRays(probe.project, probe.surface);
    ChooseRays(request, probe);
    ReadTemperatures(probe);
    return probe;
}

std::array<float, 3> PlaceOnRay(const Probe& probe, const ProbedRay& ray, std::size_t element) {
    const NodeRecord& node =
        probe.project.Job().p_Node[probe.surface.nodes[static_cast<std::size_t>(ray.node)]];
    const Vector3& d = probe.traced.inward[static_cast<std::size_t>(ray.node)];
    const double depth = ray.profile.Below(element);
    return {static_cast<float>(node.x + depth * d.x), static_cast<float>(node.y + depth * d.y),
            static_cast<float>(node.z + depth * d.z)};
}

/// "1" frozen, "0" not, empty for a material without a freeze temperature.
std::string FrozenText(const Probe& probe, double temperature) {
    const std::optional<double> freeze = probe.project.FreezeTemperature();
    return !freeze ? "" : temperature < *freeze ? "1" : "0";
}

/// The frozen layers of the wall, each behind a comma; empty where they are not known.
std::string LayersText(const ProbedRay& ray, std::size_t time) {
    std::string text;
    for (std::size_t k = 0; k < series::kWallNames.size(); ++k) {
        text += ",";
        const float value = ray.layers.empty() ? std::numeric_limits<float>::quiet_NaN()
                                               : series::ValuesOf(ray.layers[time])[k];
        text += std::isfinite(value) ? text::ExactText(value) : "";
    }
    return text;
}

std::string Row(const Probe& probe, const ProbedRay& ray, std::size_t time, std::size_t element) {
    const mesh::PassElementNumbering numbering = probe.project.Elements().Numbering();
    const PassElement passed = ray.profile.Element(element);
    const bool isFace = numbering.IsFace(passed);
    const double temperature = ray.temperatures[time][element];
    std::string row =
        std::to_string(probe.surface.labels[static_cast<std::size_t>(ray.node)]) + "," +
        text::ExactText(probe.series.times[time].axis) + "," + text::ExactText(ray.profile.Below(element)) +
        "," + text::ExactText(temperature) + "," + FrozenText(probe, temperature) + "," +
        (isFace ? "face" : "cell") + "," +
        std::to_string(isFace ? numbering.Face(passed).Value() : numbering.Cell(passed).Value());
    for (const float coordinate : PlaceOnRay(probe, ray, element)) {
        row += "," + text::ExactText(coordinate);
    }
    return row + LayersText(ray, time) + "\n";
}

std::string TableText(const Probe& probe) {
    std::string text = "Node label," +
                       exports::CsvField(series::Label(probe.series.AxisName(), probe.series.AxisUnit())) +
                       ",Depth [mm],Temperature [°C],Frozen,Element kind,Element number,x [mm],y [mm],z [mm]";
    for (const series::PeopleName& name : series::kWallNames) {
        text += "," + exports::CsvField(series::Label(std::string(name.name), std::string(name.unit)));
    }
    text += "\n";
    for (const ProbedRay& ray : probe.rays) {
        for (std::size_t t = 0; t < ray.temperatures.size(); ++t) {
            for (std::size_t j = 1; j < ray.profile.elements.size(); ++j) {
                text += Row(probe, ray, t, j);
            }
        }
    }
    return text;
}

std::vector<float> TemperaturesAt(const Probe& probe, std::size_t time) {
    std::vector<float> values;
    for (const ProbedRay& ray : probe.rays) {
        values.insert(values.end(), ray.temperatures[time].begin() + 1, ray.temperatures[time].end());
    }
    return values;
}

exports::ExportArray FrozenAt(const std::string& when, const std::vector<float>& temperatures,
                              double freeze) {
    std::vector<int> frozen;
    frozen.reserve(temperatures.size());
    for (const float temperature : temperatures) {
        frozen.push_back(static_cast<double>(temperature) < freeze ? 1 : 0);
    }
    return {"Frozen, " + when, 1, std::move(frozen)};
}

/// One polyline a node; depth, element and, for each output time, temperature and frozen or not.
bool WriteLines(const Probe& probe, const std::string& path) {
    exports::ExportSurface lines;
    std::vector<float> depths;
    std::vector<int> elements;
    for (const ProbedRay& ray : probe.rays) {
        for (std::size_t j = 1; j < ray.profile.elements.size(); ++j) {
            lines.corners.push_back(static_cast<std::int64_t>(lines.points.size()));
            lines.points.push_back(PlaceOnRay(probe, ray, j));
            lines.labels.push_back(probe.surface.labels[static_cast<std::size_t>(ray.node)]);
            depths.push_back(static_cast<float>(ray.profile.Below(j)));
            elements.push_back(ray.profile.elements[j]);
        }
        lines.ends.push_back(static_cast<std::int64_t>(lines.points.size()));
    }
    const std::optional<double> freeze = probe.project.FreezeTemperature();
    exports::ExportFrame frame;
    frame.arrays.push_back({"Depth [mm]", 1, std::move(depths)});
    frame.arrays.push_back({"Pass element", 1, std::move(elements)});
    for (std::size_t t = 0; t < probe.series.times.size(); ++t) {
        const std::string when = text::ExactText(probe.series.times[t].axis) + " " + probe.series.AxisUnit();
        frame.arrays.push_back({"Temperature, " + when + " [°C]", 1, TemperaturesAt(probe, t)});
        if (freeze) {
            frame.arrays.push_back(FrozenAt(when, TemperaturesAt(probe, t), *freeze));
        }
    }
    if (freeze) {
        frame.numbers.push_back({"Freeze temperature [°C]", *freeze});
    }
    return exports::WriteVtkLines(path, lines, frame);
}

bool WriteRows(const std::string& rows, const std::string& path) {
    ReplacedFile file(path, "wb");
    file.Append(rows);
    return file.Commit();
}

}  // namespace

std::string CheckProbeName(const std::string& name) {
    return project::ProblemOfOutputName(name, NameEndings());
}

std::vector<std::string> ProbeRays(const ProbeRequest& request) {
    if (request.out.empty()) {
        std::cout << TableText(MakeProbe(request));
        return {};
    }
    const std::string name = project::NameOfOutput(request.out, NameEndings());
    const std::string table = name + ".csv";
    const std::string lines = name + ".vtp";
    if (!request.force) {
        project::RefuseExisting({table, lines});
    }
    const Probe probe = MakeProbe(request);
    std::vector<std::string> written;
    if (WriteRows(TableText(probe), table)) {
        written.push_back(project::NativePath(table));
        if (WriteLines(probe, lines)) {
            written.push_back(project::NativePath(lines));
        }
    }
    return written;
}

}  // namespace qnl::profiles
