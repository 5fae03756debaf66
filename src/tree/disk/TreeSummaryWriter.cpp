#include "tree/disk/TreeSummaryWriter.h"

#include <string>

#include "core/geometry/NumberText.h"
#include "core/util/FileTools.h"
#include "tree/disk/VpcDiskNode.h"

namespace vpc {

namespace {

std::string pathText(const char* name, const VpcNodeIndex& path) {
    std::string text = std::string(" ") + name + ".size() = " + std::to_string(path.size()) + "\t";
    for (const auto& step : path)
        text += "[ " + std::to_string(step.first) + ", " + std::to_string(step.second) + ", " +
                std::to_string(step.third) + " ] ";
    return text;
}

std::string pointText(const VpcCoordinate3D& corner) {
    return VpcPoint3D(corner).ToString(false).ToStdString();
}

}  // namespace

bool TreeSummaryWriter::Write(const wxString& fileName) {
    file_ = std::fopen(FileTools::ToNativePath(fileName).c_str(), "we");
    if (file_ == nullptr) return false;
    WriteLine("Point tree File format Version " + std::to_string(tree_.vptVersion));
    const auto summary = tree_.GetNodePointSummary();
    for (std::size_t level = 0; level < summary.size(); ++level) {
        const VpcDiskTree::NodeList& nodes = tree_.GetLevels()[level];
        if (detailed_)
            for (std::size_t n = 0; n < nodes.size(); ++n) WriteNode(level, n, *nodes[n]);
        WriteTotals(level, summary[level].first, summary[level].second);
    }
    const bool written = std::ferror(file_) == 0;
    return std::fclose(file_) == 0 && written;
}

void TreeSummaryWriter::WriteNode(unsigned long long level, unsigned long long index,
                                  const VpcDiskNode& node) {
    WriteLine("Level " + std::to_string(level) + " \t node " + std::to_string(index));
    WriteLine("\t min distance = " + fixedText(node.minDistance));
    WriteLine(pathText("hNodeIndex", node.hNodeIndex));
    WriteLine(pathText("hNrNodes", node.hNrNodes));
    WriteLine("\t\t ROI min " + pointText(node.box.minPoint) + ", -> max " +
              pointText(node.box.maxPoint));
    WriteLine("\t\t nr child nodes = " + std::to_string(node.children.size()));
    WriteLine("\t\t nr points = " + std::to_string(node.nrPoints));
}

void TreeSummaryWriter::WriteTotals(unsigned long long level, unsigned long long nodes,
                                    unsigned long long points) {
    const std::string rule(41, '#');
    WriteLine(rule);
    WriteLine("## in level " + std::to_string(level));
    WriteLine("##   - Total #nodes  = " + std::to_string(nodes));
    WriteLine("##   - Total #points = " + std::to_string(points));
    WriteLine(rule);
}

void TreeSummaryWriter::WriteLine(const std::string& line) {
    std::fwrite(line.data(), 1, line.size(), file_);
    std::fputc('\n', file_);
}

}  // namespace vpc
