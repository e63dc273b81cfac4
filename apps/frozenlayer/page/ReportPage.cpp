#include "page/ReportPage.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <numeric>

#include "page/ReportBlocks.h"
#include "page/ReportHeader.h"
#include "page/ReportItems.h"
#include "platform/HostFiles.h"
#include "project/TargetPlace.h"
#include "series/SeriesSize.h"
#include "text/NumberText.h"

namespace qnl::page {

namespace {

/// Writes the elements of the page; what goes wrong shows when the file is committed.
class PageFile {
public:
    explicit PageFile(ReplacedFile& file) : file_(file) {}

    void Text(const std::string& text) { file_.Append(text); }
    void Block(const std::string& name, const std::string& base64) {
        Text("<script type=\"application/octet-stream\" id=\"qnl-block-" + name + "\">" + base64 +
             "</script>\n");
    }

private:
    ReplacedFile& file_;
};

/// Number on the page of each surface node.
std::vector<int> PageNumbers(const std::vector<int>& order) {
    std::vector<int> numbers(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        numbers[static_cast<std::size_t>(order[i])] = static_cast<int>(i);
    }
    return numbers;
}

Integers Positions(const series::LoadedSeries& loaded) {
    std::vector<float> coordinates;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const int node : loaded.order) {
            coordinates.push_back(loaded.surface.points[static_cast<std::size_t>(node)][axis]);
        }
    }
    return BitsOf(coordinates);
}

/// Triangles in page numbers, by ascending smallest node.
Integers Triangles(const series::LoadedSeries& loaded, const std::vector<int>& numbers) {
    std::vector<std::array<int, 3>> triangles = loaded.surface.triangles;
    for (std::array<int, 3>& triangle : triangles) {
        for (int& node : triangle) {
            node = numbers[static_cast<std::size_t>(node)];
        }
    }
    const auto smallest = [](const std::array<int, 3>& t) { return std::min({t[0], t[1], t[2]}); };
    std::stable_sort(triangles.begin(), triangles.end(),
                     [&](const auto& a, const auto& b) { return smallest(a) < smallest(b); });
    Integers words;
    for (std::size_t corner = 0; corner < 3; ++corner) {
        for (const std::array<int, 3>& triangle : triangles) {
            words.push_back(static_cast<std::uint32_t>(triangle[corner]));
        }
    }
    return words;
}

Integers Labels(const series::LoadedSeries& loaded) {
    Integers labels;
    for (const int node : loaded.order) {
        labels.push_back(static_cast<std::uint32_t>(loaded.surface.labels[static_cast<std::size_t>(node)]));
    }
    return labels;
}

void WriteSurface(const series::LoadedSeries& loaded, const std::vector<int>& numbers, PageFile& page) {
    page.Block("positions", EncodeBlock(Positions(loaded)));
    page.Block("triangles", EncodeBlock(Triangles(loaded, numbers)));
    page.Block("labels", EncodeBlock(Labels(loaded)));
}

/// Every block is written against the one of the time before, if there is one.
void WriteItemBlocks(const ReportItem& item, const series::LoadedSeries& loaded, PageFile& page) {
    Levels before;
    for (std::size_t t = 0; t < item.values.size(); ++t) {
        if (item.values[t].empty()) {
            before.clear();
            continue;
        }
        Levels levels = ItemLevels(item, t, loaded);
        page.Block(item.BlockName(t), EncodeBlock(levels, before.empty() ? nullptr : &before));
        before = std::move(levels);
    }
}

void WriteProfileBlocks(const series::DepthProfiles& profiles, const ValueRange& range,
                        const std::vector<int>& numbers, PageFile& page) {
    Integers nodes;
    for (const int node : profiles.nodes) {
        nodes.push_back(static_cast<std::uint32_t>(numbers[static_cast<std::size_t>(node)]));
    }
    page.Block("profile-nodes", EncodeBlock(nodes));
    page.Block("profile-counts", EncodeBlock(Integers(profiles.counts.begin(), profiles.counts.end())));
    page.Block("profile-depths", EncodeBlock(BitsOf(profiles.depths)));
    Levels before;
    for (std::size_t t = 0; t < profiles.temperatures.size(); ++t) {
        Levels levels;
        for (const float value : profiles.temperatures[t]) {
            levels.push_back(LevelOf(value, range));
        }
        page.Block("profile-" + std::to_string(t), EncodeBlock(levels, t == 0 ? nullptr : &before));
        before = std::move(levels);
    }
}

void WriteData(const series::LoadedSeries& loaded, PageFile& page) {
    const std::vector<ReportItem> items = ReportItems(loaded);
    const ValueRange profileRange = FiniteRange(loaded.profiles.temperatures);
    const std::vector<int> numbers = PageNumbers(loaded.order);
    page.Text("<script type=\"application/json\" id=\"qnl-header\">" +
              ReportHeader(loaded, items, profileRange) + "</script>\n");
    WriteSurface(loaded, numbers, page);
    for (const ReportItem& item : items) {
        WriteItemBlocks(item, loaded, page);
    }
    if (!loaded.profiles.nodes.empty()) {
        WriteProfileBlocks(loaded.profiles, profileRange, numbers, page);
    }
}

}  // namespace

void CheckPagePlace(const PageTemplate& frame, const series::SeriesFiles& series, const std::string& path) {
    constexpr std::uintmax_t kValuesPerByte = 4;  // results of parts take a byte a value and more
    const std::string folder = project::FolderOf(path);
    project::CheckWritable(folder);
    project::CheckRoom(folder, frame.before.size() + frame.behind.size() +
                                   series::MeasureSeries(series).values / kValuesPerByte);
}

bool WriteReportPage(const PageTemplate& frame, const series::LoadedSeries& loaded, const std::string& path) {
    if (!loaded.withoutHistory.empty()) {
        std::cerr << loaded.withoutHistory + "\n";
    }
    ReplacedFile file(path, "wb");
    if (!file) {
        return false;
    }
    PageFile page(file);
    page.Text(frame.before);
    WriteData(loaded, page);
    page.Text(frame.behind);
    return file.Commit();
}

}  // namespace qnl::page
