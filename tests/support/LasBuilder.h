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

    /// A variable-length record.
    struct Record {
        std::uint16_t id = 0;
        std::string content;
        std::string user = "LASF_Projection";
        /// What its header claims; the content's length where it is not given.
        std::optional<std::uint64_t> length = std::nullopt;
    };

    int versionMinor = 2;
    std::uint16_t globalEncoding = 0;
    /// In place of the gap, and behind the points.
    std::vector<Record> records, extendedRecords;
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

    /// The content of a record 34735: the keys' entries behind their count.
    static std::string keys(const std::vector<std::array<std::uint16_t, 4>>& entries) {
        std::string content;
        add<std::array<std::uint16_t, 4>>(content,
                                          {1, 1, 0, static_cast<std::uint16_t>(entries.size())});
        for (const auto& entry : entries) add(content, entry);
        return content;
    }

    std::string bytes() const {
        std::string front;
        for (const Record& r : records) addRecord<std::uint16_t>(front, r);
        if (records.empty()) front.assign(gap, '\xAA');
        std::string file = std::string(headerSize(), '\0') + front;
        file.replace(0, 4, "LASF");
        file[24] = 1;
        file[25] = static_cast<char>(versionMinor);
        file.replace(26, 11, "test system");
        file.replace(58, 8, "software");
        put<std::uint16_t>(file, 90, 123);
        put<std::uint16_t>(file, 92, 2024);
        put(file, 94, headerSize());
        put(file, 6, globalEncoding);
        put(file, 96, static_cast<std::uint32_t>(file.size()));
        put(file, 100, static_cast<std::uint32_t>(records.empty() && gap > 0 ? 1 : records.size()));
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
        if (isNew) put<std::uint64_t>(file, 235, file.size());
        if (isNew) put(file, 243, static_cast<std::uint32_t>(extendedRecords.size()));
        for (const Record& r : extendedRecords) addRecord<std::uint64_t>(file, r);
        return file;
    }

private:
    template <class T>
    static void put(std::string& bytes, std::size_t position, T value) {
        std::memcpy(bytes.data() + position, &value, sizeof value);
    }

    template <class T>
    static void add(std::string& bytes, T value) {
        bytes.resize(bytes.size() + sizeof value);
        put(bytes, bytes.size() - sizeof value, value);
    }
    /// A variable-length record whose header has a length of this type.
    template <class Length>
    static void addRecord(std::string& bytes, const Record& r) {
        std::string user = r.user;
        user.resize(16);
        bytes += std::string(2, '\0') + user;
        add(bytes, r.id);
        add(bytes, static_cast<Length>(r.length.value_or(r.content.size())));
        bytes += std::string(32, ' ') + r.content;
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
