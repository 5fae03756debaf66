#include "vpc/view/ViewReport.h"

#include <nlohmann/json.hpp>

#include "core/geometry/NumberText.h"
#include "core/util/DisplayText.h"

namespace vpc {

namespace {

using Json = nlohmann::ordered_json;

Json toJson(const OdGePoint3d& p) {
    return {p.x, p.y, p.z};
}

std::string text(const OdGePoint3d& p) {
    return DisplayText::Exact(p.x) + " " + DisplayText::Exact(p.y) + " " + DisplayText::Exact(p.z);
}

std::string line(const std::string& name, const std::string& value) {
    return name + std::string(14 - name.size(), ' ') + value + "\n";
}

}  // namespace

std::string ViewReport::ToJson() const {
    Json list = Json::array();
    for (std::size_t level = 0; level < levels.size(); ++level)
        list.push_back(
            {{"level", level}, {"nodes", levels[level].first}, {"points", levels[level].second}});
    const Json json = {{"visiblePoints", visiblePoints},
                       {"visibleNodes", visibleNodes},
                       {"selectedLevel", selectedLevel},
                       {"totalPoints", totalPoints},
                       {"capacity", capacity},
                       {"bounds", {{"min", toJson(minimum)}, {"max", toJson(maximum)}}},
                       {"levels", list},
                       {"updateSeconds", updateSeconds}};
    return json.dump(2) + "\n";
}

std::string ViewReport::ToText() const {
    const std::string deepest =
        levels.empty() ? "" : ", " + std::to_string(levels.size() - 1) + " the deepest";
    return line("visible", std::to_string(visiblePoints) + " points of " +
                               std::to_string(visibleNodes) + " nodes") +
           line("level", std::to_string(selectedLevel) + " of " + std::to_string(levels.size()) +
                             " (0 is the coarsest" + deepest + ")") +
           line("in all", std::to_string(totalPoints) + " points") +
           line("capacity", std::to_string(capacity) + " points") +
           line("bounds min", text(minimum)) + line("bounds max", text(maximum)) +
           line("time", fixedText(updateSeconds * 1000.0, 1) + " ms");
}

}  // namespace vpc
