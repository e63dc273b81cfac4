#include "page/ReportHeader.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <limits>

#include "text/JsonWriter.h"
#include "text/NumberText.h"

namespace qnl::page {

namespace {

constexpr std::size_t kRegions = 10;
constexpr double kNull = std::numeric_limits<double>::quiet_NaN();

template <typename Value>
void Entry(text::JsonWriter& json, const char* key, const Value& value) {
    json.Key(key);
    json.Value(value);
}

void Count(text::JsonWriter& json, const char* key, std::size_t count) {
    Entry(json, key, static_cast<std::int64_t>(count));
}

void WriteItem(text::JsonWriter& json, const ReportItem& item) {
    json.BeginObject();
    Count(json, "id", static_cast<std::size_t>(item.id));
    Entry(json, "name", std::string_view(item.name));
    Entry(json, "unit", std::string_view(item.unit));
    Entry(json, "note", std::string_view(item.note));
    Entry(json, "min", item.range.min);
    Entry(json, "max", item.range.max);
    Entry(json, "steady", item.steady);
    json.Key("blocks");
    json.BeginArray();
    for (std::size_t t = 0; t < item.values.size(); ++t) {
        if (item.values[t].empty()) {
            json.Value(kNull);
        } else {
            json.Value(std::string_view(item.BlockName(t)));
        }
    }
    json.EndArray();
    json.EndObject();
}

void WriteProfiles(text::JsonWriter& json, const series::SeriesResults& loaded, const ValueRange& range) {
    json.Key("profiles");
    if (loaded.profiles.nodes.empty() || !loaded.history) {
        json.Value(kNull);
        return;
    }
    json.BeginObject();
    Count(json, "nodes", loaded.profiles.nodes.size());
    Count(json, "samples", loaded.profiles.depths.size());
    Entry(json, "name", "Temperature");
    Entry(json, "unit", "°C");
    Entry(json, "min", range.min);
    Entry(json, "max", range.max);
    json.Key("blocks");
    json.BeginArray();
    for (std::size_t t = 0; t < loaded.profiles.temperatures.size(); ++t) {
        json.Value(std::string_view("profile-" + std::to_string(t)));
    }
    json.EndArray();
    json.EndObject();
}

void WriteCurve(text::JsonWriter& json, const char* name, const std::vector<double>& values) {
    json.BeginObject();
    Entry(json, "name", name);
    Entry(json, "unit", "%");
    json.Key("values");
    json.BeginArray();
    for (const double value : values) {
        json.Value(value);
    }
    json.EndArray();
    json.EndObject();
}

void WriteCurves(text::JsonWriter& json, const series::SeriesResults& loaded) {
    json.Key("curves");
    json.BeginArray();
    if (loaded.history && loaded.history->Freezes()) {
        WriteCurve(json, "of the volume", loaded.history->frozenVolume);
        WriteCurve(json, "of the surface", loaded.history->frozenSurface);
    }
    json.EndArray();
}

void WriteRegion(text::JsonWriter& json, const series::SeriesResults& loaded,
                 const series::FreezingRegion& region) {
    const auto node = static_cast<std::size_t>(region.node);
    const std::array<float, 3>& point = loaded.surface.points[node];
    json.BeginObject();
    Entry(json, "x", static_cast<double>(point[0]));
    Entry(json, "y", static_cast<double>(point[1]));
    Entry(json, "z", static_cast<double>(point[2]));
    Entry(json, "time", region.neverFrozen ? kNull : static_cast<double>(region.time));
    Entry(json, "label", std::int64_t{loaded.surface.labels[node]});
    json.EndObject();
}

void WriteRegions(text::JsonWriter& json, const series::SeriesResults& loaded) {
    json.Key("regions");
    json.BeginArray();
    const auto& regions = loaded.regions.regions;
    for (std::size_t i = 0; i < std::min(kRegions, regions.size()); ++i) {
        WriteRegion(json, loaded, regions[i]);
    }
    json.EndArray();
}

void WriteFact(text::JsonWriter& json, const char* name, const std::string& value) {
    json.BeginObject();
    Entry(json, "name", name);
    Entry(json, "value", std::string_view(value));
    json.EndObject();
}

std::string FileName(const std::string& path) {
    return std::filesystem::path(project::NativePath(path)).filename().string();
}

std::string TimesText(const series::ResultSeries& series) {
    const std::string count = text::CountText(static_cast<long long>(series.times.size()), "output time");
    return series.realTimes ? count + ", " + text::NumberText(series.times.front().axis) + " to " +
                                  text::NumberText(series.times.back().axis) + " s"
                            : count + " whose real times are not known";
}

void WriteFacts(text::JsonWriter& json, const series::SeriesResults& loaded) {
    const std::optional<double> freeze = loaded.project.FreezeTemperature();
    const project::StageFile& base = loaded.series.base;
    json.Key("facts");
    json.BeginArray();
    WriteFact(json, "Mesh", FileName(loaded.project.MeshFile()));
    WriteFact(json, "Material", FileName(loaded.project.MaterialFile()));
    WriteFact(json, "Freeze temperature", freeze ? text::NumberText(*freeze) + " °C" : "none");
    WriteFact(json, "Stage", std::string(project::StageTitle(base.extension)) + ", run " + base.run);
    WriteFact(json, "Times", TimesText(loaded.series));
    WriteFact(json, "Program", "frozenlayer " QNL_VERSION);
    json.EndArray();
}

void WriteTimes(text::JsonWriter& json, const series::ResultSeries& series) {
    json.Key("time_axis");
    json.BeginObject();
    Entry(json, "name", series.AxisName());
    Entry(json, "unit", series.AxisUnit());
    json.EndObject();
    json.Key("times");
    json.BeginArray();
    for (const series::SeriesTime& time : series.times) {
        json.Value(time.axis);
    }
    json.EndArray();
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

std::string ReportHeader(const series::SeriesResults& loaded, const std::vector<ReportItem>& items,
                         const ValueRange& profileRange) {
    const std::optional<double> freeze = loaded.project.FreezeTemperature();
    text::JsonWriter json;
    json.BeginObject();
    Entry(json, "format", "frozenlayer-view");
    Entry(json, "version", std::int64_t{1});
    Entry(json, "title", std::string_view(loaded.series.base.name));
    Entry(json, "length_unit", "mm");
    Count(json, "nodes", loaded.surface.Nodes());
    Count(json, "triangles", loaded.surface.triangles.size());
    WriteTimes(json, loaded.series);
    json.Key("statuses");
    json.BeginArray();
    for (const char* missing : kMissingValues) {
        json.Value(missing);
    }
    json.EndArray();
    json.Key("items");
    json.BeginArray();
    for (const ReportItem& item : items) {
        WriteItem(json, item);
    }
    json.EndArray();
    WriteProfiles(json, loaded, profileRange);
    Entry(json, "freeze_temperature", freeze.value_or(kNull));
    WriteCurves(json, loaded);
    WriteRegions(json, loaded);
    WriteFacts(json, loaded);
    json.EndObject();
    return WithoutTags(json.Text());
}

}  // namespace qnl::page
