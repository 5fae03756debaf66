#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vpc {

/// The formats that points are written in.
enum class ExportFormat { las, ply, pts, ptx, xyz, csv };

/// Their names, which are the extensions of their files, in the order of the enumeration.
std::vector<std::string> exportFormatNames();
/// The format of that name, in small or capital letters; nothing where there is none.
std::optional<ExportFormat> exportFormatOf(const std::string& name);
bool isText(ExportFormat format);

}  // namespace vpc
