#pragma once

#include <string>

#include "draw/Image.h"

namespace vpc {

/// Writes a picture as a PNG file. Throws CommandError where that fails.
void writePng(const std::string& path, const draw::Image& image);

}  // namespace vpc
