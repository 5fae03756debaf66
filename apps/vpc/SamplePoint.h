#pragma once

#include <cstdint>

namespace vpc {

/// One point of a made-up scan.
struct SamplePoint {
    /// Classes as LAS files number them.
    enum Class : std::uint8_t { ground = 2, tree = 5, building = 6, road = 11 };

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    /// Sixteen bits deep.
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    /// 0 to 32767.
    std::uint16_t intensity = 0;
    Class classification = ground;
};

}  // namespace vpc
