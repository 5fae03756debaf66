#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace vpc::test {

/// Builds the bytes of a LAS file, sound or broken, field by field.
struct LasBuilder {
    struct Point {
        std::int32_t x = 0, y = 0, z = 0;
        std::uint16_t intensity = 0;
        /// Left out in formats without colour.
        std::uint16_t red = 0, green = 0, blue = 0;
    };

    int versionMinor = 2;
    int format = 3;
    /// Bytes per record; the length that belongs to the format where it is not given.
    std::optional<int> recordLength;
    std::array<double, 3> scale{0.01, 0.01, 0.01};
    std::array<double, 3> offset{};
    /// The counts in the header; where not given, the legacy one holds the number of points up to
    /// version 1.3, and the 64-bit one from 1.4 on.
    std::optional<std::uint32_t> legacyCount;
    std::optional<std::uint64_t> count;
    /// Bytes between header and points, in the place of variable-length records.
    std::uint32_t gap = 54;
    std::vector<Point> points;

    static int lengthOfFormat(int format) {
        constexpr int lengths[] = {20, 28, 26, 34, 57, 63, 30, 36, 38, 59, 67};
        return format <= 10 ? lengths[format] : 20;
    }
    /// Where a format has its colour; 0 where it has none.
    static int colourOffset(int format) {
        constexpr int offsets[] = {0, 0, 20, 28, 0, 28, 0, 30, 30, 0, 30};
        return format <= 10 ? offsets[format] : 0;
    }
    int length() const { return recordLength.value_or(lengthOfFormat(format)); }
    std::uint16_t headerSize() const {
        return versionMinor >= 4 ? 375 : versionMinor == 3 ? 235 : 227;
    }

    std::string bytes() const {
        std::string file(headerSize() + gap, '\xAA');
        std::memset(file.data(), 0, headerSize());
        file.replace(0, 4, "LASF");
        file[24] = 1;
        file[25] = static_cast<char>(versionMinor);
        file.replace(26, 11, "test system");
        file.replace(58, 8, "software");
        put<std::uint16_t>(file, 90, 123);
        put<std::uint16_t>(file, 92, 2024);
        put(file, 94, headerSize());
        put<std::uint32_t>(file, 96, headerSize() + gap);
        put<std::uint32_t>(file, 100, gap == 0 ? 0 : 1);
        file[104] = static_cast<char>(format);
        put(file, 105, static_cast<std::uint16_t>(length()));
        const bool isNew = versionMinor >= 4;
        put(file, 107, legacyCount.value_or(isNew ? 0 : static_cast<std::uint32_t>(points.size())));
        for (std::size_t axis = 0; axis < 3; ++axis) {
            put(file, 131 + 8 * axis, scale[axis]);
            put(file, 155 + 8 * axis, offset[axis]);
            put(file, 179 + 16 * axis, 1e6 + static_cast<double>(axis));
            put(file, 187 + 16 * axis, -1e6 - static_cast<double>(axis));
        }
        if (isNew) put<std::uint64_t>(file, 247, count.value_or(points.size()));
        for (const Point& point : points) file += record(point);
        return file;
    }

private:
    template <class T>
    static void put(std::string& bytes, std::size_t position, T value) {
        std::memcpy(bytes.data() + position, &value, sizeof value);
    }

    /// A record, cut off at its length; the fields that no reader looks at are not zero.
    std::string record(const Point& point) const {
        std::string whole(static_cast<std::size_t>(std::max(length(), 70)), '\x5A');
        put(whole, 0, point.x);
        put(whole, 4, point.y);
        put(whole, 8, point.z);
        put(whole, 12, point.intensity);
        if (const auto at = static_cast<std::size_t>(colourOffset(format)); at != 0) {
            put(whole, at, point.red);
            put(whole, at + 2, point.green);
            put(whole, at + 4, point.blue);
        }
        whole.resize(static_cast<std::size_t>(length()));
        return whole;
    }
};

}  // namespace vpc::test
