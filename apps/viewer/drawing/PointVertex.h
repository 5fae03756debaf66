#pragma once

#include <cstdint>

namespace vpc::viewer {

/// A point as it is drawn: its place relative to a local origin, so that floats hold a millimetre
/// wherever the drawing lies, and its colour as 0xRRGGBB.
struct PointVertex {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
    std::uint32_t colour = 0;
};
static_assert(sizeof(PointVertex) == 16);

}  // namespace vpc::viewer
