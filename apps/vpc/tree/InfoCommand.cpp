#include "vpc/tree/InfoCommand.h"

#include <cstdio>
#include <numeric>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "core/util/DisplayText.h"
#include "core/util/DrawingUnits.h"
#include "core/util/FileTools.h"
#include "core/util/VpcDefinitions.h"
#include "tree/file/LevelTotals.h"
#include "vpc/common/TreeFile.h"

namespace vpc {

namespace {

using Json = nlohmann::ordered_json;

struct Box {
    NodeRecord::Coordinates minimum{};
    NodeRecord::Coordinates maximum{};
};

/// What all node records together say.
struct Summary {
    std::vector<LevelTotals> levels;
    /// The root's box; all zeros where there is no root.
    Box box;
};

Summary summarise(PointTreeReader& tree) {
    Summary summary;
    summary.levels = LevelTotals::Count(tree, [&](const NodeRecord& node) {
        if (node.level == 0) summary.box = {node.boxMinimum, node.boxMaximum};
    });
    return summary;
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

std::string text(const NodeRecord::Coordinates& c) {
    return DisplayText::Exact(c[0]) + " " + DisplayText::Exact(c[1]) + " " +
           DisplayText::Exact(c[2]);
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

void printLevels(const std::vector<LevelTotals>& levels) {
    std::printf("\n%5s  %12s  %16s  %14s\n", "level", "nodes", "points", "fullest node");
    for (std::size_t level = 0; level < levels.size(); ++level)
        std::printf("%5zu  %12llu  %16llu  %14llu\n", level, levels[level].nodes,
                    levels[level].points, levels[level].largestNode);
}

void printNode(const NodeRecord& node) {
    std::printf("%5llu  %8llu  %10llu  %s  [%s] [%s]\n", node.level, node.index, node.points,
                pathText(node).c_str(), text(node.boxMinimum).c_str(),
                text(node.boxMaximum).c_str());
}

Json toJson(const std::vector<LevelTotals>& levels) {
    Json list = Json::array();
    for (std::size_t level = 0; level < levels.size(); ++level)
        list.push_back({{"level", level},
                        {"nodes", levels[level].nodes},
                        {"points", levels[level].points},
                        {"largestNode", levels[level].largestNode},
                        {"recordBytes", levels[level].recordBytes}});
    return list;
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
}

int InfoCommand::Run() {
    const auto tree = openCurrentTreeFile(file_);
    advising("see vpc verify", [&] { json_ ? PrintJson(*tree) : PrintText(*tree); });
    return exitDone;
}

void InfoCommand::PrintText(PointTreeReader& tree) const {
    const PointTreeHeader& header = tree.Header();
    const auto [levels, box] = summarise(tree);
    const std::string unit = DrawingUnits::Name(header.hostValue);
    line("file", file_);
    line("version", std::to_string(header.version));
    line("tree", treeTypeName(header));
    line("unit", std::to_string(header.hostValue) + (unit.empty() ? "" : " " + unit));
    line("bounds min", text(box.minimum));
    line("bounds max", text(box.maximum));
    line("points", std::to_string(scanPoints(levels)) + " (" +
                       std::to_string(storedPoints(levels)) + " with the coarser levels)");
    line("spacing", DisplayText::Exact(header.minimumDistance));
    line("colour max", std::to_string(header.maxRed) + " " + std::to_string(header.maxGreen) + " " +
                           std::to_string(header.maxBlue));
    line("intensity", "at most " + DisplayText::Exact(header.maxIntensity));
    for (const wxString& name : header.sourceNames) line("source", FileTools::ToNativePath(name));
    line("size", std::to_string(header.fileSize) + " bytes (" +
                     DisplayText::Bytes(header.fileSize) + "), of them node records " +
                     std::to_string(recordBytes(levels)) + ", a point record " +
                     std::to_string(header.pointRecordSize));
    printLevels(levels);
    if (!nodes_) return;
    std::printf("\n%5s  %8s  %10s  path  [box min] [box max]\n", "level", "node", "points");
    LevelTotals::Count(tree, printNode);
}

void InfoCommand::PrintJson(PointTreeReader& tree) const {
    const PointTreeHeader& header = tree.Header();
    const auto [levels, box] = summarise(tree);
    const Json json = {
        {"file", tree.FileName().utf8_string()},
        {"version", header.version},
        {"treeType", {{"code", header.treeType}, {"name", treeTypeName(header)}}},
        {"unit", {{"code", header.hostValue}, {"name", DrawingUnits::Name(header.hostValue)}}},
        {"bounds", {{"min", box.minimum}, {"max", box.maximum}}},
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
        {"levels", toJson(levels)}};
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
