#include "view/PointColouring.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "core/util/VpcColorTools.h"

namespace vpc {
namespace {

/// The smallest and largest value seen; a NaN is neither.
struct Range {
    double min = std::numeric_limits<double>::infinity();
    double max = -std::numeric_limits<double>::infinity();

    void Include(double value) {
        min = std::min(min, value);
        max = std::max(max, value);
    }
};

/// A channel on the scale 0 to 255 as a byte. The ramps run past the scale, and an empty range
/// gives a NaN, which becomes 0.
std::uint32_t channelByte(double value) {
    return static_cast<std::uint32_t>(std::min(std::max(0.0, value), 255.0));
}

/// The three channels in one number, with nothing above them.
std::uint32_t packed(double red, double green, double blue) {
    return channelByte(red) << 16U | channelByte(green) << 8U | channelByte(blue);
}

/// Colours every slot by its value; the colour method stays. Returns the range.
template <auto ramp, class ValueOf>
VpcInterval colourBy(const PointBuffers& buffers, unsigned long long count, const Range& range,
                     const ValueOf& valueOf) {
    OdCmEntityColor* const colours = buffers.colours();
    for (unsigned long long slot = 0; slot < count; ++slot) {
        double red = 0;
        double green = 0;
        double blue = 0;
        ramp(valueOf(slot), range.min, range.max, red, green, blue);
        const std::uint32_t method = colours[slot].color() & 0xFF000000U;
        colours[slot].setColor(method | packed(red, green, blue));
    }
    return range.min <= range.max ? VpcInterval(range.min, range.max) : noRamp;
}

/// Chooses the ramp once, where VpcColorTools::ApplyColorScheme would choose it for every point. A
/// scheme without a ramp leaves the colours as they are, and gives noRamp.
template <class ValueOf>
VpcInterval colour(const PointBuffers& buffers, unsigned long long count, const Range& range,
                   VpcColorScheme scheme, const ValueOf& valueOf) {
    using Tools = VpcColorTools;
    switch (scheme) {
        case VPC_ColorScheme_Spectrum:
            return colourBy<Tools::ApplyColorSchemeJet>(buffers, count, range, valueOf);
        case VPC_ColorScheme_Earth:
            return colourBy<Tools::ApplyColorSchemeEarth>(buffers, count, range, valueOf);
        case VPC_ColorScheme_Hydro:
            return colourBy<Tools::ApplyColorSchemeHydro>(buffers, count, range, valueOf);
        case VPC_ColorScheme_Gray:
            return colourBy<Tools::ApplyColorSchemeGray>(buffers, count, range, valueOf);
        case VPC_ColorScheme_Reds:
            return colourBy<Tools::ApplyColorSchemeReds>(buffers, count, range, valueOf);
        case VPC_ColorScheme_Greens:
            return colourBy<Tools::ApplyColorSchemeGreens>(buffers, count, range, valueOf);
        case VPC_ColorScheme_Blues:
            return colourBy<Tools::ApplyColorSchemeBlues>(buffers, count, range, valueOf);
        case VPC_ColorScheme_ScanColors:
            break;
    }
    return noRamp;
}

double luminance(const OdCmEntityColor& colour) {
    return 0.2125 * colour.red() + 0.7154 * colour.green() + 0.0721 * colour.blue();
}

}  // namespace

std::uint32_t rampColour(VpcColorScheme scheme, double share) {
    double red = 0;
    double green = 0;
    double blue = 0;
    VpcColorTools::ApplyColorScheme(std::clamp(share, 0.0, 1.0), 0.0, 1.0, scheme, red, green,
                                    blue);
    return packed(red, green, blue);
}

VpcInterval movePoints(const PointBuffers& buffers, unsigned long long count,
                       const OdGeMatrix3d& matrix) {
    OdGePoint3d* const points = buffers.coordinates();
    for (unsigned long long slot = 0; slot < count; ++slot) points[slot].transformBy(matrix);
    return noRamp;
}

VpcInterval colourByElevation(const PointBuffers& buffers, unsigned long long count,
                              const OdGeMatrix3d& matrix, VpcColorScheme scheme) {
    OdGePoint3d* const points = buffers.coordinates();
    Range range;
    for (unsigned long long slot = 0; slot < count; ++slot)
        range.Include(points[slot].transformBy(matrix).z);
    return colour(buffers, count, range, scheme,
                  [points](unsigned long long slot) { return points[slot].z; });
}

VpcInterval colourByIntensity(const PointBuffers& buffers, unsigned long long count,
                              const OdGeMatrix3d& matrix, VpcColorScheme scheme) {
    OdGePoint3d* const points = buffers.coordinates();
    const OdCmEntityColor* const colours = buffers.colours();
    double* const intensities = buffers.intensities();
    Range range;
    for (unsigned long long slot = 0; slot < count; ++slot) {
        intensities[slot] = luminance(colours[slot]);
        points[slot].transformBy(matrix);
        range.Include(intensities[slot]);
    }
    return colour(buffers, count, range, scheme,
                  [intensities](unsigned long long slot) { return intensities[slot]; });
}

}  // namespace vpc
