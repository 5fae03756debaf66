#include "view/PointColouring.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <type_traits>

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

using RampFunction = void(double value, double min, double max, double& red, double& green,
                          double& blue);

/// The ramp's colour as red, green and blue from the top, with nothing above them.
template <RampFunction* ramp>
std::uint32_t packedColour(double value, double min, double max) {
    double red = 0;
    double green = 0;
    double blue = 0;
    ramp(value, min, max, red, green, blue);
    return channelByte(red) << 16U | channelByte(green) << 8U | channelByte(blue);
}

template <RampFunction* function>
using Ramp = std::integral_constant<RampFunction*, function>;

/// Calls `use` with the ramp of the scheme as a constant, so that it is chosen once, where
/// VpcColorTools::ApplyColorScheme would choose it for every point. A scheme without a ramp gives
/// no call, and false.
template <class Use>
bool withRamp(VpcColorScheme scheme, const Use& use) {
    using Tools = VpcColorTools;
    switch (scheme) {
        case VPC_ColorScheme_Spectrum:
            return use(Ramp<Tools::ApplyColorSchemeJet>()), true;
        case VPC_ColorScheme_Earth:
            return use(Ramp<Tools::ApplyColorSchemeEarth>()), true;
        case VPC_ColorScheme_Hydro:
            return use(Ramp<Tools::ApplyColorSchemeHydro>()), true;
        case VPC_ColorScheme_Gray:
            return use(Ramp<Tools::ApplyColorSchemeGray>()), true;
        case VPC_ColorScheme_Reds:
            return use(Ramp<Tools::ApplyColorSchemeReds>()), true;
        case VPC_ColorScheme_Greens:
            return use(Ramp<Tools::ApplyColorSchemeGreens>()), true;
        case VPC_ColorScheme_Blues:
            return use(Ramp<Tools::ApplyColorSchemeBlues>()), true;
        case VPC_ColorScheme_ScanColors:
            break;
    }
    return false;
}

/// Colours every slot by its value; the colour method stays. A scheme without a ramp leaves the
/// colours as they are.
/// \return what the ramp stands for
template <class ValueOf>
VpcInterval colour(const PointBuffers& buffers, unsigned long long count, const Range& range,
                   VpcColorScheme scheme, const ValueOf& valueOf) {
    OdCmEntityColor* const colours = buffers.colours();
    const bool isRamp = withRamp(scheme, [&]<RampFunction * ramp>(Ramp<ramp>) {
        for (unsigned long long slot = 0; slot < count; ++slot) {
            const std::uint32_t method = colours[slot].color() & 0xFF000000U;
            colours[slot].setColor(method |
                                   packedColour<ramp>(valueOf(slot), range.min, range.max));
        }
    });
    return isRamp && range.min <= range.max ? VpcInterval(range.min, range.max) : noRamp;
}

double luminance(const OdCmEntityColor& colour) {
    return 0.2125 * colour.red() + 0.7154 * colour.green() + 0.0721 * colour.blue();
}

}  // namespace

std::uint32_t rampColour(VpcColorScheme scheme, double share) {
    std::uint32_t packed = 0;
    withRamp(scheme, [&]<RampFunction * ramp>(Ramp<ramp>) {
        packed = packedColour<ramp>(std::clamp(share, 0.0, 1.0), 0.0, 1.0);
    });
    return packed;
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
