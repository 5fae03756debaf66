#include "viewer/preparing/UnitList.h"

#include <algorithm>
#include <sstream>

namespace vpc::viewer {

namespace {

/// "6 Meters" without its code.
std::string nameOf(const std::string& entry) {
    const std::size_t start = entry.find_first_not_of("0123456789 ");
    return start == std::string::npos ? std::string() : entry.substr(start);
}

/// The line that explains the option; empty where there is none.
std::string unitLine(const std::string& help) {
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);)
        if (line.substr(std::min(line.find_first_not_of(' '), line.size())).starts_with("--unit "))
            return line;
    return {};
}

}  // namespace

std::vector<std::string> unitsInHelp(const std::string& help) {
    std::vector<std::string> units = {"auto"};
    const std::string line = unitLine(help);
    const std::size_t list = line.rfind(": ");
    if (list == std::string::npos) return units;
    std::istringstream entries(line.substr(list + 1));
    for (std::string entry; std::getline(entries, entry, ',');)
        if (const std::string name = nameOf(entry); !name.empty()) units.push_back(name);
    return units;
}

}  // namespace vpc::viewer
