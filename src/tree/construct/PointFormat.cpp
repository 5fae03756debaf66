#include "tree/construct/PointFormat.h"

#include <bit>
#include <cmath>
#include <limits>

namespace vpc {

namespace {

template <class T>
void store(char* place, T value) {
    std::memcpy(place, &value, sizeof value);
}

template <class T>
T load(const char* place) {
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

/// The same value to the last bit: 0.0 and -0.0 differ, and a NaN is like itself.
bool same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// The nearest integer, where one of 32 bits is near, and any other number elsewhere.
std::int32_t nearest(double value) {
    // At this size a double's steps are 1, so its low bits are the integer. That is faster than a
    // conversion, and defined for every value.
    constexpr double unitSteps = 6755399441055744.0;  // 1.5 * 2^52
    return static_cast<std::int32_t>(
        static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value + unitSteps)));
}

bool isGreyOfIntensity(const VpcPoint3D& point) {
    const auto grey = static_cast<std::uint16_t>(nearest(point.intensity));
    return point.red == grey && point.green == grey && point.blue == grey;
}

}  // namespace

PointFormat::PointFormat(const VpcPoint3D& first, const std::optional<CoordinateGrid>& grid)
    : onGrid_(grid.has_value()),
      colour_(Colour::Constant),
      intensityIsShort_(true),
      storesDistance_(false),
      storesOrigin_(false),
      grid_(grid.value_or(CoordinateGrid{})),
      constant_(first) {
    PlaceFields();
}

void PointFormat::PlaceFields() {
    constexpr unsigned colourBytes[] = {0, 0, 3, 6};
    constexpr unsigned doubleBytes = sizeof(double);
    constexpr unsigned shortBytes = sizeof(std::int16_t);
    constexpr unsigned wholeBytes = sizeof(std::int32_t);
    colourAt_ = 3 * (onGrid_ ? wholeBytes : doubleBytes);
    intensityAt_ = colourAt_ + colourBytes[static_cast<unsigned>(colour_)];
    distanceAt_ = intensityAt_ + (intensityIsShort_ ? shortBytes : doubleBytes);
    originAt_ = distanceAt_ + (storesDistance_ ? doubleBytes : 0);
    recordSize_ = originAt_ + (storesOrigin_ ? 2 * wholeBytes : 0);
}

bool PointFormat::PackOrWiden(const VpcPoint3D* points, unsigned long long count, char* records) {
    bool fits = true;
    const auto require = [&fits](bool fieldFits, const auto& widen) {
        if (!fieldFits) widen();
        fits = fits && fieldFits;
    };
    require(PackCoordinates(points, count, records), [this] { onGrid_ = false; });
    require(PackColours(points, count, records),
            [this] { colour_ = static_cast<Colour>(static_cast<unsigned>(colour_) + 1); });
    require(PackIntensities(points, count, records), [this] { intensityIsShort_ = false; });
    require(PackDistances(points, count, records), [this] { storesDistance_ = true; });
    require(PackOrigins(points, count, records), [this] { storesOrigin_ = true; });
    if (!fits) PlaceFields();
    return fits;
}

bool PointFormat::PackCoordinates(const VpcPoint3D* points, unsigned long long count,
                                  char* records) const {
    if (!onGrid_) {
        for (unsigned long long i = 0; i < count; ++i)
            store(records + i * recordSize_, Coordinates{points[i].x, points[i].y, points[i].z});
        return true;
    }
    std::array<double, 3> steps;
    for (unsigned axis = 0; axis < 3; ++axis) steps[axis] = 1.0 / grid_.scale[axis];
    bool fits = true;
    for (unsigned long long i = 0; i < count; ++i) {
        const Coordinates values{points[i].x, points[i].y, points[i].z};
        std::array<std::int32_t, 3> wholes;
        for (unsigned axis = 0; axis < 3; ++axis) {
            wholes[axis] = nearest((values[axis] - grid_.offset[axis]) * steps[axis]);
            fits = same(OnGrid(wholes[axis], axis), values[axis]) & fits;
        }
        store(records + i * recordSize_, wholes);
    }
    return fits;
}

