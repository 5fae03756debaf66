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
    const Misfits misfits =
        onGrid_ ? Pack<true>(points, count, records) : Pack<false>(points, count, records);
    if (misfits.coordinates) onGrid_ = false;
    if (misfits.colour) WidenColour();
    if (misfits.intensity) intensityIsShort_ = false;
    if (misfits.distance) storesDistance_ = true;
    if (misfits.origin) storesOrigin_ = true;
    PlaceFields();
    return !(misfits.coordinates || misfits.colour || misfits.intensity || misfits.distance ||
             misfits.origin);
}

template <bool onGrid>
PointFormat::Misfits PointFormat::Pack(const VpcPoint3D* points, unsigned long long count,
                                       char* record) const {
    // The compiler has to assume that what is written through `record` changes this object, but not
    // that it changes a copy.
    const PointFormat format = *this;
    Coordinates steps;
    for (unsigned axis = 0; axis < 3; ++axis) steps[axis] = 1.0 / format.grid_.scale[axis];
    Misfits misfits;
    for (const VpcPoint3D* point = points; point != points + count; ++point) {
        if (onGrid)
            misfits.coordinates |= !format.PackOnGrid(*point, steps, record);
        else
            store(record, Coordinates{point->x, point->y, point->z});
        misfits.colour |= !format.PackColour({point->red, point->green, point->blue},
                                             static_cast<std::uint16_t>(nearest(point->intensity)),
                                             record + format.colourAt_);
        misfits.intensity |= !format.PackIntensity(*point, record + format.intensityAt_);
        misfits.distance |= !format.PackDistance(*point, record + format.distanceAt_);
        misfits.origin |= !format.PackOrigin(*point, record + format.originAt_);
        record += format.recordSize_;
    }
    return misfits;
}

bool PointFormat::IsFor(const ScanRecords& points) const {
    return onGrid_ && grid_ == points.grid && intensityIsShort_ && !storesDistance_ &&
           !storesOrigin_ && same(constant_.scannerDistance, points.example.scannerDistance) &&
           constant_.markerId == points.example.markerId &&
           constant_.sourceIndex == points.example.sourceIndex;
}

bool PointFormat::PackOrWiden(const ScanRecords& points, char* records) {
    if (points.colourAt != 0 ? PackRecords<true>(points, records)
                             : PackRecords<false>(points, records))
        return true;
    WidenColour();
    PlaceFields();
    return false;
}

template <bool hasColour>
bool PointFormat::PackRecords(const ScanRecords& points, char* record) const {
    const PointFormat format = *this;  // as above
    const char* from = points.first;
    bool fits = true;
    for (unsigned long long left = points.count; left != 0; --left) {
        const auto intensity = load<std::uint16_t>(from + ScanRecords::intensityAt);
        const Channels channels = hasColour ? load<Channels>(from + points.colourAt)
                                            : Channels{intensity, intensity, intensity};
        std::memcpy(record, from, ScanRecords::coordinatesSize);
        fits &= format.PackColour(channels, intensity, record + format.colourAt_);
        store(record + format.intensityAt_, intensity);
        from += points.stride;
        record += format.recordSize_;
    }
    return fits;
}

inline bool PointFormat::PackOnGrid(const VpcPoint3D& point, const Coordinates& steps,
                                    char* place) const {
    const Coordinates values{point.x, point.y, point.z};
    bool fits = true;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const std::int32_t whole = nearest((values[axis] - grid_.offset[axis]) * steps[axis]);
        fits &= same(OnGrid(whole, axis), values[axis]);
        store(place + axis * sizeof whole, whole);
    }
    return fits;
}

inline bool PointFormat::PackColour(const Channels& channels, std::uint16_t grey,
                                    char* place) const {
    const auto& [red, green, blue] = channels;
    switch (colour_) {
        case Colour::Constant:
            return red == constant_.red && green == constant_.green && blue == constant_.blue;
        case Colour::Grey:
            return red == grey && green == grey && blue == grey;
        case Colour::Bytes:
            store(place,
                  std::array{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                             static_cast<std::uint8_t>(blue)});
            return (red | green | blue) <= 0xff;
        case Colour::Words:
            store(place, channels);
            return true;
    }
    return false;
}

inline bool PointFormat::PackIntensity(const VpcPoint3D& point, char* place) const {
    if (!intensityIsShort_) {
        store(place, point.intensity);
        return true;
    }
    const auto whole = static_cast<std::int16_t>(nearest(point.intensity));
    store(place, whole);
    return same(whole, point.intensity);
}

inline bool PointFormat::PackDistance(const VpcPoint3D& point, char* place) const {
    if (!storesDistance_) return same(point.scannerDistance, constant_.scannerDistance);
    store(place, point.scannerDistance);
    return true;
}

inline bool PointFormat::PackOrigin(const VpcPoint3D& point, char* place) const {
    if (!storesOrigin_)
        return point.markerId == constant_.markerId && point.sourceIndex == constant_.sourceIndex;
    store(place, std::array{point.markerId, point.sourceIndex});
    return true;
}

void PointFormat::CoordinatesOf(const char* packed, unsigned stride, unsigned count,
                                Coordinates* values) const {
    const PointFormat format = *this;  // as above
    if (!format.onGrid_) {
        for (unsigned i = 0; i < count; ++i, packed += stride)
            std::memcpy(values + i, packed, sizeof *values);
        return;
    }
    for (unsigned i = 0; i < count; ++i, packed += stride)
        for (unsigned axis = 0; axis < 3; ++axis)
            values[i][axis] =
                format.OnGrid(load<std::int32_t>(packed + axis * sizeof(std::int32_t)), axis);
}

void PointFormat::Unpack(const char* packed, unsigned stride, unsigned long long count,
                         char* records) const {
    constexpr unsigned size = VpcPoint3D::recordSize;
    const PointFormat format = *this;  // as in Pack
    std::array<char, size> constants;
    constant_.ToRecord(constants.data());
    for (; count != 0; --count, packed += stride, records += size) {
        std::memcpy(records, constants.data(), size);
        store(records + VpcPoint3D::recordOffsetX, format.CoordinatesOf(packed));
        store(records + VpcPoint3D::recordOffsetIntensity,
              format.intensityIsShort_ ? load<std::int16_t>(packed + format.intensityAt_)
                                       : load<double>(packed + format.intensityAt_));
        format.UnpackColour(packed, records + VpcPoint3D::recordOffsetRed);
        if (format.storesDistance_)
            std::memcpy(records + VpcPoint3D::recordOffsetScannerDistance,
                        packed + format.distanceAt_, sizeof(double));
        if (format.storesOrigin_)
            std::memcpy(records + VpcPoint3D::recordOffsetMarkerId, packed + format.originAt_,
                        2 * sizeof(std::int32_t));
    }
}

inline void PointFormat::UnpackColour(const char* packed, char* record) const {
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
