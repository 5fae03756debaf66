#include "vpc/unit/LasProjection.h"

#include <sys/types.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "core/util/FileHandle.h"
#include "core/util/ValueAt.h"

namespace vpc {

namespace {

using Position = unsigned long long;

constexpr Position legacyHeaderBytes = 227;
/// Up to where the records behind the points are named.
constexpr Position header14Bytes = 247;
constexpr unsigned wktBit = 1U << 4U;
/// Of the record's own header.
constexpr Position recordHeaderBytes = 54;
constexpr Position extendedHeaderBytes = 60;
/// Bounds for what a damaged count or length can cost. Real files hold some dozens of records, and
/// a WKT text of some kilobytes.
constexpr Position mostRecords = 65536;
constexpr Position mostBytes = 1ULL << 20U;

/// Of whose meaning a record is, filled up with zeros.
constexpr std::size_t userBytes = 16;
constexpr const char* projectionUser = "LASF_Projection";
constexpr int keyDirectory = 34735;
constexpr int numberList = 34736;
constexpr int wktSystem = 2112;

/// Shorts of the directory's header, and of each of its keys.
constexpr std::size_t entryShorts = 4;

template <class T>
std::vector<T> valuesOf(const std::string& bytes) {
    std::vector<T> values(bytes.size() / sizeof(T));
    if (!values.empty()) std::memcpy(values.data(), bytes.data(), values.size() * sizeof(T));
    return values;
}

}  // namespace

/// Reads a file's header and those of its records that name the system.
class LasProjection::Reader {
public:
    Reader(std::FILE* file, LasProjection& result) : file_(file), result_(result) {}

    void Read() {
        const std::string header = Bytes(0, header14Bytes);
        if (header.size() < legacyHeaderBytes || header.compare(0, 4, "LASF") != 0) return;
        ReadHeader(header.data());
        const char* const bytes = header.data();
        ReadRecords({valueAt<std::uint16_t>(bytes + 94), valueAt<std::uint32_t>(bytes + 100),
                     recordHeaderBytes, 2, valueAt<std::uint32_t>(bytes + 96)});
        if (bytes[25] >= 4 && header.size() == header14Bytes)
            ReadRecords({valueAt<Position>(bytes + 235), valueAt<std::uint32_t>(bytes + 243),
                         extendedHeaderBytes, 8, ~Position{0}});
        ReadKeys();
    }

private:
    /// Where the records of one kind stand.
    struct Place {
        Position first;
        Position count;
        Position headerBytes;
        /// Bytes of the word that holds a record's length.
        std::size_t lengthBytes;
        Position end;
    };

    /// Fewer than `count` bytes where the file ends before them or cannot be read.
    std::string Bytes(Position position, Position count) {
        std::string bytes(count, '\0');
        const auto offset = static_cast<off_t>(position);
        const bool found = offset >= 0 && fseeko(file_, offset, SEEK_SET) == 0;
        bytes.resize(found ? std::fread(bytes.data(), 1, count, file_) : 0);
        return bytes;
    }

    void ReadHeader(const char* header) {
        result_.prefersWkt_ = (valueAt<std::uint16_t>(header + 6) & wktBit) != 0;
        for (const std::size_t bound : {179U, 187U, 195U, 203U}) {
            const double size = std::abs(valueAt<double>(header + bound));
            if (std::isfinite(size))
                result_.largestCoordinate_ = std::max(result_.largestCoordinate_, size);
        }
    }

    void ReadRecords(const Place& place) {
        Position position = place.first;
        for (Position i = 0; i < std::min(place.count, mostRecords); ++i) {
            const std::string header = Bytes(position, place.headerBytes);
            if (header.size() < place.headerBytes) return;
            Position length = 0;
            std::memcpy(&length, header.data() + 20, place.lengthBytes);
            position += place.headerBytes;
            if (position > place.end || length > place.end - position) return;
            const bool isOurs = header.substr(2, userBytes).c_str() == std::string(projectionUser);
            if (isOurs && length <= mostBytes)
                Take(valueAt<std::uint16_t>(header.data() + 18), Bytes(position, length), length);
            position += length;
        }
    }

    /// Keeps a record's content. The first of a kind counts, and one that is cut short does not.
    void Take(int id, const std::string& content, Position length) {
        if (content.size() < length) return;
        if (id == keyDirectory && directory_.empty()) directory_ = valuesOf<std::uint16_t>(content);
        if (id == numberList && numbers_.empty()) numbers_ = valuesOf<double>(content);
        if (id == wktSystem && result_.wkt_.empty()) result_.wkt_ = content.c_str();
    }

    void ReadKeys() {
        if (directory_.size() < entryShorts) return;
        const std::size_t whole = directory_.size() / entryShorts - 1;
        const std::size_t keys = std::min<std::size_t>(directory_[3], whole);
        for (std::size_t i = 1; i <= keys; ++i) ReadKey(directory_.data() + i * entryShorts);
    }

    /// An entry holds the key, the record that holds its value (0 for the entry itself), a count,
    /// and the value or its place in that record.
    void ReadKey(const std::uint16_t* entry) {
        const int key = entry[0];
        const std::size_t value = entry[3];
        if (entry[1] == 0) result_.codes_.emplace(key, entry[3]);
        if (entry[1] == numberList && value < numbers_.size())
            result_.numbers_.emplace(key, numbers_[value]);
    }

    std::FILE* file_;
    LasProjection& result_;
    std::vector<std::uint16_t> directory_;
    std::vector<double> numbers_;
};

LasProjection LasProjection::Read(const std::string& file) {
    LasProjection projection;
    const FileHandle handle(std::fopen(file.c_str(), "rbe"));
    if (handle) Reader(handle.get(), projection).Read();
    return projection;
}

std::optional<int> LasProjection::Code(int key) const {
    const auto found = codes_.find(key);
    if (found == codes_.end() || found->second == 0) return std::nullopt;
    return found->second;
}

std::optional<double> LasProjection::Number(int key) const {
    const auto found = numbers_.find(key);
    if (found == numbers_.end()) return std::nullopt;
    return found->second;
}

}  // namespace vpc
