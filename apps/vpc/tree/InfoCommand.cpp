#include "vpc/tree/InfoCommand.h"

#include <cstdio>
#include <numeric>
#include <optional>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "core/geometry/NumberText.h"
#include "core/util/DisplayText.h"
#include "core/util/DrawingUnits.h"
#include "core/util/FileTools.h"
#include "core/util/VpcDefinitions.h"
#include "tree/file/LevelTotals.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/Progress.h"
#include "vpc/common/TreeFile.h"
#include "vpc/tree/DeepestLevel.h"
#include "vpc/tree/MeasuredBounds.h"
#include "vpc/tree/PointStatistics.h"

namespace vpc {

namespace {

using Json = nlohmann::ordered_json;

/// As many as a reader wants to see; one or two more give a number back to the last bit, but
/// show how it was rounded. JSON has them.
constexpr int digits = 15;
/// The same for what is added up.
constexpr int digitsOfMean = 12;

/// What is asked of a file beside its header.
struct Content {
    std::vector<LevelTotals> levels;
    /// The smallest box around the points; all zeros where there is not even a root.
    Bounds bounds;
    /// Only where it was asked for and there are points.
    std::optional<PointStatistics> statistics;
};

Content contentOf(PointTreeReader& tree, bool withStatistics) {
    Content content;
    DeepestLevel deepest(tree);
    Bounds root;
    content.levels = LevelTotals::Count(tree, [&](const NodeRecord& node) {
        if (node.level == 0) root = {node.boxMinimum, node.boxMaximum};
        deepest.Add(node);
    });
    Progress progress;
    progress.Begin("reading points", deepest.Points());
    const DeepestLevel::Watcher watcher = [&](unsigned long long points) {
        Interrupt::Check();
        progress.Add(points);
    };
    if (withStatistics && deepest.Points() > 0)
        content.statistics = PointStatistics::Measure(deepest, root, watcher);
    content.bounds = content.statistics ? content.statistics->Extent()
                                        : MeasuredBounds::Find(deepest, root, watcher);
    return content;
}

std::string treeTypeName(const PointTreeHeader& header) {
    return FileTools::ToNativePath(
        VpcDefinitions::GetStringVpcTreeType(static_cast<VpcTreeType>(header.treeType)));
}

unsigned long long recordBytes(const std::vector<LevelTotals>& levels) {
    return std::accumulate(
        levels.begin(), levels.end(), 0ULL,
        [](unsigned long long sum, const LevelTotals& level) { return sum + level.recordBytes; });
}

unsigned long long scanPoints(const std::vector<LevelTotals>& levels) {
    return levels.empty() ? 0 : levels.back().points;
}

unsigned long long storedPoints(const std::vector<LevelTotals>& levels) {
    return std::accumulate(
        levels.begin(), levels.end(), 0ULL,
        [](unsigned long long sum, const LevelTotals& level) { return sum + level.points; });
}

std::string unitText(unsigned long long code) {
    const std::string name = DrawingUnits::Name(code);
    return (name.empty() ? "unknown" : name) + " (code " + std::to_string(code) + ")";
}

std::string text(const NodeRecord::Coordinates& c) {
    return generalText(c[0], digits) + " " + generalText(c[1], digits) + " " +
           generalText(c[2], digits);
}

std::string pathText(const NodeRecord& node) {
    std::string path;
    for (const NodeRecord::Triplet& step : node.indexPath)
        path += (path.empty() ? "" : "/") + std::to_string(step[0]) + "," +
                std::to_string(step[1]) + "," + std::to_string(step[2]);
    return path;
}

void line(const char* name, const std::string& value) {
    std::printf("%-12s  %s\n", name, value.c_str());
}

void printLevels(const Content& content) {
    std::printf("\n%5s  %12s  %16s  %14s%s\n", "level", "nodes", "points", "fullest node",
                content.statistics ? "       spacing" : "");
    for (std::size_t level = 0; level < content.levels.size(); ++level) {
        const LevelTotals& totals = content.levels[level];
        std::printf("%5zu  %12llu  %16llu  %14llu", level, totals.nodes, totals.points,
                    totals.largestNode);
        if (content.statistics)
            std::printf("  %12s",
                        generalText(content.statistics->SpacingOf(totals.points), 4).c_str());
        std::printf("\n");
    }
}

void printStatistics(const PointStatistics& statistics, unsigned long long points,
                     unsigned long long unit) {
    const std::string square = " (unit: " + DrawingUnits::Name(unit) + ")";
    std::printf("\n%-12s  %20s  %20s  %20s\n", "statistics", "minimum", "maximum", "mean");
    for (const PointStatistics::Range& range : statistics.ranges)
        std::printf("%-12s  %20s  %20s  %20s\n", range.name,
                    generalText(range.minimum, digits).c_str(),
                    generalText(range.maximum, digits).c_str(),
                    generalText(range.mean, digitsOfMean).c_str());
    line("covered area", generalText(statistics.coveredArea) + " square units" + square);
    line("density", generalText(statistics.Density(points), 4) + " points a square unit" + square);
}

void printNode(const NodeRecord& node) {
    std::printf("%5llu  %8llu  %10llu  %s  [%s] [%s]\n", node.level, node.index, node.points,
                pathText(node).c_str(), text(node.boxMinimum).c_str(),
                text(node.boxMaximum).c_str());
}

Json levelsToJson(const Content& content) {
    Json list = Json::array();
    for (std::size_t level = 0; level < content.levels.size(); ++level) {
        const LevelTotals& totals = content.levels[level];
        list.push_back({{"level", level},
                        {"nodes", totals.nodes},
                        {"points", totals.points},
                        {"largestNode", totals.largestNode},
                        {"recordBytes", totals.recordBytes}});
        if (content.statistics)
            list.back()["spacing"] = content.statistics->SpacingOf(totals.points);
    }
    return list;
}

Json toJson(const PointStatistics& statistics, unsigned long long points) {
    Json json;
    for (const PointStatistics::Range& range : statistics.ranges)
        json[range.name] = {
            {"minimum", range.minimum}, {"maximum", range.maximum}, {"mean", range.mean}};
    json["coveredArea"] = statistics.coveredArea;
    json["density"] = statistics.Density(points);
    return json;
}

Json toJson(const NodeRecord& node) {
    return {{"level", node.level},
            {"index", node.index},
            {"path", node.indexPath},
            {"children", {node.grid.x, node.grid.y, node.grid.z}},
            {"points", node.points},
            {"minimumDistance", node.minimumDistance},
            {"bounds", {{"min", node.boxMinimum}, {"max", node.boxMaximum}}},
            {"recordPosition", node.position},
            {"pointBlock", node.pointBlock}};
}

Json toJson(const std::vector<wxString>& names) {
    Json list = Json::array();
    for (const wxString& name : names) list.push_back(name.utf8_string());
    return list;
}

std::string dump(const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

InfoCommand::InfoCommand(CLI::App& app)
    : Command(app, "info", "Say what is in a tree file, without loading it") {
    Options().add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
    Options().add_flag("--json", json_, "Answer in JSON");
    Options().add_flag("--nodes", nodes_, "List every node as well");
    Options().add_flag("--stats", statistics_,
                       "Read all points and add what they come to: the least, the greatest and the "
                       "mean of their values, their density, and the spacing of each level");
}

int InfoCommand::Run() {
    Interrupt::Catch();
    const auto tree = openCurrentTreeFile(file_);
    advising("see vpc verify", [&] { json_ ? PrintJson(*tree) : PrintText(*tree); });
    return exitDone;
}

void InfoCommand::PrintText(PointTreeReader& tree) const {
    const PointTreeHeader& header = tree.Header();
    const Content content = contentOf(tree, statistics_);
    const auto& [levels, bounds, statistics] = content;
    line("file", file_);
    line("version", std::to_string(header.version));
    line("tree", treeTypeName(header));
    line("unit", unitText(header.hostValue));
    line("bounds min", text(bounds.minimum));
    line("bounds max", text(bounds.maximum));
    line("points", std::to_string(scanPoints(levels)) + " (" +
                       std::to_string(storedPoints(levels)) + " with the coarser levels)");
    line("min distance", DisplayText::Exact(header.minimumDistance));
    line("colour max", std::to_string(header.maxRed) + " " + std::to_string(header.maxGreen) + " " +
                           std::to_string(header.maxBlue));
    line("intensity", "at most " + DisplayText::Exact(header.maxIntensity));
    for (const wxString& name : header.sourceNames) line("source", FileTools::ToNativePath(name));
    line("size", std::to_string(header.fileSize) + " bytes (" +
                     DisplayText::Bytes(header.fileSize) + "), of them node records " +
                     std::to_string(recordBytes(levels)) + ", a point record " +
                     std::to_string(header.pointRecordSize));
    printLevels(content);
    if (statistics) printStatistics(*statistics, scanPoints(levels), header.hostValue);
    if (!nodes_) return;
    std::printf("\n%5s  %8s  %10s  path  [box min] [box max]\n", "level", "node", "points");
    LevelTotals::Count(tree, printNode);
}

void InfoCommand::PrintJson(PointTreeReader& tree) const {
    const PointTreeHeader& header = tree.Header();
    const Content content = contentOf(tree, statistics_);
    const auto& [levels, bounds, statistics] = content;
    Json json = {
        {"file", tree.FileName().utf8_string()},
        {"version", header.version},
        {"treeType", {{"code", header.treeType}, {"name", treeTypeName(header)}}},
        {"unit", {{"code", header.hostValue}, {"name", DrawingUnits::Name(header.hostValue)}}},
        {"bounds", {{"min", bounds.minimum}, {"max", bounds.maximum}}},
        {"points", scanPoints(levels)},
        {"storedPoints", storedPoints(levels)},
        {"minimumDistance", header.minimumDistance},
        {"largestNodeCount", header.largestNodeCount},
        {"maxColour", {header.maxRed, header.maxGreen, header.maxBlue}},
        {"maxIntensity", header.maxIntensity},
        {"sources", toJson(header.sourceNames)},
        {"size", header.fileSize},
        {"recordBytes", recordBytes(levels)},
        {"pointRecordSize", header.pointRecordSize},
        {"levels", levelsToJson(content)}};
    if (statistics) json["statistics"] = toJson(*statistics, scanPoints(levels));
    std::string head = dump(json, 2);
    if (!nodes_) {
        std::printf("%s\n", head.c_str());
        return;
    }
    // The nodes are printed as they are read, so that a large tree takes no memory.
    head.erase(head.rfind('\n'));
    std::printf("%s,\n  \"nodes\": [", head.c_str());
    const char* separator = "\n    ";
    LevelTotals::Count(tree, [&](const NodeRecord& node) {
        std::printf("%s%s", separator, dump(toJson(node), -1).c_str());
        separator = ",\n    ";
    });
    std::printf("\n  ]\n}\n");
}

}  // namespace vpc
