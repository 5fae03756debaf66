#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

#include "core/geometry/CoordinateGrid.h"
#include "core/geometry/VpcPoint3D.h"
#include "io/ScanRecords.h"

namespace vpc {

/// How the points of a scan are packed while the tree is built: without what is the same in all of
/// them, and with small integers where these give back the same values, to the last bit.
///
/// A format starts as narrow as the first points of a scan allow. When points come that it cannot
/// hold, it is made as wide as they need. At its widest it is the record of the tree file.
class PointFormat {
public:
    using Coordinates = std::array<double, 3>;

    /// Bytes of a point in the narrowest of all formats.
    static constexpr unsigned smallest = 3 * sizeof(std::int32_t) + sizeof(std::int16_t);

    /// The record of the tree file, which holds every point.
    PointFormat() = default;
    /// The narrowest format for a scan that begins with this point.
    PointFormat(const VpcPoint3D& first, const std::optional<CoordinateGrid>& grid);

    /// Bytes of a packed point.
    unsigned RecordSize() const { return recordSize_; }

    /// Packs the points into `records`, one RecordSize() after the other. Where some point does not
    /// fit, it makes the format wider and returns false, and the records mean nothing.
    [[nodiscard]] bool PackOrWiden(const VpcPoint3D* points, unsigned long long count,
                                   char* records);
    /// Whether records of a scan can be packed in this format, but for their colours: it was made
    /// for that scan, and no other points have widened it.
    bool IsFor(const ScanRecords& points) const;
    /// Packs the records of a scan that this format is for, as above.
    [[nodiscard]] bool PackOrWiden(const ScanRecords& points, char* records);
    /// Turns packed points, `stride` bytes apart, into records of the tree file.
    void Unpack(const char* packed, unsigned stride, unsigned long long count, char* records) const;
    /// The coordinates of a packed point.
    Coordinates CoordinatesOf(const char* packed) const {
        Coordinates values;
        if (!onGrid_) {
            std::memcpy(values.data(), packed, sizeof values);
            return values;
        }
        std::array<std::int32_t, 3> wholes;
        std::memcpy(wholes.data(), packed, sizeof wholes);
        for (unsigned axis = 0; axis < 3; ++axis) values[axis] = OnGrid(wholes[axis], axis);
        return values;
    }

    /// Those of packed points, `stride` bytes apart.
    void CoordinatesOf(const char* packed, unsigned stride, unsigned count,
                       Coordinates* values) const;

private:
    /// In the order in which a colour that does not fit is widened: that of the first point, grey
    /// of the intensity's low 16 bits, channels of 8 bits, channels of 16 bits.
    enum class Colour : std::uint8_t { Constant, Grey, Bytes, Words };
    using Channels = std::array<std::uint16_t, 3>;

    double OnGrid(std::int32_t whole, unsigned axis) const {
        return whole * grid_.scale[axis] + grid_.offset[axis];
    }
    /// Sets the size and the places of the fields from what is stored.
    void PlaceFields();
    void WidenColour() { colour_ = static_cast<Colour>(static_cast<unsigned>(colour_) + 1); }
    /// Which fields of some point could not be packed.
    struct Misfits {
        bool coordinates = false, colour = false, intensity = false, distance = false,
             origin = false;
    };
    template <bool onGrid>
    [[nodiscard]] Misfits Pack(const VpcPoint3D* points, unsigned long long count,
                               char* record) const;
    // Each of these packs one field of a point, and returns whether its value fits.
    [[nodiscard]] bool PackOnGrid(const VpcPoint3D& point, const Coordinates& steps,
                                  char* place) const;
    [[nodiscard]] bool PackColour(const Channels& channels, std::uint16_t grey, char* place) const;
    [[nodiscard]] bool PackIntensity(const VpcPoint3D& point, char* place) const;
    [[nodiscard]] bool PackDistance(const VpcPoint3D& point, char* place) const;
    [[nodiscard]] bool PackOrigin(const VpcPoint3D& point, char* place) const;
    template <bool hasColour>
    [[nodiscard]] bool PackRecords(const ScanRecords& points, char* record) const;
    void UnpackColour(const char* packed, char* record) const;

    bool onGrid_ = false;
    Colour colour_ = Colour::Words;
    bool intensityIsShort_ = false;
    bool storesDistance_ = true;
    bool storesOrigin_ = true;
    CoordinateGrid grid_{};
    /// What all points have in the fields that are not stored.
    VpcPoint3D constant_;
    unsigned colourAt_ = VpcPoint3D::recordOffsetRed;
    unsigned intensityAt_ = VpcPoint3D::recordOffsetIntensity;
    unsigned distanceAt_ = VpcPoint3D::recordOffsetScannerDistance;
    unsigned originAt_ = VpcPoint3D::recordOffsetMarkerId;
    unsigned recordSize_ = VpcPoint3D::recordSize;
};

}  // namespace vpc
