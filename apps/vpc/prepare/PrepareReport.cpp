#include "vpc/prepare/PrepareReport.h"

#include <filesystem>
#include <numeric>

#include <nlohmann/json.hpp>

#include "core/util/DisplayText.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "tree/file/LevelTotals.h"
#include "tree/file/PointTreeReader.h"
#include "vpc/common/Command.h"

namespace vpc {

namespace {

using Json = nlohmann::ordered_json;

/// The scan whose name comes first in the warning, of several there the longest name; null where it
/// names none.
Json scanNamedIn(const std::string& warning, const std::vector<std::string>& scans) {
    const std::string* named = nullptr;
    std::size_t first = std::string::npos;
    for (const std::string& scan : scans) {
        const std::size_t at = warning.find(scan);
        const bool isLonger = at == first && named != nullptr && scan.size() > named->size();
        if (at >= first && !isLonger) continue;
        first = at;
        named = &scan;
    }
    return named == nullptr ? Json() : Json(*named);
}

}  // namespace

PrepareReport PrepareReport::Of(const std::string& output) {
    PrepareReport report;
    report.output = output;
    try {
        PointTreeReader tree(FileTools::FromNativePath(std::filesystem::absolute(output).string()));
        const std::vector<LevelTotals> levels = LevelTotals::Count(tree);
        report.bytes = tree.Size();
        report.levels = levels.size();
        report.points = levels.empty() ? 0 : levels.back().points;
        report.nodes = std::accumulate(
            levels.begin(), levels.end(), 0ULL,
            [](unsigned long long sum, const LevelTotals& level) { return sum + level.nodes; });
    } catch (const IoError& failure) {
        throw CommandError("'" + output + "' was written but " +
                           FileTools::ToNativePath(failure.Problem()) +
                           "; check its disk, then see vpc verify");
    }
    return report;
}

std::string PrepareReport::ToText() const {
    return output + "\n  points  " + std::to_string(points) + "\n  levels  " +
           std::to_string(levels) + "\n  nodes   " + std::to_string(nodes) + "\n  unit    " + unit +
           "\n  size    " + DisplayText::Bytes(bytes) + "\n  time    " + time + "\n";
}

std::string PrepareReport::ToJson(const std::vector<std::string>& warnings,
                                  const std::vector<std::string>& scans) const {
    Json told = Json::array();
    for (const std::string& warning : warnings)
        told.push_back({{"file", scanNamedIn(warning, scans)}, {"text", warning}});
    const Json report = {{"output", output}, {"points", points}, {"levels", levels},
                         {"nodes", nodes},   {"bytes", bytes},   {"seconds", seconds},
                         {"unit", unit},     {"warnings", told}};
    // A name need not be UTF-8, as JSON is.
    return report.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace vpc
