#include "page/ReportHeader.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <utility>

#include "text/Json.h"
#include "text/NumberText.h"

namespace qnl::page {

namespace {

using text::Json;

Json ItemJson(const ReportItem& item) {
    Json blocks = Json::array();
    for (std::size_t t = 0; t < item.values.size(); ++t) {
        blocks.push_back(item.values[t].empty() ? Json() : Json(item.BlockName(t)));
    }
    return {{"id", item.id},         {"name", item.name},          {"unit", item.unit},
            {"note", item.note},     {"min", item.range.min},      {"max", item.range.max},
            {"steady", item.steady}, {"blocks", std::move(blocks)}};
}

/// How the profiles come about, one sentence.
std::string ProfileSource(const series::SeriesFiles& series) {
    const std::string mode = RulesOf(series.view.mode).name;
    return series.SeesInsideCells()
               ? "Resolved mode: the temperature field along the inward normal, from wall to wall."
               : "Results of the " + mode +
                     " mode: averages of faces and cells, placed at the middles of their boxes.";
}

/// Null without profiles.
Json ProfilesJson(const series::LoadedSeries& loaded, const ValueRange& range) {
    if (loaded.profiles.nodes.empty() || !loaded.history) {
        return {};
    }
    Json blocks = Json::array();
    for (std::size_t t = 0; t < loaded.profiles.temperatures.size(); ++t) {
        blocks.push_back("profile-" + std::to_string(t));
    }
    return {{"nodes", loaded.profiles.nodes.size()},
            {"samples", loaded.profiles.depths.size()},
            {"name", "Temperature"},
            {"source", ProfileSource(loaded.series)},
            {"unit", "°C"},
            {"min", range.min},
            {"max", range.max},
            {"blocks", std::move(blocks)}};
}

Json CurveJson(const char* name, const std::vector<double>& values) {
    return {{"name", name}, {"unit", "%"}, {"values", values}};
}

Json CurvesJson(const series::LoadedSeries& loaded) {
    Json curves = Json::array();
    if (loaded.history && loaded.history->Freezes()) {
        curves.push_back(CurveJson("of the volume", loaded.history->frozenVolume));
        curves.push_back(CurveJson("of the surface", loaded.history->frozenSurface));
    }
    return curves;
}

Json RegionJson(const series::LoadedSeries& loaded, const series::FreezingRegion& region) {
    const auto node = static_cast<std::size_t>(region.node);
    const std::array<float, 3>& point = loaded.surface.points[node];
    return {{"x", static_cast<double>(point[0])},
            {"y", static_cast<double>(point[1])},
            {"z", static_cast<double>(point[2])},
            {"time", region.neverFrozen ? Json() : Json(static_cast<double>(region.time))},
            {"label", loaded.surface.labels[node]}};
}

Json RegionsJson(const series::LoadedSeries& loaded) {
    Json list = Json::array();
    const auto& regions = loaded.regions.regions;
    for (std::size_t i = 0; i < std::min(series::kShownRegions, regions.size()); ++i) {
        list.push_back(RegionJson(loaded, regions[i]));
    }
    return list;
}

std::string TimesText(const series::SeriesFiles& series) {
    const std::string count = text::CountText(static_cast<long long>(series.times.size()), "output time");
    return series.realTimes ? count + ", " + text::NumberText(series.times.front().axis) + " to " +
                                  text::NumberText(series.times.back().axis) + " s"
                            : count + " whose real times are not known";
}

Json FactsJson(const series::LoadedSeries& loaded) {
    const std::optional<double> freeze = loaded.project.FreezeTemperature();
    const project::StageFile& base = loaded.series.base;
    const std::pair<const char*, std::string> facts[] = {
        {"Mesh", project::FileName(loaded.project.MeshFile())},
        {"Material", project::FileName(loaded.project.MaterialFile())},
        {"Freeze temperature", freeze ? text::NumberText(*freeze) + " °C" : "none"},
        {"Stage", std::string(project::StageTitle(base.extension)) + ", run " + base.run},
        {"Mode", RulesOf(loaded.series.view.mode).name},
        {"Times", TimesText(loaded.series)},
        {"Program", "frozenlayer " QNL_VERSION}};
    Json list = Json::array();
    for (const auto& [name, value] : facts) {
        list.push_back({{"name", name}, {"value", value}});
    }
    return list;
}

Json TimesJson(const series::SeriesFiles& series) {
    Json times = Json::array();
    for (const series::SeriesTime& time : series.times) {
        times.push_back(time.axis);
    }
    return times;
}

/// No text can end the element that holds the header.
std::string WithoutTags(const std::string& text) {
    std::string safe;
    for (const char character : text) {
        safe += character == '<' ? "\\u003c" : std::string(1, character);
    }
    return safe;
}

}  // namespace

std::string ReportHeader(const series::LoadedSeries& loaded, const std::vector<ReportItem>& items,
                         const ValueRange& profileRange) {
    const std::optional<double> freeze = loaded.project.FreezeTemperature();
    Json list = Json::array();
    for (const ReportItem& item : items) {
        list.push_back(ItemJson(item));
    }
    const Json header{{"format", "frozenlayer-view"},
                      {"version", 1},
                      {"title", loaded.series.base.name},
                      {"length_unit", "mm"},
                      {"nodes", loaded.surface.Nodes()},
                      {"triangles", loaded.surface.triangles.size()},
                      {"time_axis", {{"name", loaded.series.AxisName()}, {"unit", loaded.series.AxisUnit()}}},
                      {"times", TimesJson(loaded.series)},
                      {"statuses", kMissingValues},
                      {"items", std::move(list)},
                      {"profiles", ProfilesJson(loaded, profileRange)},
                      {"freeze_temperature", freeze ? Json(*freeze) : Json()},
                      {"curves", CurvesJson(loaded)},
                      {"regions", RegionsJson(loaded)},
                      {"facts", FactsJson(loaded)},
                      {"notes", loaded.series.notes}};
    return WithoutTags(text::JsonText(header));
}

}  // namespace qnl::page
