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

FileKind kindOf(ExportFormat format) {
    switch (format) {
        case ExportFormat::las:
            return FileKind::las;
        case ExportFormat::ply:
            return FileKind::ply;
        case ExportFormat::pts:
            return FileKind::pts;
        case ExportFormat::ptx:
            return FileKind::ptx;
        case ExportFormat::xyz:
            return FileKind::pointLines;
        case ExportFormat::csv:
            return FileKind::csv;
    }
    return FileKind::other;
}

bool isText(ExportFormat format) {
    return format != ExportFormat::las && format != ExportFormat::ply;
}

}  // namespace vpc
