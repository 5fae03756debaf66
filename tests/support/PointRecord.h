#pragma once

#include <cmath>
#include <cstdint>
#include <string>

namespace vpc::test {

/// A point as a tree file holds it, in a form that shares nothing with the library.
struct PointRecord {
    double x = 0;
    double y = 0;
    double z = 0;
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    double intensity = 0;
    double scannerDistance = 1;
    std::int32_t markerId = -1;
    std::int32_t sourceIndex = 0;

    static constexpr std::size_t size = 54;

    double coordinate(std::size_t axis) const { return axis == 0 ? x : axis == 1 ? y : z; }
    /// Whether the point has a place that a tree can hold.
    bool isFinite() const { return std::abs(x) < 1e65 && std::abs(y) < 1e65 && std::abs(z) < 1e65; }
    void narrowColours() {
        red = static_cast<std::uint16_t>(red >> 8);
        green = static_cast<std::uint16_t>(green >> 8);
        blue = static_cast<std::uint16_t>(blue >> 8);
    }

    std::string bytes() const {
        std::string text;
        const auto append = [&](const char*, const auto& value) {
            text.append(reinterpret_cast<const char*>(&value), sizeof value);
        };
        visit(*this, append);
        return text;
    }

    /// Shows the members in the order of the file.
    template <class Point, class Show>
    static void visit(Point& p, Show& show) {
        show("x", p.x), show("y", p.y), show("z", p.z);
        show("red", p.red), show("green", p.green), show("blue", p.blue);
        show("intensity", p.intensity), show("scanner distance", p.scannerDistance);
        show("marker", p.markerId), show("source index", p.sourceIndex);
    }
};

}  // namespace vpc::test
