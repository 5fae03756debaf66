#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <limits>

#include <wx/string.h>

#include "core/geometry/VpcCoordinate3D.h"
#include "core/geometry/VpcVector3D.h"

class FileBufferStream;

/// A scanned point. Every part of the system passes it around, hundreds of millions of times a run,
/// so it is a plain value without virtual functions or heap memory.
class VpcPoint3D : public VpcCoordinate3D {
public:
    /// The value of the transient indices while they are unset.
    static constexpr unsigned long long unsetIndex = std::numeric_limits<unsigned long long>::max();
    static constexpr double sEpsilon = 1e-12;

    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    double intensity = 0.0;
    /// Distance of the raw point from the scanner, where the reader knows it. The default
    /// constructor sets 1, the constructor from attributes -1 unless told otherwise; the difference
    /// is deliberate.
    double scannerDistance = 1.0;
    std::int32_t markerId = -1;
    /// Index of the scan that the point came from; -1 when unset.
    std::int32_t sourceIndex = -1;
    /// Transient: never written to disk.
    unsigned long long workIndexA = unsetIndex;
    unsigned long long workIndexB = unsetIndex;

    VpcPoint3D() = default;
    VpcPoint3D(double x0, double y0, double z0, std::uint16_t r = 0, std::uint16_t g = 0,
               std::uint16_t b = 0, double newIntensity = 0.0, std::int32_t source = -1,
               double distance = -1.0)
        : red(r),
          green(g),
          blue(b),
          intensity(newIntensity),
          scannerDistance(distance),
          sourceIndex(source) {
        setCoordinates(x0, y0, z0);
    }
    explicit VpcPoint3D(const VpcCoordinate3D& c, std::uint16_t r = 0, std::uint16_t g = 0,
                        std::uint16_t b = 0, double newIntensity = 0.0, std::int32_t source = -1,
                        double distance = -1.0)
        : VpcPoint3D(c.x, c.y, c.z, r, g, b, newIntensity, source, distance) {}
    explicit VpcPoint3D(const VpcVector3D& v, std::uint16_t r = 0, std::uint16_t g = 0,
                        std::uint16_t b = 0, double newIntensity = 0.0, std::int32_t source = -1,
                        double distance = -1.0)
        : VpcPoint3D(v.x, v.y, v.z, r, g, b, newIntensity, source, distance) {}
    VpcPoint3D(const VpcPoint3D&) = default;
    VpcPoint3D& operator=(const VpcPoint3D&) = default;

    /// Assigns these nine fields; markerId and the transient indices keep their values.
    void SetValues(double x0, double y0, double z0, std::uint16_t r, std::uint16_t g,
                   std::uint16_t b, double newIntensity, std::int32_t source, double distance) {
        setCoordinates(x0, y0, z0);
        red = r;
        green = g;
        blue = b;
        intensity = newIntensity;
        sourceIndex = source;
        scannerDistance = distance;
    }
    void SetCoordinates(double x0, double y0, double z0) { setCoordinates(x0, y0, z0); }

    VpcVector3D ToVpcVector3D() const { return {x, y, z}; }
    VpcCoordinate3D ToVpcCoordinate3D() const { return *this; }

    double DistanceTo(const VpcPoint3D& p) const { return DistanceTo(p.x, p.y, p.z); }
    double DistanceTo(double x0, double y0, double z0) const {
        const double dx = x0 - x;
        const double dy = y0 - y;
        const double dz = z0 - z;
        return std::sqrt(dx * dx + dy * dy + dz * dz);
    }

    /// A copy of the point with all its attributes, moved by `v`.
    VpcPoint3D operator+(const VpcVector3D& v) const { return MovedTo(x + v.x, y + v.y, z + v.z); }
    VpcPoint3D operator-(const VpcVector3D& v) const { return MovedTo(x - v.x, y - v.y, z - v.z); }

    // --- The point's record on disk: little-endian, without padding ---------------------------

    static constexpr unsigned recordOffsetX = 0;
    static constexpr unsigned recordOffsetY = 8;
    static constexpr unsigned recordOffsetZ = 16;
    static constexpr unsigned recordOffsetRed = 24;
    static constexpr unsigned recordOffsetGreen = 26;
    static constexpr unsigned recordOffsetBlue = 28;
    static constexpr unsigned recordOffsetIntensity = 30;
    static constexpr unsigned recordOffsetScannerDistance = 38;
    static constexpr unsigned recordOffsetMarkerId = 46;
    static constexpr unsigned recordOffsetSourceIndex = 50;
    static constexpr unsigned recordSize = 54;

    static constexpr unsigned long long SerializeDiskSize() { return recordSize; }

    /// Writes the record's 54 bytes. With `eightBitColour` a colour slot, still 16 bits wide,
    /// holds the channel's high byte.
    void ToRecord(char* record, bool eightBitColour = false) const {
        const unsigned shift = eightBitColour ? 8 : 0;
        Store(record + recordOffsetX, x);
        Store(record + recordOffsetY, y);
        Store(record + recordOffsetZ, z);
        Store(record + recordOffsetRed, static_cast<std::uint16_t>(red >> shift));
        Store(record + recordOffsetGreen, static_cast<std::uint16_t>(green >> shift));
        Store(record + recordOffsetBlue, static_cast<std::uint16_t>(blue >> shift));
        Store(record + recordOffsetIntensity, intensity);
        Store(record + recordOffsetScannerDistance, scannerDistance);
        Store(record + recordOffsetMarkerId, markerId);
        Store(record + recordOffsetSourceIndex, sourceIndex);
    }
    /// Reads the record's 54 bytes. Colours are taken as they are, since a record does not tell how
    /// they were written. The transient indices keep their values.
    void FromRecord(const char* record) {
        Load(record + recordOffsetX, x);
        Load(record + recordOffsetY, y);
        Load(record + recordOffsetZ, z);
        Load(record + recordOffsetRed, red);
        Load(record + recordOffsetGreen, green);
        Load(record + recordOffsetBlue, blue);
        Load(record + recordOffsetIntensity, intensity);
        Load(record + recordOffsetScannerDistance, scannerDistance);
        Load(record + recordOffsetMarkerId, markerId);
        Load(record + recordOffsetSourceIndex, sourceIndex);
    }

    /// Writes the record at the cursor of the stream's buffer, where the caller has made room.
    /// Returns how many bytes the buffer holds up to the cursor.
    unsigned long long Serialize(FileBufferStream& stream, bool eightBitColour) const;
    /// Reads the record at the cursor. Returns the cursor's offset in the buffer afterwards.
    unsigned long long DeSerialize(FileBufferStream& stream);

    /// The coordinates with six decimals, either separated by tabs or as " ( x, y, z ) ".
    wxString ToString(bool bracketed) const;

private:
    template <class T>
    static void Store(char* place, T value) {
        std::memcpy(place, &value, sizeof value);
    }
    template <class T>
    static void Load(const char* place, T& value) {
        std::memcpy(&value, place, sizeof value);
    }
    VpcPoint3D MovedTo(double x0, double y0, double z0) const {
        VpcPoint3D moved(*this);
        moved.setCoordinates(x0, y0, z0);
        return moved;
    }
};

/// Both operators write ToString(false).
std::ostream& operator<<(std::ostream& out, const VpcPoint3D& p);
std::wostream& operator<<(std::wostream& out, const VpcPoint3D& p);