bool PointFormat::PackColours(const VpcPoint3D* points, unsigned long long count,
                              char* records) const {
    bool fits = true;
    for (unsigned long long i = 0; i < count; ++i) {
        const VpcPoint3D& point = points[i];
        char* place = records + i * recordSize_ + colourAt_;
        switch (colour_) {
            case Colour::Constant:
                fits = fits && point.red == constant_.red && point.green == constant_.green &&
                       point.blue == constant_.blue;
                break;
            case Colour::Grey:
                fits = fits && isGreyOfIntensity(point);
                break;
            case Colour::Bytes:
                fits = fits && (point.red | point.green | point.blue) <= 0xff;
                store(place, std::array{static_cast<std::uint8_t>(point.red),
                                        static_cast<std::uint8_t>(point.green),
                                        static_cast<std::uint8_t>(point.blue)});
                break;
            case Colour::Words:
                store(place, std::array{point.red, point.green, point.blue});
                break;
        }
    }
    return fits;
}

bool PointFormat::PackIntensities(const VpcPoint3D* points, unsigned long long count,
                                  char* records) const {
    bool fits = true;
    for (unsigned long long i = 0; i < count; ++i) {
        const double intensity = points[i].intensity;
        char* place = records + i * recordSize_ + intensityAt_;
        if (intensityIsShort_) {
            const auto whole = static_cast<std::int16_t>(nearest(intensity));
            fits = fits && same(whole, intensity);
            store(place, whole);
        } else {
            store(place, intensity);
        }
    }
    return fits;
}

bool PointFormat::PackDistances(const VpcPoint3D* points, unsigned long long count,
                                char* records) const {
    bool fits = true;
    for (unsigned long long i = 0; i < count; ++i) {
        const double distance = points[i].scannerDistance;
        if (storesDistance_)
            store(records + i * recordSize_ + distanceAt_, distance);
        else
            fits = fits && same(distance, constant_.scannerDistance);
    }
    return fits;
}

bool PointFormat::PackOrigins(const VpcPoint3D* points, unsigned long long count,
                              char* records) const {
    bool fits = true;
    for (unsigned long long i = 0; i < count; ++i) {
        const VpcPoint3D& point = points[i];
        if (storesOrigin_)
            store(records + i * recordSize_ + originAt_,
                  std::array{point.markerId, point.sourceIndex});
        else
            fits = fits && point.markerId == constant_.markerId &&
                   point.sourceIndex == constant_.sourceIndex;
    }
    return fits;
}

void PointFormat::Unpack(const char* packed, unsigned stride, unsigned long long count,
                         char* records) const {
    constexpr unsigned size = VpcPoint3D::recordSize;
    std::array<char, size> constants;
    constant_.ToRecord(constants.data());
    for (; count != 0; --count, packed += stride, records += size) {
        std::memcpy(records, constants.data(), size);
        store(records + VpcPoint3D::recordOffsetX, CoordinatesOf(packed));
        store(records + VpcPoint3D::recordOffsetIntensity,
              intensityIsShort_ ? load<std::int16_t>(packed + intensityAt_)
                                : load<double>(packed + intensityAt_));
        UnpackColour(packed, records + VpcPoint3D::recordOffsetRed);
        if (storesDistance_)
            std::memcpy(records + VpcPoint3D::recordOffsetScannerDistance, packed + distanceAt_,
                        sizeof(double));
        if (storesOrigin_)
            std::memcpy(records + VpcPoint3D::recordOffsetMarkerId, packed + originAt_,
                        2 * sizeof(std::int32_t));
    }
}

void PointFormat::UnpackColour(const char* packed, char* record) const {
    using Channels = std::array<std::uint16_t, 3>;
    switch (colour_) {
        case Colour::Constant:
            return;
        case Colour::Grey: {
            const auto grey = static_cast<std::uint16_t>(
                intensityIsShort_ ? load<std::int16_t>(packed + intensityAt_)
                                  : nearest(load<double>(packed + intensityAt_)));
            return store(record, Channels{grey, grey, grey});
        }
        case Colour::Bytes: {
            const auto bytes = load<std::array<std::uint8_t, 3>>(packed + colourAt_);
            return store(record, Channels{bytes[0], bytes[1], bytes[2]});
        }
        case Colour::Words:
            return store(record, load<Channels>(packed + colourAt_));
    }
}

}  // namespace vpc
