#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
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
    bool isFinite() const { return std::isfinite(x) && std::isfinite(y) && std::isfinite(z); }
    void narrowColours() {
        red = static_cast<std::uint16_t>(red >> 8);
        green = static_cast<std::uint16_t>(green >> 8);
        blue = static_cast<std::uint16_t>(blue >> 8);
    }

    std::string bytes() const {
        std::string text;
        visit(*this, [&](const auto& value) {
            text.append(reinterpret_cast<const char*>(&value), sizeof value);
        });
        return text;
    }
    static PointRecord fromBytes(const char* bytes) {
        PointRecord point;
        visit(point, [&](auto& value) {
            std::memcpy(&value, bytes, sizeof value);
            bytes += sizeof value;
        });
        return point;
    }

private:
    template <class Point, class Visitor>
    static void visit(Point& p, Visitor&& take) {
        take(p.x), take(p.y), take(p.z);
        take(p.red), take(p.green), take(p.blue);
        take(p.intensity), take(p.scannerDistance), take(p.markerId), take(p.sourceIndex);
    }
};

}  // namespace vpc::test
