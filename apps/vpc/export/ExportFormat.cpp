#include "vpc/export/ExportFormat.h"

#include <CLI/CLI.hpp>

namespace vpc {

std::vector<std::string> exportFormatNames() {
    return {"las", "ply", "pts", "ptx", "xyz", "csv"};
}

std::optional<ExportFormat> exportFormatOf(const std::string& name) {
    const auto names = exportFormatNames();
    const auto found = std::find(names.begin(), names.end(), CLI::detail::to_lower(name));
    if (found == names.end()) return std::nullopt;
    return static_cast<ExportFormat>(found - names.begin());
}

bool isText(ExportFormat format) {
    return format != ExportFormat::las && format != ExportFormat::ply;
}

}  // namespace vpc
