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

OutputKind kindOf(ExportFormat format) {
    switch (format) {
        case ExportFormat::las:
            return OutputKind::las;
        case ExportFormat::ply:
            return OutputKind::ply;
        case ExportFormat::pts:
            return OutputKind::pts;
        case ExportFormat::ptx:
            return OutputKind::ptx;
        case ExportFormat::xyz:
            return OutputKind::pointLines;
        case ExportFormat::csv:
            return OutputKind::csv;
    }
    return OutputKind::other;
}

bool isText(ExportFormat format) {
    return format != ExportFormat::las && format != ExportFormat::ply;
}

}  // namespace vpc
