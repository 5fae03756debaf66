#include "LasSampleWriter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace vpc {

namespace {

constexpr double scale = 0.001;
constexpr double stepsPerMetre = 1000.0;
constexpr std::array<double, 3> offsets = {SampleFlight::originX, SampleFlight::originY, 0.0};
constexpr std::uint16_t headerSize12 = 227;
constexpr std::uint16_t headerSize14 = 375;
constexpr double scanAngle = 20.0;

/// Packs values one after the other.
template <std::size_t size>
class Packer {
public:
    template <class T>
    void Put(T value) {
        std::memcpy(bytes_.data() + used_, &value, sizeof value);
        used_ += sizeof value;
    }
    void PutText(const char* text, std::size_t length) {
        std::memcpy(bytes_.data() + used_, text, std::min(length, std::strlen(text)));
        used_ += length;
    }
    void Skip(std::size_t count) { used_ += count; }
    void WriteTo(OutputFile& file) const { file.Write(bytes_.data(), used_); }

private:
    std::array<char, size> bytes_{};
    std::size_t used_ = 0;
};

std::uint8_t byteOf(int value) {
    return static_cast<std::uint8_t>(value);
}

}  // namespace

LasSampleWriter::LasSampleWriter(unsigned long long points, std::uint64_t seed, int format)
    : SampleWriter(points, seed), format7_(format == 7) {
    minimum_.fill(std::numeric_limits<std::int32_t>::max());
    maximum_.fill(std::numeric_limits<std::int32_t>::min());
}

void LasSampleWriter::Write(OutputFile& file) {
    WriteHeader(file);
    SampleFlight flight(Points(), Seed());
    for (unsigned long long i = 0; i < Points(); ++i) {
        CheckInterrupt(i);
        WritePoint(file, flight.Next(), flight);
    }
    // Now that the bounds are known, the header once more.
    file.Rewind();
    WriteHeader(file);
}

void LasSampleWriter::WriteHeader(OutputFile& file) const {
    const std::uint16_t headerSize = format7_ ? headerSize14 : headerSize12;
    Packer<headerSize14> header;
    header.PutText("LASF", 4);
    header.Put(std::uint16_t{1});
    // Times are adjusted standard GPS; format 7 must name its coordinate system as WKT, if any.
    header.Put(static_cast<std::uint16_t>(format7_ ? 0x11 : 0x01));
    header.Skip(16);
    header.Put(std::uint8_t{1});
    header.Put(byteOf(format7_ ? 4 : 2));
    header.PutText("made-up landscape", 32);
    header.PutText("vpc sample", 32);
    header.Put(std::uint16_t{1});  // a fixed date, since every run is to give the same bytes
    header.Put(std::uint16_t{2026});
    header.Put(headerSize);
    header.Put(std::uint32_t{headerSize});
    header.Put(std::uint32_t{0});
    header.Put(byteOf(format7_ ? 7 : 3));
    header.Put(static_cast<std::uint16_t>(format7_ ? 36 : 34));
    const auto legacyPoints = static_cast<std::uint32_t>(format7_ ? 0 : Points());
    header.Put(legacyPoints);
    header.Put(legacyPoints);
    header.Skip(4 * sizeof(std::uint32_t));
    for (int axis = 0; axis < 3; ++axis) header.Put(scale);
    for (const double offset : offsets) header.Put(offset);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        header.Put(maximum_[axis] * scale + offsets[axis]);
        header.Put(minimum_[axis] * scale + offsets[axis]);
    }
    if (format7_) {
        header.Skip(sizeof(std::uint64_t) + sizeof(std::uint64_t) + sizeof(std::uint32_t));
        header.Put(std::uint64_t{Points()});
        header.Put(std::uint64_t{Points()});
        header.Skip(14 * sizeof(std::uint64_t));
    }
    header.WriteTo(file);
}

void LasSampleWriter::WritePoint(OutputFile& file, const SamplePoint& point,
                                 const SampleFlight& flight) {
    Packer<36> record;
    const std::array<double, 3> place = {point.x, point.y, point.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto step = static_cast<std::int32_t>(
            std::floor((place[axis] - offsets[axis]) * stepsPerMetre + 0.5));
        minimum_[axis] = std::min(minimum_[axis], step);
        maximum_[axis] = std::max(maximum_[axis], step);
        record.Put(step);
    }
    record.Put(point.intensity);
    const int direction = flight.Forwards() ? 0x40 : 0;
    const double angle = flight.Across() * scanAngle;
    const auto strip = static_cast<std::uint16_t>(flight.Strip() + 1);
    // Every shot has one return, the first of one.
    if (format7_) {
        record.Put(byteOf(0x11));
        record.Put(byteOf(direction));
        record.Put(static_cast<std::uint8_t>(point.classification));
        record.Put(std::uint8_t{0});
        record.Put(static_cast<std::int16_t>(std::floor(angle / 0.006)));
    } else {
        record.Put(byteOf(0x09 | direction));
        record.Put(static_cast<std::uint8_t>(point.classification));
        record.Put(static_cast<std::int8_t>(std::floor(angle)));
        record.Put(std::uint8_t{0});
    }
    record.Put(strip);
    record.Put(flight.Time());
    record.Put(point.red);
    record.Put(point.green);
    record.Put(point.blue);
    record.WriteTo(file);
}

}  // namespace vpc
