#include "vpc/view/PngFile.h"

#include <png.h>

#include <stdexcept>
#include <vector>

#include "vpc/common/OutputFile.h"

namespace vpc {

void writePng(const std::string& path, const draw::Image& image) {
    png_image description = {};
    description.version = PNG_IMAGE_VERSION;
    description.width = static_cast<png_uint_32>(image.Size().width);
    description.height = static_cast<png_uint_32>(image.Size().height);
    description.format = PNG_FORMAT_RGB;
    png_alloc_size_t bytes = PNG_IMAGE_PNG_SIZE_MAX(description);
    std::vector<char> png(bytes);
    if (png_image_write_to_memory(&description, png.data(), &bytes, 0, image.Data(), 0, nullptr) ==
        0)
        throw std::runtime_error(std::string("the picture cannot be made: ") + description.message);
    writeOutputFile(path, [&](ReplacementFile& file) { file.Write(png.data(), bytes); });
}

}  // namespace vpc
